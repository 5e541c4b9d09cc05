// SPDX-License-Identifier: MIT
// Settings files. Whatever settings.plist contains, the daemon starts with a valid document or with none, can save, and
// keeps the bytes that it found. A file of factory settings, which a client names, gives a valid document or none.
#include "base/propertylist.h"
#include "daemon/settings/factorysettings.h"
#include "daemon/settings/keysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "fuzz/target.h"

using namespace Qt::StringLiterals;

namespace {

bool isInAFileOf(const QDir &folder, QByteArrayView content)
{
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (PropertyList::readFileBytes(folder.filePath(name)).valueOr({}) == content)
            return true;
    }
    return false;
}

void settings(QByteArrayView input)
{
    QDir folder(workFolder().filePath(u"settings"_s));
    folder.removeRecursively();
    folder.mkpath(u"."_s);
    writeWorkFile(folder.filePath(u"settings.plist"_s), input);

    const auto factory = readFactorySettings(folder.filePath(u"settings.plist"_s));
    require(!factory || SettingsDocument::validate(*factory), "factory settings are valid");

    SettingsStore store(folder.path());
    require(bool(store.open()), "the folder can be used");
    const auto loaded = store.load();
    require(!loaded || SettingsDocument::validate(*loaded), "a document that was loaded is valid");
    const QVariantMap document = SettingsDocument::completed(loaded.value_or(SettingsDocument::minimal()));
    require(bool(SettingsDocument::validate(document)), "a document that was completed is valid");
    require(SettingsDocument::completed(document) == document, "a completed document has nothing to complete");
    (void)keySettingsOf(document);
    require(store.save(document), "a valid document can be saved");
    const auto again = store.load();
    require(again && PropertyList::writeBinary(*again) == PropertyList::writeBinary(document),
            "what was saved is loaded again");
    require(isInAFileOf(folder, input), "the file that was found is still there");
}

} // namespace

KESTRA_FUZZ_TARGET(settings)
