// SPDX-License-Identifier: MIT
// A random document, random changes by three clients (the window, kestractl, and one with requests of all kinds), and
// kills at every call that changes the folder and at other moments. Undoing all changes then leads to the first
// document, and redoing them to the last, byte for byte but for "LastMacroID". Two clients make each of these steps at
// once. The daemon joins and drops no entries.
#include "base/document.h"
#include "base/historykeys.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/faultydisk.h"
#include "tests/chaos/windowfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/fulldocument.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int longestLife = 300; // places that the disk counts

QByteArray bytesWithoutLastMacroId(QVariantMap document)
{
    QVariantMap settings = document.value(SettingsKeys::deviceSettings).toMap();
    settings.remove(SettingsKeys::lastMacroId);
    document.insert(SettingsKeys::deviceSettings, settings);
    return PropertyList::writeBinary(document).value_or(QByteArray());
}

QVariantMap randomEvent(QRandomGenerator &random)
{
    return {{SettingsKeys::command, random.bounded(2)},
            {SettingsKeys::delay, random.bounded(300)},
            {SettingsKeys::page, 7},
            {SettingsKeys::argument, random.bounded(4, 40)}};
}

QVariantMap randomEntry(QRandomGenerator &random)
{
    constexpr std::array commands{10, 16, 17, 20, 45};
    return {{SettingsKeys::command, commands.at(std::size_t(random.bounded(int(commands.size()))))},
            {SettingsKeys::param1, random.bounded(6)},
            {SettingsKeys::param2, 0}};
}

QVariantMap randomSettings(QRandomGenerator &random, const QVariantMap &profile)
{
    switch (random.bounded(6)) {
    case 0: return {{SettingsKeys::profileName, u"Profile %1"_s.arg(random.bounded(6))}};
    case 1: return {{SettingsKeys::brightnessKbNormal, random.bounded(5)}};
    case 2: return {{SettingsKeys::profileOsdOn, random.bounded(2)}};
    case 3: return {{u"Other"_s, QVariantList{random.bounded(3), double(random.bounded(3)), random.bounded(2) == 1}}};
    case 4: {
        const QVariantMap color{{SettingsKeys::red, random.bounded(1.0)}, {SettingsKeys::green, 0.5}};
        return {{SettingsKeys::ledKbColors, QVariantList{color}}};
    }
    default: {
        QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
        for (int count = random.bounded(1, 4); count > 0; --count) {
            const QString code = QString::number(random.bounded(4, 60));
            random.bounded(4) == 0 ? keys.remove(code) : bool(keys.insert(code, randomEntry(random)) != keys.end());
        }
        return {{SettingsKeys::keys, keys}};
    }
    }
}

QDBusMessage historyCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                          HistoryKeys::objectPath, HistoryKeys::interfaceName, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

QVariantMap randomDocument(QRandomGenerator &random)
{
    QVariantList profiles;
    for (int count = random.bounded(1, 6); count > 0; --count) {
        QVariantMap profile = random.bounded(2) == 0 ? fullProfile(u"Full %1"_s.arg(count))
                                                     : QVariantMap{{SettingsKeys::profileName, u"Bare"_s},
                                                                   {SettingsKeys::keys, QVariantMap()}};
        for (int settings = random.bounded(4); settings > 0; --settings)
            profile.insert(randomSettings(random, profile));
        profiles += profile;
    }
    QVariantList macros;
    for (int id = 1, count = random.bounded(6); id <= count; ++id)
        macros += fullMacro(u"Macro %1"_s.arg(random.bounded(3)), id, random.bounded(1, 30));
    return {{SettingsKeys::profiles, profiles},
            {SettingsKeys::macros, macros},
            {SettingsKeys::deviceSettings,
             QVariantMap{{SettingsKeys::activeProfile, random.bounded(int(profiles.size()))}}}};
}

QStringList randomWords(QRandomGenerator &random)
{
    const QString key(QChar(u'A' + random.bounded(26)));
    switch (random.bounded(7)) {
    case 0: return {u"key"_s, key, u"default"_s};
    case 1: return {u"key"_s, key, u"single"_s, u"B"_s};
    case 2: return {u"light"_s, u"brightness"_s, QString::number(random.bounded(5))};
    case 3: return {u"macro"_s, u"add"_s, u"Written"_s};
    case 4: return {u"undo"_s};
    case 5: return {u"redo"_s};
    default: return {u"key"_s, key, u"disable"_s};
    }
}

struct Change
{
    Command command;
    QVariantMap request;
};

/// May also be one that the daemon refuses.
Change randomChange(QRandomGenerator &random, const Document &document)
{
    const int profile = random.bounded(int(document.profiles().size()) + 1);
    const int macro = random.bounded(int(document.macros().size()) + 1);
    const QVariantMap macroRow{{DaemonProtocol::macroId, macro}};
    const auto with = [](QVariantMap map, const QVariantMap &more) {
        map.insert(more);
        return map;
    };
    switch (random.bounded(14)) {
    case 0:
        return {Command::addProfile,
                {{DaemonProtocol::deviceSettingsDictionary, fullProfile(u"Profile %1"_s.arg(random.bounded(6)))}}};
    case 1: return {Command::deleteProfile, {{DaemonProtocol::profileId, profile}}};
    case 2: return {Command::switchProfile, {{DaemonProtocol::profileId, profile}}};
    case 3: {
        QVariantList profiles = document.profiles();
        profiles.move(random.bounded(profiles.size()), random.bounded(profiles.size()));
        return {Command::replaceAllProfiles, {{DaemonProtocol::allProfiles, profiles}}};
    }
    case 4:
        return {Command::addMacro, {{DaemonProtocol::macroContents, fullMacro(u"Macro"_s, 0, random.bounded(1, 12))}}};
    case 5: return {Command::deleteMacro, macroRow};
    case 6:
        return {Command::renameMacro,
                {{DaemonProtocol::macroContents,
                  with(macroRow, {{SettingsKeys::macroName, u"Macro %1"_s.arg(random.bounded(9))}})}}};
    case 7:
        return {Command::setAllDelays, with(macroRow, {{DaemonProtocol::hasNoDelay, random.bounded(2) == 1},
                                                       {DaemonProtocol::delay, random.bounded(8)}})};
    case 8:
        return {Command::setDelay, with(macroRow, {{DaemonProtocol::sequenceIndex, random.bounded(8)},
                                                   {DaemonProtocol::delay, random.bounded(500)}})};
    case 9: return {Command::removeEvent, with(macroRow, {{DaemonProtocol::macroEventTableIndex, random.bounded(8)}})};
    case 10:
        return {Command::updateEvent, with(macroRow, {{DaemonProtocol::sequenceIndex, random.bounded(8)},
                                                      {DaemonProtocol::sequence, randomEvent(random)}})};
    default:
        return {Command::updateProfile,
                {{DaemonProtocol::profileId, profile},
                 {DaemonProtocol::deviceSettingsDictionary,
                  randomSettings(random,
                                 document.profile(profile).isEmpty() ? QVariantMap() : document.profile(profile))}}};
    }
}

/// The sanitizers make each change several times slower.
#ifdef __SANITIZE_ADDRESS__
constexpr int usualChanges = 250;
#else
constexpr int usualChanges = 1000;
#endif

} // namespace

class HistoryKillsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leadsToTheFirstDocumentAndToTheLast();

private:
    void start();
    void killSometimes();
    /// Empty if the daemon has died.
    [[nodiscard]] QVariantMap document();
    [[nodiscard]] QList<QVariantMap> entries(const QString &method);
    [[nodiscard]] QVariantList call(const QString &method, const QVariantList &arguments = {});
    void change(int number);
    void changeByKestractl();
    void changeByWindow();
    [[nodiscard]] bool goAtOnce(const QString &method, const QVariant &id);
    int goAll(HistoryKeys::Key next, const QString &method);

    FaultyDisk mDisk;
    DaemonProcessFixture mDaemon;
    WindowFixture mWindow;
    QProcessEnvironment mClients; // without the disk of the daemon
    QRandomGenerator mRandom{chaosSeed()};
    int mKills = 0;
};

void HistoryKillsTest::start()
{
    mDisk.recover();
    if (mRandom.bounded(6) != 0)
        mDisk->placesToLive = mRandom.bounded(1, longestLife);
    if (mDaemon.start())
        return;
    ++mKills; // at its start
    mDisk.recover();
    QVERIFY(mDaemon.start());
}

/// Starts another daemon if the disk has ended this one; ends it at a random moment otherwise.
void HistoryKillsTest::killSometimes()
{
    if (mDaemon.isRunning() && mRandom.bounded(150) != 0)
        return;
    mDaemon.kill();
    ++mKills;
    start();
}

QVariantMap HistoryKillsTest::document()
{
    mDaemon.replies().clear();
    mDaemon.send(Command::readSettings);
    (void)awaitEvents([this] { return !mDaemon.replies().isEmpty() || !mDaemon.isRunning(); });
    return mDaemon.replies().value(0).values.value(DaemonProtocol::allDevSettings).toMap();
}

QVariantList HistoryKillsTest::call(const QString &method, const QVariantList &arguments)
{
    return QDBusConnection::sessionBus().call(historyCall(method, arguments)).arguments();
}

QList<QVariantMap> HistoryKillsTest::entries(const QString &method)
{
    return qdbus_cast<QList<QVariantMap>>(call(method).value(0));
}

/// Sends some changes at once, and waits for the replies or the death of the daemon.
void HistoryKillsTest::change(int number)
{
    const QVariantMap present = document();
    if (present.isEmpty())
        return; // it has just died
    mDaemon.replies().clear();
    for (int count = 0; count < number; ++count) {
        Change change = randomChange(mRandom, Document(present));
        change.request.insert(DaemonProtocol::sourceApp, u"org.example.Other"_s);
        mDaemon.send(change.command, change.request);
    }
    QVERIFY(awaitEvents([&] { return mDaemon.replies().size() == number || !mDaemon.isRunning(); }));
}

void HistoryKillsTest::changeByKestractl()
{
    QProcess process;
    startKestractl(process, randomWords(mRandom), mClients);
    QVERIFY(awaitEvents([&] { return process.state() == QProcess::NotRunning || !mDaemon.isRunning(); }));
    if (process.state() == QProcess::NotRunning)
        return;
    process.kill(); // it would wait for the reply of the dead daemon
    QVERIFY(process.waitForFinished());
}

void HistoryKillsTest::changeByWindow()
{
    constexpr std::array positions{0, 5}; // of the default key and a disabled one
    const QByteArray key(1, char('A' + mRandom.bounded(26)));
    mWindow.send("choose " + key + ' '
                 + QByteArray::number(positions.at(std::size_t(mRandom.bounded(int(positions.size()))))));
    QVERIFY(awaitEvents([this] { return mWindow.hasAnswer() || !mDaemon.isRunning(); }));
    killSometimes(); // the window notices, and answers
    QCOMPARE(mWindow.answer(), QByteArray("done"));
}

/// Lets two clients take the step at once: it is taken once. False if it is not known whether it was taken.
bool HistoryKillsTest::goAtOnce(const QString &method, const QVariant &id)
{
    const int deaths = mDisk.deathCount();
    const QDBusMessage message = historyCall(method, {id});
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"otherClient"_s);
    const std::array calls{QDBusConnection::sessionBus().asyncCall(message), other.asyncCall(message)};
    const bool areEnded = awaitEvents(
        [&calls] { return std::ranges::all_of(calls, [](const auto &call) { return call.isFinished(); }); });
    const auto taken = std::ranges::count_if(calls, [](const auto &call) { return call.isValid(); });
    const auto outdated = std::ranges::count_if(
        calls, [](const auto &call) { return call.error().name() == QLatin1StringView(HistoryKeys::outdatedError); });
    const bool isAlive = mDisk.deathCount() == deaths;
    if (!areEnded || taken > 1 || (isAlive && (taken != 1 || outdated != 1)))
        QTest::qFail(
            qPrintable(u"%1 of %2: %3 taken, %4 outdated"_s.arg(method, id.toString()).arg(taken).arg(outdated)),
            __FILE__, __LINE__);
    return taken == 1;
}

/// Undoes, or makes again, all that can be. Returns how often.
int HistoryKillsTest::goAll(HistoryKeys::Key next, const QString &method)
{
    for (int count = 0;;) {
        killSometimes();
        if (QTest::currentTestFailed())
            return count;
        const QList<QVariantMap> candidates = entries(u"Next"_s);
        QVariant id;
        for (const QVariantMap &entry : candidates) {
            if (entry.value(HistoryKeys::next).toString() == next)
                id = entry.value(HistoryKeys::id);
        }
        if (id.isValid())
            count += goAtOnce(method, id);
        else if (mDaemon.isRunning() && !document().isEmpty())
            return count;
    }
}

void HistoryKillsTest::leadsToTheFirstDocumentAndToTheLast()
{
    const int wanted = numberFromEnvironment("KESTRA_CHAOS_CHANGES", usualChanges);
    qInfo("seed %u", chaosSeed());
    mDaemon.setProgram(QStringLiteral(KESTRA_UNBOUNDED_DAEMON));
    QVERIFY(mDaemon.store(randomDocument(mRandom)));
    mClients = mDaemon.environment();
    mDisk.prepare(mDaemon.environment(), mDaemon.settingsFolder());
    QVERIFY(mDaemon.start());
    QVERIFY(mWindow.start(mClients));
    QCOMPARE(mWindow.ask("patience 1000"), QByteArray("done"));
    mDisk->placesToLive = mRandom.bounded(1, longestLife);
    const QByteArray first = bytesWithoutLastMacroId(document());

    for (int sent = 0; sent < wanted && !QTest::currentTestFailed();) {
        killSometimes();
        const int kind = mRandom.bounded(20);
        const int together = kind < 2 || mRandom.bounded(2) != 0 ? 1 : std::min(wanted - sent, mRandom.bounded(2, 6));
        if (kind == 0)
            changeByKestractl();
        else if (kind == 1)
            changeByWindow();
        else
            change(together);
        sent += together;
    }
    killSometimes();
    mDisk.recover();
    QCOMPARE(mWindow.finish(), 0);
    // A change at the end: nothing can be made again.
    const auto changeLast = [this] {
        return mDaemon.request(Command::updateProfile,
                               {{DaemonProtocol::profileId, 0},
                                {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{u"Last"_s, true}}}});
    };
    if (!changeLast()) { // the disk has just ended the daemon
        mDaemon.kill();
        QVERIFY(mDaemon.start());
        QVERIFY(changeLast());
    }
    const int killsOfChanges = mKills;
    const QByteArray last = bytesWithoutLastMacroId(document());
    const QList<QVariantMap> list = entries(u"List"_s);
    QMap<QString, int> byAuthor;
    for (const QVariantMap &entry : list) {
        QVERIFY(entry.value(HistoryKeys::kind).toString() != HistoryKeys::kindElsewhere);
        ++byAuthor[entry.value(HistoryKeys::author).toString()];
    }
    const int unknown = byAuthor.value(HistoryKeys::authorUnknown);
    const qint64 size = QFileInfo(QDir(mDaemon.settingsFolder()).filePath(u"history"_s)).size();

    const int undone = goAll(HistoryKeys::nextUndo, u"Undo"_s);
    QVERIFY(undone > 0);
    mDisk.recover();
    QCOMPARE(bytesWithoutLastMacroId(document()), first);
    const int redone = goAll(HistoryKeys::nextRedo, u"Redo"_s);
    mDisk.recover();
    QVERIFY(mDaemon.isRunning() || mDaemon.start());
    QCOMPARE(bytesWithoutLastMacroId(document()), last);
    for (const QVariantMap &entry : entries(u"List"_s))
        QVERIFY(entry.value(HistoryKeys::kind).toString() != HistoryKeys::kindElsewhere);
    const int byWindow = byAuthor.value(HistoryKeys::authorConfigurator);
    const int byKestractl = byAuthor.value(HistoryKeys::authorKestractl);
    qInfo("%d changes sent; %lld entries in %lld bytes: %d by the window, %d by kestractl, %d missed and found again; "
          "%d undone, %d redone; %d kills, %d while changes were made",
          wanted, static_cast<long long>(list.size()), static_cast<long long>(size), byWindow, byKestractl, unknown,
          undone, redone, mKills, killsOfChanges);
    QVERIFY(list.size() > wanted / 3);
    QVERIFY(wanted < 1000 || (byWindow > 5 && byKestractl > 5));
    QVERIFY(wanted < 1000 || (killsOfChanges > 1 && mKills > killsOfChanges));
}

QTEST_GUILESS_MAIN(HistoryKillsTest)
#include "historykillstest.moc"
