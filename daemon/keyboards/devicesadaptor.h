// SPDX-License-Identifier: MIT
// The D-Bus interface to the machine's keyboards: the object /Devices on the daemon's connection, described in
// docs/daemon-protocol.md. Owned by its DevicesObject; main thread only.
#pragma once

#include "daemon/keyboards/devicechoice.h"
#include "daemon/keyboards/devices.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QVariantMap>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class DevicesObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// Both must outlive this.
    DevicesObject(DeviceSource &source, DeviceChoice &choice, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slots and signals are the interface. A call stores the choice before it returns.
class DevicesAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // DeviceKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.Devices")

public:
    DevicesAdaptor(DeviceSource &source, DeviceChoice &choice, DevicesObject *object);

public Q_SLOTS:
    [[nodiscard]] QList<QVariantMap> List() const;
    void Use(const QStringList &ids);
    void UseAlso(const QStringList &ids);
    void Release();
    void ReleaseThese(const QStringList &ids);
    [[nodiscard]] QVariantMap Status() const;

Q_SIGNALS:
    void Changed();

private:
    void keep(const Result<void, UseError> &done);
    [[nodiscard]] bool hasNames(const QStringList &ids);
    void keepChoice();

    DeviceSource &mSource;
    DeviceChoice &mChoice;
    DevicesObject *mObject;
};
