// SPDX-License-Identifier: MIT
#include "keys/newmacro.h"

#include "base/daemonprotocol.h"
#include "base/settingskeys.h"
#include "base/uniquename.h"
#include "keys/keysdelegate.h"
#include "keys/newmacrosheet.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "platform/distributednotificationcenter.h"

#include <algorithm>

namespace {

constexpr int newRecording = 0; // not appended

/// The identifier of the only macro with this name; invalid if there is none, or if there are several.
QVariant identityOfOnly(const QVariantList &macros, const QString &name)
{
    QVariant identity;
    for (const QVariant &each : macros) {
        if (MacroRecord::name(each.toMap()) != name)
            continue;
        if (identity.isValid())
            return {};
        identity = MacroRecord::identity(each.toMap());
    }
    return identity;
}

} // namespace

NewMacro::NewMacro(QObject *parent) : QObject(parent) {}

void NewMacro::observe(DistributedNotificationCenter &center)
{
    center.addObserver(this, DaemonProtocol::macroSequenceNotification,
                       [this](const DistributedNotification &posted) { takeEvents(posted.userInfo); });
}

void NewMacro::begin(QWidget *parent, QWidget *window, const QString &key, const QVariant &profile)
{
    if (!mDelegate || isUp())
        return;
    const QVariantMap macro = MacroFile::newRecord(mMacros);
    mDelegate->addMacroWithSettings(macro);
    mMacroId = identityOfOnly(mMacros, MacroRecord::name(macro)); // the daemon gives it in a new list
    if (!mMacroId.isValid())
        return;
    mDelegate->beginAction();
    mProfile = profile;
    if (!mSheet) {
        mSheet = new NewMacroSheet(parent);
        connect(mSheet, &NewMacroSheet::recordClicked, this, &NewMacro::recordClicked);
        connect(mSheet, &NewMacroSheet::buttonChanged, this, &NewMacro::recordButton);
        connect(mSheet, &NewMacroSheet::assignClicked, this, &NewMacro::assign);
        connect(mSheet, &NewMacroSheet::cancelClicked, this, &NewMacro::cancel);
        mSheet->showSource(mSource);
    }
    mSheet->begin(window, key, MacroRecord::name(macro));
    startRecording();
}

void NewMacro::setStep(Step step)
{
    mStep = step;
    Q_EMIT captureAreaChanged();
}

int NewMacro::row() const
{
    const auto found = std::ranges::find_if(
        mMacros, [this](const QVariant &macro) { return MacroRecord::identity(macro.toMap()) == mMacroId; });
    return found == mMacros.end() ? -1 : int(found - mMacros.begin());
}

QVariantList NewMacro::storedEvents() const
{
    return MacroRecord::events(mMacros.value(row()).toMap());
}

void NewMacro::setMacros(const QVariantList &macros)
{
    mMacros = macros;
    if (isUp() && row() < 0)
        cancel();
}

void NewMacro::keepUnless(const QVariant &profile)
{
    if (profile != mProfile)
        keep();
}

void NewMacro::setKeyboardAttached(bool isAttached)
{
    mIsAttached = isAttached;
    if (!isAttached)
        keep();
}

QWidget *NewMacro::captureArea() const
{
    return mStep == Step::recording ? mSheet->recordingArea() : nullptr;
}

void NewMacro::showCaptureSource(const CaptureSource &source)
{
    mSource = source;
    if (mSheet)
        mSheet->showSource(source);
}

void NewMacro::keyboardCameBack()
{
    if (mStep != Step::recording)
        return;
    setStep(Step::recorded);
    mSheet->showRecorded(storedEvents());
}

// Recording

void NewMacro::recordClicked()
{
    if (mStep == Step::recording)
        stopRecording();
    else
        startRecording();
}

void NewMacro::startRecording()
{
    mSheet->showRecording();
    setStep(Step::recording);
    mDelegate->startMacroRecordingMacroIndex(newRecording, row());
}

void NewMacro::takeEvents(const QVariantMap &userInfo)
{
    // The daemon reports every recording, also one that another client has started.
    if (mStep != Step::recording)
        return;
    const QVariantMap macro = mMacros.value(row()).toMap();
    if (userInfo.value(DaemonProtocol::isMacroFull).toBool())
        mDelegate->report({.event = StatusReport::Event::macroFull, .subject = MacroRecord::name(macro)});
    mSheet->addLines(userInfo.value(DaemonProtocol::messagesArray).toStringList());
}

void NewMacro::recordButton(int button, bool isDown)
{
    // Its area is hidden, and releases its buttons, when the recording has ended already.
    if (mStep == Step::recording)
        mDelegate->recordButton(button, isDown);
}

void NewMacro::stopRunningRecording()
{
    if (mStep == Step::recording)
        stopRecording();
}

void NewMacro::stopRecording()
{
    setStep(Step::recorded);
    mDelegate->stopMacroRecording();
    mDelegate->saveRecordedEventsForMacroAtIndexIsNewRecording(row(), newRecording);
    if (isUp()) // the new list may be without the macro
        mSheet->showRecorded(storedEvents());
}

// The end

void NewMacro::giveTypedName()
{
    const QString typed = mSheet->typedName();
    const QString name = MacroRecord::name(mMacros.value(row()).toMap());
    if (typed.trimmed().isEmpty() || typed == name)
        return;
    QVariantList others = mMacros;
    others.removeAt(row());
    mDelegate->renameMacroAtIndexWithNewName(row(), uniqueName(others, SettingsKeys::macroName, typed));
}

void NewMacro::assign()
{
    giveTypedName();
    if (!isUp())
        return; // the macro has gone meanwhile
    const int macroRow = row();
    close();
    Q_EMIT assigned(macroRow);
    mDelegate->endAction();
}

void NewMacro::keep()
{
    if (!isUp())
        return;
    const bool wasRecording = mStep == Step::recording;
    close(); // first: the requests redraw the tab, which calls this again
    // The removal of the keyboard has already ended the capture.
    if (wasRecording && mIsAttached)
        mDelegate->stopMacroRecording();
    if (wasRecording)
        mDelegate->saveRecordedEventsForMacroAtIndexIsNewRecording(row(), newRecording);
    const bool hasEvents = !storedEvents().isEmpty();
    if (hasEvents)
        giveTypedName();
    else if (row() >= 0 && !mSheet->hasLines()) // with lines, the daemon may still store the recording
        mDelegate->deleteMacroAtIndex(row());
    mDelegate->endAction();
    if (hasEvents)
        mDelegate->report(
            {.event = StatusReport::Event::newMacroKept, .subject = MacroRecord::name(mMacros.value(row()).toMap())});
}

void NewMacro::cancel()
{
    if (!isUp())
        return;
    const bool wasRecording = mStep == Step::recording;
    const int macroRow = row();
    const bool hasEvents = !storedEvents().isEmpty();
    close();
    // The removal of the keyboard has already ended the capture.
    if (wasRecording && mIsAttached)
        mDelegate->stopMacroRecording();
    if (macroRow < 0)
        return;
    if (hasEvents)
        mDelegate->endAction(); // an undo of the deletion brings the macro back
    mDelegate->deleteMacroAtIndex(macroRow);
    if (!hasEvents)
        mDelegate->endAction();
}

void NewMacro::close()
{
    setStep(Step::closed);
    mSheet->endSheet();
}
