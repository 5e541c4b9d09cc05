// SPDX-License-Identifier: MIT
// "undo", "redo" and "history" of kestractl, with the real daemon.
#include "base/qlcoreutility.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
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
    void showHasBeforeAndAfter();
    void showAsJsonHasBothStates();
    void showNamesTheOtherChanges();
    void restoreTakesBackOneChange();
    void restoreIsRefusedAfterAnotherChange();
    void wrongEntryIsWrongUsage_data();
    void wrongEntryIsWrongUsage();
    void clearForgetsAll();
    void outlivesAKilledDaemon();
    void namesCannotActOnTheTerminal();
    void twoAtOnceUndoWhatTheySee();
    void exportedDocumentIsRestored_data();
    void exportedDocumentIsRestored();
    void xmlDocumentIsRestored();
    void faultyDocumentIsRefused_data();
    void faultyDocumentIsRefused();
    void restoringIsOneEntry();
    void dailyBackupIsRestored();
    void restoreNeedsAFileOrADate();

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

    [[nodiscard]] QVariantMap document() const
    {
        return QlCoreUtility::convertDataToDictionary(run({u"document"_s, u"--plist"_s}).output)
            .value_or(QVariantMap());
    }
    void writeFile(const QString &path, const QByteArray &bytes) const
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    QTemporaryDir mFolder;
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

void KestractlHistoryTest::showHasBeforeAndAfter()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"single"_s, u"B"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QString shown = line({u"history"_s, u"show"_s, u"2"_s});
    QVERIFY2(shown.contains(u"\n  before: A: Single key (B)\n  after:  A: Disable key\n"_s), qPrintable(shown));
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Combo"_s}).exitCode, 0);
    const QString added = line({u"history"_s, u"show"_s, u"3"_s});
    QVERIFY2(added.contains(u"\n  before: does not exist\n  after:  Macro Combo\n"_s), qPrintable(added));
}

void KestractlHistoryTest::showAsJsonHasBothStates()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"single"_s, u"B"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QJsonObject entry = run({u"history"_s, u"show"_s, u"2"_s, u"--json"_s}).json().object();
    QCOMPARE(entry.value(u"partCount"_s).toInt(), 1);
    QCOMPARE(entry.value(u"parts"_s).toArray().size(), 1);
    const QJsonObject part = entry.value(u"parts"_s).toArray().first().toObject();
    QCOMPARE(part.value(u"kind"_s).toString(), u"key"_s);
    QCOMPARE(part.value(u"key"_s).toInt(), 4);
    const QJsonObject before = part.value(u"before"_s).toObject();
    const QJsonObject after = part.value(u"after"_s).toObject();
    QCOMPARE(before.value(u"assignment"_s).toObject().value(u"command"_s).toInt(), 16);
    QCOMPARE(before.value(u"words"_s).toString(), u"A: Single key (B)"_s);
    QCOMPARE(after.value(u"assignment"_s).toObject().value(u"command"_s).toInt(), 20);
    QCOMPARE(after.value(u"words"_s).toString(), u"A: Disable key"_s);
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

void KestractlHistoryTest::restoreIsRefusedAfterAnotherChange()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const auto newest = [this] {
        const QJsonObject entry = run({u"history"_s, u"show"_s, u"1"_s, u"--json"_s}).json().object();
        return QString::number(entry.value(u"restore"_s).toObject().value(u"newest"_s).toInt());
    };
    const QString shown = newest();
    QCOMPARE(run({u"key"_s, u"B"_s, u"disable"_s}).exitCode, 0);
    const KestractlResult refused = run({u"history"_s, u"restore"_s, u"1"_s, u"--newest"_s, shown});
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.errorText(), u"kestractl: the settings have changed since; read the history again\n"_s);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: disabled"_s);
    QCOMPARE(run({u"history"_s, u"restore"_s, u"1"_s, u"--newest"_s, newest()}).exitCode, 0);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: default key"_s);
    QCOMPARE(run({u"history"_s, u"restore"_s, u"1"_s, u"--newest"_s, u"0"_s}).exitCode, 2);
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
    QCOMPARE(line({u"history"_s, u"clear"_s}),
             u"the history is empty, and the backups and previous settings are deleted"_s);
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

void KestractlHistoryTest::twoAtOnceUndoWhatTheySee()
{
    constexpr int changes = 12;
    for (int number = 0; number < changes; ++number)
        QCOMPARE(run({u"macro"_s, u"add"_s, u"M%1"_s.arg(number)}).exitCode, 0);
    int undone = 0;
    QStringList shown;
    while (undone < changes) {
        QProcess one;
        QProcess other;
        startKestractl(one, {u"undo"_s}, mDaemon->environment());
        startKestractl(other, {u"undo"_s}, mDaemon->environment());
        for (QProcess *process : {&one, &other}) {
            const KestractlResult result = finishedResult(*process);
            undone += result.exitCode == 0;
            if (result.exitCode == 0)
                shown += result.text().trimmed();
            else // the other one was faster, or there is nothing left
                QCOMPARE(result.exitCode, 1);
        }
        QCOMPARE(line({u"macro"_s, u"list"_s}).count(u"(0 events)"_s), changes - undone);
    }
    shown.sort();
    QStringList expected;
    for (int number = 0; number < changes; ++number)
        expected += u"undone: Macro M%1 added"_s.arg(number);
    expected.sort();
    QCOMPARE(shown, expected);
}

void KestractlHistoryTest::exportedDocumentIsRestored_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("binary") << u"all.plist"_s;
    QTest::newRow("JSON") << u"all.json"_s;
}

void KestractlHistoryTest::exportedDocumentIsRestored()
{
    QFETCH(QString, name);
    const QString path = mFolder.filePath(name);
    QCOMPARE(run({u"light"_s, u"color"_s, u"ff0000"_s}).exitCode, 0);
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Combo"_s}).exitCode, 0);
    const QVariantMap before = document();
    QCOMPARE(line({u"document"_s, u"export"_s, path}), u"all settings are in "_s + path);
    QCOMPARE(run({u"macro"_s, u"delete"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Game"_s}).exitCode, 0);
    QVERIFY(document() != before);
    QCOMPARE(line({u"document"_s, u"restore"_s, path}), u"all settings are those of "_s + path);
    // Byte for byte: 1 and 1.0 differ.
    QCOMPARE(QlCoreUtility::convertDictionaryToData(document()), QlCoreUtility::convertDictionaryToData(before));
}

void KestractlHistoryTest::xmlDocumentIsRestored()
{
    const QString path = mFolder.filePath(u"all.xml"_s);
    writeFile(path,
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Profiles</key><array><dict>"
              "<key>ProfileName</key><string>X</string></dict></array><key>Macros</key><array/>"
              "<key>DeviceSettings</key><dict><key>ActiveProfile</key><integer>0</integer></dict></dict></plist>");
    QCOMPARE(run({u"document"_s, u"restore"_s, path}).exitCode, 0);
    QCOMPARE(line({u"profile"_s, u"list"_s}), u"*  1  X"_s);
}

void KestractlHistoryTest::faultyDocumentIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &fault) {
        QTest::newRow(name) << bytes << fault;
    };
    row("empty", "", u"it is neither a binary or XML property list nor JSON"_s);
    row("old-style text", "Profiles = ();", u"it is neither a binary or XML property list nor JSON"_s);
    row("JSON syntax", "{\n\"Profiles\": [,]\n}", u"line 2: illegal value"_s);
    row("JSON null", "{\"Profiles\": null}", u"it has a value that no settings can have, such as null"_s);
    row("XML syntax", "<plist>\n<dict>\n</plist>", u"line 3, column"_s);
    row("XML without a dictionary", "<plist version=\"1.0\"><array/></plist>",
        u"the XML is not a property list with a dictionary"_s);
    row("binary", "bplist00xx", u"the binary property list is damaged, or has no dictionary"_s);
    row("no macros", "{\"Profiles\": []}", u"Macros: missing"_s);
    row("a wrong value",
        "{\"Profiles\": [{\"Keys\": {\"4\": \"20\"}}], \"Macros\": [], \"DeviceSettings\": "
        "{\"ActiveProfile\": 0}}",
        u"Profiles > 1 > Keys > 4: not a dictionary"_s);
}

void KestractlHistoryTest::faultyDocumentIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, fault);
    const QString path = mFolder.filePath(u"faulty"_s);
    writeFile(path, bytes);
    const QVariantMap before = document();
    const KestractlResult result = run({u"document"_s, u"restore"_s, path});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().startsWith(u"kestractl: %1: %2"_s.arg(path, fault)), qPrintable(result.errorText()));
    QCOMPARE(document(), before);
    QCOMPARE(words(), QStringList());
}

void KestractlHistoryTest::restoringIsOneEntry()
{
    const QString path = mFolder.filePath(u"all.json"_s);
    QCOMPARE(run({u"document"_s, u"export"_s, path}).exitCode, 0);
    const QVariantMap before = document();
    QCOMPARE(run({u"document"_s, u"restore"_s, path}).exitCode, 0);
    QCOMPARE(words(), QStringList()); // nothing has changed
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Game"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QVariantMap after = document();
    QCOMPARE(run({u"document"_s, u"restore"_s, path}).exitCode, 0);
    QCOMPARE(document(), before);
    QCOMPARE(words().size(), 3);
    QCOMPARE(line({u"undo"_s}), u"undone: All settings restored from all.json"_s);
    QCOMPARE(document(), after);
}

void KestractlHistoryTest::dailyBackupIsRestored()
{
    QCOMPARE(line({u"document"_s, u"backups"_s}), QString());
    const QVariantMap before = document();
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Game"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    const QString day = line({u"document"_s, u"backups"_s}).section(u'\n', -1);
    QVERIFY2(QDate::fromString(day, Qt::ISODate).isValid(), qPrintable(day));
    QCOMPARE(line({u"document"_s, u"restore"_s, u"--date"_s, day}), u"all settings are those of "_s + day);
    QCOMPARE(document(), before);
    QCOMPARE(run({u"undo"_s}).exitCode, 0);
    QCOMPARE(run({u"history"_s, u"clear"_s}).exitCode, 0);
    const KestractlResult gone = run({u"document"_s, u"restore"_s, u"--date"_s, day});
    QCOMPARE(gone.exitCode, 2);
    QCOMPARE(gone.errorText(), u"kestractl: there is no backup of %1\n"_s.arg(day));
}

void KestractlHistoryTest::restoreNeedsAFileOrADate()
{
    QCOMPARE(run({u"document"_s, u"restore"_s}).exitCode, 2);
    QCOMPARE(run({u"document"_s, u"restore"_s, u"file"_s, u"--date"_s, u"2026-11-21"_s}).exitCode, 2);
    QCOMPARE(run({u"document"_s, u"restore"_s, mFolder.filePath(u"absent"_s)}).exitCode, 2);
    const QString path = mFolder.filePath(u"no/folder.json"_s);
    QCOMPARE(run({u"document"_s, u"export"_s, path}).exitCode, 5);
}

QTEST_GUILESS_MAIN(KestractlHistoryTest)
#include "kestractlhistorytest.moc"
