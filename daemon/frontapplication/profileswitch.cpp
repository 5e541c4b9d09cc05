// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/profileswitch.h"

#include "base/daemonprotocol.h"
#include "base/document.h"
#include "base/historykeys.h"
#include "base/profilerecord.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/logging.h"

#include <optional>
#include <utility>

using namespace SettingsDocument;

ProfileSwitch::ProfileSwitch(CurrentSettings &settings, const DaemonServices &services)
    : mSettings(settings), mServices(services)
{
}

QVariantMap ProfileSwitch::documentToKeep(const QVariantMap &document) const
{
    return mAutomaticSwitch.documentToKeep(document);
}

void ProfileSwitch::chooseByKey(int index)
{
    const QVariantMap before = mSettings.document();
    if (index < 0 || index >= Document(before).profiles().size()) {
        qCWarning(lcKeyboard, "file: the profile %d of a key does not exist", index);
        return;
    }
    const AutomaticSwitch previous = mAutomaticSwitch;
    mAutomaticSwitch.profileChosen();
    const QVariantMap whole = completed(withActiveProfile(before, index));
    const bool isSwitch = whole != before;
    if (!isSwitch && mAutomaticSwitch == previous)
        return;
    if (!mSettings.store(whole, {.author = HistoryKeys::authorKeyboard})) {
        mAutomaticSwitch = previous; // the keys also return to the previous profile
        return;
    }
    if (isSwitch) {
        mSettings.postUpdated(DaemonProtocol::daemonProcessName);
        showSwitch(before);
    }
    reportApplication();
}

void ProfileSwitch::setFrontApplication(const FrontApplication &application)
{
    const QVariantMap before = mSettings.document();
    const std::optional<int> profile = mAutomaticSwitch.applicationInFront(application, before);
    if (!profile)
        return reportApplication(); // another application of the same profile
    qCInfo(lcFront, "\"%s\" is in front: profile %d", qUtf8Printable(application.name()), *profile);
    mSettings.use(completed(withActiveProfile(before, *profile)));
    mSettings.postUpdated(DaemonProtocol::daemonProcessName);
    showSwitch(before);
    reportApplication();
}

CommandOutcome ProfileSwitch::plan(const DocumentCommand &command, const QVariantMap &request, const QString &author)
{
    if (!mPlan)
        mPlan = {.document = mSettings.document(), .previous = mAutomaticSwitch, .changes = {}};
    CommandOutcome outcome = command.apply(mPlan->document, request);
    if (!outcome.changesDocument)
        return outcome;
    outcome.document = mAutomaticSwitch.afterCommand(command.command, request, mPlan->document, outcome.document);
    outcome.changesDocument = !CurrentSettings::areSame(outcome.document, mPlan->document);
    mPlan->isChange = mPlan->isChange || outcome.changesDocument;
    mPlan->document = outcome.document;
    const bool isReplacement = command.command == DaemonProtocol::Command::replaceAllProfiles;
    const ChangeCause cause{.author = author,
                            .source = isReplacement ? ChangeSource::replacement : ChangeSource::command};
    mPlan->changes += StoredChange{.document = documentToKeep(outcome.document), .cause = cause};
    return outcome;
}

bool ProfileSwitch::storePlanned()
{
    const std::optional<Plan> plan = std::exchange(mPlan, std::nullopt);
    // Choosing a profile that is already active automatically changes only the copy on disk.
    const bool mustWrite = plan && (plan->isChange || mAutomaticSwitch != plan->previous);
    const bool isDone = !mustWrite || mSettings.save(plan->document, plan->changes);
    if (!isDone)
        mAutomaticSwitch = plan->previous;
    reportApplication();
    return isDone;
}

bool ProfileSwitch::replace(const QVariantMap &kept, const ChangeCause &cause)
{
    const QVariantMap before = mSettings.document();
    const AutomaticSwitch previous = mAutomaticSwitch;
    const QVariantMap document = mAutomaticSwitch.afterReplacement(before, mSettings.kept(), kept);
    if (!mSettings.save(document, {{.document = kept, .cause = cause}})) {
        mAutomaticSwitch = previous;
        return false;
    }
    mSettings.use(document);
    mSettings.postUpdated(DaemonProtocol::daemonProcessName);
    showSwitch(before);
    reportApplication();
    return true;
}

void ProfileSwitch::reportApplication()
{
    const QString application = mAutomaticSwitch.application();
    if (application == mApplication)
        return;
    mApplication = application;
    Q_EMIT applicationChanged(application);
}

void ProfileSwitch::showSwitch(const QVariantMap &before) const
{
    const Document document(mSettings.document());
    if (document.deviceSettings().isProfileOsdOn() && hasOtherProfileActive(before, mSettings.document()))
        mServices.showProfile(ProfileRecord::name(document.activeProfile()));
}
