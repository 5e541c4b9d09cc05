// SPDX-License-Identifier: MIT
#include "daemon/devicedaemon.h"

#include "app/util/plistnumbers.h"
#include "app/util/propertylist.h"
#include "app/util/qlcoreutility.h"
#include "app/util/settingskeys.h"
#include "daemon/factorysettings.h"
#include "daemon/logging.h"
#include "daemon/requestreader.h"
#include "daemon/settingsdocument.h"
#include "macros/macrorecord.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

/// Whose fault it is, for the log.
const char *faultOf(Status status)
{
    switch (status) {
    case Status::notSaved: return "file";
    case Status::deviceAbsent: return "keyboard";
    default: return "client";
    }
}

QString sourceAppOf(const QVariantMap &values, const QString &replyPort)
{
    if (const auto given = RequestReader::text(values, DaemonProtocol::sourceApp))
        return *given;
    return replyPort == DaemonProtocol::configuratorReplyPortName ? QString(DaemonProtocol::configuratorIdentifier)
                                                                  : replyPort;
}

// 1, true and 1.0 compare equal as values but are not the same on disk.
bool isSameDocument(const QVariantMap &a, const QVariantMap &b)
{
    return a == b && PropertyList::writeBinary(a) == PropertyList::writeBinary(b);
}

} // namespace

DeviceDaemon::DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonOutlets outlets, const QVariantMap &document,
                           QObject *parent)
    : QObject(parent), mStore(store), mKeyboard(keyboard), mOutlets(std::move(outlets)), mDocument(document)
{
    connect(&mKeyboard, &Keyboard::keyChanged, this, &DeviceDaemon::keyChanged);
    connect(&mKeyboard, &Keyboard::attachedChanged, this, &DeviceDaemon::attachedChanged);
    connect(&mKeyboard, &Keyboard::gameModePressed, this, &DeviceDaemon::gameModePressed);
    connect(&mKeyboard, &Keyboard::brightnessChosen, this, &DeviceDaemon::brightnessChosen);
    connect(&mKeyboard, &Keyboard::macroKeyPressed, this, &DeviceDaemon::macroKeyPressed);
    applyDocument();
}

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

// Requests

void DeviceDaemon::handleMessage(qint32 number, const std::optional<QByteArray> &data)
{
    const std::optional<QVariantMap> values = QlCoreUtility::convertDataToDictionary(data);
    if (!values) {
        qCWarning(lcRequests, "client: request %d is not a dictionary and is dropped", number);
        return;
    }
    QString replyPort = RequestReader::text(*values, DaemonProtocol::responsePortName).value_or(QString());
    if (replyPort == DaemonProtocol::requestPortName) {
        qCWarning(lcRequests, "client: request %d names the daemon's own port for its reply", number);
        replyPort.clear();
    }
    handle({.number = number, .values = *values, .replyPort = replyPort});
}

void DeviceDaemon::handle(const Request &request)
{
    if (const DocumentCommand *command = findDocumentCommand(request.number)) {
        handleDocumentCommand(request, *command);
        return;
    }
    switch (static_cast<Command>(request.number)) {
    case Command::queryFirmwareVersion: answerFirmwareQuery(); return;
    case Command::releaseDevice:
        if (mCapture != Capture::onTheFlyKey) // which is no client's
            setCapture(Capture::none, {}, "the client releases the device");
        return;
    case Command::saveRecordedEvents: handleSaveRecordedEvents(request); return;
    default: break;
    }
    const std::optional<Answer> answer = handleDeviceCommand(request);
    reply(request, answer ? answer->status : Status::unknownCommand, answer ? answer->reply : QVariantMap());
}

void DeviceDaemon::handleDocumentCommand(const Request &request, const DocumentCommand &command)
{
    const AutomaticSwitch previous = mAutomaticSwitch;
    CommandOutcome outcome = command.apply(mDocument, request.values);
    if (outcome.changesDocument)
        outcome.document = mAutomaticSwitch.afterCommand(command.command, request.values, mDocument, outcome.document);
    // The choice of a profile that is active already, but automatically, changes only what is kept.
    if (outcome.changesDocument && mAutomaticSwitch != previous && isSameDocument(outcome.document, mDocument)
        && !store(mDocument))
        outcome.status = Status::notSaved;
    if (!finishChange(request, outcome, command.returnsDocument))
        mAutomaticSwitch = previous;
}

bool DeviceDaemon::finishChange(const Request &request, CommandOutcome outcome, ReturnsDocument returnsDocument)
{
    const QVariantMap before = mDocument;
    const bool isChanged = outcome.changesDocument && !isSameDocument(outcome.document, mDocument);
    if (isChanged && !store(outcome.document))
        outcome.status = Status::notSaved;
    const bool isOk = outcome.status == Status::ok;
    if (returnsDocument == ReturnsDocument::always || (isOk && returnsDocument == ReturnsDocument::onSuccess))
        outcome.reply.insert(DaemonProtocol::returnDictionary, mDocument);
    reply(request, outcome.status, outcome.reply);
    if (isChanged && isOk) {
        postProfileUpdated(sourceAppOf(request.values, request.replyPort));
        showProfileSwitch(before);
    }
    return isOk;
}

std::optional<DeviceDaemon::Answer> DeviceDaemon::handleDeviceCommand(const Request &request)
{
    switch (static_cast<Command>(request.number)) {
    case Command::openDevice: return openDevice(request);
    case Command::startMacroRecording: return startMacroRecording(request);
    case Command::stopMacroRecording: return stopMacroRecording();
    case Command::startEditHid: return startKeyCapture(request, Capture::editedEvent);
    case Command::startSingleKeyRecording: return startKeyCapture(request, Capture::singleKey);
    case Command::stopSingleKeyRecording: return stopKeyCapture();
    default: return {};
    }
}

void DeviceDaemon::reply(const Request &request, Status status, QVariantMap values)
{
    // The status of command 0 is a found flag, so that it cannot carry an error.
    const bool isFoundFlag = request.number == static_cast<qint32>(Command::openDevice);
    if (status != Status::ok && !isFoundFlag)
        qCWarning(lcRequests, "%s: request %d of \"%s\": %s", faultOf(status), request.number,
                  qUtf8Printable(request.replyPort), statusName(status).data());
    if (request.replyPort.isEmpty())
        return;
    if (!isFoundFlag)
        values.insert(DaemonProtocol::returnStatus, static_cast<int>(status));
    mOutlets.sendReply(request.replyPort, request.number, values);
}

DeviceDaemon::Answer DeviceDaemon::openDevice(const Request &request)
{
    const auto factoryPath = RequestReader::text(request.values, DaemonProtocol::defaultPlistPath);
    if (mAwaitsFactorySettings && factoryPath) {
        if (const std::optional<QVariantMap> factory = readFactorySettings(*factoryPath)) {
            qCInfo(lcSettings, "file: factory settings of the client are used: %s", qUtf8Printable(*factoryPath));
            if (store(*factory)) {
                mAwaitsFactorySettings = false;
                postProfileUpdated(sourceAppOf(request.values, request.replyPort));
            }
        }
    }
    return {.status = Status::ok, .reply = {{DaemonProtocol::returnStatus, mKeyboard.isAttached() ? 1 : 0}}};
}

// Answered by a notification alone: a reply nobody waits for would be taken for the answer to the next request.
void DeviceDaemon::answerFirmwareQuery()
{
    const bool isAttached = mKeyboard.isAttached();
    const Status status = isAttached ? Status::ok : Status::deviceAbsent;
    mOutlets.postNotification(
        DaemonProtocol::commandReplyNotification(DaemonProtocol::productId),
        {{DaemonProtocol::messageId, static_cast<int>(Command::queryFirmwareVersion)},
         {DaemonProtocol::returnStatus, static_cast<int>(status)},
         {DaemonProtocol::firmwareVersion, isAttached ? mKeyboard.firmwareVersion() : QString()}});
}

// Captures

void DeviceDaemon::setCapture(Capture capture, const QString &client, const char *cause)
{
    if (mCapture == Capture::macroRecording && capture != Capture::macroRecording)
        mRecorder.stop(recordingTime());
    if (!client.isEmpty())
        endOnTheFly(); // the client has the keys now
    if (capture != mCapture)
        qCInfo(lcKeyboard, "%s, %s: %s", captureName(mCapture), cause, captureName(capture));
    mCapture = capture;
    perform(mEngine.setCapturing(capture != Capture::none));
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
    if (!mKeyboard.isAttached())
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
    // What could not be saved stays recorded, so that it can be saved when there is room again.
    if (finishChange(request, saveEvents(mDocument, *row, *events, *isAppended), ReturnsDocument::never))
        mRecorder.discard();
}

DeviceDaemon::Answer DeviceDaemon::startKeyCapture(const Request &request, Capture capture)
{
    if (request.replyPort.isEmpty())
        return {.status = Status::malformedRequest, .reply = {}};
    if (!mKeyboard.isAttached())
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

void DeviceDaemon::shutDown()
{
    endOnTheFly();
    setCapture(Capture::none, {}, "the daemon ends");
    perform(mEngine.releaseAll());
}

// The document

bool DeviceDaemon::store(const QVariantMap &document)
{
    if (!mStore.save(mAutomaticSwitch.documentToKeep(document)))
        return false;
    mAwaitsFactorySettings = false;
    useDocument(document);
    return true;
}

void DeviceDaemon::useDocument(const QVariantMap &document)
{
    if (SettingsDocument::hasOtherProfileActive(mDocument, document))
        perform(mEngine.stopMacros());
    mDocument = document;
    applyDocument();
}

void DeviceDaemon::chooseProfile(int index)
{
    const QVariantMap before = mDocument;
    const AutomaticSwitch previous = mAutomaticSwitch;
    mAutomaticSwitch.profileChosen();
    const QVariantMap whole = SettingsDocument::completed(SettingsDocument::withActiveProfile(mDocument, index));
    const bool isSwitch = whole != mDocument;
    if (!isSwitch && mAutomaticSwitch == previous)
        return;
    if (!store(whole)) {
        mAutomaticSwitch = previous;
        return;
    }
    if (isSwitch) {
        postProfileUpdated(DaemonProtocol::daemonProcessName);
        showProfileSwitch(before);
    }
}

void DeviceDaemon::setFrontApplication(const FrontApplication &application)
{
    const std::optional<int> profile = mAutomaticSwitch.applicationInFront(application, mDocument);
    if (!profile)
        return;
    qCInfo(lcFront, "\"%s\" is in front: profile %d", qUtf8Printable(application.name()), *profile);
    const QVariantMap before = mDocument;
    useDocument(SettingsDocument::completed(SettingsDocument::withActiveProfile(mDocument, *profile)));
    postProfileUpdated(DaemonProtocol::daemonProcessName);
    showProfileSwitch(before);
}

void DeviceDaemon::showProfileSwitch(const QVariantMap &before)
{
    const QVariantMap profile = SettingsDocument::activeProfile(mDocument);
    const bool isOn = PlistNumbers::integerValue(
                          mDocument.value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::profileOsdOn))
                      != 0; // the active profile's, in a completed document
    if (isOn && SettingsDocument::hasOtherProfileActive(before, mDocument))
        mOutlets.showProfile(profile.value(SettingsKeys::profileName).toString());
}

void DeviceDaemon::postProfileUpdated(const QString &sourceApp)
{
    mOutlets.postNotification(DaemonProtocol::profileUpdated, {{DaemonProtocol::sourceApp, sourceApp}});
}

void DeviceDaemon::applyDocument()
{
    const QVariantMap profile = SettingsDocument::activeProfile(mDocument);
    mMacros = playableMacros(SettingsDocument::macros(mDocument), mMacros);
    perform(mEngine.setMacros(mMacros));
    perform(mEngine.setKeyMap(KeyMap(profile)));
    mKeyboard.showLight(Backlight::settingsOf(profile));
    const bool isGameModeOn = SettingsDocument::isGameModeOn(mDocument);
    perform(mEngine.setGameMode(isGameModeOn));
    mKeyboard.showGameMode(isGameModeOn);
}

// The keyboard

void DeviceDaemon::keyChanged(HidUsage key, bool isDown)
{
    if (mCapture == Capture::macroRecording) {
        const QStringList lines = mRecorder.record(key, isDown, recordingTime());
        if (!lines.isEmpty())
            mOutlets.postNotification(DaemonProtocol::macroSequenceNotification,
                                      {{DaemonProtocol::messagesArray, lines}});
    }
    mOnTheFly.keyChanged(key, isDown, recordingTime());
    perform(isDown ? mEngine.keyDown(key, mOutlets.now()) : mEngine.keyUp(key, mOutlets.now()));
}

void DeviceDaemon::postCapturedKey(HidUsage key, quint8 modifiers)
{
    if (mCapture == Capture::onTheFlyKey)
        return saveOnTheFly(key);
    if (mCapture != Capture::singleKey && mCapture != Capture::editedEvent)
        return; // recorded already
    // A modifier that is pressed alone is the key itself, without a modifier: readers take a key of 0 for none.
    const auto name = mCapture == Capture::singleKey ? DaemonProtocol::singleKeyEvent : DaemonProtocol::editedEventKey;
    mOutlets.postNotification(
        name, {{DaemonProtocol::singleKey, int(key.usage)}, {DaemonProtocol::singleKeyModifier, int(modifiers)}});
}

void DeviceDaemon::announceKeyboard()
{
    if (mKeyboard.isAttached())
        postAttachment(true);
}

void DeviceDaemon::postAttachment(bool isAttached)
{
    mOutlets.postNotification(isAttached ? DaemonProtocol::deviceAttached : DaemonProtocol::deviceRemoved,
                              {{DaemonProtocol::productIdKey, DaemonProtocol::productId}});
}

void DeviceDaemon::attachedChanged(bool isAttached)
{
    qCInfo(lcKeyboard, "%s", isAttached ? "keyboard: attached" : "keyboard: removed");
    if (isAttached) {
        applyDocument();
    } else {
        endOnTheFly();
        setCapture(Capture::none, {}, "the keyboard is removed");
        perform(mEngine.releaseAll());
    }
    postAttachment(isAttached);
}

void DeviceDaemon::gameModePressed()
{
    const bool isOn = !SettingsDocument::isGameModeOn(mDocument);
    const QVariantMap changed = SettingsDocument::withDeviceSetting(mDocument, SettingsKeys::gameMode, isOn);
    if (!store(SettingsDocument::completed(changed)))
        return;
    // In this order: a client flips its flag at the first and reads the true one at the second.
    mOutlets.postNotification(DaemonProtocol::gameModePressed, {});
    postProfileUpdated(DaemonProtocol::daemonProcessName);
}

void DeviceDaemon::brightnessChosen(int level)
{
    QVariantList profiles = SettingsDocument::profiles(mDocument);
    const int active = SettingsDocument::activeProfileIndex(mDocument);
    QVariantMap profile = profiles.at(active).toMap();
    profile.insert(SettingsKeys::brightnessKbNormal, level);
    profiles[active] = profile;
    const QVariantMap changed = SettingsDocument::completed(SettingsDocument::withProfiles(mDocument, profiles));
    if (changed == mDocument || !store(changed))
        return;
    mOutlets.postNotification(DaemonProtocol::illuminationUpdated, {{SettingsKeys::brightnessKbNormal, level}});
    postProfileUpdated(DaemonProtocol::daemonProcessName);
}

MacroRecorder::Time DeviceDaemon::recordingTime() const
{
    // Each moment is rounded, not each pause, so that the rounding of a long recording does not add up.
    return std::chrono::round<MacroRecorder::Time>(mOutlets.now());
}

void DeviceDaemon::wake()
{
    mWakeTime.reset();
    perform(mEngine.advance(mOutlets.now()));
}

void DeviceDaemon::perform(const EngineOutputs &outputs)
{
    for (const EngineOutput &output : outputs) {
        switch (output.kind) {
        case EngineOutput::Kind::sendDown:
        case EngineOutput::Kind::sendUp:
            mKeyboard.send(output.usage, output.kind == EngineOutput::Kind::sendDown);
            break;
        case EngineOutput::Kind::captured: postCapturedKey(output.usage, output.modifiers); break;
        case EngineOutput::Kind::switchProfile:
            if (output.profileIndex >= 0 && output.profileIndex < SettingsDocument::profiles(mDocument).size())
                chooseProfile(output.profileIndex);
            else
                qCWarning(lcKeyboard, "file: a key is to switch to profile %d, which does not exist",
                          output.profileIndex);
            break;
        case EngineOutput::Kind::launchProgram: mOutlets.launchProgram(output.program); break;
        }
    }
    if (const auto deadline = mEngine.nextDeadline(); deadline != mWakeTime) {
        mWakeTime = deadline;
        mOutlets.wakeAt(deadline);
    }
}
