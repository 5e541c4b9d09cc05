// SPDX-License-Identifier: MIT
#include "daemon/requesthandler.h"

#include "base/daemonprotocol.h"
#include "base/qlcoreutility.h"
#include "daemon/capture/capturecommands.h"
#include "daemon/frontapplication/profileswitch.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/requestqueue.h"
#include "daemon/settings/changeauthor.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/requestreader.h"
#include "daemon/system/daemonservices.h"
#include "daemon/system/logging.h"
#include <utility>
#include <vector>

using namespace std::chrono_literals;
using DaemonProtocol::Command;
using Kind = KeyCapture::Kind;

namespace {

/// The party at fault, for the log.
const char *faultOf(Status status)
{
    switch (status) {
    case Status::notSaved: return "file";
    case Status::deviceAbsent: return "keyboard";
    default: return "client";
    }
}

QString sourceAppOf(const QVariantMap &values, const std::optional<QString> &replyPort)
{
    if (const auto given = RequestReader::text(values, DaemonProtocol::sourceApp))
        return *given;
    return replyPort == DaemonProtocol::configuratorReplyPortName ? QString(DaemonProtocol::configuratorIdentifier)
                                                                  : replyPort.value_or(QString());
}

QString authorOf(const QVariantMap &values, const std::optional<QString> &replyPort)
{
    return authorOfSource(sourceAppOf(values, replyPort));
}

void logUnlessReplyPort(qint32 number, const QVariantMap &values)
{
    const std::optional<QString> port = RequestReader::text(values, DaemonProtocol::responsePortName);
    if (!port || port->isEmpty() || replyPortOf(values))
        return;
    if (port == DaemonProtocol::requestPortName)
        qCWarning(lcRequests, "client: request %d names the daemon's own port for its reply", number);
    else
        qCWarning(lcRequests, "client: request %d names a reply port that cannot exist", number);
}

bool isChange(const DocumentCommand *command)
{
    return command && command->use == DocumentUse::changes;
}

} // namespace

RequestHandler::RequestHandler(CurrentSettings &settings, ProfileSwitch &profiles, CaptureCommands &captures,
                               const CurrentKeyboard &keyboard, const DaemonServices &services)
    : mSettings(settings), mProfiles(profiles), mCaptures(captures), mKeyboard(keyboard), mServices(services)
{
}

void RequestHandler::handleMessage(const RequestMessage &message)
{
    if (const std::optional<Request> request = read(message))
        handle(*request);
}

bool RequestHandler::handleNext(RequestQueue &queue)
{
    if (const int count = queue.takeRefusedCount(); count > 0)
        qCWarning(lcRequests, "client: %d requests were too large or too many and were refused", count);
    if (!mOneByOne.empty()) {
        const Request request = std::move(mOneByOne.front());
        mOneByOne.pop_front();
        handle(request);
    } else if (const std::optional<RequestMessage> message = queue.take()) {
        const std::optional<Request> request = read(*message);
        const DocumentCommand *command = findDocumentCommand(message->number);
        if (request && isChange(command))
            carryOut(*request, *command, &queue);
        else if (request)
            handle(*request);
    }
    return !mOneByOne.empty() || !queue.isEmpty();
}

std::optional<RequestHandler::Request> RequestHandler::read(const RequestMessage &message)
{
    const std::optional<QVariantMap> values = QlCoreUtility::convertDataToDictionary(message.data);
    if (!values) {
        qCWarning(lcRequests, "client: request %d is not a dictionary and is dropped", message.number);
        return {};
    }
    logUnlessReplyPort(message.number, *values);
    return Request{
        .number = message.number, .values = *values, .replyPort = replyPortOf(*values), .readAt = message.readAt};
}

void RequestHandler::carryOut(const Request &request, const DocumentCommand &command, RequestQueue *queue)
{
    std::vector<Change> changes{plan(request, command)};
    const auto isShared = [](const RequestMessage &message) { return isChange(findDocumentCommand(message.number)); };
    for (const auto end = mServices.now() + sharingTime;
         queue && changes.size() < maximumSharing && mServices.now() < end;) {
        const std::optional<RequestMessage> message = queue->takeIf(isShared);
        if (!message)
            break;
        if (const std::optional<Request> another = read(*message))
            changes.push_back(plan(*another, *findDocumentCommand(another->number)));
    }
    const bool isStored = mProfiles.storePlanned();
    if (!isStored && changes.size() > 1) {
        for (Change &change : changes)
            mOneByOne.push_back(std::move(change.request));
        return;
    }
    if (!isStored)
        changes.front().outcome = {.status = Status::notSaved, .document = {}, .reply = {}, .changesDocument = false};
    for (const Change &change : changes)
        finish(change);
}

RequestHandler::Change RequestHandler::plan(const Request &request, const DocumentCommand &command)
{
    return {.request = request,
            .command = &command,
            .outcome = mProfiles.plan(command, request.values, authorOf(request.values, request.replyPort))};
}

void RequestHandler::finish(const Change &change)
{
    const QVariantMap before = mSettings.document();
    if (change.outcome.changesDocument)
        mSettings.use(change.outcome.document);
    const bool isInTime = finish(change.request, before, change.outcome, change.command->returnsDocument);
    // The client goes on to show what it has read before, which a change may have made wrong meanwhile.
    if (!isInTime && change.command->command == Command::readSettings)
        mSettings.postUpdated(DaemonProtocol::daemonProcessName);
}

void RequestHandler::handle(const Request &request)
{
    const QVariantMap &values = request.values;
    const std::optional<QString> &client = request.replyPort;
    const QVariantMap before = mSettings.document();
    if (const DocumentCommand *command = findDocumentCommand(request.number))
        return carryOut(request, *command);
    switch (static_cast<Command>(request.number)) {
    case Command::openDevice: return openDevice(request);
    case Command::queryFirmwareVersion: return postFirmwareVersion();
    case Command::startMacroRecording: return replyToCapture(request, mCaptures.startMacroRecording(values, client));
    case Command::stopMacroRecording: mCaptures.stopMacroRecording(client); break;
    case Command::saveRecordedEvents:
        finish(request, before, mCaptures.saveRecordedEvents(values, client, authorOf(values, client)),
               ReturnsDocument::never);
        return;
    case Command::startEditHid: return replyToCapture(request, mCaptures.startKeyCapture(client, Kind::editedEvent));
    case Command::startSingleKeyRecording:
        return replyToCapture(request, mCaptures.startKeyCapture(client, Kind::singleKey));
    case Command::stopSingleKeyRecording: mCaptures.stopKeyCapture(client); break;
    case Command::releaseDevice: return mCaptures.releaseDevice(); // without a reply
    default: reply(request, Status::unknownCommand); return;
    }
    reply(request, Status::ok);
}

void RequestHandler::openDevice(const Request &request)
{
    const auto factoryPath = RequestReader::text(request.values, DaemonProtocol::defaultPlistPath);
    if (factoryPath && mSettings.takeFactorySettings(*factoryPath))
        postUpdated(request, !isTooLate(request));
    reply(request, Status::ok, {{DaemonProtocol::returnStatus, mKeyboard.keyboard()->isAttached() ? 1 : 0}});
}

// Posts a notification and sends no reply: the client does not wait for one, and would take it for the answer to its
// next request.
void RequestHandler::postFirmwareVersion()
{
    const Keyboard &keyboard = *mKeyboard.keyboard();
    const bool isAttached = keyboard.isAttached();
    const Status status = isAttached ? Status::ok : Status::deviceAbsent;
    mServices.postNotification(
        DaemonProtocol::commandReplyNotification(DaemonProtocol::productId),
        {{DaemonProtocol::messageId, static_cast<int>(Command::queryFirmwareVersion)},
         {DaemonProtocol::returnStatus, static_cast<int>(status)},
         {DaemonProtocol::firmwareVersion, isAttached ? keyboard.firmwareVersion() : QString()}});
}

bool RequestHandler::finish(const Request &request, const QVariantMap &before, const CommandOutcome &outcome,
                            ReturnsDocument returnsDocument)
{
    const bool isOk = outcome.status == Status::ok;
    QVariantMap values = outcome.reply;
    if (returnsDocument == ReturnsDocument::always || (isOk && returnsDocument == ReturnsDocument::onSuccess))
        values.insert(DaemonProtocol::returnDictionary, mSettings.document());
    const bool isInTime = reply(request, outcome.status, values);
    if (outcome.changesDocument) {
        postUpdated(request, isInTime);
        mProfiles.showSwitch(before);
    }
    return isInTime;
}

void RequestHandler::replyToCapture(const Request &request, Status status)
{
    if (!reply(request, status) && status == Status::ok)
        mCaptures.endWithoutReply();
}

void RequestHandler::postUpdated(const Request &request, bool isReplyInTime)
{
    mSettings.postUpdated(isReplyInTime ? sourceAppOf(request.values, request.replyPort)
                                        : QString(DaemonProtocol::daemonProcessName));
}

// A client waits for about 6 s; one second of this is for the way there and back. Command 0 is an exception: a client
// without a reply to it ends the daemon, so even a late reply is better.
bool RequestHandler::isTooLate(const Request &request) const
{
    const bool isOpening = request.number == static_cast<qint32>(Command::openDevice);
    const std::chrono::microseconds limit = isOpening ? 6s : 5s;
    return !request.readAt || mServices.sinceBoot() - *request.readAt > limit;
}

bool RequestHandler::reply(const Request &request, Status status, QVariantMap values)
{
    // The status of command 0 says whether a keyboard was found, and therefore cannot carry an error.
    const bool isFoundFlag = request.number == static_cast<qint32>(Command::openDevice);
    if (status != Status::ok && !isFoundFlag)
        qCWarning(lcRequests, "%s: request %d of \"%s\": %s", faultOf(status), request.number,
                  qUtf8Printable(request.replyPort.value_or(QString())), statusName(status).data());
    if (!request.replyPort)
        return true;
    if (isTooLate(request)) {
        qCWarning(lcRequests, "daemon: too late for a reply to request %d of \"%s\"", request.number,
                  qUtf8Printable(*request.replyPort));
        return false;
    }
    if (!isFoundFlag)
        values.insert(DaemonProtocol::returnStatus, static_cast<int>(status));
    mServices.sendReply(*request.replyPort, request.number, values);
    return true;
}
