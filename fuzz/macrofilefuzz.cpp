// SPDX-License-Identifier: MIT
// Macro files. Whatever the file contains, importing it leaves a valid document, and the window and the engine can use
// the macro.
#include "base/document.h"
#include "base/settingskeys.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/keysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "fuzz/target.h"
#include "macros/eventparser.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"

using DaemonProtocol::Command;

namespace {

void requireUsableRows(const QVariantList &events)
{
    const QStringList lines = eventParser::getMessagesArray(events);
    require(lines.size() == MacroRecord::rowCount(events), "every row has its line");
    for (int row = 0; row < std::min<qsizetype>(lines.size(), 64); ++row) {
        const auto index = MacroRecord::eventIndexOfRow(events, row);
        require(index && *index >= 0 && *index < events.size(), "every row has its event");
        const auto removed = MacroRecord::removingEventOfRow(events, row);
        require(removed && removed->size() == events.size() - 1, "every row's event can be removed");
    }
}

void macrofile(QByteArrayView input)
{
    static const QVariantMap document = SettingsDocument::completed(SettingsDocument::minimal());
    const QVariantMap record = MacroFile::importedRecord(dictionaryOf(input), Document(document).macros());
    const CommandOutcome outcome = findDocumentCommand(static_cast<qint32>(Command::addMacro))
                                       ->apply(document, {{DaemonProtocol::macroContents, record}});
    require(bool(SettingsDocument::validate(outcome.document)), "a document with an imported macro is valid");
    if (outcome.status != Status::ok)
        return;
    const QVariantMap macro = Document(outcome.document).macros().constLast().toMap();
    const QVariantMap exported = MacroFile::exportedRecord(macro);
    require(!exported.contains(SettingsKeys::macroId), "an exported macro has no identity");
    requireWritable(exported);
    requireUsableRows(MacroRecord::events(macro));
    (void)keySettingsOf(outcome.document);
}

} // namespace

KESTRA_FUZZ_TARGET(macrofile)
