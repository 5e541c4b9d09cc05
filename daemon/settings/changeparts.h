// SPDX-License-Identifier: MIT
// The single things that a change touched, each with its state before and after it (docs/daemon-protocol.md, "Show").
// Pure functions; any thread.
#pragma once

#include <QList>
#include <QVariantMap>

struct ChangeParts
{
    static constexpr qsizetype maximumListed = 200;

    QList<QVariantMap> list = {}; ///< the first parts, at most maximumListed
    qsizetype count = 0;          ///< of all parts
};

/// `difference` is DocumentDifference::between() of both documents. Long texts are cut off. A reference of a key whose
/// macro or profile is still the same, only at another place, is not a part.
[[nodiscard]] ChangeParts changeParts(const QVariantMap &before, const QVariantMap &after,
                                      const QVariantMap &difference);
