// SPDX-License-Identifier: MIT
// The part of the header that says what to do without a keyboard or without its service, and offers it. It is empty
// otherwise. It offers to start the service once it knows that this is possible, and shows whether the service comes.
// Owned by the window; main thread only.
#pragma once

#include "app/statuswords.h"

#include <QTimer>
#include <QWidget>

#include <chrono>

class QLabel;
class QPushButton;

class ConnectionNotice : public QWidget
{
    Q_OBJECT

public:
    /// A service that has not come `startLimit` after its start was requested counts as a failure.
    explicit ConnectionNotice(QWidget *parent = nullptr,
                              std::chrono::milliseconds startLimit = std::chrono::seconds(10));

    void show(const StatusState &state);
    /// Whether the user can start the service from here. Applies until the service runs.
    void setCanStartService(bool canStart);
    void showStartFailure();

Q_SIGNALS:
    void keyboardsRequested(); ///< the user wants to choose a keyboard
    void helpRequested();      ///< the user wants to read what to do about the service
    void serviceMissed();      ///< no service runs, or its start has failed; setCanStartService() may answer
    void startRequested();     ///< the user wants to start the service
    void shown();              ///< or hidden again

private:
    enum class Start { unknown, possible, requested, failed };

    void setStart(Start start);
    void clickHelp();
    void updateWidgets();
    [[nodiscard]] const char *textKey() const;

    QLabel *mPicture = nullptr;
    QLabel *mText = nullptr;
    QPushButton *mKeyboards = nullptr;
    QPushButton *mHelp = nullptr; ///< or starts the service
    StatusState mState;
    Start mStart = Start::unknown; ///< of the service; unknown while one runs
    QTimer mStartLimit;
};
