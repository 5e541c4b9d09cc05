// SPDX-License-Identifier: MIT
// The two kinds of record that commands name, add, change and delete: one row each. No state; any thread.
#pragma once

#include "base/daemonprotocol.h"
#include "base/document.h"
#include "keys/keymapping.h"

#include <QLatin1StringView>
#include <QVariantMap>

/// A kind of record that has an index (from 0), a number that people use (from 1), and a name.
struct RecordKind
{
    QLatin1StringView word; ///< "profile", "macro"
    QVariantList (Document::*records)() const;
    QLatin1StringView nameKey;     ///< of a record
    QLatin1StringView contentKey;  ///< of a record; no other kind has it
    QLatin1StringView listCommand; ///< prints all records of the kind
    QLatin1StringView fileSuffix;  ///< without a dot
    DaemonProtocol::Command deletion;
    QLatin1StringView indexKey;         ///< of the request to delete
    KeyMappings::Assignment assignment; ///< of the keys that name such a record
};

extern const RecordKind profileKind;
extern const RecordKind macroKind;

/// Whether `record` has the name or the content of a record of `kind`.
[[nodiscard]] bool isOfKind(const QVariantMap &record, const RecordKind &kind);
