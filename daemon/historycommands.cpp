// SPDX-License-Identifier: MIT
#include "daemon/historycommands.h"

#include "base/document.h"
#include "base/historykeys.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "daemon/frontapplication/profileswitch.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/documentfault.h"
#include "daemon/settings/settingsdocument.h"

#include <algorithm>

using namespace Qt::StringLiterals;

HistoryCommands::HistoryCommands(History &history, CurrentSettings &settings, ProfileSwitch &profiles)
    : mHistory(history), mSettings(settings), mProfiles(profiles)
{
}

History::Found<quint32> HistoryCommands::undo(quint32 id, const QString &author)
{
    return store(mHistory.undoTarget(mSettings.kept(), id), author);
}

History::Found<quint32> HistoryCommands::redo(quint32 id, const QString &author)
{
    return store(mHistory.redoTarget(mSettings.kept(), id), author);
}

History::Found<quint32> HistoryCommands::join(quint32 first, const QString &author)
{
    return mHistory.joinSince(mSettings.kept(), first, author);
}

History::Found<History::Target> HistoryCommands::restore(quint32 id, quint32 newest, const QString &author)
{
    if (newest != 0 && newest != mHistory.lastId())
        return History::Refusal::outdated;
    const History::Found<History::Target> target = preview(id);
    const History::Found<quint32> stored = store(target, author);
    return stored ? target : stored.error();
}

History::Found<History::Target> HistoryCommands::preview(quint32 id) const
{
    return mHistory.restoreTarget(mSettings.kept(), id);
}

History::Found<ChangeParts> HistoryCommands::partsOf(quint32 id) const
{
    return mHistory.partsOf(mSettings.kept(), id);
}

Result<quint32, RestoreError> HistoryCommands::restoreDocument(const QByteArray &data, const QString &name,
                                                               const QString &author)
{
    const std::optional<QVariantMap> given = QlCoreUtility::convertDataToDictionary(data);
    if (!given)
        return RestoreError{.message = u"it is not a property list with a dictionary"_s};
    if (const QString fault = firstFaultOf(*given); !fault.isEmpty())
        return RestoreError{.message = fault};
    // A number of a macro that was ever assigned here or there is not assigned again.
    const int lastId = std::max(Document(mSettings.kept()).deviceSettings().lastMacroId(),
                                Document(*given).deviceSettings().lastMacroId());
    const QVariantMap document =
        SettingsDocument::completed(SettingsDocument::withDeviceSetting(*given, SettingsKeys::lastMacroId, lastId));
    if (CurrentSettings::areSame(document, mSettings.kept()))
        return mHistory.lastId();
    const ChangeCause cause{
        .author = author,
        .what = {{HistoryKeys::kind, QString(HistoryKeys::kindDocument)}, {HistoryKeys::name, name.left(100)}}};
    if (!mProfiles.replace(document, cause))
        return RestoreError{.cause = RestoreError::Cause::notSaved};
    return mHistory.lastId();
}

QByteArray HistoryCommands::document() const
{
    return QlCoreUtility::convertDictionaryToData(mSettings.kept()).value_or(QByteArray());
}

QStringList HistoryCommands::backupDays() const
{
    return mSettings.backups().days();
}

Result<quint32, RestoreError> HistoryCommands::restoreBackup(const QString &day, const QString &author)
{
    if (!backupDays().contains(day))
        return RestoreError{.cause = RestoreError::Cause::noBackup, .message = u"there is no backup of %1"_s.arg(day)};
    const Result<QByteArray> bytes = mSettings.backups().read(day);
    if (!bytes)
        return RestoreError{.cause = RestoreError::Cause::unreadable,
                            .message = u"the backup of %1 cannot be read: %2"_s.arg(day, bytes.error().message)};
    return restoreDocument(*bytes, day, author);
}

bool HistoryCommands::clear()
{
    const bool isAlone = mSettings.forgetPrevious();
    return mHistory.clear() && isAlone; // the history last: it flushes the folder
}

History::Found<quint32> HistoryCommands::store(const History::Found<History::Target> &target, const QString &author)
{
    if (!target)
        return target.error();
    ChangeCause cause = target->cause;
    cause.author = author;
    if (!mProfiles.replace(target->document, cause))
        return History::Refusal::notSaved;
    return mHistory.lastId();
}
