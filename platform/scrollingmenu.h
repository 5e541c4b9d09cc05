// SPDX-License-Identifier: MIT
// A menu for a list of any length: one column that scrolls, and in which the user finds an item by typing. The owner is
// its parent. Main thread only.
#pragma once

#include <QBasicTimer>
#include <QMenu>

class QActionGroup;

/// Typing moves to the next item whose title begins with the typed text, whatever the case of its letters. The same
/// letter typed again moves to the next such item. A pause begins a new text. At most one item has the mark of the
/// current one; the menu opens at that item.
class ScrollingMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ScrollingMenu(QWidget *parent = nullptr);

    /// Makes `item` of the menu one that can have the mark.
    void addChoice(QAction *item);
    /// Moves the mark to `item`, one of the choices; null removes it.
    void markItem(QAction *item);
    /// The item with the mark; null without one.
    [[nodiscard]] QAction *markedItem() const;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    [[nodiscard]] bool isReachable(const QAction *item) const;
    void search(const QString &text);

    QActionGroup *mChoices;
    QString mTyped;
    QBasicTimer mPause; ///< active while typing continues mTyped
};
