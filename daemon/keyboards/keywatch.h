// SPDX-License-Identifier: MIT
// Shows one program the keys of the keyboard in use and what the computer receives for them, if the user allows it. It
// could steal passwords: the desktop asks the user each time, and shows a notification while it runs. Main thread only.
#pragma once

#include "base/result.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/system/desktopquestion.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <functional>

/// One watch at a time. It ends after watchLimit, with its notification, and with the program: when the program leaves
/// the bus or closes its end of the pipe.
class KeyWatch : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds answerLimit{30};
    static constexpr std::chrono::seconds watchLimit{60};

    enum class Refusal {
        busy,       ///< another program watches, or the user is being asked
        noService,  ///< there is no desktop that could ask
        noButtons,  ///< the desktop's notifications cannot ask
        refused,    ///< by the user, also by dismissing the question
        unanswered, ///< within answerLimit
        failed,     ///< the system has no pipe left
    };

    /// The end of the pipe from which the program reads lines; docs/daemon-protocol.md describes them. The receiver of
    /// the answer owns the descriptor.
    using Answer = std::function<void(const Result<int, Refusal> &readingEnd)>;

    /// `keyboard` must outlive this.
    KeyWatch(CurrentKeyboard &keyboard, const QDBusConnection &bus);
    KeyWatch(CurrentKeyboard &keyboard, const QDBusConnection &bus, KeyClock clock);
    ~KeyWatch() override;

    /// `caller`: the program's unique name on the bus; `program`: its name for the user. Calls `answer` once, at once
    /// or later; never if the caller leaves the bus first.
    void start(const QString &caller, const QString &program, const Answer &answer);
    /// Must be called when a requested time has come.
    void wake();

private:
    enum class State { idle, asking, announcing, running };

    void connectQuestion();
    void ask();
    void announce();
    void run();
    void pass();
    [[nodiscard]] bool write(const QByteArray &line);
    void refuse(Refusal reason);
    void end(const char *reason);
    void reset();
    void setDeadline(std::optional<KeyPath::Time> deadline);

    CurrentKeyboard &mKeyboard;
    KeyClock mClock;
    DesktopQuestion mQuestion;
    QDBusServiceWatcher mCallerWatch;
    QTimer mPassing; // while running
    State mState = State::idle;
    Answer mAnswer;
    QString mProgram;
    std::optional<KeyPath::Time> mDeadline;
    int mPipe = -1; // the writing end
    quint64 mLost = 0;
};
