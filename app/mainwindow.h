// SPDX-License-Identifier: MIT
// Assembles the window from the header, the five tabs and the two sheets of the hub. Connects their actions to the hub.
#pragma once

#include "app/mainwindowoutlets.h"
#include "platform/symbol.h"

#include <QMainWindow>

#include <functional>

class AttachedKeyboards;
class KeyboardChooser;
class KeyboardMainController;
class QHBoxLayout;
class QLayout;
class QToolButton;
class RuleProcess;

/// Closing the window quits the program. The window outlives the hub, whose controllers use its widgets.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();

    /// Builds the content and hands it to `controller`. Must be called once, before the window is shown.
    void assemble(KeyboardMainController *controller);

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *createHeader();
    QWidget *createNotice();
    void fitHeader();
    QWidget *createTabs();
    QLayout *createStatusRow();
    [[nodiscard]] static QToolButton *statusRowButton(const char *objectName, const char *textKey, Symbol symbol);
    void createShortcuts();
    void createDeviceNotFoundSheet();
    void createRestoringStateSheet();
    void openKeyboardChooser();
    void addHeaderButton(QHBoxLayout *layout, const char *objectName, const char *textKey, Symbol symbol,
                         const std::function<void(QObject *sender)> &action);

    KeyboardMainController *mController = nullptr;
    MainWindowOutlets mOutlets;
    QWidget *mTitles = nullptr;                  // the names of the product, in the header
    KeyboardChooser *mKeyboardChooser = nullptr; // made when it is first opened, with its two sources
    AttachedKeyboards *mAttachedKeyboards = nullptr;
    RuleProcess *mRuleProcess = nullptr;
};
