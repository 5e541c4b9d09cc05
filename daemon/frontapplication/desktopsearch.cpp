// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/desktopsearch.h"

#include "daemon/system/usermanager.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

QStringList desktopServices()
{
    return {u"org.kde.KWin"_s, u"org.gnome.Shell"_s, UserManager::service};
}

} // namespace

DesktopSearch::DesktopSearch(FrontApplicationWatch &watch, const QDBusConnection &bus,
                             std::chrono::milliseconds firstPause, const QString &x11Folder)
    : mWatch(watch), mBus(bus), mEnvironment(bus), mFolders{x11Folder}, mFirstPause(firstPause)
{
    if (const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR"); !folder.isEmpty())
        mFolders += folder;
    mRetry.setSingleShot(true);
    mRetry.callOnTimeout(this, &DesktopSearch::search);
    connect(&mWatch, &FrontApplicationWatch::sourceMissing, this, &DesktopSearch::sourceMissing);
    connect(&mWatch, &FrontApplicationWatch::sourceFound, this, &DesktopSearch::sourceFound);
}

void DesktopSearch::start()
{
    search();
}

void DesktopSearch::signSeen()
{
    mRetriesLeft = retries;
    search();
}

void DesktopSearch::search()
{
    if (mIsReading || mWatch.isTrying())
        return; // another attempt follows
    mIsReading = true;
    mRetry.stop();
    mEnvironment.read([this] {
        mIsReading = false;
        mWatch.start();
    });
}

void DesktopSearch::sourceMissing()
{
    watchSigns();
    if (mRetriesLeft == 0)
        return;
    mRetry.start(mFirstPause * (1 << (retries - mRetriesLeft)));
    --mRetriesLeft;
}

void DesktopSearch::watchSigns()
{
    if (mFolderWatcher)
        return;
    mSockets = sockets();
    mFolderWatcher = std::make_unique<QFileSystemWatcher>();
    for (const QString &folder : std::as_const(mFolders)) {
        if (QDir(folder).exists())
            mFolderWatcher->addPath(folder);
    }
    connect(mFolderWatcher.get(), &QFileSystemWatcher::directoryChanged, this, &DesktopSearch::folderChanged);
    mServiceWatcher = std::make_unique<QDBusServiceWatcher>();
    mServiceWatcher->setConnection(mBus);
    mServiceWatcher->setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    mServiceWatcher->setWatchedServices(desktopServices());
    connect(mServiceWatcher.get(), &QDBusServiceWatcher::serviceRegistered, this, [this](const QString &service) {
        if (service == UserManager::service)
            connectToManager(true);
        signSeen();
    });
    connectToManager(true);
}

void DesktopSearch::sourceFound()
{
    mRetry.stop();
    mRetriesLeft = retries;
    if (!mFolderWatcher)
        return;
    mFolderWatcher.reset();
    mServiceWatcher.reset();
    connectToManager(false);
}

/// The manager announces its jobs only while it has subscribers.
void DesktopSearch::connectToManager(bool isConnected)
{
    // QtDBus accepts a slot only by name. The third argument is the unit: the bus passes on no other job.
    const QStringList arguments{QString(), QString(), u"graphical-session.target"_s};
    if (isConnected)
        mBus.connect(UserManager::service, UserManager::path, UserManager::interface, u"JobRemoved"_s, arguments,
                     QString(), this, SLOT(jobRemoved()));
    else
        mBus.disconnect(UserManager::service, UserManager::path, UserManager::interface, u"JobRemoved"_s, arguments,
                        QString(), this, SLOT(jobRemoved()));
    QDBusMessage message =
        QDBusMessage::createMethodCall(UserManager::service, UserManager::path, UserManager::interface,
                                       isConnected ? u"Subscribe"_s : u"Unsubscribe"_s);
    message.setAutoStartService(false);
    (void)mBus.asyncCall(message);
}

QSet<QString> DesktopSearch::sockets() const
{
    QSet<QString> found;
    for (const QString &folder : mFolders) {
        const QStringList names = QDir(folder).entryList(QDir::System | QDir::Files);
        for (const QString &name : names) {
            if (name.startsWith(u'X') || name.startsWith("wayland-"_L1))
                found += folder + u'/' + name;
        }
    }
    return found;
}

void DesktopSearch::folderChanged()
{
    const QSet<QString> before = std::exchange(mSockets, sockets());
    if (!before.contains(mSockets))
        signSeen();
}
