// SPDX-License-Identifier: MIT
#include "tests/daemon/keyboards/linux/keystorm.h"

#include "daemon/system/deadlinetimer.h"

#include <QAbstractEventDispatcher>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace StormSettings;

namespace {

using Key = KeyModel::Key;
using Values = std::array<quint32, 4>;

constexpr qsizetype mostHeldKeys = 5; // of one keyboard

} // namespace

KeyStorm::KeyStorm(quint32 seed, bool isLogging)
    : mModel(std::vector<KeyModel::Profile>(profileCount), std::vector<KeyModel::Macro>(macroCount)),
      // Ahead of the machine's clock, from which the channel takes the time of a removal
      mNow(DeadlineTimer::now() + 24h),
      mPath(mChannel, KeyClock{.now = [this] { return mNow; },
                               .wakeAt = [this](std::optional<KeyEngine::Time> time) { mWakeTime = time; }}),
      mIsLogging(isLogging)
{
    mChannel.setOutput(mComputer.device());
    QObject::connect(&mPath, &KeyPath::profileChosen, &mPath,
                     [this](int index, KeyPath::SwitchNumber number) { mSwitches.emplace_back(index, number); });
    QObject::connect(&mPath, &KeyPath::keyCaptured, &mPath, [this] {
        if (!mIsCapturing) // the key of a macro on the fly
            mPath.listen({.lastMacroKey = mPath.lastMacroKey()});
    });
    for (int profile = 0; profile < profileCount; ++profile) {
        mProfiles.push_back({});
        mSettings.profiles.push_back(std::make_shared<const ProfileKeys>());
    }
    for (int number = 0; number < macroCount; ++number)
        mMacros += QVariantMap();
    KeySettings settings = mSettings;
    mLastSwitch = mPath.start(settings);
    QRandomGenerator random(seed);
    for (int number = 0; number < macroCount; ++number)
        setMacro(number, random.generate());
    for (int profile = 0; profile < profileCount; ++profile) {
        for (std::size_t key = 0; key < assignableKeys().size(); ++key) {
            if (random.bounded(3) != 0)
                assign(profile, {static_cast<quint32>(key), random.generate(), random.generate(), 0});
        }
    }
    changeSettings(false);
    mModel.passTime(mNow);
    for (int keyboard = 0; keyboard < keyboardCount; ++keyboard)
        plug(keyboard, 0);
    settle();
    mComputer.beginInput();
}

KeyStorm::~KeyStorm()
{
    mChannel.removeAllNodes();
}

StormInput KeyStorm::randomInput(QRandomGenerator &random)
{
    using Kind = StormInput::Kind;
    struct Weight
    {
        Kind kind;
        int weight;
    };
    constexpr std::array weights{
        Weight{Kind::keys, 64},      Weight{Kind::lostKeys, 3},      Weight{Kind::plug, 6},
        Weight{Kind::unplug, 1},     Weight{Kind::ungrab, 1},        Weight{Kind::time, 12},
        Weight{Kind::lateTime, 1},   Weight{Kind::switchProfile, 2}, Weight{Kind::capture, 1},
        Weight{Kind::endCapture, 2}, Weight{Kind::macroKey, 2},      Weight{Kind::gameMode, 1},
        Weight{Kind::assign, 3},     Weight{Kind::editMacro, 1},
    };
    StormInput input;
    for (quint32 &value : input.values)
        value = random.generate();
    int place = random.bounded(100);
    for (const Weight &weight : weights) {
        if (place < weight.weight) {
            input.kind = weight.kind;
            break;
        }
        place -= weight.weight;
    }
    return input;
}

QString KeyStorm::run(const StormInput &input)
{
    const bool wasPlaying = mModel.isPlaying();
    mComputer.beginInput();
    mKeysOfInput = 0;
    carryOut(input);
    settle();
    mComputer.read();
    mHasPlayed = mHasPlayed || mModel.isPlaying();
    if (QString problem = difference(); !problem.isEmpty())
        return problem;
    const bool isAttached = mModel.isPlugged(static_cast<int>(input.values[0] % keyboardCount));
    const bool isOneKey = input.kind == StormInput::Kind::keys && mKeysOfInput == 1 && isAttached && !wasPlaying;
    return isOneKey ? mComputer.sideEffect() : QString();
}

void KeyStorm::carryOut(const StormInput &input)
{
    using Kind = StormInput::Kind;
    const Values &values = input.values;
    const int keyboard = static_cast<int>(values[0] % keyboardCount);
    if (!mSwitches.empty() && values[3] % 4 != 0) // otherwise the answer crosses this input
        answerSwitch();
    switch (input.kind) {
    case Kind::keys: return changeKeys(keyboard, values, false);
    case Kind::lostKeys: return changeKeys(keyboard, values, true);
    case Kind::plug: return plug(keyboard, values[1]);
    case Kind::unplug: return unplug(keyboard, true);
    case Kind::ungrab: return unplug(keyboard, false);
    case Kind::time: return passTime(std::chrono::microseconds(values[0] % 20'000), false);
    case Kind::lateTime: return passTime(std::chrono::microseconds(values[0] % 50'000), true);
    case Kind::switchProfile: return switchProfile(static_cast<int>(values[0] % profileCount));
    case Kind::capture: return setCapturing(true);
    case Kind::endCapture: return setCapturing(false);
    case Kind::macroKey: return pressMacroKey(keyboard);
    case Kind::gameMode:
        ++mEventCount;
        mSettings.isGameModeOn = !mSettings.isGameModeOn;
        mModel.setGameMode(mSettings.isGameModeOn);
        note(u"game mode %1"_s.arg(mSettings.isGameModeOn));
        return changeSettings(false);
    case Kind::assign:
        ++mEventCount;
        assign(static_cast<int>(values[3] / 4 % profileCount), values);
        return changeSettings(false);
    case Kind::editMacro:
        ++mEventCount;
        setMacro(static_cast<int>(values[0] % macroCount), values[1]);
        return changeSettings(false);
    }
}

/// Changes one to three keys of a keyboard in one report.
void KeyStorm::changeKeys(int keyboard, const Values &values, bool isLost)
{
    StormNode *node = mNodes[static_cast<std::size_t>(keyboard)].get();
    if (!node)
        return;
    const std::vector<StormKey> &keys = keysOf(keyboard);
    const EventFile::Keys before = node->down();
    const auto keyOfCode = [&keys](std::size_t code) {
        return *std::ranges::find(keys, quint16(code), &StormKey::code);
    };
    for (quint32 count = 0; count <= values[3] / 4 % 3; ++count) {
        const quint32 value = values[count];
        std::vector<quint16> held;
        for (const StormKey &key : keys) {
            if (node->down()[key.code])
                held.push_back(key.code);
        }
        const bool isRelease = std::ssize(held) >= mostHeldKeys || (!held.empty() && value / 8 % 2 == 0);
        const StormKey key = isRelease ? keyOfCode(oneOf(held, value / 16)) : oneOf(keys, value / 16);
        const bool isDown = !node->down()[key.code];
        node->change(key.code, key.scanCode, isDown, mNow, isLost);
        ++mEventCount;
        ++mKeysOfInput;
        note(u"%1 %2 %3 on %4"_s.arg(isLost ? u"lost:"_s : u""_s, isDown ? u"press"_s : u"release"_s)
                 .arg(key.code)
                 .arg(keyboard));
        if (isLost)
            continue;
        if (isDown)
            mModel.press(keyboard, key.code, labelOf(key.code, key.scanCode), systemKeyOf(key.code));
        else
            mModel.release(keyboard, key.code);
    }
    node->report(mNow);
    for (std::size_t code = 0; isLost && code < before.size(); ++code) {
        const auto changed = static_cast<quint16>(code);
        if (!before[code] && node->down()[code])
            mModel.press(keyboard, changed, labelOf(changed), systemKeyOf(changed));
        else if (before[code] && !node->down()[code])
            mModel.release(keyboard, changed);
    }
}

void KeyStorm::plug(int keyboard, quint32 keys)
{
    std::unique_ptr<StormNode> &node = mNodes[static_cast<std::size_t>(keyboard)];
    if (node)
        return;
    ++mEventCount;
    node = std::make_unique<StormNode>();
    const std::vector<StormKey> &all = keysOf(keyboard);
    for (quint32 count = 0; count < keys % 4 / 2 * 2; ++count)
        node->change(oneOf(all, keys >> (4 * count + 4)).code, 0, true, mNow);
    note(u"plug %1 with %2"_s.arg(keyboard).arg(StormComputer::namesOf(node->down())));
    mModel.plug(keyboard);
    for (std::size_t code = 0; code < node->down().size(); ++code) {
        const auto held = static_cast<quint16>(code);
        if (node->down()[code])
            mModel.press(keyboard, held, labelOf(held), systemKeyOf(held));
    }
    node->setTime(mNow);
    mChannel.addNode(node->open(), keyboard, keyboard != 2, 0ms);
    mOldNodes.clear(); // the channel has closed them
    while (!node->isGrabbed())
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
}

void KeyStorm::unplug(int keyboard, bool isGone)
{
    std::unique_ptr<StormNode> &node = mNodes[static_cast<std::size_t>(keyboard)];
    if (!node)
        return;
    ++mEventCount;
    note((isGone ? u"unplug %1"_s : u"ungrab %1"_s).arg(keyboard));
    mModel.unplug(keyboard);
    if (isGone)
        node->unplug();
    else
        mChannel.removeNode(keyboard);
}

/// The key is the keyboard's own: the computer does not see it.
void KeyStorm::pressMacroKey(int keyboard)
{
    StormNode *node = mNodes[static_cast<std::size_t>(keyboard)].get();
    if (!node)
        return;
    ++mEventCount;
    note(u"Macro key"_s);
    node->change(KEY_MACRO_RECORD_START, 0, true, mNow);
    node->change(KEY_MACRO_RECORD_START, 0, false, mNow);
    node->report(mNow);
    mModel.pressMacroKey();
}

void KeyStorm::passTime(KeyModel::Time span, bool isLate)
{
    ++mEventCount;
    const KeyModel::Time end = mNow + span;
    note(u"%1 %2 us"_s.arg(isLate ? u"stall"_s : u"wait"_s).arg(span.count()));
    if (isLate)
        mNow = end;
    while (mWakeTime && *mWakeTime <= end) {
        mNow = std::max(mNow, *mWakeTime);
        mWakeTime.reset();
        mPath.wake();
        mComputer.read(); // a long time would fill the socket
    }
    mNow = end;
    mModel.passTime(mNow, isLate);
}

void KeyStorm::assign(int profile, const Values &values)
{
    const Key key = oneOf(assignableKeys(), values[0]);
    QRandomGenerator random(values[1]);
    const KeyModel::Assignment assignment = randomAssignment(random);
    const QVariantMap entry = entryOf(assignment, values[2] % 2 == 0);
    QVariantMap &record = mProfiles[static_cast<std::size_t>(profile)];
    QVariantMap keys = record.value(u"Keys"_s).toMap();
    keys.insert(QString::number(key), entry);
    record.insert(u"Keys"_s, keys);
    mSettings.profiles[static_cast<std::size_t>(profile)] =
        std::make_shared<const ProfileKeys>(ProfileKeys{.source = keys, .map = KeyMap(record)});
    mModel.assign(profile, key, assignment);
    note(u"profile %1 key %2: command %3, %4, %5"_s.arg(profile)
             .arg(key)
             .arg(entry.value(u"command"_s).toInt())
             .arg(entry.value(u"param1"_s).toString())
             .arg(entry.value(u"param2"_s).toInt()));
}

void KeyStorm::setMacro(int number, quint32 seed)
{
    QRandomGenerator random(seed);
    const KeyModel::Macro macro = randomMacro(random);
    mMacros[number] = recordOf(macro, number);
    mSettings.macros = playableMacros(mMacros, mSettings.macros);
    mModel.setMacro(number, macro);
    QString line = u"macro %1:"_s.arg(number);
    for (const KeyModel::MacroEvent &event : macro)
        line +=
            u" %1 ms %2 %3,"_s.arg(event.pause.count()).arg(codeOf(event.key)).arg(event.isDown ? u"down"_s : u"up"_s);
    note(line);
}

void KeyStorm::switchProfile(int number)
{
    ++mEventCount;
    note(u"profile %1"_s.arg(number));
    const bool isOther = mSettings.activeProfile != number;
    mSettings.activeProfile = number;
    changeSettings(isOther);
    if (mSwitches.empty()) // otherwise the switch by a key is the later one
        mModel.switchProfile(number);
}

void KeyStorm::changeSettings(bool isOtherProfile)
{
    mPath.change(std::make_shared<KeyPath::Change>(
        KeyPath::Change{.settings = mSettings, .lastSwitch = mLastSwitch, .isOtherProfile = isOtherProfile}));
}

/// The main thread receives a key's switch of the profile, stores it and answers.
void KeyStorm::answerSwitch()
{
    const auto [index, number] = mSwitches.front();
    mSwitches.erase(mSwitches.begin());
    mLastSwitch = number;
    const bool isOther = mSettings.hasProfile(index) && index != mSettings.activeProfile;
    if (isOther)
        mSettings.activeProfile = index;
    changeSettings(isOther);
    if (mSwitches.empty())
        mModel.switchProfile(mSettings.activeProfile);
    note(u"answer %1: profile %2"_s.arg(number).arg(mSettings.activeProfile));
}

void KeyStorm::setCapturing(bool isCapturing)
{
    ++mEventCount;
    if (!isCapturing && !mIsCapturing)
        return;
    note(u"capture %1"_s.arg(isCapturing));
    mIsCapturing = isCapturing;
    mModel.setCapturing(isCapturing);
    mPath.listen({.isCapturing = isCapturing,
                  .isReporting = isCapturing,
                  .macroKey = isCapturing ? KeyPath::MacroKeyEffect::none : KeyPath::MacroKeyEffect::startsRecording,
                  .lastMacroKey = mPath.lastMacroKey()});
}

/// Lets the daemon read all reports.
void KeyStorm::settle()
{
    const auto isUnread = [](const std::unique_ptr<StormNode> &node) {
        return node && node->isGrabbed() && node->isUnread();
    };
    while (std::ranges::any_of(mNodes, isUnread))
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
    forgetLostNodes();
}

/// Keyboards that were removed, or released by the release chord.
void KeyStorm::forgetLostNodes()
{
    bool hasLost = false;
    for (std::unique_ptr<StormNode> &node : mNodes) {
        if (!node || node->isGrabbed())
            continue;
        mOldNodes.push_back(std::move(node));
        hasLost = true;
    }
    const bool isAttached = std::ranges::any_of(mNodes, [](const auto &node) { return node != nullptr; });
    if (hasLost && !isAttached && !mIsCapturing)
        mPath.listen({.lastMacroKey = mPath.lastMacroKey()}); // ends a macro on the fly
}

QString KeyStorm::difference() const
{
    StormComputer::Codes expected;
    for (const Key key : mModel.down())
        expected.set(codeOf(key));
    if (!mComputer.wrongEvent().isEmpty())
        return mComputer.wrongEvent();
    if (mComputer.down() != expected)
        return u"down: %1; must be down: %2; before: %3"_s.arg(StormComputer::namesOf(mComputer.down()),
                                                               StormComputer::namesOf(expected),
                                                               StormComputer::namesOf(mComputer.before()));
    if (mModel.isPlaying() != mWakeTime.has_value())
        return mWakeTime ? u"a macro still plays"_s : u"a macro has ended too early"_s;
    for (int keyboard = 0; keyboard < keyboardCount; ++keyboard) {
        if (mModel.isPlugged(keyboard) != (mNodes[static_cast<std::size_t>(keyboard)] != nullptr))
            return u"keyboard %1 is in use, or not, against the model"_s.arg(keyboard);
    }
    return {};
}

QString KeyStorm::end(quint32 way)
{
    mComputer.beginInput();
    if (way % 4 == 0) {
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard) {
            StormNode *node = mNodes[static_cast<std::size_t>(keyboard)].get();
            for (std::size_t code = 0; node && code < node->down().size(); ++code) {
                if (!node->down()[code])
                    continue;
                node->change(static_cast<quint16>(code), 0, false, mNow);
                node->report(mNow);
                mModel.release(keyboard, static_cast<int>(code));
            }
        }
        settle();
        while (!mSwitches.empty())
            answerSwitch();
        passTime(2s, false);                                        // longer than ten rounds of the longest macro
        switchProfile((mModel.activeProfile() + 1) % profileCount); // stops macros that play until pressed again
    } else if (way % 4 == 1) {
        plug(0, 0);
        settle();
        for (const quint16 code : {KEY_BACKSPACE, KEY_ESC, KEY_ENTER}) {
            if (StormNode *node = mNodes[0].get(); node && !node->down()[code]) {
                node->change(code, 0x70000U | static_cast<quint32>(labelOf(code)), true, mNow);
                node->report(mNow);
            }
            mModel.press(0, code, labelOf(code), systemKeyOf(code));
            settle();
        }
    } else if (way % 4 == 2) {
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard)
            unplug(keyboard, way % 8 == 2);
    } else {
        note(u"the daemon ends"_s);
        mPath.stop();
        mChannel.removeAllNodes();
        for (int keyboard = 0; keyboard < keyboardCount; ++keyboard)
            mModel.unplug(keyboard);
    }
    settle();
    mComputer.read();
    if (!mModel.down().empty())
        return u"the model holds keys at the end"_s;
    return difference();
}

void KeyStorm::note(const QString &line)
{
    if (mIsLogging)
        mLog += line;
}
