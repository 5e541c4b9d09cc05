// SPDX-License-Identifier: MIT
// The history of the settings: an entry for each change that was stored, and the documents to which an undo, a redo or
// a restoration leads. Owned by the DeviceDaemon; main thread only.
#pragma once

#include "base/result.h"
#include "daemon/settings/changedescription.h"
#include "daemon/settings/changeparts.h"
#include "daemon/settings/historyentry.h"
#include "daemon/settings/historylimits.h"
#include "daemon/settings/historylog.h"

#include <QList>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

/// Who has made a change, and how.
struct ChangeCause
{
    QString author = {}; ///< HistoryKeys
    ChangeSource source = ChangeSource::command;
    HistoryEntry::Kind kind = HistoryEntry::Kind::change;
    QVariantMap what = {}; ///< empty: made from the difference
    quint32 target = 0;
};

/// A change that was written: the document that the disk keeps, after the change.
struct StoredChange
{
    QVariantMap document = {};
    ChangeCause cause = {};
};

/// An entry is added after its change has been written, without a flush. A daemon that is killed in between leaves
/// settings that the history does not know; open() finds the missing entry by the copies of the settings, or adds a gap
/// that no undo crosses. All documents here are those that the disk keeps, with the profile chosen by hand active.
/// Automatic switches of the profile are therefore not in the history.
class History : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<qint64()>;

    /// The file is "history" in `folder`.
    explicit History(const QString &folder, const HistoryLimits &limits = {}, QObject *parent = nullptr);

    /// For tests: milliseconds since 1970, UTC.
    void setClock(Clock clock) { mClock = std::move(clock); }

    /// Reads the file. `document` is in use; `copies` returns the bytes of the settings files, the newest first.
    void open(const QVariantMap &document, const std::function<QList<QByteArray>()> &copies);

    /// Adds entries for changes that one write has stored. `before` is the document before the first, `digest` that of
    /// the bytes on the disk now.
    void record(const QVariantMap &before, const QList<StoredChange> &changes, quint64 digest);

    enum class Refusal {
        unknown,     ///< no such entry
        outdated,    ///< no longer the next one
        notInEffect, ///< it has been taken back
        unreachable, ///< nothing leads back so far
        invalid,     ///< the result would exceed a limit
        notSaved,    ///< the settings file could not be written
    };

    /// Makes one entry of the change `first` and all later ones, which leads to the same `document`, the present one.
    /// Refused as outdated if one of them is not a change of `author`, or has been taken back. Returns the id of the
    /// new entry; 0 if the changes cancel each other out, and no entry is left.
    [[nodiscard]] Result<quint32, Refusal> joinSince(const QVariantMap &document, quint32 first, const QString &author);

    /// All entries, the oldest first, in the form of the bus (docs/daemon-protocol.md).
    [[nodiscard]] QList<QVariantMap> entries() const;
    /// Of those, the entries that Undo and Redo take next.
    [[nodiscard]] QList<QVariantMap> nextEntries() const;

    /// A document that an entry leads to.
    struct Target
    {
        QVariantMap document = {};
        ChangeCause cause = {};     ///< without an author
        bool isAlone = true;        ///< only the named change is taken back
        QList<quint32> others = {}; ///< otherwise: the later changes that are also taken back, the newest first
    };
    template <typename T> using Found = Result<T, Refusal>;

    // `document` is the present one.
    [[nodiscard]] Found<Target> undoTarget(const QVariantMap &document, quint32 id) const;
    [[nodiscard]] Found<Target> redoTarget(const QVariantMap &document, quint32 id) const;
    /// The document without the change. If a later change has touched the same record: the whole document as it was
    /// before the change.
    [[nodiscard]] Found<Target> restoreTarget(const QVariantMap &document, quint32 id) const;

    /// The things that the entry has changed, whether the change is still in effect or not.
    [[nodiscard]] Found<ChangeParts> partsOf(const QVariantMap &document, quint32 id) const;

    /// The id of the newest entry; 0 without one.
    [[nodiscard]] quint32 lastId() const { return mLastId; }

    /// Forgets all entries. False if they are still on the disk.
    [[nodiscard]] bool clear();

Q_SIGNALS:
    void changed();

private:
    /// An entry whose contents stay encoded until they are needed.
    struct Item
    {
        quint32 id = 0;
        HistoryEntry::Kind kind = HistoryEntry::Kind::change;
        qint64 timeMs = 0;
        quint32 target = 0;
        QByteArray frame = {};
    };
    /// A change, and whether it was made or taken back.
    struct Step
    {
        quint32 id = 0;
        bool isForward = true;
        bool operator==(const Step &) const = default;
    };

    [[nodiscard]] const Item *find(quint32 id) const;
    [[nodiscard]] std::optional<QVariantMap> forwardDifference(const Step &step) const;
    [[nodiscard]] std::optional<std::vector<Step>> pathSince(quint32 id) const;
    [[nodiscard]] std::optional<QVariantMap> documentBefore(const QVariantMap &document, const Step &step,
                                                            const std::vector<Step> &path) const;
    [[nodiscard]] std::optional<QVariantMap> documentWithout(const QVariantMap &document, const Step &step,
                                                             const std::vector<Step> &path) const;
    [[nodiscard]] static std::optional<Step> stepOf(const Item &item);
    [[nodiscard]] std::optional<Step> stepInEffect(const Item &item) const;
    [[nodiscard]] bool isInEffect(quint32 id) const;
    [[nodiscard]] HistoryEntry entryOf(const QVariantMap &before, const StoredChange &change) const;
    void join(HistoryEntry &entry, const QVariantMap &before, const StoredChange &change) const;
    void take(const HistoryEntry &entry, const QByteArray &frame);
    [[nodiscard]] bool fits(const QByteArray &frame) const;
    void write(const QList<HistoryEntry> &entries);
    void load();
    bool see(qint64 timeMs);
    [[nodiscard]] std::vector<Item>::iterator firstKept(qint64 oldestMs);
    void dropOld(qint64 slackMs);
    [[nodiscard]] bool compact();
    void catchUp(const QVariantMap &document, quint64 digest, const QList<QByteArray> &copies);
    [[nodiscard]] std::optional<HistoryEntry> missedStep(const QVariantMap &document) const;
    [[nodiscard]] QVariantMap shown(const Item &item) const;

    HistoryLimits mLimits;
    HistoryLog mLog;
    Clock mClock;
    std::vector<Item> mItems;   // ascending ids
    std::vector<quint32> mUndo; // changes in effect; the last one is next
    std::vector<quint32> mRedo;
    quint32 mGap = 0; // the entries up to this one are out of reach
    quint32 mLastId = 0;
    qint64 mSeenMs = 0;             // the latest time of the clock that is a day after the one before it
    qint64 mConfirmedMs = 0;        // the latest time of the clock that another day has followed
    std::optional<quint64> mDigest; // of the document that the last entry led to
};
