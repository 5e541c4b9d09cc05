// SPDX-License-Identifier: MIT
#include "cli/historyclient.h"

#include "base/daemonprotocol.h"
#include "base/historykeys.h"
#include "base/qlcoreutility.h"

#include <QDBusArgument>
#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace {

constexpr OwnError ownErrors[] = {{HistoryKeys::unknownError, ExitCode::usage},
                                  {HistoryKeys::outdatedError},
                                  {HistoryKeys::notInEffectError},
                                  {HistoryKeys::unreachableError},
                                  {HistoryKeys::invalidError},
                                  {HistoryKeys::notSavedError},
                                  {HistoryKeys::unreadableError},
                                  {HistoryKeys::faultyError, ExitCode::usage}};
constexpr DaemonObjectClient history{.path = HistoryKeys::objectPath,
                                     .interface = HistoryKeys::interfaceName,
                                     .words = "history of the settings"_L1,
                                     .ownErrors = ownErrors};

DaemonObjectResult<QList<QVariantMap>> entries(QLatin1StringView method)
{
    const DaemonObjectResult<QVariantList> values = history.call(method, {}, u"the history cannot be read"_s);
    if (!values)
        return values.error();
    return historyEntries(values->value(0));
}

DaemonObjectResult<HistoryClient::Restoration> restoration(const DaemonObjectResult<QVariantList> &values)
{
    if (!values)
        return values.error();
    const QVariantMap outcome = qdbus_cast<QVariantMap>(values->value(0));
    return HistoryClient::Restoration{.isAlone = outcome.value(HistoryKeys::isAlone).toBool(),
                                      .others = qdbus_cast<QList<uint>>(outcome.value(HistoryKeys::others)),
                                      .newest = outcome.value(HistoryKeys::newest).toUInt()};
}

QVariantList withSource(uint id)
{
    return {id, QString(DaemonProtocol::kestractlIdentifier)};
}

} // namespace

DaemonObjectResult<QList<QVariantMap>> HistoryClient::list()
{
    return entries("List"_L1);
}

DaemonObjectResult<QList<QVariantMap>> HistoryClient::next()
{
    return entries("Next"_L1);
}

DaemonObjectResult<void> HistoryClient::undo(uint id)
{
    return history.call("Undo"_L1, withSource(id), u"the change cannot be undone"_s).withoutValue();
}

DaemonObjectResult<void> HistoryClient::redo(uint id)
{
    return history.call("Redo"_L1, withSource(id), u"the change cannot be made again"_s).withoutValue();
}

DaemonObjectResult<HistoryClient::Restoration> HistoryClient::restore(uint id, uint newest)
{
    return restoration(history.call("Restore"_L1, withSource(id) << newest, u"the settings cannot be restored"_s));
}

DaemonObjectResult<HistoryClient::Restoration> HistoryClient::preview(uint id)
{
    return restoration(history.call("Preview"_L1, {id}, u"the change cannot be shown"_s));
}

DaemonObjectResult<HistoryParts> HistoryClient::show(uint id)
{
    const DaemonObjectResult<QVariantList> values = history.call("Show"_L1, {id}, u"the change cannot be shown"_s);
    if (!values)
        return values.error();
    return historyParts(values->value(0));
}

DaemonObjectResult<QVariantMap> HistoryClient::document()
{
    const DaemonObjectResult<QVariantList> values = history.call("Document"_L1, {}, u"the settings cannot be read"_s);
    if (!values)
        return values.error();
    return QlCoreUtility::convertDataToDictionary(values->value(0).toByteArray()).value_or(QVariantMap());
}

DaemonObjectResult<void> HistoryClient::restoreDocument(const QByteArray &data, const QString &name)
{
    return history
        .call("RestoreDocument"_L1, {data, name, QString(DaemonProtocol::kestractlIdentifier)},
              u"the settings cannot be restored"_s)
        .withoutValue();
}

DaemonObjectResult<QStringList> HistoryClient::backups()
{
    const DaemonObjectResult<QVariantList> values = history.call("Backups"_L1, {}, u"the backups cannot be listed"_s);
    if (!values)
        return values.error();
    return values->value(0).toStringList();
}

DaemonObjectResult<void> HistoryClient::restoreBackup(const QString &day)
{
    return history
        .call("RestoreBackup"_L1, {day, QString(DaemonProtocol::kestractlIdentifier)},
              u"the settings cannot be restored"_s)
        .withoutValue();
}

DaemonObjectResult<void> HistoryClient::clear()
{
    return history.call("Clear"_L1, {}, u"the history cannot be deleted"_s).withoutValue();
}
