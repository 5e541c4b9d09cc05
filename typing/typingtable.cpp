// SPDX-License-Identifier: MIT
#include "typing/typingtable.h"

#include "base/hidusage.h"
#include "base/keycodes.h"
#include "platform/keymap.h"

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <map>
#include <memory>
#include <vector>

namespace {

constexpr xkb_keycode_t evdevOffset = 8; // a keycode of XKB is the Linux key code plus this
constexpr int maximumSequence = 4;       // keystrokes of one character; longer sequences are for words
constexpr quint16 returnKey = 40;
constexpr quint16 tabKey = 43;

template <auto unref> struct Unref
{
    template <typename T> void operator()(T *object) const { unref(object); }
};
using Context = std::unique_ptr<xkb_context, Unref<xkb_context_unref>>;
using State = std::unique_ptr<xkb_state, Unref<xkb_state_unref>>;
using ComposeTable = std::unique_ptr<xkb_compose_table, Unref<xkb_compose_table_unref>>;
using ComposeState = std::unique_ptr<xkb_compose_state, Unref<xkb_compose_state_unref>>;

struct Key
{
    quint8 usage = 0;
    xkb_keycode_t code = 0;
};

/// How to press a key that has a symbol.
struct SymbolKey
{
    Keystroke keystroke;
    std::vector<xkb_keysym_t> disturbing; ///< symbols of its modifier keys that would end a sequence
};

using SymbolKeys = std::map<xkb_keysym_t, SymbolKey>;

/// Whether programs ignore `symbol` within a sequence of dead keys. Those that use xkbcommon do not ignore the keys of
/// the fifth level.
bool isIgnoredInSequences(xkb_keysym_t symbol)
{
    return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R)
           || (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Last_Group_Lock);
}

bool isKeypad(quint16 usage)
{
    constexpr quint16 others[] = {103, 133, 140, 182, 183};
    return (usage >= 84 && usage <= 99) || std::ranges::find(others, usage) != std::end(others);
}

/// The keys that a macro can press. Of several usages with one code, the first counts.
std::vector<Key> keysOf(xkb_keymap *map)
{
    std::vector<Key> keys;
    for (quint16 usage = HidUsage::firstKey; usage <= HidUsage::lastKey; ++usage) {
        const std::optional<quint16> code = KeyCodes::linuxCode({HidUsage::keyboardPage, usage});
        if (!code || *code == KEY_UNKNOWN || isKeypad(usage))
            continue;
        const xkb_keycode_t keycode = *code + evdevOffset;
        const bool isKnown = std::ranges::find(keys, keycode, &Key::code) != keys.end();
        if (!isKnown && keycode <= xkb_keymap_max_keycode(map))
            keys.push_back({static_cast<quint8>(usage), keycode});
    }
    return keys;
}

/// A keyboard with a layout, and keys that are held.
class HeldKeys
{
public:
    /// The modifiers, locks and layout that are in effect, all kinds of each.
    using Effect = std::array<quint32, 7>;

    HeldKeys(xkb_keymap *map, quint32 layout) : mState(xkb_state_new(map))
    {
        xkb_state_update_mask(mState.get(), 0, 0, 0, 0, 0, layout);
    }

    void press(xkb_keycode_t code) { xkb_state_update_key(mState.get(), code, XKB_KEY_DOWN); }
    void release(xkb_keycode_t code) { xkb_state_update_key(mState.get(), code, XKB_KEY_UP); }

    [[nodiscard]] quint32 modifiers() const { return xkb_state_serialize_mods(mState.get(), XKB_STATE_MODS_DEPRESSED); }
    [[nodiscard]] xkb_keysym_t symbol(xkb_keycode_t code) const
    {
        return xkb_state_key_get_one_sym(mState.get(), code);
    }
    [[nodiscard]] Effect effect() const
    {
        xkb_state *state = mState.get();
        return {modifiers(),
                xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
                xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_DEPRESSED),
                xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_LATCHED),
                xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_LOCKED),
                xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE)};
    }

private:
    State mState;
};

/// Modifiers that make a shortcut of a key, or change what another press means.
quint32 unwantedModifiers(xkb_keymap *map)
{
    quint32 modifiers = 0;
    for (const char *name : {XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO, XKB_MOD_NAME_CAPS}) {
        const xkb_mod_index_t index = xkb_keymap_mod_get_index(map, name);
        if (index != XKB_MOD_INVALID)
            modifiers |= 1U << index;
    }
    return modifiers;
}

/// Finds the keystrokes of all symbols of a layout. It presses the keys on a keyboard of its own and looks what
/// happens, because a layout may give any key any action.
class SymbolSearch
{
public:
    SymbolSearch(xkb_keymap *map, quint32 layout)
        : mMap(map), mLayout(layout), mKeys(keysOf(map)), mUnwanted(unwantedModifiers(map))
    {
        findModifierKeys();
        for (std::size_t count = 0; count <= Keystroke::maximumModifiers; ++count) {
            std::vector<Key> held;
            holdMore(held, count);
        }
    }

    [[nodiscard]] SymbolKeys take() { return std::move(mFound); }

private:
    /// Of several keys with the same modifiers, takes the first: the left Shift.
    void findModifierKeys()
    {
        std::vector<quint32> masks;
        for (const Key &key : mKeys) {
            HeldKeys keyboard(mMap, mLayout);
            const HeldKeys::Effect before = keyboard.effect();
            keyboard.press(key.code);
            const quint32 mask = keyboard.modifiers();
            HeldKeys::Effect expected = before;
            expected[0] = mask;
            const bool holdsAlone = keyboard.effect() == expected;
            keyboard.release(key.code);
            const bool isUsable = mask != 0 && (mask & mUnwanted) == 0 && holdsAlone && keyboard.effect() == before;
            if (!isUsable || std::ranges::find(masks, mask) != masks.end())
                continue;
            masks.push_back(mask);
            mModifierKeys.push_back(key);
        }
    }

    /// Tries every order of `count` modifier keys after those of `held`. The order matters: with Shift, a layout may
    /// make another key of AltGr.
    void holdMore(std::vector<Key> &held, std::size_t count)
    {
        if (count == 0) {
            readSymbols(held);
            return;
        }
        for (const Key &key : mModifierKeys) {
            if (std::ranges::find(held, key.code, &Key::code) != held.end())
                continue;
            held.push_back(key);
            holdMore(held, count - 1);
            held.pop_back();
        }
    }

    void readSymbols(const std::vector<Key> &held)
    {
        HeldKeys keyboard(mMap, mLayout);
        std::vector<xkb_keysym_t> disturbing;
        for (const Key &key : held) {
            if (!isIgnoredInSequences(keyboard.symbol(key.code)))
                disturbing.push_back(keyboard.symbol(key.code));
            keyboard.press(key.code);
        }
        const HeldKeys::Effect effect = keyboard.effect();
        const bool isUsable = (effect[0] & mUnwanted) == 0 && effect[1] == 0 && effect[2] == 0;
        if (!isUsable || std::ranges::find(mEffects, effect) != mEffects.end())
            return;
        mEffects.push_back(effect);
        for (const Key &key : mKeys) {
            if (std::ranges::find(held, key.code, &Key::code) != held.end())
                continue;
            const xkb_keysym_t symbol = keyboard.symbol(key.code);
            keyboard.press(key.code);
            const bool isQuiet = keyboard.effect() == effect;
            keyboard.release(key.code);
            if (!isQuiet || keyboard.effect() != effect) { // the key is more than a character; start afresh
                readAfresh(held, keyboard);
                continue;
            }
            add(symbol, key, held, disturbing);
        }
    }

    void readAfresh(const std::vector<Key> &held, HeldKeys &keyboard) const
    {
        keyboard = HeldKeys(mMap, mLayout);
        for (const Key &key : held)
            keyboard.press(key.code);
    }

    void add(xkb_keysym_t symbol, const Key &key, const std::vector<Key> &held,
             const std::vector<xkb_keysym_t> &disturbing)
    {
        if (symbol == XKB_KEY_NoSymbol)
            return;
        Keystroke keystroke{.key = key.usage, .modifierCount = static_cast<quint8>(held.size())};
        std::ranges::transform(held, keystroke.modifiers.begin(), &Key::usage);
        mFound.try_emplace(symbol, SymbolKey{.keystroke = keystroke, .disturbing = disturbing});
    }

    xkb_keymap *mMap;
    quint32 mLayout;
    std::vector<Key> mKeys;
    quint32 mUnwanted;
    std::vector<Key> mModifierKeys;
    std::vector<HeldKeys::Effect> mEffects; ///< those that were tried
    SymbolKeys mFound;
};

ComposeTable composeTable(xkb_context *context, const QByteArray &locale)
{
    const char *process = std::setlocale(LC_CTYPE, nullptr);
    const char *name = locale.isEmpty() ? process : locale.constData();
    ComposeTable table(xkb_compose_table_new_from_locale(context, name ? name : "C", XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (!table) // Programs also have the sequences of UTF-8 in a locale without a file.
        table.reset(xkb_compose_table_new_from_locale(context, "C", XKB_COMPOSE_COMPILE_NO_FLAGS));
    return table;
}

QString characterOf(xkb_keysym_t symbol)
{
    const char32_t character = xkb_keysym_to_utf32(symbol);
    return character < 0x20 || character == 0x7f ? QString() : QString::fromUcs4(&character, 1);
}

bool canBePartOfSequence(xkb_keysym_t symbol)
{
    return !characterOf(symbol).isEmpty() || symbol == XKB_KEY_Multi_key
           || (symbol >= XKB_KEY_dead_grave && symbol <= XKB_KEY_dead_longsolidusoverlay);
}

/// Finds what the sequences of a Compose file type, with the symbols that a layout has.
class SequenceSearch
{
public:
    using Keystrokes = QHash<QString, QList<Keystroke>>;

    SequenceSearch(const SymbolKeys &symbols, xkb_compose_table *table)
        : mState(table ? xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS) : nullptr)
    {
        for (const Symbol &symbol : symbols) {
            if (canBePartOfSequence(symbol.first))
                mSymbols.push_back(&symbol);
        }
        std::vector<Sequence> beginnings{{}};
        for (int length = 1; length <= maximumSequence && !beginnings.empty(); ++length)
            beginnings = longer(beginnings);
    }

    [[nodiscard]] Keystrokes take() { return std::move(mFound); }

private:
    using Symbol = SymbolKeys::value_type;
    using Sequence = std::vector<const Symbol *>;

    /// Tries every symbol after each of `beginnings`. Returns the sequences that are not complete yet.
    std::vector<Sequence> longer(const std::vector<Sequence> &beginnings)
    {
        std::vector<Sequence> incomplete;
        for (const Sequence &beginning : beginnings) {
            for (const Symbol *symbol : mSymbols) {
                Sequence sequence = beginning;
                sequence.push_back(symbol);
                if (feed(sequence))
                    incomplete.push_back(std::move(sequence));
            }
        }
        return incomplete;
    }

    /// Adds the text of `sequence`, if it has one. Returns whether it is the beginning of longer ones.
    bool feed(const Sequence &sequence)
    {
        xkb_compose_status status = XKB_COMPOSE_NOTHING;
        if (mState) {
            xkb_compose_state_reset(mState.get());
            for (const Symbol *symbol : sequence) {
                for (const xkb_keysym_t modifier : symbol->second.disturbing)
                    xkb_compose_state_feed(mState.get(), modifier);
                xkb_compose_state_feed(mState.get(), symbol->first);
            }
            status = xkb_compose_state_get_status(mState.get());
        }
        if (status == XKB_COMPOSE_COMPOSING)
            return true;
        if (status == XKB_COMPOSE_COMPOSED)
            add(composedText(), sequence);
        else if (status == XKB_COMPOSE_NOTHING && sequence.size() == 1)
            add(characterOf(sequence.front()->first), sequence);
        return false;
    }

    [[nodiscard]] QString composedText() const
    {
        std::array<char, 64> utf8{};
        const int size = xkb_compose_state_get_utf8(mState.get(), utf8.data(), utf8.size());
        return size > 0 && std::size_t(size) < utf8.size() ? QString::fromUtf8(utf8.data(), size) : QString();
    }

    void add(const QString &text, const Sequence &sequence)
    {
        if (text.isEmpty() || text.at(0).category() == QChar::Other_Control)
            return;
        QList<Keystroke> keystrokes;
        for (const Symbol *symbol : sequence)
            keystrokes += symbol->second.keystroke;
        QList<Keystroke> &found = mFound[text];
        if (found.isEmpty() || cost(keystrokes) < cost(found))
            found = keystrokes;
    }

    /// The number of keys to press.
    [[nodiscard]] static std::size_t cost(const QList<Keystroke> &keystrokes)
    {
        std::size_t keys = 0;
        for (const Keystroke &keystroke : keystrokes)
            keys += 1U + keystroke.modifierCount;
        return keys;
    }

    ComposeState mState;
    std::vector<const Symbol *> mSymbols;
    Keystrokes mFound;
};

/// The key `usage`, if it has `symbol` without modifiers.
QList<Keystroke> plainKey(const SymbolKeys &symbols, xkb_keysym_t symbol, quint8 usage)
{
    const auto found = symbols.find(symbol);
    const bool isPlain = found != symbols.end() && found->second.keystroke == Keystroke{.key = usage};
    return isPlain ? QList{found->second.keystroke} : QList<Keystroke>();
}

} // namespace

TypingTable::TypingTable(const Keymap &keymap, const QByteArray &locale)
{
    const Context context(keymap.isNull() ? nullptr : xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context)
        return;
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL); // the user's Compose file is not ours to judge
    const SymbolKeys symbols = SymbolSearch(keymap.map(), keymap.layout()).take();
    mKeystrokes = SequenceSearch(symbols, composeTable(context.get(), locale).get()).take();
    // A Compose file may have decomposed characters. They are found in their usual form, unless that has keystrokes
    // itself.
    const QStringList texts = mKeystrokes.keys();
    for (const QString &text : texts) {
        const QString composed = text.normalized(QString::NormalizationForm_C);
        if (!mKeystrokes.contains(composed))
            mKeystrokes.insert(composed, mKeystrokes.value(text));
    }
    const std::pair<QString, QList<Keystroke>> controls[] = {
        {QStringLiteral("\n"), plainKey(symbols, XKB_KEY_Return, returnKey)},
        {QStringLiteral("\t"), plainKey(symbols, XKB_KEY_Tab, tabKey)},
    };
    for (const auto &[text, keystrokes] : controls) {
        if (!keystrokes.isEmpty())
            mKeystrokes.insert(text, keystrokes);
    }
    for (auto each = mKeystrokes.keyBegin(); each != mKeystrokes.keyEnd(); ++each)
        mLongestText = std::max(mLongestText, each->size());
}
