// SPDX-License-Identifier: MIT
#include "daemon/capture/capturesession.h"

#include "base/daemonprotocol.h"
#include "daemon/capture/ontheflysession.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/logging.h"

#include <optional>
#include <utility>

using Kind = KeyCapture::Kind;

CaptureSession::CaptureSession(CurrentKeyboard &keyboard, OnTheFlySession &onTheFly, const DaemonServices &services)
    : mKeyboard(keyboard), mOnTheFly(onTheFly), mServices(services)
{
}

void CaptureSession::setCapture(const KeyCapture &capture, const char *cause)
{
    const bool isForClient = capture.client().has_value();
    if (mCapture.kind() == Kind::macroRecording && capture.kind() != Kind::macroRecording)
        mRecorder.stop(MacroRecorder::rounded(mServices.now()));
    if (isForClient)
        mOnTheFly.end(); // the client captures the keys now
    if (capture.kind() != mCapture.kind())
        qCInfo(lcKeyboard, "%s, %s: %s", mCapture.name(), cause, capture.name());
    mCapture = capture;
    mKeyboard.listen({.isCapturing = capture.kind() != Kind::none,
                      .isReporting = isForClient || mOnTheFly.state() == OnTheFlyState::recording,
                      .macroKey = macroKeyEffect()},
                     capture.client().value_or(QString()));
    mCapturedKey.clear();
    mKeyBeforeCaptured.clear();
    mEscapeHold = {};
    mServices.wakeAt({});
    mServices.watchClient(capture.client().value_or(QString()));
}

KeyPath::MacroKeyEffect CaptureSession::macroKeyEffect() const
{
    using Effect = KeyPath::MacroKeyEffect;
    if (mCapture.client())
        return Effect::none;
    switch (mOnTheFly.state()) {
    case OnTheFlyState::recording: return Effect::endsRecording;
    case OnTheFlyState::awaitingKey: return Effect::discards;
    case OnTheFlyState::off: break;
    }
    return Effect::startsRecording;
}

void CaptureSession::startRecording(const QString &client, const MacroRecorder::Target &target)
{
    setCapture(KeyCapture::forClient(client, Kind::macroRecording), "a client starts a recording");
    mRecorder.start(target);
    mRecordingClient = client;
}

bool CaptureSession::isRecording(int macroId) const
{
    return mCapture.kind() == Kind::macroRecording && mRecorder.macroId() == macroId;
}

bool CaptureSession::recordButton(const QString &program, quint16 button, bool isDown)
{
    if (mCapture.kind() != Kind::macroRecording || program.isEmpty() || program != mServices.watchedProgram())
        return false;
    keyChanged({.page = HidUsage::buttonPage, .usage = button}, isDown, mServices.now());
    return true;
}

void CaptureSession::startKeyCapture(const QString &client, Kind kind)
{
    setCapture(KeyCapture::forClient(client, kind), "a client asks for keys");
}

void CaptureSession::release(const char *cause)
{
    if (mCapture.kind() != Kind::onTheFlyKey)
        setCapture(KeyCapture(), cause);
}

void CaptureSession::end(const char *cause)
{
    mOnTheFly.end();
    setCapture(KeyCapture(), cause);
}

void CaptureSession::clientVanished(const QString &portName)
{
    if (mCapture.client() == portName)
        release("the client is gone");
}

void CaptureSession::wake()
{
    const std::optional<KeyPath::Time> end = mEscapeHold.end();
    if (!end || mServices.now() < *end)
        return;
    // A recording loses the Escape that ends it, and a client that captures keys gets the key before it again. Without
    // such a key it keeps Escape, because the user may have wanted that key.
    if (mCapture.kind() == Kind::macroRecording)
        mRecorder.removePress(EscapeHold::escape);
    else if (!mKeyBeforeCaptured.isEmpty())
        postCapturedKey(mKeyBeforeCaptured);
    release("Escape is held");
}

// The keyboard's reports

void CaptureSession::keyChanged(HidUsage key, bool isDown, KeyPath::Time time)
{
    const MacroRecorder::Time moment = MacroRecorder::rounded(time);
    if (mCapture.kind() == Kind::macroRecording) {
        const bool isLeftOut = isDown && mRecorder.isFull();
        const QStringList lines = mRecorder.record(key, isDown, moment);
        QVariantMap recorded{{DaemonProtocol::messagesArray, lines}};
        if (isLeftOut)
            recorded.insert(DaemonProtocol::isMacroFull, true);
        if (isLeftOut || !lines.isEmpty())
            mServices.postNotification(DaemonProtocol::macroSequenceNotification, recorded);
    }
    mOnTheFly.keyChanged(key, isDown, moment);
    if (mCapture.client()) {
        mEscapeHold.keyChanged(key, isDown, time);
        mServices.wakeAt(mEscapeHold.end());
    }
}

void CaptureSession::keyCaptured(HidUsage key, quint8 modifiers)
{
    switch (mCapture.kind()) {
    case Kind::none:
    case Kind::macroRecording: return; // recorded already
    case Kind::onTheFlyKey: takeOnTheFlyKey(key); return;
    case Kind::singleKey:
    case Kind::editedEvent: break;
    }
    // A modifier pressed alone is the key itself, without a modifier, because readers take key 0 for no key.
    mKeyBeforeCaptured = std::exchange(mCapturedKey, {{DaemonProtocol::singleKey, int(key.usage)},
                                                      {DaemonProtocol::singleKeyModifier, int(modifiers)}});
    postCapturedKey(mCapturedKey);
}

void CaptureSession::macroKeyPressed(KeyPath::Time time)
{
    if (mCapture.client()) {
        qCInfo(lcKeyboard, "%s, the Macro key is pressed: left alone", mCapture.name());
        return;
    }
    if (!mOnTheFly.pressMacroKey(MacroRecorder::rounded(time)))
        return;
    // While the user records, the keys also reach the computer, because a game may be running. The key that will play
    // the macro does not.
    const bool isKeyAwaited = mOnTheFly.state() == OnTheFlyState::awaitingKey;
    setCapture(isKeyAwaited ? KeyCapture::forOnTheFlyKey() : KeyCapture(), "the Macro key is pressed");
    mOnTheFly.show();
}

void CaptureSession::takeOnTheFlyKey(HidUsage key)
{
    if (!OnTheFlySession::canPlayMacro(key))
        return; // the next one may
    const QVariantList events = mOnTheFly.events();
    end("the key for the macro is there");
    mOnTheFly.store(events, key);
}

void CaptureSession::postCapturedKey(const QVariantMap &key)
{
    const bool isSingleKey = mCapture.kind() == Kind::singleKey;
    mServices.postNotification(isSingleKey ? DaemonProtocol::singleKeyEvent : DaemonProtocol::editedEventKey, key);
}
