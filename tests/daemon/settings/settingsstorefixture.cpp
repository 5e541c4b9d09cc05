// SPDX-License-Identifier: MIT
#include "tests/daemon/settings/settingsstorefixture.h"

#include "base/document.h"
#include "base/qlcoreutility.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QStringList fileSuffixes{u""_s, u".0"_s, u".1"_s, u".2"_s, u".3"_s};

} // namespace

QVariantMap documentNamed(const QString &profileName)
{
    QVariantMap document = SettingsDocument::minimal();
    return SettingsDocument::withProfiles(document,
                                          {QVariantMap{{u"ProfileName"_s, profileName}, {u"Keys"_s, QVariantMap()}}});
}

QVariantMap wrongDocumentNamed(const QString &profileName)
{
    return SettingsDocument::withActiveProfile(documentNamed(profileName), 7);
}

QByteArray dataOf(const QVariantMap &document)
{
    return QlCoreUtility::convertDictionaryToData(document).value();
}

QString nameOf(const std::optional<QVariantMap> &document)
{
    return document ? Document(*document).profiles().first().toMap().value(u"ProfileName"_s).toString() : QString();
}

void SettingsStoreFixture::makeFolder()
{
    mTemporary.emplace();
    mFolder = mTemporary->filePath(u"state/quill-kestra"_s);
    reopen();
}

void SettingsStoreFixture::removeFolder()
{
    mStore.reset();
    mTemporary.reset();
}

void SettingsStoreFixture::reopen()
{
    mStore.reset();
    mStore = std::make_unique<SettingsStore>(mFolder);
    QVERIFY(mStore->open());
}

QByteArray SettingsStoreFixture::contentOf(const QString &name) const
{
    QFile file(filePath(name));
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList SettingsStoreFixture::storedNames() const
{
    QStringList names;
    for (const QString &suffix : fileSuffixes)
        names += nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist"_s + suffix)));
    return names;
}

void SettingsStoreFixture::store(const QStringList &names) const
{
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString name = u"settings.plist"_s + fileSuffixes[i];
        QFile::remove(filePath(name));
        if (!names[i].isEmpty())
            writeFile(filePath(name), QlCoreUtility::convertDictionaryToData(documentNamed(names[i])).value());
    }
}
