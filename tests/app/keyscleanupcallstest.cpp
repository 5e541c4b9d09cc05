// SPDX-License-Identifier: MIT
// When the hub has the keys tab repair the mappings: after a deleted macro with the macros as they were before it,
// after a deleted profile with the profiles as they are then.
#include "base/settingskeys.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

constexpr int playMacro = 10;
constexpr int switchProfile = 17;

QVariantMap entry(int command, const QVariant &param1)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, 1}};
}

/// sampleDocument(), which has two profiles and three macros, with `keys` in its first profile; the second has an
/// empty "Keys", or none.
QVariantMap documentWith(const QVariantMap &keys, bool hasSecondKeys = true)
{
    QVariantMap document = withActiveProfile(sampleDocument(), 0);
    QVariantList profiles = document.value(SettingsKeys::profiles).toList();
    QVariantMap first = profiles.value(0).toMap(), second = profiles.value(1).toMap();
    first.insert(SettingsKeys::keys, keys);
    second.insert(SettingsKeys::keys, QVariantMap());
    if (!hasSecondKeys)
        second.remove(SettingsKeys::keys);
    document.insert(SettingsKeys::profiles, QVariantList{first, second});
    return document;
}

/// `document` with one more record in the array under `key`, or one less.
QVariantMap withOneMore(QVariantMap document, QLatin1StringView key)
{
    QVariantList records = document.value(key).toList();
    document.insert(key, records << records.last());
    return document;
}

QVariantMap withOneLess(QVariantMap document, QLatin1StringView key)
{
    QVariantList records = document.value(key).toList();
    records.removeLast();
    document.insert(key, records);
    return document;
}

} // namespace

class KeysCleanUpCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repairsWhatPointsNowhere_data();
    void repairsWhatPointsNowhere();
    void recordWithoutKeysIsGivenThoseOfTheOneBefore_data();
    void recordWithoutKeysIsGivenThoseOfTheOneBefore();

private:
    /// The profiles that the clean-up sent after macro or profile `index` was deleted; none when it sent nothing.
    /// Before that there are three profiles and three macros, afterwards two of the one that was deleted.
    QVariantList sentAfterDeleting(int type, int index, const QVariantMap &document);

    HubResources mResources;
};

QVariantList KeysCleanUpCallsTest::sentAfterDeleting(int type, int index, const QVariantMap &document)
{
    ScriptedDaemon daemon(type == playMacro ? document : withOneMore(document, SettingsKeys::profiles));
    Hub hub;
    hub.open(daemon);
    daemon.setDocument(type == playMacro ? withOneLess(document, SettingsKeys::macros) : document);
    if (type == playMacro)
        hub.controller->deleteMacroAtIndex(index);
    else
        hub.controller->deleteProfileWithProfileID(index);
    const ScriptedDaemon::Request sent = daemon.lastRequest(Command::replaceAllProfiles);
    return sent.dictionary.value(u"AllProfiles"_s).toList();
}

void KeysCleanUpCallsTest::repairsWhatPointsNowhere_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("deleted");
    QTest::addColumn<QVariant>("param1");
    QTest::addColumn<bool>("isRepaired");
    // Three macros before the deletion, and so many are counted.
    QTest::newRow("the deleted macro") << playMacro << 1 << QVariant(1) << true;
    QTest::newRow("a macro before it") << playMacro << 1 << QVariant(0) << false;
    QTest::newRow("the last macro, counted before the deletion") << playMacro << 1 << QVariant(2) << false;
    QTest::newRow("a macro past the end") << playMacro << 1 << QVariant(3) << true;
    QTest::newRow("a negative macro") << playMacro << 1 << QVariant(-1) << true;
    // Two profiles after the deletion, and so many are counted.
    QTest::newRow("the deleted profile") << switchProfile << 1 << QVariant(1) << true;
    QTest::newRow("a profile before it") << switchProfile << 1 << QVariant(0) << false;
    QTest::newRow("a profile behind it keeps its index") << switchProfile << 0 << QVariant(1) << false;
    QTest::newRow("the last profile, counted after the deletion") << switchProfile << 0 << QVariant(2) << true;
    QTest::newRow("a negative profile") << switchProfile << 0 << QVariant(-1) << true;
}

void KeysCleanUpCallsTest::repairsWhatPointsNowhere()
{
    QFETCH(int, type);
    QFETCH(int, deleted);
    QFETCH(QVariant, param1);
    QFETCH(bool, isRepaired);
    // The other kind points to the same index and is never touched.
    const QVariantMap other = entry(playMacro + switchProfile - type, deleted);
    const QVariantList sent =
        sentAfterDeleting(type, deleted, documentWith({{u"4"_s, entry(type, param1)}, {u"5"_s, other}}));
    QCOMPARE(sent.size(), isRepaired ? 2 : 0);
    const QVariantMap expected{{u"4"_s, QVariantMap()}, {u"5"_s, other}};
    if (isRepaired)
        QCOMPARE(sent.value(0).toMap().value(SettingsKeys::keys).toMap(), expected);
}

void KeysCleanUpCallsTest::recordWithoutKeysIsGivenThoseOfTheOneBefore_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("macro") << playMacro;
    QTest::newRow("profile") << switchProfile;
}

void KeysCleanUpCallsTest::recordWithoutKeysIsGivenThoseOfTheOneBefore()
{
    QFETCH(int, type);
    const QVariantList sent = sentAfterDeleting(type, 1, documentWith({{u"4"_s, entry(type, 1)}}, false));
    const QVariantMap repaired{{u"4"_s, QVariantMap()}};
    QCOMPARE(sent.value(0).toMap().value(SettingsKeys::keys).toMap(), repaired);
    QCOMPARE(sent.value(1).toMap().value(SettingsKeys::keys).toMap(), repaired);
    QCOMPARE(sent.value(1).toMap().value(SettingsKeys::profileName).toString(), u"Raid"_s);
}

QTEST_MAIN(KeysCleanUpCallsTest)
#include "keyscleanupcallstest.moc"
