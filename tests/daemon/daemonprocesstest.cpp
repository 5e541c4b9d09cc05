// SPDX-License-Identifier: MIT
// The daemon as a process on a session bus, with requests, notifications, crashes and restarts.
#include "daemon/daemonprocess.h"
#include "base/devicekeys.h"
#include "base/document.h"
#include "base/qlcoreutility.h"
#include "base/status.h"
#include "daemon/keyboards/linux/stallwatch.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"
#include "platform/distributednotificationcenter.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/notificationservice.h"
#include "tests/support/reason.h"
#include "tests/support/sentrecorder.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDBusAbstractInterface>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <array>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

QVariantMap named(const QString &name)
{
    return {{u"ProfileName"_s, name}};
}

QString firstName(const QVariantMap &document)
{
    return Document(document).profiles().value(0).toMap().value(u"ProfileName"_s).toString();
}

/// "Name(in types)->(out types)" of each method, "Name(types)" of each signal, "Name type" of each property.
QStringList introspectedMembers(const QString &path, const QString &interface)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), path,
                                                             u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    QXmlStreamReader xml(QDBusConnection::sessionBus().call(call).arguments().value(0).toString());
    QStringList members;
    bool isInside = false;
    QString member, kind, in, out;
    while (!xml.atEnd()) {
        xml.readNext();
        const auto attribute = [&](QLatin1StringView name) { return xml.attributes().value(name).toString(); };
        if (xml.isStartElement() && xml.name() == "interface"_L1)
            isInside = attribute("name"_L1) == interface;
        if (!isInside)
            continue;
        if (xml.isStartElement() && xml.name() == "property"_L1)
            members += u"property %1 %2"_s.arg(attribute("name"_L1), attribute("type"_L1));
        if (xml.isStartElement() && (xml.name() == "method"_L1 || xml.name() == "signal"_L1)) {
            member = attribute("name"_L1);
            kind = xml.name().toString();
            in.clear();
            out.clear();
        }
        if (xml.isStartElement() && xml.name() == "arg"_L1)
            (kind == "method"_L1 && attribute("direction"_L1) == "out"_L1 ? out : in) += attribute("type"_L1);
        if (xml.isEndElement() && (xml.name() == "method"_L1 || xml.name() == "signal"_L1))
            members += kind + u' ' + member + u'(' + in + u')' + (out.isEmpty() ? QString() : u"->("_s + out + u')');
    }
    members.sort();
    return members;
}

/// The same, read from the tables of docs/daemon-protocol.md: rows "| method | `Name` | `in` | `out` | …" below the
/// heading that names the interface.
QStringList documentedMembers(const QString &interface)
{
    QFile file(QStringLiteral(KESTRA_DOCS_DIR "/daemon-protocol.md"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression row(
        u"^\\| (method|signal|property) \\| `(\\w+)` \\| `?([a-z(){}]*)`? *\\| `?([a-z(){}]*)`? *\\|"_s);
    QStringList members;
    bool isInside = false;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (line.startsWith(u'#'))
            isInside = line.contains(interface);
        const QRegularExpressionMatch match = row.match(line);
        if (!isInside || !match.hasMatch())
            continue;
        const QString kind = match.captured(1), name = match.captured(2), in = match.captured(3),
                      out = match.captured(4);
        if (kind == "property"_L1)
            members += u"property %1 %2"_s.arg(name, out);
        else
            members += kind + u' ' + name + u'(' + in + u')' + (out.isEmpty() ? QString() : u"->("_s + out + u')');
    }
    members.sort();
    return members;
}

QVariant objectProperty(const QString &path, const QString &interface, const QString &name)
{
    QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), path,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << interface << name;
    return QDBusConnection::sessionBus().call(call).arguments().value(0).value<QDBusVariant>().variant();
}

/// Counts a signal of the daemon.
class BusSignal : public QObject
{
    Q_OBJECT

public:
    BusSignal(const QString &path, const QString &interface, const QString &name)
    {
        QDBusConnection::sessionBus().connect({}, path, interface, name, this, SLOT(noteSignal()));
    }
    [[nodiscard]] int count() const { return mCount; }

private Q_SLOTS:
    void noteSignal() { ++mCount; }

private:
    int mCount = 0;
};

/// How often the threads of a process went to sleep.
qint64 wakeUps(qint64 process)
{
    qint64 count = 0;
    const QDir threads(u"/proc/%1/task"_s.arg(process));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/status"_s));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                count += line.mid(line.indexOf(':') + 1).trimmed().toLongLong();
        }
    }
    return count;
}

} // namespace

class DaemonProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsWithTheFactorySettings();
    void answersASendAtOnceWithoutData();
    void repliesUnderTheCommandNumber();
    void settingsSurviveARestart();
    void damagedSettingsAreSetAside();
    void oneWrongValueAffectsNothingElse();
    void desktopShowsAProblemOfTheSettings();
    void oddCopiesDoNotKeepItFromStarting();
    void settingsPutBackByHandAreKept();
    void signalsAProblemOfTheSettings();
    void showsWhyTheProfileIsActive();
    void filesAreForTheUserOnly();
    void removedFolderIsCreatedAgain();
    void removedFolderIsCreatedAgainForTheChoiceOfKeyboards();
    void unreadableSettingsAreNamed();
    void fullDiskIsReportedAndChangesNothing();
    void postsNotificationsForOtherClients();
    void virtualKeyboardReportsTheSentKeys();
    void virtualKeyboardRefusesImpossibleCalls();
    void keysAreReleasedAtTheEnd();
    void playsAMacroOnTheVirtualKeyboard();
    void staysAnsweringWhileAMacroWithoutPausesRepeats();
    void keysOfAMacroAreReleasedAtTheEnd();
    void captureEndsWhenTheClientLeavesTheBus();
    void captureForAMissingClientEndsAtOnce();
    void survivesAnInvalidReplyPort_data();
    void survivesAnInvalidReplyPort();
    void secondDaemonReportsTheFirst();
    void printsVersionAndHelpWithoutABus();
    void endsWithoutABus();
    void endsWhenTheBusEnds();
    void sleepsWhenIdle();
    void endsBySignal_data();
    void endsBySignal();
    void outlivesTheReaderOfItsLog();
    void logContainsNoControlCharacters();
    void keepsAnsweredChangesWhenKilled();
    void carriesOutRequestsOfASuspensionWithoutReplies();
    void interfacesMatchTheirDocument_data();
    void interfacesMatchTheirDocument();

private:
    /// Adds the macro as the first one, and assigns it to M1.
    void assignMacro(const QVariantList &events, int repeat);

    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void DaemonProcessTest::init()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

void DaemonProcessTest::cleanup()
{
    mDaemon.reset();
}

void DaemonProcessTest::startsWithTheFactorySettings()
{
    const auto opened =
        mDaemon->request(Command::openDevice, {{u"ProductName"_s, u"Kestra"_s}, {u"IsDeviceWired"_s, 1}});
    QVERIFY(opened);
    QCOMPARE(opened->values, (QVariantMap{{u"ReturnStatus"_s, 1}}));
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    const QVariantMap document = settings->values.value(u"AllDevSettings"_s).toMap();
    QCOMPARE(reasonOf(SettingsDocument::validate(document)), QString());
    QCOMPARE(firstName(document), u"Default Profile"_s);
    QVERIFY(Document(document).activeProfile().value(u"Keys"_s).toMap().size()
            >= 119); // the keys of Kestra.plist, not of a fallback
    QCOMPARE(document.value(u"DeviceSettings"_s).toMap().value(u"ProfileOSDOn"_s), QVariant(1));
}

void DaemonProcessTest::answersASendAtOnceWithoutData()
{
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    const auto answer = port->sendRequest(4, "no property list", std::chrono::seconds(2), std::chrono::seconds(2));
    QVERIFY(answer);
    QCOMPARE(*answer, QByteArray());
}

void DaemonProcessTest::repliesUnderTheCommandNumber()
{
    for (const Command command : {Command::readSettings, Command::switchProfile, Command::stopMacroRecording}) {
        const auto reply = mDaemon->request(command, {{u"ProfileID"_s, 0}});
        QVERIFY(reply);
        QCOMPARE(reply->command, static_cast<qint32>(command));
        QCOMPARE(reply->values.value(u"ReturnStatus"_s), QVariant(0));
    }
}

void DaemonProcessTest::settingsSurviveARestart()
{
    const auto changed = mDaemon->request(Command::updateProfile,
                                          {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"Näme"_s)}});
    QVERIFY(changed);
    QCOMPARE(mDaemon->terminate(), 0);
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(settings->values.value(u"AllDevSettings"_s), changed->values.value(u"ReturnDictionary"_s));
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"Näme"_s);
}

void DaemonProcessTest::damagedSettingsAreSetAside()
{
    for (const QString &name : {u"one"_s, u"two"_s})
        QVERIFY(mDaemon->request(Command::updateProfile,
                                 {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(name)}}));
    mDaemon->terminate();
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    QVERIFY(QFile::resize(path, QFileInfo(path).size() / 2));
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"one"_s);
    QCOMPARE(QDir(mDaemon->settingsFolder()).entryList({u"settings.plist.damaged-*"_s}).size(), 1);
    QVERIFY(mDaemon->log().contains("is damaged"));
}

void DaemonProcessTest::oneWrongValueAffectsNothingElse()
{
    const auto added = mDaemon->request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, named(u"Mine"_s)}});
    QVERIFY(added);
    mDaemon->terminate();
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    const QVariantMap document = added->values.value(u"ReturnDictionary"_s).toMap();
    const QByteArray original =
        QlCoreUtility::convertDictionaryToData(SettingsDocument::withActiveProfile(document, 7)).value();
    writeFile(path, original);
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(settings->values.value(u"AllDevSettings"_s),
             QVariant(SettingsDocument::completed(SettingsDocument::withActiveProfile(document, 0))));
    const QStringList kept = QDir(mDaemon->settingsFolder()).entryList({u"settings.plist.damaged-*"_s});
    QCOMPARE(kept.size(), 1);
    QFile file(mDaemon->settingsFolder() + u'/' + kept.first());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), original);
}

void DaemonProcessTest::desktopShowsAProblemOfTheSettings()
{
    QVERIFY(mDaemon->request(Command::updateProfile,
                             {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"one"_s)}}));
    mDaemon->terminate();
    writeFile(mDaemon->settingsFolder() + u"/settings.plist"_s, "damage");
    QVERIFY(mDaemon->start()); // before the desktop, as with a user service
    QVERIFY(mDaemon->request(Command::readSettings));
    const NotificationService desktop;
    QTRY_COMPARE(desktop.bubbles.size(), 1);
    QCOMPARE(desktop.bubbles.first().summary, u"Problem with the keyboard settings"_s);
    QVERIFY(desktop.bubbles.first().body.contains(u"kestractl status"_s));
    QCOMPARE(desktop.bubbles.first().hints.value(u"transient"_s), QVariant(false));
}

void DaemonProcessTest::oddCopiesDoNotKeepItFromStarting()
{
    QVERIFY(mDaemon->request(Command::updateProfile,
                             {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"kept"_s)}}));
    mDaemon->terminate();
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    QVERIFY(QDir().mkdir(path + u".1"_s));
    QCOMPARE(::mkfifo(QFile::encodeName(path + u".2"_s).constData(), 0600), 0);
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"kept"_s);
    QVERIFY(mDaemon->log().contains("settings.plist.1 cannot be read"));
    QVERIFY(mDaemon->log().contains("settings.plist.2 cannot be read"));
}

void DaemonProcessTest::settingsPutBackByHandAreKept()
{
    const auto rename = [this](const QString &name) {
        return mDaemon->request(Command::updateProfile,
                                {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(name)}});
    };
    const auto first = rename(u"first"_s);
    QVERIFY(first);
    const QByteArray backup =
        QlCoreUtility::convertDictionaryToData(first->values.value(u"ReturnDictionary"_s).toMap()).value();
    QVERIFY(rename(u"second"_s));
    const QDir folder(mDaemon->settingsFolder());
    writeFile(folder.filePath(u"settings.plist"_s), backup);
    const auto third = rename(u"third"_s);
    QVERIFY(third);
    QCOMPARE(third->values.value(u"ReturnStatus"_s), QVariant(0));
    const QStringList kept = folder.entryList({u"settings.plist.replaced-*"_s});
    QCOMPARE(kept.size(), 1);
    QFile file(folder.filePath(kept.first()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), backup);
    QVERIFY2(mDaemon->log().contains("another program changed"), mDaemon->log().constData());
    const NotificationService desktop; // was missing until now
    QTRY_COMPARE(desktop.bubbles.size(), 1);
}

void DaemonProcessTest::signalsAProblemOfTheSettings()
{
    const auto rename = [this](const QString &name) {
        return mDaemon->request(Command::updateProfile,
                                {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(name)}});
    };
    QVERIFY(rename(u"first"_s));
    BusSignal changed(u"/Settings"_s, u"org.quillkestra.Settings"_s, u"Changed"_s);
    writeFile(mDaemon->settingsFolder() + u"/settings.plist"_s, "another program's");
    QVERIFY(rename(u"second"_s));
    QTRY_COMPARE(changed.count(), 1);
    const QVariant problems = objectProperty(u"/Settings"_s, u"org.quillkestra.Settings"_s, u"Problems"_s);
    QCOMPARE(problems.toStringList().size(), 1);
}

void DaemonProcessTest::showsWhyTheProfileIsActive()
{
    const QString path = u"/FrontApplication"_s;
    const QString interface = u"org.quillkestra.FrontApplication"_s;
    const QVariantMap appInfo{{u"identifier"_s, u"game"_s}};
    QVERIFY(mDaemon->request(
        Command::addProfile,
        {{u"DeviceSettingsDictionary"_s,
          QVariantMap{{u"ProfileName"_s, u"Game"_s}, {u"AppInfo"_s, appInfo}, {u"AutoSwitchOn"_s, 1}}}}));
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 0}}));
    QCOMPARE(objectProperty(path, interface, u"ProfileApplication"_s), QVariant(QString()));
    BusSignal changed(path, interface, u"ProfileApplicationChanged"_s);
    QDBusMessage tell =
        QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), path, interface, u"Tell"_s);
    tell << u"game"_s;
    QDBusConnection::sessionBus().call(tell);
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(objectProperty(path, interface, u"ProfileApplication"_s), QVariant(u"game"_s));
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 1}})); // the active one
    QTRY_COMPARE(changed.count(), 2);
    QCOMPARE(objectProperty(path, interface, u"ProfileApplication"_s), QVariant(QString()));
}

void DaemonProcessTest::filesAreForTheUserOnly()
{
    mDaemon->terminate();
    const QDir folder(mDaemon->settingsFolder());
    const auto othersCan = [](const QString &path) {
        constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                                              | QFile::WriteOther | QFile::ExeOther;
        return bool(QFile::permissions(path) & others);
    };
    const QFile::Permissions open =
        QFile::permissions(folder.path()) | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(folder.path(), open));
    QVERIFY(mDaemon->start([] { ::umask(022); }));
    for (const QString &name : {u"one"_s, u"two"_s})
        QVERIFY(mDaemon->request(Command::updateProfile,
                                 {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(name)}}));
    QVERIFY(!othersCan(folder.path()));
    const QStringList files = folder.entryList(QDir::Files);
    QVERIFY(files.contains(u"settings.plist.1"_s));
    for (const QString &name : files)
        QVERIFY2(!othersCan(folder.filePath(name)), qPrintable(name));
}

void DaemonProcessTest::removedFolderIsCreatedAgain()
{
    QVERIFY(mDaemon->request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, named(u"Mine"_s)}}));
    QVERIFY(QDir(mDaemon->settingsFolder()).removeRecursively());
    const auto changed = mDaemon->request(Command::updateProfile,
                                          {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"one"_s)}});
    QVERIFY(changed);
    QCOMPARE(changed->values.value(u"ReturnStatus"_s), QVariant(0));
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(settings->values.value(u"AllDevSettings"_s), changed->values.value(u"ReturnDictionary"_s));
}

void DaemonProcessTest::removedFolderIsCreatedAgainForTheChoiceOfKeyboards()
{
    const auto changed = mDaemon->request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, named(u"Mine"_s)}});
    QVERIFY(changed);
    QVERIFY(QDir(mDaemon->settingsFolder()).removeRecursively());
    const QDBusMessage release =
        QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName), DeviceKeys::objectPath,
                                       DeviceKeys::interfaceName, u"Release"_s);
    QCOMPARE(QDBusConnection::sessionBus().call(release).type(), QDBusMessage::ReplyMessage);
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(settings->values.value(u"AllDevSettings"_s), changed->values.value(u"ReturnDictionary"_s));
}

void DaemonProcessTest::unreadableSettingsAreNamed()
{
    QVERIFY(mDaemon->request(Command::updateProfile,
                             {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"kept"_s)}}));
    QCOMPARE(mDaemon->terminate(), 0);
    const QString path = mDaemon->settingsFolder() + u"/settings.plist"_s;
    QVERIFY(QFile::rename(path, path + u".aside"_s));
    QVERIFY(QFile::link(u"/proc/self/mem"_s, path)); // reading it fails with an input/output error
    QProcess *refusing = mDaemon->runAnother({});
    QCOMPARE(refusing->exitStatus(), QProcess::NormalExit);
    QCOMPARE(refusing->exitCode(), 4);
    const QByteArray log = refusing->readAllStandardError();
    QVERIFY2(log.contains("cannot read " + QFile::encodeName(path) + ": Input/output error"), log.constData());
    QVERIFY(QFileInfo(path).isSymLink());
    QVERIFY(QFile::remove(path) && QFile::rename(path + u".aside"_s, path));
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"kept"_s);
}

void DaemonProcessTest::fullDiskIsReportedAndChangesNothing()
{
    QVERIFY(mDaemon->request(Command::updateProfile,
                             {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"kept"_s)}}));
    mDaemon->terminate();
    QVERIFY(mDaemon->start([] {
        // No file can grow beyond this limit, as on a disk that fills up in the middle of a write.
        const rlimit limit{100, 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }));
    const auto reply = mDaemon->request(Command::updateProfile,
                                        {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"lost"_s)}});
    QVERIFY(reply);
    QCOMPARE(reply->values.value(u"ReturnStatus"_s), QVariant(static_cast<int>(Status::notSaved)));
    QCOMPARE(firstName(reply->values.value(u"ReturnDictionary"_s).toMap()), u"kept"_s);
    mDaemon->kill();
    QVERIFY(mDaemon->start());
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"kept"_s);
}

void DaemonProcessTest::postsNotificationsForOtherClients()
{
    // Its first announcement, that a keyboard is attached, precedes this reply.
    QVERIFY(mDaemon->request(Command::readSettings));
    QObject observer;
    QList<DistributedNotification> seen;
    for (const auto name :
         {DaemonProtocol::profileUpdated, DaemonProtocol::deviceRemoved, DaemonProtocol::deviceAttached,
          DaemonProtocol::gameModePressed, DaemonProtocol::illuminationUpdated})
        DistributedNotificationCenter::defaultCenter().addObserver(
            &observer, name, [&](const DistributedNotification &notification) { seen += notification; });
    const auto names = [&] {
        QStringList result;
        for (const DistributedNotification &notification : std::as_const(seen))
            result += notification.name;
        return result;
    };
    QVERIFY(mDaemon->request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, named(u"New"_s)}}));
    QTRY_COMPARE(seen.size(), 1);
    QCOMPARE(seen.first().userInfo, (QVariantMap{{u"Source App"_s, DaemonProcessFixture::portName()}}));
    seen.clear();
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    QCOMPARE(mDaemon->callKeyboard(u"SetBrightness"_s, {2}), QString());
    QTRY_COMPARE(seen.size(), 6);
    QCOMPARE(names(), QStringList({u"Device Removed 271"_s, u"Device Attached 271"_s, u"Game Mode Pressed 271"_s,
                                   u"Profile Updated 271"_s, u"Illumination Updated 271"_s, u"Profile Updated 271"_s}));
    QCOMPARE(seen.at(4).userInfo, (QVariantMap{{u"BrightnessKBNormal"_s, 2}}));
    QCOMPARE(seen.at(5).userInfo, (QVariantMap{{u"Source App"_s, u"QuillKestraDaemon"_s}}));
    QCOMPARE(mDaemon->keyboardProperty(u"GameMode"_s), QVariant(true));
    QCOMPARE(mDaemon->keyboardProperty(u"Brightness"_s), QVariant(2));
}

void DaemonProcessTest::virtualKeyboardReportsTheSentKeys()
{
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 4u}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {9u, 1u}), QString());
    QCOMPARE(qdbus_cast<QList<uint>>(mDaemon->keyboardProperty(u"PressedKeys"_s)), QList<uint>({0x70004, 0x90001}));
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, 4u}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"ReleaseAll"_s), QString());
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:4"_s, u"+9:1"_s, u"-7:4"_s, u"-9:1"_s}));
    QCOMPARE(mDaemon->keyboardProperty(u"FirmwareVersion"_s), QVariant(u"1.00"_s));
}

void DaemonProcessTest::virtualKeyboardRefusesImpossibleCalls()
{
    const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
    const QString notAttached = u"org.quillkestra.VirtualKeyboard.Error.NotAttached"_s;
    for (const QVariantList &key :
         {QVariantList{7u, 3u}, {7u, 232u}, {7u, 65540u}, {9u, 0u}, {9u, 256u}, {8u, 4u}, {65543u, 4u}}) {
        QCOMPARE(mDaemon->callKeyboard(u"Press"_s, key), invalid);
        QCOMPARE(mDaemon->callKeyboard(u"Release"_s, key), invalid);
    }
    QCOMPARE(mDaemon->callKeyboard(u"SetBrightness"_s, {99}), invalid);
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QCOMPARE(mDaemon->keyboardProperty(u"Attached"_s), QVariant(false));
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 4u}), notAttached);
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, 4u}), notAttached);
    for (const QString &method : {u"PressGameMode"_s, u"PressBrightnessUp"_s, u"PressBrightnessDown"_s})
        QCOMPARE(mDaemon->callKeyboard(method), notAttached);
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QCOMPARE(mDaemon->callKeyboard(u"PressBrightnessDown"_s), QString());
}

void DaemonProcessTest::keysAreReleasedAtTheEnd()
{
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 4u}), QString());
    QCOMPARE(mDaemon->terminate(), 0);
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:4"_s, u"-7:4"_s}));
}

void DaemonProcessTest::assignMacro(const QVariantList &events, int repeat)
{
    const QVariantMap macro = MacroRecord::withEvents({{u"MacroName"_s, u"M"_s}}, events);
    const auto added = mDaemon->request(Command::addMacro, {{u"MacroContents"_s, macro}});
    QVERIFY(added && added->values.value(u"ReturnStatus"_s) == QVariant(0));
    const QVariantMap entry{{u"command"_s, 10}, {u"param1"_s, 0}, {u"param2"_s, repeat}};
    const QVariantMap keys{{u"Keys"_s, QVariantMap{{u"106"_s, entry}}}};
    QVERIFY(mDaemon->request(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, keys}}));
}

void DaemonProcessTest::playsAMacroOnTheVirtualKeyboard()
{
    QVariantList events;
    QStringList expected;
    int lengthMs = 0;
    for (int count = 0; count < 40; ++count) {
        const bool isDown = count % 2 == 0;
        const int page = count % 4 < 2 ? MacroRecord::keyboardPage : MacroRecord::buttonPage;
        events += MacroRecord::eventRecord({.command = isDown ? MacroRecord::keyDown : MacroRecord::keyUp,
                                            .delayMs = count % 3 * 5,
                                            .page = page,
                                            .argument = 5});
        expected += u"%1%2:5"_s.arg(isDown ? u"+"_s : u"-"_s).arg(page);
        lengthMs += count % 3 * 5;
    }
    assignMacro(events, 2);
    SentRecorder recorder;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 106u}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, 106u}), QString());
    QTRY_COMPARE(recorder.sent(), expected + expected);
    // Never early. bench_playback measures how late it is.
    QVERIFY2(timer.elapsed() >= 2 * lengthMs, qPrintable(QString::number(timer.elapsed())));
}

void DaemonProcessTest::staysAnsweringWhileAMacroWithoutPausesRepeats()
{
    const QVariantList pair{MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 5}),
                            MacroRecord::eventRecord({.command = MacroRecord::keyUp, .argument = 5})};
    QVariantList events;
    for (int count = 0; count < 50; ++count)
        events += pair;
    assignMacro(events, 255);
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 106u}), QString());
    QTRY_VERIFY(recorder.sent().size() > 300);
    QVERIFY(mDaemon->request(Command::readSettings));
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, 106u}), QString());
    QTRY_COMPARE(recorder.sent().constLast(), u"-7:5"_s);
    const auto reply = mDaemon->request(Command::readSettings); // after everything that was sent before
    QVERIFY(reply);
    const qsizetype count = recorder.sent().size();
    QCOMPARE(count % 2, 0);
    QVERIFY(mDaemon->request(Command::readSettings));
    QCOMPARE(recorder.sent().size(), count);
}

void DaemonProcessTest::keysOfAMacroAreReleasedAtTheEnd()
{
    assignMacro({MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 225}),
                 MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = 3'600'000, .argument = 225})},
                1);
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 106u}), QString());
    QTRY_COMPARE(recorder.sent(), QStringList{u"+7:225"_s});
    QCOMPARE(mDaemon->terminate(), 0);
    QTRY_COMPARE(recorder.sent(), QStringList({u"+7:225"_s, u"-7:225"_s}));
}

void DaemonProcessTest::captureEndsWhenTheClientLeavesTheBus()
{
    SentRecorder recorder;
    const QString name = u"captureTest"_s;
    {
        QDBusConnection own = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
        QVERIFY(own.registerService(u"org.quillkestra.LeavingClient"_s));
    }
    // A request in the name of the other client, whose port does not answer.
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    port->post(29, "{ ResponseMsgPortName = LeavingClient; }");
    QTRY_VERIFY(mDaemon->log().contains("not capturing, a client asks for keys"));
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 4u}), QString());
    QCOMPARE(mDaemon->callKeyboard(u"Release"_s, {7u, 4u}), QString());
    QDBusConnection::disconnectFromBus(name);
    QTRY_VERIFY(mDaemon->log().contains("the client is gone"));
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 5u}), QString());
    QTRY_COMPARE(recorder.sent(), QStringList{u"+7:5"_s});
}

void DaemonProcessTest::captureForAMissingClientEndsAtOnce()
{
    const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(port);
    port->post(29, "{ ResponseMsgPortName = NeverThere; }");
    QTRY_VERIFY(mDaemon->log().contains("the client is gone"));
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 5u}), QString());
    QCOMPARE(mDaemon->keyboardProperty(u"SentKeys"_s).value<QDBusArgument>().currentSignature(), u"au"_s);
    SentRecorder recorder;
    QCOMPARE(mDaemon->callKeyboard(u"ReleaseAll"_s), QString());
    QTRY_COMPARE(recorder.sent(), QStringList{u"-7:5"_s});
}

void DaemonProcessTest::survivesAnInvalidReplyPort_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("a letter of Latin 1") << u"\u00e9"_s;
    QTest::newRow("a letter of none") << u"\u30ad\u30fc"_s;
    QTest::newRow("a pattern") << u"*"_s;
    QTest::newRow("a quote") << u"Port'"_s;
}

// In a rule for the bus, such a name would end the process.
void DaemonProcessTest::survivesAnInvalidReplyPort()
{
    QFETCH(QString, port);
    const auto daemon = RemoteMessagePort::open(DaemonProtocol::requestPortName);
    QVERIFY(daemon);
    for (const Command command :
         {Command::readSettings, Command::startMacroRecording, Command::startSingleKeyRecording, Command::startEditHid})
        daemon->post(static_cast<qint32>(command),
                     QlCoreUtility::convertDictionaryToData(
                         QVariantMap{{u"ResponseMsgPortName"_s, port}, {u"macroID"_s, 0}, {u"isAppendRecording"_s, 0}})
                         .value());
    QVERIFY(mDaemon->request(Command::readSettings));
    QVERIFY(mDaemon->log().contains("names a reply port that cannot exist"));
    QVERIFY(!mDaemon->log().contains("not capturing, a client asks for keys"));
}

void DaemonProcessTest::secondDaemonReportsTheFirst()
{
    QProcess *second = mDaemon->runAnother({});
    QCOMPARE(second->exitCode(), 3);
    QVERIFY(second->readAllStandardError().contains("another daemon is already running"));
    QVERIFY(mDaemon->request(Command::readSettings)); // the first one continues
}

void DaemonProcessTest::printsVersionAndHelpWithoutABus()
{
    mDaemon->environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
    QProcess *version = mDaemon->runAnother({u"--version"_s});
    QCOMPARE(version->exitCode(), 0);
    QCOMPARE(version->readAllStandardOutput().trimmed(), QByteArray("QuillKestraDaemon " KESTRA_VERSION));
    QProcess *help = mDaemon->runAnother({u"--help"_s});
    QCOMPARE(help->exitCode(), 0);
    const QString text = QString::fromUtf8(help->readAllStandardOutput()).simplified();
    const QString codes = text.section(u"Exit codes"_s, 1);
    for (const int code : {int(DaemonExit::ended), 1, int(DaemonExit::noBus), int(DaemonExit::alreadyRunning),
                           int(DaemonExit::folderUnusable), StallWatch::exitCode})
        QVERIFY2(codes.contains(QRegularExpression(u"[:,] %1 [a-z]"_s.arg(code))), qPrintable(text));
    QCOMPARE(mDaemon->runAnother({u"--unknown"_s})->exitCode(), 1);
    QCOMPARE(mDaemon->runAnother({u"argument"_s})->exitCode(), 1);
}

void DaemonProcessTest::endsWithoutABus()
{
    mDaemon->environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
    QProcess *lost = mDaemon->runAnother({});
    QCOMPARE(lost->exitCode(), 2);
    QVERIFY(lost->readAllStandardError().contains("no session bus"));
}

void DaemonProcessTest::endsWhenTheBusEnds()
{
    QCOMPARE(mDaemon->terminate(), 0); // one daemon at a time may use the settings
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
    QVERIFY(bus.waitForStarted());
    QTRY_VERIFY(bus.canReadLine());
    mDaemon->environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, QString::fromUtf8(bus.readLine().trimmed()));
    QProcess daemon;
    daemon.setProcessEnvironment(mDaemon->environment());
    daemon.start(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/QuillKestraDaemon"_s, {});
    QByteArray log;
    QTRY_VERIFY((log += daemon.readAllStandardError()).contains("ready"));
    bus.kill();
    QVERIFY(bus.waitForFinished());
    QTRY_COMPARE_WITH_TIMEOUT(daemon.state(), QProcess::NotRunning, 20'000);
    QCOMPARE(daemon.exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon.exitCode(), 2);
}

void DaemonProcessTest::sleepsWhenIdle()
{
    QVERIFY(mDaemon->request(Command::readSettings));
    // After its start the daemon looks for a desktop a few times, with growing pauses. After a request it checks for 20
    // s whether the process was suspended. A permanent timer would prevent a pause as long as this one.
    constexpr qint64 longPauseMs = 2500;
    const QDeadlineTimer patience(std::chrono::seconds(60));
    QElapsedTimer pause;
    pause.start();
    for (qint64 before = wakeUps(mDaemon->processId()); !pause.hasExpired(longPauseMs); QTest::qWait(50)) {
        if (const qint64 now = wakeUps(mDaemon->processId()); std::exchange(before, now) != now)
            pause.start();
        QVERIFY2(!patience.hasExpired(), "it wakes up again and again");
    }
    QVERIFY(wakeUps(mDaemon->processId()) > 0);
}

void DaemonProcessTest::endsBySignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void DaemonProcessTest::endsBySignal()
{
    QFETCH(int, signal);
    QCOMPARE(mDaemon->sendSignal(signal), 0);
}

void DaemonProcessTest::outlivesTheReaderOfItsLog()
{
    QCOMPARE(mDaemon->terminate(), 0); // one daemon at a time may use the settings
    QVERIFY(mDaemon->start([] {        // the child's standard error becomes a pipe without a reader
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) == 0) {
            ::dup2(ends[1], STDERR_FILENO);
            ::close(ends[0]);
            ::close(ends[1]);
        }
    }));
    mDaemon->send(static_cast<Command>(99)); // the log contains it
    QVERIFY(mDaemon->request(Command::readSettings));
    QCOMPARE(mDaemon->terminate(), 0);
}

// People read the log on a terminal, and programs read it line by line.
void DaemonProcessTest::logContainsNoControlCharacters()
{
    const QString path = u"/none/\u001b]0;title\u0007\u202e\u009b\u007f\u2028\nforged line.plist"_s;
    const QVariantMap entry{{u"command"_s, 46}, {u"param1"_s, path}, {u"param2"_s, QString()}};
    const QVariantMap keys{{u"Keys"_s, QVariantMap{{u"4"_s, entry}}}};
    QVERIFY(mDaemon->request(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, keys}}));
    QCOMPARE(mDaemon->callKeyboard(u"Press"_s, {7u, 4u}), QString());
    QTRY_VERIFY2(mDaemon->log().contains("/none/?]0;title??????forged line.plist"), mDaemon->log().constData());
    const QString log = QString::fromUtf8(mDaemon->log());
    for (const QChar character : u"\u001b\u0007\u202e\u009b\u007f\u2028"_s)
        QVERIFY2(!log.contains(character), qPrintable(QString::number(character.unicode(), 16)));
}

// Kills the daemon at random moments of a storm of requests. The next daemon starts with the settings of the last
// answered request or of a later one, undamaged.
void DaemonProcessTest::keepsAnsweredChangesWhenKilled()
{
    QRandomGenerator random(271);
    int sent = 0;
    int answered = 0; // number in the last name of an answer
    for (int round = 0; round < 25; ++round) {
        mDaemon->replies().clear();
        QElapsedTimer clock;
        clock.start();
        const int lifeMs = random.bounded(5, 120);
        while (clock.elapsed() < lifeMs) {
            mDaemon->send(Command::updateProfile,
                          {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(QString::number(++sent))}});
            QCoreApplication::processEvents();
        }
        mDaemon->kill();
        QCoreApplication::processEvents();
        for (const auto &reply : std::as_const(mDaemon->replies()))
            answered = std::max(answered, firstName(reply.values.value(u"ReturnDictionary"_s).toMap()).toInt());
        QVERIFY(mDaemon->start());
        const auto settings = mDaemon->request(Command::readSettings);
        QVERIFY(settings);
        const QVariantMap document = settings->values.value(u"AllDevSettings"_s).toMap();
        QCOMPARE(reasonOf(SettingsDocument::validate(document)), QString());
        const int stored = firstName(document).toInt();
        // Replies on their way are lost with the daemon, so the stored number may exceed the answered one, but not fall
        // below it.
        QVERIFY2(
            stored >= answered && stored <= sent,
            qPrintable(u"round %1: answered %2, stored %3, sent %4"_s.arg(round).arg(answered).arg(stored).arg(sent)));
        QVERIFY2(QDir(mDaemon->settingsFolder()).entryList({u"*damaged*"_s}).isEmpty(), "a kill left a damaged file");
        sent = answered = stored;
    }
    QVERIFY(answered > 25); // otherwise hardly a request was carried out, and the test proves nothing
}

// The client no longer waits for the replies, and would take one for the answer to its next request.
void DaemonProcessTest::carriesOutRequestsOfASuspensionWithoutReplies()
{
    QObject observer;
    QStringList sources;
    DistributedNotificationCenter::defaultCenter().addObserver(
        &observer, DaemonProtocol::profileUpdated, [&](const DistributedNotification &notification) {
            sources += notification.userInfo.value(u"Source App"_s).toString();
        });
    mDaemon->stop();
    mDaemon->send(Command::updateProfile, {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"obeyed"_s)}});
    mDaemon->send(Command::switchProfile, {{u"ProfileID"_s, 0}});
    QVERIFY(RemoteMessagePort::open(DaemonProtocol::requestPortName)); // the bus has forwarded them
    mDaemon->resume();
    QTRY_COMPARE(sources, QStringList{u"QuillKestraDaemon"_s});
    const auto settings = mDaemon->request(Command::readSettings);
    QVERIFY(settings);
    QCOMPARE(settings->command, static_cast<qint32>(Command::readSettings));
    QCOMPARE(firstName(settings->values.value(u"AllDevSettings"_s).toMap()), u"obeyed"_s);
    QVERIFY(mDaemon->replies().isEmpty());
    // Later requests are answered.
    const auto changed = mDaemon->request(Command::updateProfile,
                                          {{u"ProfileID"_s, 0}, {u"DeviceSettingsDictionary"_s, named(u"answered"_s)}});
    QVERIFY(changed);
    QCOMPARE(changed->command, static_cast<qint32>(Command::updateProfile));
    QTRY_COMPARE(sources, QStringList({u"QuillKestraDaemon"_s, DaemonProcessFixture::portName()}));
}

void DaemonProcessTest::interfacesMatchTheirDocument_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("interface");
    QTest::newRow("message port") << u"/MessagePort"_s << u"org.quillkestra.MessagePort"_s;
    QTest::newRow("virtual keyboard") << u"/VirtualKeyboard"_s << u"org.quillkestra.VirtualKeyboard"_s;
    QTest::newRow("real keyboards") << u"/Devices"_s << u"org.quillkestra.Devices"_s;
    QTest::newRow("key watch") << u"/KeyWatch"_s << u"org.quillkestra.KeyWatch"_s;
    QTest::newRow("settings") << u"/Settings"_s << u"org.quillkestra.Settings"_s;
    QTest::newRow("macros") << u"/Macros"_s << u"org.quillkestra.Macros"_s;
    QTest::newRow("history") << u"/History"_s << u"org.quillkestra.History"_s;
    QTest::newRow("macros") << u"/Macros"_s << u"org.quillkestra.Macros"_s;
    QTest::newRow("front application") << u"/FrontApplication"_s << u"org.quillkestra.FrontApplication"_s;
}

void DaemonProcessTest::interfacesMatchTheirDocument()
{
    QFETCH(QString, path);
    QFETCH(QString, interface);
    const QStringList documented = documentedMembers(interface);
    QVERIFY(!documented.isEmpty());
    QCOMPARE(introspectedMembers(path, interface), documented);
}

QTEST_GUILESS_MAIN(DaemonProcessTest)
#include "daemonprocesstest.moc"
