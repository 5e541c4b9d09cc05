// SPDX-License-Identifier: MIT
// Signals the end of the bus connection, without polling. Owned by the daemon's process; one thread.
#pragma once

#include <QDBusConnection>
#include <QObject>

class BusEnd : public QObject
{
    Q_OBJECT

public:
    explicit BusEnd(QDBusConnection bus, QObject *parent = nullptr);

Q_SIGNALS:
    void reached();

private Q_SLOTS:
    void tell() { Q_EMIT reached(); } // connected by its name: QtDBus knows no other way
};
