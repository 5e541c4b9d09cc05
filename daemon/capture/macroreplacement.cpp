// SPDX-License-Identifier: MIT
#include "daemon/capture/macroreplacement.h"

#include "base/document.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemon/capture/capturesession.h"
#include "daemon/settings/changeauthor.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"

#include <array>
#include <optional>

using namespace Qt::StringLiterals;
using Failure = MacroReplacement::Failure;
using Refusal = MacroReplacement::Refusal;

namespace {

Failure failure(Refusal refusal, const QString &message)
{
    return {Error{message}, refusal};
}

/// The fault of `event`; empty if it can be stored.
QString faultOf(const QVariant &event)
{
    if (event.typeId() != QMetaType::QVariantMap)
        return u"not a dictionary"_s;
    const QVariantMap fields = event.toMap();
    for (const SettingsKeys::Key key :
         {SettingsKeys::command, SettingsKeys::delay, SettingsKeys::page, SettingsKeys::argument}) {
        if (fields.contains(key) && !MacroRecord::isWellFormedEvent({{key, fields.value(key)}}))
            return u"\"%1\" is not a number"_s.arg(key);
    }
    return {};
}

/// The events in `bytes`, for the macro at `index`.
Result<QVariantList> eventsIn(const QByteArray &bytes, const QVariantList &macros, int index)
{
    const std::optional<QVariant> list = PropertyList::read(bytes);
    if (!list || list->typeId() != QMetaType::QVariantList)
        return Error{u"it is not a property list with an array"_s};
    const QVariantList events = list->toList();
    if (const QString fault = MacroRecord::faultOfCount(macros, index, events.size()); !fault.isEmpty())
        return Error{fault};
    for (qsizetype each = 0; each < events.size(); ++each) {
        if (const QString fault = faultOf(events.at(each)); !fault.isEmpty())
            return Error{u"event %1: %2"_s.arg(each + 1).arg(fault)};
    }
    return events;
}

} // namespace

MacroReplacement::MacroReplacement(CurrentSettings &settings, const CaptureSession &captures)
    : mSettings(settings), mCaptures(captures)
{
}

Result<void, Failure> MacroReplacement::replace(quint32 macroId, const QString &digest, const QByteArray &events,
                                                const QString &sourceApp)
{
    const QVariantMap document = mSettings.document();
    QVariantList macros = Document(document).macros();
    const std::optional<int> index = MacroRecord::indexOfMacroId(macros, macroId);
    if (!index)
        return failure(Refusal::gone, u"there is no such macro any more"_s);
    const QVariantMap macro = macros.at(*index).toMap();
    if (mCaptures.isRecording(MacroRecord::macroId(macro)))
        return failure(Refusal::busy, u"the macro is being recorded"_s);
    if (MacroRecord::digest(MacroRecord::events(macro)) != digest)
        return failure(Refusal::changed, u"the events of the macro have changed since they were read"_s);
    const Result<QVariantList> given = eventsIn(events, macros, *index);
    if (!given)
        return failure(Refusal::invalid, given.error().message);
    macros[*index] = MacroRecord::withEvents(macro, *given);
    const QVariantMap changed = SettingsDocument::completed(SettingsDocument::withMacros(document, macros));
    if (const Result<void> valid = SettingsDocument::validate(changed); !valid)
        return failure(Refusal::invalid, valid.error().message);
    const CommandOutcome stored =
        mSettings.storeOutcome({.status = Status::ok, .document = changed, .reply = {}, .changesDocument = true},
                               {.author = authorOfSource(sourceApp)});
    if (stored.status != Status::ok)
        return failure(Refusal::notSaved, u"the settings folder cannot be written (is the disk full?)"_s);
    if (stored.changesDocument)
        mSettings.postUpdated(sourceApp);
    return {};
}
