// SPDX-License-Identifier: MIT
#include "daemon/capture/macrosadaptor.h"

#include "base/macroskeys.h"
#include "daemon/capture/capturecommands.h"

#include <QDBusMessage>
#include <QDBusMetaType>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

MacrosKeys::Key errorOf(MacroReplacement::Refusal refusal)
{
    switch (refusal) {
    case MacroReplacement::Refusal::gone: return MacrosKeys::goneError;
    case MacroReplacement::Refusal::busy: return MacrosKeys::busyError;
    case MacroReplacement::Refusal::changed: return MacrosKeys::changedError;
    case MacroReplacement::Refusal::invalid: return MacrosKeys::invalidError;
    case MacroReplacement::Refusal::notSaved: return MacrosKeys::notSavedError;
    }
    return MacrosKeys::invalidError;
}

/// A number that no macro has and no repeat mode is, for one that is too large.
constexpr int noNumber = -1;

int numberOf(uint value)
{
    return value <= uint(std::numeric_limits<int>::max()) ? static_cast<int>(value) : noNumber;
}

QLatin1StringView reasonOf(MacroTries::End end)
{
    switch (end) {
    case MacroTries::End::finished: return MacrosKeys::tryFinished;
    case MacroTries::End::stopped: return MacrosKeys::tryStopped;
    case MacroTries::End::changed: return MacrosKeys::tryChanged;
    case MacroTries::End::limit: break;
    }
    return MacrosKeys::tryAtLimit;
}

} // namespace

MacrosObject::MacrosObject(MacroReplacement &replacement, MacroTries &tries, CaptureCommands &captures, QObject *parent)
    : QObject(parent)
{
    qDBusRegisterMetaType<QList<int>>();
    qDBusRegisterMetaType<QList<uint>>();
    qDBusRegisterMetaType<QList<qlonglong>>();
    qDBusRegisterMetaType<QList<bool>>();
    new MacrosAdaptor(replacement, tries, captures, this);
}

bool MacrosObject::registerOn(QDBusConnection connection)
{
    findChild<MacrosAdaptor *>()->setConnection(connection);
    return connection.registerObject(MacrosKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

MacrosAdaptor::MacrosAdaptor(MacroReplacement &replacement, MacroTries &tries, CaptureCommands &captures,
                             MacrosObject *object)
    : QDBusAbstractAdaptor(object), mReplacement(replacement), mTries(tries), mCaptures(captures), mObject(object)
{
    connect(&mTries, &MacroTries::played, this, &MacrosAdaptor::sendPlayed);
    connect(&mTries, &MacroTries::ended, this, &MacrosAdaptor::sendEnded);
}

void MacrosAdaptor::Replace(uint macroID, const QString &digest, const QByteArray &events, const QString &sourceApp)
{
    const auto replaced = mReplacement.replace(macroID, digest, events, sourceApp);
    if (!replaced)
        mObject->sendErrorReply(errorOf(replaced.error().refusal), replaced.error().message);
}

uint MacrosAdaptor::Try(uint macroID, uint repeat)
{
    using Refusal = MacroTries::Refusal;
    const Result<quint32, Refusal> started =
        mTries.start(mObject->message().service(), numberOf(macroID), numberOf(repeat));
    if (started)
        return *started;
    switch (started.error()) {
    case Refusal::gone: mObject->sendErrorReply(MacrosKeys::goneError, u"there is no such macro"_s); break;
    case Refusal::empty: mObject->sendErrorReply(MacrosKeys::emptyError, u"the macro plays nothing"_s); break;
    case Refusal::noSuchRepeat:
        mObject->sendErrorReply(QDBusError::InvalidArgs, u"a macro plays 1 to 10 times, or as 254 or 255"_s);
        break;
    case Refusal::tooMany:
        mObject->sendErrorReply(MacrosKeys::tooManyError, u"too many programs are trying macros"_s);
        break;
    }
    return 0;
}

void MacrosAdaptor::StopTry(uint id)
{
    mTries.stop(mObject->message().service(), id);
}

void MacrosAdaptor::RecordButton(uint button, bool pressed)
{
    using Outcome = CaptureCommands::ButtonOutcome;
    switch (mCaptures.recordButton(mObject->message().service(), button, pressed)) {
    case Outcome::recorded: break;
    case Outcome::noSuchButton: mObject->sendErrorReply(QDBusError::InvalidArgs, u"the buttons are 1 to 9"_s); break;
    case Outcome::notRecording:
        mObject->sendErrorReply(MacrosKeys::notRecordingError, u"the caller is not recording a macro"_s);
        break;
    }
}

void MacrosAdaptor::sendPlayed(const QString &caller, quint32 number, const QList<TriedEvent> &events)
{
    QList<int> indexes;
    QList<qlonglong> times;
    QList<uint> usages;
    QList<bool> down;
    for (const TriedEvent &event : events) {
        indexes += event.event;
        times += event.time.count();
        usages += event.usage.extended();
        down += event.isDown;
    }
    sendTo(caller, MacrosKeys::triedSignal,
           {number, QVariant::fromValue(indexes), QVariant::fromValue(times), QVariant::fromValue(usages),
            QVariant::fromValue(down)});
}

void MacrosAdaptor::sendEnded(const QString &caller, quint32 number, MacroTries::End end)
{
    sendTo(caller, MacrosKeys::tryEndedSignal, {number, QString(reasonOf(end))});
}

void MacrosAdaptor::sendTo(const QString &caller, QLatin1StringView signal, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createTargetedSignal(caller, MacrosKeys::objectPath, MacrosKeys::interfaceName, signal);
    message.setArguments(arguments);
    mConnection.send(message);
}
