// SPDX-License-Identifier: MIT
// "kestractl macro" and the real daemon with its virtual keyboard, on a private bus with settings of their own.
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "macros/macrorecord.h"
#include "platform/desktopkeymap.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

QVariantMap tapOfA(int delayMs)
{
    return MacroRecord::withEvents(
        {{u"MacroName"_s, u"Tap"_s}},
        {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = delayMs, .argument = 4}),
         MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = delayMs, .argument = 4})});
}

} // namespace

class TestKestractlMacros : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void macrosAreAddedListedRenamedAndDeleted();
    void namesWithPercentSignsAreShownUnchanged();
    void deletingResetsTheKeys();
    void deletingKeepsTheNumbersOfTheOtherKeys();
    void showsAMacroAsTheWindowDoes();
    void exportedMacroIsImportedWithAUniqueName();
    void exportReportsWhyTheFileCannotBeWritten();
    void importNamesMacrosWithoutAName();
    void oldStyleTextIsImportedWithItsNumbers();
    void importRefusesOtherFiles_data();
    void importRefusesOtherFiles();
    void reportsAnExportThatCannotBeWritten();
    void textBecomesTheEventsOfTheMacro();
    void textIsAppendedAfterThePause();
    void modifiersHeldWhereTheTextBeginsAreNamed();
    void namesWhatTheLayoutCannotTypeAndChangesNothing();
    void textUsesTheLayoutOfTheUser();
    void wrongTextCommandsChangeNothing_data();
    void wrongTextCommandsChangeNothing();
    void recordsUntilReturn();
    void recordingAppends();
    void recordingNothingKeepsTheMacro_data();
    void recordingNothingKeepsTheMacro();
    void recordingEndsWithoutReturn_data();
    void recordingEndsWithoutReturn();
    void recordingNeedsTheKeyboard();
    void playsWithTheAssignedKey_data();
    void playsWithTheAssignedKey();
    void playingNeedsAKey();
    void macroThatDoesNotExistIsWrongUsage_data();
    void macroThatDoesNotExistIsWrongUsage();

private:
    KestractlResult run(const QStringList &words) const
    {
        return runKestractl(QStringList{u"macro"_s} + words, mDaemon->environment());
    }
    QString line(const QStringList &words) const { return run(words).text().trimmed(); }
    QString fileWith(const QByteArray &bytes) const
    {
        return writeFile(mFolder->filePath(u"File.KestraMacro"_s), bytes);
    }
    QStringList names() const;
    QVariantMap record(int number);
    void add(const QVariantMap &macro);
    /// The events of the first macro: "+4" is a press, "-4" a release, with the pause before it in brackets unless 0.
    QString events();
    /// Starts "kestractl macro record" and waits until the daemon records.
    void startRecording(QProcess &process, const QStringList &words);
    void tap(uint key);

    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<QTemporaryDir> mFolder;
};

void TestKestractlMacros::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
    mFolder = std::make_unique<QTemporaryDir>();
}

void TestKestractlMacros::cleanup()
{
    mDaemon.reset();
    mFolder.reset();
}

QStringList TestKestractlMacros::names() const
{
    QStringList names;
    for (const QJsonValue &macro : run({u"list"_s, u"--json"_s}).json().array())
        names += macro.toObject().value("name"_L1).toString();
    return names;
}

QVariantMap TestKestractlMacros::record(int number)
{
    const auto settings = mDaemon->request(DaemonProtocol::Command::readSettings);
    return settings
               ? settings->values.value(u"AllDevSettings"_s).toMap().value(u"Macros"_s).toList().value(number).toMap()
               : QVariantMap();
}

void TestKestractlMacros::add(const QVariantMap &macro)
{
    const auto reply = mDaemon->request(DaemonProtocol::Command::addMacro, {{u"MacroContents"_s, macro}});
    QVERIFY(reply && reply->values.value(u"ReturnStatus"_s) == QVariant(0));
}

QString TestKestractlMacros::events()
{
    QStringList words;
    for (const QVariant &each : MacroRecord::events(record(0))) {
        const MacroRecord::Event event = MacroRecord::eventFields(each.toMap());
        const QString pause = event.delayMs == 0 ? QString() : u"(%1)"_s.arg(event.delayMs);
        words += pause + (event.command == MacroRecord::keyDown ? u'+' : u'-') + QString::number(event.argument);
    }
    return words.join(u' ');
}

void TestKestractlMacros::startRecording(QProcess &process, const QStringList &words)
{
    startKestractl(process, QStringList{u"macro"_s, u"record"_s} + words, mDaemon->environment());
    QTRY_VERIFY(mDaemon->log().contains("a client starts a recording"));
}

void TestKestractlMacros::tap(uint key)
{
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, key}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, key}), QString());
}

void TestKestractlMacros::macrosAreAddedListedRenamedAndDeleted()
{
    QCOMPARE(line({u"list"_s}), QString());
    QCOMPARE(line({u"add"_s}), u"macro 1 \"Untitled Macro\" is added"_s);
    QCOMPARE(line({u"add"_s}), u"macro 2 \"Untitled Macro(2)\" is added"_s);
    QCOMPARE(line({u"add"_s, u"Combo"_s}), u"macro 3 \"Combo\" is added"_s);
    QCOMPARE(record(2).value(u"delay"_s), QVariant(20));
    QCOMPARE(line({u"list"_s}),
             u"1  Untitled Macro (0 events)\n  2  Untitled Macro(2) (0 events)\n  3  Combo (0 events)"_s);
    QCOMPARE(run({u"list"_s, u"--json"_s}).json().array().last().toObject(),
             (QJsonObject{{u"index"_s, 2}, {u"name"_s, u"Combo"_s}, {u"events"_s, 0}}));
    QCOMPARE(line({u"rename"_s, u"1"_s, u"Combo"_s}), u"macro 1 \"Combo(2)\" is renamed"_s);
    QCOMPARE(line({u"rename"_s, u"Combo"_s, u"Combo"_s}), u"macro 3 \"Combo\" is renamed"_s); // its own name is free
    QCOMPARE(names(), QStringList({u"Combo(2)"_s, u"Untitled Macro(2)"_s, u"Combo"_s}));
    QCOMPARE(line({u"delete"_s, u"Untitled Macro(2)"_s}), u"macro 2 \"Untitled Macro(2)\" is deleted"_s);
    QCOMPARE(names(), QStringList({u"Combo(2)"_s, u"Combo"_s}));
}

void TestKestractlMacros::namesWithPercentSignsAreShownUnchanged()
{
    QVariantMap macro =
        MacroRecord::withEvents({{u"MacroName"_s, u"50%1 or %2"_s}},
                                {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 4})});
    add(macro);
    QCOMPARE(line({u"list"_s}), u"1  50%1 or %2 (1 event)"_s);
    QProcess process;
    startRecording(process, {u"1"_s});
    process.write("\n");
    QCOMPARE(finishedResult(process).text(), u"nothing was recorded: macro 1 \"50%1 or %2\" still has 1 event\n"_s);
}

void TestKestractlMacros::deletingResetsTheKeys()
{
    add(tapOfA(1));
    QCOMPARE(runKestractl({u"key"_s, u"M1"_s, u"macro"_s, u"1"_s}, mDaemon->environment()).exitCode, 0);
    QCOMPARE(run({u"delete"_s, u"1"_s}).text(), u"macro 1 \"Tap\" is deleted\nit was on M1 in Default Profile\n"_s);
    QCOMPARE(runKestractl({u"key"_s, u"M1"_s}, mDaemon->environment()).text().trimmed(), u"M1: default key"_s);
}

void TestKestractlMacros::deletingKeepsTheNumbersOfTheOtherKeys()
{
    for (int count = 0; count < 3; ++count)
        add(tapOfA(1));
    const auto keys = [this](const QStringList &words) {
        return runKestractl(QStringList{u"key"_s} + words, mDaemon->environment()).text().trimmed();
    };
    QCOMPARE(keys({u"M1"_s, u"macro"_s, u"2"_s}), u"M1: macro Tap, once"_s);
    QCOMPARE(keys({u"M2"_s, u"macro"_s, u"3"_s}), u"M2: macro Tap, once"_s);
    QCOMPARE(run({u"delete"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(keys({u"M1"_s}), u"M1: macro Tap, once"_s);
    // The number is past the end only after the deletion, so the key keeps it, as in the window.
    QCOMPARE(keys({u"M2"_s}), u"M2: macro 3 (which does not exist), once"_s);
}

void TestKestractlMacros::showsAMacroAsTheWindowDoes()
{
    const QVariantMap macro =
        MacroRecord::withEvents({{u"MacroName"_s, u"Mixed"_s}},
                                {MacroRecord::eventRecord({.command = 1, .delayMs = 20, .argument = 225}),
                                 MacroRecord::eventRecord({.command = 1, .delayMs = 15, .page = 9, .argument = 1}),
                                 MacroRecord::eventRecord({.command = 1, .delayMs = 5, .page = 12, .argument = 1}),
                                 MacroRecord::eventRecord({.command = 0, .delayMs = 1500, .argument = 225})});
    add(macro);
    const QStringList lines{u"Key Press Left Shift"_s, u"0.015 seconds delay"_s, u"Left Button down"_s,
                            u"0.005 seconds delay"_s,  u"1.500 seconds delay"_s, u"Key Release Left Shift"_s};
    QCOMPARE(run({u"show"_s, u"Mixed"_s}).text(), u"  1  Key Press Left Shift\n"
                                                  "  2  0.015 seconds delay\n"
                                                  "  3  Left Button down\n"
                                                  "  4  0.005 seconds delay\n"
                                                  "  5  1.500 seconds delay\n"
                                                  "  6  Key Release Left Shift\n"_s);
    const QJsonObject object = run({u"show"_s, u"1"_s, u"--json"_s}).json().object();
    QCOMPARE(object.value("index"_L1), QJsonValue(0));
    QCOMPARE(object.value("name"_L1).toString(), u"Mixed"_s);
    QCOMPARE(object.value("lines"_L1).toArray(), QJsonArray::fromStringList(lines));
    QCOMPARE(object.value("events"_L1).toArray().size(), 4);
    QCOMPARE(object.value("events"_L1).toArray().at(1).toObject().value("page"_L1).toInt(), 9);
}

void TestKestractlMacros::exportReportsWhyTheFileCannotBeWritten()
{
    add(tapOfA(7));
    const QString path = mFolder->filePath(u"missing/Mine.KestraMacro"_s);
    const KestractlResult result = run({u"export"_s, u"1"_s, path});
    QCOMPARE(result.exitCode, 5);
    QCOMPARE(result.errorText(),
             u"kestractl: cannot write \"%1.KestraMacro\": No such file or directory\n"_s.arg(path));
}

void TestKestractlMacros::exportedMacroIsImportedWithAUniqueName()
{
    QVariantMap macro = tapOfA(7);
    macro.insert(u"Colour"_s, u"red"_s); // of another program
    add(macro);
    const QString path = mFolder->filePath(u"Mine"_s);
    const QString file = path + u".KestraMacro"_s;
    QCOMPARE(line({u"export"_s, u"Tap"_s, path}), u"macro 1 \"Tap\" is in %1"_s.arg(file));
    QCOMPARE(PropertyList::readPropertyListFile(file).valueOr({}), macro); // without "macroID"
    QCOMPARE(run({u"export"_s, u"1"_s, file}).exitCode, 0); // as in the window, the suffix is appended again
    QVERIFY(QFile::exists(file + u".KestraMacro"_s));
    QCOMPARE(line({u"import"_s, file}), u"macro 2 \"Tap(2)\" is added"_s);
    QVariantMap imported = record(1);
    QVERIFY(imported.take(u"macroID"_s) != record(0).value(u"macroID"_s));
    imported.insert(u"MacroName"_s, u"Tap"_s);
    QCOMPARE(imported, macro);
}

void TestKestractlMacros::importNamesMacrosWithoutAName()
{
    const QString file = fileWith("<plist><dict><key>delay</key><integer>20</integer></dict></plist>");
    QCOMPARE(line({u"import"_s, file}), u"macro 1 \"Untitled Macro\" is added"_s);
    QCOMPARE(line({u"import"_s, file}), u"macro 2 \"Untitled Macro(2)\" is added"_s);
}

void TestKestractlMacros::oldStyleTextIsImportedWithItsNumbers()
{
    const QString file = fileWith("{ MacroName = Text; delay = 20; sequence = { Events = ("
                                  "{ command = 1; delay = 0; page = 7; argument = 4; },"
                                  "{ command = 0; delay = 15; page = 7; argument = 4; } ); }; }");
    QCOMPARE(line({u"import"_s, file}), u"macro 1 \"Text\" is added"_s);
    QVariantMap expected = MacroRecord::withEvents({{u"MacroName"_s, u"Text"_s}, {u"delay"_s, 20}},
                                                   {MacroRecord::eventRecord({.command = 1, .argument = 4}),
                                                    MacroRecord::eventRecord({.delayMs = 15, .argument = 4})});
    QVariantMap imported = record(0);
    imported.remove(u"macroID"_s);
    QCOMPARE(QlCoreUtility::convertDictionaryToData(imported), QlCoreUtility::convertDictionaryToData(expected));
}

void TestKestractlMacros::importRefusesOtherFiles_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("exitCode");
    const auto encoded = [](const QVariantMap &record) {
        return QlCoreUtility::convertDictionaryToData(record).value_or(QByteArray());
    };
    const auto withEvents = [&](const QVariant &events) {
        return encoded({{u"sequence"_s, QVariantMap{{u"Events"_s, events}}}});
    };
    QTest::newRow("empty") << QByteArray() << 2;
    QTest::newRow("no property list") << QByteArray("bplist00 but not really") << 2;
    QTest::newRow("an array") << QByteArray("( 1, 2 )") << 2;
    QTest::newRow("cut short") << encoded(tapOfA(1)).chopped(9) << 2;
    QTest::newRow("a profile") << QByteArray("{ProfileName = x; Keys = {}; }") << 2;
    QTest::newRow("a profile without a name") << QByteArray("{Keys = {}; }") << 2;
    QTest::newRow("sequence that is text") << encoded({{u"sequence"_s, u"text"_s}}) << 1;
    QTest::newRow("events that are numbers") << withEvents(QVariantList{1, 2}) << 1;
    QTest::newRow("event with text for a number") << withEvents(QVariantList{QVariantMap{{u"page"_s, u"x"_s}}}) << 1;
    QTest::newRow("too many events") << withEvents(QVariantList(900'000, QVariant(QVariantMap()))) << 2;
}

void TestKestractlMacros::importRefusesOtherFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, exitCode);
    const KestractlResult result = run({u"import"_s, fileWith(bytes)});
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.text(), QString());
    QVERIFY2(result.errorText().startsWith(u"kestractl: "_s), result.errors.constData());
    QCOMPARE(names(), QStringList());
    QVERIFY(mDaemon->isRunning());
}

void TestKestractlMacros::reportsAnExportThatCannotBeWritten()
{
    add(tapOfA(1));
    const KestractlResult result = run({u"export"_s, u"1"_s, u"/nonexistent/folder/Mine"_s});
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errorText().contains(u"/nonexistent/folder/Mine.KestraMacro"_s), result.errors.constData());
}

void TestKestractlMacros::textBecomesTheEventsOfTheMacro()
{
    add(tapOfA(80));
    const KestractlResult german = run({u"text"_s, u"tap"_s, u"Zé"_s, u"--layout"_s, u"de"_s, u"--pause=35"_s});
    QCOMPARE(german.errorText(), QString());
    QCOMPARE(german.exitCode, 0);
    QCOMPARE(german.text(), u"macro 1 \"Tap\" has 8 events, for the layout \"German\"\n"_s);
    QCOMPARE(events(), u"+225 +28 -28 -225 (35)+46 -46 (35)+8 -8"_s);
    QCOMPARE(run({u"text"_s, u"1"_s, u"a\n"_s, u"--layout"_s, u"fr(bepo)"_s}).exitCode, 0);
    QCOMPARE(events(), u"+4 -4 (20)+40 -40"_s);
    QCOMPARE(run({u"text"_s, u"1"_s, u""_s, u"--layout"_s, u"us"_s}).exitCode, 0);
    QCOMPARE(events(), QString());
}

void TestKestractlMacros::textIsAppendedAfterThePause()
{
    add(tapOfA(80));
    QCOMPARE(run({u"text"_s, u"1"_s, u"b"_s, u"--layout=us"_s, u"--append"_s, u"--pause"_s, u"0"_s}).exitCode, 0);
    QCOMPARE(events(), u"(80)+4 (80)-4 +5 -5"_s);
    QCOMPARE(run({u"text"_s, u"1"_s, u"c"_s, u"--layout=us"_s, u"--append"_s}).exitCode, 0);
    QCOMPARE(events(), u"(80)+4 (80)-4 +5 -5 (20)+6 -6"_s);
}

void TestKestractlMacros::modifiersHeldWhereTheTextBeginsAreNamed()
{
    add(tapOfA(80));
    QCOMPARE(run({u"insert"_s, u"1"_s, u"end"_s, u"press Left Control"_s, u"press B"_s}).exitCode, 0);
    QCOMPARE(run({u"insert"_s, u"1"_s, u"1"_s, u"tap Left Shift"_s}).exitCode, 0);
    const QStringList appended =
        run({u"text"_s, u"1"_s, u"d"_s, u"--layout=us"_s, u"--append"_s}).text().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(appended.size(), 3);
    QCOMPARE(appended.at(1), u"press without release: rows 9, 11"_s);
    QCOMPARE(appended.at(2), u"held where the text begins: Left Control; other characters may arrive"_s);
    const KestractlResult replaced = run({u"text"_s, u"1"_s, u"d"_s, u"--layout=us"_s});
    QCOMPARE(replaced.text(), u"macro 1 \"Tap\" has 2 events, for the layout \"English (US)\"\n"_s);
}

void TestKestractlMacros::namesWhatTheLayoutCannotTypeAndChangesNothing()
{
    add(tapOfA(80));
    const KestractlResult result = run({u"text"_s, u"1"_s, u"né à €é"_s, u"--layout"_s, u"us"_s});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(
        result.errorText().contains(u"the keyboard layout \"English (US)\" cannot type é (U+00E9) at positions 2, 7; "
                                    "à (U+00E0) at position 4; € (U+20AC) at position 6"_s),
        result.errors.constData());
    QCOMPARE(result.text(), QString());
    QCOMPARE(events(), u"(80)+4 (80)-4"_s);
}

void TestKestractlMacros::textUsesTheLayoutOfTheUser()
{
    add(tapOfA(80));
    QProcessEnvironment environment = mDaemon->environment();
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    const KestractlResult result = runKestractl({u"macro"_s, u"text"_s, u"1"_s, u"12"_s}, environment);
    QCOMPARE(result.exitCode, 0);
    const QString name = DesktopKeymap(DesktopKeymap::Desktop::none).keymap().name();
    QVERIFY2(result.text().contains(u"\"%1\""_s.arg(name)), result.output.constData());
}

void TestKestractlMacros::wrongTextCommandsChangeNothing_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown layout") << QStringList{u"1"_s, u"a"_s, u"--layout"_s, u"no-such-layout"_s}
                                    << u"\"no-such-layout\" is not a keyboard layout"_s;
    QTest::newRow("pause without a number")
        << QStringList{u"1"_s, u"a"_s, u"--pause"_s, u"long"_s} << u"\"long\" is not a number"_s;
    QTest::newRow("negative pause") << QStringList{u"1"_s, u"a"_s, u"--pause=-1"_s} << u"\"-1\" is not a number"_s;
    QTest::newRow("too long") << QStringList{u"1"_s, QString(5'000, u'a'), u"--layout=us"_s, u"--append"_s}
                              << u"macro 1 \"Tap\" cannot be changed: 10002 events; a macro has at most 10000"_s;
    QTest::newRow("unknown macro") << QStringList{u"2"_s, u"a"_s, u"--layout=us"_s} << u"macro"_s;
    QTest::newRow("no text") << QStringList{u"1"_s} << u"usage"_s;
}

void TestKestractlMacros::wrongTextCommandsChangeNothing()
{
    QFETCH(QStringList, words);
    QFETCH(QString, message);
    add(tapOfA(80));
    const KestractlResult result = run(QStringList{u"text"_s} + words);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(message, Qt::CaseInsensitive), result.errors.constData());
    QCOMPARE(events(), u"(80)+4 (80)-4"_s);
}

void TestKestractlMacros::recordsUntilReturn()
{
    add(tapOfA(1));
    const SentRecorder recorder;
    QProcess process;
    startRecording(process, {u"Tap"_s});
    tap(5);
    // kestractl prints each line with its event, not only at the end.
    QByteArray output;
    QTRY_VERIFY((output += process.readAllStandardOutput()).contains("Key Release B"));
    QVERIFY(output.startsWith("Key Press B\n"));
    tap(6);
    process.write("\n");
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errorText(), QString());
    QCOMPARE(result.text().section(u'\n', -2).trimmed(), u"macro 1 \"Tap\" has 4 events"_s);
    QStringList keys;
    for (const QVariant &event : MacroRecord::events(record(0)))
        keys += QString::number(MacroRecord::eventFields(event.toMap()).argument);
    QCOMPARE(keys, QStringList({u"5"_s, u"5"_s, u"6"_s, u"6"_s}));
    QCOMPARE(recorder.sent(), QStringList()); // recorded keys do not reach the computer
}

void TestKestractlMacros::recordingAppends()
{
    add(tapOfA(1));
    QProcess process;
    startRecording(process, {u"1"_s, u"--append"_s});
    tap(5);
    process.closeWriteChannel(); // as at the end of a script's input
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.text().endsWith(u"macro 1 \"Tap\" has 4 events\n"_s), result.output.constData());
}

void TestKestractlMacros::recordingNothingKeepsTheMacro_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("new recording") << QStringList{u"Tap"_s};
    QTest::newRow("appended recording") << QStringList{u"Tap"_s, u"--append"_s};
}

void TestKestractlMacros::recordingNothingKeepsTheMacro()
{
    QFETCH(QStringList, words);
    add(tapOfA(1));
    const QVariantMap before = record(0);
    QProcess process;
    startRecording(process, words);
    process.write("\n");
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text(), u"nothing was recorded: macro 1 \"Tap\" still has 2 events\n"_s);
    QCOMPARE(record(0), before);
}

void TestKestractlMacros::recordingEndsWithoutReturn_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("after a time") << u"time"_s << 0;
    QTest::newRow("interrupted") << u"signal"_s << 0;
    QTest::newRow("keyboard removed") << u"removal"_s << 0;
    QTest::newRow("daemon gone") << u"kill"_s << 3;
}

void TestKestractlMacros::recordingEndsWithoutReturn()
{
    QFETCH(QString, how);
    QFETCH(int, exitCode);
    add(tapOfA(1));
    QProcess process;
    startRecording(process, how == "time"_L1 ? QStringList{u"1"_s, u"--seconds"_s, u"1.5"_s} : QStringList{u"1"_s});
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 5u}), QString()); // still down at the end
    QByteArray output;
    QTRY_VERIFY((output += process.readAllStandardOutput()).contains("Key Press B"));
    if (how == "signal"_L1)
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    else if (how == "removal"_L1)
        QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    else if (how == "kill"_L1)
        mDaemon->kill();
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, exitCode);
    if (exitCode == 0)
        QCOMPARE(result.text().trimmed(), u"macro 1 \"Tap\" has 2 events"_s);
    else
        QVERIFY2(result.errorText().contains(u"not running"_s), result.errors.constData());
}

void TestKestractlMacros::recordingNeedsTheKeyboard()
{
    add(tapOfA(1));
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    const KestractlResult result = run({u"record"_s, u"1"_s, u"--seconds"_s, u"5"_s});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.errorText().contains(u"cannot be recorded: the keyboard is not attached"_s),
             result.errors.constData());
    QCOMPARE(MacroRecord::events(record(0)).size(), 2);
}

void TestKestractlMacros::playsWithTheAssignedKey_data()
{
    QTest::addColumn<QString>("repeat");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("atLeast"); // events
    QTest::newRow("once") << u"once"_s << QStringList() << 2;
    QTest::newRow("3 times") << u"3"_s << QStringList() << 6;
    // At least twice: on a busy machine, the daemon skips rounds.
    QTest::newRow("until released") << u"until-released"_s << QStringList{u"--seconds=0.3"_s} << 4;
    QTest::newRow("until pressed again") << u"until-pressed-again"_s << QStringList{u"--seconds=0.3"_s} << 4;
}

void TestKestractlMacros::playsWithTheAssignedKey()
{
    QFETCH(QString, repeat);
    QFETCH(QStringList, options);
    QFETCH(int, atLeast);
    add(tapOfA(5));
    QCOMPARE(
        runKestractl({u"key"_s, u"M3"_s, u"macro"_s, u"Tap"_s, u"--repeat"_s, repeat}, mDaemon->environment()).exitCode,
        0);
    SentRecorder recorder;
    const KestractlResult result = run(QStringList{u"play"_s, u"Tap"_s} + options);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.text().startsWith(u"M3: macro Tap, "_s), result.output.constData());
    QTRY_VERIFY(recorder.sent().size() >= atLeast);
    QTRY_COMPARE(recorder.sent().constLast(), u"-7:4"_s);
    QCOMPARE(recorder.sent().size() % 2, 0);
    if (options.isEmpty())
        QCOMPARE(recorder.sent().size(), atLeast);
}

void TestKestractlMacros::playingNeedsAKey()
{
    add(tapOfA(1));
    const KestractlResult result = run({u"play"_s, u"1"_s});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(u"no key of the active profile plays macro 1 \"Tap\""_s),
             result.errors.constData());
    QCOMPARE(runKestractl({u"key"_s, u"M3"_s, u"macro"_s, u"1"_s}, mDaemon->environment()).exitCode, 0);
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QCOMPARE(run({u"play"_s, u"1"_s}).exitCode, 1);
}

void TestKestractlMacros::macroThatDoesNotExistIsWrongUsage_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("show") << QStringList{u"show"_s, u"1"_s};
    QTest::newRow("rename") << QStringList{u"rename"_s, u"Nobody"_s, u"X"_s};
    QTest::newRow("delete") << QStringList{u"delete"_s, u"--"_s, u"-1"_s};
    QTest::newRow("delete the one before the first") << QStringList{u"delete"_s, u"0"_s};
    QTest::newRow("export") << QStringList{u"export"_s, u"1"_s, u"never-written"_s};
    QTest::newRow("record") << QStringList{u"record"_s, u"8"_s};
    QTest::newRow("play") << QStringList{u"play"_s, u"Nobody"_s};
}

void TestKestractlMacros::macroThatDoesNotExistIsWrongUsage()
{
    QFETCH(QStringList, words);
    const KestractlResult result = run(words);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.text(), QString());
    QVERIFY(!result.errorText().isEmpty());
}

QTEST_GUILESS_MAIN(TestKestractlMacros)
#include "kestractlmacrostest.moc"
