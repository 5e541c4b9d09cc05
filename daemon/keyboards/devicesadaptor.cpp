// SPDX-License-Identifier: MIT
#include "daemon/keyboards/devicesadaptor.h"

#include "base/devicekeys.h"

#include <QDBusError>
#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace {

QVariantMap dictionaryOf(const InputDevice &device)
{
    return {{DeviceKeys::id, device.id},
            {DeviceKeys::name, device.name},
            {DeviceKeys::kind, QString(deviceKindName(device.kind))},
            {DeviceKeys::vendor, device.vendor},
            {DeviceKeys::product, device.product},
            {DeviceKeys::serial, device.serial},
            {DeviceKeys::path, device.path},
            {DeviceKeys::nodes, device.nodes},
            {DeviceKeys::isInUse, device.isInUse},
            {DeviceKeys::state, QString(deviceStateName(device.state))},
            {DeviceKeys::problem, device.problem},
            {DeviceKeys::obstacle, QString(deviceObstacleName(device.obstacle))}};
}

} // namespace

DevicesObject::DevicesObject(DeviceSource &source, DeviceChoice &choice, QObject *parent) : QObject(parent)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    new DevicesAdaptor(source, choice, this);
}

bool DevicesObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(DeviceKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

DevicesAdaptor::DevicesAdaptor(DeviceSource &source, DeviceChoice &choice, DevicesObject *object)
    : QDBusAbstractAdaptor(object), mSource(source), mChoice(choice), mObject(object)
{
    connect(&mSource, &DeviceSource::changed, this, &DevicesAdaptor::Changed);
}

QList<QVariantMap> DevicesAdaptor::List() const
{
    QList<QVariantMap> list;
    for (const InputDevice &device : mSource.devices())
        list += dictionaryOf(device);
    return list;
}

void DevicesAdaptor::Use(const QStringList &ids)
{
    if (hasNames(ids))
        keep(mSource.use(ids));
}

void DevicesAdaptor::UseAlso(const QStringList &ids)
{
    if (hasNames(ids))
        keep(mSource.useAlso(ids));
}

void DevicesAdaptor::ReleaseThese(const QStringList &ids)
{
    if (hasNames(ids))
        keep(mSource.releaseThese(ids));
}

bool DevicesAdaptor::hasNames(const QStringList &ids)
{
    if (ids.isEmpty())
        mObject->sendErrorReply(QDBusError::InvalidArgs, u"no keyboard is named"_s);
    return !ids.isEmpty();
}

void DevicesAdaptor::keep(const Result<void, UseError> &done)
{
    if (done)
        return keepChoice();
    const QString &message = done.error().message;
    switch (done.error().cause) {
    case UseError::Cause::unknown: mObject->sendErrorReply(DeviceKeys::unknownError, message); return;
    case UseError::Cause::refused: mObject->sendErrorReply(DeviceKeys::refusedError, message); return;
    }
}

void DevicesAdaptor::Release()
{
    mSource.release();
    keepChoice();
}

void DevicesAdaptor::keepChoice()
{
    if (!mChoice.save(mSource.choices()))
        mObject->sendErrorReply(DeviceKeys::notKeptError,
                                u"done, but the choice cannot be stored: at its next start, the daemon will use the "
                                "previous one. Its log has the reason. Make room on the disk, then repeat this"_s);
}

QVariantMap DevicesAdaptor::Status() const
{
    const DeviceStatus status = mSource.status();
    return {{DeviceKeys::state, QString(deviceStateName(status.state))},
            {DeviceKeys::names, status.names},
            {DeviceKeys::absent, status.absent},
            {DeviceKeys::grabs, status.grabs},
            {DeviceKeys::problem, status.problem},
            {DeviceKeys::isRealTime, status.isRealTime},
            {DeviceKeys::lostEvents, status.lostEvents},
            {DeviceKeys::latencyCount, status.latency.count},
            {DeviceKeys::latencyP50Us, status.latency.p50Us},
            {DeviceKeys::latencyP99Us, status.latency.p99Us},
            {DeviceKeys::latencyMaximumUs, status.latency.maximumUs}};
}
