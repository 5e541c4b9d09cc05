// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/kwinfrontapplication.h"

#include "base/daemonprotocol.h"
#include "base/frontapplicationkeys.h"
#include "platform/messageport.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

const QString serviceName = u"org.kde.KWin"_s;
const QString scriptName = u"org.quillkestra.FrontApplication"_s;

} // namespace

KWinFrontApplication::KWinFrontApplication(const QDBusConnection &bus)
    : mBus(bus), mWatcher(serviceName, bus, QDBusServiceWatcher::WatchForUnregistration),
      mScript(QDir::temp().filePath(u"quill-kestra-XXXXXX.js"_s))
{
    connect(&mWatcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { fail(u"KWin is gone"_s); });
}

KWinFrontApplication::~KWinFrontApplication()
{
    if (mScript.isOpen())
        (void)call(u"unloadScript"_s, {scriptName});
}

QByteArray KWinFrontApplication::script()
{
    // KWin 6 has windows where KWin 5 has clients. All arguments are texts, because the bus type of a script's number
    // differs between versions.
    return u"function report(window) {\n"
           u"    callDBus(\"%1\", \"%2\", \"%3\", \"TellWindow\", window ? String(window.resourceClass) : \"\",\n"
           u"             window ? String(window.desktopFileName || \"\") : \"\", window ? String(window.pid) : "
           u"\"\");\n"
           u"}\n"
           u"if (workspace.windowActivated) {\n"
           u"    workspace.windowActivated.connect(report);\n"
           u"    report(workspace.activeWindow);\n"
           u"} else {\n"
           u"    workspace.clientActivated.connect(report);\n"
           u"    report(workspace.activeClient);\n"
           u"}\n"_s
               .arg(messagePortBusName(DaemonProtocol::requestPortName), FrontApplicationKeys::objectPath,
                    FrontApplicationKeys::interfaceName)
               .toUtf8();
}

void KWinFrontApplication::start()
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || !mBus.interface()->isServiceRegistered(serviceName)) {
        fail(u"KWin does not run on Wayland here"_s);
        return;
    }
    const QByteArray text = script();
    if (!mScript.open() || mScript.write(text) != text.size() || !mScript.flush()) {
        fail(u"the script for KWin cannot be written"_s);
        return;
    }
    // First unloads the script of a killed daemon. KWin drops a script only after it has answered, and until then
    // refuses another one of the same name.
    callThen(u"unloadScript"_s, {scriptName}, [this](const QDBusPendingCall &) { load(); });
}

void KWinFrontApplication::load()
{
    callThen(u"loadScript"_s, {mScript.fileName(), scriptName}, [this](const QDBusPendingCall &answer) {
        const QDBusPendingReply<int> reply = answer;
        scriptLoaded(reply.isError() ? -1 : reply.value());
    });
}

void KWinFrontApplication::scriptLoaded(int number)
{
    if (number < 0) {
        fail(u"KWin does not take the script"_s);
        return;
    }
    (void)call(u"start"_s);
    Q_EMIT ready();
}

void KWinFrontApplication::callThen(const QString &method, const QVariantList &arguments,
                                    std::function<void(const QDBusPendingCall &)> answered)
{
    auto *watcher = new QDBusPendingCallWatcher(call(method, arguments), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered = std::move(answered)] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

QDBusPendingCall KWinFrontApplication::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(serviceName, u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return mBus.asyncCall(message);
}
