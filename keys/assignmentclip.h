// SPDX-License-Identifier: MIT
// An assignment on the clipboard. No state; main thread.
#pragma once

#include "keys/keymapping.h"

#include <QString>
#include <QVariant>

#include <optional>

class QMimeData;

struct AssignmentClip
{
    KeyMappings::Assignment assignment = KeyMappings::Assignment::defaultKey;
    QVariant param1;
    QVariant param2;
    QString recordName; ///< of the macro or profile; empty for every other assignment

    /// Returns the clipboard's content. `text` is for programs that read only text. The caller owns the result.
    [[nodiscard]] QMimeData *toMimeData(const QString &text) const;
    /// Absent for content of other programs and for one that is not an assignment that this program knows. `data` may
    /// be null.
    [[nodiscard]] static std::optional<AssignmentClip> fromMimeData(const QMimeData *data);
};
