// SPDX-License-Identifier: MIT
// Short ways to write settings documents for tests of keys. Pure functions.
#pragma once

#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"

#include <QString>
#include <QVariantMap>

namespace KeyDocuments {

// Commands of a key mapping entry
inline constexpr int playsMacro = 10;
inline constexpr int sendsKey = 16;
inline constexpr int switchesProfile = 17;
inline constexpr int launches = 46;

[[nodiscard]] inline QVariantMap entry(int command, const QVariant &param1, int param2 = 0)
{
    return {
        {QStringLiteral("command"), command}, {QStringLiteral("param1"), param1}, {QStringLiteral("param2"), param2}};
}

[[nodiscard]] inline QVariantMap profile(const QString &name, const QVariantMap &keys)
{
    return {{QStringLiteral("ProfileName"), name}, {QStringLiteral("Keys"), keys}};
}

/// Presses `key` and releases it, with `pauseMs` before each event.
[[nodiscard]] inline QVariantMap macro(uint key, int pauseMs = 1)
{
    return MacroRecord::withEvents(
        {{QStringLiteral("MacroName"), QStringLiteral("Plays %1").arg(key)}},
        {MacroRecord::eventRecord({.command = MacroRecord::keyDown, .delayMs = pauseMs, .argument = key}),
         MacroRecord::eventRecord({.command = MacroRecord::keyUp, .delayMs = pauseMs, .argument = key})});
}

[[nodiscard]] inline QVariantMap document(const QVariantList &profiles, const QVariantList &macros = {}, int active = 0)
{
    return SettingsDocument::completed(
        {{QStringLiteral("Profiles"), profiles},
         {QStringLiteral("Macros"), macros},
         {QStringLiteral("DeviceSettings"), QVariantMap{{QStringLiteral("ActiveProfile"), active}}}});
}

} // namespace KeyDocuments
