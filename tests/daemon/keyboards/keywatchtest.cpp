// SPDX-License-Identifier: MIT
// The object /KeyWatch for clients on the bus, with a virtual keyboard and a simulated notification service. The clock
// is the test's.
#include "daemon/keyboards/keywatchadaptor.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/notificationservice.h"
#include "tests/support/testmain.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr uint keys = HidUsage::keyboardPage;
constexpr uint keyA = 4;

/// A program on the bus that asks for the keys.
class Client
{
public:
    explicit Client(const QString &name)
        : mName(name), mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
    }
    ~Client() { leave(); }

    void ask()
    {
        mCall = std::make_unique<QDBusPendingCallWatcher>(mBus.asyncCall(QDBusMessage::createMethodCall(
            QDBusConnection::sessionBus().baseService(), u"/KeyWatch"_s, u"org.quillkestra.KeyWatch"_s, u"Start"_s)));
    }
    [[nodiscard]] bool isAnswered() const { return mCall->isFinished(); }
    [[nodiscard]] QString error() const { return mCall->reply().errorName(); }
    [[nodiscard]] QString errorText() const { return mCall->reply().errorMessage(); }
    /// The lines of the pipe so far.
    [[nodiscard]] QStringList lines()
    {
        if (mPipe < 0 && mCall->isFinished() && !mCall->isError()) {
            const auto descriptor = mCall->reply().arguments().value(0).value<QDBusUnixFileDescriptor>();
            mPipe = ::dup(descriptor.fileDescriptor());
            mCall.reset(); // with the message's own descriptor
            ::fcntl(mPipe, F_SETFL, O_NONBLOCK);
        }
        char bytes[4096];
        ssize_t count = 0;
        while ((count = ::read(mPipe, bytes, sizeof bytes)) > 0)
            mText.append(bytes, count);
        mIsAtEnd = mPipe >= 0 && count == 0;
        return QString::fromUtf8(mText).split(u'\n', Qt::SkipEmptyParts);
    }
    [[nodiscard]] bool isAtEnd()
    {
        (void)lines();
        return mIsAtEnd;
    }
    void closePipe()
    {
        if (mPipe >= 0)
            ::close(std::exchange(mPipe, -1));
    }
    void leave()
    {
        closePipe();
        mCall.reset();
        mBus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(mName);
    }

private:
    QString mName;
    QDBusConnection mBus;
    std::unique_ptr<QDBusPendingCallWatcher> mCall;
    QByteArray mText;
    int mPipe = -1;
    bool mIsAtEnd = false;
};

} // namespace

class KeyWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        std::signal(SIGPIPE, SIG_IGN); // as the daemon
        qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
    }
    void init();
    void cleanup();

    void allowedCallerSeesBothSides();
    void questionNamesTheProgramAndItsDanger();
    void everyWatchIsAskedFor();
    void refusedCallerGetsNothing_data();
    void refusedCallerGetsNothing();
    void unansweredQuestionIsRefused();
    void withoutNotificationServiceItIsRefused();
    void withoutButtonsItIsRefused();
    void secondCallerIsRefused();
    void endsWithTheCaller();
    void questionGoesWithTheCaller();
    void endsWithThePipe();
    void endsAfterAMinute();
    void endsWithItsNotification_data();
    void endsWithItsNotification();
    void fullPipeLosesEventsAndCountsThem();
    void followsTheKeyboardInUse();
    void busCarriesNoKeys();

private:
    [[nodiscard]] Client &client(const QString &name)
    {
        auto &place = mClients[name];
        if (!place)
            place = std::make_unique<Client>(name);
        return *place;
    }
    void press(uint usage)
    {
        QVERIFY(mKeyboard->press(keys, usage));
        QVERIFY(mKeyboard->release(keys, usage));
    }
    /// The client asks, and the user allows it.
    void allow(Client &asking)
    {
        const qsizetype before = mService->bubbles.size();
        asking.ask();
        QTRY_COMPARE(mService->bubbles.size(), before + 1);
        QTRY_VERIFY(mService->hasAnswered());
        mService->press(u"allow"_s);
        QTRY_VERIFY(asking.isAnswered());
        QCOMPARE(asking.error(), QString());
        (void)asking.lines();
    }
    void passTime(KeyPath::Time time)
    {
        mNow += time;
        if (mDeadline && mNow >= *mDeadline)
            mWatch->wake();
    }

    KeyPath::Time mNow{};
    std::optional<KeyPath::Time> mDeadline;
    std::unique_ptr<NotificationService> mService;
    std::unique_ptr<VirtualKeyboard> mKeyboard;
    std::unique_ptr<VirtualKeyboard> mOther;
    std::unique_ptr<CurrentKeyboard> mCurrent;
    std::unique_ptr<KeyWatch> mWatch;
    std::unique_ptr<KeyWatchObject> mObject;
    std::map<QString, std::unique_ptr<Client>> mClients;
};

void KeyWatchTest::init()
{
    mNow = 100s;
    mDeadline.reset();
    mService = std::make_unique<NotificationService>();
    mKeyboard = std::make_unique<VirtualKeyboard>();
    mOther = std::make_unique<VirtualKeyboard>();
    mCurrent = std::make_unique<CurrentKeyboard>();
    mCurrent->use(*mKeyboard, SettingsDocument::minimal());
    mWatch = std::make_unique<KeyWatch>(
        *mCurrent, QDBusConnection::sessionBus(),
        KeyClock{.now = [this] { return mNow; },
                 .wakeAt = [this](std::optional<KeyPath::Time> deadline) { mDeadline = deadline; }});
    mObject = std::make_unique<KeyWatchObject>(*mWatch);
    QVERIFY(mObject->registerOn(QDBusConnection::sessionBus()));
}

void KeyWatchTest::cleanup()
{
    mClients.clear();
    mObject.reset();
    mWatch.reset();
    mCurrent.reset();
    mOther.reset();
    mKeyboard.reset();
    mService.reset();
}

void KeyWatchTest::allowedCallerSeesBothSides()
{
    Client &asking = client(u"first"_s);
    press(keyA); // before anyone asks
    allow(asking);
    press(keyA);
    const QStringList both{u"keyboard usage 7 4 1"_s, u"computer usage 7 4 1"_s, u"keyboard usage 7 4 0"_s,
                           u"computer usage 7 4 0"_s};
    QTRY_COMPARE(asking.lines(), both);
    QVERIFY(!asking.isAtEnd());
}

void KeyWatchTest::questionNamesTheProgramAndItsDanger()
{
    Client &asking = client(u"first"_s);
    asking.ask();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    const NotificationService::Bubble question = mService->bubbles.first();
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    QVERIFY2(question.body.contains(u"%1 (%2)"_s.arg(program).arg(QCoreApplication::applicationPid())),
             qPrintable(question.body));
    QVERIFY2(question.body.contains(u"passwords"_s), qPrintable(question.body));
    QCOMPARE(question.actions.value(0), u"allow"_s);
    QVERIFY(!asking.isAnswered());
    QTRY_VERIFY(mService->hasAnswered());
    mService->press(u"allow"_s);
    QTRY_VERIFY(asking.isAnswered());
    QCOMPARE(mService->bubbles.size(), 2); // the notification while it runs
    QVERIFY2(mService->bubbles.last().body.contains(program), qPrintable(mService->bubbles.last().body));
    QCOMPARE(mService->bubbles.last().expireMs, 0);
}

void KeyWatchTest::everyWatchIsAskedFor()
{
    Client &asking = client(u"first"_s);
    allow(asking);
    asking.closePipe();
    QTRY_COMPARE(mService->closed.value(mService->closed.size() - 1), mService->lastId());
    const qsizetype before = mService->bubbles.size();
    asking.ask();
    QTRY_COMPARE(mService->bubbles.size(), before + 1);
    QCOMPARE(mService->bubbles.last().actions.value(0), u"allow"_s);
    QVERIFY(!asking.isAnswered());
}

void KeyWatchTest::refusedCallerGetsNothing_data()
{
    QTest::addColumn<QString>("button"); // empty: dismissed
    QTest::newRow("refused") << u"refuse"_s;
    QTest::newRow("dismissed") << QString();
    QTest::newRow("unknown button") << u"default"_s;
}

void KeyWatchTest::refusedCallerGetsNothing()
{
    QFETCH(QString, button);
    Client &asking = client(u"first"_s);
    asking.ask();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    QTRY_VERIFY(mService->hasAnswered());
    press(keyA);
    if (button.isEmpty())
        mService->dismiss();
    else
        mService->press(button);
    QTRY_VERIFY(asking.isAnswered());
    QCOMPARE(asking.error(), u"org.quillkestra.KeyWatch.Error.Refused"_s);
    QVERIFY(!mCurrent->takeTapped());
    QVERIFY(!mDeadline);
}

void KeyWatchTest::unansweredQuestionIsRefused()
{
    Client &asking = client(u"first"_s);
    asking.ask();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    QTRY_VERIFY(mService->hasAnswered());
    passTime(29s);
    QVERIFY(!asking.isAnswered());
    passTime(1s);
    QTRY_VERIFY(asking.isAnswered());
    QCOMPARE(asking.error(), u"org.quillkestra.KeyWatch.Error.Refused"_s);
    QVERIFY2(asking.errorText().contains(u"30 seconds"_s), qPrintable(asking.errorText()));
    QTRY_COMPARE(mService->closed, QList<uint>{mService->lastId()});
}

void KeyWatchTest::withoutNotificationServiceItIsRefused()
{
    mService.reset();
    Client &asking = client(u"first"_s);
    asking.ask();
    QTRY_VERIFY(asking.isAnswered());
    QCOMPARE(asking.error(), u"org.quillkestra.KeyWatch.Error.NoQuestion"_s);
    QVERIFY2(asking.errorText().contains(u"notification service"_s), qPrintable(asking.errorText()));
}

void KeyWatchTest::withoutButtonsItIsRefused()
{
    mService->capabilities = QStringList{u"body"_s};
    Client &asking = client(u"first"_s);
    asking.ask();
    QTRY_VERIFY(asking.isAnswered());
    QCOMPARE(asking.error(), u"org.quillkestra.KeyWatch.Error.NoQuestion"_s);
    QVERIFY2(asking.errorText().contains(u"buttons"_s), qPrintable(asking.errorText()));
}

void KeyWatchTest::secondCallerIsRefused()
{
    Client &asking = client(u"first"_s);
    Client &second = client(u"second"_s);
    asking.ask();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    second.ask();
    QTRY_VERIFY(second.isAnswered());
    QCOMPARE(second.error(), u"org.quillkestra.KeyWatch.Error.Busy"_s);
    QTRY_VERIFY(mService->hasAnswered());
    mService->press(u"allow"_s);
    QTRY_VERIFY(asking.isAnswered());
    second.ask();
    QTRY_VERIFY(second.isAnswered());
    QCOMPARE(second.error(), u"org.quillkestra.KeyWatch.Error.Busy"_s);
    press(keyA);
    QTRY_COMPARE(asking.lines().size(), 4);
    QCOMPARE(mService->bubbles.size(), 2);
}

void KeyWatchTest::endsWithTheCaller()
{
    allow(client(u"first"_s));
    client(u"first"_s).leave();
    QTRY_COMPARE(mService->closed.value(mService->closed.size() - 1), mService->lastId());
    press(keyA);
    QVERIFY(!mCurrent->takeTapped());
    QVERIFY(!mDeadline);
    mClients.clear();
    allow(client(u"second"_s));
}

void KeyWatchTest::questionGoesWithTheCaller()
{
    client(u"first"_s).ask();
    QTRY_COMPARE(mService->bubbles.size(), 1);
    QTRY_VERIFY(mService->hasAnswered());
    client(u"first"_s).leave();
    QTRY_COMPARE(mService->closed, QList<uint>{mService->lastId()});
    QTRY_VERIFY(!mDeadline);
}

void KeyWatchTest::endsWithThePipe()
{
    Client &asking = client(u"first"_s);
    allow(asking);
    asking.closePipe();
    QTRY_COMPARE(mService->closed.value(mService->closed.size() - 1), mService->lastId());
    press(keyA);
    QVERIFY(!mCurrent->takeTapped());
}

void KeyWatchTest::endsAfterAMinute()
{
    Client &asking = client(u"first"_s);
    allow(asking);
    passTime(59s);
    press(keyA);
    QTRY_COMPARE(asking.lines().size(), 4);
    passTime(1s);
    QTRY_VERIFY(asking.isAtEnd());
    QCOMPARE(asking.lines().last(), u"end time over"_s);
    QTRY_COMPARE(mService->closed.value(mService->closed.size() - 1), mService->lastId());
    press(keyA);
    QVERIFY(!mCurrent->takeTapped());
    QCOMPARE(asking.lines().size(), 5);
}

void KeyWatchTest::endsWithItsNotification_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("button") << u"stop"_s;
    QTest::newRow("dismissed") << u"dismissed"_s;
    QTest::newRow("end of the service") << u"service"_s;
}

void KeyWatchTest::endsWithItsNotification()
{
    QFETCH(QString, how);
    Client &asking = client(u"first"_s);
    allow(asking);
    if (how == "stop"_L1)
        mService->press(how);
    else if (how == "dismissed"_L1)
        mService->dismiss();
    else
        mService.reset();
    QTRY_VERIFY(asking.isAtEnd());
    QCOMPARE(asking.lines(), QStringList{u"end stopped"_s});
    press(keyA);
    QVERIFY(!mCurrent->takeTapped());
}

void KeyWatchTest::fullPipeLosesEventsAndCountsThem()
{
    Client &asking = client(u"first"_s);
    allow(asking);
    int sent = 0;
    // More than the pipe and the tap hold. The caller reads nothing meanwhile.
    for (int round = 0; round < 8; ++round) {
        for (int count = 0; count < 200; ++count, sent += 4)
            press(keyA);
        QTRY_VERIFY(!mCurrent->takeTapped()); // passed on, or lost
    }
    QStringList lines;
    quint64 lost = 0;
    const auto read = [&] {
        lines = asking.lines();
        lost = 0;
        for (const QString &line : lines) {
            if (line.startsWith("lost "_L1))
                lost += line.sliced(5).toULongLong();
        }
        return lines.filter(u"usage"_s).size() + static_cast<qsizetype>(lost);
    };
    QTRY_VERIFY(read() > 0 && lost > 0);
    press(keyA);
    QTRY_COMPARE(asking.lines().last(), u"computer usage 7 4 0"_s); // it goes on
    QVERIFY(mWatch != nullptr);
}

void KeyWatchTest::followsTheKeyboardInUse()
{
    Client &asking = client(u"first"_s);
    allow(asking);
    mCurrent->use(*mOther, SettingsDocument::minimal());
    QVERIFY(mOther->press(keys, keyA));
    QTRY_COMPARE(asking.lines(), (QStringList{u"keyboard usage 7 4 1"_s, u"computer usage 7 4 1"_s}));
    passTime(60s);
    QVERIFY(mOther->release(keys, keyA));
    QVERIFY(!mCurrent->takeTapped());
}

void KeyWatchTest::busCarriesNoKeys()
{
    const QString program = QStandardPaths::findExecutable(u"dbus-monitor"_s);
    if (program.isEmpty())
        QSKIP("no dbus-monitor");
    QProcess monitor;
    monitor.start(program, {u"--session"_s});
    QByteArray seen;
    QTRY_VERIFY((seen += monitor.readAllStandardOutput()).contains("NameLost"));
    Client &asking = client(u"first"_s);
    allow(asking);
    seen += monitor.readAllStandardOutput();
    press(keyA);
    QTRY_COMPARE(asking.lines().size(), 4);
    mService->press(u"stop"_s);
    QTRY_VERIFY(asking.isAtEnd());
    QTRY_VERIFY((seen += monitor.readAllStandardOutput()).contains("\"stop\""));
    QVERIFY(seen.contains("member=Start"));
    QVERIFY(!seen.contains("usage 7"));
    const QByteArray daemon = "sender=" + QDBusConnection::sessionBus().baseService().toUtf8() + ' ';
    for (const QByteArray &line : seen.split('\n'))
        QVERIFY2(!line.startsWith("signal ") || !line.contains(daemon), line.constData());
    monitor.kill();
    monitor.waitForFinished();
}

QTEST_GUILESS_MAIN(KeyWatchTest)
#include "keywatchtest.moc"
