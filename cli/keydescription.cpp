// SPDX-License-Identifier: MIT
#include "cli/keydescription.h"

#include "base/document.h"
#include "base/profilerecord.h"
#include "cli/plistjson.h"
#include "cli/recordchoice.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "keys/macrouses.h"
#include "macros/eventparser.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

/// "macro Combo", "macro name:2" for one called "2", or "macro 2 (which does not exist)" for the index 1.
QString namedRecord(const RecordKind &kind, int index, const QVariantList &records)
{
    if (const std::optional<QString> name = KeyMappings::recordName(records, index, kind.nameKey))
        return kind.word + u' ' + nameArgument(*name);
    return u"%1 %2 (which does not exist)"_s.arg(kind.word).arg(qint64{index} + 1);
}

QString repeatWords(int repeatValue)
{
    if (repeatValue == KeyMappings::repeatUntilReleasedValue)
        return u"until released"_s;
    if (repeatValue == KeyMappings::repeatUntilPressedAgainValue)
        return u"until pressed again"_s;
    const int times = KeyMappings::macroRepeatValue(KeyMappings::macroRepeat(repeatValue));
    return times == KeyMappings::playOnceValue ? u"once"_s : u"%1 times"_s.arg(times);
}

QString singleKeyWords(const KeyMappings::Entry &entry)
{
    QList<int> codes;
    eventParser::getModifierHIDRetVal(static_cast<quint8>(entry.param2), codes);
    constexpr int firstKey = 4; // lower codes are not keys: the daemon sends only the modifiers
    if (entry.param1 >= firstKey)
        codes += entry.param1;
    QStringList names;
    for (const int code : std::as_const(codes)) {
        const QString name = keyName(code);
        names += name.isEmpty() ? u"HID usage %1"_s.arg(code) : name;
    }
    return u"single key "_s + (names.isEmpty() ? u"none"_s : names.join(u" + "_s));
}

} // namespace

QString describeKey(const QVariantMap &document, int code)
{
    const KeyMappings::Entry entry = KeyMappings::entryForKey(Document(document).activeProfile(), code);
    if (!entry.isMapped())
        return u"default key"_s;
    if (entry.is(Assignment::disabled))
        return u"disabled"_s;
    if (entry.is(Assignment::singleKey))
        return singleKeyWords(entry);
    if (entry.is(Assignment::launchProgram))
        return u"program "_s + entry.programPath;
    if (entry.is(Assignment::switchProfile))
        return namedRecord(profileKind, entry.param1, Document(document).profiles());
    if (entry.is(Assignment::playMacro))
        return namedRecord(macroKind, entry.param1, Document(document).macros()) + u", "_s + repeatWords(entry.param2);
    return u"unknown assignment, which does nothing"_s;
}

QJsonObject keyAsJson(const QVariantMap &document, int code)
{
    const QVariantMap profile = Document(document).activeProfile();
    return {{u"key"_s, keyName(code)},
            {u"code"_s, code},
            {u"mapped"_s, KeyMappings::entryForKey(profile, code).isMapped()},
            {u"description"_s, describeKey(document, code)},
            {u"entry"_s, jsonFromPropertyList(ProfileRecord::keys(profile).value(KeyLayout::codeText(code)))}};
}

QString describeMacroUses(const QVariantMap &document, int macroIndex)
{
    QStringList uses;
    for (const KeyMappings::MacroUse &use : KeyMappings::macroUses(Document(document).profiles(), macroIndex)) {
        const QString profile = use.profileName.isEmpty() ? u"profile %1"_s.arg(use.profileIndex + 1) : use.profileName;
        uses += keyName(use.keyCode) + u" in "_s + profile;
    }
    return uses.join(u", "_s);
}
