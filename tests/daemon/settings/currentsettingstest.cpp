// SPDX-License-Identifier: MIT
// The settings that the daemon uses: the writes to the disk, and their order.
#include "daemon/settings/currentsettings.h"
#include "base/document.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/daemonservices.h"
#include "tests/support/filesizelimit.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Two profiles, the first one active.
QVariantMap startDocument()
{
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{QVariantMap{{u"ProfileName"_s, u"A"_s}},
                                                                     QVariantMap{{u"ProfileName"_s, u"B"_s}}}},
                                        {u"Macros"_s, QVariantList()},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

QVariantMap withSwitchedProfile()
{
    return SettingsDocument::withActiveProfile(startDocument(), 1);
}

CommandOutcome outcomeOf(const QVariantMap &document)
{
    return {.status = Status::ok, .document = document, .reply = {{u"key"_s, 1}}, .changesDocument = true};
}

void expectFullDisk()
{
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
}

} // namespace

class CurrentSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void changeIsOnTheDiskBeforeItIsUsed();
    void changeThatCannotBeWrittenIsNotUsed();
    void diskKeepsTheDocumentToKeep();
    void temporaryDocumentIsNotWritten();
    void reportsWhetherAnotherProfileIsActive();
    void outcomeIsStored();
    void outcomeThatCannotBeWrittenIsNotSaved();
    void outcomeWithTheSameDocumentIsNotWritten();
    void outcomeOfAnotherTypeCountsAsAChange();
    void outcomeWithoutAChangeStaysTheSame();
    void acceptsFactorySettingsOnce();
    void acceptsNoFactorySettingsAfterAChange();
    void awaitsFactorySettingsUntilTheyAreStored();
    void notificationNamesItsSource();

private:
    [[nodiscard]] bool isWritten() const { return QFile::exists(mTemporary->filePath(u"settings.plist"_s)); }
    [[nodiscard]] QVariantMap storedDocument() const
    {
        return PropertyList::readPropertyListFile(mTemporary->filePath(u"settings.plist"_s)).valueOr({});
    }
    /// The path of factory settings with one profile, "Factory".
    [[nodiscard]] QString writeFactorySettings() const;
    [[nodiscard]] QString activeName() const
    {
        return Document(mSettings->document()).activeProfile().value(u"ProfileName"_s).toString();
    }

    std::optional<QTemporaryDir> mTemporary;
    std::unique_ptr<SettingsStore> mStore;
    DaemonServices mServices;
    std::unique_ptr<History> mHistory;
    std::unique_ptr<CurrentSettings> mSettings;
    std::optional<int> mProfileToKeep;
    QList<bool> mChanges; // whether another profile was active, one entry for each change
    QList<QVariantMap> mNotifications;
};

void CurrentSettingsTest::init()
{
    mTemporary.emplace();
    mStore = std::make_unique<SettingsStore>(mTemporary->path());
    QVERIFY(mStore->open());
    mServices.postNotification = [this](const QString &name, const QVariantMap &userInfo) {
        QCOMPARE(name, u"Profile Updated 271"_s);
        mNotifications += userInfo;
    };
    mHistory = std::make_unique<History>(mStore->folder());
    mSettings = std::make_unique<CurrentSettings>(
        *mStore, *mHistory, mServices, startDocument(), [this](const QVariantMap &document) {
            return mProfileToKeep ? SettingsDocument::withActiveProfile(document, *mProfileToKeep) : document;
        });
    connect(mSettings.get(), &CurrentSettings::changed, this, [this](bool isOther) { mChanges += isOther; });
}

void CurrentSettingsTest::cleanup()
{
    mSettings.reset();
    mHistory.reset();
    mStore.reset();
    mTemporary.reset();
    mProfileToKeep.reset();
    mChanges.clear();
    mNotifications.clear();
}

QString CurrentSettingsTest::writeFactorySettings() const
{
    QString path = mTemporary->filePath(u"Kestra.plist"_s);
    const QVariantMap profile{{u"ProfileName"_s, u"Factory"_s}};
    const QVariantMap factory{
        {u"Default Settings"_s, QVariantMap{{u"Profiles"_s, QVariantList{profile}}, {u"Macros"_s, QVariantList()}}}};
    return PropertyList::writeFileAtomically(path, QlCoreUtility::convertDictionaryToData(factory).value()) ? path
                                                                                                            : QString();
}

void CurrentSettingsTest::changeIsOnTheDiskBeforeItIsUsed()
{
    QVariantMap onDisk;
    connect(mSettings.get(), &CurrentSettings::changed, this, [&] { onDisk = storedDocument(); });
    QVERIFY(mSettings->store(withSwitchedProfile(), {}));
    QCOMPARE(onDisk, withSwitchedProfile());
    QCOMPARE(mSettings->document(), withSwitchedProfile());
    QVERIFY(mNotifications.isEmpty()); // the caller replies first
}

void CurrentSettingsTest::changeThatCannotBeWrittenIsNotUsed()
{
    {
        const FileSizeLimit fullDisk(16);
        expectFullDisk();
        QVERIFY(!mSettings->store(withSwitchedProfile(), {}));
    }
    QCOMPARE(mSettings->document(), startDocument());
    QVERIFY(mChanges.isEmpty());
    QVERIFY(!isWritten());
    QVERIFY(mSettings->store(withSwitchedProfile(), {})); // the disk has room again
}

void CurrentSettingsTest::diskKeepsTheDocumentToKeep()
{
    mProfileToKeep = 0;
    QVERIFY(mSettings->store(withSwitchedProfile(), {}));
    QCOMPARE(storedDocument(), startDocument());
    QCOMPARE(mSettings->document(), withSwitchedProfile());
}

void CurrentSettingsTest::temporaryDocumentIsNotWritten()
{
    mSettings->use(withSwitchedProfile());
    QCOMPARE(mSettings->document(), withSwitchedProfile());
    QVERIFY(!isWritten());
}

void CurrentSettingsTest::reportsWhetherAnotherProfileIsActive()
{
    mSettings->use(withSwitchedProfile());
    mSettings->use(SettingsDocument::withDeviceSetting(withSwitchedProfile(), "GameMode"_L1, true));
    mSettings->use(startDocument());
    QCOMPARE(mChanges, QList<bool>({true, false, true}));
}

void CurrentSettingsTest::outcomeIsStored()
{
    const CommandOutcome outcome = mSettings->storeOutcome(outcomeOf(withSwitchedProfile()), {});
    QCOMPARE(outcome.status, Status::ok);
    QVERIFY(outcome.changesDocument);
    QCOMPARE(outcome.reply, (QVariantMap{{u"key"_s, 1}}));
    QCOMPARE(storedDocument(), withSwitchedProfile());
}

void CurrentSettingsTest::outcomeThatCannotBeWrittenIsNotSaved()
{
    const FileSizeLimit fullDisk(16);
    expectFullDisk();
    const CommandOutcome outcome = mSettings->storeOutcome(outcomeOf(withSwitchedProfile()), {});
    QCOMPARE(outcome.status, Status::notSaved);
    QVERIFY(!outcome.changesDocument);
    QCOMPARE(outcome.document, startDocument());
    QCOMPARE(outcome.reply, (QVariantMap{{u"key"_s, 1}}));
    QCOMPARE(mSettings->document(), startDocument());
}

void CurrentSettingsTest::outcomeWithTheSameDocumentIsNotWritten()
{
    const CommandOutcome outcome = mSettings->storeOutcome(outcomeOf(startDocument()), {});
    QCOMPARE(outcome.status, Status::ok);
    QVERIFY(!outcome.changesDocument);
    QVERIFY(!isWritten());
    QVERIFY(mChanges.isEmpty());
}

// 1 and true compare equal, but the disk keeps them apart.
void CurrentSettingsTest::outcomeOfAnotherTypeCountsAsAChange()
{
    mSettings->use(SettingsDocument::withDeviceSetting(startDocument(), "Other"_L1, 1));
    const QVariantMap changed = SettingsDocument::withDeviceSetting(startDocument(), "Other"_L1, true);
    QVERIFY(mSettings->storeOutcome(outcomeOf(changed), {}).changesDocument);
    QCOMPARE(storedDocument().value(u"DeviceSettings"_s).toMap().value(u"Other"_s).typeId(), int(QMetaType::Bool));
}

void CurrentSettingsTest::outcomeWithoutAChangeStaysTheSame()
{
    const CommandOutcome failure{.status = Status::lastProfile, .document = withSwitchedProfile(), .reply = {}};
    QCOMPARE(mSettings->storeOutcome(failure, {}).status, Status::lastProfile);
    QCOMPARE(mSettings->document(), startDocument());
    QVERIFY(!isWritten());
}

void CurrentSettingsTest::acceptsFactorySettingsOnce()
{
    const QString path = writeFactorySettings();
    QVERIFY(!mSettings->takeFactorySettings(path)); // the settings do not await them
    QCOMPARE(activeName(), u"A"_s);
    mSettings->setAwaitsFactorySettings(true);
    QVERIFY(mSettings->takeFactorySettings(path));
    QCOMPARE(activeName(), u"Factory"_s);
    QCOMPARE(storedDocument(), mSettings->document());
    QVERIFY(!mSettings->takeFactorySettings(path));
}

void CurrentSettingsTest::acceptsNoFactorySettingsAfterAChange()
{
    mSettings->setAwaitsFactorySettings(true);
    QVERIFY(mSettings->store(withSwitchedProfile(), {}));
    QVERIFY(!mSettings->takeFactorySettings(writeFactorySettings()));
    QCOMPARE(activeName(), u"B"_s);
}

void CurrentSettingsTest::awaitsFactorySettingsUntilTheyAreStored()
{
    const QString path = writeFactorySettings();
    mSettings->setAwaitsFactorySettings(true);
    mSettings->use(withSwitchedProfile()); // like the application in front, whose switch is not stored
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no factory settings"_s));
    QVERIFY(!mSettings->takeFactorySettings(u"/nowhere/Kestra.plist"_s));
    {
        const FileSizeLimit fullDisk(16);
        expectFullDisk();
        QVERIFY(!mSettings->takeFactorySettings(path));
    }
    QCOMPARE(activeName(), u"B"_s);
    QVERIFY(mSettings->takeFactorySettings(path));
    QCOMPARE(activeName(), u"Factory"_s);
}

void CurrentSettingsTest::notificationNamesItsSource()
{
    mSettings->postUpdated(u"mine"_s);
    QCOMPARE(mNotifications, QList<QVariantMap>{(QVariantMap{{u"Source App"_s, u"mine"_s}})});
}

QTEST_APPLESS_MAIN(CurrentSettingsTest)
#include "currentsettingstest.moc"
