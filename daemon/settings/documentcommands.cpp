// SPDX-License-Identifier: MIT
#include "daemon/settings/documentcommands.h"

#include "base/document.h"
#include "base/settingskeys.h"
#include "daemon/settings/requestreader.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/textnumbers.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <algorithm>
#include <array>

using DaemonProtocol::Command;
using namespace SettingsDocument;

namespace {

CommandOutcome failure(const QVariantMap &document, Status status)
{
    return {.status = status, .document = document, .reply = {}, .changesDocument = false};
}

/// The reply of a command that only reads.
CommandOutcome replyWith(const QVariantMap &document, QLatin1StringView key, const QVariant &value)
{
    return {.status = Status::ok, .document = document, .reply = {{key, value}}, .changesDocument = false};
}

/// The outcome `changed`, unless it is over a limit of the document.
CommandOutcome change(const QVariantMap &document, const QVariantMap &changed)
{
    const QVariantMap whole = completed(changed);
    if (!validate(whole))
        return failure(document, Status::limitReached);
    return {.status = Status::ok, .document = whole, .reply = {}, .changesDocument = true};
}

bool isIndexIn(int index, const QVariantList &list)
{
    return index >= 0 && index < list.size();
}

CommandOutcome readSettings(const QVariantMap &document, const QVariantMap &)
{
    return replyWith(document, DaemonProtocol::allDevSettings, document);
}

// Profiles

CommandOutcome addProfile(const QVariantMap &document, const QVariantMap &request)
{
    const auto settings = RequestReader::dictionary(request, DaemonProtocol::deviceSettingsDictionary);
    if (!settings || !isWellFormedProfile(*settings))
        return failure(document, Status::malformedRequest);
    QVariantList list = Document(document).profiles();
    if (list.size() >= maximumProfiles)
        return failure(document, Status::limitReached);
    list += TextNumbers::readInProfile(*settings);
    const QVariantMap longer = withProfiles(document, list);
    if (RequestReader::flag(request, DaemonProtocol::keepsActiveProfile).value_or(false))
        return change(document, longer);
    // The new profile becomes active, because a client that adds a profile selects its row. The client shows the active
    // profile and writes to the selected row. If these differed, it would copy the keys of one profile into another.
    return change(document, withActiveProfile(longer, static_cast<int>(list.size()) - 1));
}

CommandOutcome updateProfile(const QVariantMap &document, const QVariantMap &request)
{
    const auto index = RequestReader::number(request, DaemonProtocol::profileId);
    const auto settings = RequestReader::dictionary(request, DaemonProtocol::deviceSettingsDictionary);
    if (!index || !settings)
        return failure(document, Status::malformedRequest);
    QVariantList list = Document(document).profiles();
    if (!isIndexIn(*index, list))
        return failure(document, Status::indexOutOfRange);
    QVariantMap profile = list.at(*index).toMap();
    profile.insert(*settings);
    if (!isWellFormedProfile(profile))
        return failure(document, Status::malformedRequest);
    list[*index] = profile;
    return change(document, withProfiles(document, list));
}

CommandOutcome replaceAllProfiles(const QVariantMap &document, const QVariantMap &request)
{
    const auto list = RequestReader::array(request, DaemonProtocol::allProfiles);
    if (!list || list->isEmpty() || !std::ranges::all_of(*list, isWellFormedProfile))
        return failure(document, Status::malformedRequest);
    if (list->size() > maximumProfiles)
        return failure(document, Status::limitReached);
    const int active = std::min(Document(document).activeProfileIndex(), static_cast<int>(list->size()) - 1);
    return change(document, withActiveProfile(withProfiles(document, *list), active));
}

CommandOutcome deleteProfile(const QVariantMap &document, const QVariantMap &request)
{
    const auto index = RequestReader::number(request, DaemonProtocol::profileId);
    if (!index)
        return failure(document, Status::malformedRequest);
    QVariantList list = Document(document).profiles();
    if (!isIndexIn(*index, list))
        return failure(document, Status::indexOutOfRange);
    if (list.size() == 1)
        return failure(document, Status::lastProfile);
    list.removeAt(*index);
    // The active profile stays active. If it is the deleted one, the one before it becomes active.
    int active = Document(document).activeProfileIndex();
    if (*index <= active)
        active = std::max(0, active - 1);
    return change(document, withActiveProfile(withProfiles(document, list), active));
}

CommandOutcome switchProfile(const QVariantMap &document, const QVariantMap &request)
{
    const auto index = RequestReader::number(request, DaemonProtocol::profileId);
    if (!index)
        return failure(document, Status::malformedRequest);
    if (!isIndexIn(*index, Document(document).profiles()))
        return failure(document, Status::indexOutOfRange);
    return change(document, withActiveProfile(document, *index));
}

// Macros

/// The macro with the index that `request` has under `indexKey`, or the reason why there is none.
struct MacroAddress
{
    Status status = Status::ok;
    int index = -1;
    QVariantMap macro;
};

MacroAddress macroAt(const QVariantMap &document, const QVariantMap &request, QLatin1StringView indexKey)
{
    const auto index = RequestReader::number(request, indexKey);
    if (!index)
        return {.status = Status::malformedRequest, .index = -1, .macro = {}};
    const QVariantList list = Document(document).macros();
    if (!isIndexIn(*index, list))
        return {.status = Status::indexOutOfRange, .index = -1, .macro = {}};
    return {.status = Status::ok, .index = *index, .macro = list.at(*index).toMap()};
}

CommandOutcome changeMacro(const QVariantMap &document, int index, const QVariantMap &macro)
{
    QVariantList list = Document(document).macros();
    list[index] = macro;
    return change(document, withMacros(document, list));
}

/// The macro with `events`, which are absent if the edited display row does not exist.
CommandOutcome changeEvents(const QVariantMap &document, const MacroAddress &address,
                            const std::optional<QVariantList> &events)
{
    if (!events)
        return failure(document, Status::indexOutOfRange);
    return changeMacro(document, address.index, MacroRecord::withEvents(address.macro, *events));
}

CommandOutcome addMacro(const QVariantMap &document, const QVariantMap &request)
{
    auto macro = RequestReader::dictionary(request, DaemonProtocol::macroContents);
    if (!macro)
        return failure(document, Status::malformedRequest);
    macro->remove(SettingsKeys::macroId); // a new macro gets a number of its own
    macro = TextNumbers::readInMacro(*macro);
    if (MacroRecord::events(*macro).size() > MacroRecord::maximumEvents)
        return failure(document, Status::limitReached);
    if (!MacroRecord::isWellFormed(*macro))
        return failure(document, Status::malformedRequest);
    return change(document, withMacros(document, Document(document).macros() << *macro));
}

CommandOutcome deleteMacro(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    if (address.status != Status::ok)
        return failure(document, address.status);
    QVariantList list = Document(document).macros();
    list.removeAt(address.index);
    return change(document, withMacros(document, list));
}

CommandOutcome renameMacro(const QVariantMap &document, const QVariantMap &request)
{
    const auto contents = RequestReader::dictionary(request, DaemonProtocol::macroContents);
    const auto name = contents ? RequestReader::text(*contents, SettingsKeys::macroName) : std::nullopt;
    if (!name || name->isEmpty())
        return failure(document, Status::malformedRequest);
    MacroAddress address = macroAt(document, *contents, SettingsKeys::macroId); // here, this key has the index
    if (address.status != Status::ok)
        return failure(document, address.status);
    address.macro.insert(SettingsKeys::macroName, *name);
    return changeMacro(document, address.index, address.macro);
}

CommandOutcome readMacroLines(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::indexOfMacroSequence);
    if (address.status != Status::ok)
        return failure(document, address.status);
    QVariantList lines;
    for (const QString &line : eventParser::getMessagesArray(MacroRecord::events(address.macro)))
        lines += line;
    return replyWith(document, DaemonProtocol::macroSequences, lines);
}

// Events

CommandOutcome removeEvent(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    const auto eventRow = RequestReader::number(request, DaemonProtocol::macroEventTableIndex);
    if (address.status != Status::ok || !eventRow)
        return failure(document, eventRow ? address.status : Status::malformedRequest);
    return changeEvents(document, address,
                        MacroRecord::removingEventOfRow(MacroRecord::events(address.macro), *eventRow));
}

// The configurator masks the macro's index and the row of commands 24 and 28 to 8 bits. The daemon takes both unmasked,
// so other clients reach those above 255.
CommandOutcome updateEvent(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    const auto eventRow = RequestReader::number(request, DaemonProtocol::sequenceIndex);
    const auto event = RequestReader::dictionary(request, DaemonProtocol::sequence);
    if (!eventRow || !event || !MacroRecord::isWellFormedEvent(*event))
        return failure(document, Status::malformedRequest);
    if (address.status != Status::ok)
        return failure(document, address.status);
    return changeEvents(document, address,
                        MacroRecord::replacingEventOfRow(MacroRecord::events(address.macro), *eventRow, *event));
}

CommandOutcome readEvent(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    const auto eventRow = RequestReader::number(request, DaemonProtocol::sequenceIndex);
    if (address.status != Status::ok || !eventRow)
        return failure(document, eventRow ? address.status : Status::malformedRequest);
    const QVariantList events = MacroRecord::events(address.macro);
    const std::optional<int> index = MacroRecord::eventIndexOfRow(events, *eventRow);
    if (!index)
        return failure(document, Status::indexOutOfRange);
    return replyWith(document, DaemonProtocol::sequenceInMacro, events.at(*index).toMap());
}

CommandOutcome removeAllEvents(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    if (address.status != Status::ok)
        return failure(document, address.status);
    return changeEvents(document, address, QVariantList());
}

// Deliberate: without "HasNoDelay" the key "delay" has a display row, not a time. Every event gets that row's delay.
CommandOutcome setAllDelays(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    const auto hasNoDelay = RequestReader::flag(request, DaemonProtocol::hasNoDelay);
    if (address.status != Status::ok || !hasNoDelay)
        return failure(document, hasNoDelay ? address.status : Status::malformedRequest);
    const QVariantList events = MacroRecord::events(address.macro);
    if (*hasNoDelay)
        return changeEvents(document, address, MacroRecord::settingAllDelays(events, 0));
    const auto eventRow = RequestReader::number(request, DaemonProtocol::delay);
    if (!eventRow)
        return failure(document, Status::malformedRequest);
    return changeEvents(document, address, MacroRecord::copyingDelayOfRowToAll(events, *eventRow));
}

CommandOutcome setDelay(const QVariantMap &document, const QVariantMap &request)
{
    const MacroAddress address = macroAt(document, request, DaemonProtocol::macroId);
    const auto eventRow = RequestReader::number(request, DaemonProtocol::sequenceIndex);
    const auto delayMs = RequestReader::number(request, DaemonProtocol::delay);
    if (!eventRow || !delayMs || *delayMs < 0)
        return failure(document, Status::malformedRequest);
    if (address.status != Status::ok)
        return failure(document, address.status);
    return changeEvents(document, address,
                        MacroRecord::settingDelayOfRow(MacroRecord::events(address.macro), *eventRow, *delayMs));
}

constexpr std::array documentCommands{
    DocumentCommand{Command::readSettings, readSettings, ReturnsDocument::never, DocumentUse::reads},
    DocumentCommand{Command::addProfile, addProfile, ReturnsDocument::always},
    DocumentCommand{Command::updateProfile, updateProfile, ReturnsDocument::always},
    DocumentCommand{Command::replaceAllProfiles, replaceAllProfiles, ReturnsDocument::always},
    // Not on failure: a client that receives a document assumes the deletion and clears the keys that led to the
    // profile.
    DocumentCommand{Command::deleteProfile, deleteProfile, ReturnsDocument::onSuccess},
    DocumentCommand{Command::switchProfile, switchProfile, ReturnsDocument::always},
    DocumentCommand{Command::deleteMacro, deleteMacro},
    DocumentCommand{Command::removeEvent, removeEvent},
    DocumentCommand{Command::updateEvent, updateEvent},
    DocumentCommand{Command::renameMacro, renameMacro},
    DocumentCommand{Command::readMacroLines, readMacroLines, ReturnsDocument::never, DocumentUse::reads},
    DocumentCommand{Command::readEvent, readEvent, ReturnsDocument::never, DocumentUse::reads},
    DocumentCommand{Command::addMacro, addMacro},
    DocumentCommand{Command::removeAllEvents, removeAllEvents},
    DocumentCommand{Command::setAllDelays, setAllDelays},
    DocumentCommand{Command::setDelay, setDelay},
};

static_assert(std::ranges::all_of(documentCommands,
                                  [](const DocumentCommand &command) {
                                      return static_cast<qint32>(command.command) < DaemonProtocol::commandLimit;
                                  }),
              "every command is below the limit of the protocol");

} // namespace

const DocumentCommand *findDocumentCommand(qint32 number)
{
    const auto found = std::ranges::find(documentCommands, static_cast<Command>(number), &DocumentCommand::command);
    return found == documentCommands.end() ? nullptr : &*found;
}

CommandOutcome saveEvents(const QVariantMap &document, int index, const QVariantList &events, bool isAppended)
{
    const QVariantList list = Document(document).macros();
    if (!isIndexIn(index, list))
        return failure(document, Status::indexOutOfRange);
    const QVariantMap macro = list.at(index).toMap();
    const QVariantList all = isAppended ? MacroRecord::events(macro) + events : events;
    return changeMacro(document, index, MacroRecord::withEvents(macro, all));
}
