// SPDX-License-Identifier: MIT
// Compares resources/Kestra.plist with the key table and the types that the records prescribe.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "tests/support/testmain.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int keyCodes[] = {
#define KESTRA_KEY(outlet, action, code, functionKeyName) code,
#include "keys/keytable.inc"
};

} // namespace

class FactoryDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isReadableXml();
    void equalsTheOutputOfTheTool();
    void hasOneDefaultProfileAndNoMacros();
    void mapsEachKeyToItsDefault();
    void profileHasNoApplication();
    void lightingValuesHaveTheirTypesAndRanges();
    void deviceSettingsHaveTheirTypes();
    void noKeyWasSelectedLast();

private:
    QVariantMap defaultProfile() const;

    QByteArray mBytes;
    QVariantMap mDocument;
};

void FactoryDocumentTest::initTestCase()
{
    const QString path = QStringLiteral(KESTRA_SOURCE_DIR "/resources/Kestra.plist");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    mBytes = file.readAll();
    const auto document = PropertyList::readPropertyListFile(path);
    QVERIFY(document);
    mDocument = *document;
}

QVariantMap FactoryDocumentTest::defaultProfile() const
{
    return mDocument.value(SettingsKeys::defaultSettings)
        .toMap()
        .value(SettingsKeys::profiles)
        .toList()
        .value(0)
        .toMap();
}

void FactoryDocumentTest::isReadableXml()
{
    QVERIFY(mBytes.startsWith("<?xml"));
    QVERIFY(mBytes.count('\n') > 500);
}

void FactoryDocumentTest::equalsTheOutputOfTheTool()
{
    QProcess tool;
    tool.start(u"python3"_s, {QStringLiteral(KESTRA_SOURCE_DIR "/tools/make_factory_plist.py"), u"--check"_s});
    QVERIFY(tool.waitForFinished());
    QVERIFY2(tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0,
             tool.readAllStandardError().constData());
}

void FactoryDocumentTest::hasOneDefaultProfileAndNoMacros()
{
    const QVariantMap settings = mDocument.value(SettingsKeys::defaultSettings).toMap();
    QCOMPARE(settings.keys(),
             (QStringList{SettingsKeys::deviceSettings, SettingsKeys::macros, SettingsKeys::profiles}));
    QCOMPARE(settings.value(SettingsKeys::macros), QVariant(QVariantList()));
    QCOMPARE(settings.value(SettingsKeys::profiles).toList().size(), 1);
    QCOMPARE(defaultProfile().value(SettingsKeys::profileName), QVariant(u"Default Profile"_s));
}

void FactoryDocumentTest::mapsEachKeyToItsDefault()
{
    const QVariantMap keys = defaultProfile().value(SettingsKeys::keys).toMap();
    QCOMPARE(std::size(keyCodes), size_t(119));
    QCOMPARE(keys.size(), 119);
    for (const int code : keyCodes) {
        const QVariantMap expected{
            {SettingsKeys::command, 45}, {SettingsKeys::param1, code}, {SettingsKeys::param2, 0}};
        const QVariantMap entry = keys.value(QString::number(code)).toMap();
        QCOMPARE(entry, expected);
        for (const QVariant &value : entry)
            QCOMPARE(value.typeId(), int(QMetaType::Int));
    }
}

void FactoryDocumentTest::profileHasNoApplication()
{
    const QVariantMap none{{SettingsKeys::application, u""_s},
                           {SettingsKeys::executable, u""_s},
                           {SettingsKeys::identifier, u""_s},
                           {SettingsKeys::signature, u""_s}};
    QCOMPARE(defaultProfile().value(SettingsKeys::appInfo).toMap(), none);
    QCOMPARE(defaultProfile().value(SettingsKeys::autoSwitchOn), QVariant(0));
    QCOMPARE(defaultProfile().value(SettingsKeys::profileOsdOn), QVariant(1));
}

void FactoryDocumentTest::lightingValuesHaveTheirTypesAndRanges()
{
    const QVariantMap profile = defaultProfile();
    QCOMPARE(profile.value(SettingsKeys::backlightLed), QVariant(1));
    QCOMPARE(profile.value(SettingsKeys::scrollLed), QVariant(1));
    QCOMPARE(profile.value(SettingsKeys::ledKbEffects), QVariant(0));
    QCOMPARE(profile.value(SettingsKeys::brightnessKbNormal), QVariant(4));
    QCOMPARE(profile.value(SettingsKeys::gameLightingOn).typeId(), int(QMetaType::Bool));
    const QVariantList colors = profile.value(SettingsKeys::ledKbColors).toList();
    QCOMPARE(colors.size(), 1);
    const QVariantMap color = colors.first().toMap();
    QCOMPARE(color.keys(), (QStringList{SettingsKeys::blue, SettingsKeys::green, SettingsKeys::red}));
    for (const QVariant &component : color) {
        QCOMPARE(component.typeId(), int(QMetaType::Double));
        QVERIFY(component.toDouble() >= 0.0 && component.toDouble() <= 1.0);
    }
}

void FactoryDocumentTest::deviceSettingsHaveTheirTypes()
{
    const QVariantMap settings =
        mDocument.value(SettingsKeys::defaultSettings).toMap().value(SettingsKeys::deviceSettings).toMap();
    QCOMPARE(settings,
             (QVariantMap{
                 {SettingsKeys::activeProfile, 0}, {SettingsKeys::profileOsdOn, 1}, {SettingsKeys::gameMode, false}}));
    QCOMPARE(settings.value(SettingsKeys::gameMode).typeId(), int(QMetaType::Bool));
    QCOMPARE(settings.value(SettingsKeys::activeProfile).typeId(), int(QMetaType::Int));
}

void FactoryDocumentTest::noKeyWasSelectedLast()
{
    const QVariantMap info = mDocument.value(SettingsKeys::deviceInfo).toMap();
    QCOMPARE(info, (QVariantMap{{SettingsKeys::lastSelectedKey, u""_s}}));
}

QTEST_GUILESS_MAIN(FactoryDocumentTest)
#include "factorydocumenttest.moc"
