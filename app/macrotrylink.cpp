// SPDX-License-Identifier: MIT
#include "app/macrotrylink.h"

#include "app/daemonobject.h"
#include "app/servicestatus.h"
#include "base/macroskeys.h"

#include <QDBusArgument>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject macrosObject(MacrosKeys::objectPath, MacrosKeys::interfaceName);
constexpr qsizetype mostEarlySignals = 16;

TryEnd endOfError(const QString &error)
{
    if (error == MacrosKeys::emptyError)
        return TryEnd::empty;
    return error == MacrosKeys::tooManyError ? TryEnd::tooMany : TryEnd::unavailable;
}

TryEnd endOfReason(const QString &reason)
{
    if (reason == MacrosKeys::tryFinished)
        return TryEnd::finished;
    if (reason == MacrosKeys::tryStopped)
        return TryEnd::stopped;
    return reason == MacrosKeys::tryChanged ? TryEnd::changed : TryEnd::limit;
}

/// The keys in a signal; those that all four arrays have.
QList<TriedKey> keysIn(const QVariantList &arguments)
{
    const auto events = qdbus_cast<QList<int>>(arguments.value(1));
    const auto times = qdbus_cast<QList<qlonglong>>(arguments.value(2));
    const auto usages = qdbus_cast<QList<uint>>(arguments.value(3));
    const auto down = qdbus_cast<QList<bool>>(arguments.value(4));
    const qsizetype count = std::min({events.size(), times.size(), usages.size(), down.size()});
    QList<TriedKey> keys;
    for (qsizetype index = 0; index < count; ++index) {
        const uint usage = usages.at(index);
        keys += {.event = events.at(index),
                 .timeUs = times.at(index),
                 .page = static_cast<int>(usage >> 16),
                 .argument = usage & 0xFFFF,
                 .isDown = down.at(index)};
    }
    return keys;
}

} // namespace

MacroTryLink::MacroTryLink(const ServiceStatus &service, QObject *parent) : QObject(parent)
{
    connect(&service, &ServiceStatus::daemonHasGone, this, [this] { end(TryEnd::unavailable); });
}

void MacroTryLink::start(int macroId, int repeat)
{
    if (!std::exchange(mIsListening, true)) {
        for (const QLatin1StringView signal : {MacrosKeys::triedSignal, MacrosKeys::tryEndedSignal})
            macrosObject.connect(signal, this, SLOT(noteSignal(QDBusMessage)));
    }
    mTry.emplace(); // the daemon ends the earlier one
    const auto take = [this, start = ++mStarts](const QDBusMessage &reply) {
        if (start == mStarts)
            takeReply(reply);
    };
    macrosObject.call(MacrosKeys::tryMethod, this, take, {uint(macroId), uint(repeat)});
}

void MacroTryLink::stop()
{
    if (!mTry || std::exchange(mTry->isStopped, true))
        return;
    if (mTry->number != 0)
        sendStop();
}

void MacroTryLink::takeReply(const QDBusMessage &reply)
{
    if (!mTry)
        return; // the daemon has gone meanwhile
    if (reply.type() != QDBusMessage::ReplyMessage)
        return end(endOfError(reply.errorName()));
    mTry->daemon = reply.service();
    mTry->number = reply.arguments().value(0).toUInt();
    if (mTry->isStopped)
        sendStop();
    const QList<QDBusMessage> early = std::exchange(mTry->early, {});
    for (const QDBusMessage &message : early)
        handle(message);
}

void MacroTryLink::sendStop()
{
    macrosObject.call(MacrosKeys::stopTryMethod, this, [](const QDBusMessage &) {}, {mTry->number});
}

void MacroTryLink::noteSignal(const QDBusMessage &message)
{
    if (!mTry)
        return;
    if (mTry->number != 0)
        handle(message);
    else if (mTry->early.size() < mostEarlySignals)
        mTry->early += message;
}

void MacroTryLink::handle(const QDBusMessage &message)
{
    // Any program can send such a signal.
    if (!mTry || message.service() != mTry->daemon || message.arguments().value(0).toUInt() != mTry->number)
        return;
    if (message.member() == MacrosKeys::triedSignal)
        Q_EMIT played(keysIn(message.arguments()));
    else
        end(endOfReason(message.arguments().value(1).toString()));
}

void MacroTryLink::end(TryEnd reason)
{
    const std::optional<Try> over = std::exchange(mTry, std::nullopt);
    if (over && !over->isStopped)
        Q_EMIT ended(reason);
}
