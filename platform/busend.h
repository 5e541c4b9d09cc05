// SPDX-License-Identifier: MIT
// Reports the end of a bus connection, without polling. One thread.
#pragma once

#include <QDBusConnection>
#include <QObject>

class BusEnd : public QObject
{
    Q_OBJECT

public:
    explicit BusEnd(QDBusConnection bus, QObject *parent = nullptr);

    /// False when there is no bus whose end could be noticed.
    [[nodiscard]] bool isWatching() const { return mIsWatching; }

Q_SIGNALS:
    void reached();

private Q_SLOTS:
    void reportEnd() { Q_EMIT reached(); } // connected by its name: QtDBus knows no other way

private:
    bool mIsWatching = false;
};
