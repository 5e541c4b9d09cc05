// SPDX-License-Identifier: MIT
// The brightness of LEDs by way of the login manager, which lets the user at the seat set it without any right to the
// files. Owned by the keyboard; the daemon's thread.
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

class SeatBrightness : public QObject
{
    Q_OBJECT

public:
    /// `connect` gives the bus of the login manager, and is asked when it is first needed.
    explicit SeatBrightness(std::function<QDBusConnection()> connect = QDBusConnection::systemBus,
                            QObject *parent = nullptr);

    /// Asks for it and does not wait. A failure is logged once.
    void set(const QString &led, uint brightness);

private:
    void logFailure(const QString &led, const QString &reason);

    std::function<QDBusConnection()> mConnect;
    bool mHasFailed = false;
};
