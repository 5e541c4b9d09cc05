// SPDX-License-Identifier: MIT
#include "tests/support/daemonprocessfixture.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int waitMs = 20'000;
const QString keyboardInterface = DaemonProtocol::virtualKeyboardInterface;

QString daemonPath()
{
    return qEnvironmentVariable("KESTRA_BIN_DIR") + u"/QuillKestraDaemon"_s;
}

QDBusMessage callObject(const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(messagePortBusName(DaemonProtocol::requestPortName),
                                                       DaemonProtocol::virtualKeyboardPath, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

} // namespace

DaemonProcessFixture::DaemonProcessFixture()
    : mEnvironment(QProcessEnvironment::systemEnvironment()), mProgram(daemonPath())
{
    mEnvironment.insert(u"XDG_STATE_HOME"_s, mFolder.filePath(u"state"_s));
    mEnvironment.insert(u"QUILL_KESTRA_RESOURCES"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources"_s);
    // Not the desktop of the user who runs the tests, because its windows come to the front at any time.
    mEnvironment.remove(u"DISPLAY"_s);
    mEnvironment.remove(u"WAYLAND_DISPLAY"_s);
    const auto receive = [this](qint32 command, const std::optional<QByteArray> &data) -> std::optional<QByteArray> {
        mReplies += {command, QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap())};
        return data;
    };
    mPort = LocalMessagePort::create(portName(), receive, QDBusConnection::sessionBus());
}

DaemonProcessFixture::~DaemonProcessFixture()
{
    if (!isRunning())
        return;
    resume(); // a failed test may have left it suspended
    terminate();
}

bool DaemonProcessFixture::start(const std::function<void()> &inChild)
{
    mLog.clear();
    mProcess = std::make_unique<QProcess>();
    mProcess->setProcessEnvironment(mEnvironment);
    if (inChild)
        mProcess->setChildProcessModifier(inChild);
    mProcess->start(mProgram, {});
    if (!mProcess->waitForStarted(waitMs))
        return false;
    return QTest::qWaitFor(
               [this] { return !isRunning() || RemoteMessagePort::open(DaemonProtocol::requestPortName).has_value(); },
               waitMs)
           && isRunning() && mPort;
}

bool DaemonProcessFixture::store(const QVariantMap &document) const
{
    return QDir().mkpath(settingsFolder())
           && PropertyList::writePropertyListFile(settingsFolder() + u"/settings.plist"_s, document);
}

void DaemonProcessFixture::kill()
{
    mProcess->kill();
    mProcess->waitForFinished(waitMs);
    (void)QTest::qWaitFor([] { return !RemoteMessagePort::open(DaemonProtocol::requestPortName); }, waitMs);
}

int DaemonProcessFixture::sendSignal(int signalNumber)
{
    ::kill(static_cast<pid_t>(mProcess->processId()), signalNumber);
    mProcess->waitForFinished(waitMs);
    (void)QTest::qWaitFor([] { return !RemoteMessagePort::open(DaemonProtocol::requestPortName); }, waitMs);
    return mProcess->exitStatus() == QProcess::NormalExit ? mProcess->exitCode() : -1;
}

QProcess *DaemonProcessFixture::runAnother(const QStringList &arguments, const QString &stateHome)
{
    mOther = std::make_unique<QProcess>();
    QProcessEnvironment environment = mEnvironment;
    if (!stateHome.isEmpty())
        environment.insert(u"XDG_STATE_HOME"_s, stateHome);
    mOther->setProcessEnvironment(environment);
    mOther->start(daemonPath(), arguments);
    mOther->waitForFinished(waitMs);
    return mOther.get();
}

void DaemonProcessFixture::send(DaemonProtocol::Command command, QVariantMap request)
{
    request.insert(DaemonProtocol::productIdKey, DaemonProtocol::productId);
    request.insert(DaemonProtocol::responsePortName, portName());
    if (const auto port = RemoteMessagePort::open(DaemonProtocol::requestPortName))
        port->post(static_cast<qint32>(command), QlCoreUtility::convertDictionaryToData(request).value());
}

std::optional<DaemonProcessFixture::Reply> DaemonProcessFixture::request(DaemonProtocol::Command command,
                                                                         const QVariantMap &request)
{
    mReplies.clear();
    send(command, request);
    if (!QTest::qWaitFor([this] { return !mReplies.isEmpty(); }, waitMs))
        return {};
    return mReplies.takeFirst();
}

QString DaemonProcessFixture::callKeyboard(const QString &method, const QVariantList &arguments)
{
    return callObject(keyboardInterface, method, arguments).errorName();
}

QVariant DaemonProcessFixture::keyboardProperty(const QString &name)
{
    const QDBusMessage reply = callObject(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {keyboardInterface, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}
