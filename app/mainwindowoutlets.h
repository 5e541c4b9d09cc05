// SPDX-License-Identifier: MIT
// The widgets of the main window that the main controller uses. MainWindow fills them in.
#pragma once

class ConnectionNotice;
class Spinner;
class QLabel;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QToolButton;
class QWidget;
class Sheet;
class StatusLine;

struct MainWindowOutlets
{
    QTabWidget *mKeyboardTabView = nullptr;
    QPushButton *mHelpButton = nullptr;
    QLabel *mProductLogo = nullptr;
    Spinner *mBusyIndicator = nullptr;
    Sheet *mCommunicationAlertWindow = nullptr;
    QLabel *mCommunicationAlertTitle = nullptr;
    QLabel *mCommunicationAlertDesc = nullptr;
    QPushButton *mCommunicationOKButton = nullptr;
    Sheet *mRestoringStateWindow = nullptr;
    QProgressBar *mRestoringStateProgress = nullptr;
    StatusLine *mStatusLine = nullptr;
    QToolButton *mUndoButton = nullptr;
    QToolButton *mHistoryButton = nullptr;
    ConnectionNotice *mConnectionNotice = nullptr;
    QWidget *mMainWindow = nullptr;
};
