// SPDX-License-Identifier: MIT
#include "platform/keymap.h"

#include <QRegularExpression>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace {

struct DeadKey
{
    xkb_keysym_t symbol;
    char16_t accent;
};

// xkbcommon gives dead keys no character.
constexpr DeadKey deadKeys[] = {
    {XKB_KEY_dead_grave, u'`'},
    {XKB_KEY_dead_acute, u'\u00b4'},
    {XKB_KEY_dead_circumflex, u'^'},
    {XKB_KEY_dead_tilde, u'~'},
    {XKB_KEY_dead_macron, u'\u00af'},
    {XKB_KEY_dead_breve, u'\u02d8'},
    {XKB_KEY_dead_abovedot, u'\u02d9'},
    {XKB_KEY_dead_diaeresis, u'\u00a8'},
    {XKB_KEY_dead_abovering, u'\u02da'},
    {XKB_KEY_dead_doubleacute, u'\u02dd'},
    {XKB_KEY_dead_caron, u'\u02c7'},
    {XKB_KEY_dead_cedilla, u'\u00b8'},
    {XKB_KEY_dead_ogonek, u'\u02db'},
    {XKB_KEY_dead_belowdot, u'.'},
    {XKB_KEY_dead_greek, u'\u00b5'},
    {XKB_KEY_dead_stroke, u'/'},
    {XKB_KEY_dead_doublegrave, u'\u02f5'},
};

} // namespace

Keymap::Keymap(xkb_keymap *map, quint32 layout)
    : mMap(map, [](xkb_keymap *each) { xkb_keymap_unref(each); }), mLayout(layout)
{
}

Keymap Keymap::fromNames(const char *layout, const char *variant)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (!context)
        return {};
    xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL); // the caller reports an unknown layout
    const xkb_rule_names names{.rules = "evdev", .model = "pc105", .layout = layout, .variant = variant, .options = ""};
    xkb_keymap *map = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_context_unref(context); // the keymap holds its own reference
    return {map, 0};
}

Keymap Keymap::fromDescription(const QString &description)
{
    static const QRegularExpression form(QStringLiteral(R"(\A([A-Za-z0-9_-]+)(?:\(([A-Za-z0-9_-]+)\))?\z)"));
    const QRegularExpressionMatch match = form.match(description);
    if (!match.hasMatch())
        return {};
    return fromNames(match.captured(1).toLatin1().constData(), match.captured(2).toLatin1().constData());
}

QString Keymap::name() const
{
    return isNull() ? QString() : QString::fromUtf8(xkb_keymap_layout_get_name(mMap.get(), mLayout));
}

Keymap::Characters Keymap::charactersOf(const char *keyName) const
{
    if (isNull())
        return {};
    const xkb_keycode_t keyCode = xkb_keymap_key_by_name(mMap.get(), keyName);
    if (keyCode == XKB_KEYCODE_INVALID)
        return {};
    return {character(keyCode, 0), character(keyCode, 1)};
}

QString Keymap::character(quint32 keyCode, quint32 level) const
{
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(mMap.get(), keyCode);
    if (layouts == 0)
        return {};
    const xkb_keysym_t *symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(mMap.get(), keyCode, mLayout % layouts, level, &symbols) != 1)
        return {};
    const auto dead = std::ranges::find(deadKeys, symbols[0], &DeadKey::symbol);
    if (dead != std::end(deadKeys))
        return QString(QChar(dead->accent));
    std::array<char, 8> utf8{};
    if (xkb_keysym_to_utf8(symbols[0], utf8.data(), utf8.size()) <= 0)
        return {};
    const QString text = QString::fromUtf8(utf8.data());
    return text.at(0).isPrint() && !text.at(0).isSpace() ? text : QString();
}
