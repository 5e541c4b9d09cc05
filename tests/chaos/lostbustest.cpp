// SPDX-License-Identifier: MIT
// The session bus ends under a daemon and an open window. The daemon exits with the code for this, the window shows an
// alert, and a new start on a new bus has every acknowledged change.
#include "daemon/daemonprocess.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/testbus.h"
#include "tests/chaos/windowfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A bus with a daemon and a window on it.
struct Session
{
    TestBus bus;
    QProcess daemon;
    WindowFixture window;
};

} // namespace

class LostBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsEveryChangeOnTheNextBus();
    void windowWithoutADaemonReportsTheEndOfTheBus();

private:
    /// Starts the bus, then a daemon and waits until it is ready, then the window.
    void start(Session &session);
    /// The output of "kestractl key" on this bus, after `change` if there is one.
    [[nodiscard]] QString key(const TestBus &bus, const QString &name, const QStringList &change = {});
    /// Waits until the window has an alert. Returns its texts.
    static QString alertOf(WindowFixture &window);

    std::unique_ptr<QTemporaryDir> mFolder;
    QProcessEnvironment mEnvironment;
};

void LostBusTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mEnvironment = QProcessEnvironment::systemEnvironment();
    mEnvironment.insert(u"XDG_STATE_HOME"_s, mFolder->path());
    mEnvironment.insert(u"QUILL_KESTRA_RESOURCES"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources"_s);
    mEnvironment.remove(u"DISPLAY"_s);
    mEnvironment.remove(u"WAYLAND_DISPLAY"_s);
}

void LostBusTest::cleanup()
{
    mFolder.reset();
}

void LostBusTest::start(Session &session)
{
    QVERIFY(session.bus.start());
    session.daemon.setProcessEnvironment(session.bus.in(mEnvironment));
    session.daemon.start(builtExecutable(u"QuillKestraDaemon"_s), QStringList());
    QByteArray log;
    const bool isReady = awaitEvents([&] { return (log += session.daemon.readAllStandardError()).contains("ready"); });
    QVERIFY2(isReady, log.constData());
    QVERIFY(session.window.start(session.bus.in(QProcessEnvironment::systemEnvironment())));
}

QString LostBusTest::key(const TestBus &bus, const QString &name, const QStringList &change)
{
    const KestractlResult result = runKestractl(QStringList{u"key"_s, name} + change, bus.in(mEnvironment));
    return result.exitCode == 0 ? result.text().trimmed() : result.errorText();
}

QString LostBusTest::alertOf(WindowFixture &window)
{
    QString texts;
    (void)awaitEvents([&] {
        for (const QJsonValue &text : window.show().value(u"alerts"_s).toArray())
            texts += text.toString() + u'\n';
        return !texts.isEmpty();
    });
    return texts;
}

void LostBusTest::keepsEveryChangeOnTheNextBus()
{
    Session first;
    start(first);
    WindowFixture &window = first.window;
    QCOMPARE(key(first.bus, u"A"_s, {u"disable"_s}), u"A: disabled"_s);
    // The window builds its next change on the document that it knows, so it must have read this change.
    QVERIFY(awaitEvents([&] { return window.show().value(u"updates"_s).toInt() > 0; }));
    QCOMPARE(window.ask("choose S 5"), "done");
    QCOMPARE(key(first.bus, u"S"_s), u"S: disabled"_s);
    QVERIFY(window.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(window.show().value(u"alerts"_s).toArray().size(), 0);

    first.bus.end();
    QVERIFY(awaitEvents([&] { return first.daemon.state() == QProcess::NotRunning; }));
    QCOMPARE(first.daemon.exitStatus(), QProcess::NormalExit);
    QCOMPARE(first.daemon.exitCode(), static_cast<int>(DaemonExit::noBus));
    QVERIFY2(alertOf(window).contains(u"session"_s), qPrintable(alertOf(window)));
    QVERIFY(!window.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(window.finish(), 0);

    Session second;
    start(second);
    QCOMPARE(key(second.bus, u"A"_s), u"A: disabled"_s);
    QCOMPARE(key(second.bus, u"S"_s), u"S: disabled"_s);
    QVERIFY(second.window.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(second.window.ask("choose D 5"), "done");
    for (const QString &name : {u"A"_s, u"S"_s, u"D"_s})
        QCOMPARE(key(second.bus, name), name + u": disabled"_s);
    second.daemon.terminate();
    QVERIFY(awaitEvents([&] { return second.daemon.state() == QProcess::NotRunning; }));
}

void LostBusTest::windowWithoutADaemonReportsTheEndOfTheBus()
{
    Session session;
    start(session);
    WindowFixture &window = session.window;
    session.daemon.kill();
    QVERIFY(session.daemon.waitForFinished());
    QCOMPARE(window.show().value(u"alerts"_s).toArray().size(), 0); // a supervisor starts the daemon again
    session.bus.end();
    QVERIFY2(alertOf(window).contains(u"session"_s), qPrintable(alertOf(window)));
    QCOMPARE(window.finish(), 0);
}

QTEST_GUILESS_MAIN(LostBusTest)
#include "lostbustest.moc"
