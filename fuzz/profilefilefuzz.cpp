// SPDX-License-Identifier: MIT
// Profile files. Whatever the file contains, importing it leaves a valid document, and the window and the engine can
// use the profile.
#include "base/document.h"
#include "base/settingskeys.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/keysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "fuzz/target.h"
#include "keys/keymapping.h"
#include "lighting/backlight.h"
#include "profiles/applicationbinding.h"
#include "profiles/profilefile.h"

using DaemonProtocol::Command;

namespace {

void profilefile(QByteArrayView input)
{
    static const QVariantMap document = SettingsDocument::completed(SettingsDocument::minimal());
    const QVariantMap record = ProfileFile::importedRecord(dictionaryOf(input), Document(document).profiles());
    const CommandOutcome outcome = findDocumentCommand(static_cast<qint32>(Command::addProfile))
                                       ->apply(document, {{DaemonProtocol::deviceSettingsDictionary, record}});
    require(bool(SettingsDocument::validate(outcome.document)), "a document with an imported profile is valid");
    if (outcome.status != Status::ok)
        return;
    const QVariantMap profile = Document(outcome.document).profiles().constLast().toMap();
    requireWritable(profile); // it can be exported
    (void)keySettingsOf(outcome.document);
    for (int code = 0; code < 256; ++code)
        (void)KeyMappings::checkPopUpAssignmentIndexForValue(KeyMappings::entryForKey(profile, code).command);
    const Backlight::Settings light = Backlight::settingsOf(profile);
    require(light.brightness >= Backlight::minimumBrightness && light.brightness <= Backlight::maximumBrightness,
            "the brightness is one that there is");
    (void)Backlight::colorAt(light, Backlight::spectrumPeriod);
    (void)ApplicationBinding::applicationOf(profile);
}

} // namespace

KESTRA_FUZZ_TARGET(profilefile)
