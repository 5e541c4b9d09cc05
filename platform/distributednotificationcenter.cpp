// SPDX-License-Identifier: MIT
#include "platform/distributednotificationcenter.h"

#include "base/qlcoreutility.h"
#include "platform/sessionbus.h"

#include <QDBusMessage>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString objectPath = u"/DistributedNotificationCenter"_s;
const QString interfaceName = u"org.quillkestra.DistributedNotificationCenter"_s;
const QString postedSignal = u"Posted"_s;
const QString postedSignature = u"say"_s;

// QtDBus connects bus signals only to slots named by a string.
const char *receiveSlot()
{
    return SLOT(receive(QString, QByteArray));
}

} // namespace

DistributedNotificationCenter::DistributedNotificationCenter(const QDBusConnection &connection, QObject *parent)
    : QObject(parent), mConnection(connection)
{
}

DistributedNotificationCenter::~DistributedNotificationCenter() = default;

DistributedNotificationCenter &DistributedNotificationCenter::defaultCenter()
{
    static DistributedNotificationCenter center(sharedSessionBus());
    return center;
}

void DistributedNotificationCenter::addObserver(QObject *observer, const QString &name, Handler handler)
{
    const bool isKnown =
        std::ranges::any_of(mObservations, [&](const Observation &o) { return o.observer == observer; });
    if (!isKnown)
        connect(observer, &QObject::destroyed, this, &DistributedNotificationCenter::forget);
    mObservations.push_back({mNextId++, observer, name, std::move(handler)});
    watch(name);
}

void DistributedNotificationCenter::removeObserver(QObject *observer, const QString &name)
{
    std::erase_if(mObservations, [&](const Observation &o) { return o.observer == observer && o.name == name; });
    const bool isKnown =
        std::ranges::any_of(mObservations, [&](const Observation &o) { return o.observer == observer; });
    if (!isKnown)
        disconnect(observer, &QObject::destroyed, this, &DistributedNotificationCenter::forget);
    unwatchUnlessObserved(name);
}

void DistributedNotificationCenter::forget(const QObject *observer)
{
    // The QPointers to a destroyed observer are already null.
    QStringList names;
    std::erase_if(mObservations, [&](const Observation &o) {
        const bool isGone = o.observer.isNull() || o.observer == observer;
        if (isGone)
            names.append(o.name);
        return isGone;
    });
    for (const QString &name : names)
        unwatchUnlessObserved(name);
}

int DistributedNotificationCenter::observationCount(const QObject *observer, const QString &name) const
{
    return int(std::ranges::count_if(mObservations,
                                     [&](const Observation &o) { return o.observer == observer && o.name == name; }));
}

void DistributedNotificationCenter::post(const QString &name, const QVariantMap &userInfo)
{
    QByteArray data;
    if (!userInfo.isEmpty())
        data = QlCoreUtility::convertDictionaryToData(userInfo).value_or(QByteArray());
    QDBusMessage signal = QDBusMessage::createSignal(objectPath, interfaceName, postedSignal);
    signal << name << data;
    mConnection.send(signal);
}

void DistributedNotificationCenter::watch(const QString &name)
{
    if (mWatchedNames.contains(name))
        return;
    mWatchedNames.insert(name);
    mConnection.connect(QString(), objectPath, interfaceName, postedSignal, {name}, postedSignature, this,
                        receiveSlot());
}

void DistributedNotificationCenter::unwatchUnlessObserved(const QString &name)
{
    // Deferred to the event loop: a handler that removes its observation and adds it again must not miss notifications
    // posted in between.
    const auto unwatch = [this, name] {
        const bool isObserved =
            std::ranges::any_of(mObservations, [&](const Observation &o) { return o.name == name; });
        if (isObserved || !mWatchedNames.remove(name))
            return;
        mConnection.disconnect(QString(), objectPath, interfaceName, postedSignal, {name}, postedSignature, this,
                               receiveSlot());
    };
    QMetaObject::invokeMethod(this, unwatch, Qt::QueuedConnection);
}

void DistributedNotificationCenter::receive(const QString &name, const QByteArray &userInfo)
{
    std::vector<quint64> ids;
    for (const Observation &observation : mObservations) {
        if (observation.name == name)
            ids.push_back(observation.id);
    }
    if (ids.empty())
        return;
    const DistributedNotification notification{
        name, QlCoreUtility::convertDataToDictionary(userInfo).value_or(QVariantMap())};
    // A handler may add and remove observations, including its own. Added ones receive only later notifications.
    for (const quint64 id : ids) {
        const auto found = std::ranges::find(mObservations, id, &Observation::id);
        if (found == mObservations.end() || !found->observer)
            continue;
        const Handler handler = found->handler;
        handler(notification);
    }
}
