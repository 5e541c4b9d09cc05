// SPDX-License-Identifier: MIT
#include "daemon/keyboards/currentkeyboard.h"

#include "base/document.h"
#include "daemon/system/handover.h"

#include <QThread>

void CurrentKeyboard::use(Keyboard &keyboard, const QVariantMap &document)
{
    if (mKeyboard) {
        stop();
        mKeyboard->keys().tap().stop();
        mKeyboard->disconnect(this);
        mKeyboard->keys().disconnect(this);
        mKeyboard->showLight({}); // off: an animated one would continue for ever
    }
    mKeyboard = &keyboard;
    connectKeyboard();
    setTapped(mIsTapped);
    mSettings = keySettingsOf(document, mSettings);
    KeySettings settings = mSettings; // and then those of the previous use
    callKeysAndWait([this, &settings](KeyPath &keys) {
        mLastSwitch = keys.start(settings);
        mLastMacroKey = keys.lastMacroKey();
    });
    mAnsweredSwitch = mLastSwitch;
    mListening = {.lastMacroKey = mLastMacroKey};
    show(document);
}

void CurrentKeyboard::connectKeyboard()
{
    connect(mKeyboard, &Keyboard::attachedChanged, this, &CurrentKeyboard::attachedChanged);
    connect(mKeyboard, &Keyboard::gameModePressed, this, &CurrentKeyboard::gameModePressed);
    connect(mKeyboard, &Keyboard::brightnessChosen, this, &CurrentKeyboard::brightnessChosen);
    // Signals that another thread had queued before the keyboard was replaced still arrive.
    const Keyboard *keyboard = mKeyboard;
    const KeyPath *keys = &mKeyboard->keys();
    connect(keys, &KeyPath::keyReported, this, [this, keyboard](HidUsage key, bool isDown, KeyPath::Time time) {
        HandOver::take();
        if (keyboard == mKeyboard)
            Q_EMIT keyReported(key, isDown, time);
    });
    connect(keys, &KeyPath::keyCaptured, this, [this, keyboard](HidUsage key, quint8 modifiers) {
        HandOver::take();
        if (keyboard == mKeyboard)
            Q_EMIT keyCaptured(key, modifiers);
    });
    connect(keys, &KeyPath::profileChosen, this, [this, keyboard](int index, KeyPath::SwitchNumber number) {
        HandOver::take();
        if (keyboard == mKeyboard)
            takeSwitch(index, number);
    });
    connect(keys, &KeyPath::macroKeyPressed, this,
            [this, keyboard](KeyPath::Time time, KeyPath::MacroKeyNumber number) {
                HandOver::take();
                if (keyboard == mKeyboard)
                    takeMacroKey(time, number);
            });
    connect(keys, &KeyPath::changeTaken, this, [this] {
        HandOver::take();
        freeTakenChanges();
    });
    connect(keys, &KeyPath::programChosen, this, [this](const QString &program) {
        HandOver::take();
        Q_EMIT programChosen(program);
    });
}

void CurrentKeyboard::takeSwitch(int index, KeyPath::SwitchNumber number)
{
    if (number <= mLastSwitch)
        return; // from an earlier use of this keyboard
    mLastSwitch = number;
    Q_EMIT profileChosen(index);
    if (mAnsweredSwitch < number)
        answer(false);
}

void CurrentKeyboard::takeMacroKey(KeyPath::Time time, KeyPath::MacroKeyNumber number)
{
    if (number <= mLastMacroKey)
        return; // from an earlier use of this keyboard
    mLastMacroKey = number;
    if (mKeyboard->isAttached())
        Q_EMIT macroKeyPressed(time);
    if (mListening.lastMacroKey < number)
        sendListening();
}

void CurrentKeyboard::apply(const QVariantMap &document, bool isOtherProfile)
{
    mSettings = keySettingsOf(document, mSettings);
    answer(isOtherProfile);
    show(document);
}

void CurrentKeyboard::answer(bool isOtherProfile)
{
    mAnsweredSwitch = mLastSwitch;
    mChanges.push_back(std::make_shared<KeyPath::Change>(
        KeyPath::Change{.settings = mSettings, .lastSwitch = mLastSwitch, .isOtherProfile = isOtherProfile}));
    callKeys([change = mChanges.back()](KeyPath &keys) mutable { keys.change(std::move(change)); });
}

/// Frees the previous settings of the keys, which would take the key thread too long.
void CurrentKeyboard::freeTakenChanges()
{
    std::erase_if(mChanges, [](const std::shared_ptr<KeyPath::Change> &change) { return change.use_count() == 1; });
}

void CurrentKeyboard::show(const QVariantMap &document)
{
    mKeyboard->showLight(Backlight::settingsOf(Document(document).activeProfile()));
    mKeyboard->showGameMode(mSettings.isGameModeOn);
}

void CurrentKeyboard::listen(const KeyPath::Listening &listening, const QString &client)
{
    mListening = listening;
    sendListening();
    mKeyboard->showCapture(client);
}

void CurrentKeyboard::sendListening()
{
    mListening.lastMacroKey = mLastMacroKey;
    callKeys([listening = mListening](KeyPath &keys) { keys.listen(listening); });
}

void CurrentKeyboard::setTapped(bool isTapped)
{
    mIsTapped = isTapped;
    if (isTapped)
        mKeyboard->keys().tap().start();
    else
        mKeyboard->keys().tap().stop();
}

void CurrentKeyboard::stop()
{
    callKeysAndWait([](KeyPath &keys) { keys.stop(); });
}

template <typename Function> void CurrentKeyboard::callKeys(Function function)
{
    KeyPath *keys = &mKeyboard->keys();
    QMetaObject::invokeMethod(keys,
                              HandOver::Call{[keys, function = std::move(function)]() mutable { function(*keys); }});
}

template <typename Function> void CurrentKeyboard::callKeysAndWait(Function function)
{
    KeyPath *keys = &mKeyboard->keys();
    const bool isHere = keys->thread() == QThread::currentThread();
    QMetaObject::invokeMethod(keys, HandOver::Call{[keys, &function] { function(*keys); }},
                              isHere ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
    HandOver::take();
}
