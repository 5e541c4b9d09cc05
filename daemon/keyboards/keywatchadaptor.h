// SPDX-License-Identifier: MIT
// The D-Bus interface to the key watch: the object /KeyWatch on the daemon's connection, described in
// docs/daemon-protocol.md. Owned by its KeyWatchObject; main thread only.
#pragma once

#include "daemon/keyboards/keywatch.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusUnixFileDescriptor>

/// The object on the bus: carries the adaptor and, as its context, the current call.
class KeyWatchObject : public QObject, public QDBusContext
{
    Q_OBJECT

public:
    /// `watch` must outlive this.
    explicit KeyWatchObject(KeyWatch &watch, QObject *parent = nullptr);

    /// False if the object cannot be put on `connection`.
    [[nodiscard]] bool registerOn(QDBusConnection connection);
};

/// Its public slot is the interface. It has no signal: keys go through the pipe alone.
class KeyWatchAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    // KeyWatchKeys::interfaceName; moc accepts only a literal.
    Q_CLASSINFO("D-Bus Interface", "org.quillkestra.KeyWatch")

public:
    KeyWatchAdaptor(KeyWatch &watch, KeyWatchObject *object);

public Q_SLOTS:
    QDBusUnixFileDescriptor Start();

private:
    KeyWatch &mWatch;
    KeyWatchObject *mObject;
};
