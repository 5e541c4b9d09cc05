// SPDX-License-Identifier: MIT
#include "daemon/launch/transientservice.h"
#include "tests/support/testmain.h"

#include "daemon/launch/programlauncher.h"
#include "tests/support/writtenfile.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A simulated service manager of the user.
class StandInManager : public QDBusVirtualObject
{
public:
    StandInManager() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"manager"_s))
    {
        mBus.registerVirtualObject(u"/org/freedesktop/systemd1"_s, this);
        mBus.registerService(u"org.freedesktop.systemd1"_s);
    }
    ~StandInManager() override
    {
        mBus.unregisterService(u"org.freedesktop.systemd1"_s);
        QDBusConnection::disconnectFromBus(u"manager"_s);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        mCalls += message;
        return connection.send(
            mRefusal.isEmpty()
                ? message.createReply(QVariant::fromValue(QDBusObjectPath(u"/org/freedesktop/systemd1/job/1"_s)))
                : message.createErrorReply(u"org.freedesktop.DBus.Error.InvalidArgs"_s, mRefusal));
    }

    QList<QDBusMessage> mCalls;
    QString mRefusal;

private:
    QDBusConnection mBus;
};

/// The properties of a call as texts. Those of the command are its program, arguments and flags.
QMap<QString, QString> propertiesOf(const QDBusMessage &call)
{
    QMap<QString, QString> result;
    const auto list = call.arguments().value(2).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QDBusVariant value;
        list.beginStructure();
        list >> name >> value;
        list.endStructure();
        if (name != u"ExecStartEx"_s) {
            result.insert(name, value.variant().toString());
            continue;
        }
        const auto commands = value.variant().value<QDBusArgument>();
        QString program;
        QStringList arguments;
        QStringList flags;
        commands.beginArray();
        commands.beginStructure();
        commands >> program >> arguments >> flags;
        commands.endStructure();
        commands.endArray();
        result.insert(name, program + u'|' + arguments.join(u',') + u'|' + flags.join(u','));
    }
    list.endArray();
    return result;
}

} // namespace

class TransientServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void managerGetsTheUnchangedCommand();
    void eachProgramIsASeparateService();
    void refusalIsReported();
    void missingManagerIsReported();
    void isNeededByARestrictedProcess();
    void restrictedProcessLaunchesByTheManager();

private:
    static void start(QString *failure = nullptr)
    {
        TransientService::start(QDBusConnection::sessionBus(), {u"/bin/game"_s, u"--title=A b"_s, u"$HOME %h"_s},
                                u"/opt/a game"_s, QCoreApplication::instance(), [failure](const QString &reason) {
                                    if (failure)
                                        *failure = reason;
                                });
    }
};

void TransientServiceTest::managerGetsTheUnchangedCommand()
{
    StandInManager manager;
    start();
    QTRY_COMPARE(manager.mCalls.size(), 1);
    const QDBusMessage call = manager.mCalls.first();
    QCOMPARE(call.member(), u"StartTransientUnit"_s);
    QCOMPARE(call.interface(), u"org.freedesktop.systemd1.Manager"_s);
    QCOMPARE(call.signature(), u"ssa(sv)a(sa(sv))"_s);
    QVERIFY(QRegularExpression(u"^app-quillkestra-[0-9a-f]{32}\\.service$"_s)
                .match(call.arguments().value(0).toString())
                .hasMatch());
    const QMap<QString, QString> properties = propertiesOf(call);
    QCOMPARE(properties.value(u"ExecStartEx"_s), u"/bin/game|/bin/game,--title=A b,$HOME %h|no-env-expand"_s);
    QCOMPARE(properties.value(u"WorkingDirectory"_s), u"/opt/a game"_s);
    QCOMPARE(properties.value(u"ExitType"_s), u"cgroup"_s);
    QCOMPARE(properties.value(u"CollectMode"_s), u"inactive-or-failed"_s);
}

void TransientServiceTest::eachProgramIsASeparateService()
{
    StandInManager manager;
    start();
    start();
    QTRY_COMPARE(manager.mCalls.size(), 2);
    QVERIFY(manager.mCalls.at(0).arguments().first() != manager.mCalls.at(1).arguments().first());
}

void TransientServiceTest::refusalIsReported()
{
    StandInManager manager;
    manager.mRefusal = u"no such property"_s;
    QString failure;
    start(&failure);
    QTRY_COMPARE(failure, manager.mRefusal);
}

void TransientServiceTest::missingManagerIsReported()
{
    QString failure;
    start(&failure);
    QTRY_VERIFY(!failure.isEmpty());
}

void TransientServiceTest::isNeededByARestrictedProcess()
{
    const bool isNeeded = TransientService::isNeeded();
    QCOMPARE(isNeeded, ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1);
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0); // permanent, therefore in a child process
        ::_exit(TransientService::isNeeded() ? 0 : 1);
    }
    int status = -1;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
}

// The last test, because this process stays restricted.
void TransientServiceTest::restrictedProcessLaunchesByTheManager()
{
    QTemporaryDir folder;
    const QString entry = writeDesktopEntry(folder.filePath(u"game.desktop"_s), "Exec=/bin/true x\nPath=/tmp\n");
    QCOMPARE(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    {
        StandInManager manager;
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"a key starts \".*/game.desktop\": /bin/true$"_s));
        ProgramLauncher::launch(entry);
        QTRY_COMPARE(manager.mCalls.size(), 1);
        QCOMPARE(propertiesOf(manager.mCalls.first()).value(u"ExecStartEx"_s),
                 u"/bin/true|/bin/true,x|no-env-expand"_s);
    }
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"a key starts"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot start .*: the user's service manager: "_s));
    ProgramLauncher::launch(entry);
    QObject *const application = QCoreApplication::instance();
    QTRY_VERIFY(application->findChildren<QDBusPendingCallWatcher *>().isEmpty());
}

QTEST_GUILESS_MAIN(TransientServiceTest)
#include "transientservicetest.moc"
