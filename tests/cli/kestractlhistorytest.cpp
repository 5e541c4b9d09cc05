// SPDX-License-Identifier: MIT
// "undo", "redo" and "history" of kestractl, with the real daemon.
#include "base/document.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

class KestractlHistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mDaemon.reset(); }

    void undoNamesTheChange();
    void redoNamesTheChange();
    void nothingToUndoIsRefused();
    void undoesTheChangeOfAnotherClient();
    void historyListsTheLatestFirst();
    void historyAsJsonHasEveryKey();
    void showNamesTheOtherChanges();
    void restoreTakesBackOneChange();
    void wrongEntryIsWrongUsage_data();
    void wrongEntryIsWrongUsage();
    void clearForgetsAll();
    void outlivesAKilledDaemon();
    void namesCannotActOnTheTerminal();

private:
    [[nodiscard]] KestractlResult run(const QStringList &arguments) const
    {
        return runKestractl(arguments, mDaemon->environment());
    }
    [[nodiscard]] QString line(const QStringList &arguments) const { return run(arguments).text().trimmed(); }
    [[nodiscard]] QStringList words() const
    {
        QStringList list;
        for (const QJsonValue &entry : run({u"history"_s, u"--json"_s}).json().array())
            list += entry.toObject().value(u"words"_s).toString();
        return list;
    }

    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void KestractlHistoryTest::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

void KestractlHistoryTest::undoNamesTheChange()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(line({u"undo"_s}), u"undone: A: Disable key"_s);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: default key"_s);
}

void KestractlHistoryTest::redoNamesTheChange()
{
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Combo"_s}).exitCode, 0);
    QCOMPARE(run({u"undo"_s}).exitCode, 0);
    QCOMPARE(line({u"redo"_s}), u"redone: Macro Combo added"_s);
    QCOMPARE(line({u"macro"_s, u"list"_s}), u"1  Combo (0 events)"_s);
}

void KestractlHistoryTest::nothingToUndoIsRefused()
{
    for (const QString &command : {u"undo"_s, u"redo"_s}) {
        const KestractlResult result = run({command});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errorText(), u"kestractl: there is nothing to %1\n"_s.arg(command));
    }
}

void KestractlHistoryTest::undoesTheChangeOfAnotherClient()
{
    QVERIFY(mDaemon->request(Command::updateProfile,
                             {{DaemonProtocol::profileId, 0},
                              {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{u"ProfileName"_s, u"Game"_s}}}}));
    QVERIFY(line({u"undo"_s}).endsWith(u" renamed to Game"_s));
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    QCOMPARE(line({u"undo"_s}), u"undone: Game mode on"_s);
}

void KestractlHistoryTest::historyListsTheLatestFirst()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Combo"_s}).exitCode, 0);
    QCOMPARE(run({u"undo"_s}).exitCode, 0);
    const QStringList lines = run({u"history"_s}).text().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    static const QRegularExpression form(
        u"^([ *-]) +(\\d+)  \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  kestractl +(.*)$"_s);
    QStringList shown;
    for (const QString &text : lines)
        shown += form.match(text).captured(1) + form.match(text).captured(3);
    QCOMPARE(shown, QStringList({u" Undone: Macro Combo added"_s, u"-Macro Combo added"_s, u"*A: Disable key"_s}));
}

void KestractlHistoryTest::historyAsJsonHasEveryKey()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QJsonObject entry = run({u"history"_s, u"--json"_s}).json().array().first().toObject();
    for (const QString &key : {u"id"_s, u"time"_s, u"author"_s, u"kind"_s, u"state"_s, u"next"_s, u"profile"_s,
                               u"key"_s, u"assignment"_s, u"words"_s})
        QVERIFY2(!entry.value(key).isUndefined() && !entry.value(key).isNull(), qPrintable(key));
    QCOMPARE(entry.value(u"kind"_s).toString(), u"key"_s);
    QCOMPARE(entry.value(u"assignment"_s).toObject().value(u"command"_s).toInt(), 20);
}

void KestractlHistoryTest::showNamesTheOtherChanges()
{
    QCOMPARE(run({u"light"_s, u"brightness"_s, u"1"_s}).exitCode, 0);
    QVERIFY(line({u"history"_s, u"show"_s, u"1"_s}).endsWith(u"\"history restore 1\" takes back this change alone."_s));
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QString shown = line({u"history"_s, u"show"_s, u"1"_s});
    QVERIFY2(shown.contains(u"\"history restore 1\" also takes back these changes:"_s)
                 && shown.endsWith(u"A: Disable key"_s),
             qPrintable(shown));
}

void KestractlHistoryTest::restoreTakesBackOneChange()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Combo"_s}).exitCode, 0);
    QCOMPARE(line({u"history"_s, u"restore"_s, u"1"_s}), u"taken back: A: Disable key"_s);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: default key"_s);
    QCOMPARE(line({u"macro"_s, u"list"_s}), u"1  Combo (0 events)"_s);
    QCOMPARE(words(), QStringList({u"Taken back: A: Disable key"_s, u"Macro Combo added"_s, u"A: Disable key"_s}));
}

void KestractlHistoryTest::wrongEntryIsWrongUsage_data()
{
    QTest::addColumn<QString>("entry");
    QTest::newRow("unknown") << u"99"_s;
    QTest::newRow("not a number") << u"A"_s;
    QTest::newRow("negative") << u"name:-1"_s;
}

void KestractlHistoryTest::wrongEntryIsWrongUsage()
{
    QFETCH(QString, entry);
    for (const QString &command : {u"show"_s, u"restore"_s})
        QCOMPARE(run({u"history"_s, command, entry}).exitCode, 2);
}

void KestractlHistoryTest::clearForgetsAll()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(line({u"history"_s, u"clear"_s}), u"the history is empty"_s);
    QCOMPARE(line({u"history"_s}), QString());
    QCOMPARE(run({u"undo"_s}).exitCode, 1);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: disabled"_s);
}

void KestractlHistoryTest::outlivesAKilledDaemon()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    QCOMPARE(line({u"undo"_s}), u"undone: A: Disable key"_s);
}

void KestractlHistoryTest::namesCannotActOnTheTerminal()
{
    QCOMPARE(run({u"macro"_s, u"add"_s, u"\u001b[31mRed\nline"_s}).exitCode, 0);
    QCOMPARE(words(), QStringList{u"Macro ?[31mRed?line added"_s});
    QVERIFY(!run({u"history"_s}).output.contains('\x1b'));
}

QTEST_GUILESS_MAIN(KestractlHistoryTest)
#include "kestractlhistorytest.moc"
