// SPDX-License-Identifier: MIT
// How a command line can continue, for the shells: made from the command table. Pure functions; any thread.
#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// A word that can be next, and its help (one line, may be empty).
struct Completion
{
    QString word;
    QString help;
};

struct Completions
{
    QList<Completion> words;
    bool canBeFile = false; ///< the name of a file can be next
};

namespace CompletionValues {
inline constexpr QLatin1StringView profiles{"profiles"};
inline constexpr QLatin1StringView macros{"macros"};
inline constexpr QLatin1StringView keyboards{"keyboards"};
inline constexpr QLatin1StringView backups{"backups"};
} // namespace CompletionValues

/// The values of a kind (CompletionValues) that exist now; empty when they are unknown.
using ValuesOfKind = std::function<QStringList(QLatin1StringView kind)>;

/// The continuations of `words`, those after the program's name. The last of them is the one to complete: its
/// beginning, or empty. Every continuation begins with it.
[[nodiscard]] Completions completionsOf(const QStringList &words, const ValuesOfKind &valuesOfKind);
