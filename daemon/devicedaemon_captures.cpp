// SPDX-License-Identifier: MIT
// What the daemon does while somebody has the keys of the keyboard: recordings and the capture of single keys.
#include "base/plistnumbers.h"
#include "base/settingskeys.h"
#include "daemon/devicedaemon.h"
#include "daemon/settings/requestreader.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/logging.h"
#include "macros/macrorecord.h"

#include <algorithm>
#include <utility>

const char *DeviceDaemon::captureName(Capture capture)
{
    switch (capture) {
    case Capture::none: return "not capturing";
    case Capture::macroRecording: return "recording a macro";
    case Capture::singleKey: return "capturing a single key";
    case Capture::editedEvent: return "capturing a key for an event";
    case Capture::onTheFlyKey: return "awaiting the key for a macro recorded on the keyboard";
    }
    return "?";
}

void DeviceDaemon::setCapture(Capture capture, const QString &client, const char *cause)
{
    if (mCapture == Capture::macroRecording && capture != Capture::macroRecording)
        mRecorder.stop(recordingTime(mOutlets.now()));
    if (!client.isEmpty())
        endOnTheFly(); // the client has the keys now
    if (capture != mCapture)
        qCInfo(lcKeyboard, "%s, %s: %s", captureName(mCapture), cause, captureName(capture));
    mCapture = capture;
    mKeyboard.listen({.isCapturing = capture != Capture::none,
                      .isReporting = !client.isEmpty() || mOnTheFly.state() == OnTheFlyState::recording});
    mCapturedKey.clear();
    mKeyBeforeCaptured.clear();
    mEscapeHold = {};
    mOutlets.wakeAt({});
    mCapturingClient = client;
    mOutlets.watchClient(client);
}

DeviceDaemon::Answer DeviceDaemon::startMacroRecording(const Request &request)
{
    const auto row = RequestReader::number(request.values, DaemonProtocol::macroId);
    const auto isAppended = RequestReader::flag(request.values, DaemonProtocol::isAppendRecording);
    if (!row || !isAppended || request.replyPort.isEmpty())
        return {.status = Status::malformedRequest, .reply = {}};
    const QVariantList macros = SettingsDocument::macros(mDocument);
    if (*row < 0 || *row >= macros.size())
        return {.status = Status::indexOutOfRange, .reply = {}};
    if (!mKeyboard.keyboard()->isAttached())
        return {.status = Status::deviceAbsent, .reply = {}};
    const QVariantMap macro = macros.at(*row).toMap();
    const int eventCount = *isAppended ? static_cast<int>(MacroRecord::events(macro).size()) : 0;
    setCapture(Capture::macroRecording, request.replyPort, "a client starts a recording");
    mRecorder.start({.macroId = PlistNumbers::integerValue(macro.value(SettingsKeys::macroId)),
                     .capacity = MacroRecord::maximumEvents - eventCount,
                     .followsEvents = eventCount > 0,
                     .firstDelayMs = std::max(0, PlistNumbers::integerValue(macro.value(SettingsKeys::delay)))});
    return {};
}

DeviceDaemon::Answer DeviceDaemon::stopMacroRecording()
{
    if (mCapture == Capture::macroRecording)
        setCapture(Capture::none, {}, "the client stops the recording");
    return {};
}

void DeviceDaemon::handleSaveRecordedEvents(const Request &request)
{
    const auto row = RequestReader::number(request.values, DaemonProtocol::macroId);
    const auto isAppended = RequestReader::flag(request.values, DaemonProtocol::isAppendRecording);
    if (!row || !isAppended)
        return reply(request, Status::malformedRequest, {});
    const QVariantList macros = SettingsDocument::macros(mDocument);
    if (*row < 0 || *row >= macros.size())
        return reply(request, Status::indexOutOfRange, {});
    (void)stopMacroRecording();
    // Compared by the macro's own number: its row may have moved since the recording began.
    const int macroId = PlistNumbers::integerValue(macros.at(*row).toMap().value(SettingsKeys::macroId));
    const std::optional<QVariantList> events = mRecorder.recorded(macroId);
    if (!events)
        return reply(request, Status::nothingRecorded, {});
    if (events->isEmpty()) { // a recording that was begun by mistake erases no macro
        mRecorder.discard();
        return reply(request, Status::ok, {});
    }
    // What could not be saved stays recorded, so that it can be saved when there is room again.
    if (finishChange(request, saveEvents(mDocument, *row, *events, *isAppended), ReturnsDocument::never))
        mRecorder.discard();
}

DeviceDaemon::Answer DeviceDaemon::startKeyCapture(const Request &request, Capture capture)
{
    if (request.replyPort.isEmpty())
        return {.status = Status::malformedRequest, .reply = {}};
    if (!mKeyboard.keyboard()->isAttached())
        return {.status = Status::deviceAbsent, .reply = {}};
    setCapture(capture, request.replyPort, "a client asks for keys");
    return {};
}

DeviceDaemon::Answer DeviceDaemon::stopKeyCapture()
{
    if (mCapture == Capture::singleKey || mCapture == Capture::editedEvent)
        setCapture(Capture::none, {}, "the client has its key");
    return {};
}

void DeviceDaemon::clientVanished(const QString &portName)
{
    if (mCapture != Capture::none && portName == mCapturingClient)
        setCapture(Capture::none, {}, "the client is gone");
}

// What the keys tell

void DeviceDaemon::keyChanged(HidUsage key, bool isDown, KeyPath::Time time)
{
    const MacroRecorder::Time moment = recordingTime(time);
    if (mCapture == Capture::macroRecording) {
        const QStringList lines = mRecorder.record(key, isDown, moment);
        if (!lines.isEmpty())
            mOutlets.postNotification(DaemonProtocol::macroSequenceNotification,
                                      {{DaemonProtocol::messagesArray, lines}});
    }
    mOnTheFly.keyChanged(key, isDown, moment);
    if (!mCapturingClient.isEmpty()) {
        mEscapeHold.keyChanged(key, isDown, time);
        mOutlets.wakeAt(mEscapeHold.end());
    }
}

void DeviceDaemon::wake()
{
    const std::optional<KeyPath::Time> end = mEscapeHold.end();
    if (!end || mOutlets.now() < *end)
        return;
    // The Escape that ends it is no part of what the client gets, unless it is all that there is: it may be the key
    // that was wanted.
    if (mCapture == Capture::macroRecording)
        mRecorder.takeBack(EscapeHold::escape);
    else if (!mKeyBeforeCaptured.isEmpty())
        postCapturedKey(mKeyBeforeCaptured);
    setCapture(Capture::none, {}, "Escape is held");
}

void DeviceDaemon::takeCapturedKey(HidUsage key, quint8 modifiers)
{
    if (mCapture == Capture::onTheFlyKey)
        return saveOnTheFly(key);
    if (mCapture != Capture::singleKey && mCapture != Capture::editedEvent)
        return; // recorded already
    // A modifier that is pressed alone is the key itself, without a modifier: readers take a key of 0 for none.
    mKeyBeforeCaptured = std::exchange(mCapturedKey, {{DaemonProtocol::singleKey, int(key.usage)},
                                                      {DaemonProtocol::singleKeyModifier, int(modifiers)}});
    postCapturedKey(mCapturedKey);
}

void DeviceDaemon::postCapturedKey(const QVariantMap &key)
{
    mOutlets.postNotification(
        mCapture == Capture::singleKey ? DaemonProtocol::singleKeyEvent : DaemonProtocol::editedEventKey, key);
}

MacroRecorder::Time DeviceDaemon::recordingTime(KeyPath::Time time)
{
    // Each moment is rounded, not each pause, so that the rounding of a long recording does not add up.
    return std::chrono::round<MacroRecorder::Time>(time);
}
