// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/frontapplicationadaptor.h"

#include "base/frontapplicationkeys.h"
#include "daemon/frontapplication/processexecutable.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

FrontApplicationObject::FrontApplicationObject(FrontApplicationWatch &watch, GnomeShell &shell,
                                               const ProfileSwitch &profiles, QObject *parent)
    : QObject(parent)
{
    new FrontApplicationAdaptor(watch, shell, profiles, this);
}

bool FrontApplicationObject::registerOn(QDBusConnection connection)
{
    return connection.registerObject(FrontApplicationKeys::objectPath, this, QDBusConnection::ExportAdaptors);
}

FrontApplicationAdaptor::FrontApplicationAdaptor(FrontApplicationWatch &watch, GnomeShell &shell,
                                                 const ProfileSwitch &profiles, FrontApplicationObject *object)
    : QDBusAbstractAdaptor(object), mWatch(watch), mShell(shell), mProfiles(profiles), mObject(object)
{
    connect(&profiles, &ProfileSwitch::applicationChanged, this, &FrontApplicationAdaptor::ProfileApplicationChanged);
    connect(&watch, &FrontApplicationWatch::sourceFound, this, &FrontApplicationAdaptor::checkShellExtension);
    connect(&watch, &FrontApplicationWatch::sourceMissing, this, &FrontApplicationAdaptor::checkShellExtension);
    connect(&shell, &GnomeShell::changed, this, &FrontApplicationAdaptor::checkShellExtension);
}

void FrontApplicationAdaptor::checkShellExtension()
{
    const bool needsIt = mShell.isRunning() && !mWatch.seesAllWindows();
    if (needsIt != std::exchange(mNeedsShellExtension, needsIt))
        Q_EMIT NeedsShellExtensionChanged(needsIt);
}

void FrontApplicationAdaptor::report(const FrontApplication &application)
{
    if (!mWatch.reportBy(mObject->message().service(), application))
        mObject->sendErrorReply(QDBusError::AccessDenied, u"GNOME Shell alone reports the application in front here"_s);
}

void FrontApplicationAdaptor::TellWindow(const QString &windowClass, const QString &desktopEntry,
                                         const QString &processId)
{
    report({.windowClass = windowClass,
            .desktopEntry = desktopEntry,
            .executable = processExecutable(processId.toUInt())});
}

void FrontApplicationAdaptor::EndReports()
{
    mShell.clientEnded(mObject->message().service());
}
