// SPDX-License-Identifier: MIT
// The keyboards that are plugged in, as the daemon's object /Devices lists them, and the choice among them. Never waits
// for the daemon, which may also come later, go, and come back. Main thread only.
#pragma once

#include "base/result.h"

#include <QList>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

class QDBusMessage;
class ServiceStatus;

class AttachedKeyboards : public QObject
{
    Q_OBJECT

public:
    using Then = std::function<void(const Result<void> &done)>;

    /// Follows the daemon that `service` follows.
    explicit AttachedKeyboards(const ServiceStatus &service, QObject *parent = nullptr);

    /// Asks the daemon for the first time. Must be called once.
    void start();

    /// The keyboards, with the keys of base/devicekeys.h. Absent until the daemon has answered, and after it has gone.
    /// Names, serial numbers and ports come from the keyboards: show them with visibleText().
    [[nodiscard]] const std::optional<QList<QVariantMap>> &list() const { return mList; }

    /// Uses the keyboard from now on, in place of those used before. `then` gets the daemon's reason for a refusal, an
    /// English sentence.
    void use(const QString &id, const Then &then);
    /// The same beside those used before.
    void useAlso(const QString &id, const Then &then);
    /// Uses the virtual keyboard again.
    void release(const Then &then);
    /// Releases this one of several keyboards.
    void releaseOne(const QString &id, const Then &then);

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void read();

private:
    void set(const std::optional<QList<QVariantMap>> &list);
    void change(QLatin1StringView method, const QVariantList &arguments, const Then &then);

    std::optional<QList<QVariantMap>> mList;
};
