// SPDX-License-Identifier: MIT
// What a change did, as a kind and names from which a client makes words in its language (base/historykeys.h). Pure
// functions; any thread.
#pragma once

#include <QVariantMap>

/// Recorded events are otherwise like events that a client has added. With a replacement of all profiles, a client
/// repairs the keys that led to a record that it has just deleted.
enum class ChangeSource { command, replacement, recording };

/// The kind of the change from `before` to `after` and its ingredients, which docs/daemon-protocol.md lists by kind.
/// `difference` is DocumentDifference::between() of both, and not empty. Long texts are cut off.
[[nodiscard]] QVariantMap describedChange(const QVariantMap &before, const QVariantMap &after,
                                          const QVariantMap &difference, ChangeSource source);
