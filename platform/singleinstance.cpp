// SPDX-License-Identifier: MIT
#include "platform/singleinstance.h"

#include "platform/sessionbus.h"

#include <QDBusConnection>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace {

/// Desktops put the token into this variable of a program that they start. Qt's Wayland plugin takes it from there when
/// a window is activated.
constexpr const char *tokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char *startupVariable = "DESKTOP_STARTUP_ID";

const QString tokenKey = u"activation-token"_s;
const QString startupKey = u"desktop-startup-id"_s;

/// The values with which the desktop lets the program that it has started show a window.
QVariantMap ownPlatformData()
{
    QVariantMap data;
    if (const QString token = qEnvironmentVariable(tokenVariable); !token.isEmpty())
        data.insert(tokenKey, token);
    if (const QString startup = qEnvironmentVariable(startupVariable); !startup.isEmpty())
        data.insert(startupKey, startup);
    return data;
}

/// Empty without a usable token. Desktops that set only the startup ID accept it as a token.
QByteArray tokenOf(const QVariantMap &platformData)
{
    // A message to the compositor has at most 4096 bytes; a larger one ends the connection, and with it the program.
    constexpr qsizetype maximumSize = 1024;
    const QByteArray token = platformData.value(tokenKey, platformData.value(startupKey)).toString().toUtf8();
    return token.size() <= maximumSize ? token : QByteArray();
}

} // namespace

SingleInstance::SingleInstance(const QString &name, QObject *parent) : QObject(parent), mName(name)
{
    QDBusConnection bus = sharedSessionBus();
    if (!bus.isConnected())
        return;
    bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    mIsAnotherRunning = !bus.registerService(mName);
}

SingleInstance::~SingleInstance()
{
    QDBusConnection bus = sharedSessionBus();
    bus.unregisterObject(objectPath());
    if (!mIsAnotherRunning)
        bus.unregisterService(mName);
}

void SingleInstance::activateOther() const
{
    callOther(u"Activate"_s, {ownPlatformData()});
}

void SingleInstance::openInOther(const QStringList &addresses) const
{
    callOther(u"Open"_s, {addresses, ownPlatformData()});
}

void SingleInstance::callOther(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(mName, objectPath(), u"org.freedesktop.Application"_s, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    // Waits for the bus to accept the message, because the caller is about to end. The other instance may be busy for
    // longer.
    constexpr int answerLimitMs = 1000;
    sharedSessionBus().call(message, QDBus::Block, answerLimitMs);
}

void SingleInstance::Activate(const QVariantMap &platformData)
{
    requestActivation(platformData);
}

void SingleInstance::Open(const QStringList &uris, const QVariantMap &platformData)
{
    requestActivation(platformData);
    Q_EMIT openingRequested(uris);
}

void SingleInstance::requestActivation(const QVariantMap &platformData)
{
    const QByteArray token = tokenOf(platformData);
    if (!token.isEmpty())
        qputenv(tokenVariable, token);
    Q_EMIT activationRequested();
    // A token is for one activation. Programs that this one starts must not get it.
    qunsetenv(tokenVariable);
}

QString SingleInstance::objectPath() const
{
    return u'/' + QString(mName).replace(u'.', u'/');
}
