// SPDX-License-Identifier: MIT
// The settings document in use, which this class also writes to the disk. Owned by the DeviceDaemon; main thread only.
#pragma once

#include "daemon/settings/dailybackups.h"
#include "daemon/settings/documentcommands.h"
#include "daemon/settings/history.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

struct DaemonServices;
class SettingsStore;

/// A change is on the disk before the daemon uses it. If the write fails, the document does not change.
class CurrentSettings : public QObject
{
    Q_OBJECT

public:
    /// Turns the document in use into the one for the disk, which may have another profile active.
    using DocumentToKeep = std::function<QVariantMap(const QVariantMap &document)>;

    /// `store` must be open, `document` valid and completed. `store`, `history` and `services` must outlive this.
    CurrentSettings(SettingsStore &store, History &history, const DaemonServices &services, const QVariantMap &document,
                    DocumentToKeep documentToKeep, QObject *parent = nullptr);

    [[nodiscard]] const QVariantMap &document() const { return mDocument; }
    /// The document on the disk.
    [[nodiscard]] const QVariantMap &kept() const { return mKept; }
    [[nodiscard]] const DailyBackups &backups() const { return mBackups; }

    /// Whether both are identical on disk. Values that only compare equal, such as 1, true and 1.0, are not identical.
    [[nodiscard]] static bool areSame(const QVariantMap &a, const QVariantMap &b);

    /// Writes `document`, which the caller uses next, and then adds `changes`, which have led to it, to the history.
    /// False if the write failed.
    [[nodiscard]] bool save(const QVariantMap &document, const QList<StoredChange> &changes);
    /// Deletes all files with earlier settings (SettingsStore::keepOnly() and the backups). False if one is still
    /// there.
    [[nodiscard]] bool forgetPrevious();
    /// Makes a removed folder again, with the document. False if that failed.
    [[nodiscard]] bool keepFolder();
    /// Writes `document`, then uses it. False if the write failed.
    [[nodiscard]] bool store(const QVariantMap &document, const ChangeCause &cause);
    /// Stores the document of a command's outcome if it is a different one. In the returned outcome, `changesDocument`
    /// says whether the document has changed. Status::notSaved means that the write failed.
    [[nodiscard]] CommandOutcome storeOutcome(CommandOutcome outcome, const ChangeCause &cause);
    /// Uses `document` without writing it.
    void use(const QVariantMap &document);

    /// Call this after a start without factory settings. Until the first change, a client may then name a file with
    /// them.
    void setAwaitsFactorySettings(bool isAwaited) { mAwaitsFactorySettings = isAwaited; }
    /// If factory settings are awaited, starts from those in the property list at `path`. False if nothing has changed.
    [[nodiscard]] bool takeFactorySettings(const QString &path);

    /// Notifies the clients that `sourceApp` has changed the settings.
    void postUpdated(const QString &sourceApp);

Q_SIGNALS:
    /// `isOtherProfile`: the document has another active profile than before.
    void changed(bool isOtherProfile);

private:
    SettingsStore &mStore;
    History &mHistory;
    DailyBackups mBackups;
    const DaemonServices &mServices;
    QVariantMap mDocument;
    QVariantMap mKept;
    DocumentToKeep mDocumentToKeep;
    bool mAwaitsFactorySettings = false;
};
