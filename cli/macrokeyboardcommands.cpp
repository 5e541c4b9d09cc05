// SPDX-License-Identifier: MIT
// "macro record" and "macro play": macros and the keyboard.
#include "base/document.h"
#include "cli/chosenrecord.h"
#include "cli/commandtable.h"
#include "cli/keydescription.h"
#include "cli/linewords.h"
#include "cli/untilended.h"
#include "cli/virtualkeyboardclient.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "macros/macrorecord.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

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

/// The macro that the first argument names and the time of "--seconds".
CommandResult<TimedMacro> chooseTimedMacro(CommandContext &context)
{
    std::optional<std::chrono::milliseconds> duration;
    if (context.hasOption(Options::seconds)) {
        const QString seconds = context.optionValue(Options::seconds);
        duration = secondsOf(seconds);
        if (!duration)
            return wrongUsage(u"\"%1\" is not a number of seconds above 0 and up to a day"_s.arg(seconds));
    }
    const CommandResult<ChosenRecord> chosen = chooseRecord(context, macroKind);
    if (!chosen)
        return chosen.error();
    return TimedMacro{.macro = *chosen, .duration = duration};
}

/// Begins the recording and prints the lines of the events as they come, until the recording must end or cannot
/// continue. Returns whether lines have come.
CommandResult<bool> record(CommandContext &context, const ChosenRecord &macro, const QVariantMap &request,
                           std::optional<std::chrono::milliseconds> duration)
{
    bool hasPrintedLines = false;
    QEventLoop loop;
    auto &notifications = DistributedNotificationCenter::defaultCenter();
    const auto printLines = [&](const DistributedNotification &notification) {
        // A notification that the macro is full has no lines.
        for (const QVariant &line : notification.userInfo.value(DaemonProtocol::messagesArray).toList()) {
            hasPrintedLines = true;
            context.console.printNow(line.toString().trimmed());
        }
    };
    notifications.addObserver(&loop, DaemonProtocol::macroSequenceNotification, printLines);
    notifications.addObserver(&loop, DaemonProtocol::deviceRemoved,
                              [&loop](const DistributedNotification &) { loop.quit(); });
    const QDBusServiceWatcher daemonWatch(messagePortBusName(DaemonProtocol::requestPortName), sharedSessionBus(),
                                          QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(&daemonWatch, &QDBusServiceWatcher::serviceUnregistered, &loop, &QEventLoop::quit);
    const CommandResult<QVariantMap> reply =
        context.daemon.sendChecked(Command::startMacroRecording, request, macro.words() + u" cannot be recorded"_s);
    if (!reply)
        return reply.error();
    runUntilEnded(loop, duration);
    return hasPrintedLines;
}

/// Ends the recording and stores it. Returns the document.
CommandResult<QVariantMap> save(CommandContext &context, const ChosenRecord &macro, const QVariantMap &request)
{
    const QString failure = u"the recording of %1 cannot be stored"_s.arg(macro.words());
    const CommandResult<QVariantMap> stopped = context.daemon.sendChecked(Command::stopMacroRecording, {}, failure);
    if (!stopped)
        return stopped.error();
    const CommandResult<QVariantMap> saved = context.daemon.sendChecked(Command::saveRecordedEvents, request, failure);
    if (!saved)
        return saved.error();
    return context.daemon.document();
}

/// A key of the active profile that plays the macro, and how.
struct PlayingKey
{
    int code = 0;
    int repeat = KeyMappings::playOnceValue;
};

std::optional<PlayingKey> keyThatPlays(const QVariantMap &document, int macro)
{
    const QVariantMap profile = Document(document).activeProfile();
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        const KeyMappings::Entry entry = KeyMappings::entryForKey(profile, row.code);
        if (entry.is(KeyMappings::Assignment::playMacro) && entry.param1 == macro)
            return PlayingKey{.code = row.code, .repeat = entry.param2};
    }
    return {};
}

CommandResult<void> pressOnce(int code)
{
    const CommandResult<void> pressed = VirtualKeyboardClient::pressKey(code);
    return pressed ? VirtualKeyboardClient::releaseKey(code) : pressed;
}

/// Does to the key what a finger would: a key that repeats until released is held, one that repeats until pressed again
/// is pressed again.
CommandResult<void> pressFor(const PlayingKey &key, std::chrono::milliseconds duration)
{
    QEventLoop loop;
    if (key.repeat == KeyMappings::repeatUntilReleasedValue) {
        const CommandResult<void> pressed = VirtualKeyboardClient::pressKey(key.code);
        if (!pressed)
            return pressed;
        runUntilEnded(loop, duration);
        return VirtualKeyboardClient::releaseKey(key.code);
    }
    const CommandResult<void> played = pressOnce(key.code);
    if (!played || key.repeat != KeyMappings::repeatUntilPressedAgainValue)
        return played;
    runUntilEnded(loop, duration);
    return pressOnce(key.code);
}

} // namespace

CommandResult<void> recordMacro(CommandContext &context)
{
    const CommandResult<TimedMacro> timed = chooseTimedMacro(context);
    if (!timed)
        return timed.error();
    const ChosenRecord &chosen = timed->macro;
    const QVariantMap request{{DaemonProtocol::macroId, chosen.index},
                              {DaemonProtocol::isAppendRecording, context.hasOption(Options::append) ? 1 : 0}};
    const CommandResult<bool> hasPrintedLines = record(context, chosen, request, timed->duration);
    if (!hasPrintedLines)
        return hasPrintedLines.error();
    const CommandResult<QVariantMap> document = save(context, chosen, request);
    if (!document)
        return document.error();
    const QVariantMap saved = Document(*document).macro(chosen.index);
    const QVariantList events = MacroRecord::events(saved);
    // The last lines may not have come before the recording was ended.
    const bool isEmpty = !*hasPrintedLines && events == MacroRecord::events(chosen.record());
    const QString format = isEmpty ? u"nothing was recorded: %1 still has %2"_s : u"%1 has %2"_s;
    context.console.print(format.arg(chosen.words(), eventCount(events.size())));
    return {};
}

CommandResult<void> playMacro(CommandContext &context)
{
    const CommandResult<TimedMacro> timed = chooseTimedMacro(context);
    if (!timed)
        return timed.error();
    const ChosenRecord &chosen = timed->macro;
    const std::optional<PlayingKey> key = keyThatPlays(chosen.document, chosen.index);
    if (!key)
        return wrongUsage(u"no key of the active profile plays %1 (see kestractl help key)"_s.arg(chosen.words()));
    const CommandResult<void> played = pressFor(*key, timed->duration.value_or(usualPlayTime));
    if (!played)
        return played;
    context.console.print(keyName(key->code) + u": "_s + describeKey(chosen.document, key->code));
    return {};
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
