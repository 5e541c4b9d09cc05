// SPDX-License-Identifier: MIT
// The settings document that the daemon uses at the moment, and its way to the disk. Owned by the DeviceDaemon; one
// thread, the daemon's.
#pragma once

#include "daemon/settings/documentcommands.h"

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

struct DaemonOutlets;
class SettingsStore;

/// A change is on the disk before the daemon uses it. When it cannot be written, nothing has changed.
class CurrentSettings : public QObject
{
    Q_OBJECT

public:
    /// Turns the document in use into the one for the disk, which may have another profile active.
    using DocumentToKeep = std::function<QVariantMap(const QVariantMap &document)>;

    /// `store` is open. `document` is valid and completed. `store` and `outlets` must live longer.
    CurrentSettings(SettingsStore &store, const DaemonOutlets &outlets, const QVariantMap &document,
                    DocumentToKeep documentToKeep, QObject *parent = nullptr);

    [[nodiscard]] const QVariantMap &document() const { return mDocument; }

    /// Whether the disk keeps the same of both. Values that only compare equal, such as 1, true and 1.0, are not.
    [[nodiscard]] static bool areSame(const QVariantMap &a, const QVariantMap &b);

    /// Writes `document`, which the caller uses next. False when it could not be written.
    [[nodiscard]] bool save(const QVariantMap &document);
    /// Uses `document` and writes it. False when it could not be written.
    [[nodiscard]] bool store(const QVariantMap &document);
    /// Stores the document of a command's outcome, if it is another one. In the returned outcome, `changesDocument`
    /// says whether the document has changed, and Status::notSaved that it could not be written.
    [[nodiscard]] CommandOutcome storeOutcome(CommandOutcome outcome);
    /// Uses `document` without writing it.
    void use(const QVariantMap &document);

    /// Until the first change, a client may name the factory settings to start from. Set after a start without any.
    void setAwaitsFactorySettings(bool isAwaited) { mAwaitsFactorySettings = isAwaited; }
    /// Starts from the factory settings in the property list at `path`, if they are awaited. False when nothing has
    /// changed.
    [[nodiscard]] bool takeFactorySettings(const QString &path);

    /// Notifies the clients that `sourceApp` has changed the settings.
    void postUpdated(const QString &sourceApp);

Q_SIGNALS:
    /// `isOtherProfile`: another profile is active in the document than before.
    void changed(bool isOtherProfile);

private:
    SettingsStore &mStore;
    const DaemonOutlets &mOutlets;
    QVariantMap mDocument;
    DocumentToKeep mDocumentToKeep;
    bool mAwaitsFactorySettings = false;
};
