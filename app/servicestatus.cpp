// SPDX-License-Identifier: MIT
#include "app/servicestatus.h"

#include "app/daemonobject.h"
#include "base/daemonprotocol.h"
#include "base/frontapplicationkeys.h"
#include "base/settingsobjectkeys.h"
#include "platform/messageport.h"
#include "platform/sessionbus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject frontApplicationObject(FrontApplicationKeys::objectPath, FrontApplicationKeys::interfaceName);
constexpr DaemonObject settingsObject(SettingsObjectKeys::objectPath, SettingsObjectKeys::interfaceName);

} // namespace

void ServiceStatus::start()
{
    const QString name = messagePortBusName(DaemonProtocol::requestPortName);
    auto *watcher = new QDBusServiceWatcher(name, sharedSessionBus(), QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { setRunning(!owner.isEmpty()); });
    frontApplicationObject.connect("ProfileApplicationChanged"_L1, this, SLOT(setProfileApplication(QString)));
    frontApplicationObject.connect("NeedsShellExtensionChanged"_L1, this, SLOT(setNeedsShellExtension(bool)));
    settingsObject.connect("Changed"_L1, this, SLOT(readProblems()));

    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                           u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << name;
    auto *answer = new QDBusPendingCallWatcher(sharedSessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<bool> hasOwner = *answer;
        if (!mIsRunning && hasOwner.isValid())
            setRunning(hasOwner.value());
    });
}

void ServiceStatus::setRunning(bool isRunning)
{
    mIsRunning = isRunning;
    mProfileApplication.reset();
    mNeedsShellExtension = false;
    mProblems.clear(); // another daemon has its own
    if (isRunning)
        readAll();
    if (isRunning)
        Q_EMIT daemonHasCome();
    else
        Q_EMIT daemonHasGone();
    Q_EMIT changed();
}

void ServiceStatus::awaitAnswer()
{
    if (mAwaitsAnswer)
        return;
    mAwaitsAnswer = true;
    settingsObject.read(SettingsObjectKeys::problems, this, [this](const std::optional<QVariant> &problems) {
        mAwaitsAnswer = false;
        if (problems)
            Q_EMIT daemonAnswers();
    });
}

void ServiceStatus::readAll()
{
    frontApplicationObject.read("ProfileApplication"_L1, this, [this](const std::optional<QVariant> &application) {
        if (application)
            setProfileApplication(application->toString());
    });
    frontApplicationObject.read(FrontApplicationKeys::needsShellExtension, this,
                                [this](const std::optional<QVariant> &needsIt) {
                                    if (needsIt)
                                        setNeedsShellExtension(needsIt->toBool());
                                });
    readProblems();
}

void ServiceStatus::readProblems()
{
    settingsObject.read(SettingsObjectKeys::problems, this, [this](const std::optional<QVariant> &value) {
        const QStringList problems = value ? value->toStringList() : mProblems;
        if (problems == mProblems)
            return;
        mProblems = problems;
        if (!problems.isEmpty())
            Q_EMIT problemFound(problems.last());
    });
}

void ServiceStatus::setProfileApplication(const QString &application)
{
    if (mProfileApplication == application)
        return;
    mProfileApplication = application;
    Q_EMIT changed();
}

void ServiceStatus::setNeedsShellExtension(bool needsIt)
{
    if (mNeedsShellExtension == needsIt)
        return;
    mNeedsShellExtension = needsIt;
    Q_EMIT changed();
    if (needsIt)
        Q_EMIT shellExtensionMissing();
}
