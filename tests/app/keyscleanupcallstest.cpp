// SPDX-License-Identifier: MIT
// The hub makes the keys tab repair the mappings. After the deletion of a macro it hands over the macros from before
// it; after the deletion of a profile, the profiles from after it.
#include "tests/app/hubfixture.h"
#include "tests/support/mappingcleanupcases.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace MappingCleanupCases;
using Command = DaemonProtocol::Command;

namespace {

/// sampleDocument(), which has two profiles and three macros, with `keys` in its first profile.
QVariantMap documentWith(const QVariantMap &keys, bool hasSecondKeys = true)
{
    return withKeys(withActiveProfile(sampleDocument(), 0), keys, hasSecondKeys);
}

} // namespace

class KeysCleanUpCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repairsDanglingAssignments_data() { addRows(); }
    void repairsDanglingAssignments();
    void recordWithoutKeysGetsThoseOfThePreviousOne_data();
    void recordWithoutKeysGetsThoseOfThePreviousOne();

private:
    /// The profiles that the clean-up sent after the deletion of macro or profile `index`; empty when it sent nothing.
    /// Before the deletion there are three profiles and three macros.
    QVariantList sentAfterDeleting(int type, int index, const QVariantMap &document);

    HubResources mResources;
};

QVariantList KeysCleanUpCallsTest::sentAfterDeleting(int type, int index, const QVariantMap &document)
{
    const Deletion deletion = deletionIn(document, type);
    ScriptedDaemon daemon(deletion.before);
    Hub hub;
    hub.open(daemon);
    daemon.setDocument(deletion.after);
    if (type == playMacro)
        hub.controller->deleteMacroAtIndex(index);
    else
        hub.controller->deleteProfileWithProfileID(index);
    const ScriptedDaemon::Request sent = daemon.lastRequest(Command::replaceAllProfiles);
    return sent.dictionary.value(u"AllProfiles"_s).toList();
}

void KeysCleanUpCallsTest::repairsDanglingAssignments()
{
    QFETCH(int, type);
    QFETCH(int, deleted);
    QFETCH(QVariant, param1);
    QFETCH(bool, isRepaired);
    // An assignment of the other kind points to the same index and never changes.
    const QVariantMap other = entry(playMacro + switchProfile - type, deleted);
    const QVariantList sent =
        sentAfterDeleting(type, deleted, documentWith({{u"4"_s, entry(type, param1)}, {u"5"_s, other}}));
    QCOMPARE(sent.size(), isRepaired ? 2 : 0);
    const QVariantMap expected{{u"4"_s, QVariantMap()}, {u"5"_s, other}};
    if (isRepaired)
        QCOMPARE(sent.value(0).toMap().value(SettingsKeys::keys).toMap(), expected);
}

void KeysCleanUpCallsTest::recordWithoutKeysGetsThoseOfThePreviousOne_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("macro") << playMacro;
    QTest::newRow("profile") << switchProfile;
}

void KeysCleanUpCallsTest::recordWithoutKeysGetsThoseOfThePreviousOne()
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
