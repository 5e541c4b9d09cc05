// SPDX-License-Identifier: MIT
// The messages and exit codes of kestractl for wrong usage, without a daemon, and with a daemon that is silent, refuses
// or sends nonsense. A port of the test acts as the daemon, because the real one does none of this on request.
#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "platform/messageport.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

/// The daemon's port, with the reply that the test chooses; without one, it is silent.
class StandInDaemon
{
public:
    explicit StandInDaemon(std::optional<QByteArray> reply)
        : mPort(LocalMessagePort::create(
            DaemonProtocol::requestPortName,
            [this, reply = std::move(reply)](qint32, const std::optional<QByteArray> &data) {
                const QVariantMap request = QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap());
                mRequests.append(request);
                const QString replyPort = request.value(DaemonProtocol::responsePortName).toString();
                if (reply) {
                    if (const auto port = RemoteMessagePort::open(replyPort))
                        port->post(0, *reply);
                }
                return std::optional<QByteArray>();
            },
            QDBusConnection::sessionBus()))
    {
    }

    [[nodiscard]] bool isServing() const { return mPort != nullptr; }
    [[nodiscard]] const QVariantList &requests() const { return mRequests; }

private:
    QVariantList mRequests;
    std::unique_ptr<LocalMessagePort> mPort;
};

QByteArray encoded(const QVariantMap &dictionary)
{
    return QlCoreUtility::convertDictionaryToData(dictionary).value_or(QByteArray());
}

/// Runs kestractl while this thread serves its ports.
KestractlResult runServed(const QStringList &arguments)
{
    QProcess process;
    startKestractl(process, arguments, QProcessEnvironment::systemEnvironment());
    [&] { QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 30000); }();
    return finishedResult(process);
}

} // namespace

class TestKestractlFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpNeedsNoDaemon_data();
    void helpNeedsNoDaemon();
    void helpOfACommandExplainsItsPlaceholders_data();
    void helpOfACommandExplainsItsPlaceholders();
    void helpFitsATerminal();
    void listOfKeysHasEveryKeyAndModifier();
    void reportsResultsThatCannotBeWritten();
    void reportsResultsBeyondTheFileSizeLimit();
    void reportsWrongUsage_data();
    void reportsWrongUsage();
    void reportsAMissingDaemon_data();
    void reportsAMissingDaemon();
    void reportsAMissingBus();
    void reportsASilentDaemon();
    void explainsARefusalInTheTermsOfTheUser_data();
    void explainsARefusalInTheTermsOfTheUser();
    void explainsADaemonOfAnotherVersion_data();
    void explainsADaemonOfAnotherVersion();
    void refusesNonsense_data();
    void refusesNonsense();
    void requestsNameTheirSender();
};

void TestKestractlFailures::helpNeedsNoDaemon_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    QTest::newRow("--help") << QStringList{u"--help"_s} << u"Exit codes"_s;
    QTest::newRow("-h") << QStringList{u"-h"_s} << u"Exit codes"_s;
    QTest::newRow("help") << QStringList{u"help"_s} << u"Exit codes"_s;
    QTest::newRow("help of a command") << QStringList{u"help"_s, u"key"_s} << u"kestractl key KEY"_s;
    QTest::newRow("--help of a command") << QStringList{u"key"_s, u"--help"_s} << u"kestractl key KEY"_s;
    QTest::newRow("help of the light") << QStringList{u"help"_s, u"light"_s} << u"kestractl light color|colour COLOR"_s;
    QTest::newRow("help of a group") << QStringList{u"help"_s, u"keyboard"_s} << u"kestractl keyboard attach"_s;
    QTest::newRow("help of two words") << QStringList{u"help"_s, u"profile"_s, u"switch"_s}
                                       << u"kestractl profile switch N|NAME"_s;
    QTest::newRow("both ways to bind") << QStringList{u"help"_s, u"profile"_s, u"bind"_s}
                                       << u"kestractl profile bind N|NAME --off"_s;
    QTest::newRow("list of keys") << QStringList{u"key"_s, u"--list"_s} << u"0x3b  F2\n"_s;
    QTest::newRow("key with three names")
        << QStringList{u"key"_s, u"--list"_s} << u"0xe2  Left Option  Left Alt  LeftOption  (modifier)\n"_s;
    QTest::newRow("key without a modifier bit") << QStringList{u"key"_s, u"--list"_s} << u"\n0x36  Comma  ,\n"_s;
    QTest::newRow("extra key in the list") << QStringList{u"key"_s, u"--list"_s} << u"\n0x6a  M1\n"_s;
    QTest::newRow("--version") << QStringList{u"--version"_s} << u"kestractl "_s + QLatin1StringView(KESTRA_VERSION);
}

void TestKestractlFailures::helpNeedsNoDaemon()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, word);
    const KestractlResult result = runKestractl(arguments);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.text().contains(word), result.output.constData());
    QCOMPARE(result.errorText(), QString());
}

void TestKestractlFailures::helpOfACommandExplainsItsPlaceholders_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QStringList>("explained"); // the first words of the lines
    QTest::newRow("key") << QStringList{u"key"_s} << QStringList{u"N|NAME"_s, u"KEY"_s, u"MODIFIER"_s};
    QTest::newRow("profile switch") << QStringList{u"profile"_s, u"switch"_s} << QStringList{u"N|NAME"_s};
    QTest::newRow("light") << QStringList{u"light"_s} << QStringList{u"COLOR"_s};
    QTest::newRow("profile bind") << QStringList{u"profile"_s, u"bind"_s} << QStringList{u"N|NAME"_s, u"APPLICATION"_s};
    QTest::newRow("device") << QStringList{u"device"_s} << QStringList{u"ID"_s};
    QTest::newRow("status") << QStringList{u"status"_s} << QStringList();
}

void TestKestractlFailures::helpOfACommandExplainsItsPlaceholders()
{
    QFETCH(QStringList, command);
    QStringList explained;
    for (const QString &line : runKestractl(QStringList{u"help"_s} + command).text().split(u'\n')) {
        if (line.section(u' ', 1, 1) == "is"_L1)
            explained += line.section(u' ', 0, 0);
    }
    QTEST(explained, "explained");
}

void TestKestractlFailures::helpFitsATerminal()
{
    constexpr qsizetype longest = 112;
    const QStringList lines = runKestractl({u"--help"_s}).text().split(u'\n');
    for (const QString &line : lines)
        QVERIFY2(line.size() <= longest, qPrintable(line));
    QVERIFY(lines.contains(u"  if only one fits. name:2 is the one called \"2\"."_s));
}

void TestKestractlFailures::listOfKeysHasEveryKeyAndModifier()
{
    const QStringList lines = runKestractl({u"key"_s, u"--list"_s}).text().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 119);
    QCOMPARE(lines.filter(u"(modifier)"_s).size(), 8);
    const QJsonArray keys = runKestractl({u"key"_s, u"--list"_s, u"--json"_s}).json().array();
    QCOMPARE(keys.size(), 119);
    QSet<QString> modifiers;
    for (const QJsonValue &key : keys) {
        if (key.toObject().value("modifier"_L1).toBool())
            modifiers += key.toObject().value("key"_L1).toString();
    }
    QCOMPARE(modifiers, (QSet<QString>{u"Left Control"_s, u"Left Shift"_s, u"Left Option"_s, u"Left Command"_s,
                                       u"Right Control"_s, u"Right Shift"_s, u"Right Option"_s, u"Right Command"_s}));
    const QJsonObject escape{{u"key"_s, u"Escape"_s},
                             {u"code"_s, 41},
                             {u"names"_s, QJsonArray{u"Escape"_s, u"Esc"_s}},
                             {u"modifier"_s, false}};
    QCOMPARE(keys.first().toObject(), escape);
}

void TestKestractlFailures::reportsResultsThatCannotBeWritten()
{
    QProcess process;
    process.setStandardOutputFile(u"/dev/full"_s);
    startKestractl(process, {u"--help"_s}, QProcessEnvironment::systemEnvironment());
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errorText().contains(u"could not be written"_s), result.errors.constData());
}

void TestKestractlFailures::reportsResultsBeyondTheFileSizeLimit()
{
    const QTemporaryDir folder;
    QProcess process;
    process.setStandardOutputFile(folder.filePath(u"results"_s));
    process.setChildProcessModifier([] {
        const rlimit limit{1, 1};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    startKestractl(process, {u"--help"_s}, QProcessEnvironment::systemEnvironment());
    const KestractlResult result = finishedResult(process);
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errorText().contains(u"could not be written"_s), result.errors.constData());
}

void TestKestractlFailures::reportsWrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    QTest::newRow("nothing") << QStringList() << u"no command"_s;
    QTest::newRow("no such command") << QStringList{u"frobnicate"_s} << u"frobnicate"_s;
    QTest::newRow("half a command") << QStringList{u"profile"_s}
                                    << u"no command \"profile\" (see kestractl help profile)"_s;
    QTest::newRow("too few for the only form")
        << QStringList{u"macro"_s, u"record"_s} << u"usage: kestractl macro record N|NAME [--append] [--seconds S]"_s;
    QTest::newRow("no such second word") << QStringList{u"profile"_s, u"eat"_s} << u"profile eat"_s;
    QTest::newRow("help of no command") << QStringList{u"help"_s, u"frobnicate"_s} << u"frobnicate"_s;
    QTest::newRow("too few") << QStringList{u"profile"_s, u"switch"_s} << u"usage: kestractl profile switch"_s;
    QTest::newRow("too many") << QStringList{u"status"_s, u"now"_s} << u"usage: kestractl status"_s;
    QTest::newRow("no such key") << QStringList{u"key"_s, u"Nonsense"_s} << u"Nonsense"_s;
    QTest::newRow("key code outside the layout") << QStringList{u"key"_s, u"0x03"_s} << u"0x03"_s;
    QTest::newRow("hint to the list of keys")
        << QStringList{u"key"_s, u"Nonsense"_s} << u"(see kestractl key --list)"_s;
    QTest::newRow("no key") << QStringList{u"key"_s} << u"\"key\" needs KEY or --list"_s;
    QTest::newRow("list of keys of a key")
        << QStringList{u"key"_s, u"A"_s, u"--list"_s} << u"\"key --list\" takes nothing more than --json"_s;
    QTest::newRow("list of keys with an option of an assignment")
        << QStringList{u"key"_s, u"--list"_s, u"--repeat=2"_s} << u"\"key --list\" takes nothing more than --json"_s;
    QTest::newRow("list of another command") << QStringList{u"status"_s, u"--list"_s} << u"takes no option --list"_s;
    QTest::newRow("no such assignment") << QStringList{u"key"_s, u"A"_s, u"explode"_s} << u"explode"_s;
    QTest::newRow("nothing to send") << QStringList{u"key"_s, u"A"_s, u"single"_s} << u"\"key KEY single\" needs KEY"_s;
    QTest::newRow("too much") << QStringList{u"key"_s, u"A"_s, u"disable"_s, u"B"_s}
                              << u"\"key KEY disable\" takes nothing more"_s;
    QTest::newRow("another kind's option")
        << QStringList{u"key"_s, u"A"_s, u"macro"_s, u"1"_s, u"--modifiers"_s, u"LeftShift"_s}
        << u"\"key KEY macro\" takes no option --modifiers"_s;
    QTest::newRow("option without an assignment")
        << QStringList{u"key"_s, u"A"_s, u"--repeat=2"_s} << u"go with an assignment"_s;
    QTest::newRow("option without a value")
        << QStringList{u"key"_s, u"A"_s, u"macro"_s, u"1"_s, u"--repeat"_s} << u"the option --repeat needs a value"_s;
    QTest::newRow("option given twice") << QStringList{u"key"_s, u"A"_s,          u"macro"_s,
                                                       u"1"_s,   u"--repeat=2"_s, u"--repeat=3"_s}
                                        << u"the option --repeat is given twice"_s;
    QTest::newRow("value for an option that takes none")
        << QStringList{u"key"_s, u"A"_s, u"--json=1"_s} << u"--json=1"_s;
    QTest::newRow("option of another command") << QStringList{u"status"_s, u"--plist"_s} << u"--plist"_s;
    QTest::newRow("no such option") << QStringList{u"--loud"_s, u"status"_s} << u"--loud"_s;
    QTest::newRow("macro without a word") << QStringList{u"macro"_s} << u"no command \"macro\""_s;
    QTest::newRow("no such macro file")
        << QStringList{u"macro"_s, u"import"_s, u"/nonexistent/X.KestraMacro"_s}
        << u"\"/nonexistent/X.KestraMacro\" cannot be read as a macro file: No such file or directory"_s;
    QTest::newRow("no such profile file")
        << QStringList{u"profile"_s, u"import"_s, u"/nonexistent/X.KestraProfile"_s}
        << u"\"/nonexistent/X.KestraProfile\" cannot be read as a profile file: No such file or directory"_s;
    for (const QString &kind : {u"macro"_s, u"profile"_s}) {
        const QString problem = u"a %1 needs a name"_s.arg(kind);
        QTest::addRow("%s without a name", qPrintable(kind)) << QStringList{kind, u"add"_s, QString()} << problem;
        QTest::addRow("%s to rename to nothing", qPrintable(kind))
            << QStringList{kind, u"rename"_s, u"1"_s, QString()} << problem;
    }
    for (const QString &seconds : {u"soon"_s, u"0"_s, u"-1"_s, u"nan"_s, u"86401"_s})
        QTest::addRow("record for %s seconds", qPrintable(seconds))
            << QStringList{u"macro"_s, u"record"_s, u"1"_s, u"--seconds"_s, seconds} << u"\"%1\""_s.arg(seconds);
    QTest::newRow("options that exclude each other")
        << QStringList{u"document"_s, u"--json"_s, u"--plist"_s} << u"exclude"_s;
}

void TestKestractlFailures::reportsWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, word);
    const KestractlResult result = runKestractl(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.text(), QString());
    QVERIFY2(result.errorText().startsWith(u"kestractl: "_s), result.errors.constData());
    QVERIFY2(result.errorText().contains(word), result.errors.constData());
}

void TestKestractlFailures::reportsAMissingDaemon_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("status") << QStringList{u"status"_s};
    QTest::newRow("light") << QStringList{u"light"_s};
    QTest::newRow("light changed") << QStringList{u"light"_s, u"off"_s};
    QTest::newRow("document") << QStringList{u"document"_s};
    QTest::newRow("profile list") << QStringList{u"profile"_s, u"list"_s};
    QTest::newRow("profile switch") << QStringList{u"profile"_s, u"switch"_s, u"1"_s};
    QTest::newRow("key") << QStringList{u"key"_s, u"A"_s};
    QTest::newRow("key disable") << QStringList{u"key"_s, u"A"_s, u"disable"_s};
    QTest::newRow("macro list") << QStringList{u"macro"_s, u"list"_s};
    QTest::newRow("macro add") << QStringList{u"macro"_s, u"add"_s};
    QTest::newRow("macro record") << QStringList{u"macro"_s, u"record"_s, u"1"_s};
    QTest::newRow("macro play") << QStringList{u"macro"_s, u"play"_s, u"1"_s};
    QTest::newRow("keyboard attach") << QStringList{u"keyboard"_s, u"attach"_s};
    QTest::newRow("keyboard sent") << QStringList{u"keyboard"_s, u"sent"_s};
    QTest::newRow("keyboard press") << QStringList{u"keyboard"_s, u"press"_s, u"A"_s};
}

void TestKestractlFailures::reportsAMissingDaemon()
{
    QFETCH(QStringList, arguments);
    QElapsedTimer timer;
    timer.start();
    const KestractlResult result = runKestractl(arguments);
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.errorText().contains(u"not running"_s), result.errors.constData());
    // kestractl notices at once, without waiting for a reply.
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void TestKestractlFailures::reportsAMissingBus()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
    const KestractlResult result = runKestractl({u"status"_s, u"--json"_s}, environment);
    QCOMPARE(result.exitCode, 3);
    QVERIFY2(result.errorText().contains(u"bus"_s), result.errors.constData());
    QCOMPARE(result.json().object().value("daemon"_L1).toString(), u"not running"_s);
}

void TestKestractlFailures::reportsASilentDaemon()
{
    const StandInDaemon daemon(std::nullopt);
    QVERIFY(daemon.isServing());
    QElapsedTimer timer;
    timer.start();
    const KestractlResult result = runServed({u"status"_s});
    QCOMPARE(result.exitCode, 4);
    QVERIFY2(result.errorText().contains(u"did not answer"_s), result.errors.constData());
    QCOMPARE(result.text().trimmed(), u"daemon: not answering"_s);
    QVERIFY2(timer.elapsed() >= 6000, qPrintable(QString::number(timer.elapsed())));
}

void TestKestractlFailures::explainsARefusalInTheTermsOfTheUser_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown command") << 1 << u"the daemon is of another version and does not know how"_s;
    QTest::newRow("malformed request") << 2 << u"the daemon cannot store such a value"_s;
    QTest::newRow("index out of range") << 3 << u"it does not exist"_s;
    QTest::newRow("limit reached") << 4 << u"there would be too many profiles, macros or events"_s;
    QTest::newRow("last profile") << 5 << u"it is the only one"_s;
    QTest::newRow("not saved") << 6 << u"the settings file cannot be written (is the disk full?)"_s;
    QTest::newRow("device absent") << 7 << u"the keyboard is not attached"_s;
    QTest::newRow("nothing recorded") << 8 << u"nothing was recorded"_s;
    QTest::newRow("busy") << 9 << u"the daemon has too many requests to carry out; try again"_s;
    QTest::newRow("unknown status") << 42
                                    << u"the daemon gives a reason that this version of kestractl does not know"_s;
}

void TestKestractlFailures::explainsARefusalInTheTermsOfTheUser()
{
    QFETCH(int, status);
    QFETCH(QString, reason);
    const StandInDaemon daemon(encoded({{DaemonProtocol::returnStatus, status}}));
    QVERIFY(daemon.isServing());
    const KestractlResult result = runServed({u"profile"_s, u"list"_s});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.text(), QString());
    QCOMPARE(result.errorText(), u"kestractl: the settings cannot be read: %1\n"_s.arg(reason));
}

void TestKestractlFailures::explainsADaemonOfAnotherVersion_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("method") << QStringList{u"keyboard"_s, u"macro-key"_s};
    QTest::newRow("property") << QStringList{u"keyboard"_s, u"sent"_s};
}

void TestKestractlFailures::explainsADaemonOfAnotherVersion()
{
    QFETCH(QStringList, arguments);
    const StandInDaemon daemon(std::nullopt);
    QVERIFY(daemon.isServing());
    QObject older; // a virtual keyboard without the methods and properties of today
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerObject(DaemonProtocol::virtualKeyboardPath, &older, QDBusConnection::ExportAllContents));
    const KestractlResult result = runServed(arguments);
    bus.unregisterObject(DaemonProtocol::virtualKeyboardPath);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.errorText(),
             u"kestractl: the virtual keyboard cannot do this: the daemon is of another version\n"_s);
}

void TestKestractlFailures::refusesNonsense_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("no property list") << QByteArray("nonsense \x01\x02");
    QTest::newRow("empty dictionary") << encoded({});
    QTest::newRow("document of the wrong type") << encoded({{DaemonProtocol::allDevSettings, u"text"_s}});
}

void TestKestractlFailures::refusesNonsense()
{
    QFETCH(QByteArray, reply);
    const StandInDaemon daemon(reply);
    QVERIFY(daemon.isServing());
    const KestractlResult result = runServed({u"key"_s, u"A"_s, u"disable"_s});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.text(), QString());
    QCOMPARE(daemon.requests().size(), 1);
}

void TestKestractlFailures::requestsNameTheirSender()
{
    const StandInDaemon daemon(encoded({{DaemonProtocol::returnStatus, 42}}));
    QVERIFY(daemon.isServing());
    runServed({u"document"_s});
    QCOMPARE(daemon.requests().size(), 1);
    const QVariantMap request = daemon.requests().first().toMap();
    QCOMPARE(request.value(DaemonProtocol::sourceApp).toString(), u"org.quillkestra.kestractl"_s);
    QCOMPARE(request.value(DaemonProtocol::productIdKey).toInt(), 271);
    QVERIFY(request.value(DaemonProtocol::responsePortName).toString().startsWith(u"KestractlReplyPort-"_s));
}

QTEST_GUILESS_MAIN(TestKestractlFailures)
#include "kestractlfailurestest.moc"
