// SPDX-License-Identifier: MIT
// Several daemons at once, on one bus or with one state folder. One serves, and the others exit with the code for this.
// No change is lost, even while daemons start and when the serving one is killed.
#include "base/settingskeys.h"
#include "daemon/daemonprocess.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/testbus.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

class TwoDaemonsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void othersEndWhileChangesAreMade();
    void oneOfManyServes();
    void folderOfADaemonOnAnotherBus();

private:
    using Processes = std::vector<std::unique_ptr<QProcess>>;

    static Processes startMany(int count, const QProcessEnvironment &environment);
    static void addMacro(DaemonProcessFixture &daemon, const QString &name);
    static QStringList macros(DaemonProcessFixture &daemon);
};

TwoDaemonsTest::Processes TwoDaemonsTest::startMany(int count, const QProcessEnvironment &environment)
{
    Processes processes;
    for (int number = 0; number < count; ++number) {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->start(builtExecutable(u"QuillKestraDaemon"_s), QStringList());
        processes.push_back(std::move(process));
    }
    return processes;
}

void TwoDaemonsTest::addMacro(DaemonProcessFixture &daemon, const QString &name)
{
    const QVariantMap macro{
        {SettingsKeys::macroName, name}, {SettingsKeys::delay, 0}, {SettingsKeys::sequence, QVariantMap()}};
    const auto reply = daemon.request(Command::addMacro, {{DaemonProtocol::macroContents, macro}});
    QVERIFY(reply);
    QCOMPARE(reply->values.value(DaemonProtocol::returnStatus), QVariant(0));
}

QStringList TwoDaemonsTest::macros(DaemonProcessFixture &daemon)
{
    QStringList names;
    if (const auto reply = daemon.request(Command::readSettings)) {
        const QVariantMap document = reply->values.value(DaemonProtocol::allDevSettings).toMap();
        for (const QVariant &macro : document.value(SettingsKeys::macros).toList())
            names += macro.toMap().value(SettingsKeys::macroName).toString();
    }
    return names;
}

void TwoDaemonsTest::othersEndWhileChangesAreMade()
{
    DaemonProcessFixture daemon;
    QVERIFY(daemon.start());
    QStringList acknowledged;
    for (int round = 0; round < 5; ++round) {
        Processes others = startMany(2, daemon.environment());
        const auto hasEnded = [](const auto &process) { return process->state() == QProcess::NotRunning; };
        do {
            acknowledged += QString::number(acknowledged.size());
            addMacro(daemon, acknowledged.constLast());
        } while (!QTest::currentTestFailed() && acknowledged.size() < 250 && !std::ranges::all_of(others, hasEnded));
        for (const auto &other : others) {
            QVERIFY(awaitEvents([&] { return hasEnded(other); }));
            QCOMPARE(other->exitStatus(), QProcess::NormalExit);
            QCOMPARE(other->exitCode(), static_cast<int>(DaemonExit::alreadyRunning));
        }
    }
    QCOMPARE(macros(daemon), acknowledged);
    daemon.kill();
    QVERIFY(daemon.start());
    QCOMPARE(macros(daemon), acknowledged);
}

// Like a session that starts several daemons after each crash of the serving one.
void TwoDaemonsTest::oneOfManyServes()
{
    DaemonProcessFixture client; // until the end without a daemon of its own
    QStringList acknowledged;
    for (int round = 0; round < 5; ++round) {
        Processes daemons = startMany(3, client.environment());
        const auto isRunning = [](const auto &process) { return process->state() != QProcess::NotRunning; };
        QVERIFY(awaitEvents([&] {
            return std::ranges::count_if(daemons, isRunning) <= 1
                   && RemoteMessagePort::open(DaemonProtocol::requestPortName);
        }));
        acknowledged += QString::number(round);
        addMacro(client, acknowledged.constLast());
        QCOMPARE(macros(client), acknowledged);
        QCOMPARE(std::ranges::count_if(daemons, isRunning), 1);
        for (const auto &daemon : daemons) {
            if (!isRunning(daemon)) {
                QCOMPARE(daemon->exitCode(), static_cast<int>(DaemonExit::alreadyRunning));
                continue;
            }
            daemon->kill();
            QVERIFY(daemon->waitForFinished());
        }
        QVERIFY(awaitEvents([] { return !RemoteMessagePort::open(DaemonProtocol::requestPortName); }));
    }
    QVERIFY(client.start());
    QCOMPARE(macros(client), acknowledged);
    QCOMPARE(QDir(client.settingsFolder()).entryList({u"*.damaged-*"_s, u"*.replaced-*"_s}), QStringList());
}

void TwoDaemonsTest::folderOfADaemonOnAnotherBus()
{
    DaemonProcessFixture daemon;
    QVERIFY(daemon.start());
    addMacro(daemon, u"first"_s);
    TestBus bus;
    QVERIFY(bus.start());
    Processes other = startMany(1, bus.in(daemon.environment()));
    addMacro(daemon, u"second"_s);
    QVERIFY(awaitEvents([&] { return other[0]->state() == QProcess::NotRunning; }));
    QCOMPARE(other[0]->exitCode(), static_cast<int>(DaemonExit::alreadyRunning));
    QVERIFY(other[0]->readAllStandardError().contains("another daemon"));
    addMacro(daemon, u"third"_s);
    daemon.kill();
    // No daemon holds the folder now.
    other = startMany(1, bus.in(daemon.environment()));
    QByteArray log;
    QVERIFY(awaitEvents([&] { return (log += other[0]->readAllStandardError()).contains("ready"); }));
    const KestractlResult list = runKestractl({u"macro"_s, u"list"_s}, bus.in(daemon.environment()));
    for (const QString &name : {u"first"_s, u"second"_s, u"third"_s})
        QVERIFY2(list.text().contains(name), qPrintable(list.text() + list.errorText()));
    other[0]->terminate();
    QVERIFY(awaitEvents([&] { return other[0]->state() == QProcess::NotRunning; }));
    QCOMPARE(other[0]->exitCode(), static_cast<int>(DaemonExit::ended));
}

QTEST_GUILESS_MAIN(TwoDaemonsTest)
#include "twodaemonstest.moc"
