// SPDX-License-Identifier: MIT
// A client that floods the daemon and never reads a reply. The daemon meanwhile serves other clients, keeps the changes
// of all, and needs a bounded amount of memory.
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "tests/chaos/chaosrun.h"
#include "tests/chaos/deafconnection.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

/// The peak memory use of the process in KiB; 0 when it is unknown.
qint64 peakKiB(qint64 process)
{
    QFile file(u"/proc/%1/status"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

} // namespace

class DeafClientTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void othersAreServed();

private:
    static QVariantMap renaming(int profile, const QString &name);
    static QByteArray request(QVariantMap values);
    /// The names of the profiles.
    static QStringList names(DaemonProcessFixture &daemon);
};

QVariantMap DeafClientTest::renaming(int profile, const QString &name)
{
    const QVariantMap settings{{SettingsKeys::profileName, name}};
    return {{DaemonProtocol::profileId, profile}, {DaemonProtocol::deviceSettingsDictionary, settings}};
}

QByteArray DeafClientTest::request(QVariantMap values)
{
    values.insert(DaemonProtocol::responsePortName, u"DeafPort"_s);
    return QlCoreUtility::convertDictionaryToData(values).value();
}

QStringList DeafClientTest::names(DaemonProcessFixture &daemon)
{
    QStringList result;
    if (const auto reply = daemon.request(Command::readSettings)) {
        const QVariantMap document = reply->values.value(DaemonProtocol::allDevSettings).toMap();
        for (const QVariant &profile : document.value(SettingsKeys::profiles).toList())
            result += profile.toMap().value(SettingsKeys::profileName).toString();
    }
    return result;
}

void DeafClientTest::othersAreServed()
{
    constexpr int rounds = 20;
    constexpr int readingsOfARound = 100;
    [[maybe_unused]] constexpr qint64 boundKiB = 32 * 1024; // a third of the replies to the flood
    DaemonProcessFixture daemon;
    QVERIFY(daemon.start());
    // A large document makes each reply to a reading large.
    const QVariantMap large{{SettingsKeys::profileName, u"large"_s}, {u"Notes"_s, QString(50'000, u'x')}};
    QVERIFY(daemon.request(Command::addProfile, {{DaemonProtocol::deviceSettingsDictionary, large}}));
    const qint64 before = peakKiB(daemon.processId());
    QVERIFY(before > 0);
    DeafConnection deaf;
    QVERIFY(deaf.open(u"DeafPort"_s));
    for (int round = 0; round < rounds; ++round) {
        for (int count = 0; count < readingsOfARound; ++count)
            QVERIFY(deaf.sendRequest(static_cast<qint32>(Command::readSettings), request({})));
        const QString name = QString::number(round);
        // The client reads no reply to this change. The document shows it once the readings before it have their
        // replies.
        QVERIFY(deaf.sendRequest(static_cast<qint32>(Command::updateProfile), request(renaming(1, name))));
        const auto reply = daemon.request(Command::updateProfile, renaming(0, name));
        QVERIFY2(reply, qPrintable(name));
        QCOMPARE(reply->values.value(DaemonProtocol::returnStatus), QVariant(0));
        QVERIFY(awaitEvents([&] { return names(daemon) == QStringList({name, name}); }));
    }
    const qint64 grownKiB = peakKiB(daemon.processId()) - before;
    qInfo("%d readings by a client that reads nothing, the daemon's memory grew by %lld KiB at most",
          rounds * readingsOfARound, grownKiB);
#if !defined(__SANITIZE_ADDRESS__) // which does not return freed memory to the system
    QVERIFY2(grownKiB < boundKiB, qPrintable(QString::number(grownKiB)));
#endif
    daemon.kill();
    QVERIFY(daemon.start());
    const QString last = QString::number(rounds - 1);
    QCOMPARE(names(daemon), QStringList({last, last}));
}

QTEST_GUILESS_MAIN(DeafClientTest)
#include "deafclienttest.moc"
