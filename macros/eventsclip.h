// SPDX-License-Identifier: MIT
// Copied events of a macro on the clipboard. Pure but for the clipboard's data; main thread only.
#pragma once

#include <QVariantList>

#include <optional>

class QMimeData;

namespace EventsClip {

/// Returns the clipboard's content for `events` (event dictionaries). Programs that read only text get the lines of the
/// event list. The caller owns the result.
[[nodiscard]] QMimeData *toMimeData(const QVariantList &events);

/// Whether the content claims to be events; fromMimeData() checks them. `data` may be null.
[[nodiscard]] bool offersEvents(const QMimeData *data);

/// Absent for content of other programs, and unless all of it is events that a macro can have. Only the fields of an
/// event are taken from it. `data` may be null.
[[nodiscard]] std::optional<QVariantList> fromMimeData(const QMimeData *data);

} // namespace EventsClip
