// SPDX-License-Identifier: MIT
#include "tests/daemon/enginescript.h"

#include "app/util/settingskeys.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using KeyMappings::Assignment;

namespace {

constexpr QLatin1StringView buttonPrefix("Button");

std::optional<HidUsage> usageOf(const QString &name)
{
    if (name.startsWith(buttonPrefix))
        return HidUsage{HidUsage::buttonPage, name.sliced(buttonPrefix.size()).toUShort()};
    const std::optional<int> code = keyCodeForName(name);
    return code ? std::optional(HidUsage{HidUsage::keyboardPage, static_cast<quint16>(*code)}) : std::nullopt;
}

/// The name of a key's button in the picture, without its "m": it has no spaces and can be written in a case.
QString nameOf(HidUsage usage)
{
    if (usage.page == HidUsage::buttonPage)
        return buttonPrefix + QString::number(usage.usage);
    const KeyRow *row = KeyLayout::rowForCode(usage.usage);
    return row ? QString(row->outlet.sliced(1)) : u"usage %1"_s.arg(usage.usage);
}

/// "LeftControl+LeftShift" as a modifier byte.
std::optional<int> modifiersOf(const QString &names)
{
    int modifiers = 0;
    for (const QString &name : names.split(u'+', Qt::SkipEmptyParts)) {
        const std::optional<HidUsage> usage = usageOf(name);
        if (!usage || !usage->isModifier())
            return {};
        modifiers |= usage->modifierBit();
    }
    return modifiers;
}

QString modifierNames(quint8 modifiers)
{
    QStringList names;
    for (quint16 usage = HidUsage::firstModifier; usage <= HidUsage::lastKey; ++usage) {
        const HidUsage modifier{HidUsage::keyboardPage, usage};
        if (modifiers & modifier.modifierBit())
            names += nameOf(modifier);
    }
    return names.join(u'+');
}

QString textOf(const EngineOutput &output)
{
    switch (output.kind) {
    case EngineOutput::Kind::sendDown: return nameOf(output.usage) + u" down"_s;
    case EngineOutput::Kind::sendUp: return nameOf(output.usage) + u" up"_s;
    case EngineOutput::Kind::captured:
        return u"captured "_s + nameOf(output.usage)
               + (output.modifiers ? u" with "_s + modifierNames(output.modifiers) : QString());
    case EngineOutput::Kind::switchProfile: return u"profile %1"_s.arg(output.profileIndex);
    case EngineOutput::Kind::launchProgram: return u"launch %1"_s.arg(output.program);
    }
    return u"?"_s;
}

struct Mapping
{
    Assignment assignment = Assignment::defaultKey;
    QVariant param1 = 0;
    QVariant param2 = 0;
};

/// What the words after "profile N key K" assign; absent when they mean nothing.
std::optional<Mapping> mappingOf(const QStringList &words)
{
    const QString kind = words.value(0);
    const QString target = words.value(1);
    if (kind == "default"_L1 || kind == "single-key"_L1) {
        // Without a target "none": the entry of a key that sends nothing but modifiers, or its own code.
        const std::optional<HidUsage> usage = target.isEmpty() || target == "none"_L1 ? HidUsage{} : usageOf(target);
        const std::optional<int> modifiers = modifiersOf(words.value(2));
        if (!usage || !modifiers)
            return {};
        return Mapping{kind == "default"_L1 ? Assignment::defaultKey : Assignment::singleKey, int(usage->usage),
                       *modifiers};
    }
    if (kind == "macro"_L1)
        return Mapping{Assignment::playMacro, target.toInt(), words.value(2).toInt()};
    if (kind == "profile"_L1)
        return Mapping{Assignment::switchProfile, target.toInt(), 0};
    if (kind == "launch"_L1)
        return Mapping{Assignment::launchProgram, target, QString()};
    if (kind == "disabled"_L1)
        return Mapping{Assignment::disabled, 0, 0};
    if (kind == "command"_L1)
        return Mapping{static_cast<Assignment>(target.toInt()), words.value(2).toInt(), words.value(3).toInt()};
    return {};
}

} // namespace

QString EngineScript::run(const QString &line)
{
    const QStringList words = line.simplified().split(u' ');
    if (words.first() == "profile"_L1)
        return setMapping(words);
    if (words.first() == "switch"_L1) {
        switchTo(words.value(1).toInt());
        return {};
    }
    if (words.first() == "capture"_L1) {
        mEngine.setCapturing(words.value(1) == "on"_L1);
        return words.value(1) == "on"_L1 || words.value(1) == "off"_L1 ? QString() : u"on or off?"_s;
    }
    return runEvent(words);
}

QString EngineScript::runEvent(const QStringList &words)
{
    if (words.first() == "game-mode"_L1) {
        mIsGameModeOn = !mIsGameModeOn;
        take(mEngine.setGameMode(mIsGameModeOn));
        return {};
    }
    if (words.first() == "remove"_L1) {
        take(mEngine.releaseAll());
        return {};
    }
    const std::optional<HidUsage> key = usageOf(words.value(1));
    if (!key)
        return u"no such key"_s;
    if (words.first() == "press"_L1)
        take(mEngine.keyDown(*key, 0ms));
    else if (words.first() == "release"_L1)
        take(mEngine.keyUp(*key, 0ms));
    else
        return u"no such event"_s;
    return {};
}

QString EngineScript::setMapping(const QStringList &words)
{
    const int profile = words.value(1).toInt();
    const std::optional<HidUsage> key = usageOf(words.value(3));
    const std::optional<Mapping> mapping = mappingOf(words.sliced(std::min<qsizetype>(4, words.size())));
    if (profile < 0 || words.value(2) != "key"_L1 || !key || !mapping)
        return u"no such assignment"_s;
    if (profile >= mProfiles.size())
        mProfiles.resize(profile + 1);
    QVariantMap &record = mProfiles[profile];
    record.insert(SettingsKeys::keys,
                  KeyMappings::withEntry(record.value(SettingsKeys::keys).toMap(), KeyLayout::codeText(key->usage),
                                         mapping->assignment, mapping->param1, mapping->param2));
    if (profile == mActive)
        switchTo(profile);
    return {};
}

void EngineScript::switchTo(int profile)
{
    mActive = profile;
    mEngine.setKeyMap(KeyMap(mProfiles.value(profile)));
}

void EngineScript::take(const EngineOutputs &outputs)
{
    QStringList texts;
    for (const EngineOutput &output : outputs) {
        texts += textOf(output);
        if (output.kind == EngineOutput::Kind::switchProfile && output.profileIndex >= 0
            && output.profileIndex < mProfiles.size())
            switchTo(output.profileIndex);
    }
    mOutputLines += texts.isEmpty() ? u"nothing"_s : texts.join(u", "_s);
}
