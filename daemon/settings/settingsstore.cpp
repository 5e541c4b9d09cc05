// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsstore.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/settings/dailybackups.h"
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

bool renameOver(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// A link counts as present even if its file is not, for example on a disk that is not mounted.
bool isPresent(const QString &filePath)
{
    const QFileInfo file(filePath);
    return file.exists() || file.isSymLink();
}

/// The error is the system's reason.
Result<void> linkFile(const QString &from, const QString &to)
{
    const bool isLinked = ::linkat(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                                   QFile::encodeName(to).constData(), AT_SYMLINK_FOLLOW)
                          == 0;
    if (!isLinked)
        return Error{QString::fromLocal8Bit(std::strerror(errno))};
    return {};
}

bool isAside(const QString &name)
{
    return name.startsWith(fileName + ".damaged-"_L1) || name.startsWith(fileName + ".replaced-"_L1);
}

/// A write uses a temporary file, the name of the file with a dot and six letters, which a killed daemon leaves behind.
/// (No regular expression: the library takes nearly half a megabyte, and nothing else in the daemon needs it.)
bool isLeftOver(const QString &name)
{
    constexpr qsizetype letters = 6;
    const auto isLetter = [](QChar character) {
        return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
    };
    const qsizetype dot = name.size() - letters - 1;
    if (dot < 0 || name.at(dot) != u'.' || !std::all_of(name.end() - letters, name.end(), isLetter))
        return false;
    const QString written = name.first(dot);
    return written == fileName || written == "history"_L1 || isAside(written) || DailyBackups::isName(written);
}

} // namespace

Result<void, SettingsStore::OpenError> SettingsStore::open()
{
    Result<void, OpenError> opened = mFolder.open();
    if (!opened)
        return opened;
    if (isPresent(path())) {
        const Result<QByteArray> bytes = PropertyList::readFileBytes(path());
        if (!bytes)
            return OpenError{{u"cannot read %1: %2"_s.arg(path(), bytes.error().message)}, OpenError::Cause::unusable};
    }
    removeLeftOvers();
    return {};
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
        std::optional<RepairedSettings> settings = read(candidate); // all of them, to find every damaged one
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
    if (!mWrongFile.isEmpty() && !save(newest->document))
        reportProblem(
            u"%1 has wrong values, and its repair cannot be written; the next change tries again"_s.arg(mWrongFile));
    return newest->document;
}

std::optional<RepairedSettings> SettingsStore::read(const QString &filePath)
{
    const Result<QByteArray> bytes = PropertyList::readFileBytes(filePath);
    if (!bytes) {
        const QString problem = u"cannot be read (%1)"_s.arg(bytes.error().message);
        if (filePath == path()) // it was readable when the folder was opened
            refuseSaving(filePath, problem);
        else
            setAside(filePath, problem);
        return {};
    }
    const std::optional<QVariantMap> document = QlCoreUtility::convertDataToDictionary(*bytes);
    std::optional<RepairedSettings> settings = document ? repairedSettings(*document) : std::nullopt;
    if (settings && filePath == path())
        mOwnContent = Checksum(*bytes);
    if (!settings)
        setAside(filePath,
                 document ? u"is damaged (nothing of a settings document)"_s : u"is damaged (not a property list)"_s);
    return settings;
}

void SettingsStore::setAside(const QString &filePath, const QString &problem)
{
    const Result<QString> aside = setDamagedFileAside(filePath, path());
    if (aside)
        reportProblem(u"%1 %2, set aside as %3"_s.arg(filePath, problem, *aside));
    else
        refuseSaving(filePath, u"%1 and cannot be set aside (%2)"_s.arg(problem, aside.error().message));
}

/// Sets aside folders, pipes and other non-files in the place of the document or a copy. False if one of them blocks
/// saving.
bool SettingsStore::setObstaclesAside()
{
    if (std::ranges::any_of(mObstacles, isPresent))
        return false;
    for (const QString &file : presentFiles()) {
        if (!QFileInfo(file).isFile())
            setAside(file, u"is not a regular file"_s);
    }
    return std::ranges::none_of(mObstacles, isPresent);
}

/// Opens the folder again after it or its lock has been removed. False if that failed.
bool SettingsStore::reopenFolder()
{
    if (mFolder.isLocked())
        return true;
    const bool isRemoved = !QFileInfo::exists(mFolder.path());
    if (const Result<void, OpenError> opened = mFolder.open(); !opened) {
        qCCritical(lcSettings, "file: %s", qUtf8Printable(opened.error().message));
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

QList<QByteArray> SettingsStore::contents() const
{
    QList<QByteArray> contents;
    for (const QString &file : presentFiles()) {
        if (const Result<QByteArray> bytes = PropertyList::readFileBytes(file))
            contents += *bytes;
    }
    return contents;
}

void SettingsStore::refuseSaving(const QString &filePath, const QString &reason)
{
    mObstacles += filePath;
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
    if (!reopenFolder() || !setObstaclesAside())
        return false;
    // A daemon may be killed after any step. In the folder that each step leaves, load() finds the newest answered
    // document and finishInterruptedSave() the copies. Without an old document, the existing copy is the newest good
    // one, and stays.
    const std::optional<Found> found = findFile();
    if (!found)
        return false;
    if (found != Found::nothing)
        finishInterruptedSave();
    const Result<QString> secondName = linkSecondName(*found);
    if (!secondName) {
        qCCritical(lcSettings, "file: %s", qUtf8Printable(secondName.error().message));
        return false;
    }
    if (!replace(*data, *secondName))
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

bool SettingsStore::keepOnly(const QVariantMap &document)
{
    const bool isWritten = findFile() == Found::ownDocument && mWrongFile.isEmpty();
    if (!isWritten && !save(document))
        return false;
    removeLeftOvers();
    QDir folder(mFolder.path());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (isAside(name))
            folder.remove(name);
    }
    for (int copy = 0; copy <= copyCount; ++copy)
        QFile::remove(copyPath(copy));
    return presentFiles() == QStringList{path()}
           && std::ranges::none_of(folder.entryList(QDir::Files | QDir::Hidden), isAside);
}

/// The file that the document would replace. Absent, and reported, if it cannot be moved out of the way.
std::optional<SettingsStore::Found> SettingsStore::findFile()
{
    if (!QFileInfo::exists(path()))
        return Found::nothing;
    const Result<QByteArray> bytes = PropertyList::readFileBytes(path());
    if (!bytes) {
        setAside(path(), u"cannot be read (%1)"_s.arg(bytes.error().message));
        return isPresent(path()) ? std::nullopt : std::optional(Found::nothing);
    }
    if (Checksum(*bytes) != mOwnContent)
        return Found::foreignFile;
    return mWrongFile == path() ? Found::wrongDocument : Found::ownDocument;
}

/// Replaces the document by `data`. `secondName` is the document's second name, empty for none. False, and logged, on
/// failure.
bool SettingsStore::replace(const QByteArray &data, const QString &secondName)
{
    const bool isReplacing = QFileInfo::exists(path());
    const Result<void> written = PropertyList::writeFileAtomically(path(), data);
    if (written) {
        mOwnContent = Checksum(data);
        (void)makeFilePrivate(path()); // after a failure the folder is private, or the log has reported it
        return true;
    }
    qCCritical(lcSettings, "file: cannot write %s: %s", qUtf8Printable(path()),
               qUtf8Printable(written.error().message));
    if (!secondName.isEmpty())
        undoReplacement(secondName);
    else if (isReplacing) // the file is either the old document or the new one
        mOwnContent = Checksum(PropertyList::readFileBytes(path()).valueOr({}));
    else
        QFile::remove(path());
    return false;
}

/// Finishes the save of a killed daemon, whose copy .0 this save would otherwise overwrite.
void SettingsStore::finishInterruptedSave()
{
    const QString previous = copyPath(0);
    if (!QFileInfo::exists(previous))
        return;
    const Result<QByteArray> current = PropertyList::readFileBytes(path());
    const Result<QByteArray> older = PropertyList::readFileBytes(previous);
    if (current && older && *current == *older)
        QFile::remove(previous); // killed before the replacement: not a copy, only a second name of the document
    else
        shiftCopies();
}

/// Gives the document a second name before its replacement; writing leaves this name alone. Returns an empty name if
/// there is no document, or if the file system has no hard links. In the latter case the replacement is as safe, but
/// leaves no copy of the old document. Files that must be kept are kept in any case; fails if that is not possible.
Result<QString> SettingsStore::linkSecondName(Found found) const
{
    switch (found) {
    case Found::nothing: return QString();
    case Found::wrongDocument: return keepAside("damaged"_L1);
    case Found::foreignFile: return keepAside("replaced"_L1);
    case Found::ownDocument: break;
    }
    if (const Result<void> linked = linkFile(path(), copyPath(0)); !linked) {
        qCDebug(lcSettings, "file: no second name for settings.plist: %s", qUtf8Printable(linked.error().message));
        return QString();
    }
    return copyPath(0);
}

/// A second name for a file that must be kept or, without hard links, the name of a copy.
Result<QString> SettingsStore::keepAside(QLatin1StringView mark) const
{
    QString name = unusedAsideName(path(), mark);
    if (linkFile(path(), name))
        return name;
    const Result<QByteArray> bytes = PropertyList::readFileBytes(path());
    const Result<void> written = bytes ? PropertyList::writeFileAtomically(name, *bytes) : bytes.withoutValue();
    if (!written)
        return Error{u"cannot keep %1 as %2: %3"_s.arg(path(), name, written.error().message)};
    (void)makeFilePrivate(name); // after a failure the folder is private, or the log has reported it
    return name;
}

void SettingsStore::reportKept(const QString &name)
{
    if (mWrongFile == path()) // the repaired file has been replaced
        mWrongFile.clear();
    reportProblem(
        u"another program changed %1 while the daemon ran: it was replaced, and is kept as %2; to use it, end the "
        "daemon, rename it to settings.plist and start the daemon"_s.arg(path(), name));
}

/// `original`: the original of the repaired file, unless that file is a copy, which is set aside now.
void SettingsStore::reportRepair(QString original)
{
    constexpr qsizetype named = 3; // the log has all of them
    const QString repaired = std::exchange(mWrongFile, {});
    if (repaired != path())
        original = setDamagedFileAside(repaired, path()).valueOr(repaired);
    QString repairs = mRepairs.first(std::min(named, mRepairs.size())).join(u"; "_s);
    if (mRepairs.size() > named)
        repairs += u"; and %1 more"_s.arg(mRepairs.size() - named);
    reportProblem(u"%1 was repaired (%2), the original is kept as %3"_s.arg(repaired, repairs, original));
    mRepairs.clear();
}

/// Restores the document after a failed save, even if the save failed after the replacement.
void SettingsStore::undoReplacement(const QString &secondName)
{
    // If nothing was replaced, these are two names of one file, and renaming does nothing.
    if (renameOver(secondName, path()))
        QFile::remove(secondName);
}

/// Turns the copy .0, if it exists, into the copy .1. The others move up to the first gap, which a kill or a damaged
/// copy may have left. Without a gap, the oldest copy is lost.
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
