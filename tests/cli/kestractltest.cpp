// SPDX-License-Identifier: MIT
// kestractl and the real daemon, each a process of its own, on a private bus with settings of their own.
#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "platform/distributednotificationcenter.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestKestractl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void statusShowsTheActiveProfile();
    void statusAsJsonHasEveryRow();
    void statusNamesProblemsOfTheSettings();
    void statusFollowsTheKeyboard();
    void documentIsJson();
    void documentAsPropertyListHasTheSameContent();
    void keyIsDefaultAtFirst();
    void keyIsNamedInSeveralWays_data();
    void keyIsNamedInSeveralWays();
    void keyCanBeDisabledAndReset();
    void disablingOneKeyLeavesTheOthers();
    void defaultTakesTheFactoryParameter();
    void disabledKeyOutlivesAKilledDaemon();
    void everyAssignmentIsStoredShownAndSent_data();
    void everyAssignmentIsStoredShownAndSent();
    void assignmentsWithoutEffectSaySo();
    void keySwitchesToAProfile();
    void keyLaunchesAnApplication();
    void impossibleAssignmentChangesNothing_data();
    void impossibleAssignmentChangesNothing();
    void changesNameKestractlAsTheirSource();
    void profileListMarksTheActiveOne();
    void profileIsSwitchedByNumberAndByName();
    void profileThatDoesNotExistIsRefused_data();
    void profileThatDoesNotExistIsRefused();
    void digitsAreANumberAndOtherTextsAreNames();
    void nameIsFoundInAnyLetterCase();
    void ambiguousProfileNameIsWrongUsage();
    void virtualKeyboardAcceptsItsCommands_data();
    void virtualKeyboardAcceptsItsCommands();
    void refusalHasOneLine();
    void refusalNamesWhatDoesNotHappen();
    void showsTheKeysThatTheComputerSees();
    void gameModeIsSwitched();
    void brightnessIsSet();
    void statusShowsTheBrightnessThatApplies();
    void brightnessKeysArePressed();
    void lightIsShown();
    void lightIsChanged_data();
    void lightIsChanged();
    void lightKeepsTheOtherColors();
    void reportsAnUnknownLightEffect();
    void lightRefusesMeaninglessWords_data();
    void lightRefusesMeaninglessWords();
    void lightIsThatOfTheActiveProfile();
    void macroIsRecordedOnTheFly();
    void twoAtOnceGetTheirOwnReplies();

private:
    KestractlResult run(const QStringList &arguments) const { return runKestractl(arguments, mEnvironment); }
    QString line(const QStringList &arguments) const { return run(arguments).text().trimmed(); }
    QJsonObject status() const { return run({u"status"_s, u"--json"_s}).json().object(); }
    QVariantMap document() const;
    void startDaemon();
    void addProfile(const QString &name);
    /// Changes the first profile, as another client.
    void changeProfile(const QVariantMap &settings);
    void addMacro(const QString &name);
    void pressAndRelease(const QString &key) const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<QProcess> mDaemon;
    QProcessEnvironment mEnvironment;
};

void TestKestractl::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(mFolder->isValid());
    mEnvironment = QProcessEnvironment::systemEnvironment();
    mEnvironment.insert(u"HOME"_s, mFolder->path());
    // Hides the tester's desktop, where windows come to the front at any time.
    mEnvironment.remove(u"DISPLAY"_s);
    mEnvironment.remove(u"WAYLAND_DISPLAY"_s);
    for (const QString &name : {u"XDG_STATE_HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CONFIG_HOME"_s})
        mEnvironment.insert(name, mFolder->filePath(name));
    startDaemon();
}

void TestKestractl::startDaemon()
{
    mDaemon = std::make_unique<QProcess>();
    mDaemon->setProcessEnvironment(mEnvironment);
    mDaemon->setProcessChannelMode(QProcess::ForwardedChannels);
    mDaemon->start(builtExecutable(u"QuillKestraDaemon"_s), QStringList());
    QVERIFY(mDaemon->waitForStarted());
    QTRY_COMPARE_WITH_TIMEOUT(run({u"profile"_s, u"list"_s}).exitCode, 0, 20000);
}

void TestKestractl::cleanup()
{
    mDaemon->terminate();
    if (!mDaemon->waitForFinished(10000)) {
        mDaemon->kill();
        mDaemon->waitForFinished();
        QFAIL("the daemon does not end on SIGTERM");
    }
    mDaemon.reset();
    mFolder.reset();
}

QVariantMap TestKestractl::document() const
{
    return QlCoreUtility::convertDataToDictionary(run({u"document"_s, u"--plist"_s}).output).value_or(QVariantMap());
}

/// Without kestractl, which would copy the factory settings into the profile.
void TestKestractl::addProfile(const QString &name)
{
    const qsizetype count = document().value(SettingsKeys::profiles).toList().size();
    sendDaemonRequest(
        QVariantMap{{DaemonProtocol::productIdKey, DaemonProtocol::productId},
                    {DaemonProtocol::responsePortName, u"NoSuchPort"_s},
                    {DaemonProtocol::deviceSettingsDictionary,
                     QVariantMap{{SettingsKeys::profileName, name}, {SettingsKeys::keys, QVariantMap()}}}},
        static_cast<int>(DaemonProtocol::Command::addProfile));
    QTRY_COMPARE(document().value(SettingsKeys::profiles).toList().size(), count + 1);
}

void TestKestractl::changeProfile(const QVariantMap &settings)
{
    sendDaemonRequest(QVariantMap{{DaemonProtocol::productIdKey, DaemonProtocol::productId},
                                  {DaemonProtocol::responsePortName, u"NoSuchPort"_s},
                                  {DaemonProtocol::profileId, 0},
                                  {DaemonProtocol::deviceSettingsDictionary, settings}},
                      static_cast<int>(DaemonProtocol::Command::updateProfile));
    const QString key = settings.firstKey();
    QTRY_COMPARE(document().value(SettingsKeys::profiles).toList().first().toMap().value(key), settings.value(key));
}

void TestKestractl::addMacro(const QString &name)
{
    const qsizetype count = document().value(SettingsKeys::macros).toList().size();
    sendDaemonRequest(
        QVariantMap{{DaemonProtocol::productIdKey, DaemonProtocol::productId},
                    {DaemonProtocol::responsePortName, u"NoSuchPort"_s},
                    {DaemonProtocol::macroContents, QVariantMap{{SettingsKeys::macroName, name},
                                                                {SettingsKeys::delay, 20},
                                                                {SettingsKeys::sequence, QVariantMap()}}}},
        static_cast<int>(DaemonProtocol::Command::addMacro));
    QTRY_COMPARE(document().value(SettingsKeys::macros).toList().size(), count + 1);
}

void TestKestractl::pressAndRelease(const QString &key) const
{
    QCOMPARE(run({u"keyboard"_s, u"press"_s, key}).exitCode, 0);
    QCOMPARE(run({u"keyboard"_s, u"release"_s, key}).exitCode, 0);
}

void TestKestractl::statusShowsTheActiveProfile()
{
    const KestractlResult result = run({u"status"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errorText(), QString());
    const QStringList lines = result.text().split(u'\n', Qt::SkipEmptyParts);
    QVERIFY2(lines.contains(u"daemon: running"_s), result.output.constData());
    QVERIFY2(lines.contains(u"keyboard: attached"_s), result.output.constData());
    QVERIFY2(lines.contains(u"activeProfile: 1"_s), result.output.constData());
    QVERIFY2(lines.contains(u"gameMode: off"_s), result.output.constData());
}

void TestKestractl::statusAsJsonHasEveryRow()
{
    const QJsonObject object = status();
    QCOMPARE(object.value("daemon"_L1).toString(), u"running"_s);
    QVERIFY(!object.value("firmware"_L1).toString().isEmpty());
    QCOMPARE(object.value("profiles"_L1).toInt(), document().value(SettingsKeys::profiles).toList().size());
    QCOMPARE(object.value("macros"_L1).toInt(), document().value(SettingsKeys::macros).toList().size());
    QVERIFY(object.value("gameMode"_L1).isBool());
    QVERIFY(object.value("brightness"_L1).isDouble());
    QVERIFY(!object.value("activeProfileName"_L1).toString().isEmpty());
}

void TestKestractl::statusNamesProblemsOfTheSettings()
{
    QVERIFY(status().value("settingsProblems"_L1).isArray());
    QVERIFY(status().value("settingsProblems"_L1).toArray().isEmpty());
    QVERIFY(!run({u"status"_s}).text().contains(u"settingsProblem"_s));
    addProfile(u"Mine"_s);
    QVariantMap wrong = document();
    wrong.insert(SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 7}});
    mDaemon->terminate();
    QVERIFY(mDaemon->waitForFinished());
    const QString folder = mFolder->filePath(u"XDG_STATE_HOME/quill-kestra"_s);
    writeFile(folder + u"/settings.plist"_s, QlCoreUtility::convertDictionaryToData(wrong).value());
    writeFile(folder + u"/settings.plist.3"_s, "damage");
    startDaemon();
    const QStringList kept = QDir(folder).entryList({u"settings.plist.damaged-*"_s});
    QCOMPARE(kept.size(), 2);
    const QJsonArray problems = status().value("settingsProblems"_L1).toArray();
    QCOMPARE(problems.size(), 2);
    const QString text = run({u"status"_s}).text();
    for (const QJsonValue &problem : problems)
        QVERIFY2(text.contains(u"\nsettingsProblem: "_s + problem.toString() + u'\n'), qPrintable(text));
    for (const QString &name : kept)
        QVERIFY2(text.contains(name), qPrintable(text));
    QVERIFY2(text.contains(u"settings.plist.3 is damaged"_s), qPrintable(text));
    QVERIFY2(text.contains(u"settings.plist was repaired"_s), qPrintable(text));
    QVERIFY2(text.contains(u"\"ActiveProfile\" was not a position"_s), qPrintable(text));
}

void TestKestractl::statusFollowsTheKeyboard()
{
    QCOMPARE(run({u"keyboard"_s, u"remove"_s}).exitCode, 0);
    QCOMPARE(status().value("keyboard"_L1).toString(), u"not attached"_s);
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"A"_s}).exitCode, 1);
    QVERIFY(status().value("firmware"_L1).isNull());
    QCOMPARE(run({u"keyboard"_s, u"attach"_s}).exitCode, 0);
    QCOMPARE(status().value("keyboard"_L1).toString(), u"attached"_s);
}

void TestKestractl::documentIsJson()
{
    const KestractlResult result = run({u"document"_s});
    QCOMPARE(result.exitCode, 0);
    const QJsonObject object = result.json().object();
    QVERIFY(!object.value("Profiles"_L1).toArray().isEmpty());
    QVERIFY(object.value("Macros"_L1).isArray());
    QCOMPARE(object.value("DeviceSettings"_L1).toObject().value("ActiveProfile"_L1).toInt(-1), 0);
    QCOMPARE(run({u"document"_s, u"--json"_s}).output, result.output);
}

void TestKestractl::documentAsPropertyListHasTheSameContent()
{
    const KestractlResult result = run({u"document"_s, u"--plist"_s});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.startsWith("bplist00"));
    const QJsonArray fromJson = run({u"document"_s}).json().object().value("Profiles"_L1).toArray();
    const QVariantList fromPlist = document().value(SettingsKeys::profiles).toList();
    QCOMPARE(fromPlist.size(), fromJson.size());
    QCOMPARE(fromPlist.first().toMap().value(SettingsKeys::profileName).toString(),
             fromJson.first().toObject().value("ProfileName"_L1).toString());
}

void TestKestractl::keyIsDefaultAtFirst()
{
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: default key"_s);
    QCOMPARE(run({u"key"_s, u"A"_s, u"--json"_s}).json().object().value("mapped"_L1), QJsonValue(false));
}

void TestKestractl::keyIsNamedInSeveralWays_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::newRow("name") << u"A"_s << 4;
    QTest::newRow("letter case ignored") << u"a"_s << 4;
    QTest::newRow("button") << u"NumPadSeven"_s << 95;
    QTest::newRow("decimal code") << u"225"_s << 225;
    QTest::newRow("hexadecimal code") << u"0x04"_s << 4;
    QTest::newRow("a digit is the digit key") << u"4"_s << 33;
    QTest::newRow("legend") << u";"_s << 51;
    QTest::newRow("extra key") << u"M1"_s << 106;
}

void TestKestractl::keyIsNamedInSeveralWays()
{
    QFETCH(QString, text);
    QFETCH(int, code);
    const KestractlResult result = run({u"key"_s, text, u"--json"_s});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.json().object().value("code"_L1).toInt(), code);
}

void TestKestractl::keyCanBeDisabledAndReset()
{
    const KestractlResult disabled = run({u"key"_s, u"A"_s, u"disable"_s});
    QCOMPARE(disabled.exitCode, 0);
    QCOMPARE(disabled.text().trimmed(), u"A: disabled"_s);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: disabled"_s);
    const QJsonObject entry = run({u"key"_s, u"A"_s, u"--json"_s}).json().object().value("entry"_L1).toObject();
    QCOMPARE(entry.value("command"_L1).toInt(), 20);
    QCOMPARE(entry.value("param1"_L1).toInt(-1), 0);
    QCOMPARE(entry.value("param2"_L1).toInt(-1), 0);
    QCOMPARE(line({u"key"_s, u"A"_s, u"default"_s}), u"A: default key"_s);
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: default key"_s);
}

void TestKestractl::disablingOneKeyLeavesTheOthers()
{
    const auto keys = [this] {
        return document().value(SettingsKeys::profiles).toList().value(0).toMap().value(SettingsKeys::keys).toMap();
    };
    QVariantMap before = keys();
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QVariantMap after = keys();
    QVERIFY(before.value(u"4"_s) != after.value(u"4"_s));
    before.remove(u"4"_s);
    after.remove(u"4"_s);
    QVERIFY(!before.isEmpty());
    QCOMPARE(after, before);
}

void TestKestractl::defaultTakesTheFactoryParameter()
{
    const auto entry = [this] {
        const QVariantMap profile = document().value(SettingsKeys::profiles).toList().value(0).toMap();
        return profile.value(SettingsKeys::keys).toMap().value(u"4"_s).toMap();
    };
    const QVariantMap factory = entry();
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"default"_s}).exitCode, 0);
    QCOMPARE(entry().value(SettingsKeys::command).toInt(), 45);
    QCOMPARE(entry().value(SettingsKeys::param1).toInt(), factory.value(SettingsKeys::param1).toInt());
}

void TestKestractl::disabledKeyOutlivesAKilledDaemon()
{
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    mDaemon->kill();
    QVERIFY(mDaemon->waitForFinished());
    startDaemon();
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: disabled"_s);
}

void TestKestractl::everyAssignmentIsStoredShownAndSent_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QJsonArray>("entry"); // command, param1, param2
    QTest::addColumn<QStringList>("sent"); // by a press and a release
    const QStringList nothing;
    QTest::newRow("single key") << QStringList{u"single"_s, u"C"_s} << u"Q: single key C"_s << QJsonArray{16, 6, 0}
                                << QStringList{u"+7:6"_s, u"-7:6"_s};
    QTest::newRow("with modifiers") << QStringList{u"single"_s, u"C"_s, u"--modifiers"_s, u"leftcontrol,leftshift"_s}
                                    << u"Q: single key Left Control + Left Shift + C"_s << QJsonArray{16, 6, 3}
                                    << QStringList{u"+7:224"_s, u"+7:225"_s, u"+7:6"_s,
                                                   u"-7:6"_s,   u"-7:224"_s, u"-7:225"_s};
    QTest::newRow("a modifier") << QStringList{u"single"_s, u"RightShift"_s, u"--json"_s, u"--modifiers="_s}
                                << QString() << QJsonArray{16, 229, 0} << QStringList{u"+7:229"_s, u"-7:229"_s};
    QTest::newRow("macro") << QStringList{u"macro"_s, u"Heal"_s, u"--repeat"_s, u"until-released"_s}
                           << u"Q: macro Heal, until released"_s << QJsonArray{10, 1, 255} << nothing;
    QTest::newRow("macro by number") << QStringList{u"macro"_s, u"1"_s, u"--repeat=3"_s} << u"Q: macro Other, 3 times"_s
                                     << QJsonArray{10, 0, 3} << nothing;
    QTest::newRow("profile") << QStringList{u"profile"_s, u"1"_s} << u"Q: profile Default Profile"_s
                             << QJsonArray{17, 0, 0} << nothing;
    QTest::newRow("disable") << QStringList{u"disable"_s} << u"Q: disabled"_s << QJsonArray{20, 0, 0} << nothing;
    QTest::newRow("default") << QStringList{u"default"_s} << u"Q: default key"_s << QJsonArray{45, 20, 0}
                             << QStringList{u"+7:20"_s, u"-7:20"_s};
}

void TestKestractl::everyAssignmentIsStoredShownAndSent()
{
    QFETCH(QStringList, words);
    QFETCH(QString, said);
    addMacro(u"Other"_s);
    addMacro(u"Heal"_s);
    const KestractlResult result = run(QStringList{u"key"_s, u"Q"_s} + words);
    QCOMPARE(result.errorText(), QString());
    QCOMPARE(result.exitCode, 0);
    if (!said.isEmpty()) {
        QCOMPARE(result.text().trimmed(), said);
        QCOMPARE(line({u"key"_s, u"Q"_s}), said);
    }
    const QJsonObject entry = run({u"key"_s, u"Q"_s, u"--json"_s}).json().object().value("entry"_L1).toObject();
    QTEST((QJsonArray{entry.value("command"_L1), entry.value("param1"_L1), entry.value("param2"_L1)}), "entry");
    SentRecorder recorder;
    pressAndRelease(u"Q"_s);
    pressAndRelease(u"Z"_s); // Z sends itself, which marks the end of what Q sends
    QFETCH(QStringList, sent);
    QTRY_COMPARE(recorder.sent(), sent + QStringList({u"+7:29"_s, u"-7:29"_s}));
}

void TestKestractl::assignmentsWithoutEffectSaySo()
{
    const auto entry = [](int command, int param1, int param2) {
        return QVariantMap{
            {SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, param2}};
    };
    changeProfile({{SettingsKeys::keys,
                    QVariantMap{{u"4"_s, entry(30, 0, 0)}, {u"5"_s, entry(10, 4, 1)}, {u"6"_s, entry(17, 1, 0)}}}});
    QCOMPARE(line({u"key"_s, u"A"_s}), u"A: unknown assignment, which does nothing"_s);
    QCOMPARE(line({u"key"_s, u"B"_s}), u"B: macro 5 (which does not exist), once"_s);
    QCOMPARE(line({u"key"_s, u"C"_s}), u"C: profile 2 (which does not exist)"_s);
    SentRecorder recorder;
    for (const QString &key : {u"A"_s, u"B"_s, u"C"_s, u"Z"_s}) // Z sends itself
        pressAndRelease(key);
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:29"_s, u"-7:29"_s}));
}

void TestKestractl::keySwitchesToAProfile()
{
    addProfile(u"Work"_s); // the daemon makes it active
    QCOMPARE(line({u"key"_s, u"Q"_s, u"profile"_s, u"Default Profile"_s}), u"Q: profile Default Profile"_s);
    QCOMPARE(status().value("activeProfile"_L1), QJsonValue(1));
    SentRecorder recorder;
    pressAndRelease(u"Q"_s);
    QCOMPARE(status().value("activeProfile"_L1), QJsonValue(0));
    pressAndRelease(u"Q"_s);
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:20"_s, u"-7:20"_s}));
}

void TestKestractl::keyLaunchesAnApplication()
{
    const QString result = mFolder->filePath(u"the result"_s);
    const QString entry = writeDesktopEntry(mFolder->filePath(u"game.desktop"_s),
                                            "Name=Game\nExec=touch \"" + result.toUtf8() + "\" %U\n");
    const QString path = QFileInfo(entry).canonicalFilePath();
    QCOMPARE(line({u"key"_s, u"Q"_s, u"launch"_s, entry}), u"Q: program "_s + path);
    const QJsonObject stored = run({u"key"_s, u"Q"_s, u"--json"_s}).json().object().value("entry"_L1).toObject();
    QCOMPARE(stored, (QJsonObject{{u"command"_s, 46}, {u"param1"_s, path}, {u"param2"_s, QString()}}));
    SentRecorder recorder;
    pressAndRelease(u"Q"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(result), 20'000);
    QVERIFY(recorder.sent().isEmpty());
}

void TestKestractl::impossibleAssignmentChangesNothing_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("error");
    QTest::newRow("key") << QStringList{u"single"_s, u"Banana"_s} << u"the keyboard has no key \"Banana\" to send"_s;
    QTest::newRow("modifier") << QStringList{u"single"_s, u"C"_s, u"--modifiers=D"_s}
                              << u"\"D\" is not a modifier key"_s;
    QTest::newRow("macro") << QStringList{u"macro"_s, u"1"_s} << u"there is no macro 1"_s;
    QTest::newRow("macro name") << QStringList{u"macro"_s, u"Heal"_s} << u"no macro is called \"Heal\""_s;
    QTest::newRow("profile") << QStringList{u"profile"_s, u"2"_s} << u"there is no profile 2"_s;
    QTest::newRow("application") << QStringList{u"launch"_s, u"/bin/sh"_s}
                                 << u"neither a desktop entry nor an application bundle"_s;
}

void TestKestractl::impossibleAssignmentChangesNothing()
{
    QFETCH(QStringList, words);
    QFETCH(QString, error);
    const QVariantMap before = document();
    const KestractlResult result = run(QStringList{u"key"_s, u"Q"_s} + words);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.errorText().contains(error), qPrintable(result.errorText()));
    QCOMPARE(result.text(), QString());
    QVERIFY(!before.isEmpty());
    QCOMPARE(document(), before);
}

void TestKestractl::changesNameKestractlAsTheirSource()
{
    QObject observer;
    QStringList sources;
    DistributedNotificationCenter::defaultCenter().addObserver(
        &observer, DaemonProtocol::profileUpdated, [&sources](const DistributedNotification &notification) {
            sources.append(notification.userInfo.value(DaemonProtocol::sourceApp).toString());
        });
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QTRY_COMPARE(sources, QStringList{u"org.quillkestra.kestractl"_s});
}

void TestKestractl::profileListMarksTheActiveOne()
{
    const KestractlResult result = run({u"profile"_s, u"list"_s});
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = result.text().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), document().value(SettingsKeys::profiles).toList().size());
    QCOMPARE(lines.filter(QRegularExpression(u"^\\*"_s)).size(), 1);
    QVERIFY(lines.first().startsWith(u'*'));
    const QJsonArray list = run({u"profile"_s, u"list"_s, u"--json"_s}).json().array();
    QCOMPARE(list.size(), lines.size());
    QCOMPARE(list.first().toObject().value("active"_L1), QJsonValue(true));
}

void TestKestractl::profileIsSwitchedByNumberAndByName()
{
    const QString firstName = status().value("activeProfileName"_L1).toString();
    addProfile(u"Second & 100%1"_s);
    QCOMPARE(line({u"profile"_s, u"switch"_s, u"1"_s}), u"profile 1 \"%1\" is active"_s.arg(firstName));
    QCOMPARE(status().value("activeProfile"_L1).toInt(), 0);
    QCOMPARE(line({u"profile"_s, u"switch"_s, u"Second & 100%1"_s}), u"profile 2 \"Second & 100%1\" is active"_s);
    QCOMPARE(status().value("activeProfile"_L1).toInt(), 1);
    QCOMPARE(status().value("activeProfileName"_L1).toString(), u"Second & 100%1"_s);
    QVERIFY(run({u"profile"_s, u"list"_s}).text().endsWith(u"*  2  Second & 100%1\n"_s));
}

void TestKestractl::profileThatDoesNotExistIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("beyond the last") << u"99"_s << u"there is no profile 99 (see kestractl profile list)"_s;
    QTest::newRow("zero") << u"0"_s << u"there is no profile 0: the first one is 1 (see kestractl profile list)"_s;
    QTest::newRow("beyond all numbers") << u"99999999999999999999"_s
                                        << u"there is no profile 99999999999999999999 (see kestractl profile list)"_s;
    QTest::newRow("negative") << u"-1"_s << u"no profile is called \"-1\" (see kestractl profile list)"_s;
    QTest::newRow("signed") << u"+1"_s << u"no profile is called \"+1\" (see kestractl profile list)"_s;
    QTest::newRow("number as a name") << u"name:1"_s << u"no profile is called \"1\" (see kestractl profile list)"_s;
    QTest::newRow("name") << u"No such profile"_s
                          << u"no profile is called \"No such profile\" (see kestractl profile list)"_s;
}

void TestKestractl::profileThatDoesNotExistIsRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);
    const KestractlResult result = run({u"profile"_s, u"switch"_s, u"--"_s, text});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.text(), QString());
    QCOMPARE(result.errorText(), u"kestractl: %1\n"_s.arg(problem));
    QCOMPARE(status().value("activeProfile"_L1).toInt(), 0);
}

void TestKestractl::digitsAreANumberAndOtherTextsAreNames()
{
    for (const QString &name : {u"1"_s, u"-1"_s, u"1a"_s, u"name:1"_s})
        addProfile(name);
    const auto switched = [this](const QString &text) {
        return line({u"profile"_s, u"switch"_s, u"--"_s, text}).section(u' ', 1);
    };
    QCOMPARE(switched(u"3"_s), u"3 \"-1\" is active"_s);
    QCOMPARE(switched(u"1"_s), u"1 \"Default Profile\" is active"_s);
    QCOMPARE(switched(u"name:1"_s), u"2 \"1\" is active"_s);
    QCOMPARE(switched(u"name:name:1"_s), u"5 \"name:1\" is active"_s);
    QCOMPARE(switched(u"-1"_s), u"3 \"-1\" is active"_s);
    QCOMPARE(switched(u"1a"_s), u"4 \"1a\" is active"_s);
    QCOMPARE(switched(u"name:Default Profile"_s), u"1 \"Default Profile\" is active"_s);
    QCOMPARE(switched(u"0004"_s), u"4 \"1a\" is active"_s);
}

void TestKestractl::nameIsFoundInAnyLetterCase()
{
    addProfile(u"Überfall"_s);
    addProfile(u"Raid"_s);
    addProfile(u"RAID"_s);
    const auto switched = [this](const QString &text) { return line({u"profile"_s, u"switch"_s, text}); };
    QCOMPARE(switched(u"überFALL"_s), u"profile 2 \"Überfall\" is active"_s);
    // The exact name precedes.
    QCOMPARE(switched(u"RAID"_s), u"profile 4 \"RAID\" is active"_s);
    QCOMPARE(switched(u"Raid"_s), u"profile 3 \"Raid\" is active"_s);
    const KestractlResult result = run({u"profile"_s, u"switch"_s, u"raid"_s});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.errorText(),
             u"kestractl: several profiles are called \"raid\": 3 \"Raid\", 4 \"RAID\"; give the number\n"_s);
    QCOMPARE(status().value("activeProfileName"_L1).toString(), u"Raid"_s);
}

void TestKestractl::ambiguousProfileNameIsWrongUsage()
{
    addProfile(u"Twin"_s);
    addProfile(u"Twin"_s);
    const int active = status().value("activeProfile"_L1).toInt();
    const KestractlResult result = run({u"profile"_s, u"switch"_s, u"Twin"_s});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.errorText(),
             u"kestractl: several profiles are called \"Twin\": 2 \"Twin\", 3 \"Twin\"; give the number\n"_s);
    QCOMPARE(status().value("activeProfile"_L1).toInt(), active);
}

void TestKestractl::virtualKeyboardAcceptsItsCommands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("press") << QStringList{u"press"_s, u"A"_s} << 0;
    QTest::newRow("release") << QStringList{u"release"_s, u"A"_s} << 0;
    QTest::newRow("press without a key") << QStringList{u"press"_s} << 2;
    QTest::newRow("press of no key") << QStringList{u"press"_s, u"Nonsense"_s} << 2;
    QTest::newRow("brightness without a number") << QStringList{u"brightness"_s} << 2;
    QTest::newRow("brightness of no number") << QStringList{u"brightness"_s, u"bright"_s} << 2;
    QTest::newRow("brightness beyond the brightest") << QStringList{u"brightness"_s, u"300"_s} << 1;
    QTest::newRow("no such command") << QStringList{u"explode"_s} << 2;
}

void TestKestractl::virtualKeyboardAcceptsItsCommands()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    const KestractlResult result = run(QStringList{u"keyboard"_s} + arguments);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.errors.isEmpty(), exitCode == 0);
}

void TestKestractl::refusalNamesWhatDoesNotHappen()
{
    const QString reason = u": the keyboard is not attached\n"_s;
    QCOMPARE(run({u"keyboard"_s, u"remove"_s}).exitCode, 0);
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"F8"_s}).errorText(),
             u"kestractl: the key F8 cannot be pressed"_s + reason);
    QCOMPARE(run({u"keyboard"_s, u"macro-key"_s}).errorText(),
             u"kestractl: the Macro key cannot be pressed"_s + reason);
    QCOMPARE(run({u"keyboard"_s, u"game-mode"_s}).errorText(), u"kestractl: game mode cannot be switched"_s + reason);
    QCOMPARE(run({u"keyboard"_s, u"attach"_s}).exitCode, 0);
}

void TestKestractl::refusalHasOneLine()
{
    constexpr int rounds = 40; // QtDBus's thread wins the race with the end of the program in most rounds
    for (int round = 0; round < rounds; ++round) {
        QCOMPARE(run({u"keyboard"_s, u"brightness"_s, u"300"_s}).errorText(),
                 u"kestractl: the brightness cannot be changed: the brightness levels are 0 to 4\n"_s);
    }
}

void TestKestractl::showsTheKeysThatTheComputerSees()
{
    const KestractlResult nothing = run({u"keyboard"_s, u"sent"_s});
    QCOMPARE(nothing.exitCode, 0);
    QCOMPARE(nothing.text(), QString());
    QCOMPARE(run({u"key"_s, u"A"_s, u"disable"_s}).exitCode, 0);
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"A"_s}).exitCode, 0);
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"B"_s}).exitCode, 0);
    QCOMPARE(line({u"keyboard"_s, u"sent"_s}), u"B"_s);
    const QJsonArray list = run({u"keyboard"_s, u"sent"_s, u"--json"_s}).json().array();
    QCOMPARE(list, (QJsonArray{QJsonObject{{u"page"_s, 7}, {u"usage"_s, 5}, {u"key"_s, u"B"_s}}}));
    QCOMPARE(run({u"keyboard"_s, u"release"_s, u"B"_s}).exitCode, 0);
    QCOMPARE(line({u"keyboard"_s, u"sent"_s}), QString());
    // The modifiers of an assignment are not for the next key.
    QCOMPARE(run({u"keyboard"_s, u"release"_s, u"A"_s}).exitCode, 0);
    QCOMPARE(run({u"key"_s, u"A"_s, u"single"_s, u"1"_s, u"--modifiers"_s, u"LeftShift"_s}).exitCode, 0);
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"A"_s}).exitCode, 0);
    QCOMPARE(line({u"keyboard"_s, u"sent"_s}).split(u'\n'), (QStringList{u"Left Shift"_s, u"1"_s}));
    QCOMPARE(run({u"keyboard"_s, u"press"_s, u"B"_s}).exitCode, 0);
    QCOMPARE(line({u"keyboard"_s, u"sent"_s}).split(u'\n'), (QStringList{u"1"_s, u"B"_s}));
}

void TestKestractl::gameModeIsSwitched()
{
    QCOMPARE(status().value("gameMode"_L1), QJsonValue(false));
    QCOMPARE(run({u"keyboard"_s, u"game-mode"_s}).exitCode, 0);
    QTRY_COMPARE(status().value("gameMode"_L1), QJsonValue(true));
}

void TestKestractl::brightnessIsSet()
{
    QCOMPARE(run({u"keyboard"_s, u"brightness"_s, u"3"_s}).exitCode, 0);
    QTRY_COMPARE(status().value("brightness"_L1).toInt(), 3);
}

// A client may store any number; the light has the levels 0 to 4.
void TestKestractl::statusShowsTheBrightnessThatApplies()
{
    changeProfile({{SettingsKeys::brightnessKbNormal, 9}});
    QCOMPARE(status().value("brightness"_L1).toInt(), 4);
    QCOMPARE(run({u"light"_s, u"--json"_s}).json().object().value("brightness"_L1).toInt(), 4);
}

void TestKestractl::brightnessKeysArePressed()
{
    QCOMPARE(run({u"keyboard"_s, u"brightness"_s, u"down"_s}).exitCode, 0);
    QTRY_COMPARE(status().value("brightness"_L1).toInt(), 3);
    QCOMPARE(run({u"keyboard"_s, u"brightness"_s, u"up"_s}).exitCode, 0);
    QTRY_COMPARE(status().value("brightness"_L1).toInt(), 4);
}

void TestKestractl::lightIsShown()
{
    QCOMPARE(run({u"light"_s, u"color"_s, u"ff8000"_s}).exitCode, 0);
    QCOMPARE(line({u"light"_s}),
             u"backlight: on\ncolor: #ff8000\neffect: fixed\nbrightness: 4 (bright)\nnow: #ff8000"_s);
    QCOMPARE(run({u"light"_s, u"--json"_s}).json().object(), (QJsonObject{{u"backlight"_s, true},
                                                                          {u"color"_s, u"#ff8000"_s},
                                                                          {u"effect"_s, u"fixed"_s},
                                                                          {u"brightness"_s, 4},
                                                                          {u"now"_s, u"#ff8000"_s}}));
    QCOMPARE(run({u"keyboard"_s, u"remove"_s}).exitCode, 0);
    QTRY_COMPARE(run({u"light"_s, u"--json"_s}).json().object().value("now"_L1).toString(), u"#000000"_s);
}

void TestKestractl::lightIsChanged_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("now");
    const auto row = [](const char *tag, const QStringList &words, const QString &name, const QJsonValue &value,
                        const QString &now) { QTest::newRow(tag) << words << name << value << now; };
    row("off", {u"off"_s}, u"backlight"_s, false, u"#000000"_s);
    row("on", {u"on"_s}, u"backlight"_s, true, u"#80ff00"_s);
    row("digits", {u"color"_s, u"0a141e"_s}, u"color"_s, u"#0a141e"_s, u"#0a141e"_s);
    row("digits with the mark", {u"color"_s, u"#0A141E"_s}, u"color"_s, u"#0a141e"_s, u"#0a141e"_s);
    row("name", {u"color"_s, u"Orange"_s}, u"color"_s, u"#ff8000"_s, u"#ff8000"_s);
    row("British spelling", {u"colour"_s, u"0a141e"_s}, u"color"_s, u"#0a141e"_s, u"#0a141e"_s);
    row("fixed", {u"effect"_s, u"fixed"_s}, u"effect"_s, u"fixed"_s, u"#80ff00"_s);
    row("spectrum", {u"effect"_s, u"spectrum"_s}, u"effect"_s, u"spectrum"_s, QString());
    row("level", {u"brightness"_s, u"3"_s}, u"brightness"_s, 3, u"#60bf00"_s);
    row("brightness off", {u"brightness"_s, u"off"_s}, u"brightness"_s, 0, u"#000000"_s);
    row("dim", {u"brightness"_s, u"dim"_s}, u"brightness"_s, 1, u"#204000"_s);
    row("normal", {u"brightness"_s, u"normal"_s}, u"brightness"_s, 2, u"#408000"_s);
    row("bright", {u"brightness"_s, u"bright"_s}, u"brightness"_s, 4, u"#80ff00"_s);
}

void TestKestractl::lightIsChanged()
{
    QFETCH(QStringList, words);
    QFETCH(QString, name);
    QFETCH(QJsonValue, value);
    QFETCH(QString, now);
    QCOMPARE(run({u"light"_s, u"color"_s, u"80ff00"_s}).exitCode, 0);
    const QJsonObject before = run({u"light"_s, u"--json"_s}).json().object();
    const KestractlResult result = run(QStringList{u"light"_s, u"--json"_s} + words);
    QCOMPARE(result.exitCode, 0);
    // kestractl prints the values that the daemon now holds.
    QJsonObject after = result.json().object();
    QCOMPARE(after.value(name), value);
    const QString shown = after.value("now"_L1).toString();
    QVERIFY2(now.isEmpty() ? shown != "#000000"_L1 : shown == now, qPrintable(shown));
    const QJsonObject asked = run({u"light"_s, u"--json"_s}).json().object();
    QCOMPARE(asked.value(name), value);
    after[name] = before.value(name);
    after["now"_L1] = before.value("now"_L1);
    QCOMPARE(after, before);
}

void TestKestractl::lightKeepsTheOtherColors()
{
    const auto colors = [this] {
        return document().value(SettingsKeys::profiles).toList().first().toMap().value(SettingsKeys::ledKbColors);
    };
    const QVariantMap color{{u"Red"_s, 0.25}, {u"Green"_s, 0.5}, {u"Blue"_s, 1.0}, {u"Zone"_s, 3}};
    changeProfile({{SettingsKeys::ledKbColors, QVariantList{color, color}}});
    const QVariantList before = colors().toList();
    QCOMPARE(before.size(), 2);
    QCOMPARE(run({u"light"_s, u"color"_s, u"ff0000"_s}).exitCode, 0);
    const QVariantList after = colors().toList();
    QCOMPARE(after.sliced(1), before.sliced(1));
    QCOMPARE(after.first().toMap().value(SettingsKeys::red), QVariant(1.0));
    QCOMPARE(after.first().toMap().value(SettingsKeys::blue), QVariant(0.0));
    QCOMPARE(after.first().toMap().keys(), before.first().toMap().keys());
}

void TestKestractl::reportsAnUnknownLightEffect()
{
    changeProfile({{SettingsKeys::ledKbEffects, 2}});
    QVERIFY(line({u"light"_s}).contains(u"effect: unknown (2)"_s));
    QVERIFY(run({u"light"_s, u"--json"_s}).json().object().value("effect"_L1).isNull());
    // Choosing the fixed colour switches the light on.
    QCOMPARE(run({u"light"_s, u"off"_s}).exitCode, 0);
    QVERIFY(line({u"light"_s, u"effect"_s, u"fixed"_s}).startsWith(u"backlight: on"_s));
    QCOMPARE(run({u"light"_s, u"off"_s}).exitCode, 0);
    QVERIFY(line({u"light"_s, u"effect"_s, u"spectrum"_s}).startsWith(u"backlight: off"_s));
}

void TestKestractl::lightRefusesMeaninglessWords_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("no such setting") << QStringList{u"loud"_s};
    QTest::newRow("on with more") << QStringList{u"on"_s, u"now"_s};
    QTest::newRow("color without one") << QStringList{u"color"_s};
    QTest::newRow("no colour in British spelling") << QStringList{u"colour"_s};
    QTest::newRow("no setting") << QStringList{QString()};
    QTest::newRow("no color") << QStringList{u"color"_s, u"ff80"_s};
    QTest::newRow("no effect") << QStringList{u"effect"_s, u"disco"_s};
    QTest::newRow("no level") << QStringList{u"brightness"_s, u"5"_s};
    QTest::newRow("negative level") << QStringList{u"brightness"_s, u"--"_s, u"-1"_s};
    QTest::newRow("too many words") << QStringList{u"color"_s, u"red"_s, u"green"_s};
    QTest::newRow("option it has not") << QStringList{u"on"_s, u"--plist"_s};
}

void TestKestractl::lightRefusesMeaninglessWords()
{
    QFETCH(QStringList, words);
    const QVariantMap before = document();
    const KestractlResult result = run(QStringList{u"light"_s} + words);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!result.errors.isEmpty());
    QVERIFY(result.output.isEmpty());
    QCOMPARE(document(), before);
}

void TestKestractl::lightIsThatOfTheActiveProfile()
{
    QCOMPARE(run({u"light"_s, u"color"_s, u"red"_s}).exitCode, 0);
    addProfile(u"Dark"_s); // becomes active, and has no light settings
    QCOMPARE(line({u"light"_s}).section(u'\n', 0, 0), u"backlight: off"_s);
    QCOMPARE(run({u"light"_s, u"color"_s, u"blue"_s}).exitCode, 0);
    QCOMPARE(run({u"profile"_s, u"switch"_s, u"1"_s}).exitCode, 0);
    QCOMPARE(run({u"light"_s, u"--json"_s}).json().object().value("color"_L1).toString(), u"#ff0000"_s);
}

void TestKestractl::macroIsRecordedOnTheFly()
{
    const auto keyboard = [this](const QStringList &words) {
        QCOMPARE(run(QStringList{u"keyboard"_s} + words).exitCode, 0);
    };
    keyboard({u"macro-key"_s});
    pressAndRelease(u"A"_s);
    keyboard({u"macro-key"_s});
    pressAndRelease(u"M1"_s);
    QCOMPARE(line({u"key"_s, u"M1"_s}), u"M1: macro On the fly, once"_s);
    QCOMPARE(line({u"keyboard"_s, u"sent"_s}), QString());
}

void TestKestractl::twoAtOnceGetTheirOwnReplies()
{
    QProcess one;
    QProcess other;
    startKestractl(one, {u"document"_s}, mEnvironment);
    startKestractl(other, {u"profile"_s, u"list"_s}, mEnvironment);
    const KestractlResult document = finishedResult(one);
    const KestractlResult profiles = finishedResult(other);
    QCOMPARE(document.exitCode, 0);
    QVERIFY(document.json().object().contains("Profiles"_L1));
    QCOMPARE(profiles.exitCode, 0);
    QVERIFY(profiles.text().startsWith(u'*'));
}

QTEST_GUILESS_MAIN(TestKestractl)
#include "kestractltest.moc"
