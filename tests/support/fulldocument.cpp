// SPDX-License-Identifier: MIT
#include "tests/support/fulldocument.h"

#include "base/settingskeys.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int keyCodes[] = {
#define KESTRA_KEY(outlet, action, code, functionKeyName) code,
#include "keys/keytable.inc"
};

/// Most keys keep their default; every tenth plays a macro, sends another key or is disabled.
QVariantMap mappingEntry(int code, int position)
{
    if (position % 10 == 3)
        return {{SettingsKeys::command, 10}, {SettingsKeys::param1, position % 20}, {SettingsKeys::param2, 255}};
    if (position % 10 == 6)
        return {{SettingsKeys::command, 16}, {SettingsKeys::param1, code ^ 1}, {SettingsKeys::param2, 2}};
    if (position % 10 == 9)
        return {{SettingsKeys::command, 20}, {SettingsKeys::param1, 0}, {SettingsKeys::param2, 0}};
    return {{SettingsKeys::command, 45}, {SettingsKeys::param1, code}, {SettingsKeys::param2, 0}};
}

} // namespace

QVariantMap fullProfile(const QString &name)
{
    QVariantMap keys;
    int position = 0;
    for (const int code : keyCodes)
        keys.insert(QString::number(code), mappingEntry(code, position++));
    const QVariantMap application{{SettingsKeys::application, name},
                                  {SettingsKeys::executable, u"/usr/games/"_s + name},
                                  {SettingsKeys::identifier, u"org.example."_s + name},
                                  {SettingsKeys::signature, u""_s}};
    const QVariantMap color{{SettingsKeys::red, 0.25}, {SettingsKeys::green, 0.5}, {SettingsKeys::blue, 1.0}};
    return {{SettingsKeys::profileName, name},
            {SettingsKeys::keys, keys},
            {SettingsKeys::appInfo, application},
            {SettingsKeys::autoSwitchOn, 1},
            {SettingsKeys::profileOsdOn, 1},
            {SettingsKeys::backlightLed, 1},
            {SettingsKeys::ledKbColors, QVariantList{color}},
            {SettingsKeys::ledKbEffects, 0},
            {SettingsKeys::brightnessKbNormal, 4},
            {SettingsKeys::gameLightingOn, true},
            {SettingsKeys::scrollLed, 1}};
}

QVariantMap fullMacro(const QString &name, int macroId, int eventCount)
{
    QVariantList events;
    for (int i = 0; i < eventCount; ++i)
        events.append(QVariantMap{{SettingsKeys::command, 1 - i % 2},
                                  {SettingsKeys::delay, 10 + (i * 37 + macroId * 101) % 191},
                                  {SettingsKeys::page, 7},
                                  {SettingsKeys::argument, 4 + (i / 2 + macroId * 5) % 26}});
    return {{SettingsKeys::macroName, name},
            {SettingsKeys::macroId, macroId},
            {SettingsKeys::delay, 0},
            {SettingsKeys::sequence, QVariantMap{{u"Events"_s, events}}}};
}

QVariantMap fullDocument()
{
    QVariantList profiles;
    QVariantList macros;
    for (int i = 1; i <= 20; ++i) {
        profiles.append(fullProfile(u"Profile %1"_s.arg(i)));
        macros.append(fullMacro(u"Macro %1"_s.arg(i), i - 1, 50));
    }
    return {{SettingsKeys::profiles, profiles},
            {SettingsKeys::macros, macros},
            {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 0},
                                                       {SettingsKeys::profileOsdOn, 1},
                                                       {SettingsKeys::gameMode, false}}}};
}
