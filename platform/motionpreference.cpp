// SPDX-License-Identifier: MIT
#include "platform/motionpreference.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QMap>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// The settings of the XDG desktop portal, org.freedesktop.portal.Settings.
const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.Settings"_s;

constexpr auto interfaceGroup = "org.gnome.desktop.interface"_L1;
constexpr auto animationsKey = "enable-animations"_L1; // boolean
constexpr auto appearanceGroup = "org.freedesktop.appearance"_L1;
constexpr auto reducedMotionKey = "reduced-motion"_L1; // 0: no preference, 1: less motion

} // namespace

MotionPreference::MotionPreference(const QDBusConnection &connection, QObject *parent)
    : QObject(parent), mConnection(connection)
{
    if (!mConnection.isConnected())
        return;
    mWatcher = new QDBusServiceWatcher(portalService, mConnection, QDBusServiceWatcher::WatchForRegistration, this);
    connect(mWatcher, &QDBusServiceWatcher::serviceRegistered, this, &MotionPreference::readAll);
    for (const auto group : {interfaceGroup, appearanceGroup}) {
        mConnection.connect(portalService, portalPath, portalInterface, u"SettingChanged"_s, {QString(group)}, u"ssv"_s,
                            this, SLOT(settingChanged(QString, QString, QDBusVariant)));
    }
    readAll();
}

void MotionPreference::readAll()
{
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, u"ReadAll"_s);
    call << QStringList{interfaceGroup, appearanceGroup};
    call.setAutoStartService(false);
    auto *reply = new QDBusPendingCallWatcher(mConnection.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        reply->deleteLater();
        const QDBusMessage message = reply->reply();
        if (message.type() != QDBusMessage::ReplyMessage || message.signature() != "a{sa{sv}}"_L1)
            return;
        QMap<QString, QVariantMap> groups;
        message.arguments().first().value<QDBusArgument>() >> groups;
        for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
            for (auto setting = group->cbegin(); setting != group->cend(); ++setting)
                take(group.key(), setting.key(), setting.value());
        }
    });
}

void MotionPreference::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    take(group, key, value.variant());
}

void MotionPreference::take(const QString &group, const QString &key, const QVariant &value)
{
    // Values of other types are ignored.
    if (group == interfaceGroup && key == animationsKey && value.typeId() == QMetaType::Bool)
        set(mAreAnimationsOn, value.toBool());
    else if (group == appearanceGroup && key == reducedMotionKey && value.typeId() == QMetaType::UInt)
        set(mIsMotionReduced, value.toUInt() == 1);
}

void MotionPreference::set(bool &preference, bool value)
{
    const bool wasAllowed = isMotionAllowed();
    preference = value;
    if (isMotionAllowed() != wasAllowed)
        Q_EMIT changed();
}
