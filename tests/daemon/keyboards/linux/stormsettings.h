// SPDX-License-Identifier: MIT
// The keyboards of a storm, and random settings, each for the model and for the daemon. Pure functions; any thread.
#pragma once

#include "base/keycodes.h"
#include "tests/support/keymodel.h"

#include <QRandomGenerator>
#include <QVariantMap>

#include <vector>

namespace StormSettings {

inline constexpr int keyboardCount = 3;
inline constexpr int profileCount = 3;
inline constexpr int macroCount = 4;

/// A key as the kernel reports it.
struct StormKey
{
    quint16 code;
    quint32 scanCode; ///< 0: none
};

/// The keys of a keyboard; each has another code.
[[nodiscard]] const std::vector<StormKey> &keysOf(int keyboard);
/// Those to which the settings may assign something.
[[nodiscard]] const std::vector<KeyModel::Key> &assignableKeys();

/// The key that a default key with this code sends.
[[nodiscard]] KeyModel::Key systemKeyOf(quint16 code);
/// The key that is assigned, by its label. After dropped events the kernel gives no scan code.
[[nodiscard]] KeyModel::Key labelOf(quint16 code, quint32 scanCode = 0);
/// The code that the computer receives.
[[nodiscard]] quint16 codeOf(KeyModel::Key key);

/// Some of these name a profile or macro that does not exist.
[[nodiscard]] KeyModel::Assignment randomAssignment(QRandomGenerator &random);
/// `isLaunch`: a key that does nothing at the computer starts a program.
[[nodiscard]] QVariantMap entryOf(const KeyModel::Assignment &assignment, bool isLaunch);
[[nodiscard]] KeyModel::Macro randomMacro(QRandomGenerator &random);
[[nodiscard]] QVariantMap recordOf(const KeyModel::Macro &macro, int macroId);

/// One of `list`; `value` is random.
template <typename List> [[nodiscard]] const auto &oneOf(const List &list, quint32 value)
{
    return list[value % std::size(list)];
}

} // namespace StormSettings
