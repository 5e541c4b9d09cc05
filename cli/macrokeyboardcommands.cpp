// SPDX-License-Identifier: MIT
// "macro record" and "macro play": macros and the keyboard.
#include "base/hidpages.h"
#include "base/settingskeys.h"
#include "cli/chosenrecord.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/untilended.h"
#include "cli/virtualkeyboardclient.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "macros/macrorecord.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"

#include <QDBusServiceWatcher>
#include <QEventLoop>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using DaemonProtocol::Command;

namespace {

constexpr std::chrono::milliseconds usualPlayTime = 1s;

/// A macro, and for how long to record or to play it.
struct TimedMacro
{
    ChosenRecord macro;
    std::optional<std::chrono::milliseconds> duration; ///< absent without "--seconds"
};

/// The macro that the first argument names and the time of "--seconds". Absent when one of them makes no sense:
/// `failure` is then the exit code, and the console has printed the reason.
std::optional<TimedMacro> chooseTimedMacro(CommandContext &context, ExitCode &failure)
{
    std::optional<std::chrono::milliseconds> duration;
    if (context.hasOption(Options::seconds)) {
        const QString seconds = context.optionValue(Options::seconds);
        duration = secondsOf(seconds);
        if (!duration) {
            failure = context.console.fail(ExitCode::usage,
                                           u"\"%1\" is no number of seconds above 0 and up to a day"_s.arg(seconds));
            return {};
        }
    }
    const auto chosen = chooseRecord(context, macroKind, failure);
    return chosen ? std::optional(TimedMacro{.macro = *chosen, .duration = duration}) : std::nullopt;
}

struct Recording
{
    DaemonClient::Answer answer;
    bool hasPrintedLines = false;
};

/// Begins the recording and prints the lines of the events as they come, until it is to end or can go on no more.
Recording record(CommandContext &context, const QVariantMap &request, std::optional<std::chrono::milliseconds> duration)
{
    Recording recording;
    QEventLoop loop;
    auto &notifications = DistributedNotificationCenter::defaultCenter();
    const auto printLines = [&](const DistributedNotification &notification) {
        recording.hasPrintedLines = true;
        for (const QVariant &line : notification.userInfo.value(DaemonProtocol::messagesArray).toList())
            context.console.printNow(line.toString().trimmed());
    };
    notifications.addObserver(&loop, DaemonProtocol::macroSequenceNotification, printLines);
    notifications.addObserver(&loop, DaemonProtocol::deviceRemoved,
                              [&loop](const DistributedNotification &) { loop.quit(); });
    const QDBusServiceWatcher daemonWatch(messagePortBusName(DaemonProtocol::requestPortName),
                                          QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&daemonWatch, &QDBusServiceWatcher::serviceUnregistered, &loop, &QEventLoop::quit);
    recording.answer = context.daemon.sendChecked(Command::startMacroRecording, request);
    if (recording.answer.ok())
        runUntilEnded(loop, duration);
    return recording;
}

/// A key of the active profile that plays the macro, and how.
struct PlayingKey
{
    int code = 0;
    int repeat = KeyMappings::playOnceValue;
};

std::optional<PlayingKey> keyThatPlays(const QVariantMap &document, int macro)
{
    const QVariantMap profile = activeProfileRecord(document);
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const KeyMappings::Entry entry = KeyMappings::entryForKey(profile, row.code);
        if (entry.is(KeyMappings::Assignment::playMacro) && entry.param1 == macro)
            return PlayingKey{.code = row.code, .repeat = entry.param2};
    }
    return {};
}

DaemonObjectResult sendKey(QLatin1StringView method, int code)
{
    return VirtualKeyboardClient::call(method, {uint{HidPages::keyboard}, static_cast<uint>(code)});
}

/// Does to the key what a finger would: one that repeats until released is held, one that repeats until pressed again
/// is pressed again.
DaemonObjectResult pressFor(const PlayingKey &key, std::chrono::milliseconds duration)
{
    QEventLoop loop;
    const bool isHeld = key.repeat == KeyMappings::repeatUntilReleasedValue;
    DaemonObjectResult result = sendKey("Press"_L1, key.code);
    if (result.failure != ExitCode::ok)
        return result;
    if (isHeld)
        runUntilEnded(loop, duration);
    result = sendKey("Release"_L1, key.code);
    if (result.failure != ExitCode::ok || key.repeat != KeyMappings::repeatUntilPressedAgainValue)
        return result;
    runUntilEnded(loop, duration);
    result = sendKey("Press"_L1, key.code);
    return result.failure == ExitCode::ok ? sendKey("Release"_L1, key.code) : result;
}

} // namespace

ExitCode recordMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto timed = chooseTimedMacro(context, failure);
    if (!timed)
        return failure;
    const ChosenRecord &chosen = timed->macro;
    const QVariantMap request{{DaemonProtocol::macroId, chosen.number},
                              {DaemonProtocol::isAppendRecording, context.hasOption(Options::append) ? 1 : 0}};
    const Recording recording = record(context, request, timed->duration);
    DaemonClient::Answer answer = recording.answer;
    if (answer.ok())
        answer = context.daemon.sendChecked(Command::stopMacroRecording);
    if (answer.ok())
        answer = context.daemon.sendChecked(Command::saveRecordedEvents, request);
    if (answer.ok())
        answer = context.daemon.document();
    if (!answer.ok())
        return context.console.fail(answer.failure, answer.reason);
    const QVariantMap saved = answer.reply.value(SettingsKeys::macros).toList().value(chosen.number).toMap();
    const QVariantList events = MacroRecord::events(saved);
    // The last lines may not have come before the recording was ended.
    const bool isEmpty = !recording.hasPrintedLines && events == MacroRecord::events(chosen.record());
    const QString format = isEmpty ? u"nothing was recorded: %1 still has %2 events"_s : u"%1 has %2 events"_s;
    context.console.print(format.arg(chosen.words()).arg(events.size()));
    return ExitCode::ok;
}

ExitCode playMacro(CommandContext &context)
{
    ExitCode failure = ExitCode::ok;
    const auto timed = chooseTimedMacro(context, failure);
    if (!timed)
        return failure;
    const ChosenRecord &chosen = timed->macro;
    const std::optional<PlayingKey> key = keyThatPlays(chosen.document, chosen.number);
    if (!key)
        return context.console.fail(
            ExitCode::usage, u"no key of the active profile plays %1 (see kestractl help key)"_s.arg(chosen.words()));
    const DaemonObjectResult result = pressFor(*key, timed->duration.value_or(usualPlayTime));
    if (result.failure != ExitCode::ok)
        return context.console.fail(result.failure, result.reason);
    context.console.print(keyName(key->code) + u": "_s + describeKey(chosen.document, key->code));
    return ExitCode::ok;
}

QList<CommandForm> recordMacroForms()
{
    return {{.words = u"N|NAME [--append] [--seconds S]"_s,
             .help = u"record the keys of the keyboard, until Return or for S seconds"_s}};
}

QList<CommandForm> playMacroForms()
{
    return {
        {.words = u"N|NAME [--seconds S]"_s, .help = u"press the key of the virtual keyboard that plays a macro"_s}};
}
