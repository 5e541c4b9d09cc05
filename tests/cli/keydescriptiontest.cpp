// SPDX-License-Identifier: MIT
#include "cli/keydescription.h"
#include "base/settingskeys.h"
#include "keys/keymapping.h"
#include "tests/support/testmain.h"

#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

constexpr int keyACode = 4;

/// Two profiles, of which the second is active and has `entry` for the key A; one macro.
QVariantMap documentWithEntry(const QVariant &entry)
{
    QVariantMap keys;
    if (entry.isValid())
        keys.insert(u"4"_s, entry);
    const QVariantMap first{{SettingsKeys::profileName, u"First"_s}, {SettingsKeys::keys, QVariantMap()}};
    const QVariantMap second{{SettingsKeys::profileName, u"Second 100%1"_s}, {SettingsKeys::keys, keys}};
    const QVariantMap macro{{SettingsKeys::macroName, u"Combo"_s}};
    return {{SettingsKeys::profiles, QVariantList{first, second}},
            {SettingsKeys::macros, QVariantList{macro}},
            {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 1}}}};
}

QVariant entry(Assignment assignment, const QVariant &param1, const QVariant &param2)
{
    return KeyMappings::withEntry({}, u"4"_s, assignment, param1, param2).value(u"4"_s);
}

} // namespace

class TestKeyDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describesAKey_data();
    void describesAKey();
    void nameOfDigitsIsNotANumber();
    void jsonHasTheStoredEntry();
    void jsonOfAKeyWithoutEntryHasNull();
    void activeProfileOutOfRangeHasDefaultKeys();
};

void TestKeyDescription::describesAKey_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("words");
    QTest::newRow("no entry") << QVariant() << u"default key"_s;
    QTest::newRow("default") << entry(Assignment::defaultKey, 4, 0) << u"default key"_s;
    QTest::newRow("disabled") << entry(Assignment::disabled, 0, 0) << u"disabled"_s;
    QTest::newRow("single key") << entry(Assignment::singleKey, 5, 0) << u"single key B"_s;
    QTest::newRow("single key with modifiers") << entry(Assignment::singleKey, 5, 2) << u"single key Left Shift + B"_s;
    QTest::newRow("modifiers from the lowest bit")
        << entry(Assignment::singleKey, 5, 0x83) << u"single key Left Control + Left Shift + Right Command + B"_s;
    QTest::newRow("modifiers alone") << entry(Assignment::singleKey, 0, 1) << u"single key Left Control"_s;
    QTest::newRow("single key without one") << entry(Assignment::singleKey, 0, 0) << u"single key none"_s;
    QTest::newRow("single key outside the layout")
        << entry(Assignment::singleKey, 200, 0) << u"single key HID usage 200"_s;
    QTest::newRow("profile") << entry(Assignment::switchProfile, 1, 0) << u"profile Second 100%1"_s;
    QTest::newRow("lost profile") << entry(Assignment::switchProfile, 9, 0) << u"profile 10 (which does not exist)"_s;
    QTest::newRow("macro once") << entry(Assignment::playMacro, 0, 1) << u"macro Combo, once"_s;
    QTest::newRow("macro with no repeat mode") << entry(Assignment::playMacro, 0, 0) << u"macro Combo, once"_s;
    QTest::newRow("macro ten times") << entry(Assignment::playMacro, 0, 10) << u"macro Combo, 10 times"_s;
    QTest::newRow("macro until released") << entry(Assignment::playMacro, 0, 255) << u"macro Combo, until released"_s;
    QTest::newRow("macro until pressed again")
        << entry(Assignment::playMacro, 0, 254) << u"macro Combo, until pressed again"_s;
    QTest::newRow("lost macro") << entry(Assignment::playMacro, 2, 1) << u"macro 3 (which does not exist), once"_s;
    QTest::newRow("program") << entry(Assignment::launchProgram, u"/opt/Game.app"_s, QString())
                             << u"program /opt/Game.app"_s;
    QTest::newRow("unknown") << QVariant(QVariantMap{{SettingsKeys::command, 30}})
                             << u"unknown assignment, which does nothing"_s;
}

void TestKeyDescription::describesAKey()
{
    QFETCH(QVariant, stored);
    QFETCH(QString, words);
    QCOMPARE(describeKey(documentWithEntry(stored), keyACode), words);
}

void TestKeyDescription::nameOfDigitsIsNotANumber()
{
    QVariantMap document = documentWithEntry(entry(Assignment::playMacro, 0, 1));
    document.insert(SettingsKeys::macros, QVariantList{QVariantMap{{SettingsKeys::macroName, u"2"_s}}});
    QCOMPARE(describeKey(document, keyACode), u"macro name:2, once"_s);
}

void TestKeyDescription::jsonHasTheStoredEntry()
{
    const QJsonObject json = keyAsJson(documentWithEntry(entry(Assignment::disabled, 0, 0)), keyACode);
    const QJsonObject stored{{u"command"_s, 20}, {u"param1"_s, 0}, {u"param2"_s, 0}};
    const QJsonObject expected{{u"key"_s, u"A"_s},
                               {u"code"_s, 4},
                               {u"mapped"_s, true},
                               {u"description"_s, u"disabled"_s},
                               {u"entry"_s, stored}};
    QCOMPARE(json, expected);
}

void TestKeyDescription::jsonOfAKeyWithoutEntryHasNull()
{
    const QJsonObject json = keyAsJson(documentWithEntry({}), keyACode);
    QCOMPARE(json.value("entry"_L1), QJsonValue(QJsonValue::Null));
    QCOMPARE(json.value("mapped"_L1), QJsonValue(false));
}

void TestKeyDescription::activeProfileOutOfRangeHasDefaultKeys()
{
    QVariantMap document = documentWithEntry({});
    document.insert(SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 7}});
    QCOMPARE(describeKey(document, keyACode), u"default key"_s);
}

QTEST_GUILESS_MAIN(TestKeyDescription)
#include "keydescriptiontest.moc"
