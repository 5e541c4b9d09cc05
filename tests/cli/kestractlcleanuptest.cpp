// SPDX-License-Identifier: MIT
// The keys that "kestractl macro delete" and "profile delete" repair. The test reads the requests that reach a scripted
// daemon, and so also notices when kestractl sends none.
#include "tests/support/kestractlprocess.h"
#include "tests/support/mappingcleanupcases.h"
#include "tests/support/scripteddaemon.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace MappingCleanupCases;
using Command = DaemonProtocol::Command;

namespace {

/// Two profiles and three macros, with `keys` in the first profile.
QVariantMap documentWith(const QVariantMap &keys, bool hasSecondKeys = true)
{
    const auto record = [](QLatin1StringView nameKey, const QString &name) { return QVariantMap{{nameKey, name}}; };
    return withKeys({{SettingsKeys::profiles, QVariantList{record(SettingsKeys::profileName, u"Desktop"_s),
                                                           record(SettingsKeys::profileName, u"Raid"_s)}},
                     {SettingsKeys::macros,
                      QVariantList{record(SettingsKeys::macroName, u"One"_s), record(SettingsKeys::macroName, u"Two"_s),
                                   record(SettingsKeys::macroName, u"Three"_s)}}},
                    keys, hasSecondKeys);
}

Command deletionOf(int type)
{
    return type == playMacro ? Command::deleteMacro : Command::deleteProfile;
}

/// Makes `daemon` hold the settings from before the deletion until it deletes the record.
void scriptDeletion(ScriptedDaemon &daemon, int type, const Deletion &deletion)
{
    daemon.setDocument(deletion.before);
    daemon.setScript(deletionOf(type), [&daemon, after = deletion.after](const ScriptedDaemon::Request &) {
        daemon.setDocument(after);
        const QVariantMap reply{{DaemonProtocol::returnStatus, 0}, {DaemonProtocol::returnDictionary, after}};
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded(reply)}};
    });
}

KestractlResult runDeletion(int type, int index)
{
    return runKestractl({type == playMacro ? u"macro"_s : u"profile"_s, u"delete"_s, QString::number(index + 1)});
}

QVariantList sentProfiles(const ScriptedDaemon &daemon)
{
    return daemon.lastRequest(Command::replaceAllProfiles).dictionary.value(DaemonProtocol::allProfiles).toList();
}

void addTypeRows()
{
    QTest::addColumn<int>("type");
    QTest::newRow("macro") << playMacro;
    QTest::newRow("profile") << switchProfile;
}

} // namespace

class KestractlCleanUpTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repairsTheKeysThatTheWindowRepairs_data() { addRows(); }
    void repairsTheKeysThatTheWindowRepairs();
    void profileWithoutKeysGetsThoseOfTheOneBefore_data();
    void profileWithoutKeysGetsThoseOfTheOneBefore();
    void refusedDeletionRepairsNothing_data();
    void refusedDeletionRepairsNothing();
    void refusedRepairIsReportedBesidesTheDeletion_data();
    void refusedRepairIsReportedBesidesTheDeletion();
};

void KestractlCleanUpTest::repairsTheKeysThatTheWindowRepairs()
{
    QFETCH(int, type);
    QFETCH(int, deleted);
    QFETCH(QVariant, param1);
    QFETCH(bool, isRepaired);
    // An assignment of the other kind has the same index; kestractl must not change it.
    const QVariantMap other = entry(playMacro + switchProfile - type, deleted);
    const Deletion deletion = deletionIn(documentWith({{u"4"_s, entry(type, param1)}, {u"5"_s, other}}), type);
    ScriptedDaemon daemon;
    scriptDeletion(daemon, type, deletion);
    const KestractlResult result = runDeletion(type, deleted);
    QCOMPARE(result.errorText(), QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(daemon.count(deletionOf(type)), 1);
    QCOMPARE(daemon.count(Command::replaceAllProfiles), isRepaired ? 1 : 0);
    if (isRepaired) {
        const QVariantMap expected = documentWith({{u"4"_s, QVariantMap()}, {u"5"_s, other}});
        QCOMPARE(sentProfiles(daemon), expected.value(SettingsKeys::profiles).toList());
    }
}

void KestractlCleanUpTest::profileWithoutKeysGetsThoseOfTheOneBefore_data()
{
    addTypeRows();
}

void KestractlCleanUpTest::profileWithoutKeysGetsThoseOfTheOneBefore()
{
    QFETCH(int, type);
    ScriptedDaemon daemon;
    scriptDeletion(daemon, type, deletionIn(documentWith({{u"4"_s, entry(type, 1)}}, false), type));
    QCOMPARE(runDeletion(type, 1).exitCode, 0);
    const QVariantList sent = sentProfiles(daemon);
    const QVariantMap repaired{{u"4"_s, QVariantMap()}};
    QCOMPARE(sent.value(0).toMap().value(SettingsKeys::keys).toMap(), repaired);
    QCOMPARE(sent.value(1).toMap().value(SettingsKeys::keys).toMap(), repaired);
    QCOMPARE(sent.value(1).toMap().value(SettingsKeys::profileName).toString(), u"Raid"_s);
}

void KestractlCleanUpTest::refusedDeletionRepairsNothing_data()
{
    addTypeRows();
}

void KestractlCleanUpTest::refusedDeletionRepairsNothing()
{
    QFETCH(int, type);
    ScriptedDaemon daemon(documentWith({{u"4"_s, entry(type, 1)}}));
    daemon.setReply(deletionOf(type), {{DaemonProtocol::returnStatus, 5}});
    const KestractlResult result = runDeletion(type, 1);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.text(), QString());
    QCOMPARE(daemon.count(Command::replaceAllProfiles), 0);
}

void KestractlCleanUpTest::refusedRepairIsReportedBesidesTheDeletion_data()
{
    addTypeRows();
}

void KestractlCleanUpTest::refusedRepairIsReportedBesidesTheDeletion()
{
    QFETCH(int, type);
    ScriptedDaemon daemon;
    scriptDeletion(daemon, type, deletionIn(documentWith({{u"4"_s, entry(type, 1)}}), type));
    daemon.setReply(Command::replaceAllProfiles, {{DaemonProtocol::returnStatus, 2}});
    const KestractlResult result = runDeletion(type, 1);
    QCOMPARE(result.exitCode, 6);
    QVERIFY2(result.text().contains(u" is deleted\n"_s), result.output.constData());
    QCOMPARE(result.errorText(), u"kestractl: the keys that used it may still name it: the profiles cannot be changed: "
                                 "the daemon cannot store such a value\n"_s);
}

QTEST_GUILESS_MAIN(KestractlCleanUpTest)
#include "kestractlcleanuptest.moc"
