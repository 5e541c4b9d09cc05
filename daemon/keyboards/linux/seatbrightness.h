// SPDX-License-Identifier: MIT
// Sets the brightness of LEDs through the login manager, which allows this to the user at the seat without any right to
// the files. Owned by the keyboard; main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

class SeatBrightness : public QObject
{
    Q_OBJECT

public:
    /// `connect` returns the bus of the login manager, and is called when it is first needed.
    explicit SeatBrightness(std::function<QDBusConnection()> connect = QDBusConnection::systemBus,
                            QObject *parent = nullptr);

    /// Requests the brightness and does not wait. A failure is logged once.
    void set(const QString &led, uint brightness);

private:
    void logFailure(const QString &led, const QString &reason);

    std::function<QDBusConnection()> mConnect;
    bool mHasFailed = false;
};
