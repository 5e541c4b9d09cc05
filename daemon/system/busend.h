// SPDX-License-Identifier: MIT
// Tells when the message bus goes away, without asking it again and again. Owned by the daemon's process; one thread.
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
    void tell() { Q_EMIT reached(); } // named by a string: QtDBus knows no other way
};
