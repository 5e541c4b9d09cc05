// SPDX-License-Identifier: MIT
#include "daemon/keyboards/keywatch.h"

#include "base/text.h"
#include "daemon/system/deadlinetimer.h"
#include "daemon/system/desktopnotices.h"
#include "daemon/system/logging.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The key thread does not wake the main thread for an event: a person does not notice the delay.
constexpr std::chrono::milliseconds passingInterval{20};

QByteArray lineOf(const KeyTap::Event &event)
{
    QByteArray line = event.side == KeyTap::Side::keyboard ? "keyboard " : "computer ";
    if (event.usage.page != 0)
        line += "usage " + QByteArray::number(event.usage.page) + ' ' + QByteArray::number(event.usage.usage);
    else
        line += "event " + QByteArray::number(event.type) + ' ' + QByteArray::number(event.code);
    return line + ' ' + QByteArray::number(event.value) + '\n';
}

bool isReaderGone(int pipe)
{
    pollfd state{.fd = pipe, .events = 0, .revents = 0};
    return ::poll(&state, 1, 0) > 0 && (state.revents & POLLERR);
}

} // namespace

KeyWatch::KeyWatch(CurrentKeyboard &keyboard, const QDBusConnection &bus)
    : KeyWatch(keyboard, bus, KeyClock{.now = DeadlineTimer::now})
{
    auto *timer = new DeadlineTimer(this);
    connect(timer, &DeadlineTimer::reached, this, &KeyWatch::wake);
    mClock.wakeAt = [timer](std::optional<KeyPath::Time> deadline) { timer->setDeadline(deadline); };
}

KeyWatch::KeyWatch(CurrentKeyboard &keyboard, const QDBusConnection &bus, KeyClock clock)
    : mKeyboard(keyboard), mClock(std::move(clock)), mQuestion(bus)
{
    mCallerWatch.setConnection(bus);
    mCallerWatch.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&mCallerWatch, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        mAnswer = {}; // it has no receiver
        end("caller gone");
    });
    mPassing.setInterval(passingInterval);
    mPassing.callOnTimeout(this, &KeyWatch::pass);
    connectQuestion();
}

KeyWatch::~KeyWatch()
{
    reset();
}

void KeyWatch::connectQuestion()
{
    connect(&mQuestion, &DesktopQuestion::impossible, this, [this](DesktopQuestion::Obstacle obstacle) {
        refuse(obstacle == DesktopQuestion::Obstacle::noButtons ? Refusal::noButtons : Refusal::noService);
    });
    connect(&mQuestion, &DesktopQuestion::shown, this, [this] {
        if (mState == State::announcing)
            run();
    });
    connect(&mQuestion, &DesktopQuestion::pressed, this, [this](const QString &button) {
        if (mState == State::asking && button == DesktopNotices::allowButton)
            announce();
        else if (mState == State::running)
            end("stopped");
        else
            refuse(Refusal::refused);
    });
    connect(&mQuestion, &DesktopQuestion::dismissed, this, [this] {
        if (mState == State::running)
            end("stopped");
        else
            refuse(Refusal::refused);
    });
}

void KeyWatch::start(const QString &caller, const QString &program, const Answer &answer)
{
    if (mState != State::idle)
        return answer(Refusal::busy);
    mState = State::asking;
    mAnswer = answer;
    mProgram = program;
    mCallerWatch.setWatchedServices({caller});
    setDeadline(mClock.now() + answerLimit);
    mQuestion.show(DesktopNotices::watchQuestion(mProgram));
}

/// The notification comes before the first key.
void KeyWatch::announce()
{
    mState = State::announcing;
    mQuestion.show(DesktopNotices::watchNotice(mProgram));
}

void KeyWatch::run()
{
    std::array<int, 2> ends{};
    // The ends do not share their flags: the reader cannot make the writing end wait.
    if (::pipe2(ends.data(), O_CLOEXEC) != 0 || ::fcntl(ends[1], F_SETFL, O_NONBLOCK) != 0)
        return refuse(Refusal::failed);
    qCWarning(lcDaemon, "watch: %s sees the keys, for at most %lld s", qUtf8Printable(mProgram),
              static_cast<long long>(watchLimit.count()));
    mState = State::running;
    mPipe = ends[1];
    mLost = 0;
    mKeyboard.setTapped(true);
    mPassing.start();
    setDeadline(mClock.now() + watchLimit);
    std::exchange(mAnswer, {})(ends[0]);
}

void KeyWatch::pass()
{
    while (const std::optional<KeyTap::Event> event = mKeyboard.takeTapped()) {
        if (!write(lineOf(*event)))
            ++mLost;
    }
    mLost += mKeyboard.takeLostTapped();
    if (mLost > 0)
        (void)write({});
    if (isReaderGone(mPipe))
        end("caller gone");
}

/// Writes the number of lost events, if there are any, and the line: both or nothing. False: nothing was written.
bool KeyWatch::write(const QByteArray &line)
{
    const QByteArray lost = mLost > 0 ? "lost " + QByteArray::number(mLost) + '\n' : QByteArray();
    const QByteArray text = lost + line;
    const bool isWritten = ::write(mPipe, text.constData(), static_cast<std::size_t>(text.size())) == text.size();
    if (isWritten)
        mLost = 0;
    return isWritten;
}

void KeyWatch::wake()
{
    if (!mDeadline || mClock.now() < *mDeadline)
        return setDeadline(mDeadline);
    if (mState == State::running)
        end("time over");
    else
        refuse(Refusal::unanswered);
}

void KeyWatch::refuse(Refusal reason)
{
    const Answer answer = std::exchange(mAnswer, {});
    reset();
    if (answer)
        answer(reason);
}

void KeyWatch::end(const char *reason)
{
    if (mState == State::running) {
        mPassing.stop();
        while (const std::optional<KeyTap::Event> event = mKeyboard.takeTapped()) {
            if (!write(lineOf(*event)))
                ++mLost;
        }
        (void)write(QByteArray("end ") + reason + '\n');
        qCInfo(lcDaemon, "watch: ended, %s", reason);
    }
    reset();
}

void KeyWatch::reset()
{
    if (mState == State::running)
        mKeyboard.setTapped(false);
    mPassing.stop();
    if (mPipe >= 0)
        ::close(std::exchange(mPipe, -1));
    mState = State::idle;
    mAnswer = {};
    mCallerWatch.setWatchedServices({});
    mQuestion.close();
    setDeadline({});
}

void KeyWatch::setDeadline(std::optional<KeyPath::Time> deadline)
{
    mDeadline = deadline;
    mClock.wakeAt(deadline);
}
