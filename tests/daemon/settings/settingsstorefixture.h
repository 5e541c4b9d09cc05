// SPDX-License-Identifier: MIT
// A settings store in a private folder, and the documents that tests keep in it. Used on the test's thread.
#pragma once

#include "daemon/settings/settingsstore.h"

#include <QDir>
#include <QObject>
#include <QTemporaryDir>

#include <memory>
#include <optional>

/// A valid document with one profile.
[[nodiscard]] QVariantMap documentNamed(const QString &profileName);
/// A document with one fault: the position of the active profile does not exist.
[[nodiscard]] QVariantMap wrongDocumentNamed(const QString &profileName);
[[nodiscard]] QByteArray dataOf(const QVariantMap &document);
/// The name of the first profile; null without a document.
[[nodiscard]] QString nameOf(const std::optional<QVariantMap> &document);

class SettingsStoreFixture : public QObject
{
    Q_OBJECT

protected:
    void makeFolder();
    void removeFolder();
    /// Ends the store and opens another one, like a daemon that restarts.
    void reopen();

    [[nodiscard]] QString filePath(const QString &name) const { return mFolder + u'/' + name; }
    [[nodiscard]] QStringList filesMatching(const QString &pattern) const
    {
        return QDir(mFolder).entryList({pattern}, QDir::Files);
    }
    [[nodiscard]] QByteArray contentOf(const QString &name) const;
    /// The profile names of the documents in the files settings.plist, .0, .1, .2 and .3; "" for a missing file.
    [[nodiscard]] QStringList storedNames() const;
    void store(const QStringList &names) const;

    std::optional<QTemporaryDir> mTemporary;
    QString mFolder;
    std::unique_ptr<SettingsStore> mStore;
};
