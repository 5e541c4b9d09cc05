// SPDX-License-Identifier: MIT
#include "daemon/capture/capturecommands.h"

#include "base/document.h"
#include "daemon/capture/capturesession.h"
#include "daemon/keyboards/currentkeyboard.h"
#include "daemon/settings/currentsettings.h"
#include "daemon/settings/requestreader.h"
#include "macros/macrorecord.h"

#include <algorithm>

using Kind = KeyCapture::Kind;

CaptureCommands::CaptureCommands(CaptureSession &session, CurrentSettings &settings, const CurrentKeyboard &keyboard)
    : mSession(session), mSettings(settings), mKeyboard(keyboard)
{
}

Status CaptureCommands::startMacroRecording(const QVariantMap &request, const std::optional<QString> &client)
{
    const auto index = RequestReader::number(request, DaemonProtocol::macroId);
    const auto isAppended = RequestReader::flag(request, DaemonProtocol::isAppendRecording);
    if (!index || !isAppended || !client)
        return Status::malformedRequest;
    const QVariantList macros = Document(mSettings.document()).macros();
    if (*index < 0 || *index >= macros.size())
        return Status::indexOutOfRange;
    if (!mKeyboard.keyboard()->isAttached())
        return Status::deviceAbsent;
    const QVariantMap macro = macros.at(*index).toMap();
    const int eventCount = *isAppended ? static_cast<int>(MacroRecord::events(macro).size()) : 0;
    mSession.startRecording(*client, {.macroId = MacroRecord::macroId(macro),
                                      .capacity = MacroRecord::capacity(macros, *index) - eventCount,
                                      .followsEvents = eventCount > 0,
                                      .firstDelayMs = std::max(0, MacroRecord::delayMs(macro))});
    return Status::ok;
}

void CaptureCommands::stopMacroRecording(const std::optional<QString> &client)
{
    const KeyCapture &capture = mSession.capture();
    if (capture.kind() == Kind::macroRecording && capture.client() == client)
        mSession.release("the client stops the recording");
}

CommandOutcome CaptureCommands::saveRecordedEvents(const QVariantMap &request, const std::optional<QString> &client,
                                                   const QString &author)
{
    CommandOutcome outcome = mSettings.storeOutcome(withRecordedEvents(request, client),
                                                    {.author = author, .source = ChangeSource::recording});
    if (outcome.status == Status::ok)
        mSession.recorder().discard();
    return outcome;
}

CommandOutcome CaptureCommands::withRecordedEvents(const QVariantMap &request, const std::optional<QString> &client)
{
    const auto index = RequestReader::number(request, DaemonProtocol::macroId);
    const auto isAppended = RequestReader::flag(request, DaemonProtocol::isAppendRecording);
    if (!index || !isAppended)
        return unchanged(Status::malformedRequest);
    const QVariantList macros = Document(mSettings.document()).macros();
    if (*index < 0 || *index >= macros.size())
        return unchanged(Status::indexOutOfRange);
    if (mSession.recordingClient() != client)
        return unchanged(Status::nothingRecorded);
    stopMacroRecording(client);
    // Compared by the macro's own number: its index may have changed since the recording began.
    const int macroId = MacroRecord::macroId(macros.at(*index).toMap());
    const std::optional<QVariantList> events = mSession.recorder().recorded(macroId);
    if (!events)
        return unchanged(Status::nothingRecorded);
    if (events->isEmpty())
        return unchanged(Status::ok); // a recording started by mistake must not erase a macro
    return saveEvents(mSettings.document(), *index, *events, *isAppended);
}

Status CaptureCommands::startKeyCapture(const std::optional<QString> &client, Kind kind)
{
    if (!client)
        return Status::malformedRequest;
    if (!mKeyboard.keyboard()->isAttached())
        return Status::deviceAbsent;
    mSession.startKeyCapture(*client, kind);
    return Status::ok;
}

void CaptureCommands::stopKeyCapture(const std::optional<QString> &client)
{
    const KeyCapture &capture = mSession.capture();
    const bool isOfClient = capture.kind() == Kind::singleKey || capture.kind() == Kind::editedEvent
                            || capture.kind() == Kind::macroRecording;
    if (isOfClient && capture.client() == client)
        mSession.release("the client has its key");
}

void CaptureCommands::releaseDevice()
{
    mSession.release("the client releases the device");
}

CaptureCommands::ButtonOutcome CaptureCommands::recordButton(const QString &program, uint button, bool isDown)
{
    if (button < HidUsage::firstButton || button > HidUsage::lastMacroButton)
        return ButtonOutcome::noSuchButton;
    const bool isRecorded = mSession.recordButton(program, static_cast<quint16>(button), isDown);
    return isRecorded ? ButtonOutcome::recorded : ButtonOutcome::notRecording;
}

void CaptureCommands::endWithoutReply()
{
    mSession.release("the client no longer waits");
}

CommandOutcome CaptureCommands::unchanged(Status status) const
{
    return {.status = status, .document = mSettings.document(), .reply = {}, .changesDocument = false};
}
