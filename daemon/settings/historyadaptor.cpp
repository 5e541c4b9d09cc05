// SPDX-License-Identifier: MIT
#include "daemon/settings/historyadaptor.h"

#include "base/historykeys.h"
#include "daemon/settings/changeauthor.h"

#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace {

QVariantMap outcomeOf(const History::Target &target)
{
    return {{HistoryKeys::isAlone, target.isAlone},
            {HistoryKeys::others, QVariant::fromValue(QList<uint>(target.others.begin(), target.others.end()))}};
}

} // namespace

HistoryObject::HistoryObject(History &history, HistoryCalls &calls, QObject *parent) : QObject(parent)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    qDBusRegisterMetaType<QList<uint>>();
    new HistoryAdaptor(history, calls, this);
}

bool HistoryObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(HistoryKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

HistoryAdaptor::HistoryAdaptor(History &history, HistoryCalls &calls, HistoryObject *object)
    : QDBusAbstractAdaptor(object), mHistory(history), mCalls(calls), mObject(object)
{
    connect(&mHistory, &History::changed, this, &HistoryAdaptor::Changed);
}

uint HistoryAdaptor::Undo(uint id, const QString &sourceApp)
{
    const History::Found<quint32> done = mCalls.undo(id, authorOfSource(sourceApp));
    if (!done)
        refuse(done.error());
    return done.valueOr(0);
}

uint HistoryAdaptor::Redo(uint id, const QString &sourceApp)
{
    const History::Found<quint32> done = mCalls.redo(id, authorOfSource(sourceApp));
    if (!done)
        refuse(done.error());
    return done.valueOr(0);
}

uint HistoryAdaptor::Join(uint first, const QString &sourceApp)
{
    const History::Found<quint32> joined = mCalls.join(first, authorOfSource(sourceApp));
    if (!joined)
        refuse(joined.error());
    return joined.valueOr(0);
}

QVariantMap HistoryAdaptor::Restore(uint id, const QString &sourceApp, uint newest)
{
    const History::Found<History::Target> done = mCalls.restore(id, newest, authorOfSource(sourceApp));
    if (!done) {
        refuse(done.error());
        return {};
    }
    return outcomeOf(*done);
}

QVariantMap HistoryAdaptor::Preview(uint id)
{
    const History::Found<History::Target> target = mCalls.preview(id);
    if (!target) {
        refuse(target.error());
        return {};
    }
    QVariantMap outcome = outcomeOf(*target);
    outcome.insert(HistoryKeys::newest, mHistory.lastId());
    return outcome;
}

QVariantMap HistoryAdaptor::Show(uint id)
{
    const History::Found<ChangeParts> parts = mCalls.partsOf(id);
    if (!parts) {
        refuse(parts.error());
        return {};
    }
    return {{HistoryKeys::parts, QVariant::fromValue(parts->list)},
            {HistoryKeys::count, static_cast<uint>(parts->count)}};
}

uint HistoryAdaptor::RestoreDocument(const QByteArray &data, const QString &name, const QString &sourceApp)
{
    return idOrError(mCalls.restoreDocument(data, name, authorOfSource(sourceApp)));
}

uint HistoryAdaptor::RestoreBackup(const QString &day, const QString &sourceApp)
{
    return idOrError(mCalls.restoreBackup(day, authorOfSource(sourceApp)));
}

uint HistoryAdaptor::idOrError(const Result<quint32, RestoreError> &restored)
{
    if (restored)
        return *restored;
    using enum RestoreError::Cause;
    const RestoreError &error = restored.error();
    switch (error.cause) {
    case faulty:
    case noBackup: mObject->sendErrorReply(HistoryKeys::faultyError, error.message); break;
    case unreadable: mObject->sendErrorReply(HistoryKeys::unreadableError, error.message); break;
    case notSaved: refuse(History::Refusal::notSaved); break;
    }
    return 0;
}

void HistoryAdaptor::Clear()
{
    if (!mCalls.clear())
        refuse(History::Refusal::notSaved);
}

void HistoryAdaptor::refuse(History::Refusal refusal)
{
    using enum History::Refusal;
    switch (refusal) {
    case unknown: mObject->sendErrorReply(HistoryKeys::unknownError, u"the history has no such entry"_s); return;
    case outdated:
        mObject->sendErrorReply(HistoryKeys::outdatedError,
                                u"the settings have changed since; read the history again"_s);
        return;
    case notInEffect:
        mObject->sendErrorReply(HistoryKeys::notInEffectError, u"the change has been taken back already"_s);
        return;
    case unreachable:
        mObject->sendErrorReply(HistoryKeys::unreachableError,
                                u"the settings were replaced in another way since, and nothing leads back"_s);
        return;
    case invalid:
        mObject->sendErrorReply(HistoryKeys::invalidError, u"there would be too many profiles, macros or events"_s);
        return;
    case notSaved:
        mObject->sendErrorReply(HistoryKeys::notSavedError,
                                u"the settings folder cannot be written (is the disk full?)"_s);
        return;
    }
}
