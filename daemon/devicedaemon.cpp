// SPDX-License-Identifier: MIT
#include "daemon/devicedaemon.h"

#include "base/plistnumbers.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "daemon/settings/factorysettings.h"
#include "daemon/settings/requestreader.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/system/logging.h"
#include "macros/macrorecord.h"
#include "platform/messageport.h"

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

/// Where the reply to request `number` goes; empty for nowhere.
QString replyPortOf(qint32 number, const QVariantMap &values)
{
    const QString port = RequestReader::text(values, DaemonProtocol::responsePortName).value_or(QString());
    if (port == DaemonProtocol::requestPortName)
        qCWarning(lcRequests, "client: request %d names the daemon's own port for its reply", number);
    else if (!port.isEmpty() && !isMessagePortName(port))
        qCWarning(lcRequests, "client: request %d names for its reply what can be no port", number);
    else
        return port;
    return {};
}

// 1, true and 1.0 compare equal as values but are not the same on disk.
bool isSameDocument(const QVariantMap &a, const QVariantMap &b)
{
    return a == b && PropertyList::writeBinary(a) == PropertyList::writeBinary(b);
}

} // namespace

DeviceDaemon::DeviceDaemon(SettingsStore &store, Keyboard &keyboard, DaemonOutlets outlets, const QVariantMap &document,
                           QObject *parent)
    : QObject(parent), mStore(store), mOutlets(std::move(outlets)), mDocument(document)
{
    connect(&mKeyboard, &CurrentKeyboard::attachedChanged, this, &DeviceDaemon::attachedChanged);
    connect(&mKeyboard, &CurrentKeyboard::gameModePressed, this, &DeviceDaemon::gameModePressed);
    connect(&mKeyboard, &CurrentKeyboard::brightnessChosen, this, &DeviceDaemon::brightnessChosen);
    connect(&mKeyboard, &CurrentKeyboard::macroKeyPressed, this, &DeviceDaemon::macroKeyPressed);
    connect(&mKeyboard, &CurrentKeyboard::keyChanged, this, &DeviceDaemon::keyChanged);
    connect(&mKeyboard, &CurrentKeyboard::keyCaptured, this, &DeviceDaemon::takeCapturedKey);
    connect(&mKeyboard, &CurrentKeyboard::profileChosen, this, &DeviceDaemon::chooseProfile);
    connect(&mKeyboard, &CurrentKeyboard::programChosen, this,
            [this](const QString &program) { mOutlets.launchProgram(program); });
    mKeyboard.use(keyboard, mDocument);
}

// Requests

void DeviceDaemon::handleMessage(qint32 number, const std::optional<QByteArray> &data)
{
    const std::optional<QVariantMap> values = QlCoreUtility::convertDataToDictionary(data);
    if (!values) {
        qCWarning(lcRequests, "client: request %d is not a dictionary and is dropped", number);
        return;
    }
    handle({.number = number, .values = *values, .replyPort = replyPortOf(number, *values)});
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
    return {.status = Status::ok,
            .reply = {{DaemonProtocol::returnStatus, mKeyboard.keyboard()->isAttached() ? 1 : 0}}};
}

// Answered by a notification alone: a reply nobody waits for would be taken for the answer to the next request.
void DeviceDaemon::answerFirmwareQuery()
{
    const bool isAttached = mKeyboard.keyboard()->isAttached();
    const Status status = isAttached ? Status::ok : Status::deviceAbsent;
    mOutlets.postNotification(
        DaemonProtocol::commandReplyNotification(DaemonProtocol::productId),
        {{DaemonProtocol::messageId, static_cast<int>(Command::queryFirmwareVersion)},
         {DaemonProtocol::returnStatus, static_cast<int>(status)},
         {DaemonProtocol::firmwareVersion, isAttached ? mKeyboard.keyboard()->firmwareVersion() : QString()}});
}

void DeviceDaemon::shutDown()
{
    endOnTheFly();
    setCapture(Capture::none, {}, "the daemon ends");
    mKeyboard.stop();
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
    const bool isOtherProfile = SettingsDocument::hasOtherProfileActive(mDocument, document);
    mDocument = document;
    mKeyboard.apply(mDocument, isOtherProfile);
}

void DeviceDaemon::chooseProfile(int index)
{
    if (index < 0 || index >= SettingsDocument::profiles(mDocument).size()) {
        qCWarning(lcKeyboard, "file: a key is to switch to profile %d, which does not exist", index);
        return;
    }
    const QVariantMap before = mDocument;
    const AutomaticSwitch previous = mAutomaticSwitch;
    mAutomaticSwitch.profileChosen();
    const QVariantMap whole = SettingsDocument::completed(SettingsDocument::withActiveProfile(mDocument, index));
    const bool isSwitch = whole != mDocument;
    if (!isSwitch && mAutomaticSwitch == previous)
        return;
    if (!store(whole)) {
        mAutomaticSwitch = previous; // the keys go back to the profile before, too
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

// The keyboard

void DeviceDaemon::useKeyboard(Keyboard &keyboard)
{
    if (&keyboard == mKeyboard.keyboard())
        return;
    const bool wasAttached = mKeyboard.keyboard()->isAttached();
    endOnTheFly();
    setCapture(Capture::none, {}, "another keyboard is used");
    mKeyboard.use(keyboard, mDocument);
    if (keyboard.isAttached() != wasAttached)
        postAttachment(!wasAttached);
}

void DeviceDaemon::announceKeyboard()
{
    if (mKeyboard.keyboard()->isAttached())
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
        mKeyboard.apply(mDocument, false);
    } else {
        endOnTheFly();
        setCapture(Capture::none, {}, "the keyboard is removed");
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
