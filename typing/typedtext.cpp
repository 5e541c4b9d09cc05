// SPDX-License-Identifier: MIT
#include "typing/typedtext.h"

#include "base/settingskeys.h"
#include "base/visibletext.h"
#include "macros/eventparser.h"
#include "macros/macropairs.h"
#include "typing/typingtable.h"

#include <algorithm>
#include <array>
#include <string>

using namespace Qt::StringLiterals;

namespace {

constexpr uint firstModifier = 224; // key codes
constexpr uint lastModifier = 231;

/// Collects the events of keystrokes. Past the limit of a macro it only counts them.
class EventCollector
{
public:
    explicit EventCollector(int pauseMs) : mPauseMs(pauseMs) {}

    void type(const Keystroke &keystroke)
    {
        const auto wanted = keystroke.modifiers.begin();
        int kept = 0;
        while (kept < mHeldCount && kept < keystroke.modifierCount && mHeld.at(kept) == wanted[kept])
            ++kept;
        releaseModifiers(kept);
        mPendingPauseMs = mEventCount > 0 ? mPauseMs : 0;
        for (; mHeldCount < keystroke.modifierCount; ++mHeldCount) {
            mHeld.at(mHeldCount) = wanted[mHeldCount];
            add(MacroRecord::keyDown, wanted[mHeldCount]);
        }
        add(MacroRecord::keyDown, keystroke.key);
        add(MacroRecord::keyUp, keystroke.key);
    }

    /// Releases those beyond the first `kept`, the latest one first.
    void releaseModifiers(int kept)
    {
        while (mHeldCount > kept)
            add(MacroRecord::keyUp, mHeld.at(--mHeldCount));
    }

    [[nodiscard]] qsizetype eventCount() const { return mEventCount; }
    [[nodiscard]] QList<MacroRecord::Event> take() { return std::move(mEvents); }

private:
    void add(int command, uint key)
    {
        if (++mEventCount <= MacroRecord::maximumEvents)
            mEvents += {.command = command, .delayMs = mPendingPauseMs, .argument = key};
        mPendingPauseMs = 0;
    }

    int mPauseMs;
    int mPendingPauseMs = 0; ///< before the next event
    int mHeldCount = 0;
    std::array<quint8, Keystroke::maximumModifiers> mHeld{};
    qsizetype mEventCount = 0;
    QList<MacroRecord::Event> mEvents;
};

bool isMark(char32_t character)
{
    return QChar::isMark(character);
}

/// The keystrokes of `text` in as few pieces as the table has; empty if a piece cannot be typed.
QList<Keystroke> keystrokesOfPieces(const QString &text, const TypingTable &table)
{
    QList<Keystroke> all;
    const std::u32string characters = text.toStdU32String();
    for (std::size_t begin = 0; begin < characters.size();) {
        QList<Keystroke> keystrokes;
        std::size_t length = std::min(characters.size() - begin, std::size_t(table.longestText())) + 1;
        while (keystrokes.isEmpty() && --length > 0)
            keystrokes = table.keystrokesOf(QString::fromUcs4(characters.data() + begin, qsizetype(length)));
        if (keystrokes.isEmpty())
            return {};
        all += keystrokes;
        begin += length;
    }
    return all;
}

/// The keystrokes of a character with its combining marks; empty if it cannot be typed.
QList<Keystroke> keystrokesOf(const QString &cluster, const TypingTable &table)
{
    for (const auto form : {QString::NormalizationForm_C, QString::NormalizationForm_D}) {
        const QList<Keystroke> keystrokes = keystrokesOfPieces(cluster.normalized(form), table);
        if (!keystrokes.isEmpty())
            return keystrokes;
    }
    return keystrokesOfPieces(cluster, table);
}

/// The line ends of every system as line feeds, one each, in the place of the original ones.
struct Characters
{
    QList<char32_t> values;
    QList<qsizetype> positions; ///< of each value in the text, from 1
};

Characters charactersOf(const QString &text)
{
    Characters characters;
    const QList<uint> all = text.toUcs4();
    for (qsizetype index = 0; index < all.size(); ++index) {
        if (all.at(index) == u'\n' && index > 0 && all.at(index - 1) == u'\r')
            continue;
        characters.values += all.at(index) == u'\r' ? U'\n' : char32_t(all.at(index));
        characters.positions += index + 1;
    }
    return characters;
}

/// Those of the characters from `begin` to before `end` that cannot be typed alone; all if they only cannot be typed
/// together.
QList<UntypedCharacter> untypedOf(const Characters &characters, qsizetype begin, qsizetype end,
                                  const TypingTable &table)
{
    QList<UntypedCharacter> all;
    QList<UntypedCharacter> alone;
    for (qsizetype index = begin; index < end; ++index) {
        const char32_t character = characters.values.at(index);
        all += {.character = character, .position = characters.positions.at(index)};
        if (keystrokesOf(QString::fromUcs4(&character, 1), table).isEmpty())
            alone += all.last();
    }
    return alone.isEmpty() ? all : alone;
}

} // namespace

TypedText typeText(const QString &text, const TypingTable &table, int pauseMs)
{
    TypedText typed;
    EventCollector collector(pauseMs);
    const Characters characters = charactersOf(text);
    for (qsizetype begin = 0, end = 0; begin < characters.values.size(); begin = end) {
        end = begin + 1;
        while (end < characters.values.size() && isMark(characters.values.at(end)))
            ++end;
        const char32_t *first = characters.values.constData() + begin;
        const QList<Keystroke> keystrokes = keystrokesOf(QString::fromUcs4(first, end - begin), table);
        for (const Keystroke &keystroke : keystrokes)
            collector.type(keystroke);
        if (keystrokes.isEmpty())
            typed.untyped += untypedOf(characters, begin, end, table);
    }
    collector.releaseModifiers(0);
    typed.eventCount = collector.eventCount();
    if (typed.untyped.isEmpty() && typed.eventCount <= MacroRecord::maximumEvents)
        typed.events = collector.take();
    return typed;
}

QVariantList insertingTyped(const QVariantList &events, qsizetype index, const QList<MacroRecord::Event> &typed,
                            int pauseMs)
{
    if (typed.isEmpty())
        return events;
    QVariantList inserted;
    for (MacroRecord::Event event : typed) {
        if (inserted.isEmpty() && index > 0)
            event.delayMs = pauseMs;
        inserted += MacroRecord::eventRecord(event);
    }
    QVariantList after = events.sliced(index);
    if (index == 0 && !after.isEmpty()) {
        QVariantMap first = after.first().toMap();
        if (MacroRecord::eventFields(first).delayMs == 0) {
            first.insert(SettingsKeys::delay, pauseMs);
            after.first() = first;
        }
    }
    return events.first(index) + inserted + after;
}

QStringList modifiersHeldBefore(const QVariantList &events, qsizetype index)
{
    QStringList names;
    for (const int press : MacroPairs::of(events.first(index)).leftDown) {
        const QVariantMap record = events.at(press).toMap();
        const MacroRecord::Event event = MacroRecord::eventFields(record);
        const bool isKey = static_cast<quint8>(event.page) == MacroRecord::keyboardPage;
        if (isKey && event.argument >= firstModifier && event.argument <= lastModifier)
            names += eventParser::nameOfKeyOrButton(record);
    }
    return names;
}

QString shownCharacter(char32_t character)
{
    const QString number = u"U+%1"_s.arg(uint(character), 4, 16, QChar(u'0')).toUpper();
    const bool isAlone = QChar::isSurrogate(character) || QChar::isNonCharacter(character)
                         || QChar::category(character) == QChar::Other_NotAssigned
                         || QChar::category(character) == QChar::Other_PrivateUse;
    if (isAlone)
        return number;
    const QString text = QString::fromUcs4(&character, 1);
    const QString carrier = isMark(character) ? QString(QChar(0x25CC)) : QString(); // a dotted circle
    if (visibleText(text, QChar()) != text || QChar::isSpace(character))
        return number;
    return u"%1 (%2)"_s.arg(carrier + text, number);
}
