// SPDX-License-Identifier: MIT
#include "profiles/profilecommands.h"

namespace ProfileCommands {

namespace {

bool addsProfile(int tag)
{
    return tag == newProfile || tag == importProfile || tag == copy;
}

} // namespace

const QList<MenuCommand> &all()
{
    static const QList<MenuCommand> commands{
        {rename, "lkeyRename"},
        {newProfile, "lkeyNew"},
        {importProfile, "lkeyImport"},
        {exportProfile, "lkeyExport"},
        {deleteProfile, "lkeyDelete"},
        {copy, "lkeyCopy"},
        {assignApplication, "lkeyAssignApplication"},
        {removeApplication, "lkeyRemoveApplication"},
        {restoreDefault, "lkeyRestoreDefault"},
    };
    return commands;
}

bool isEnabledInGearMenu(int tag, const State &state)
{
    if (tag == removeApplication)
        return state.hasApplication;
    if (state.selectedRow == 0 && state.profileCount == 1)
        return tag != deleteProfile;
    return state.profileCount < maximumProfileCount || !addsProfile(tag);
}

bool isEnabledInContextMenu(int tag, const State &state)
{
    if (tag == deleteProfile)
        return state.profileCount != 1;
    if (tag == removeApplication)
        return state.hasApplication;
    return state.profileCount < maximumProfileCount || !addsProfile(tag);
}

} // namespace ProfileCommands
