// SPDX-License-Identifier: MIT
#include "tests/support/textreader.h"

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <array>

namespace {

constexpr std::uint32_t evdevOffset = 8;

std::shared_ptr<xkb_context> newContext()
{
    return {xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref};
}

std::shared_ptr<xkb_compose_state> newComposeState()
{
    const std::shared_ptr<xkb_context> context = newContext();
    xkb_compose_table *table =
        xkb_compose_table_new_from_locale(context.get(), "en_US.UTF-8", XKB_COMPOSE_COMPILE_NO_FLAGS);
    if (!table)
        return nullptr;
    std::shared_ptr<xkb_compose_state> state(xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS),
                                             xkb_compose_state_unref);
    xkb_compose_table_unref(table);
    return state;
}

} // namespace

TextReader::TextReader(xkb_keymap *map, std::uint32_t layout)
    : mState(xkb_state_new(map), xkb_state_unref), mCompose(newComposeState()), mLayout(layout)
{
    xkb_state_update_mask(mState.get(), 0, 0, 0, 0, 0, layout);
}

void TextReader::press(std::uint16_t linuxCode)
{
    if (!mCompose)
        return;
    const xkb_keycode_t code = linuxCode + evdevOffset;
    const xkb_keysym_t symbol = xkb_state_key_get_one_sym(mState.get(), code);
    std::array<char, 64> utf8{};
    const bool isFed = xkb_compose_state_feed(mCompose.get(), symbol) == XKB_COMPOSE_FEED_ACCEPTED;
    switch (isFed ? xkb_compose_state_get_status(mCompose.get()) : XKB_COMPOSE_COMPOSING) {
    case XKB_COMPOSE_NOTHING:
        if (symbol == XKB_KEY_Return)
            mText += '\n';
        else if (xkb_state_key_get_utf8(mState.get(), code, utf8.data(), utf8.size()) > 0)
            mText += utf8.data();
        break;
    case XKB_COMPOSE_COMPOSED:
        xkb_compose_state_get_utf8(mCompose.get(), utf8.data(), utf8.size());
        mText += utf8.data();
        break;
    case XKB_COMPOSE_COMPOSING: break;
    case XKB_COMPOSE_CANCELLED: mText += "<cancelled>"; break;
    }
    xkb_state_update_key(mState.get(), code, XKB_KEY_DOWN);
}

void TextReader::release(std::uint16_t linuxCode)
{
    xkb_state_update_key(mState.get(), linuxCode + evdevOffset, XKB_KEY_UP);
}

bool TextReader::isAtRest() const
{
    return xkb_state_serialize_mods(mState.get(), XKB_STATE_MODS_EFFECTIVE) == 0
           && xkb_state_serialize_layout(mState.get(), XKB_STATE_LAYOUT_EFFECTIVE) == mLayout && mCompose
           && xkb_compose_state_get_status(mCompose.get()) != XKB_COMPOSE_COMPOSING;
}

std::shared_ptr<xkb_keymap> systemKeymap(const char *layout, const char *variant, const char *options)
{
    const std::shared_ptr<xkb_context> context = newContext();
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = layout, .variant = variant, .options = options};
    return {xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref};
}
