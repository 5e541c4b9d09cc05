// SPDX-License-Identifier: MIT
// The settings document on disk: settings.plist in the state folder, and the last good copies beside it.
// Owned by the daemon; one thread, and one process per folder (the store holds a lock).
#pragma once

#include "daemon/settings/settingsrepair.h"
#include "daemon/system/statefolder.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <utility>

/// Files of the folder:
///   settings.plist                  the document; replaced as a whole, so it is never half written
///   settings.plist.1 ... .3         the documents before it, newest first
///   settings.plist.0                the document before it, only while one is being replaced; what a daemon that was
///                                   killed in between left to do is done by the next save
///   settings.plist.damaged-<time>   what was no settings document, or one with wrong values, as it was; neither
///                                   overwritten nor read
///   settings.plist.replaced-<time>  what another program had put in the place of settings.plist while the daemon ran
///   lock                            held by the daemon that uses the folder
class SettingsStore
{
public:
    static constexpr int copyCount = 3;
    static constexpr int maximumProblems = 20;

    using OpenResult = StateFolder::Result;

    explicit SettingsStore(const QString &folder) : mFolder(folder) {}

    /// Opens the folder (StateFolder::open()) and looks whether settings.plist can be read; errorText() says why that
    /// could not be done. A settings.plist that cannot be read (no right to, an error of the disk, a folder in its
    /// place) may be good: the folder is unusable then and stays as it is.
    [[nodiscard]] OpenResult open();
    [[nodiscard]] QString errorText() const { return mErrorText; }

    /// What was wrong with the folder's files since the store was made, in English, the oldest first; the latest
    /// maximumProblems.
    [[nodiscard]] const QStringList &problems() const { return mProblems; }
    /// `handler` is called after each new problem.
    void setProblemHandler(std::function<void()> handler) { mProblemHandler = std::move(handler); }
    /// `handler` is called when a save has made the folder again, which was removed with all that it had.
    void setFolderHandler(std::function<void()> handler) { mFolderHandler = std::move(handler); }

    /// The newest document of the folder; absent when there is none. One with wrong values is repaired, on the disk,
    /// too, and its original is kept aside. Sets aside what is not a settings document or, in the place of a copy,
    /// cannot be read. Reports all of this.
    [[nodiscard]] std::optional<QVariantMap> load();

    /// Writes `document`, on the disk when this returns. False when that failed: the folder holds the documents that it
    /// held before. Makes the folder again when it has been removed. Keeps what another program has put in the place of
    /// settings.plist since load() or the save before, and reports it. load() must have been called before.
    [[nodiscard]] bool save(const QVariantMap &document);

private:
    /// Distinguishes one content of a file from another. It does not have to resist forgery: a program that can write
    /// the file can do worse.
    class Checksum
    {
    public:
        Checksum() = default;
        explicit Checksum(const QByteArray &content)
            : mSize(content.size()), mHash(qHashBits(content.constData(), size_t(content.size())))
        {
        }
        bool operator==(const Checksum &) const = default;

    private:
        qsizetype mSize = -1;
        size_t mHash = 0;
    };

    [[nodiscard]] QString path(const QString &suffix = {}) const;
    [[nodiscard]] QString copyPath(int copy) const;
    [[nodiscard]] QStringList presentFiles() const;
    [[nodiscard]] std::optional<RepairedSettings> read(const QString &filePath);
    void setAside(const QString &filePath, const QString &problem);
    [[nodiscard]] bool makeWay();
    [[nodiscard]] bool reopenFolder();
    void refuseSaving(const QString &filePath, const QString &reason);
    void removeLeftOvers();
    void finishInterruptedSave();
    enum class Found { nothing, ownDocument, wrongDocument, foreignFile };
    [[nodiscard]] std::optional<Found> findFile();
    [[nodiscard]] std::optional<QString> giveSecondName(Found found) const;
    [[nodiscard]] std::optional<QString> keepAside(QLatin1StringView mark) const;
    [[nodiscard]] bool replace(const QByteArray &data, const QString &secondName);
    void reportKept(const QString &name);
    void reportRepair(QString original);
    void reportProblem(const QString &problem);
    void takeBackReplacement(const QString &secondName);
    void shiftCopies();

    StateFolder mFolder;
    QString mErrorText;
    Checksum mOwnContent;  // of settings.plist as read or written last
    QStringList mInTheWay; // files that could be neither read nor set aside; nothing is saved while they are there
    QString mWrongFile;    // the file whose values were repaired, until the next save has kept it aside
    QStringList mRepairs;  // of that file
    QStringList mProblems;
    std::function<void()> mProblemHandler;
    std::function<void()> mFolderHandler;
};
