// SPDX-License-Identifier: MIT
#include "tests/support/scripteddaemon.h"

#include "base/qlcoreutility.h"
#include "platform/distributednotificationcenter.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QDBusMessage>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage portMessage(const QString &port, int messageIdentifier, const QByteArray &data)
{
    QDBusMessage message = QDBusMessage::createMethodCall(messagePortBusName(port), u"/MessagePort"_s,
                                                          u"org.quillkestra.MessagePort"_s, u"SendRequest"_s);
    message << messageIdentifier << data;
    return message;
}

} // namespace

ScriptedDaemon::ScriptedDaemon(QVariantMap document)
    : mDocument(std::move(document)), mConnectionName(u"scripted-daemon-%1"_s.arg(quintptr(this)))
{
    appear();
}

ScriptedDaemon::~ScriptedDaemon()
{
    disappear();
    mThread.run([this] { QDBusConnection::disconnectFromBus(mConnectionName); });
}

void ScriptedDaemon::appear()
{
    mThread.run([this] {
        if (mPort)
            return;
        const auto connection = openSessionBus(mConnectionName);
        mPort = LocalMessagePort::create(
            DaemonProtocol::requestPortName,
            [this](qint32 command, const std::optional<QByteArray> &data) { return receive(command, data); },
            connection);
        Q_ASSERT(mPort);
    });
}

void ScriptedDaemon::disappear()
{
    mThread.run([this] { mPort.reset(); });
}

void ScriptedDaemon::run(const std::function<void(const QDBusConnection &connection)> &function)
{
    mThread.run([&] { function(QDBusConnection(mConnectionName)); });
}

void ScriptedDaemon::setDocument(const QVariantMap &document)
{
    const std::scoped_lock lock(mMutex);
    mDocument = document;
}

void ScriptedDaemon::setReply(Command command, const QVariantMap &reply)
{
    setScript(command, [data = encoded(reply)](const Request &) { return std::vector<Reply>{{data}}; });
}

void ScriptedDaemon::setScript(Command command, Script script)
{
    const std::scoped_lock lock(mMutex);
    mScripts[int(command)] = std::move(script);
}

void ScriptedDaemon::setSilent(Command command)
{
    setScript(command, [](const Request &) { return std::vector<Reply>(); });
}

QByteArray ScriptedDaemon::sendToReplyPort(const QString &port, int messageIdentifier, const QByteArray &data)
{
    QByteArray answer;
    mThread.run([&] {
        const QDBusMessage reply = QDBusConnection(mConnectionName).call(portMessage(port, messageIdentifier, data));
        answer = reply.arguments().value(0).toByteArray();
    });
    return answer;
}

void ScriptedDaemon::postNotification(const QString &name, const QVariantMap &userInfo)
{
    mThread.run([&] { DistributedNotificationCenter(QDBusConnection(mConnectionName)).post(name, userInfo); });
}

std::vector<ScriptedDaemon::Request> ScriptedDaemon::requests() const
{
    const std::scoped_lock lock(mMutex);
    return mRequests;
}

std::vector<int> ScriptedDaemon::commands() const
{
    std::vector<int> commands;
    for (const Request &request : requests())
        commands.push_back(request.command);
    return commands;
}

ScriptedDaemon::Request ScriptedDaemon::lastRequest(Command command) const
{
    const std::vector<Request> all = requests();
    const auto found = std::find_if(all.rbegin(), all.rend(),
                                    [command](const Request &request) { return request.command == int(command); });
    return found == all.rend() ? Request() : *found;
}

int ScriptedDaemon::count(Command command) const
{
    return int(std::ranges::count(commands(), int(command)));
}

void ScriptedDaemon::forgetRequests()
{
    const std::scoped_lock lock(mMutex);
    mRequests.clear();
}

QByteArray ScriptedDaemon::encoded(const QVariantMap &dictionary)
{
    return QlCoreUtility::convertDictionaryToData(dictionary).value();
}

std::optional<QByteArray> ScriptedDaemon::receive(qint32 command, const std::optional<QByteArray> &data)
{
    const Request request{command, QlCoreUtility::convertDataToDictionary(data).value_or(QVariantMap()),
                          data.value_or(QByteArray())};
    {
        const std::scoped_lock lock(mMutex);
        mRequests.push_back(request);
    }
    const QString port = request.dictionary.value(DaemonProtocol::responsePortName).toString();
    if (!port.isEmpty()) {
        for (const Reply &reply : scriptedReplies(request))
            send(port, command, reply);
    }
    return {};
}

std::vector<ScriptedDaemon::Reply> ScriptedDaemon::scriptedReplies(const Request &request) const
{
    Script script;
    QVariantMap reply{{DaemonProtocol::returnStatus, 0}};
    {
        const std::scoped_lock lock(mMutex);
        if (const auto found = mScripts.find(request.command); found != mScripts.end())
            script = found->second;
        switch (Command(request.command)) {
        case Command::openDevice: reply[DaemonProtocol::returnStatus] = 1; break;
        case Command::readSettings: reply[DaemonProtocol::allDevSettings] = mDocument; break;
        case Command::addProfile:
        case Command::updateProfile:
        case Command::replaceAllProfiles:
        case Command::deleteProfile:
        case Command::switchProfile: reply[DaemonProtocol::returnDictionary] = mDocument; break;
        case Command::readMacroLines: reply[DaemonProtocol::macroSequences] = QVariantList(); break;
        default: break;
        }
    }
    if (script)
        return script(request);
    return {{encoded(reply)}};
}

void ScriptedDaemon::send(const QString &port, int command, const Reply &reply)
{
    if (reply.after.count() == 0) {
        // The port takes it before the request is answered, so the waiting side does not look too early.
        QDBusConnection(mConnectionName).call(portMessage(port, command, reply.data));
        return;
    }
    QTimer::singleShot(reply.after, mThread.context(), [this, port, command, data = reply.data] {
        QDBusConnection(mConnectionName).call(portMessage(port, command, data), QDBus::NoBlock);
    });
}
