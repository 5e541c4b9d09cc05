// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsstore.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/system/damagedfile.h"
#include "daemon/system/logging.h"
#include "daemon/system/privatefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView fileName{"settings.plist"};

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool renameOver(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// A link whose file is not there (on a disk that is not mounted, say) counts as present.
bool isPresent(const QString &filePath)
{
    const QFileInfo file(filePath);
    return file.exists() || file.isSymLink();
}

/// 0, or an errno value.
int linkFile(const QString &from, const QString &to)
{
    const bool isLinked = ::linkat(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                                   QFile::encodeName(to).constData(), AT_SYMLINK_FOLLOW)
                          == 0;
    return isLinked ? 0 : errno;
}

/// Writing goes through "settings.plist." and six letters; a daemon that was killed while it wrote leaves that. (No
/// regular expression: their library takes nearly half a megabyte, and nothing else in the daemon needs it.)
bool isLeftOver(const QString &name)
{
    constexpr qsizetype letters = 6;
    const auto isLetter = [](QChar character) {
        return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
    };
    return name.size() == fileName.size() + 1 + letters && name.startsWith(fileName + u'.')
           && std::all_of(name.end() - letters, name.end(), isLetter);
}

} // namespace

SettingsStore::OpenResult SettingsStore::open()
{
    if (const OpenResult result = mFolder.open(); result != OpenResult::open) {
        mErrorText = mFolder.errorText();
        return result;
    }
    if (isPresent(path())) {
        const QString error = PropertyList::readFileBytes(path()).error;
        if (!error.isEmpty()) {
            mErrorText = u"cannot read %1: %2"_s.arg(path(), error);
            return OpenResult::unusable;
        }
    }
    removeLeftOvers();
    return OpenResult::open;
}

QStringList SettingsStore::presentFiles() const
{
    QStringList candidates{path()};
    for (int copy = 0; copy <= copyCount; ++copy)
        candidates += copyPath(copy);
    candidates.removeIf([](const QString &file) { return !isPresent(file); });
    return candidates;
}

std::optional<QVariantMap> SettingsStore::load()
{
    std::optional<RepairedSettings> newest;
    for (const QString &candidate : presentFiles()) {
        std::optional<RepairedSettings> settings =
            read(candidate); // reads all, so that no damaged one stays among them
        if (!settings || newest)
            continue;
        if (candidate != path())
            qCWarning(lcSettings, "file: no good settings.plist, the copy %s is used", qUtf8Printable(candidate));
        for (const QString &repair : std::as_const(settings->repairs))
            qCWarning(lcSettings, "file: %s: %s", qUtf8Printable(candidate), qUtf8Printable(repair));
        mRepairs = settings->repairs;
        mWrongFile = mRepairs.isEmpty() ? QString() : candidate;
        newest = std::move(settings);
    }
    if (!newest)
        return {};
    if (!mWrongFile.isEmpty())
        (void)save(newest->document); // tried again by the next change
    return newest->document;
}

std::optional<RepairedSettings> SettingsStore::read(const QString &filePath)
{
    const PropertyList::FileBytes bytes = PropertyList::readFileBytes(filePath);
    if (!bytes.error.isEmpty()) {
        const QString problem = u"cannot be read (%1)"_s.arg(bytes.error);
        if (filePath == path()) // it could be read when the folder was opened
            refuseSaving(filePath, problem);
        else
            setAside(filePath, problem);
        return {};
    }
    const std::optional<QVariantMap> document = QlCoreUtility::convertDataToDictionary(bytes.data);
    std::optional<RepairedSettings> settings = document ? repairedSettings(*document) : std::nullopt;
    if (settings && filePath == path())
        mOwnContent = Checksum(bytes.data);
    if (!settings)
        setAside(filePath,
                 document ? u"is damaged (nothing of a settings document)"_s : u"is damaged (not a property list)"_s);
    return settings;
}

void SettingsStore::setAside(const QString &filePath, const QString &problem)
{
    const SetAsideFile aside = setDamagedFileAside(filePath, path());
    if (aside.error.isEmpty())
        reportProblem(u"%1 %2, set aside as %3"_s.arg(filePath, problem, aside.name));
    else
        refuseSaving(filePath, u"%1 and cannot be set aside (%2)"_s.arg(problem, aside.error));
}

/// Sets aside the folders, pipes and the like that are in the place of the document or a copy. False when something is
/// in the way of saving.
bool SettingsStore::makeWay()
{
    if (std::ranges::any_of(mInTheWay, isPresent))
        return false;
    for (const QString &file : presentFiles()) {
        if (!QFileInfo(file).isFile())
            setAside(file, u"is not a regular file"_s);
    }
    return std::ranges::none_of(mInTheWay, isPresent);
}

/// Opens the folder again when it or its lock has been removed. False when that failed.
bool SettingsStore::reopenFolder()
{
    if (mFolder.isLocked())
        return true;
    const bool isRemoved = !QFileInfo::exists(mFolder.path());
    if (mFolder.open() != OpenResult::open) {
        qCCritical(lcSettings, "file: %s", qUtf8Printable(mFolder.errorText()));
        return false;
    }
    if (isRemoved) {
        reportProblem(
            u"%1 was removed while the daemon ran, and was made again with the settings in use"_s.arg(mFolder.path()));
        if (mFolderHandler)
            mFolderHandler();
    }
    return true;
}

void SettingsStore::refuseSaving(const QString &filePath, const QString &reason)
{
    mInTheWay += filePath;
    reportProblem(u"%1 %2: nothing is saved until it is moved away"_s.arg(filePath, reason));
}

void SettingsStore::reportProblem(const QString &problem)
{
    qCWarning(lcSettings, "file: %s", qUtf8Printable(problem));
    mProblems += problem;
    if (mProblems.size() > maximumProblems)
        mProblems.removeFirst();
    if (mProblemHandler)
        mProblemHandler();
}

bool SettingsStore::save(const QVariantMap &document)
{
    const std::optional<QByteArray> data = QlCoreUtility::convertDictionaryToData(document);
    if (!data) {
        qCCritical(lcSettings, "daemon: the document cannot be written as a property list");
        return false;
    }
    if (!reopenFolder() || !makeWay())
        return false;
    // Each step leaves a folder from which load() takes the newest answered document and finishInterruptedSave() the
    // copies, because a daemon may be killed after any of them. Without an old document the copy that stands there is
    // the newest good one, and stays.
    const std::optional<Found> found = findFile();
    if (!found)
        return false;
    if (found != Found::nothing)
        finishInterruptedSave();
    const std::optional<QString> secondName = giveSecondName(*found);
    if (!secondName || !replace(*data, *secondName))
        return false;
    if (found == Found::nothing && mWrongFile == path())
        mWrongFile.clear(); // it has been removed
    if (found == Found::foreignFile)
        reportKept(*secondName);
    else if (!mWrongFile.isEmpty())
        reportRepair(*secondName);
    else
        shiftCopies();
    return true;
}

/// What the document would replace. Absent when it cannot be moved out of the way.
std::optional<SettingsStore::Found> SettingsStore::findFile()
{
    if (!QFileInfo::exists(path()))
        return Found::nothing;
    const PropertyList::FileBytes bytes = PropertyList::readFileBytes(path());
    if (!bytes.error.isEmpty()) {
        setAside(path(), u"cannot be read (%1)"_s.arg(bytes.error));
        return isPresent(path()) ? std::nullopt : std::optional(Found::nothing);
    }
    if (Checksum(bytes.data) != mOwnContent)
        return Found::foreignFile;
    return mWrongFile == path() ? Found::wrongDocument : Found::ownDocument;
}

/// Puts `data` in the place of the document, whose second name is `secondName`, empty for none.
bool SettingsStore::replace(const QByteArray &data, const QString &secondName)
{
    const bool isReplacing = QFileInfo::exists(path());
    QString problem;
    if (PropertyList::writeFileAtomically(path(), data, &problem)) {
        mOwnContent = Checksum(data);
        (void)makeFilePrivate(path()); // where that fails, the folder is private, or the log tells since the start
        return true;
    }
    qCCritical(lcSettings, "file: cannot write %s: %s", qUtf8Printable(path()), qUtf8Printable(problem));
    if (!secondName.isEmpty())
        takeBackReplacement(secondName);
    else if (isReplacing)
        mOwnContent = Checksum(PropertyList::readFileBytes(path()).data); // the old document or the new one
    else
        QFile::remove(path());
    return false;
}

/// Ends what a daemon that was killed while it saved had begun, so that its copy .0 is not overwritten.
void SettingsStore::finishInterruptedSave()
{
    const QString previous = copyPath(0);
    if (!QFileInfo::exists(previous))
        return;
    const PropertyList::FileBytes current = PropertyList::readFileBytes(path());
    const PropertyList::FileBytes older = PropertyList::readFileBytes(previous);
    if (current.error.isEmpty() && older.error.isEmpty() && current.data == older.data)
        QFile::remove(previous); // killed before the document was replaced: no copy, only its second name
    else
        shiftCopies();
}

/// Gives the document that is about to be replaced a second name, which writing leaves alone. It is empty where there
/// is nothing, or where the file system has no hard links: the document is replaced as safely then, only without a copy
/// of the old one. What is to be kept is kept in any case; absent when that failed.
std::optional<QString> SettingsStore::giveSecondName(Found found) const
{
    switch (found) {
    case Found::nothing: return QString();
    case Found::wrongDocument: return keepAside("damaged"_L1);
    case Found::foreignFile: return keepAside("replaced"_L1);
    case Found::ownDocument: break;
    }
    if (const int error = linkFile(path(), copyPath(0)); error != 0) {
        qCDebug(lcSettings, "file: no second name for settings.plist: %s", qUtf8Printable(systemError(error)));
        return QString();
    }
    return copyPath(0);
}

/// A second name for what is to be kept; the name of a file of its own where there are no hard links. Absent (and
/// logged) when that failed.
std::optional<QString> SettingsStore::keepAside(QLatin1StringView mark) const
{
    QString name = unusedAsideName(path(), mark);
    if (linkFile(path(), name) == 0)
        return name;
    const PropertyList::FileBytes bytes = PropertyList::readFileBytes(path());
    QString problem = bytes.error;
    if (problem.isEmpty() && PropertyList::writeFileAtomically(name, bytes.data, &problem))
        return name;
    qCCritical(lcSettings, "file: cannot keep %s as %s: %s", qUtf8Printable(path()), qUtf8Printable(name),
               qUtf8Printable(problem));
    return {};
}

void SettingsStore::reportKept(const QString &name)
{
    if (mWrongFile == path()) // what was repaired of it is gone
        mWrongFile.clear();
    reportProblem(
        u"another program changed %1 while the daemon ran: it was replaced, and is kept as %2; to use it, end the "
        "daemon, rename it to settings.plist and start the daemon"_s.arg(path(), name));
}

/// `original`: where the original of the repaired file is, unless that is a copy, which is set aside now.
void SettingsStore::reportRepair(QString original)
{
    constexpr qsizetype named = 3; // the log has all of them
    const QString repaired = std::exchange(mWrongFile, {});
    if (repaired != path()) {
        const SetAsideFile aside = setDamagedFileAside(repaired, path());
        original = aside.error.isEmpty() ? aside.name : repaired;
    }
    QString repairs = mRepairs.first(std::min(named, mRepairs.size())).join(u"; "_s);
    if (mRepairs.size() > named)
        repairs += u"; and %1 more"_s.arg(mRepairs.size() - named);
    reportProblem(u"%1 was repaired (%2), the original is kept as %3"_s.arg(repaired, repairs, original));
    mRepairs.clear();
}

/// The document as it was before a save that failed, also when that failed only after the replacement.
void SettingsStore::takeBackReplacement(const QString &secondName)
{
    // Renaming does nothing between two names of one file, which is what these are when nothing was replaced.
    if (renameOver(secondName, path()))
        QFile::remove(secondName);
}

/// Makes the copy .0, if there is one, the copy .1. The others move up as far as the first gap, which a kill or a
/// damaged copy may have left; the oldest is given up when there is none.
void SettingsStore::shiftCopies()
{
    if (!QFileInfo::exists(copyPath(0)))
        return;
    int free = 1;
    while (free < copyCount && QFileInfo::exists(copyPath(free)))
        ++free;
    for (int copy = free; copy >= 1; --copy)
        renameOver(copyPath(copy - 1), copyPath(copy));
}

void SettingsStore::removeLeftOvers()
{
    QDir folder(mFolder.path());
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        if (isLeftOver(name))
            folder.remove(name);
    }
}

QString SettingsStore::path(const QString &suffix) const
{
    return mFolder.filePath(fileName + suffix);
}

QString SettingsStore::copyPath(int copy) const
{
    return path(u".%1"_s.arg(copy));
}
