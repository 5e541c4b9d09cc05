// SPDX-License-Identifier: MIT
// The times at which the daemon looks for a desktop, and the variables it uses, on a private bus with the test's own
// service manager.
#include "daemon/frontapplication/desktopsearch.h"
#include "tests/daemon/frontapplication/usermanagerservice.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Works when $DISPLAY names the existing display.
class NamedDisplay : public FrontApplicationSource
{
public:
    explicit NamedDisplay(const QByteArray &display) : mDisplay(display) {}

    void start() override
    {
        if (!mDisplay.isEmpty() && qgetenv("DISPLAY") == mDisplay)
            Q_EMIT ready();
        else
            fail(u"not there"_s);
    }
    void lose() { fail(u"lost"_s); }

private:
    QByteArray mDisplay;
};

} // namespace

class DesktopSearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void variablesComeFromTheManager();
    void ownVariableOfTheDaemonStays();
    void variablesDisappearWithTheSession();
    void withoutAManagerTheDaemonUsesItsOwnVariables();
    void retriesAreFew();
    void signIsFollowedByAnAttempt_data();
    void signIsFollowedByAnAttempt();
    void otherEventsCauseNoAttempt();
    void foundDesktopEndsTheSearch();
    void lostDesktopIsSearchedAgain();

private:
    void search(std::chrono::milliseconds firstPause = 1ms);
    /// Waits until only a sign can cause an attempt.
    void waitUntilAsleep();
    [[nodiscard]] QString inRuntimeFolder(const QString &name) const { return mRuntime->filePath(name); }
    void makeSocket(const QString &path);
    void restartManager();
    /// Causes an event by name; see signIsFollowedByAnAttempt_data().
    void happen(const QString &sign);

    QByteArray mDisplay; // the existing display
    std::unique_ptr<QTemporaryDir> mRuntime;
    std::unique_ptr<QTemporaryDir> mX11;
    std::unique_ptr<UserManagerService> mManager;
    std::unique_ptr<FrontApplicationWatch> mWatch;
    std::unique_ptr<QSignalSpy> mMissing;
    std::unique_ptr<DesktopSearch> mSearch;
    QPointer<NamedDisplay> mSource;
};

void DesktopSearchTest::init()
{
    for (const QString &name : SessionEnvironment::variables())
        qunsetenv(name.toLatin1().constData());
    mDisplay.clear();
    mRuntime = std::make_unique<QTemporaryDir>();
    mX11 = std::make_unique<QTemporaryDir>();
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(mRuntime->path()));
    mManager = std::make_unique<UserManagerService>();
}

void DesktopSearchTest::cleanup()
{
    mSearch.reset();
    mWatch.reset();
    mManager.reset();
    QDBusConnection::disconnectFromBus(u"desktop"_s);
}

void DesktopSearchTest::search(std::chrono::milliseconds firstPause)
{
    mWatch = std::make_unique<FrontApplicationWatch>(
        std::vector<FrontApplicationWatch::SourceKind>{{"display"_L1, [this] {
                                                            auto source = std::make_unique<NamedDisplay>(mDisplay);
                                                            mSource = source.get();
                                                            return source;
                                                        }}});
    mMissing = std::make_unique<QSignalSpy>(mWatch.get(), &FrontApplicationWatch::sourceMissing);
    mSearch = std::make_unique<DesktopSearch>(*mWatch, QDBusConnection::sessionBus(), firstPause, mX11->path());
    mSearch->start();
}

void DesktopSearchTest::waitUntilAsleep()
{
    QTRY_COMPARE(mMissing->size(), 1 + DesktopSearch::retries);
    QVERIFY(!mSearch->isRetrying());
}

void DesktopSearchTest::makeSocket(const QString &path)
{
    QFile file(path); // an ordinary file suffices as a sign
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void DesktopSearchTest::variablesComeFromTheManager()
{
    mDisplay = ":7";
    mManager->setEnvironment({u"HOME=/nobody"_s, u"DISPLAY_OTHER=:6"_s, u"DISPLAY=:7"_s, u"XAUTHORITY=/a=b"_s});
    const QByteArray home = qgetenv("HOME");
    search();
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    QCOMPARE(mMissing->size(), 0); // at the first attempt
    QCOMPARE(qgetenv("XAUTHORITY"), QByteArray("/a=b"));
    QCOMPARE(qgetenv("HOME"), home);
}

void DesktopSearchTest::ownVariableOfTheDaemonStays()
{
    mDisplay = ":7";
    qputenv("DISPLAY", ":7");
    mManager->setEnvironment({u"DISPLAY=:8"_s, u"WAYLAND_DISPLAY=wayland-8"_s});
    search();
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    QCOMPARE(qgetenv("WAYLAND_DISPLAY"), QByteArray("wayland-8"));
}

void DesktopSearchTest::variablesDisappearWithTheSession()
{
    mDisplay = ":7";
    mManager->setEnvironment({u"DISPLAY=:7"_s});
    search();
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    mManager->setEnvironment({});
    mDisplay.clear();
    QTest::ignoreMessage(QtWarningMsg, "desktop: display: lost");
    mSource->lose();
    QTRY_VERIFY(!qEnvironmentVariableIsSet("DISPLAY"));
}

void DesktopSearchTest::withoutAManagerTheDaemonUsesItsOwnVariables()
{
    mManager.reset();
    mDisplay = ":7";
    qputenv("DISPLAY", ":7");
    search();
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
}

void DesktopSearchTest::retriesAreFew()
{
    search();
    waitUntilAsleep();
    // The last retry finds it, because it reads the variables like the first attempt.
    QCOMPARE(mManager->readings, 1 + DesktopSearch::retries);
    QTest::qWait(100); // far more than the longest pause of this test
    QCOMPARE(mMissing->size(), 1 + DesktopSearch::retries);
}

void DesktopSearchTest::restartManager()
{
    const QStringList environment = mManager->environment();
    mManager.reset(); // before the next one takes its name
    mManager = std::make_unique<UserManagerService>(environment);
}

void DesktopSearchTest::happen(const QString &sign)
{
    if (sign == "compositor"_L1)
        makeSocket(inRuntimeFolder(u"wayland-0"_s));
    else if (sign == "X server"_L1)
        makeSocket(mX11->filePath(u"X7"_s));
    else if (sign == "session"_L1)
        mManager->endJob(u"graphical-session.target"_s);
    else if (sign == "other job"_L1)
        mManager->endJob(u"other.service"_s);
    else if (sign == "other file"_L1)
        makeSocket(inRuntimeFolder(u"pulse"_s));
    else if (sign == "manager"_L1)
        restartManager();
    else
        QVERIFY(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"desktop"_s).registerService(sign));
}

void DesktopSearchTest::signIsFollowedByAnAttempt_data()
{
    QTest::addColumn<QString>("sign");
    for (const char *sign : {"compositor", "X server", "session", "manager", "org.kde.KWin", "org.gnome.Shell"})
        QTest::newRow(sign) << QString::fromLatin1(sign);
}

void DesktopSearchTest::signIsFollowedByAnAttempt()
{
    QFETCH(QString, sign);
    search();
    waitUntilAsleep();
    QTRY_COMPARE(mManager->subscribers, 1);
    mDisplay = ":7";
    mManager->setEnvironment({u"DISPLAY=:7"_s});
    happen(sign);
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    QCOMPARE(mMissing->size(), 1 + DesktopSearch::retries);
}

void DesktopSearchTest::otherEventsCauseNoAttempt()
{
    makeSocket(inRuntimeFolder(u"wayland-0"_s));
    search();
    waitUntilAsleep();
    happen(u"other file"_s);
    happen(u"other job"_s);
    QVERIFY(QFile::remove(inRuntimeFolder(u"wayland-0"_s)));
    happen(u"org.example.Program"_s);
    QTest::qWait(100);
    QCOMPARE(mMissing->size(), 1 + DesktopSearch::retries);
    makeSocket(inRuntimeFolder(u"wayland-0"_s)); // left by a crash
    QTRY_VERIFY(mMissing->size() > 1 + DesktopSearch::retries);
}

void DesktopSearchTest::foundDesktopEndsTheSearch()
{
    search();
    waitUntilAsleep();
    QTRY_COMPARE(mManager->subscribers, 1);
    mDisplay = ":7";
    mManager->setEnvironment({u"DISPLAY=:7"_s});
    happen(u"X server"_s);
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    QTRY_COMPARE(mManager->subscribers, 0);
    const int readings = mManager->readings;
    happen(u"compositor"_s);
    happen(u"org.kde.KWin"_s);
    QTest::qWait(100);
    QCOMPARE(mManager->readings, readings);
    QVERIFY(!mSearch->isRetrying());
}

void DesktopSearchTest::lostDesktopIsSearchedAgain()
{
    mDisplay = ":7";
    mManager->setEnvironment({u"DISPLAY=:7"_s});
    search();
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
    mDisplay.clear();
    QTest::ignoreMessage(QtWarningMsg, "desktop: display: lost");
    mSource->lose();
    waitUntilAsleep();
    mDisplay = ":8"; // another session
    mManager->setEnvironment({u"DISPLAY=:8"_s});
    happen(u"session"_s);
    QTRY_COMPARE(mWatch->sourceName(), u"display"_s);
}

QTEST_GUILESS_MAIN(DesktopSearchTest)
#include "desktopsearchtest.moc"
