// SPDX-License-Identifier: MIT
#include "cli/keyassignments.h"
#include "tests/support/testmain.h"

#include "base/settingskeys.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

/// Two profiles with different names, and three macros, two of which share a name.
QVariantMap document()
{
    const auto profile = [](const QString &name) { return QVariantMap{{SettingsKeys::profileName, name}}; };
    const auto macro = [](const QString &name) { return QVariantMap{{SettingsKeys::macroName, name}}; };
    return {{SettingsKeys::profiles, QVariantList{profile(u"Work"_s), profile(u"Play"_s)}},
            {SettingsKeys::macros, QVariantList{macro(u"Heal"_s), macro(u"Twice"_s), macro(u"Twice"_s)}}};
}

Result<NewAssignment> make(const QString &kindWord, const QString &argument, const QString &optionValue = {})
{
    const AssignmentKind *kind = findAssignmentKind(kindWord);
    const QVariantMap values = document();
    return kind->make({.keyCode = 4, .argument = argument, .optionValue = optionValue, .document = values});
}

/// Empty when there is none.
QString problemOf(const Result<NewAssignment> &made)
{
    return made ? QString() : made.error().message;
}

} // namespace

class KeyAssignmentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILL_KESTRA_RESOURCES", "/no/such/folder"); }

    void makesTheEntry_data();
    void makesTheEntry();
    void refusesMeaninglessWords_data();
    void refusesMeaninglessWords();
    void launchTakesAnApplication();
    void launchRefusesAnythingElse_data();
    void launchRefusesAnythingElse();
    void findsNoOtherKind();
};

void KeyAssignmentsTest::makesTheEntry_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("optionValue");
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("param1");
    QTest::addColumn<int>("param2");
    QTest::newRow("single") << u"single"_s << u"C"_s << QString() << 16 << 6 << 0;
    QTest::newRow("single with modifiers") << u"single"_s << u"c"_s << u"leftshift,LeftControl"_s << 16 << 6 << 3;
    QTest::newRow("every modifier")
        << u"single"_s << u"C"_s
        << u"LeftControl,LeftShift,LeftOption,LeftCommand,RightControl,RightShift,RightOption,RightCommand"_s << 16 << 6
        << 255;
    QTest::newRow("a modifier twice") << u"single"_s << u"C"_s << u"RightShift, right shift"_s << 16 << 6 << 32;
    QTest::newRow("a modifier itself") << u"single"_s << u"RightCommand"_s << QString() << 16 << 231 << 0;
    QTest::newRow("macro by number") << u"macro"_s << u"2"_s << QString() << 10 << 1 << 1;
    QTest::newRow("macro by name in another letter case") << u"macro"_s << u"hEAL"_s << QString() << 10 << 0 << 1;
    QTest::newRow("profile by a marked name") << u"profile"_s << u"name:play"_s << QString() << 17 << 1 << 0;
    QTest::newRow("macro by name") << u"macro"_s << u"Heal"_s << u"until-released"_s << 10 << 0 << 255;
    QTest::newRow("macro until pressed again") << u"macro"_s << u"Heal"_s << u"until-pressed-again"_s << 10 << 0 << 254;
    QTest::newRow("macro once") << u"macro"_s << u"Heal"_s << u"once"_s << 10 << 0 << 1;
    QTest::newRow("macro twice") << u"macro"_s << u"Heal"_s << u"2"_s << 10 << 0 << 2;
    QTest::newRow("macro ten times") << u"macro"_s << u"Heal"_s << u"10"_s << 10 << 0 << 10;
    QTest::newRow("profile by number") << u"profile"_s << u"2"_s << QString() << 17 << 1 << 0;
    QTest::newRow("profile by name") << u"profile"_s << u"Play"_s << QString() << 17 << 1 << 0;
    QTest::newRow("disable") << u"disable"_s << QString() << QString() << 20 << 0 << 0;
    QTest::newRow("default without factory settings") << u"default"_s << QString() << QString() << 45 << 0 << 0;
}

void KeyAssignmentsTest::makesTheEntry()
{
    QFETCH(QString, kind);
    QFETCH(QString, argument);
    QFETCH(QString, optionValue);
    const Result<NewAssignment> made = make(kind, argument, optionValue);
    QVERIFY2(made, qPrintable(problemOf(made)));
    QTEST(static_cast<int>(made->assignment), "command");
    QTEST(made->param1.toInt(), "param1");
    QTEST(made->param2.toInt(), "param2");
    QCOMPARE(made->param1.typeId(), QMetaType::Int);
    QCOMPARE(made->param2.typeId(), QMetaType::Int);
}

void KeyAssignmentsTest::refusesMeaninglessWords_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("optionValue");
    QTest::addColumn<QString>("problem");
    QTest::newRow("no such key") << u"single"_s << u"Banana"_s << QString()
                                 << u"the keyboard has no key \"Banana\" to send (see kestractl key --list)"_s;
    QTest::newRow("no such modifier") << u"single"_s << u"C"_s << u"leftshift,Banana"_s
                                      << u"\"Banana\" is not a modifier key (see kestractl key --list)"_s;
    QTest::newRow("key as a modifier") << u"single"_s << u"C"_s << u"D"_s
                                       << u"\"D\" is not a modifier key (see kestractl key --list)"_s;
    QTest::newRow("no such macro") << u"macro"_s << u"4"_s << QString()
                                   << u"there is no macro 4 (see kestractl macro list)"_s;
    QTest::newRow("no such macro name") << u"macro"_s << u"Harm"_s << QString()
                                        << u"no macro is called \"Harm\" (see kestractl macro list)"_s;
    QTest::newRow("name borne twice")
        << u"macro"_s << u"Twice"_s << QString()
        << u"several macros are called \"Twice\": 2 \"Twice\", 3 \"Twice\"; give the number"_s;
    QTest::newRow("no such profile") << u"profile"_s << u"3"_s << QString()
                                     << u"there is no profile 3 (see kestractl profile list)"_s;
    QTest::newRow("no such profile name")
        << u"profile"_s << u"Rest"_s << QString() << u"no profile is called \"Rest\" (see kestractl profile list)"_s;
    for (const QString &repeat : {u"often"_s, u"0"_s, u"11"_s, u"-2"_s, u"254"_s, u"255"_s, u"2.5"_s}) {
        QTest::newRow(qPrintable(u"repeat "_s + repeat))
            << u"macro"_s << u"Heal"_s << repeat
            << u"\"%1\" is not a way to repeat a macro: give once, until-released, until-pressed-again or 2 to 10"_s
                   .arg(repeat);
    }
}

void KeyAssignmentsTest::refusesMeaninglessWords()
{
    QFETCH(QString, kind);
    QFETCH(QString, argument);
    QFETCH(QString, optionValue);
    QTEST(problemOf(make(kind, argument, optionValue)), "problem");
}

void KeyAssignmentsTest::launchTakesAnApplication()
{
    const QTemporaryDir folder;
    const QString entry = writeDesktopEntry(folder.filePath(u"game.desktop"_s), "Exec=game\n");
    writeFile(folder.filePath(u"Game.app/Contents/Info.plist"_s), "{}");
    const QString link = folder.filePath(u"link.desktop"_s);
    QVERIFY(QFile::link(entry, link));
    const QString resolved = QFileInfo(folder.path()).canonicalFilePath();
    for (const auto &[given, stored] : {std::pair{entry, resolved + u"/game.desktop"_s},
                                        {link, resolved + u"/game.desktop"_s},
                                        {folder.filePath(u"Game.app/"_s), resolved + u"/Game.app"_s},
                                        {QDir::current().relativeFilePath(entry), resolved + u"/game.desktop"_s}}) {
        const Result<NewAssignment> made = make(u"launch"_s, given);
        QVERIFY2(made, qPrintable(problemOf(made)));
        QCOMPARE(made->assignment, Assignment::launchProgram);
        QCOMPARE(made->param1, QVariant(stored));
        QCOMPARE(made->param2, QVariant(QString()));
    }
}

void KeyAssignmentsTest::launchRefusesAnythingElse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("problem");
    QTest::newRow("absent") << u"/no/such/game.desktop"_s << u"there is no \"/no/such/game.desktop\""_s;
    QTest::newRow("program") << u"/bin/sh"_s << u"\"/bin/sh\" is neither a desktop entry nor an application bundle"_s;
    QTest::newRow("folder") << u"/"_s << u"\"/\" is neither a desktop entry nor an application bundle"_s;
}

void KeyAssignmentsTest::launchRefusesAnythingElse()
{
    QFETCH(QString, path);
    QTEST(problemOf(make(u"launch"_s, path)), "problem");
    const QTemporaryDir folder;
    QVERIFY(!make(u"launch"_s, writeFile(folder.filePath(u"text.desktop"_s), "text")));
    QVERIFY(QDir(folder.path()).mkdir(u"Empty.app"_s));
    QVERIFY(!make(u"launch"_s, folder.filePath(u"Empty.app"_s)));
}

void KeyAssignmentsTest::findsNoOtherKind()
{
    QVERIFY(!findAssignmentKind(u"explode"_s));
    QVERIFY(!findAssignmentKind(QString()));
}

QTEST_GUILESS_MAIN(KeyAssignmentsTest)
#include "keyassignmentstest.moc"
