// SPDX-License-Identifier: MIT
#include "app/fileopener.h"

#include "app/fileopenersheet.h"
#include "app/keyboardmaincontroller.h"
#include "base/profilerecord.h"
#include "base/status.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"
#include "profiles/profilefile.h"

#include <QApplication>
#include <QFileInfo>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using Event = StatusReport::Event;

namespace {

constexpr std::chrono::milliseconds retryInterval{200};

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

} // namespace

FileOpener::FileOpener(KeyboardMainController &hub, QWidget &window) : mHub(hub), mWindow(window)
{
    mRetry.setInterval(retryInterval);
    connect(&mRetry, &QTimer::timeout, this, &FileOpener::askNext);
    connect(&mHub, &KeyboardMainController::deviceInitialized, this, &FileOpener::askNext);
    connect(&mHub, &KeyboardMainController::controlsStateChanged, this, &FileOpener::controlsStateChanged);
}

void FileOpener::open(const QStringList &arguments)
{
    int notTaken = 0;
    for (const QString &argument : arguments) {
        const QString path = pathOfArgument(argument);
        if (path.isEmpty())
            mHub.report({.event = Event::notALocalFile, .subject = argument});
        else if (mWaiting.size() < maximumWaiting)
            mWaiting += path;
        else
            ++notTaken;
    }
    askNext();
    if (notTaken > 0) // last: a later report would hide it
        mHub.report({.event = Event::filesNotOpened, .number = notTaken});
}

void FileOpener::askNext()
{
    mRetry.stop();
    // The hub calls back when it has been opened, and the question when it has been answered.
    if (mWaiting.isEmpty() || mSheet || !mHub.isOpened())
        return;
    if (!mHub.areControlsOn())
        return reportWait(Event::fileWaitsForKeyboard); // the hub calls back when it can be used
    if (isWindowFree()) {
        mReportedWait = {};
        return consider(mWaiting.takeFirst());
    }
    reportWait(Event::fileWaits);
    mRetry.start();
}

void FileOpener::reportWait(Event event)
{
    const std::pair wait(mWaiting.first(), event);
    if (std::exchange(mReportedWait, wait) != wait)
        mHub.report({.event = event, .subject = fileName(wait.first)});
}

bool FileOpener::isWindowFree() const
{
    const QList<Sheet *> sheets = mWindow.findChildren<Sheet *>();
    const QList<TableView *> tables = mWindow.findChildren<TableView *>();
    const auto isEdited = [](const TableView *table) { return table->editedRow() >= 0; };
    // The question would take the focus, which ends a change of a pause.
    const QList<MacroTimelineView *> timelines = mWindow.findChildren<MacroTimelineView *>();
    return !QApplication::activeModalWidget() && !QApplication::activePopupWidget()
           && QGuiApplication::mouseButtons() == Qt::NoButton && std::ranges::none_of(sheets, &Sheet::isUp)
           && std::ranges::none_of(tables, isEdited)
           && std::ranges::none_of(timelines, &MacroTimelineView::isChangingPause)
           && !mHub.macrosController()->captureArea();
}

void FileOpener::consider(const QString &path)
{
    const auto file = OpenedFile::read(path);
    if (!file) {
        const bool isUnreadable = file.error().cause == PropertyList::ReadError::Cause::unreadable;
        mHub.report({.event = isUnreadable ? Event::importFailed : Event::notAddable,
                     .subject = fileName(path),
                     .reason = file.error().message});
        return askNext();
    }
    if (!isRoomFor(*file)) {
        mHub.report({.event = Event::fileRefused, .subject = fileName(path), .number = int(Status::limitReached)});
        return askNext();
    }
    ask(*file);
}

bool FileOpener::isRoomFor(const OpenedFile &file) const
{
    if (file.kind == OpenedFile::Kind::profile)
        return mHub.profilesArray().size() < ProfileCommands::maximumProfileCount;
    const QVariantList macros = mHub.macrosArray();
    return macros.size() < MacroRecord::maximumMacros
           && MacroRecord::events(file.record).size() <= MacroRecord::capacity(macros, macros.size());
}

void FileOpener::ask(const OpenedFile &file)
{
    mAsked = file;
    const bool isProfile = file.kind == OpenedFile::Kind::profile;
    const QString name = isProfile ? ProfileRecord::name(ProfileFile::importedRecord(file.record, mHub.profilesArray()))
                                   : MacroRecord::name(MacroFile::importedRecord(file.record, mHub.macrosArray()));
    mSheet = makeFileQuestion(file, name, &mWindow);
    mSheet->beginSheet(&mWindow, [this](int returnCode) { end(returnCode); });
    mWindow.window()->activateWindow();
}

void FileOpener::end(int returnCode)
{
    mSheet->deleteLater();
    mSheet.clear();
    if (returnCode == alertFirstButtonReturn)
        add(mAsked);
    askNext();
}

void FileOpener::add(const OpenedFile &file)
{
    const bool isProfile = file.kind == OpenedFile::Kind::profile;
    // The lists may have changed since the question: the name is made unique now.
    const QVariantMap record = isProfile ? ProfileFile::importedRecord(file.record, mHub.profilesArray())
                                         : MacroFile::importedRecord(file.record, mHub.macrosArray());
    const auto count = [this, isProfile] { return (isProfile ? mHub.profilesArray() : mHub.macrosArray()).size(); };
    const qsizetype before = count();
    if (isProfile)
        mHub.addInactiveProfile(record);
    else
        mHub.addMacroWithSettings(record);
    if (count() > before) // otherwise the hub has reported the refusal
        mHub.report({.event = Event::fileAdded, .subject = fileName(file.path)});
}

void FileOpener::controlsStateChanged()
{
    // The hub is still showing the keyboard that has come.
    if (mHub.areControlsOn()) {
        QMetaObject::invokeMethod(this, &FileOpener::askNext, Qt::QueuedConnection);
    } else if (mSheet) { // without a keyboard, the answer would have no effect
        mWaiting.prepend(mAsked.path);
        mSheet->endSheet(alertSecondButtonReturn);
    }
}
