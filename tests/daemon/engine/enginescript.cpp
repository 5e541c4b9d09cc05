// SPDX-License-Identifier: MIT
#include "tests/daemon/engine/enginescript.h"

#include "base/settingskeys.h"
#include "keys/keylayout.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "macros/macrorecord.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using KeyMappings::Assignment;

namespace {

constexpr QLatin1StringView buttonPrefix("Button");
constexpr QLatin1StringView codePrefix("Code");

std::optional<HidUsage> usageOf(const QString &name)
{
    if (name.startsWith(buttonPrefix))
        return HidUsage{HidUsage::buttonPage, name.sliced(buttonPrefix.size()).toUShort()};
    if (name.startsWith(codePrefix))
        return HidUsage{HidUsage::systemPage, name.sliced(codePrefix.size()).toUShort()};
    const std::optional<int> code = keyCodeForName(name);
    return code ? std::optional(HidUsage{HidUsage::keyboardPage, static_cast<quint16>(*code)}) : std::nullopt;
}

/// The name of a key's button in the picture, without its "m". It has no spaces, so a case can contain it.
QString nameOf(HidUsage usage)
{
    if (usage.page == HidUsage::buttonPage)
        return buttonPrefix + QString::number(usage.usage);
    if (usage.page == HidUsage::systemPage)
        return codePrefix + QString::number(usage.usage);
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

/// The assignment in the words after "profile N key K"; absent when they have no meaning.
std::optional<Mapping> mappingOf(const QStringList &words)
{
    const QString kind = words.value(0);
    const QString target = words.value(1);
    if (kind == "default"_L1 || kind == "single-key"_L1) {
        // An empty target or "none" is the entry of a key that sends nothing but modifiers, or its own code.
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

/// The event "PAUSE KEY down|up" or "PAUSE page PAGE USAGE COMMAND"; absent for other words.
std::optional<QVariantMap> eventOf(const QStringList &words)
{
    bool isNumber = false;
    const int pause = words.value(0).toInt(&isNumber);
    if (isNumber && words.size() == 5 && words.at(1) == "page"_L1)
        return MacroRecord::eventRecord({.command = words.at(4).toInt(),
                                         .delayMs = pause,
                                         .page = words.at(2).toInt(),
                                         .argument = words.at(3).toUInt()});
    const std::optional<HidUsage> usage = usageOf(words.value(1));
    const bool isDown = words.value(2) == "down"_L1;
    if (!isNumber || !usage || (!isDown && words.value(2) != "up"_L1))
        return {};
    return MacroRecord::eventRecord({.command = isDown ? MacroRecord::keyDown : MacroRecord::keyUp,
                                     .delayMs = pause,
                                     .page = usage->page,
                                     .argument = usage->usage});
}

} // namespace

QString EngineScript::run(const QString &line)
{
    const QStringList words = line.simplified().split(u' ');
    static const QStringList settings{u"profile"_s, u"macro"_s, u"delete-macro"_s, u"switch"_s, u"capture"_s};
    return settings.contains(words.first()) ? runSetting(words) : runEvent(words);
}

QString EngineScript::runSetting(const QStringList &words)
{
    if (words.first() == "profile"_L1)
        return setMapping(words);
    if (words.first() == "macro"_L1)
        return setMacro(words);
    if (words.first() == "delete-macro"_L1)
        return deleteMacro(words);
    if (words.first() == "switch"_L1) {
        switchTo(words.value(1).toInt());
        return {};
    }
    takeBetween(mEngine.setCapturing(words.value(1) == "on"_L1));
    return words.value(1) == "on"_L1 || words.value(1) == "off"_L1 ? QString() : u"on or off?"_s;
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
    if (words.first() == "wait"_L1 || words.first() == "stall"_L1)
        return pass(words);
    const std::optional<HidUsage> key = usageOf(words.value(1));
    const std::optional<HidUsage> systemKey = words.value(2) == "as"_L1 ? usageOf(words.value(3)) : key;
    if (!key || !systemKey)
        return u"no such key"_s;
    if (words.first() == "press"_L1)
        take(mEngine.keyDown(*key, *systemKey, mNow));
    else if (words.first() == "release"_L1)
        take(mEngine.keyUp(*key, mNow));
    else
        return u"no such event"_s;
    return {};
}

/// Advances the time. Calls the engine at each deadline, or in a stall only at the end.
QString EngineScript::pass(const QStringList &words)
{
    bool isNumber = false;
    const KeyEngine::Time end = mNow + std::chrono::milliseconds(words.value(1).toInt(&isNumber));
    if (!isNumber)
        return u"how many milliseconds?"_s;
    if (words.first() == "stall"_L1)
        mNow = end;
    QStringList texts;
    for (auto deadline = mEngine.nextDeadline(); deadline && *deadline <= end; deadline = mEngine.nextDeadline()) {
        mNow = std::max(mNow, *deadline);
        for (const QString &text : textsOf(mEngine.advance(mNow)))
            texts += u"%1 at %2"_s.arg(text).arg(static_cast<double>(mNow.count()) / 1000);
    }
    mNow = end;
    mOutputLines += texts.isEmpty() ? u"nothing"_s : texts.join(u", "_s);
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
        useMap();
    return {};
}

QString EngineScript::setMacro(const QStringList &words)
{
    const int index = words.value(1).toInt();
    QVariantList events;
    for (const QString &text : words.sliced(std::min<qsizetype>(2, words.size())).join(u' ').split(u',')) {
        const std::optional<QVariantMap> event = eventOf(text.simplified().split(u' '));
        if (!event)
            return u"no such event of a macro"_s;
        events += *event;
    }
    if (index < 0 || index > mMacros.size())
        return u"no such macro"_s;
    if (index == mMacros.size())
        mMacros += QVariantMap{{SettingsKeys::macroId, ++mLastMacroId}};
    mMacros[index] = MacroRecord::withEvents(mMacros.at(index).toMap(), events);
    useMacros();
    return {};
}

QString EngineScript::deleteMacro(const QStringList &words)
{
    const int index = words.value(1).toInt();
    if (index < 0 || index >= mMacros.size())
        return u"no such macro"_s;
    mMacros.removeAt(index);
    useMacros();
    return {};
}

void EngineScript::switchTo(int profile)
{
    mActive = profile;
    takeBetween(mEngine.stopMacros());
    useMap();
}

void EngineScript::useMap()
{
    takeBetween(mEngine.setKeyMap(KeyMap(mProfiles.value(mActive))));
}

void EngineScript::useMacros()
{
    mPlayable = playableMacros(mMacros, mPlayable);
    takeBetween(mEngine.setMacros(mPlayable));
}

QStringList EngineScript::textsOf(const EngineOutputs &outputs)
{
    QStringList texts;
    for (const EngineOutput &output : outputs)
        texts += textOf(output);
    return texts;
}

void EngineScript::take(const EngineOutputs &outputs)
{
    const QStringList texts = textsOf(outputs);
    mOutputLines += texts.isEmpty() ? u"nothing"_s : texts.join(u", "_s);
    for (const EngineOutput &output : outputs) {
        if (output.kind == EngineOutput::Kind::switchProfile && output.profileIndex >= 0
            && output.profileIndex < mProfiles.size())
            switchTo(output.profileIndex);
    }
}

void EngineScript::takeBetween(const EngineOutputs &outputs)
{
    if (!outputs.isEmpty())
        take(outputs);
}
