// SPDX-License-Identifier: MIT
#include "cli/keyassignments.h"

#include "base/document.h"
#include "cli/factoryprofile.h"
#include "cli/recordchoice.h"
#include "keys/keynames.h"
#include "macros/eventparser.h"
#include "platform/desktopentry.h"

#include <QFileInfo>
#include <QVariantList>

#include <algorithm>
#include <iterator>
#include <optional>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

Result<NewAssignment> makeSingleKey(const AssignmentWords &words)
{
    const std::optional<int> key = keyCodeForName(words.argument);
    if (!key)
        return Error{u"the keyboard has no key \"%1\" to send (see kestractl key --list)"_s.arg(words.argument)};
    int modifiers = 0;
    for (const QString &name : words.optionValue.split(u',', Qt::SkipEmptyParts)) {
        const int bit = modifierBit(keyCodeForName(name.trimmed()).value_or(0));
        if (bit == 0)
            return Error{u"\"%1\" is not a modifier key (see kestractl key --list)"_s.arg(name.trimmed())};
        modifiers |= bit;
    }
    return NewAssignment{.assignment = Assignment::singleKey, .param1 = *key, .param2 = modifiers};
}

/// The repeat value for "once", "until-released", "until-pressed-again" or a number of times.
std::optional<int> repeatValue(const QString &text)
{
    if (text.isEmpty() || text == "once"_L1)
        return KeyMappings::playOnceValue;
    if (text == "until-released"_L1)
        return KeyMappings::repeatUntilReleasedValue;
    if (text == "until-pressed-again"_L1)
        return KeyMappings::repeatUntilPressedAgainValue;
    bool isNumber = false;
    const int times = text.toInt(&isNumber);
    const bool isOpenEnded =
        times == KeyMappings::repeatUntilReleasedValue || times == KeyMappings::repeatUntilPressedAgainValue;
    const auto modes = KeyMappings::repeatModes();
    if (!isNumber || isOpenEnded || std::ranges::find(modes, times, &KeyMappings::RepeatMode::value) == modes.end())
        return {};
    return times;
}

Result<NewAssignment> makeMacro(const AssignmentWords &words)
{
    const std::optional<int> repeat = repeatValue(words.optionValue);
    if (!repeat)
        return Error{
            u"\"%1\" is not a way to repeat a macro: give once, until-released, until-pressed-again or 2 to 10"_s.arg(
                words.optionValue)};
    const QVariantList macros = Document(words.document).macros();
    const Result<int> index = recordIndex(words.argument, macros, macroKind);
    if (!index)
        return index.error();
    return NewAssignment{.assignment = Assignment::playMacro, .param1 = *index, .param2 = *repeat};
}

Result<NewAssignment> makeProfile(const AssignmentWords &words)
{
    const QVariantList profiles = Document(words.document).profiles();
    const Result<int> index = recordIndex(words.argument, profiles, profileKind);
    if (!index)
        return index.error();
    return NewAssignment{.assignment = Assignment::switchProfile, .param1 = *index};
}

/// The daemon starts desktop entries and bundles; it resolves no relative path, which would be relative to itself.
Result<NewAssignment> makeLaunch(const AssignmentWords &words)
{
    const QFileInfo file(QFileInfo(words.argument).canonicalFilePath());
    if (file.filePath().isEmpty())
        return Error{u"there is no \"%1\""_s.arg(words.argument)};
    const bool isBundle =
        file.isDir() && file.suffix() == "app"_L1 && QFileInfo::exists(file.filePath() + u"/Contents/Info.plist"_s);
    const bool isEntry = file.isFile() && file.suffix() == "desktop"_L1 && DesktopEntry::read(file.filePath());
    if (!isBundle && !isEntry)
        return Error{u"\"%1\" is neither a desktop entry nor an application bundle"_s.arg(words.argument)};
    return NewAssignment{.assignment = Assignment::launchProgram, .param1 = file.filePath(), .param2 = QString()};
}

Result<NewAssignment> makeDisabled(const AssignmentWords &)
{
    return NewAssignment{.assignment = Assignment::disabled};
}

/// "param1" is that of the key in the factory settings' first profile; 0 when it has none.
Result<NewAssignment> makeDefault(const AssignmentWords &words)
{
    const CommandResult<QVariantMap> factory = factoryProfile();
    const int code = factory ? KeyMappings::entryForKey(*factory, words.keyCode).param1 : 0;
    return NewAssignment{.assignment = Assignment::defaultKey, .param1 = code};
}

// In the order of the configurator's pop-up, but for the default.
constexpr AssignmentKind kinds[] = {
    {"single"_L1, "KEY"_L1, "--modifiers"_L1, "MODIFIER,..."_L1, "make it send another key, with modifiers"_L1,
     makeSingleKey},
    {"macro"_L1, "N|NAME"_L1, "--repeat"_L1, "once|until-released|until-pressed-again|2..10"_L1,
     "make it play a macro"_L1, makeMacro},
    {"profile"_L1, "N|NAME"_L1, {}, {}, "make it switch to a profile"_L1, makeProfile},
    {"launch"_L1,
     "PATH"_L1,
     {},
     {},
     "make it start an application: a desktop entry or an application bundle"_L1,
     makeLaunch},
    {"disable"_L1, {}, {}, {}, "make it do nothing"_L1, makeDisabled},
    {"default"_L1, {}, {}, {}, "make it do what the keyboard does by default"_L1, makeDefault},
};

} // namespace

std::span<const AssignmentKind> assignmentKinds()
{
    return kinds;
}

int modifierBit(int code)
{
    for (int bit = 1; bit < 0x100; bit <<= 1) {
        QList<int> codes;
        eventParser::getModifierHIDRetVal(static_cast<quint8>(bit), codes);
        if (codes.contains(code))
            return bit;
    }
    return 0;
}

const AssignmentKind *findAssignmentKind(const QString &word)
{
    const auto found = std::ranges::find(kinds, word, &AssignmentKind::word);
    return found == std::end(kinds) ? nullptr : found;
}
