// SPDX-License-Identifier: MIT
// The settings document on disk: settings.plist in the state folder, and the last good copies beside it. Owned by the
// daemon; one thread, and one process per folder (the store holds a lock).
#pragma once

#include "daemon/settings/contentdigest.h"
#include "daemon/settings/settingsrepair.h"
#include "daemon/system/statefolder.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <utility>

/// Files of the folder:
///   settings.plist                  the document; replaced as a whole, so it is never half written
///   settings.plist.1 ... .3         the documents before it, newest first
///   settings.plist.0                the document before it, only during a replacement; if the daemon is killed then,
///                                   the next save finishes the replacement
///   settings.plist.damaged-<time>   the original of a file that was not a settings document or had wrong values;
///                                   neither overwritten nor read
///   settings.plist.replaced-<time>  another program's replacement of settings.plist while the daemon ran
///   <name>.<six letters>            the beginning of one of these files, of a backup or of the history; removed by the
///                                   next daemon
///   lock                            held by the daemon that uses the folder
class SettingsStore
{
public:
    static constexpr int copyCount = 3;
    static constexpr int maximumProblems = 20;

    using OpenError = StateFolder::OpenError;

    explicit SettingsStore(const QString &folder) : mFolder(folder) {}

    /// Opens the folder (StateFolder::open()) and checks that settings.plist can be read. An unreadable settings.plist
    /// (no permission, a disk error, a folder in its place) may be good. The folder is then unusable and remains
    /// unchanged.
    [[nodiscard]] Result<void, OpenError> open();

    /// The latest maximumProblems problems with the folder's files since the store was made, in English, oldest first.
    [[nodiscard]] const QStringList &problems() const { return mProblems; }
    /// `handler` is called after each new problem.
    void setProblemHandler(std::function<void()> handler) { mProblemHandler = std::move(handler); }
    /// `handler` is called when a save has made the folder again after its removal with all contents.
    void setFolderHandler(std::function<void()> handler) { mFolderHandler = std::move(handler); }

    /// The newest document of the folder; absent if there is none. Repairs a document with wrong values, also on the
    /// disk, and keeps its original aside. Sets aside files that are not a settings document, and unreadable copies.
    /// Reports all of this.
    [[nodiscard]] std::optional<QVariantMap> load();

    /// False after the folder, or its lock, was removed. The next save() makes it again.
    [[nodiscard]] bool hasFolder() const { return mFolder.isLocked(); }

    /// Writes `document`; it is on the disk when this returns. False if that failed: the folder then holds the same
    /// documents as before. Makes a removed folder again. If another program has replaced settings.plist since load()
    /// or the previous save, keeps that file and reports it. load() must have been called before.
    [[nodiscard]] bool save(const QVariantMap &document);

    /// Removes all other files with settings: the previous documents, files that were set aside, and what killed
    /// daemons have left. settings.plist keeps `document`, the present one, and is written only if it does not hold it.
    /// False if one of them is still there. load() must have been called before.
    [[nodiscard]] bool keepOnly(const QVariantMap &document);

    /// The contentDigest() of settings.plist as last read or written.
    [[nodiscard]] quint64 digest() const { return mOwnContent.digest(); }
    /// The bytes of settings.plist and its copies that can be read, the newest first.
    [[nodiscard]] QList<QByteArray> contents() const;
    [[nodiscard]] const QString &folder() const { return mFolder.path(); }

private:
    /// Distinguishes one content of a file from another.
    class Checksum
    {
    public:
        Checksum() = default;
        explicit Checksum(const QByteArray &content) : mSize(content.size()), mDigest(contentDigest(content)) {}
        bool operator==(const Checksum &) const = default;
        [[nodiscard]] quint64 digest() const { return mDigest; }

    private:
        qsizetype mSize = -1;
        quint64 mDigest = 0;
    };

    [[nodiscard]] QString path(const QString &suffix = {}) const;
    [[nodiscard]] QString copyPath(int copy) const;
    [[nodiscard]] QStringList presentFiles() const;
    [[nodiscard]] std::optional<RepairedSettings> read(const QString &filePath);
    void setAside(const QString &filePath, const QString &problem);
    [[nodiscard]] bool setObstaclesAside();
    [[nodiscard]] bool reopenFolder();
    void refuseSaving(const QString &filePath, const QString &reason);
    void removeLeftOvers();
    void finishInterruptedSave();
    enum class Found { nothing, ownDocument, wrongDocument, foreignFile };
    [[nodiscard]] std::optional<Found> findFile();
    [[nodiscard]] Result<QString> linkSecondName(Found found) const;
    [[nodiscard]] Result<QString> keepAside(QLatin1StringView mark) const;
    [[nodiscard]] bool replace(const QByteArray &data, const QString &secondName);
    void reportKept(const QString &name);
    void reportRepair(QString original);
    void reportProblem(const QString &problem);
    void undoReplacement(const QString &secondName);
    void shiftCopies();

    StateFolder mFolder;
    Checksum mOwnContent;   // of settings.plist as last read or written
    QStringList mObstacles; // files that could be neither read nor set aside; they block every save
    QString mWrongFile;     // the file with repaired values, until the next save has kept it aside
    QStringList mRepairs;   // of that file
    QStringList mProblems;
    std::function<void()> mProblemHandler;
    std::function<void()> mFolderHandler;
};
