// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/automaticswitch.h"

#include "base/applicationmatch.h"
#include "base/document.h"
#include "base/profilerecord.h"
#include "daemon/settings/requestreader.h"
#include "daemon/settings/settingsdocument.h"

#include <algorithm>

using DaemonProtocol::Command;
using namespace SettingsDocument;

namespace {

std::optional<int> boundProfile(const QVariantMap &document, const FrontApplication &application)
{
    const Document read(document);
    return ApplicationMatch::boundProfile(read.profiles(), application, read.activeProfileIndex());
}

} // namespace

std::optional<int> AutomaticSwitch::applicationInFront(const FrontApplication &application, const QVariantMap &document)
{
    if (application == mApplication)
        return {}; // another window of the same application: a profile chosen by hand meanwhile stays
    mApplication = application;
    return decide(document);
}

std::optional<int> AutomaticSwitch::decide(const QVariantMap &document)
{
    const int active = Document(document).activeProfileIndex();
    const std::optional<int> bound = boundProfile(document, mApplication);
    if (!bound)
        return std::exchange(mRemembered, std::nullopt);
    if (*bound == active)
        return {};
    if (!mRemembered)
        mRemembered = active;
    if (*mRemembered == *bound)
        mRemembered.reset();
    return bound;
}

QVariantMap AutomaticSwitch::afterCommand(Command command, const QVariantMap &request, const QVariantMap &before,
                                          const QVariantMap &after)
{
    switch (command) {
    case Command::addProfile:
        if (!RequestReader::flag(request, DaemonProtocol::keepsActiveProfile).value_or(false))
            profileChosen();
        return after;
    case Command::switchProfile: profileChosen(); return after;
    case Command::deleteProfile:
        return afterDeletion(RequestReader::number(request, DaemonProtocol::profileId).value_or(-1), before, after);
    case Command::updateProfile:
    case Command::replaceAllProfiles: break;
    default: return after;
    }
    if (mRemembered)
        remember(*mRemembered, after);
    // Only a change of the binding may switch: other changes must not undo a switch by hand.
    if (boundProfile(before, mApplication) == boundProfile(after, mApplication))
        return after;
    const std::optional<int> profile = decide(after);
    return profile ? completed(withActiveProfile(after, *profile)) : after;
}

QVariantMap AutomaticSwitch::afterReplacement(const QVariantMap &before, const QVariantMap &keptBefore,
                                              const QVariantMap &kept)
{
    const bool isFollowing = mRemembered && !hasOtherProfileActive(keptBefore, kept);
    mRemembered.reset();
    // By its record: the replacement may have moved the profile.
    const auto binding = [this](const QVariantMap &document) {
        const std::optional<int> bound = boundProfile(document, mApplication);
        return bound ? std::optional(ProfileRecord::appInfo(Document(document).profile(*bound))) : std::nullopt;
    };
    if (!isFollowing && binding(before) == binding(kept))
        return kept;
    const std::optional<int> profile = decide(kept);
    return profile ? completed(withActiveProfile(kept, *profile)) : kept;
}

QVariantMap AutomaticSwitch::afterDeletion(int deleted, const QVariantMap &before, const QVariantMap &after)
{
    if (!mRemembered)
        return after;
    const int remembered = deleted <= *mRemembered ? std::max(0, *mRemembered - 1) : *mRemembered;
    if (deleted != Document(before).activeProfileIndex()) {
        remember(remembered, after);
        return after;
    }
    profileChosen();
    return completed(withActiveProfile(after, remembered));
}

void AutomaticSwitch::remember(int profile, const QVariantMap &document)
{
    mRemembered = std::min(profile, static_cast<int>(Document(document).profiles().size()) - 1);
    if (*mRemembered == Document(document).activeProfileIndex())
        mRemembered.reset();
}

QVariantMap AutomaticSwitch::documentToKeep(const QVariantMap &document) const
{
    return mRemembered ? completed(withActiveProfile(document, *mRemembered)) : document;
}
