// SPDX-License-Identifier: MIT
// The commands of kestractl for the events of a macro, and its text, with the real daemon on a private bus.
#include "base/propertylist.h"
#include "keys/keymapping.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace MacroEdits;
using DaemonProtocol::Command;

namespace {

constexpr HidUsage keyA{.page = 7, .usage = 4};
constexpr HidUsage keyB{.page = 7, .usage = 5};
constexpr HidUsage keyC{.page = 7, .usage = 6};

/// Rows: 1 press A, 2 pause, 3 release A, 4 pause, 5 press B, 6 pause, 7 release B.
const QVariantList &sample()
{
    static const QVariantList events = tap(keyA, 10, 20) + tap(keyB, 30, 40);
    return events;
}

} // namespace

class TestKestractlMacroEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void changesTheEvents_data();
    void changesTheEvents();
    void namesTheRowsWithoutAPartner();
    void refusesWrongWords_data();
    void refusesWrongWords();
    void refusesMoreEventsThanFit_data();
    void refusesMoreEventsThanFit();
    void isOneChangeOfTheHistory();
    void duplicates();
    void showsTheKeysThatPlayAMacro();
    void textIsImported();
    void importOfATextSaysWhereItIsWrong();
    void importOfATextSaysThatItsFirstLineIsWrong_data();
    void importOfATextSaysThatItsFirstLineIsWrong();
    void editsInTheEditorOfTheUser();
    void editorThatChangesNothing();
    void editorThatFails_data();
    void editorThatFails();
    void textThatCannotBeReadIsKept();
    void textThatIsGoneIsNotPromised();
    void asksToEditAgain();
    void keepsTheTextOfAUserWhoGivesUp();
    void keepsTheTextIfTheMacroHasChanged();
    void textOfTheEditorIsPrivate();

private:
    KestractlResult run(const QStringList &words) const
    {
        return runKestractl(QStringList{u"macro"_s} + words, mDaemon->environment());
    }
    void add(const QString &name, const QVariantList &events);
    QVariantList events(int index = 0);
    /// Makes a shell script the user's editor. Its argument is the file.
    void setEditor(const QByteArray &script);
    /// The file that the message names, without the rest of its folder; empty if there is none.
    static QByteArray takeKeptText(const QString &message);

    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<QTemporaryDir> mFolder;
};

void TestKestractlMacroEvents::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mFolder = std::make_unique<QTemporaryDir>();
    mDaemon->environment().remove(u"VISUAL"_s);
    mDaemon->environment().insert(u"TMPDIR"_s, mFolder->path());
    mDaemon->environment().insert(u"KESTRACTL"_s, builtExecutable(u"kestractl"_s));
    add(u"Combo"_s, sample());
}

void TestKestractlMacroEvents::cleanup()
{
    mDaemon.reset();
    mFolder.reset();
}

void TestKestractlMacroEvents::add(const QString &name, const QVariantList &events)
{
    const QVariantMap macro = MacroRecord::withEvents({{u"MacroName"_s, name}}, events);
    const auto reply = mDaemon->request(Command::addMacro, {{u"MacroContents"_s, macro}});
    QVERIFY(reply && reply->values.value(u"ReturnStatus"_s) == QVariant(0));
}

QVariantList TestKestractlMacroEvents::events(int index)
{
    const auto settings = mDaemon->request(Command::readSettings);
    if (!settings)
        return {};
    const QVariantMap document = settings->values.value(u"AllDevSettings"_s).toMap();
    return MacroRecord::events(document.value(u"Macros"_s).toList().value(index).toMap());
}

void TestKestractlMacroEvents::setEditor(const QByteArray &script)
{
    const QString path = writeFile(mFolder->filePath(u"editor"_s), "#!/bin/sh\n" + script);
    mDaemon->environment().insert(u"EDITOR"_s, u"sh '%1'"_s.arg(path));
}

QByteArray TestKestractlMacroEvents::takeKeptText(const QString &message)
{
    const QString path = message.section(u"your text is in "_s, 1).trimmed();
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestKestractlMacroEvents::changesTheEvents_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QVariantList>("expected");
    QTest::addColumn<QString>("unpaired");
    const QVariantList &s = sample();
    const auto row = [](const QStringList &words, const QVariantList &expected, const QString &unpaired = {}) {
        QTest::newRow(qPrintable(words.join(u' '))) << words << expected << unpaired;
    };
    const QVariantList tapC = tap(keyC);
    row({u"insert"_s, u"Combo"_s, u"1"_s, u"tap C"_s}, tapC + s);
    row({u"insert"_s, u"1"_s, u"5"_s, u"tap C"_s}, s.first(2) + tapC + s.sliced(2));
    row({u"insert"_s, u"1"_s, u"4"_s, u"tap C"_s}, s.first(2) + tapC + s.sliced(2)); // the pause of the same event
    row({u"insert"_s, u"1"_s, u"end"_s, u"wait 9 ms"_s, u"press C"_s}, s + QVariantList{press(keyC, 9)},
        u"press without release: row 9"_s);
    row({u"insert"_s, u"1"_s, u"end"_s, u"wait 9 ms"_s}, s + QVariantList{pause(9)});
    row({u"insert"_s, u"1"_s, u"3"_s, u"wait 9 ms"_s}, settingDelays(s, {1}, 29).value());
    row({u"insert"_s, u"1"_s, u"3"_s, u"press C"_s, u"wait 9 ms"_s},
        inserting(settingDelays(s, {1}, 29).value(), 1, {press(keyC)}).value(), u"press without release: row 3"_s);
    row({u"delete-event"_s, u"Combo"_s, u"3"_s}, removing(s, {1}).value(), u"press without release: row 1"_s);
    row({u"delete-event"_s, u"1"_s, u"1,5-7"_s}, removing(s, {0, 2, 3}).value(), u"release without press: row 1"_s);
    row({u"delete-event"_s, u"1"_s, u"all"_s}, {});
    row({u"move-event"_s, u"1"_s, u"5-7"_s, u"1"_s}, moving(s, {2, 3}, 0).value());
    row({u"move-event"_s, u"1"_s, u"1"_s, u"end"_s}, moving(s, {0}, 4).value(),
        u"press without release: row 7; release without press: row 1"_s);
    row({u"set-delay"_s, u"1"_s, u"2"_s, u"500"_s}, settingDelays(s, {1}, 500).value());
    row({u"set-delay"_s, u"1"_s, u"all"_s, u"0"_s}, settingDelays(s, {0, 1, 2, 3}, 0).value());
    row({u"scale-delays"_s, u"1"_s, u"all"_s, u"0.5"_s}, scalingDelays(s, {0, 1, 2, 3}, 0.5).value());
    row({u"scale-delays"_s, u"1"_s, u"7"_s, u"10"_s}, settingDelays(s, {3}, 400).value());
}

void TestKestractlMacroEvents::changesTheEvents()
{
    QFETCH(QStringList, words);
    QFETCH(QVariantList, expected);
    QFETCH(QString, unpaired);
    const KestractlResult result = run(words);
    QCOMPARE(result.errorText(), QString());
    const QString count = expected.size() == 1 ? u"1 event"_s : u"%1 events"_s.arg(expected.size());
    const QString note = unpaired.isEmpty() ? QString() : unpaired + u'\n';
    QCOMPARE(result.text(), u"macro 1 \"Combo\" is changed: %1\n"_s.arg(count) + note);
    QCOMPARE(events(), expected);
}

void TestKestractlMacroEvents::namesTheRowsWithoutAPartner()
{
    const auto note = [this](const QStringList &words) {
        const KestractlResult result = run(words);
        return result.exitCode == 0 ? result.text().section(u'\n', 1) : result.errorText();
    };
    // Also those that an earlier command has left.
    QCOMPARE(note({u"delete-event"_s, u"1"_s, u"3"_s}), u"press without release: row 1\n"_s);
    QCOMPARE(note({u"set-delay"_s, u"1"_s, u"all"_s, u"1"_s}), u"press without release: row 1\n"_s);
    QCOMPARE(note({u"duplicate"_s, u"1"_s}), u"press without release: row 1\n"_s);
    QCOMPARE(note({u"text"_s, u"1"_s, u"c"_s, u"--layout=us"_s, u"--append"_s}), u"press without release: row 1\n"_s);
    QCOMPARE(note({u"text"_s, u"1"_s, u"c"_s, u"--layout=us"_s}), QString());
    setEditor("printf 'wait 1 s\\nrelease C\\ntap A\\npress B\\n' > \"$1\"\n"); // the first pause has no row
    QCOMPARE(note({u"edit"_s, u"1"_s}), u"press without release: row 7; release without press: row 1\n"_s);
    const auto import = [&](const QByteArray &text) {
        return note({u"import"_s, writeFile(mFolder->filePath(u"Keys.txt"_s), text)});
    };
    QCOMPARE(import("tap A\nwait 1 s\n"), QString());
    QCOMPARE(import("press A\npress A\n"), u"press without release: rows 1, 3\n"_s);
    const QString ten = u"release without press: rows 1, 3, 5, 7, 9, 11, 13, 15, 17, 19"_s;
    QCOMPARE(import(QByteArray("release A\n").repeated(10)), ten + u'\n');
    QCOMPARE(import(QByteArray("release A\n").repeated(12)), ten + u" and 2 more\n"_s);
}

void TestKestractlMacroEvents::refusesWrongWords_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    const auto row = [](const QStringList &words, const QString &message) {
        QTest::newRow(qPrintable(words.join(u' '))) << words << message;
    };
    const QString noRow = u"macro 1 \"Combo\" has no row \"%1\" (see kestractl macro show)"_s;
    row({u"insert"_s, u"1"_s, u"8"_s, u"tap C"_s}, noRow.arg(8));
    row({u"insert"_s, u"1"_s, u"1"_s, u"tap Hyper"_s}, u"line 1, column 5: there is no key"_s);
    row({u"insert"_s, u"1"_s, u"1"_s, u"tap C"_s, u"jump"_s}, u"line 2, column 1: "_s);
    row({u"insert"_s, u"1"_s, u"1"_s, u"name \"X\""_s}, u"a name is not an event"_s);
    row({u"insert"_s, u"1"_s, u"1"_s, u"# nothing"_s}, u"the lines have no event"_s);
    row({u"insert"_s, u"2"_s, u"1"_s, u"tap C"_s}, u"macro"_s);
    row({u"delete-event"_s, u"1"_s, u"0"_s}, noRow.arg(0));
    row({u"delete-event"_s, u"1"_s, u"5-2"_s}, noRow.arg(u"5-2"_s));
    row({u"delete-event"_s, u"1"_s, u"1,"_s}, noRow.arg(QString()));
    row({u"delete-event"_s, u"1"_s, u"1-2-3"_s}, noRow.arg(u"2-3"_s));
    row({u"delete-event"_s, u"1"_s, u"end"_s}, noRow.arg(u"end"_s));
    row({u"move-event"_s, u"1"_s, u"1"_s, u"9"_s}, noRow.arg(9));
    row({u"set-delay"_s, u"1"_s, u"1"_s, u"x"_s}, u"\"x\" is not a number of milliseconds"_s);
    row({u"set-delay"_s, u"--"_s, u"1"_s, u"1"_s, u"-5"_s}, u"\"-5\" is not a number of milliseconds"_s);
    row({u"scale-delays"_s, u"1"_s, u"1"_s, u"nan"_s}, u"\"nan\" is not a factor"_s);
    row({u"scale-delays"_s, u"1"_s, u"1"_s, u"1001"_s}, u"\"1001\" is not a factor"_s);
    row({u"insert"_s, u"1"_s, u"3"_s, u"wait 2147483647 ms"_s},
        u"macro 1 \"Combo\" cannot have a longer pause than 2147483647 ms"_s);
    row({u"show"_s, u"1"_s, u"--text"_s, u"--json"_s}, u"exclude each other"_s);
}

void TestKestractlMacroEvents::refusesWrongWords()
{
    QFETCH(QStringList, words);
    QFETCH(QString, message);
    const KestractlResult result = run(words);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(message), result.errors.constData());
    QCOMPARE(result.text(), QString());
    QCOMPARE(events(), sample());
}

void TestKestractlMacroEvents::refusesMoreEventsThanFit_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("subject"); // of the message
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("room");
    const QString combo = u"macro 1 \"Combo\" cannot be changed"_s;
    const auto added = [](const QString &name) { return u"macro \"%1\" cannot be added"_s.arg(name); };
    const auto row = [](const QStringList &words, const QString &subject, int count, int room) {
        QTest::newRow(qPrintable(words.first())) << words << subject << count << room;
    };
    row({u"insert"_s, u"1"_s, u"1"_s, u"tap C"_s}, combo, 6, 5);
    row({u"text"_s, u"1"_s, u"c"_s, u"--layout=us"_s, u"--append"_s}, combo, 6, 5);
    row({u"edit"_s, u"1"_s}, combo, 6, 5);
    row({u"import"_s, u"two.txt"_s}, added(u"Two"_s), 2, 1);
    row({u"duplicate"_s, u"1"_s, u"Copy"_s}, added(u"Copy"_s), 4, 1);
}

void TestKestractlMacroEvents::refusesMoreEventsThanFit()
{
    QFETCH(QStringList, words);
    QFETCH(QString, subject);
    QFETCH(int, count);
    QFETCH(int, room);
    const QVariantList full(MacroRecord::maximumEvents, press(keyA));
    for (int other = 0; other < 4; ++other)
        add(u"Full"_s, full);
    add(u"Nearly full"_s, full.sliced(sample().size() + 1)); // room for one more event
    words.replaceInStrings(u"two.txt"_s, writeFile(mFolder->filePath(u"two.txt"_s), "name \"Two\"\ntap C\n"));
    setEditor("echo 'tap C' >> \"$1\"\n");
    const KestractlResult result = run(words);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.text(), QString());
    const QString reason =
        u": %1 events; the other macros leave room for %2, as all together have at most 50000"_s.arg(count).arg(room);
    QVERIFY2(result.errorText().startsWith(u"kestractl: "_s + subject + reason), result.errors.constData());
    QCOMPARE(events(), sample());
    QCOMPARE(events(6), QVariantList());                                      // no macro was added
    QCOMPARE(run({u"insert"_s, u"1"_s, u"end"_s, u"press C"_s}).exitCode, 0); // the last one that fits
}

void TestKestractlMacroEvents::isOneChangeOfTheHistory()
{
    QCOMPARE(run({u"delete-event"_s, u"1"_s, u"1-3"_s}).exitCode, 0);
    const QJsonArray entries = runKestractl({u"history"_s, u"--json"_s}, mDaemon->environment()).json().array();
    QCOMPARE(entries.size(), 2); // with the addition
    QCOMPARE(runKestractl({u"undo"_s}, mDaemon->environment()).exitCode, 0);
    QCOMPARE(events(), sample());
}

void TestKestractlMacroEvents::duplicates()
{
    QCOMPARE(run({u"duplicate"_s, u"Combo"_s}).text(), u"macro 2 \"Combo(2)\" is added\n"_s);
    QCOMPARE(run({u"duplicate"_s, u"Combo"_s, u"Raid"_s}).text(), u"macro 3 \"Raid\" is added\n"_s);
    QCOMPARE(events(1), sample());
    QCOMPARE(events(2), sample());
    QCOMPARE(run({u"duplicate"_s, u"Combo"_s, QString()}).exitCode, 2);
}

void TestKestractlMacroEvents::showsTheKeysThatPlayAMacro()
{
    QCOMPARE(run({u"where"_s, u"Combo"_s}).text(), u"no key plays macro 1 \"Combo\"\n"_s);
    QCOMPARE(run({u"where"_s, u"Combo"_s, u"--json"_s}).json().array(), QJsonArray());
    const auto kestractl = [this](const QStringList &words) {
        return runKestractl(words, mDaemon->environment()).exitCode;
    };
    QCOMPARE(kestractl({u"key"_s, u"F5"_s, u"macro"_s, u"Combo"_s}), 0);
    QCOMPARE(kestractl({u"profile"_s, u"add"_s, u"Game"_s}), 0);
    QCOMPARE(kestractl({u"key"_s, u"M1"_s, u"macro"_s, u"Combo"_s}), 0);
    QCOMPARE(run({u"where"_s, u"1"_s}).text(), u"F5 in Default Profile, M1 in Game\n"_s);
    const QJsonObject second = run({u"where"_s, u"1"_s, u"--json"_s}).json().array().at(1).toObject();
    QCOMPARE(second,
             QJsonObject({{u"profile"_s, 1}, {u"profileName"_s, u"Game"_s}, {u"code"_s, 106}, {u"key"_s, u"M1"_s}}));
    QCOMPARE(run({u"delete"_s, u"1"_s}).text(),
             u"macro 1 \"Combo\" is deleted\nit was on F5 in Default Profile, M1 in Game\n"_s);
}

void TestKestractlMacroEvents::textIsImported()
{
    const KestractlResult shown = run({u"show"_s, u"Combo"_s, u"--text"_s});
    QCOMPARE(shown.text(), u"name \"Combo\"\nwait 10 ms\ntap A for 20 ms\nwait 30 ms\ntap B for 40 ms\n"_s);
    const QString file = writeFile(mFolder->filePath(u"Combo.txt"_s), shown.output);
    QCOMPARE(run({u"import"_s, file}).text(), u"macro 2 \"Combo(2)\" is added\n"_s);
    QCOMPARE(events(1), sample());
    writeFile(file, "# without a name\ntap C\n");
    QCOMPARE(run({u"import"_s, file}).text(), u"macro 3 \"Untitled Macro\" is added\n"_s);
    QCOMPARE(events(2), tap(keyC));
}

void TestKestractlMacroEvents::importOfATextSaysWhereItIsWrong()
{
    const QString file = writeFile(mFolder->filePath(u"Combo.txt"_s), "tap A\ntap  Hyper\n");
    const KestractlResult result = run({u"import"_s, file});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.errorText(), u"kestractl: \"%1\", line 2, column 6: there is no key \"Hyper\" (see kestractl key "
                                 "--list)\n"_s.arg(file));
    QCOMPARE(events(1), QVariantList());
}

void TestKestractlMacroEvents::importOfATextSaysThatItsFirstLineIsWrong_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");
    QTest::newRow("a word") << "pres A\ntap B\n"_ba << u"line 1, column 1: "_s;
    QTest::newRow("behind a comment") << "\xef\xbb\xbf# a\n\n  - tap A\n"_ba << u"line 3, column 3: "_s;
    QTest::newRow("a digit") << "100 ms"_ba << u"line 1, column 1: "_s;
}

void TestKestractlMacroEvents::importOfATextSaysThatItsFirstLineIsWrong()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, place);
    const QString file = writeFile(mFolder->filePath(u"Combo.txt"_s), text);
    const KestractlResult result = run({u"import"_s, file});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().startsWith(u"kestractl: \"%1\", %2a line begins with press"_s.arg(file, place)),
             result.errors.constData());
    QCOMPARE(events(1), QVariantList());
}

void TestKestractlMacroEvents::editsInTheEditorOfTheUser()
{
    setEditor("sed -i 's/tap B/tap C/' \"$1\"\n");
    QCOMPARE(run({u"edit"_s, u"Combo"_s}).text(), u"macro 1 \"Combo\" is changed: 4 events\n"_s);
    QCOMPARE(events(), tap(keyA, 10, 20) + tap(keyC, 30, 40));
    // $VISUAL precedes $EDITOR. An editor may also replace the file.
    mDaemon->environment().insert(u"VISUAL"_s, u"sh -c 'echo tap B > \"$0\".new && mv \"$0\".new \"$0\"'"_s);
    QCOMPARE(run({u"edit"_s, u"Combo"_s}).text(), u"macro 1 \"Combo\" is changed: 2 events\n"_s);
    QCOMPARE(events(), tap(keyB));
}

void TestKestractlMacroEvents::editorThatChangesNothing()
{
    setEditor("cp \"$1\" \"$TMPDIR/seen\"\n");
    QCOMPARE(run({u"edit"_s, u"1"_s}).text(), u"macro 1 \"Combo\" is unchanged\n"_s);
    QFile seen(mFolder->filePath(u"seen"_s));
    QVERIFY(seen.open(QIODevice::ReadOnly));
    const QByteArray text = seen.readAll();
    QVERIFY2(text.startsWith("# The events of \"Combo\"."), text.constData());
    QVERIFY2(text.endsWith("\nwait 10 ms\ntap A for 20 ms\nwait 30 ms\ntap B for 40 ms\n"), text.constData());
    QCOMPARE(runKestractl({u"history"_s, u"--json"_s}, mDaemon->environment()).json().array().size(), 1);
}

void TestKestractlMacroEvents::editorThatFails_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("before a change") << QByteArray("exit 3\n") << QByteArray();
    QTest::newRow("after a change") << QByteArray("echo tap B > \"$1\"\nexit 3\n") << QByteArray("tap B\n");
    QTest::newRow("killed after a change")
        << QByteArray("echo tap B > \"$1\"\nkill -KILL $$\n") << QByteArray("tap B\n");
}

void TestKestractlMacroEvents::editorThatFails()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, kept);
    setEditor(script);
    const KestractlResult result = run({u"edit"_s, u"1"_s});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(u"has failed; nothing is changed"_s), result.errors.constData());
    QCOMPARE(result.errorText().contains(u"your text is in "_s), !kept.isEmpty());
    QCOMPARE(takeKeptText(result.errorText()), kept);
    QCOMPARE(events(), sample());
}

void TestKestractlMacroEvents::textThatCannotBeReadIsKept()
{
    // A folder in place of the file: not even root can read it as a file.
    setEditor("rm \"$1\" && mkdir \"$1\" && echo tap B > \"$1/text\"\n");
    const KestractlResult result = run({u"edit"_s, u"1"_s});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(u"cannot be read"_s), result.errors.constData());
    const QString path = result.errorText().section(u"your text is in "_s, 1).trimmed();
    QVERIFY2(!path.isEmpty(), result.errors.constData());
    QVERIFY(QFile::exists(path + u"/text"_s));
}

void TestKestractlMacroEvents::textThatIsGoneIsNotPromised()
{
    setEditor("rm \"$1\"\n");
    const KestractlResult result = run({u"edit"_s, u"1"_s});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(u"cannot be read"_s), result.errors.constData());
    QVERIFY2(!result.errorText().contains(u"your text"_s), result.errors.constData());
}

void TestKestractlMacroEvents::asksToEditAgain()
{
    // The second run finds the text of the first one.
    setEditor("if grep -q jump \"$1\"; then sed -i 's/jump/tap/' \"$1\"; else echo ' jump C' > \"$1\"; fi\n");
    QProcess process;
    startKestractl(process, {u"macro"_s, u"edit"_s, u"1"_s}, mDaemon->environment());
    process.write("y\n");
    const KestractlResult result = finishedResult(process);
    QVERIFY2(result.errorText().contains(u"line 1, column 2: "_s), result.errors.constData());
    QCOMPARE(result.text(), u"edit again? [Y/n]\nmacro 1 \"Combo\" is changed: 2 events\n"_s);
    QCOMPARE(events(), tap(keyC));
}

void TestKestractlMacroEvents::keepsTheTextOfAUserWhoGivesUp()
{
    setEditor("echo 'jump C' > \"$1\"\n");
    for (const char *answer : {"n\n", ""}) {
        QProcess process;
        startKestractl(process, {u"macro"_s, u"edit"_s, u"1"_s}, mDaemon->environment());
        process.write(answer);
        process.closeWriteChannel();
        const KestractlResult result = finishedResult(process);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(takeKeptText(result.errorText()), QByteArray("jump C\n"));
        QCOMPARE(events(), sample());
    }
}

void TestKestractlMacroEvents::keepsTheTextIfTheMacroHasChanged()
{
    setEditor("\"$KESTRACTL\" macro set-delay 1 all 99\necho tap C > \"$1\"\n");
    const KestractlResult changed = run({u"edit"_s, u"1"_s});
    QCOMPARE(changed.exitCode, 1);
    QVERIFY2(changed.errorText().contains(u"the events of the macro have changed since they were read"_s),
             changed.errors.constData());
    QCOMPARE(takeKeptText(changed.errorText()), QByteArray("tap C\n"));
    QCOMPARE(events(), settingDelays(sample(), {0, 1, 2, 3}, 99).value());
    setEditor("\"$KESTRACTL\" macro delete 1\necho tap C > \"$1\"\n");
    const KestractlResult gone = run({u"edit"_s, u"1"_s});
    QCOMPARE(gone.exitCode, 1);
    QVERIFY2(gone.errorText().contains(u"there is no such macro any more"_s), gone.errors.constData());
    QCOMPARE(takeKeptText(gone.errorText()), QByteArray("tap C\n"));
}

void TestKestractlMacroEvents::textOfTheEditorIsPrivate()
{
    setEditor("stat -c %a \"$(dirname \"$1\")\" > \"$TMPDIR/mode\"\necho \"$1\" > \"$TMPDIR/path\"\n");
    QCOMPARE(run({u"edit"_s, u"1"_s}).exitCode, 0);
    const auto read = [this](const QString &name) {
        QFile file(mFolder->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    };
    QCOMPARE(read(u"mode"_s), QByteArray("700"));
    QVERIFY(!read(u"path"_s).isEmpty());
    QVERIFY(!QFile::exists(QString::fromLocal8Bit(read(u"path"_s)))); // removed at the end
}

QTEST_GUILESS_MAIN(TestKestractlMacroEvents)
#include "kestractlmacroeventstest.moc"
