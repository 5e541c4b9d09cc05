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

class LostBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsEveryChangeOnTheNextBus();
    void windowWithoutADaemonReportsTheEndOfTheBus();

private:
    /// Starts a daemon on the bus and waits until it is ready.
    void startDaemon(QProcess &daemon, const TestBus &bus);
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

void LostBusTest::startDaemon(QProcess &daemon, const TestBus &bus)
{
    daemon.setProcessEnvironment(bus.in(mEnvironment));
    daemon.start(builtExecutable(u"QuillKestraDaemon"_s), QStringList());
    QByteArray log;
    QVERIFY2(awaitEvents([&] { return (log += daemon.readAllStandardError()).contains("ready"); }), log.constData());
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
    TestBus first;
    QVERIFY(first.start());
    QProcess daemon;
    startDaemon(daemon, first);
    WindowFixture window;
    QVERIFY(window.start(first.in(QProcessEnvironment::systemEnvironment())));
    QCOMPARE(key(first, u"A"_s, {u"disable"_s}), u"A: disabled"_s);
    // The window builds its next change on the document that it knows, so it must have read this change.
    QVERIFY(awaitEvents([&] { return window.show().value(u"updates"_s).toInt() > 0; }));
    QCOMPARE(window.ask("choose S 5"), "done");
    QCOMPARE(key(first, u"S"_s), u"S: disabled"_s);
    QVERIFY(window.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(window.show().value(u"alerts"_s).toArray().size(), 0);

    first.end();
    QVERIFY(awaitEvents([&] { return daemon.state() == QProcess::NotRunning; }));
    QCOMPARE(daemon.exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon.exitCode(), static_cast<int>(DaemonExit::noBus));
    QVERIFY2(alertOf(window).contains(u"session"_s), qPrintable(alertOf(window)));
    QVERIFY(!window.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(window.finish(), 0);

    TestBus second;
    QVERIFY(second.start());
    QProcess nextDaemon;
    startDaemon(nextDaemon, second);
    QCOMPARE(key(second, u"A"_s), u"A: disabled"_s);
    QCOMPARE(key(second, u"S"_s), u"S: disabled"_s);
    WindowFixture nextWindow;
    QVERIFY(nextWindow.start(second.in(QProcessEnvironment::systemEnvironment())));
    QVERIFY(nextWindow.show().value(u"isEnabled"_s).toBool());
    QCOMPARE(nextWindow.ask("choose D 5"), "done");
    for (const QString &name : {u"A"_s, u"S"_s, u"D"_s})
        QCOMPARE(key(second, name), name + u": disabled"_s);
    nextDaemon.terminate();
    QVERIFY(awaitEvents([&] { return nextDaemon.state() == QProcess::NotRunning; }));
}

void LostBusTest::windowWithoutADaemonReportsTheEndOfTheBus()
{
    TestBus bus;
    QVERIFY(bus.start());
    QProcess daemon;
    startDaemon(daemon, bus);
    WindowFixture window;
    QVERIFY(window.start(bus.in(QProcessEnvironment::systemEnvironment())));
    daemon.kill();
    QVERIFY(daemon.waitForFinished());
    QCOMPARE(window.show().value(u"alerts"_s).toArray().size(), 0); // a supervisor starts the daemon again
    bus.end();
    QVERIFY2(alertOf(window).contains(u"session"_s), qPrintable(alertOf(window)));
    QCOMPARE(window.finish(), 0);
}

QTEST_GUILESS_MAIN(LostBusTest)
#include "lostbustest.moc"
