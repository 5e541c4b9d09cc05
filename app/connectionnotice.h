// SPDX-License-Identifier: MIT
// The part of the header that says what to do without a keyboard or without its service, and offers it. It is empty
// otherwise. It offers to start the service once it knows that this is possible. Owned by the window; main thread only.
#pragma once

#include "app/statuswords.h"

#include <QWidget>

class QLabel;
class QPushButton;

class ConnectionNotice : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionNotice(QWidget *parent = nullptr);

    void show(const StatusState &state);
    /// Whether the user can start the service from here. Applies until the service runs.
    void setCanStartService(bool canStart);
    void showStartFailure();

Q_SIGNALS:
    void keyboardsRequested(); ///< the user wants to choose a keyboard
    void helpRequested();      ///< the user wants to read what to do about the service
    void serviceMissed();      ///< no service runs; setCanStartService() may answer
    void startRequested();     ///< the user wants to start the service
    void shown();              ///< or hidden again

private:
    void updateWidgets();
    [[nodiscard]] bool isStartOffered() const;

    QLabel *mPicture = nullptr;
    QLabel *mText = nullptr;
    QPushButton *mKeyboards = nullptr;
    QPushButton *mHelp = nullptr; ///< or starts the service
    StatusState mState;
    bool mCanStart = false;
    bool mHasStartFailed = false;
};
