// SPDX-License-Identifier: MIT
// Follows which keyboards the daemon uses, through its object /Devices. Never waits for the daemon, which may also come
// later, go, and come back. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

struct KeyboardsInUse
{
    QString state;     ///< one of DeviceKeys::state…; released: the virtual keyboard is used
    QStringList names; ///< of the real keyboards in use; with its id where another plugged-in one has the same name

    bool operator==(const KeyboardsInUse &) const = default;
};

class DevicesStatus : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to follow the daemon. Must be called once.
    void start();

    /// Absent until the daemon has answered, and after it has gone.
    [[nodiscard]] const std::optional<KeyboardsInUse> &keyboards() const { return mKeyboards; }
    /// No real keyboard is chosen: the daemon uses the virtual one. False while the daemon has not answered.
    [[nodiscard]] bool isVirtual() const;

public Q_SLOTS:
    /// Asks the daemon. Must be called when a daemon has come or gone.
    void read();

Q_SIGNALS:
    void changed();

private:
    void set(const std::optional<KeyboardsInUse> &keyboards);

    std::optional<KeyboardsInUse> mKeyboards;
};
