// SPDX-License-Identifier: MIT
// Broadcasts notifications with a name and a dictionary, as the signal Posted(s name, ay userInfo) on the session bus.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <vector>

struct DistributedNotification
{
    QString name;
    QVariantMap userInfo; ///< empty when none was posted or it cannot be decoded
};

/// Observers are called on the main thread. post() may be called from any thread.
class DistributedNotificationCenter : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const DistributedNotification &)>;

    explicit DistributedNotificationCenter(const QDBusConnection &connection, QObject *parent = nullptr);
    ~DistributedNotificationCenter() override;

    /// The centre on the process's session bus.
    static DistributedNotificationCenter &defaultCenter();

    /// Adds one observation of `name` from any poster. An observer that is added twice is called twice. An observation
    /// ends with removeObserver() or when `observer` is destroyed.
    void addObserver(QObject *observer, const QString &name, Handler handler);

    /// Removes every observation of `name` by `observer`.
    void removeObserver(QObject *observer, const QString &name);

    /// Number of observations of `name` by `observer`.
    [[nodiscard]] int observationCount(const QObject *observer, const QString &name) const;

    /// A dictionary that has no form as a property list, or one of more than PropertyList::maximumInputBytes, is left
    /// out.
    void post(const QString &name, const QVariantMap &userInfo = {});

private Q_SLOTS:
    void receive(const QString &name, const QByteArray &userInfo);

private:
    struct Observation
    {
        quint64 id;
        QPointer<QObject> observer;
        QString name;
        Handler handler;
    };

    /// Subscribes to `name` on the bus, once for all its observations. The subscription ends after the last
    /// observation.
    void watch(const QString &name);
    void unwatchUnlessObserved(const QString &name);
    void forget(const QObject *observer);

    QDBusConnection mConnection;
    std::vector<Observation> mObservations; // in the order of their addition
    QSet<QString> mWatchedNames;            // subscribed to on the bus
    quint64 mNextId = 1;
};
