// SPDX-License-Identifier: MIT
#include "macros/macrotext.h"

#include "base/hidusage.h"
#include "base/propertylist.h"
#include "keys/keynames.h"
#include "macros/macroedits.h"
#include "macros/macropairs.h"
#include "macros/macrorecord.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;
using MacroText::ParseError;

namespace {

constexpr int lastButton = 9; // the last one that a macro can press

enum class Verb { press, release, tap, click, wait, pause, event, name };

struct VerbRow
{
    Verb verb;
    QLatin1StringView word;
};

constexpr std::array verbs{VerbRow{Verb::press, "press"_L1}, VerbRow{Verb::release, "release"_L1},
                           VerbRow{Verb::tap, "tap"_L1},     VerbRow{Verb::click, "click"_L1},
                           VerbRow{Verb::wait, "wait"_L1},   VerbRow{Verb::pause, "pause"_L1},
                           VerbRow{Verb::event, "event"_L1}, VerbRow{Verb::name, "name"_L1}};

std::optional<Verb> verbOf(QStringView word)
{
    const auto found = std::ranges::find_if(
        verbs, [word](const VerbRow &row) { return word.compare(row.word, Qt::CaseInsensitive) == 0; });
    return found == verbs.end() ? std::nullopt : std::optional(found->verb);
}

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t';
}

/// A part of a line, with the place at which it begins in the line.
struct Part
{
    QStringView text;
    qsizetype start = 0;

    /// Without the blanks at its ends.
    [[nodiscard]] Part trimmed() const
    {
        qsizetype first = 0;
        qsizetype end = text.size();
        while (first < end && isBlank(text[first]))
            ++first;
        while (end > first && isBlank(text[end - 1]))
            --end;
        return {text.sliced(first, end - first), start + first};
    }
    /// The first word; empty if there is none.
    [[nodiscard]] Part word() const
    {
        const Part part = trimmed();
        qsizetype end = 0;
        while (end < part.text.size() && !isBlank(part.text[end]))
            ++end;
        return {part.text.first(end), part.start};
    }
    /// Everything behind the first word.
    [[nodiscard]] Part rest() const
    {
        const Part first = word();
        const qsizetype skipped = first.start + first.text.size() - start;
        return Part{text.sliced(skipped), start + skipped}.trimmed();
    }
};

/// The statement of a line: without a comment, which begins the line or follows a blank. A "#" in quotes is text.
Part statementIn(QStringView line)
{
    bool isQuoted = false;
    for (qsizetype index = 0; index < line.size(); ++index) {
        if (line[index] == u'"')
            isQuoted = !isQuoted;
        else if (line[index] == u'\\' && isQuoted)
            ++index;
        else if (line[index] == u'#' && !isQuoted && (index == 0 || isBlank(line[index - 1])))
            return Part{line.first(index), 0}.trimmed();
    }
    return Part{line, 0}.trimmed();
}

/// Whether `line` is the beginning of a property list, perhaps a damaged one.
bool beginsPropertyList(QStringView line)
{
    return line.startsWith(u'<') || line.startsWith(u'{') || line.startsWith(u'(') || line.startsWith(u"bplist");
}

/// Reads a text line by line. After the first error, nothing more is read.
class Parser
{
public:
    Result<MacroText::Content, ParseError> parse(QByteArrayView text)
    {
        if (text.startsWith("\xEF\xBB\xBF"))
            text = text.sliced(3);
        while (!text.isEmpty() && !mError) {
            ++mLine;
            const qsizetype end = text.indexOf('\n');
            const QByteArrayView line = end < 0 ? text : text.first(end);
            text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
            readLine(line.endsWith('\r') ? line.chopped(1) : line);
        }
        if (!mError && mDelayMs > 0)
            add({MacroEdits::pause(takeDelay())}, {});
        if (mError)
            return *mError;
        return MacroText::Content{.name = mName, .events = mEvents};
    }

private:
    void readLine(QByteArrayView bytes)
    {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString line = decoder(bytes);
        mText = line;
        if (decoder.hasError())
            return fail({}, u"this is not a text in UTF-8"_s);
        const Part statement = statementIn(line);
        if (statement.text.isEmpty())
            return;
        const Part word = statement.word();
        const std::optional<Verb> verb = verbOf(word.text);
        if (!verb)
            return fail(word, u"a line begins with press, release, tap, click, wait, pause, event or name"_s);
        const Part rest = statement.rest();
        switch (*verb) {
        case Verb::press: return addOne(MacroEdits::press, rest);
        case Verb::release: return addOne(MacroEdits::release, rest);
        case Verb::tap: return addTap(rest, true);
        case Verb::click: return addTap(rest, false);
        case Verb::wait:
            if (const std::optional<int> delayMs = duration(rest))
                wait(*delayMs, rest);
            return;
        case Verb::pause:
            if (const std::optional<int> delayMs = duration(rest))
                addPause(*delayMs, rest);
            return;
        case Verb::event: return addData(rest);
        case Verb::name: return readName(rest);
        }
    }

    void addOne(QVariantMap (*make)(HidUsage, int), const Part &part)
    {
        if (const std::optional<HidUsage> key = keyOrButton(part))
            add({make(*key, takeDelay())}, part);
    }

    /// "A", "A for 20 ms"; for a click the number of a button in place of the key.
    void addTap(const Part &part, bool isKey)
    {
        Part target = part;
        int holdMs = 0;
        if (const qsizetype at = placeOfFor(part.text); at >= 0) {
            target = Part{part.text.first(at), part.start}.trimmed();
            const std::optional<int> given = duration(Part{part.text.sliced(at + 3), part.start + at + 3}.trimmed());
            if (!given)
                return;
            holdMs = *given;
        }
        if (const std::optional<HidUsage> key = isKey ? keyOrButton(target) : button(target))
            add(MacroEdits::tap(*key, takeDelay(), holdMs), part);
    }

    /// The place of the last word "for" that has blanks around it; -1 without one.
    static qsizetype placeOfFor(QStringView text)
    {
        for (qsizetype at = text.size() - 4; at >= 1; --at) {
            if (isBlank(text[at - 1]) && isBlank(text[at + 3])
                && text.sliced(at, 3).compare("for"_L1, Qt::CaseInsensitive) == 0)
                return at;
        }
        return -1;
    }

    void addPause(int delayMs, const Part &part)
    {
        if (wait(delayMs, part))
            add({MacroEdits::pause(takeDelay())}, part);
    }

    void addData(const Part &part)
    {
        const auto decoded =
            QByteArray::fromBase64Encoding(part.text.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
        const std::optional<QVariant> event = decoded ? PropertyList::read(*decoded) : std::optional<QVariant>();
        if (!event || event->typeId() != QMetaType::QVariantMap || !MacroRecord::isWellFormedEvent(event->toMap()))
            return fail(part, u"this is not an event (a property list in Base64)"_s);
        if (mDelayMs > 0)
            return fail(part, u"such an event has its own delay; no wait can precede it"_s);
        add({*event}, part);
    }

    void readName(const Part &part)
    {
        const QStringView text = part.text;
        if (mName)
            return fail(part, u"the macro has a name already"_s);
        if (text.size() < 2 || !text.startsWith(u'"') || !text.endsWith(u'"'))
            return fail(part, u"a name is in double quotes"_s);
        QString name;
        for (qsizetype index = 1; index < text.size() - 1; ++index) {
            QChar character = text[index];
            if (character == u'"')
                return fail({text, part.start + index}, u"write \\\" for a quote in a name"_s);
            if (character == u'\\') {
                const qsizetype start = index++;
                const std::optional<QChar> escaped = escapedAt(text.chopped(1), index);
                if (!escaped)
                    return fail({text, part.start + start}, u"after \\ comes \", \\ or u with four digits"_s);
                character = *escaped;
            }
            name += character;
        }
        mName = name;
    }

    /// The character whose escape is at `index`, which then is at its end; absent if it has an unknown form.
    static std::optional<QChar> escapedAt(QStringView text, qsizetype &index)
    {
        if (index >= text.size())
            return {};
        if (text[index] == u'"' || text[index] == u'\\')
            return text[index];
        if (text[index] != u'u' || index + 4 >= text.size())
            return {};
        bool isNumber = false;
        const QStringView digits = text.sliced(index + 1, 4);
        const ushort code = digits.toUShort(&isNumber, 16);
        if (!isNumber || !std::ranges::all_of(digits, isHexDigit))
            return {};
        index += 4;
        return QChar(code);
    }

    static bool isHexDigit(QChar character)
    {
        return (character >= u'0' && character <= u'9') || (character.toLower() >= u'a' && character.toLower() <= u'f');
    }

    /// "A", "Left Shift", "0x64", "button 1".
    std::optional<HidUsage> keyOrButton(const Part &part)
    {
        if (part.word().text.compare("button"_L1, Qt::CaseInsensitive) == 0)
            return button(part.rest());
        if (part.text.isEmpty()) {
            fail(part, u"the name of a key is missing"_s);
            return {};
        }
        const QString text = part.text.toString();
        if (const std::optional<int> code = keyCodeForName(text))
            return HidUsage{.page = HidUsage::keyboardPage, .usage = static_cast<quint16>(*code)};
        bool isNumber = false;
        const uint code = text.startsWith("0x"_L1, Qt::CaseInsensitive) ? text.toUInt(&isNumber, 16) : 0;
        if (isNumber && code <= std::numeric_limits<quint16>::max())
            return HidUsage{.page = HidUsage::keyboardPage, .usage = static_cast<quint16>(code)};
        fail(part, u"there is no key \"%1\" (see kestractl key --list)"_s.arg(text.left(40)));
        return {};
    }

    std::optional<HidUsage> button(const Part &part)
    {
        bool isNumber = false;
        const int number = part.text.toInt(&isNumber);
        if (isNumber && number >= 1 && number <= lastButton)
            return HidUsage{.page = HidUsage::buttonPage, .usage = static_cast<quint16>(number)};
        fail(part, u"a mouse button has a number from 1 to %1"_s.arg(lastButton));
        return {};
    }

    /// "100 ms", "1.5 s".
    std::optional<int> duration(const Part &part)
    {
        qsizetype end = 0;
        while (end < part.text.size() && ((part.text[end] >= u'0' && part.text[end] <= u'9') || part.text[end] == u'.'))
            ++end;
        const QStringView unit = Part{part.text.sliced(end), 0}.trimmed().text;
        bool isNumber = false;
        const QStringView digits = part.text.first(end);
        double value = digits.toDouble(&isNumber);
        const bool isInSeconds = unit.compare("s"_L1, Qt::CaseInsensitive) == 0;
        if (!isNumber || (!isInSeconds && (unit.compare("ms"_L1, Qt::CaseInsensitive) != 0 || digits.contains(u'.')))) {
            fail(part, u"a time is written as 100 ms or 1.5 s"_s);
            return {};
        }
        value = isInSeconds ? std::round(value * 1000) : value;
        if (value > MacroRecord::maximumDelayMs) {
            fail(part, u"this time is too long"_s);
            return {};
        }
        return static_cast<int>(value);
    }

    bool wait(int delayMs, const Part &part)
    {
        if (delayMs > MacroRecord::maximumDelayMs - mDelayMs) {
            fail(part, u"this time is too long"_s);
            return false;
        }
        mDelayMs += delayMs;
        return true;
    }

    int takeDelay() { return std::exchange(mDelayMs, 0); }

    void add(const QVariantList &events, const Part &part)
    {
        if (mError)
            return;
        if (mEvents.size() + events.size() > MacroRecord::maximumEvents)
            return fail(part, u"a macro has at most %1 events"_s.arg(MacroRecord::maximumEvents));
        mEvents += events;
    }

    void fail(const Part &part, const QString &reason)
    {
        if (mError)
            return;
        const QStringView before = QStringView(mText).first(std::min(part.start, mText.size()));
        const auto characters = std::ranges::count_if(before, [](QChar c) { return !c.isLowSurrogate(); });
        const int column = static_cast<int>(characters) + 1;
        mError = ParseError{Error{u"line %1, column %2: %3"_s.arg(mLine).arg(column).arg(reason)}, mLine, column};
    }

    QVariantList mEvents;
    std::optional<QString> mName;
    std::optional<ParseError> mError;
    QString mText; // of the line
    int mLine = 0;
    int mDelayMs = 0; // of the waits before the next event
};

/// Whether the event has its four fields and nothing else, and all of them are whole numbers.
bool hasUsualForm(const QVariantMap &event)
{
    static const QStringList fields = MacroRecord::eventRecord({}).keys();
    return event.keys() == fields && std::ranges::all_of(event, [](const QVariant &value) {
               return value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong;
           });
}

QString waitLine(int delayMs)
{
    return delayMs == 0 ? QString() : u"wait %1 ms\n"_s.arg(delayMs);
}

/// The words for the key or button of an event that is written by name.
QString target(const MacroRecord::Event &event)
{
    if (event.page == MacroRecord::buttonPage)
        return u"button %1"_s.arg(event.argument);
    const QString name = keyName(static_cast<int>(event.argument));
    return name.isEmpty() ? u"0x%1"_s.arg(event.argument, 2, 16, QLatin1Char('0')) : name;
}

/// An event in the usual form that presses or releases a key or a button; absent for others.
std::optional<MacroRecord::Event> plainEvent(const QVariantMap &event)
{
    if (!hasUsualForm(event))
        return {};
    const MacroRecord::Event fields = MacroRecord::eventFields(event);
    const bool isKey =
        fields.page == MacroRecord::keyboardPage && fields.argument <= std::numeric_limits<quint16>::max();
    const bool isButton =
        fields.page == MacroRecord::buttonPage && fields.argument >= 1 && fields.argument <= lastButton;
    const bool isPress = fields.command == MacroRecord::keyDown || fields.command == MacroRecord::keyUp;
    if ((!isKey && !isButton) || !isPress || fields.delayMs < 0 || event != MacroRecord::eventRecord(fields))
        return {};
    return fields;
}

QString dataLine(const QVariantMap &event)
{
    return u"event "_s + QString::fromLatin1(PropertyList::writeBinary(event).value_or(QByteArray()).toBase64())
           + u'\n';
}

/// The line for a press and the release that follows it.
QString tapLine(const MacroRecord::Event &press, int holdMs)
{
    const QString hold = holdMs == 0 ? QString() : u" for %1 ms"_s.arg(holdMs);
    if (press.page == MacroRecord::buttonPage)
        return u"click %1"_s.arg(press.argument) + hold + u'\n';
    return u"tap "_s + target(press) + hold + u'\n';
}

} // namespace

Result<MacroText::Content, ParseError> MacroText::parse(QByteArrayView text)
{
    return Parser().parse(text);
}

QString MacroText::write(const QVariantList &events)
{
    QString text;
    for (qsizetype index = 0; index < events.size(); ++index) {
        const QVariantMap record = events.at(index).toMap();
        const std::optional<MacroRecord::Event> event = plainEvent(record);
        if (!event) {
            text += MacroEdits::isPause(record) ? u"pause %1 ms\n"_s.arg(MacroRecord::eventFields(record).delayMs)
                                                : dataLine(record);
            continue;
        }
        text += waitLine(event->delayMs);
        const bool isDown = event->command == MacroRecord::keyDown;
        const auto next = index + 1 < events.size() ? plainEvent(events.at(index + 1).toMap()) : std::nullopt;
        if (isDown && next && next->command == MacroRecord::keyUp && next->page == event->page
            && next->argument == event->argument) {
            text += tapLine(*event, next->delayMs);
            ++index;
        } else {
            text += (isDown ? u"press "_s : u"release "_s) + target(*event) + u'\n';
        }
    }
    return text;
}

QString MacroText::nameLine(const QString &name)
{
    QString text;
    for (qsizetype index = 0; index < name.size(); ++index) {
        const QChar character = name[index];
        if (index + 1 < name.size() && character.isHighSurrogate() && name[index + 1].isLowSurrogate()
            && QChar::isPrint(QChar::surrogateToUcs4(character, name[index + 1])))
            text += name.sliced(index++, 2);
        else if (character == u'"' || character == u'\\')
            text += QString(u'\\') + character;
        else if (character.isPrint() && character != QChar::LineSeparator && character != QChar::ParagraphSeparator)
            text += character;
        else
            text += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QLatin1Char('0'));
    }
    return u"name \""_s + text + u"\"\n"_s;
}

bool MacroText::isMacroText(QByteArrayView text)
{
    const bool isUtf8 = QUtf8StringView(text.data(), text.size()).isValidUtf8();
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf('\n');
        const QByteArrayView line = end < 0 ? text : text.first(end);
        text = end < 0 ? QByteArrayView() : text.sliced(end + 1);
        const QString decoded = QString::fromUtf8(line.endsWith('\r') ? line.chopped(1) : line);
        const Part statement = statementIn(decoded);
        if (!statement.text.isEmpty())
            return verbOf(statement.word().text) || (isUtf8 && !beginsPropertyList(statement.text));
    }
    return false;
}
