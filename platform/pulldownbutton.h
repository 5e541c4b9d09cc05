// SPDX-License-Identifier: MIT
// A button without an arrow that shows a picture and opens a menu of numbered commands. The tab that shows it owns it.
// Main thread only.
#pragma once

#include <QList>
#include <QToolButton>

#include <functional>

class QAction;
class QMenu;

/// One command of a menu: its number and the text key of its title.
struct MenuCommand
{
    int tag;
    const char *titleKey;
};

class PulldownButton : public QToolButton
{
    Q_OBJECT

public:
    /// data() of an item is the tag of its command; its object name is the text key of its title.
    using Handler = std::function<void(const QAction *item)>;
    using Validator = std::function<bool(const QAction *item)>;

    explicit PulldownButton(QWidget *parent = nullptr);

    /// Shows `onImage`, or `offImage` while the button is disabled. Both are names of resource files. They are read
    /// when the button is first shown, because reading a picture loads the plug-ins for image formats.
    void setImages(const QString &onImage, const QString &offImage);
    /// Replaces the menu. Each time it opens, `validator` decides which commands are enabled.
    void setCommands(const QList<MenuCommand> &commands, Handler handler, Validator validator);

    /// The item of the command `tag`; nullptr if there is none. Its enabled state dates from the last opening.
    [[nodiscard]] QAction *itemWithTag(int tag) const;
    /// Enables and disables the items as opening the menu does.
    void validateItems();

protected:
    void initStyleOption(QStyleOptionToolButton *option) const override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void loadImages();

    QMenu *mMenu;
    Validator mValidator;
    QString mOnImage;
    QString mOffImage;
};

/// Adds `commands` to `menu` in their order; choosing one calls `handler`.
void addMenuCommands(QMenu *menu, const QList<MenuCommand> &commands, const PulldownButton::Handler &handler);
