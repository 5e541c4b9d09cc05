// SPDX-License-Identifier: MIT
// The daemon's history of the settings, as its object /History has it, and the ways back. Never waits for the daemon,
// which may also come later, go, and come back. Main thread only.
#pragma once

#include "daemonlink/historyentries.h"

#include <QList>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

class QDBusMessage;
class ServiceStatus;

/// Entries have the keys of base/historykeys.h. Their names come from other clients: show them with historyWords().
class HistoryStatus : public QObject
{
    Q_OBJECT

public:
    /// How a call has ended.
    struct Outcome
    {
        QString error = {}; ///< empty after a success, else the D-Bus name of the error (base/historykeys.h)
        bool isAlone = true;
        QList<uint> others = {}; ///< of a restoration: the ids of the other changes that it takes back
        uint newest = 0;         ///< of preview(): the id of the newest entry at that time
    };
    using Then = std::function<void(const Outcome &outcome)>;

    /// Follows the daemon that `service` follows.
    explicit HistoryStatus(const ServiceStatus &service, QObject *parent = nullptr);

    /// Asks the daemon for the first time. Must be called once.
    void start();

    /// The entry that undo() takes next. Absent if there is none, or if it is unknown.
    [[nodiscard]] const std::optional<QVariantMap> &nextUndo() const { return mNextUndo; }
    /// The entry that redo() takes next, in the same way.
    [[nodiscard]] const std::optional<QVariantMap> &nextRedo() const { return mNextRedo; }
    /// Whether the daemon has named the next entries.
    [[nodiscard]] bool isKnown() const { return mIsKnown; }
    /// Whether a call that changes the settings is on its way, or the daemon is asked for the next entries.
    [[nodiscard]] bool isBusy() const { return mIsChanging || mIsReading; }

    /// Takes back the entry `id`; the daemon refuses if another one is next. Must not be called while
    /// isBusy().
    void undo(uint id, const Then &then) { change(QLatin1StringView("Undo"), id, then); }
    /// Makes the change of the entry `id` again, in the same way.
    void redo(uint id, const Then &then) { change(QLatin1StringView("Redo"), id, then); }

    /// Takes back the entry `id` alone, or with the later changes that preview() names. The daemon refuses, as
    /// outdated, if the newest entry is not `newest`, that of the preview. Must not be called while isBusy().
    void restore(uint id, uint newest, const Then &then) { change(QLatin1StringView("Restore"), id, then, {newest}); }
    /// Asks what restore() would do, without changing anything. Later, `then` gets the answer, unless `context` has
    /// been destroyed.
    void preview(uint id, QObject *context, const Then &then) const;
    /// Asks for the things that the entry has changed, in the same way. Without them, `error` is as that of an Outcome.
    void show(uint id, QObject *context,
              const std::function<void(const HistoryParts &parts, const QString &error)> &then) const;
    /// Asks for all entries, the oldest first; absent without an answer. `context` as in preview().
    void list(QObject *context,
              const std::function<void(const std::optional<QList<QVariantMap>> &entries)> &then) const;
    /// Deletes all entries and the daily backups.
    void clear(const Then &then);

Q_SIGNALS:
    /// One of the next entries, or isBusy(), has changed.
    void changed();
    /// The answer of list() may have changed.
    void listChanged();

private Q_SLOTS:
    void readAgain();

private:
    void change(QLatin1StringView method, uint id, const Then &then, const QVariantList &more = {});
    void read();
    void set(const std::optional<QList<QVariantMap>> &next);

    std::optional<QVariantMap> mNextUndo;
    std::optional<QVariantMap> mNextRedo;
    bool mIsKnown = false;
    bool mIsChanging = false;
    bool mIsReading = false;
    bool mIsOutdated = false; ///< the history has changed since the last question
};
