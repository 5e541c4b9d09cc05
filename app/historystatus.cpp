// SPDX-License-Identifier: MIT
#include "app/historystatus.h"

#include "app/daemonobject.h"
#include "app/servicestatus.h"
#include "base/daemonprotocol.h"
#include "base/historykeys.h"

#include <QDBusArgument>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject historyObject(HistoryKeys::objectPath, HistoryKeys::interfaceName);

HistoryStatus::Outcome outcomeOf(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {.error = reply.errorName()};
    const QVariantMap restoration = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    return {.isAlone = restoration.value(HistoryKeys::isAlone, true).toBool(),
            .others = qdbus_cast<QList<uint>>(restoration.value(HistoryKeys::others)),
            .newest = restoration.value(HistoryKeys::newest).toUInt()};
}

/// Absent after an error.
std::optional<QList<QVariantMap>> entriesIn(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "aa{sv}"_L1)
        return {};
    return historyEntries(reply.arguments().constFirst());
}

} // namespace

HistoryStatus::HistoryStatus(const ServiceStatus &service, QObject *parent) : QObject(parent)
{
    connect(&service, &ServiceStatus::daemonHasGone, this, [this] {
        set({});
        Q_EMIT listChanged();
    });
    connect(&service, &ServiceStatus::daemonHasCome, this, &HistoryStatus::readAgain);
}

void HistoryStatus::start()
{
    historyObject.connect("Changed"_L1, this, SLOT(readAgain()));
    read();
}

void HistoryStatus::change(QLatin1StringView method, uint id, const Then &then, const QVariantList &more)
{
    mIsChanging = true;
    const auto ended = [this, then](const QDBusMessage &reply) {
        mIsChanging = false;
        then(outcomeOf(reply));
        Q_EMIT changed();
    };
    historyObject.call(method, this, ended, QVariantList{id, QString(DaemonProtocol::configuratorIdentifier)} + more);
    Q_EMIT changed();
}

void HistoryStatus::preview(uint id, QObject *context, const Then &then) const
{
    historyObject.call("Preview"_L1, context, [then](const QDBusMessage &reply) { then(outcomeOf(reply)); }, {id});
}

void HistoryStatus::show(uint id, QObject *context,
                         const std::function<void(const HistoryParts &parts, const QString &error)> &then) const
{
    const auto answered = [then](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            return then({}, reply.errorName());
        then(historyParts(reply.arguments().value(0)), {});
    };
    historyObject.call("Show"_L1, context, answered, {id});
}

void HistoryStatus::list(QObject *context,
                         const std::function<void(const std::optional<QList<QVariantMap>> &entries)> &then) const
{
    historyObject.call("List"_L1, context, [then](const QDBusMessage &reply) { then(entriesIn(reply)); });
}

void HistoryStatus::clear(const Then &then)
{
    historyObject.call("Clear"_L1, this, [then](const QDBusMessage &reply) { then(outcomeOf(reply)); });
}

void HistoryStatus::readAgain()
{
    Q_EMIT listChanged();
    // A drag of a slider changes the history more often than the daemon can be asked.
    mIsOutdated = mIsReading;
    if (!mIsReading)
        read();
}

void HistoryStatus::read()
{
    mIsReading = true;
    historyObject.call("Next"_L1, this, [this](const QDBusMessage &reply) {
        mIsReading = false;
        if (std::exchange(mIsOutdated, false))
            return read();
        set(entriesIn(reply));
    });
}

void HistoryStatus::set(const std::optional<QList<QVariantMap>> &next)
{
    mIsKnown = next.has_value();
    mNextUndo.reset();
    mNextRedo.reset();
    for (const QVariantMap &entry : next.value_or(QList<QVariantMap>())) {
        const bool isUndo = entry.value(HistoryKeys::next).toString() == HistoryKeys::nextUndo;
        (isUndo ? mNextUndo : mNextRedo) = entry;
    }
    Q_EMIT changed();
}
