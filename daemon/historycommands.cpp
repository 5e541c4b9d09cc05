// SPDX-License-Identifier: MIT
#include "daemon/historycommands.h"

#include "daemon/frontapplication/profileswitch.h"
#include "daemon/settings/currentsettings.h"

HistoryCommands::HistoryCommands(const History &history, const CurrentSettings &settings, ProfileSwitch &profiles)
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

History::Found<History::Target> HistoryCommands::restore(quint32 id, const QString &author)
{
    const History::Found<History::Target> target = preview(id);
    const History::Found<quint32> stored = store(target, author);
    return stored ? target : stored.error();
}

History::Found<History::Target> HistoryCommands::preview(quint32 id) const
{
    return mHistory.restoreTarget(mSettings.kept(), id);
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
