// SPDX-License-Identifier: MIT
// Assembles the window: header, the five tabs, the two sheets of the hub; connects their actions to the hub.
#pragma once

#include "app/mainwindowoutlets.h"

#include <QMainWindow>

class KeyboardMainController;
class QHBoxLayout;

/// The hub must outlive the window. Closing the window quits the program.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(KeyboardMainController *controller);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *createHeader();
    QWidget *createTabs();
    void createDeviceNotFoundSheet();
    void createRestoringStateSheet();
    void addHeaderButton(QHBoxLayout *layout, const char *objectName, const char *textKey,
                         void (KeyboardMainController::*action)());

    KeyboardMainController *mController;
    MainWindowOutlets mOutlets;
};
