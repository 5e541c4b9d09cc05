// SPDX-License-Identifier: MIT
#include "keys/keylayout.h"

#include "base/plistnumbers.h"
#include "keys/keymapping.h"

#include <array>

namespace {

constexpr KeyRow keyRows[] = {
#define KESTRA_KEY(outlet, action, code, functionKeyName)                                                              \
    {QLatin1StringView(#outlet), QLatin1StringView(#action), code, QLatin1StringView(functionKeyName)},
#include "keys/keytable.inc"
};

constexpr FixedKeyRow fixedKeyRows[] = {
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart)                                                              \
    {QLatin1StringView(#outlet), QLatin1StringView(#action), disabledAtStart},
#include "keys/keytable.inc"
};

constexpr int usageCount = 256;

constexpr std::array<const KeyRow *, usageCount> makeRowsByCode()
{
    std::array<const KeyRow *, usageCount> rows{};
    for (const KeyRow &row : keyRows)
        rows[static_cast<std::size_t>(row.code)] = &row;
    return rows;
}

constexpr std::array<const KeyRow *, usageCount> rowsByCode = makeRowsByCode();

} // namespace

std::span<const KeyRow> KeyLayout::selectableKeys()
{
    return keyRows;
}

std::span<const FixedKeyRow> KeyLayout::fixedKeys()
{
    return fixedKeyRows;
}

const KeyRow *KeyLayout::rowForCode(int code)
{
    return code >= 0 && code < usageCount ? rowsByCode[static_cast<std::size_t>(code)] : nullptr;
}

QString KeyLayout::codeText(int code)
{
    return QString::number(code);
}

int KeyLayout::codeValue(const QString &codeText)
{
    return PlistNumbers::integerValue(codeText);
}
