// SPDX-License-Identifier: MIT
// "kestractl profile ..." and "kestractl focus" with the real daemon: their changes, output and refusals.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

class KestractlProfilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mDaemon.reset(); }

    void addedProfileHasTheFactorySettingsAndIsActive();
    void listMarksOnlyTheActiveProfile();
    void makesNamesUnique();
    void copyHasEverythingButTheName();
    void keepsItsNameWhenRenamedToIt();
    void deletingResetsTheKeys();
    void keyThatSwitchedToTheLastProfileIsRepaired();
    void lastProfileIsNotDeleted();
    void twentyFirstProfileIsRefused();
    void restoredProfileKeepsItsName();
    void exportedProfileIsImportedAgain();
    void importAcceptsOnlyProfileFiles_data();
    void importAcceptsOnlyProfileFiles();
    void importNamesTheKindOfAnotherFile();
    void foreignNamesCannotControlTheTerminal();
    void oldStyleTextIsImportedWithItsNumbers();
    void reportsAnExportThatCannotBeWritten();
    void profileIsBoundToADesktopEntry_data();
    void profileIsBoundToADesktopEntry();
    void unboundProfileFollowsNothing();
    void boundProfileFollowsTheFocus();
    void wrongUsageChangesNothing_data();
    void wrongUsageChangesNothing();

private:
    KestractlResult run(const QStringList &arguments) { return runKestractl(arguments, mDaemon->environment()); }
    QVariantMap document();
    QVariantList profiles() { return document().value(SettingsKeys::profiles).toList(); }
    QVariantMap profile(int index) { return profiles().value(index).toMap(); }
    QStringList names();
    int active() { return document().value(u"DeviceSettings"_s).toMap().value(u"ActiveProfile"_s, -1).toInt(); }

    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<QTemporaryDir> mFolder;
};

void KestractlProfilesTest::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mFolder = std::make_unique<QTemporaryDir>();
    mDaemon->environment().insert(u"XDG_DATA_HOME"_s, mFolder->filePath(u"data"_s));
    QVERIFY(mDaemon->start());
    writeDesktopEntry(mFolder->filePath(u"data/applications/org.example.Game.desktop"_s),
                      "Name=The Game\nExec=game-bin %U\nStartupWMClass=GameWindow\n");
}

QVariantMap KestractlProfilesTest::document()
{
    const auto reply = mDaemon->request(Command::readSettings);
    return reply ? reply->values.value(DaemonProtocol::allDevSettings).toMap() : QVariantMap();
}

QStringList KestractlProfilesTest::names()
{
    QStringList result;
    for (const QVariant &profile : profiles())
        result += profile.toMap().value(SettingsKeys::profileName).toString();
    return result;
}

void KestractlProfilesTest::addedProfileHasTheFactorySettingsAndIsActive()
{
    QVariantMap factory = profile(0);
    const KestractlResult result = run({u"profile"_s, u"add"_s, u"Work"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.text(), u"profile 2 \"Work\" is active\n"_s);
    QCOMPARE(active(), 1);
    factory.insert(SettingsKeys::profileName, u"Work"_s);
    QCOMPARE(profile(1), factory);
}

void KestractlProfilesTest::listMarksOnlyTheActiveProfile()
{
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Work"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"switch"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"list"_s}).text(), u"*  1  Default Profile\n   2  Work\n"_s);
    const auto object = [](int index, const QString &name, bool isActive) {
        return QJsonObject{
            {u"index"_s, index}, {u"name"_s, name}, {u"active"_s, isActive}, {u"application"_s, QString()}};
    };
    QCOMPARE(run({u"profile"_s, u"list"_s, u"--json"_s}).json().array(),
             (QJsonArray{object(0, u"Default Profile"_s, true), object(1, u"Work"_s, false)}));
}

void KestractlProfilesTest::makesNamesUnique()
{
    QCOMPARE(run({u"profile"_s, u"add"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"add"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"copy"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"rename"_s, u"4"_s, u"Untitled Profile"_s}).text(),
             u"profile 4 \"Untitled Profile(3)\" is renamed\n"_s);
    QCOMPARE(names(), QStringList({u"Default Profile"_s, u"Untitled Profile"_s, u"Untitled Profile(2)"_s,
                                   u"Untitled Profile(3)"_s}));
}

void KestractlProfilesTest::copyHasEverythingButTheName()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"copy"_s, u"Default Profile"_s}).text(),
             u"profile 2 \"Default Profile(2)\" is active\n"_s);
    QVariantMap copy = profile(1);
    copy.insert(SettingsKeys::profileName, u"Default Profile"_s);
    QCOMPARE(copy, profile(0));
}

void KestractlProfilesTest::keepsItsNameWhenRenamedToIt()
{
    QCOMPARE(run({u"profile"_s, u"rename"_s, u"1"_s, u"Default Profile"_s}).exitCode, 0);
    QCOMPARE(names(), QStringList{u"Default Profile"_s});
}

void KestractlProfilesTest::deletingResetsTheKeys()
{
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Work"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"switch"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"Q"_s, u"profile"_s, u"Work"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"delete"_s, u"Work"_s}).text(), u"profile 2 \"Work\" is deleted\n"_s);
    QCOMPARE(names(), QStringList{u"Default Profile"_s});
    const QVariantMap entry = profile(0).value(SettingsKeys::keys).toMap().value(u"20"_s).toMap();
    QVERIFY(entry.value(SettingsKeys::command).toInt() != 17);
}

void KestractlProfilesTest::keyThatSwitchedToTheLastProfileIsRepaired()
{
    for (const QString &name : {u"Work"_s, u"Play"_s})
        QCOMPARE(run({u"profile"_s, u"add"_s, name}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"switch"_s, u"Work"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"Q"_s, u"profile"_s, u"2"_s}).text(), u"Q: profile Work\n"_s);
    QCOMPARE(run({u"key"_s, u"W"_s, u"profile"_s, u"3"_s}).text(), u"W: profile Play\n"_s);
    QCOMPARE(run({u"profile"_s, u"delete"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(names(), QStringList({u"Work"_s, u"Play"_s}));
    // The keys keep their numbers, so Q now switches to the other profile. The number of W is past the end.
    const QVariantMap keys = profile(0).value(SettingsKeys::keys).toMap();
    QCOMPARE(keys.value(u"20"_s).toMap().value(SettingsKeys::param1), QVariant(1));
    QCOMPARE(keys.value(u"26"_s).toMap(), QVariantMap());
}

void KestractlProfilesTest::lastProfileIsNotDeleted()
{
    const KestractlResult result = run({u"profile"_s, u"delete"_s, u"1"_s});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.errorText(), u"kestractl: profile 1 \"Default Profile\" cannot be deleted: it is the only one\n"_s);
    QCOMPARE(names().size(), 1);
}

void KestractlProfilesTest::twentyFirstProfileIsRefused()
{
    for (int count = 1; count < 20; ++count)
        QVERIFY(mDaemon->request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, QVariantMap()}}));
    const QString path = mFolder->filePath(u"file"_s);
    writeFile(path, "{ ProfileName = x; }");
    for (const QStringList &arguments : {QStringList{u"add"_s}, {u"copy"_s, u"1"_s}, {u"import"_s, path}}) {
        const KestractlResult result = run(QStringList{u"profile"_s} + arguments);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.errorText().contains(u"cannot be added: there would be too many profiles"_s),
                 result.errors.constData());
    }
    QCOMPARE(profiles().size(), 20);
}

void KestractlProfilesTest::restoredProfileKeepsItsName()
{
    const QVariantMap factory = profile(0);
    QCOMPARE(run({u"profile"_s, u"rename"_s, u"1"_s, u"Mine"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"restore"_s, u"Mine"_s}).exitCode, 0);
    QCOMPARE(names(), QStringList{u"Mine"_s});
    QCOMPARE(profile(0).value(SettingsKeys::keys), factory.value(SettingsKeys::keys));
}

void KestractlProfilesTest::exportedProfileIsImportedAgain()
{
    const QString named = mFolder->filePath(u"Default"_s);
    const QString path = named + u".KestraProfile"_s;
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"export"_s, u"1"_s, named}).text(),
             u"profile 1 \"Default Profile\" is in %1\n"_s.arg(path));
    QVERIFY(!QFile::exists(named));
    QCOMPARE(PropertyList::readPropertyListFile(path).valueOr({}), profile(0));
    QCOMPARE(run({u"profile"_s, u"import"_s, path}).text(), u"profile 2 \"Default Profile(2)\" is active\n"_s);
    QCOMPARE(profile(1).value(SettingsKeys::keys), profile(0).value(SettingsKeys::keys));
}

void KestractlProfilesTest::importAcceptsOnlyProfileFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("exitCode"); // 2: not a profile file; 1: the daemon refuses the record
    QTest::newRow("garbage") << QByteArray("\x00\xff{", 3) << 2;
    QTest::newRow("empty") << QByteArray() << 2;
    QTest::newRow("array") << QByteArray("(a, b)") << 2;
    QTest::newRow("keys of the wrong type") << QByteArray("{ProfileName = x; Keys = text;}") << 1;
    QTest::newRow("macro") << QByteArray("{MacroName = x; sequence = { Events = (); }; }") << 2;
    QTest::newRow("macro without a name") << QByteArray("{sequence = { Events = (); }; }") << 2;
    QTest::newRow("application of the wrong type") << QByteArray("{ProfileName = x; AppInfo = text;}") << 1;
}

void KestractlProfilesTest::importAcceptsOnlyProfileFiles()
{
    QFETCH(QByteArray, content);
    const QString path = mFolder->filePath(u"file"_s);
    writeFile(path, content);
    const KestractlResult result = run({u"profile"_s, u"import"_s, path});
    QTEST(result.exitCode, "exitCode");
    QVERIFY(!result.errors.isEmpty());
    QCOMPARE(names().size(), 1);
}

void KestractlProfilesTest::importNamesTheKindOfAnotherFile()
{
    const QString path = mFolder->filePath(u"file"_s);
    QCOMPARE(run({u"macro"_s, u"add"_s, u"Tap"_s}).exitCode, 0);
    QCOMPARE(run({u"macro"_s, u"export"_s, u"1"_s, path}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"export"_s, u"1"_s, path}).exitCode, 0);
    const QString macroFile = path + u".KestraMacro"_s;
    const QString profileFile = path + u".KestraProfile"_s;
    const QVariantMap before = document();
    QCOMPARE(run({u"profile"_s, u"import"_s, macroFile}).errorText(),
             u"kestractl: \"%1\" is a macro file, not a profile file\n"_s.arg(macroFile));
    QCOMPARE(run({u"macro"_s, u"import"_s, profileFile}).errorText(),
             u"kestractl: \"%1\" is a profile file, not a macro file\n"_s.arg(profileFile));
    QCOMPARE(document(), before);
    // A file with the names of both kinds counts as the requested kind.
    writeFile(path, "{ProfileName = Both; MacroName = Both;}");
    QCOMPARE(run({u"profile"_s, u"import"_s, path}).text(), u"profile 2 \"Both\" is active\n"_s);
}

void KestractlProfilesTest::foreignNamesCannotControlTheTerminal()
{
    const QString name = u"\u001b]0;title\u0007 K\u202ey \u0085\n\u009b\u007f\u2028déjà 鍵"_s;
    const QString shown = u"?]0;title? K?y ?????déjà 鍵"_s;
    QVariantMap record = profile(0);
    record.insert(SettingsKeys::profileName, name);
    const QString path = mFolder->filePath(u"Stranger.kprofile"_s);
    writeFile(path, PropertyList::writeBinary(record).value());
    QCOMPARE(run({u"profile"_s, u"import"_s, path}).text(), u"profile 2 \"%1\" is active\n"_s.arg(shown));
    QCOMPARE(run({u"macro"_s, u"add"_s, name}).text(), u"macro 1 \"%1\" is added\n"_s.arg(shown));
    const QList<QStringList> lines{{u"profile"_s, u"list"_s}, {u"profile"_s, u"switch"_s, u"2"_s},
                                   {u"macro"_s, u"list"_s},   {u"key"_s, u"A"_s, u"macro"_s, u"1"_s},
                                   {u"key"_s, u"A"_s},        {u"status"_s}};
    for (const QStringList &line : lines) {
        const KestractlResult result = run(line);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.text().contains(shown), result.output.constData());
        QVERIFY2(!result.text().contains(u'\u001b') && !result.text().contains(u'\u202e'), qPrintable(line.join(u' ')));
    }
    const QString error = run({u"profile"_s, u"switch"_s, name + u'x'}).errorText();
    QVERIFY2(error.contains(shown) && !error.contains(u'\u001b'), qPrintable(error));
    const KestractlResult list = run({u"profile"_s, u"list"_s, u"--json"_s}); // programs get the exact name
    QCOMPARE(list.json().array().at(1).toObject().value(u"name"_s).toString(), name);
    for (const QString &json :
         {list.text(), run({u"document"_s}).text(), run({u"macro"_s, u"list"_s, u"--json"_s}).text()}) {
        QVERIFY(json.contains("]0;title"_L1));
        for (const QChar character : u"\u001b\u0007\u202e\u0085\u009b\u007f\u2028"_s)
            QVERIFY2(!json.contains(character), qPrintable(QString::number(character.unicode(), 16)));
    }
}

void KestractlProfilesTest::oldStyleTextIsImportedWithItsNumbers()
{
    const QString path = mFolder->filePath(u"file"_s);
    writeFile(path, "{ ProfileName = Text; AutoSwitchOn = 1; BrightnessKBNormal = 2;"
                    "  Keys = { 4 = { command = 16; param1 = 5; param2 = 2; }; }; }");
    QCOMPARE(run({u"profile"_s, u"import"_s, path}).text(), u"profile 2 \"Text\" is active\n"_s);
    QCOMPARE(profile(1).value(u"BrightnessKBNormal"_s), QVariant(2));
    QCOMPARE(profile(1).value(u"BrightnessKBNormal"_s).typeId(), int(QMetaType::Int));
    QCOMPARE(run({u"key"_s, u"A"_s}).text(), u"A: single key Left Shift + B\n"_s);
}

void KestractlProfilesTest::reportsAnExportThatCannotBeWritten()
{
    const KestractlResult result = run({u"profile"_s, u"export"_s, u"1"_s, mFolder->filePath(u"no/such/folder"_s)});
    QCOMPARE(result.exitCode, 5);
    QVERIFY(result.errorText().contains(u"no/such/folder.KestraProfile"_s));
}

void KestractlProfilesTest::profileIsBoundToADesktopEntry_data()
{
    QTest::addColumn<bool>("isPath");
    QTest::addColumn<QString>("application");
    QTest::newRow("path") << true << u"data/applications/org.example.Game.desktop"_s;
    QTest::newRow("id") << false << u"org.example.Game"_s;
    QTest::newRow("id with suffix") << false << u"org.example.Game.desktop"_s;
}

void KestractlProfilesTest::profileIsBoundToADesktopEntry()
{
    QFETCH(bool, isPath);
    QFETCH(QString, application);
    const KestractlResult result =
        run({u"profile"_s, u"bind"_s, u"1"_s, isPath ? mFolder->filePath(application) : application});
    QCOMPARE(result.errorText(), QString());
    QCOMPARE(result.text(), u"profile 1 \"Default Profile\" follows The Game\n"_s);
    QCOMPARE(profile(0).value(SettingsKeys::autoSwitchOn), QVariant(1));
    const QVariantMap appInfo = profile(0).value(SettingsKeys::appInfo).toMap();
    QCOMPARE(appInfo.value(SettingsKeys::executable), QVariant(u"game-bin"_s));
    QCOMPARE(appInfo.value(SettingsKeys::signature), QVariant(u"GameWindow"_s));
    QVERIFY(appInfo.value(SettingsKeys::identifier).toString().startsWith(u"org.example.Game"_s));
    const QString listed = run({u"profile"_s, u"list"_s, u"--json"_s}).text();
    QVERIFY(listed.contains(u"The Game"_s));
}

void KestractlProfilesTest::unboundProfileFollowsNothing()
{
    QCOMPARE(run({u"profile"_s, u"bind"_s, u"1"_s, u"org.example.Game"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"bind"_s, u"1"_s, u"--off"_s}).text(),
             u"profile 1 \"Default Profile\" follows no application\n"_s);
    QCOMPARE(profile(0).value(SettingsKeys::autoSwitchOn), QVariant(false));
    for (const QVariant &value : profile(0).value(SettingsKeys::appInfo).toMap())
        QCOMPARE(value, QVariant(u""_s));
}

void KestractlProfilesTest::boundProfileFollowsTheFocus()
{
    QCOMPARE(run({u"profile"_s, u"add"_s, u"Game"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"bind"_s, u"Game"_s, u"org.example.Game"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"switch"_s, u"1"_s}).exitCode, 0);
    for (const QString &name : {u"org.example.Game"_s, u"gamewindow"_s, u"/usr/games/game-bin"_s, u"The Game"_s}) {
        QCOMPARE(run({u"focus"_s, name}).exitCode, 0);
        const QJsonObject status = run({u"status"_s, u"--json"_s}).json().object();
        QCOMPARE(status.value("activeProfileName"_L1).toString(), u"Game"_s);
        QCOMPARE(status.value("frontApplication"_L1).toString(), name);
        QCOMPARE(status.value("frontApplicationSource"_L1).toString(), u"none"_s);
        QVERIFY(status.value("frontApplicationHint"_L1).toString().contains(u"kestractl focus NAME"_s));
        QCOMPARE(run({u"focus"_s, u"other"_s}).exitCode, 0);
        QCOMPARE(active(), 0);
    }
    QVERIFY(run({u"status"_s})
                .text()
                .contains(u"frontApplicationHint: this desktop does not report the application in front; "_s));
    QCOMPARE(run({u"focus"_s, u"The Game"_s}).exitCode, 0);
    QCOMPARE(run({u"focus"_s, u""_s}).exitCode, 0);
    QTRY_COMPARE(active(), 0);
    // After a restart, the profile that the user chose is active.
    QCOMPARE(run({u"focus"_s, u"The Game"_s}).exitCode, 0);
    QCOMPARE(active(), 1);
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    QCOMPARE(active(), 0);
}

void KestractlProfilesTest::wrongUsageChangesNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("rename without a new name") << QStringList{u"rename"_s, u"1"_s};
    QTest::newRow("rename to nothing") << QStringList{u"rename"_s, u"1"_s, QString()};
    QTest::newRow("add without a name") << QStringList{u"add"_s, QString()};
    QTest::newRow("copy of none") << QStringList{u"copy"_s, u"8"_s};
    QTest::newRow("delete of none") << QStringList{u"delete"_s, u"No such profile"_s};
    QTest::newRow("restore of none") << QStringList{u"restore"_s, u"-1"_s};
    QTest::newRow("import of no file") << QStringList{u"import"_s, u"/nowhere/file"_s};
    QTest::newRow("export of none") << QStringList{u"export"_s, u"8"_s, u"file"_s};
    QTest::newRow("bind to nothing") << QStringList{u"bind"_s, u"1"_s};
    QTest::newRow("bind to no application") << QStringList{u"bind"_s, u"1"_s, u"no.such.Application"_s};
    QTest::newRow("bind and off") << QStringList{u"bind"_s, u"1"_s, u"org.example.Game"_s, u"--off"_s};
}

void KestractlProfilesTest::wrongUsageChangesNothing()
{
    QFETCH(QStringList, arguments);
    const QVariantMap before = document();
    const KestractlResult result = run(QStringList{u"profile"_s} + arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!result.errors.isEmpty());
    QVERIFY(result.output.isEmpty());
    QCOMPARE(document(), before);
}

QTEST_GUILESS_MAIN(KestractlProfilesTest)
#include "kestractlprofilestest.moc"
