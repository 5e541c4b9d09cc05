// SPDX-License-Identifier: MIT
#include "base/keycodes.h"

#include <linux/input-event-codes.h>

#include <array>

static_assert(KeyCodes::codeCount == KEY_CNT);
static_assert(KeyCodes::firstButton == BTN_LEFT);
static_assert(KeyCodes::firstMacroKeyCode == KEY_MACRO1);

namespace {

struct Row
{
    quint16 usage;
    quint16 code;
};

constexpr Row rows[] = {
#define KESTRA_KEY_CODE(usage, code) {usage, code},
#include "base/keycodetable.inc"
};

constexpr auto codes = [] {
    std::array<quint16, HidUsage::lastKey + 1> table{}; // 0, KEY_RESERVED: not a key
    for (std::size_t usage = HidUsage::firstKey; usage < table.size(); ++usage)
        table[usage] = KEY_UNKNOWN;
    for (const Row &row : rows)
        table[row.usage] = row.code;
    return table;
}();

constexpr auto usages = [] {
    std::array<quint8, KeyCodes::codeCount> table{}; // 0: no usage
    for (const Row &row : rows) {
        if (table[row.code] == 0)
            table[row.code] = static_cast<quint8>(row.usage);
    }
    return table;
}();

} // namespace

std::optional<quint16> KeyCodes::linuxCode(HidUsage usage)
{
    if (usage.page == HidUsage::buttonPage && usage.usage >= 1 && usage.usage <= buttonCount)
        return static_cast<quint16>(firstButton + usage.usage - 1);
    if (usage.page == HidUsage::systemPage && usage.usage < codeCount)
        return usage.usage;
    if (usage.page != HidUsage::keyboardPage || usage.usage >= codes.size() || codes[usage.usage] == KEY_RESERVED)
        return {};
    return codes[usage.usage];
}

std::optional<HidUsage> KeyCodes::usageOfCode(quint16 code)
{
    if (code >= usages.size() || usages[code] == 0)
        return {};
    return HidUsage{HidUsage::keyboardPage, usages[code]};
}

HidUsage KeyCodes::systemKeyOfCode(quint16 code)
{
    const bool hasUsage = code < usages.size() && usages[code] != 0;
    return hasUsage ? HidUsage{HidUsage::keyboardPage, usages[code]} : HidUsage{HidUsage::systemPage, code};
}

std::optional<HidUsage> KeyCodes::usageOfScanCode(quint32 scanCode, quint16 code)
{
    const HidUsage usage{static_cast<quint16>(scanCode >> 16), static_cast<quint16>(scanCode)};
    const bool isKey =
        usage.page == HidUsage::keyboardPage && usage.usage >= HidUsage::firstKey && usage.usage <= HidUsage::lastKey;
    if (!isKey)
        return {};
    if (code != KEY_UNKNOWN && !usageOfCode(code))
        return {};
    return usage;
}

KeyCodes::OwnKey KeyCodes::ownKey(quint16 code)
{
    switch (code) {
    case KEY_KBDILLUMUP: return OwnKey::brighter;
    case KEY_KBDILLUMDOWN: return OwnKey::darker;
    case KEY_KBDILLUMTOGGLE: return OwnKey::lightSwitch;
    case KEY_MACRO_RECORD_START: // most keyboards have only this one
    case KEY_MACRO_RECORD_STOP: return OwnKey::macro;
    default: return OwnKey::none;
    }
}
