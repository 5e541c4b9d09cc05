// SPDX-License-Identifier: MIT
#include "daemon/capture/ontheflymacro.h"

#include "base/document.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"
#include "daemon/settings/settingsdocument.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "macros/macrorecord.h"

using namespace Qt::StringLiterals;
using namespace SettingsDocument;

namespace {

// English in every language: it is stored, like the names of the factory settings, and clients may use another language
// than the daemon. The user can rename it in the configurator.
const QString nameOfNewMacro = u"On the fly"_s;

} // namespace

int roomForNewMacro(const QVariantMap &document)
{
    const QVariantList macros = Document(document).macros();
    return MacroRecord::capacity(macros, macros.size());
}

CommandOutcome addOnTheFlyMacro(const QVariantMap &document, const QVariantList &events, int key)
{
    QVariantList list = Document(document).macros();
    const int index = static_cast<int>(list.size());
    const QVariantMap macro{{SettingsKeys::macroName, uniqueName(list, SettingsKeys::macroName, nameOfNewMacro)},
                            {SettingsKeys::delay, MacroRecord::standardDelayMs}};
    list += MacroRecord::withEvents(macro, events);

    QVariantList profileList = Document(document).profiles();
    QVariantMap profile = Document(document).activeProfile();
    profile[SettingsKeys::keys] =
        KeyMappings::withEntry(ProfileRecord::keys(profile), KeyLayout::codeText(key),
                               KeyMappings::Assignment::playMacro, index, KeyMappings::playOnceValue);
    profileList[Document(document).activeProfileIndex()] = profile;
    const QVariantMap changed = completed(withProfiles(withMacros(document, list), profileList));
    if (!validate(changed))
        return {.status = Status::limitReached, .document = document, .reply = {}, .changesDocument = false};
    return {.status = Status::ok, .document = changed, .reply = {}, .changesDocument = true};
}
