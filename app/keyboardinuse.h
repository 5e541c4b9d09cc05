// SPDX-License-Identifier: MIT
// The keyboards that the daemon uses, as its object /Devices reports them. Owned by the hub; main thread only.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

/// Asks without waiting, and follows every change: of the choice, of the keyboards, and of the daemon, which may start
/// later, end and start again.
class KeyboardInUse : public QObject
{
    Q_OBJECT

public:
    /// Asks on `bus`, which may be disconnected.
    explicit KeyboardInUse(const QDBusConnection &bus, QObject *parent = nullptr);

    /// One of the states in base/devicekeys.h. Empty until the daemon has answered, and while there is no daemon.
    [[nodiscard]] QString state() const { return mStatus.state; }
    /// No real keyboard is chosen: the daemon uses the virtual one. False while the state is empty.
    [[nodiscard]] bool isVirtual() const;
    /// The real keyboards whose keys the daemon has. The names come from the keyboards: show them with visibleText().
    [[nodiscard]] QStringList names() const { return mStatus.names; }
    /// The reason why a chosen keyboard is not in use, with the remedy, in English sentences; may be empty.
    [[nodiscard]] QString problem() const { return mStatus.problem; }

Q_SIGNALS:
    void changed(); ///< any of the above

private Q_SLOTS:
    void read();

private:
    struct Status
    {
        QString state;
        QStringList names;
        QString problem;

        bool operator==(const Status &) const = default;
    };

    void setStatus(const Status &status);

    QDBusConnection mBus;
    Status mStatus;
};
