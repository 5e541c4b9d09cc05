// SPDX-License-Identifier: MIT
// The object /Macros for clients on the bus, and the rule that no call of any object types with a real keyboard. The
// daemon is in this process; its keyboard notes what the computer would receive.
#include "base/document.h"
#include "base/qlcoreutility.h"
#include "daemon/busobjects.h"
#include "daemon/devicedaemon.h"
#include "daemon/frontapplication/gnomeshell.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/deadlinetimer.h"
#include "macros/macrorecord.h"
#include "platform/messageport.h"
#include "tests/daemon/devicedaemonfixture.h"
#include "tests/support/scripteddevices.h"
#include "tests/support/testmain.h"
#include "tests/support/threadedkeyboard.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

const QString interfaceName = u"org.quillkestra.Macros"_s;
const QString clientPort = u"MacrosAdaptorTestPort"_s;
constexpr uint once = 1;
constexpr uint untilReleased = 255;
constexpr quint16 keyA = 4;

int macroIdAt(const QVariantMap &document, int index)
{
    return MacroRecord::macroId(Document(document).macros().at(index).toMap());
}

/// A program on the bus. It notes the signals of /Macros that it gets.
class Client : public QObject
{
    Q_OBJECT

public:
    explicit Client(const QString &name)
        : mName(name), mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
        mBus.connect({}, u"/Macros"_s, interfaceName, u"Tried"_s, this, SLOT(noteTried(QDBusMessage)));
        mBus.connect({}, u"/Macros"_s, interfaceName, u"TryEnded"_s, this, SLOT(noteEnded(QDBusMessage)));
    }
    ~Client() override { QDBusConnection::disconnectFromBus(mName); }
    Q_DISABLE_COPY_MOVE(Client)

    [[nodiscard]] QDBusConnection bus() const { return mBus; }
    [[nodiscard]] std::unique_ptr<QDBusPendingCallWatcher>
    send(const QString &path, const QString &interface, const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(), path, interface, method);
        message.setArguments(arguments);
        return std::make_unique<QDBusPendingCallWatcher>(mBus.asyncCall(message));
    }
    /// Calls a method of /Macros and waits, while the daemon works.
    QDBusMessage call(const QString &method, const QVariantList &arguments = {}) const
    {
        const auto pending = send(u"/Macros"_s, interfaceName, method, arguments);
        return QTest::qWaitFor([&] { return pending->isFinished(); }) ? pending->reply() : QDBusMessage();
    }

    QList<QVariantList> tried;
    QList<QVariantList> ended;

private Q_SLOTS:
    void noteTried(const QDBusMessage &message) { tried += message.arguments(); }
    void noteEnded(const QDBusMessage &message) { ended += message.arguments(); }

private:
    QString mName;
    QDBusConnection mBus;
};

/// Values for a parameter of this D-Bus type. Those of macros name the first macro and a key that plays it.
QVariantList valuesFor(const QString &type, int macroId)
{
    if (type == "u"_L1)
        return {uint(macroId), 7U, 4U, 58U, 1U, 255U};
    if (type == "i"_L1)
        return {macroId, 1, 4};
    if (type == "b"_L1)
        return {true, false};
    if (type == "s"_L1)
        return {u"A"_s, u"usb-1"_s};
    if (type == "as"_L1)
        return {QStringList{u"A"_s}};
    if (type == "ay"_L1)
        return {QByteArray("bplist00")};
    return {};
}

/// All combinations of values for these types; empty if there are no values for one of them.
QList<QVariantList> argumentsFor(const QStringList &types, int macroId)
{
    QList<QVariantList> all{{}};
    for (const QString &type : types) {
        QList<QVariantList> longer;
        for (const QVariantList &start : std::as_const(all)) {
            for (const QVariant &value : valuesFor(type, macroId))
                longer += start + QVariantList{value};
        }
        all = longer;
    }
    return all;
}

struct Method
{
    QString interface;
    QString name;
    QStringList types;
};

/// The methods in a description of an object, without those of the bus itself.
QList<Method> methodsIn(const QString &description)
{
    QList<Method> methods;
    QXmlStreamReader xml(description);
    QString interface;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        const auto attribute = [&](QLatin1StringView name) { return xml.attributes().value(name).toString(); };
        if (xml.name() == "interface"_L1)
            interface = attribute("name"_L1);
        else if (xml.name() == "method"_L1)
            methods += {.interface = interface, .name = attribute("name"_L1), .types = {}};
        else if (xml.name() == "arg"_L1 && attribute("direction"_L1) == "in"_L1)
            methods.last().types += attribute("type"_L1);
    }
    methods.removeIf([](const Method &method) { return method.interface.startsWith("org.freedesktop."_L1); });
    return methods;
}

} // namespace

class MacrosAdaptorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tryReachesItsCallerAlone();
    void tryEndsWithAChangeOfTheMacro();
    void refusalsHaveNames_data();
    void refusalsHaveNames();
    void buttonsOfTheRecordingProgramAreRecorded();
    void buttonsOfOthersAreRefused();
    void noCallTypesWithARealKeyboard();

private:
    void startRecording();
    void send(Command command, QVariantMap request);
    [[nodiscard]] int sentToComputer()
    {
        int sent = 0;
        mRealKeyboard->runOnKeys([&sent](NotingChannel &channel) { sent = channel.sent(); });
        return sent;
    }

    QVariantMap mDocument;
    std::optional<QTemporaryDir> mFolder;
    std::unique_ptr<SettingsStore> mStore;
    std::unique_ptr<VirtualKeyboard> mVirtualKeyboard;
    std::unique_ptr<ThreadedKeyboard> mRealKeyboard;
    std::unique_ptr<DeviceDaemon> mDaemon;
    ScriptedDevices mDevices;
    std::unique_ptr<DeviceChoice> mChoice;
    std::unique_ptr<KeyWatch> mKeyWatch;
    std::unique_ptr<MacroTries> mTries;
    std::unique_ptr<GnomeShell> mGnomeShell;
    std::unique_ptr<FrontApplicationWatch> mFrontApplication;
    std::unique_ptr<BusObjects> mObjects;
    std::unique_ptr<Client> mClient;
    std::unique_ptr<Client> mOther;
    std::unique_ptr<LocalMessagePort> mPort; // of mClient
    QString mProgram;                        // the owner of the watched port
    QList<QVariantMap> mNotifications;       // of recorded events
};

void MacrosAdaptorTest::init()
{
    mDocument = DaemonTestDocuments::documentWithMacros();
    mFolder.emplace();
    mStore = std::make_unique<SettingsStore>(mFolder->path());
    QVERIFY(mStore->open());
    mClient = std::make_unique<Client>(u"client"_s);
    mOther = std::make_unique<Client>(u"other"_s);
    mVirtualKeyboard = std::make_unique<VirtualKeyboard>();
    mRealKeyboard = std::make_unique<ThreadedKeyboard>();
    DaemonServices services{
        .sendReply = [](const QString &, qint32, const QVariantMap &) {},
        .postNotification =
            [this](const QString &name, const QVariantMap &info) {
                if (name == DaemonProtocol::macroSequenceNotification)
                    mNotifications += info;
            },
        .watchClient =
            [this](const QString &port) { mProgram = port == clientPort ? mClient->bus().baseService() : QString(); },
        .watchedProgram = [this] { return mProgram; },
        .launchProgram = [](const QString &) {},
        .now = DeadlineTimer::now};
    mDaemon = std::make_unique<DeviceDaemon>(*mStore, *mVirtualKeyboard, std::move(services), mDocument);
    mChoice = std::make_unique<DeviceChoice>(mFolder->path());
    const QDBusConnection bus = QDBusConnection::sessionBus();
    mKeyWatch = std::make_unique<KeyWatch>(mDaemon->keyboard(), bus);
    mTries = std::make_unique<MacroTries>(bus);
    mGnomeShell = std::make_unique<GnomeShell>(bus);
    mFrontApplication = std::make_unique<FrontApplicationWatch>(std::vector<FrontApplicationWatch::SourceKind>());
    mObjects = std::make_unique<BusObjects>(BusObjects::Parts{.store = *mStore,
                                                              .virtualKeyboard = *mVirtualKeyboard,
                                                              .devices = mDevices,
                                                              .deviceChoice = *mChoice,
                                                              .keyWatch = *mKeyWatch,
                                                              .frontApplication = *mFrontApplication,
                                                              .gnomeShell = *mGnomeShell,
                                                              .profiles = mDaemon->profiles(),
                                                              .history = mDaemon->history(),
                                                              .historyCalls = mDaemon->historyCommands(),
                                                              .macroReplacement = mDaemon->macroReplacement(),
                                                              .macroTries = *mTries,
                                                              .captures = mDaemon->captureCommands()});
    QVERIFY(mObjects->registerOn(bus));
    const auto follow = [this] { mTries->setMacros(Document(mDaemon->document()).macros()); };
    connect(mDaemon.get(), &DeviceDaemon::documentChanged, mTries.get(), follow);
    follow();
}

void MacrosAdaptorTest::cleanup()
{
    mDaemon->shutDown();
    mObjects.reset();
    mFrontApplication.reset();
    mGnomeShell.reset();
    mTries.reset();
    mKeyWatch.reset();
    mChoice.reset();
    mDaemon.reset();
    mRealKeyboard.reset();
    mVirtualKeyboard.reset();
    mOther.reset();
    mClient.reset();
    mStore.reset();
    mFolder.reset();
    mProgram.clear();
    mNotifications.clear();
}

void MacrosAdaptorTest::send(Command command, QVariantMap request)
{
    request.insert(DaemonProtocol::productIdKey, DaemonProtocol::productId);
    request.insert(DaemonProtocol::responsePortName, clientPort);
    mDaemon->handleMessage(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request));
}

void MacrosAdaptorTest::startRecording()
{
    send(Command::startMacroRecording, {{DaemonProtocol::macroId, 0}, {DaemonProtocol::isAppendRecording, 0}});
}

void MacrosAdaptorTest::tryReachesItsCallerAlone()
{
    const QDBusMessage reply = mClient->call(u"Try"_s, {uint(macroIdAt(mDocument, 0)), 2U});
    QCOMPARE(reply.signature(), u"u"_s);
    const uint number = reply.arguments().at(0).toUInt();
    QTRY_COMPARE(mClient->ended, (QList<QVariantList>{{number, u"finished"_s}}));
    QList<int> events;
    QList<qlonglong> times;
    QList<uint> usages;
    QList<bool> down;
    for (const QVariantList &batch : std::as_const(mClient->tried)) {
        QCOMPARE(batch.size(), 5);
        QCOMPARE(batch.at(0).toUInt(), number);
        events += qdbus_cast<QList<int>>(batch.at(1));
        times += qdbus_cast<QList<qlonglong>>(batch.at(2));
        usages += qdbus_cast<QList<uint>>(batch.at(3));
        down += qdbus_cast<QList<bool>>(batch.at(4));
    }
    QCOMPARE(events, (QList<int>{0, 1, 0, 1}));
    QCOMPARE(times, (QList<qlonglong>{10'000, 20'000, 30'000, 40'000}));
    QCOMPARE(usages, QList<uint>(4, (7U << 16) | keyA));
    QCOMPARE(down, (QList<bool>{true, false, true, false}));
    // A call to the daemon comes back after every signal that was sent before.
    QCOMPARE(mOther->call(u"StopTry"_s, {number}).errorName(), QString());
    QVERIFY(mOther->tried.isEmpty());
    QVERIFY(mOther->ended.isEmpty());
    QCOMPARE(sentToComputer(), 0);
}

void MacrosAdaptorTest::tryEndsWithAChangeOfTheMacro()
{
    const uint number =
        mClient->call(u"Try"_s, {uint(macroIdAt(mDocument, 0)), untilReleased}).arguments().value(0).toUInt();
    QTRY_VERIFY(!mClient->tried.isEmpty());
    (void)mOther->call(u"StopTry"_s, {number}); // of another caller: nothing
    QVERIFY(mClient->ended.isEmpty());
    send(Command::removeAllEvents, {{DaemonProtocol::macroId, 0}});
    QTRY_COMPARE(mClient->ended, (QList<QVariantList>{{number, u"changed"_s}}));
}

void MacrosAdaptorTest::refusalsHaveNames_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");
    const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
    const QString gone = u"org.quillkestra.Macros.Error.Gone"_s;
    QTest::newRow("unknown macro") << u"Try"_s << QVariantList{9999U, once} << gone;
    QTest::newRow("macro beyond the numbers") << u"Try"_s << QVariantList{0xFFFFFFFFU, once} << gone;
    const uint macroId = uint(macroIdAt(DaemonTestDocuments::documentWithMacros(), 0));
    QTest::newRow("no repeat") << u"Try"_s << QVariantList{macroId, 0U} << invalid;
    QTest::newRow("repeat beyond the numbers") << u"Try"_s << QVariantList{macroId, 0xFFFFFFFFU} << invalid;
    for (const uint button : {0U, 10U, 65537U, 0xFFFFFFFFU})
        QTest::addRow("button %u", button) << u"RecordButton"_s << QVariantList{button, true} << invalid;
    QTest::newRow("no recording") << u"RecordButton"_s << QVariantList{1U, true}
                                  << u"org.quillkestra.Macros.Error.NotRecording"_s;
}

void MacrosAdaptorTest::refusalsHaveNames()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    QCOMPARE(mClient->call(method, arguments).errorName(), error);
}

void MacrosAdaptorTest::buttonsOfTheRecordingProgramAreRecorded()
{
    startRecording();
    for (const uint button : {1U, 9U}) {
        QCOMPARE(mClient->call(u"RecordButton"_s, {button, true}).errorName(), QString());
        QCOMPARE(mClient->call(u"RecordButton"_s, {button, false}).errorName(), QString());
    }
    QCOMPARE(mNotifications.size(), 4);
    for (const uint button : {0U, 10U})
        QVERIFY(!mClient->call(u"RecordButton"_s, {button, true}).errorName().isEmpty());
    QCOMPARE(mNotifications.size(), 4);
    send(Command::saveRecordedEvents, {{DaemonProtocol::macroId, 0}, {DaemonProtocol::isAppendRecording, 0}});
    const QVariantList events = MacroRecord::events(Document(mDaemon->document()).macros().at(0).toMap());
    QStringList buttons;
    for (const QVariant &event : events) {
        const MacroRecord::Event fields = MacroRecord::eventFields(event.toMap());
        QCOMPARE(fields.page, 9);
        buttons += (fields.command == MacroRecord::keyDown ? u'+' : u'-') + QString::number(fields.argument);
    }
    QCOMPARE(buttons, (QStringList{u"+1"_s, u"-1"_s, u"+9"_s, u"-9"_s}));
    QVERIFY(!mClient->call(u"RecordButton"_s, {1U, true}).errorName().isEmpty()); // it has ended
}

void MacrosAdaptorTest::buttonsOfOthersAreRefused()
{
    startRecording();
    QCOMPARE(mOther->call(u"RecordButton"_s, {1U, true}).errorName(), u"org.quillkestra.Macros.Error.NotRecording"_s);
    QVERIFY(mNotifications.isEmpty());
}

void MacrosAdaptorTest::noCallTypesWithARealKeyboard()
{
    mDaemon->useKeyboard(*mRealKeyboard);
    const QStringList paths{u"/VirtualKeyboard"_s, u"/Devices"_s, u"/KeyWatch"_s,        u"/Settings"_s,
                            u"/History"_s,         u"/Macros"_s,  u"/FrontApplication"_s};
    const int macroId = macroIdAt(mDocument, 0);
    int calls = 0;
    for (const QString &path : paths) {
        const auto description = mClient->send(path, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s, {});
        QTRY_VERIFY(description->isFinished());
        const QString text = description->reply().arguments().value(0).toString();
        QVERIFY2(text.contains(u"org.quillkestra."_s), qPrintable(path));
        const QList<Method> methods = methodsIn(text);
        for (const Method &method : methods) {
            const QList<QVariantList> combinations = argumentsFor(method.types, macroId);
            QVERIFY2(!combinations.isEmpty(), qPrintable(method.name)); // a type without values
            std::vector<std::unique_ptr<QDBusPendingCallWatcher>> pending;
            for (const QVariantList &arguments : combinations)
                pending.push_back(mClient->send(path, method.interface, method.name, arguments));
            // The desktop, which would answer the question about the keys, is absent here.
            QTRY_VERIFY2(std::ranges::all_of(pending, [](const auto &call) { return call->isFinished(); }),
                         qPrintable(path + u' ' + method.name));
            calls += static_cast<int>(pending.size());
        }
    }
    for (int command = 0; command < DaemonProtocol::commandLimit; ++command) {
        if (command != static_cast<int>(Command::releaseDevice))
            send(static_cast<Command>(command), {{DaemonProtocol::macroId, 0}, {DaemonProtocol::isAppendRecording, 0}});
        ++calls;
    }
    send(Command::stopSingleKeyRecording, {});
    send(Command::releaseDevice, {});
    QVERIFY2(calls > 100, qPrintable(QString::number(calls)));
    QCOMPARE(sentToComputer(), 0);
    // Its key does type, so the count means something.
    mRealKeyboard->press(keyA);
    mRealKeyboard->release(keyA);
    QCOMPARE(sentToComputer(), 2);
}

QTEST_GUILESS_MAIN(MacrosAdaptorTest)
#include "macrosadaptortest.moc"
