// SPDX-License-Identifier: MIT
#include "daemon/settings/currentsettings.h"

#include "base/daemonprotocol.h"
#include "base/historykeys.h"
#include "base/propertylist.h"
#include "daemon/settings/factorysettings.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/logging.h"

#include <optional>
#include <utility>

CurrentSettings::CurrentSettings(SettingsStore &store, History &history, const DaemonServices &services,
                                 const QVariantMap &document, DocumentToKeep documentToKeep, QObject *parent)
    : QObject(parent), mStore(store), mHistory(history), mBackups(store.folder()), mServices(services),
      mDocument(document), mKept(document), mDocumentToKeep(std::move(documentToKeep))
{
}

bool CurrentSettings::areSame(const QVariantMap &a, const QVariantMap &b)
{
    return a == b && PropertyList::writeBinary(a) == PropertyList::writeBinary(b);
}

bool CurrentSettings::save(const QVariantMap &document, const QList<StoredChange> &changes)
{
    const QVariantMap kept = mDocumentToKeep(document);
    if (!changes.isEmpty())
        mBackups.beforeChange(mKept);
    if (!mStore.save(kept)) {
        mBackups.changeFailed();
        return false;
    }
    mHistory.record(std::exchange(mKept, kept), changes, mStore.digest());
    mAwaitsFactorySettings = false;
    return true;
}

bool CurrentSettings::forgetPrevious()
{
    const bool isAlone = mStore.keepOnly(mKept);
    return mBackups.clear() && isAlone;
}

bool CurrentSettings::keepFolder()
{
    return mStore.hasFolder() || save(mDocument, {});
}

bool CurrentSettings::store(const QVariantMap &document, const ChangeCause &cause)
{
    if (!save(document, {{.document = mDocumentToKeep(document), .cause = cause}}))
        return false;
    use(document);
    return true;
}

CommandOutcome CurrentSettings::storeOutcome(CommandOutcome outcome, const ChangeCause &cause)
{
    outcome.changesDocument = outcome.changesDocument && !areSame(outcome.document, mDocument);
    if (!outcome.changesDocument || store(outcome.document, cause))
        return outcome;
    return {.status = Status::notSaved, .document = mDocument, .reply = outcome.reply, .changesDocument = false};
}

void CurrentSettings::use(const QVariantMap &document)
{
    const bool isOtherProfile = SettingsDocument::hasOtherProfileActive(mDocument, document);
    mDocument = document;
    Q_EMIT changed(isOtherProfile);
}

bool CurrentSettings::takeFactorySettings(const QString &path)
{
    if (!mAwaitsFactorySettings)
        return false;
    const std::optional<QVariantMap> factory = readFactorySettings(path);
    if (!factory)
        return false;
    qCInfo(lcSettings, "file: factory settings of the client are used: %s", qUtf8Printable(path));
    return store(*factory, {.author = HistoryKeys::authorClient});
}

void CurrentSettings::postUpdated(const QString &sourceApp)
{
    mServices.postNotification(DaemonProtocol::profileUpdated, {{DaemonProtocol::sourceApp, sourceApp}});
}
