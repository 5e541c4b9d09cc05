// SPDX-License-Identifier: MIT
#include "platform/singleinstance.h"

#include "platform/sessionbus.h"

#include <QDBusConnection>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

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
    callOther(u"Activate"_s, {QVariantMap()});
}

void SingleInstance::openInOther(const QStringList &addresses) const
{
    callOther(u"Open"_s, {addresses, QVariantMap()});
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

void SingleInstance::Activate(const QVariantMap &)
{
    Q_EMIT activationRequested();
}

void SingleInstance::Open(const QStringList &uris, const QVariantMap &)
{
    Q_EMIT activationRequested();
    Q_EMIT openingRequested(uris);
}

QString SingleInstance::objectPath() const
{
    return u'/' + QString(mName).replace(u'.', u'/');
}
