// SPDX-License-Identifier: MIT
// One entry of the history: who changed what, when, and the difference with which to go back. A value; any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

struct HistoryEntry
{
    enum class Kind {
        change,  ///< has a difference and can be undone; also a restoration
        undo,    ///< of the change `target`
        redo,    ///< of the change `target`
        nothing, ///< the joined change has led back to where it began
        gap,     ///< the document is another one, and nothing leads back to the one before
    };

    static constexpr quint32 maximumId = 0x7fff'ffff; ///< more changes than anybody can make

    quint32 id = 0;
    Kind kind = Kind::change;
    qint64 timeMs = 0;     ///< since 1970, UTC
    QString author = {};   ///< HistoryKeys
    QVariantMap what = {}; ///< describedChange(); of an undo and a redo empty
    QVariantMap difference = {};
    quint32 target = 0;
    quint32 joins = 0;                  ///< this entry replaces the entries from this id on; 0 for none
    std::optional<quint64> digest = {}; ///< of the document on the disk; absent if an entry of the same write follows

    /// As bytes for the HistoryLog; empty if the difference has a value that no property list can hold.
    [[nodiscard]] QByteArray toFrame() const;
    /// Absent if the bytes are not an entry.
    [[nodiscard]] static std::optional<HistoryEntry> fromFrame(const QByteArray &frame);
    /// The id in the bytes, even if they are an entry of a kind that this version does not know; 0 if there is none.
    [[nodiscard]] static quint32 idOfFrame(const QByteArray &frame);
};
