// SPDX-License-Identifier: MIT
#include "cli/keydescription.h"

#include "app/util/settingskeys.h"
#include "cli/plistjson.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"

#include <QVariantList>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

/// "macro 2 \"Combo\"", or "macro 2 (which does not exist)".
QString indexedName(QLatin1StringView what, int index, const QVariant &records, QLatin1StringView nameKey)
{
    const QVariantList list = records.toList();
    const QString text = u"%1 %2"_s.arg(what).arg(index);
    if (index < 0 || index >= list.size())
        return text + u" (which does not exist)"_s;
    return text + u" \""_s + list.at(index).toMap().value(nameKey).toString() + u'"';
}

QString repeatWords(int repeatValue)
{
    if (repeatValue == KeyMappings::repeatUntilReleasedValue)
        return u"again and again until released"_s;
    if (repeatValue == KeyMappings::repeatUntilPressedAgainValue)
        return u"again and again until pressed again"_s;
    const int times = KeyMappings::macroRepeatValue(KeyMappings::macroRepeat(repeatValue));
    return times == KeyMappings::playOnceValue ? u"once"_s : u"%1 times"_s.arg(times);
}

QString singleKeyWords(const KeyMappings::Entry &entry)
{
    const QString name = keyName(entry.param1);
    const QString key = name.isEmpty() ? u"HID usage %1"_s.arg(entry.param1) : name;
    if (entry.param2 == 0)
        return u"sends the key "_s + key;
    return u"sends the key "_s + key + u" with the modifiers 0x%1"_s.arg(entry.param2, 2, 16, QLatin1Char('0'));
}

} // namespace

QVariantMap activeProfileRecord(const QVariantMap &document)
{
    const int active = document.value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::activeProfile).toInt();
    return document.value(SettingsKeys::profiles).toList().value(active).toMap();
}

QString describeKey(const QVariantMap &document, int code)
{
    const KeyMappings::Entry entry = KeyMappings::entryForKey(activeProfileRecord(document), code);
    if (!entry.isMapped())
        return u"default key"_s;
    if (entry.is(Assignment::disabled))
        return u"disabled"_s;
    if (entry.is(Assignment::singleKey))
        return singleKeyWords(entry);
    if (entry.is(Assignment::launchProgram))
        return u"launches "_s + entry.programPath;
    if (entry.is(Assignment::switchProfile)) {
        return u"switches to "_s + indexedName("profile"_L1, entry.param1, document.value(SettingsKeys::profiles),
                                               SettingsKeys::profileName);
    }
    if (entry.is(Assignment::playMacro)) {
        return u"plays "_s
               + indexedName("macro"_L1, entry.param1, document.value(SettingsKeys::macros), SettingsKeys::macroName)
               + u' ' + repeatWords(entry.param2);
    }
    return u"assignment %1, which this program does not know"_s.arg(entry.command);
}

QJsonObject keyAsJson(const QVariantMap &document, int code)
{
    const QVariantMap keys = activeProfileRecord(document).value(SettingsKeys::keys).toMap();
    return {{u"key"_s, keyName(code)},
            {u"code"_s, code},
            {u"mapped"_s, KeyMappings::entryForKey(activeProfileRecord(document), code).isMapped()},
            {u"description"_s, describeKey(document, code)},
            {u"entry"_s, jsonFromPropertyList(keys.value(KeyLayout::codeText(code)))}};
}
