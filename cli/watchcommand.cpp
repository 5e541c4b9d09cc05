// SPDX-License-Identifier: MIT
// "device watch": what comes from the keyboard, and what goes to the computer.
#include "base/devicekeys.h"
#include "base/hidusage.h"
#include "base/keycodes.h"
#include "base/keywatchkeys.h"
#include "cli/commandtable.h"
#include "cli/deviceclient.h"
#include "keys/keynames.h"

#include <QDBusUnixFileDescriptor>

#include <linux/input-event-codes.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

// Longer than the daemon waits for the user's answer.
constexpr int answerLimitMs = 45000;
constexpr qsizetype columnWidth = 26;
constexpr int otherSideLimitMs = 100; // the daemon passes events on every 20 ms

constexpr OwnError ownErrors[] = {
    {KeyWatchKeys::busyError}, {KeyWatchKeys::noQuestionError}, {KeyWatchKeys::refusedError}};
constexpr DaemonObjectClient keyWatch{.path = KeyWatchKeys::objectPath,
                                      .interface = KeyWatchKeys::interfaceName,
                                      .words = "display of keys"_L1,
                                      .ownErrors = ownErrors};

struct NamedCode
{
    int code;
    QLatin1StringView name;
};

/// Keys without an assignment that many keyboards have.
constexpr NamedCode mediaKeys[] = {
    {KEY_MUTE, "Mute"_L1},
    {KEY_VOLUMEDOWN, "Volume Down"_L1},
    {KEY_VOLUMEUP, "Volume Up"_L1},
    {KEY_PLAYPAUSE, "Play/Pause"_L1},
    {KEY_NEXTSONG, "Next Song"_L1},
    {KEY_PREVIOUSSONG, "Previous Song"_L1},
    {KEY_STOPCD, "Stop"_L1},
    {KEY_CALC, "Calculator"_L1},
    {KEY_MAIL, "Mail"_L1},
    {KEY_HOMEPAGE, "Home Page"_L1},
    {KEY_SLEEP, "Sleep"_L1},
    {KEY_FN, "Fn"_L1},
    {KEY_BRIGHTNESSDOWN, "Brightness Down"_L1},
    {KEY_BRIGHTNESSUP, "Brightness Up"_L1},
};

QString nameOfUsage(int page, int usage)
{
    const QString name = page == HidUsage::keyboardPage ? keyName(usage) : QString();
    if (!name.isEmpty())
        return name;
    if (page == HidUsage::buttonPage)
        return u"mouse button %1"_s.arg(usage);
    if (page == HidUsage::consumerPage && usage == HidUsage::brightnessUp)
        return u"Light Up"_s;
    if (page == HidUsage::consumerPage && usage == HidUsage::brightnessDown)
        return u"Light Down"_s;
    return u"usage %1:%2"_s.arg(page).arg(usage);
}

QString nameOfCode(int code)
{
    for (const NamedCode &key : mediaKeys) {
        if (key.code == code)
            return key.name;
    }
    if (const std::optional<HidUsage> usage = KeyCodes::usageOfCode(static_cast<quint16>(code)))
        return nameOfUsage(usage->page, usage->usage);
    if (code >= BTN_LEFT && code <= BTN_TASK)
        return u"mouse button %1"_s.arg(code - BTN_LEFT + 1);
    return u"key code %1"_s.arg(code);
}

QString downOrUp(const QString &name, int value)
{
    return name + (value != 0 ? u" down"_s : u" up"_s);
}

/// The words for the part of a line after its side: "usage 7 4 1". Empty if the line is of another kind.
QString wordsOf(const QStringList &parts)
{
    if (parts.size() != 4)
        return {};
    const int group = parts.at(1).toInt();
    const int number = parts.at(2).toInt();
    const int value = parts.at(3).toInt();
    if (parts.at(0) == KeyWatchKeys::usage)
        return downOrUp(nameOfUsage(group, number), value);
    switch (group) {
    case EV_KEY: return downOrUp(nameOfCode(number), value);
    case EV_REL: return u"wheel %1: %2"_s.arg(number).arg(value);
    case EV_ABS: return u"volume: %1"_s.arg(value);
    case EV_SW: return u"switch %1 %2"_s.arg(number).arg(value != 0 ? "on"_L1 : "off"_L1);
    default: return {};
    }
}

/// Prints the lines of the pipe in two columns.
class Columns
{
public:
    explicit Columns(Console &console) : mConsole(console) {}

    void take(const QString &line)
    {
        const QStringList parts = line.split(u' ');
        const QString words = wordsOf(parts.sliced(1));
        if (parts.first() == KeyWatchKeys::keyboard && !words.isEmpty()) {
            finishRow();
            mLeft = words;
        } else if (parts.first() == KeyWatchKeys::computer && !words.isEmpty()) {
            mConsole.printNow(std::exchange(mLeft, {}).leftJustified(columnWidth) + words);
        } else if (parts.first() == KeyWatchKeys::lost) {
            finishRow();
            mConsole.printNow(u"(%1 events were lost)"_s.arg(parts.value(1)));
        } else if (parts.first() == KeyWatchKeys::end) {
            finishRow();
            mEnd = line.sliced(parts.first().size()).trimmed();
        }
    }
    [[nodiscard]] bool isRowOpen() const { return !mLeft.isEmpty(); }
    /// Must be called when nothing belongs to the last key.
    void finishRow()
    {
        if (!mLeft.isEmpty())
            mConsole.printNow(std::exchange(mLeft, {}));
    }
    /// Why the daemon has ended; empty until then.
    [[nodiscard]] const QString &end() const { return mEnd; }

private:
    Console &mConsole;
    QString mLeft; // waits for the other side
    QString mEnd;
};

/// The other side of a key comes at once; a key that only has one side must not wait for the next key.
bool isMoreComing(int pipe)
{
    pollfd state{.fd = pipe, .events = POLLIN, .revents = 0};
    return ::poll(&state, 1, otherSideLimitMs) > 0;
}

void readLines(int pipe, Columns &columns)
{
    QByteArray unfinished;
    for (;;) {
        if (columns.isRowOpen() && !isMoreComing(pipe))
            columns.finishRow();
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(pipe, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return columns.finishRow();
        unfinished.append(bytes.data(), count);
        for (qsizetype end = 0; (end = unfinished.indexOf('\n')) >= 0;) {
            columns.take(QString::fromUtf8(unfinished.first(end)));
            unfinished.remove(0, end + 1);
        }
    }
}

/// The end of the pipe, once the user has allowed it.
CommandResult<QDBusUnixFileDescriptor> openPipe()
{
    const DaemonObjectResult<QVariantList> started =
        keyWatch.call("Start"_L1, {}, u"the keys cannot be shown"_s, answerLimitMs);
    if (!started)
        return started.error();
    return started->value(0).value<QDBusUnixFileDescriptor>();
}

} // namespace

CommandResult<void> watchDevices(CommandContext &context)
{
    const auto status = DeviceClient::status();
    if (!status)
        return status.error();
    const QStringList names = status->value(DeviceKeys::names).toStringList();
    context.console.printNow(u"keyboard: "_s + (names.isEmpty() ? u"the virtual keyboard"_s : names.join(u", "_s)));
    context.console.printNow(u"your desktop asks whether you allow this"_s);
    const CommandResult<QDBusUnixFileDescriptor> pipe = openPipe();
    if (!pipe)
        return pipe.error();
    context.console.printNow(u"from the keyboard"_s.leftJustified(columnWidth) + u"to the computer"_s);
    Columns columns(context.console);
    readLines(pipe->fileDescriptor(), columns);
    if (columns.end().isEmpty())
        return CommandError{{u"the daemon has ended"_s}, ExitCode::noDaemon};
    context.console.print(u"ended: "_s + columns.end());
    return {};
}
