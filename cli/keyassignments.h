// SPDX-License-Identifier: MIT
// The assignments that "kestractl key" can make, one row each: what the help prints, what is checked and what is stored
// all come from here. No state; any thread.
#pragma once

#include "base/result.h"
#include "keys/keymapping.h"

#include <QLatin1StringView>
#include <QString>
#include <QVariantMap>

#include <span>

/// The three values of a key mapping entry.
struct NewAssignment
{
    KeyMappings::Assignment assignment = KeyMappings::Assignment::defaultKey;
    QVariant param1 = 0;
    QVariant param2 = 0;
};

/// The words after "kestractl key KEY KIND", and what they are checked against.
struct AssignmentWords
{
    int keyCode = 0;
    QString argument;    ///< empty when the kind takes none
    QString optionValue; ///< empty when it was not given
    const QVariantMap &document;
};

struct AssignmentKind
{
    QLatin1StringView word;        ///< "single"
    QLatin1StringView argument;    ///< as the help shows it; empty: it takes none
    QLatin1StringView option;      ///< the option it takes; empty: none
    QLatin1StringView optionValue; ///< as the help shows it
    QLatin1StringView help;        ///< one line
    Result<NewAssignment> (*make)(const AssignmentWords &words);
};

/// Every kind, in the order of the help.
[[nodiscard]] std::span<const AssignmentKind> assignmentKinds();

/// The bit of the modifier key `code` in "param2" of a single key; 0 for other keys.
[[nodiscard]] int modifierBit(int code);

/// The row with this word; null when there is none.
[[nodiscard]] const AssignmentKind *findAssignmentKind(const QString &word);
