// SPDX-License-Identifier: MIT
#include "daemon/settingsstore.h"

#include "app/util/propertylist.h"
#include "app/util/qlcoreutility.h"
#include "daemon/logging.h"
#include "daemon/settingsdocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName{"settings.plist"};

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool renameOver(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

SettingsStore::SettingsStore(const QString &folder) : mFolder(folder) {}

SettingsStore::~SettingsStore()
{
    if (mLock >= 0)
        ::close(mLock);
}

QString SettingsStore::defaultFolder()
{
    QString stateHome = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(stateHome)) // a relative one is to be ignored, says the base directory rule
        stateHome = QDir::home().filePath(u".local/state"_s);
    return QDir(stateHome).filePath(u"quill-kestra"_s);
}

SettingsStore::OpenResult SettingsStore::open()
{
    const bool isNew = !QFileInfo::exists(mFolder);
    if (!QDir().mkpath(mFolder)) {
        mErrorText = u"cannot make the folder %1"_s.arg(mFolder);
        return OpenResult::unusable;
    }
    if (isNew)
        QFile::setPermissions(mFolder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString lockPath = QDir(mFolder).filePath(u"lock"_s);
    mLock = ::open(QFile::encodeName(lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (mLock < 0) {
        mErrorText = u"cannot open %1: %2"_s.arg(lockPath, systemError());
        return OpenResult::unusable;
    }
    // The lock goes with the process, also when that is killed.
    if (::flock(mLock, LOCK_EX | LOCK_NB) != 0) {
        mErrorText = u"another daemon uses the settings in %1"_s.arg(mFolder);
        return OpenResult::inUse;
    }
    removeLeftOvers();
    return OpenResult::open;
}

std::optional<QVariantMap> SettingsStore::load()
{
    QStringList candidates{path(), path(u".0"_s)};
    for (int copy = 1; copy <= copyCount; ++copy)
        candidates += path(u".%1"_s.arg(copy));

    std::optional<QVariantMap> newest;
    for (const QString &candidate : std::as_const(candidates)) {
        if (!QFileInfo::exists(candidate))
            continue;
        std::optional<QVariantMap> document = readGood(candidate); // reads all, so that no damaged one stays among them
        if (!document || newest)
            continue;
        if (candidate != path())
            qCWarning(lcSettings, "file: no good settings.plist, the copy %s is used", qUtf8Printable(candidate));
        newest = std::move(document);
    }
    return newest;
}

std::optional<QVariantMap> SettingsStore::readGood(const QString &filePath)
{
    const std::optional<QVariantMap> document = PropertyList::readPropertyListFile(filePath);
    const QString problem = document ? SettingsDocument::problemOf(*document) : u"not a property list"_s;
    if (problem.isEmpty())
        return document;
    setAside(filePath, problem);
    return {};
}

void SettingsStore::setAside(const QString &filePath, const QString &reason)
{
    const QString time = QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    QString target = path(u".damaged-"_s + time);
    for (int number = 2; QFileInfo::exists(target); ++number)
        target = path(u".damaged-%1-%2"_s.arg(time).arg(number));
    if (renameOver(filePath, target)) {
        qCWarning(lcSettings, "file: %s is damaged (%s), set aside as %s", qUtf8Printable(filePath),
                  qUtf8Printable(reason), qUtf8Printable(target));
        return;
    }
    qCCritical(lcSettings, "file: %s is damaged (%s) and cannot be set aside (%s)", qUtf8Printable(filePath),
               qUtf8Printable(reason), qUtf8Printable(systemError()));
    if (filePath == path()) {
        mMayOverwrite = false;
        qCCritical(lcSettings, "file: nothing is saved until %s is moved away", qUtf8Printable(filePath));
    }
}

bool SettingsStore::save(const QVariantMap &document)
{
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(document);
    if (!data) {
        qCCritical(lcSettings, "daemon: the document cannot be written as a property list");
        return false;
    }
    if (!mMayOverwrite && QFileInfo::exists(path()))
        return false;
    // A second name for the old document, which writing leaves alone. Where the file system has no hard links the
    // document is replaced as safely, only without a copy of the old one.
    // Without an old document the copy that stands there is the newest good one, and stays.
    const QString previous = path(u".0"_s);
    const bool isReplacing = QFileInfo::exists(path());
    if (isReplacing) {
        QFile::remove(previous);
        if (::link(QFile::encodeName(path()).constData(), QFile::encodeName(previous).constData()) != 0)
            qCDebug(lcSettings, "file: no second name for settings.plist: %s", qUtf8Printable(systemError()));
    }
    if (!PropertyList::writeFileAtomically(path(), *data)) {
        qCCritical(lcSettings, "file: cannot write %s", qUtf8Printable(path()));
        if (isReplacing)
            QFile::remove(previous);
        return false;
    }
    if (QFileInfo::exists(previous))
        shiftCopies();
    return true;
}

void SettingsStore::shiftCopies()
{
    for (int copy = copyCount; copy >= 1; --copy)
        renameOver(path(u".%1"_s.arg(copy - 1)), path(u".%1"_s.arg(copy)));
}

void SettingsStore::removeLeftOvers()
{
    // Writing goes through "settings.plist." and six letters; a daemon that was killed while it wrote leaves that.
    static const QRegularExpression leftOver(u"^settings\\.plist\\.[A-Za-z]{6}$"_s);
    QDir folder(mFolder);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        if (leftOver.match(name).hasMatch())
            folder.remove(name);
    }
}

QString SettingsStore::path(const QString &suffix) const
{
    return QDir(mFolder).filePath(fileName + suffix);
}
