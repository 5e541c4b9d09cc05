// SPDX-License-Identifier: MIT
#include "daemon/settings/dailybackups.h"

#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/system/logging.h"
#include "daemon/system/privatefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView prefix{"settings-"};
constexpr QLatin1StringView suffix{".plist"};

bool isDay(const QString &text)
{
    return QDate::fromString(text, Qt::ISODate).toString(Qt::ISODate) == text && !text.isEmpty();
}

QString dayOf(const QString &fileName)
{
    return fileName.sliced(prefix.size(), fileName.size() - prefix.size() - suffix.size());
}

} // namespace

QString DailyBackups::path(const QString &day) const
{
    return QDir(mFolder).filePath(prefix + day + suffix);
}

void DailyBackups::beforeChange(const QVariantMap &document)
{
    mMade.clear();
    const QDate today = mToday();
    if (today == mDay || !QFileInfo(mFolder).isDir())
        return;
    const QString day = today.toString(Qt::ISODate);
    const QString file = path(day);
    if (const QFileInfo present(file); present.exists() || present.isSymLink()) {
        mDay = today;
        return;
    }
    const std::optional<QByteArray> bytes = QlCoreUtility::convertDictionaryToData(document);
    const Result<void> written =
        bytes ? PropertyList::writeFileAtomically(file, *bytes) : Result<void>(Error{u"it is not a property list"_s});
    if (!written) {
        qCWarning(lcSettings, "file: cannot write the backup %s: %s", qUtf8Printable(file),
                  qUtf8Printable(written.error().message));
        return;
    }
    (void)makeFilePrivate(file); // after a failure the folder is private, or the log has reported it
    mDay = today;
    mMade = file;
    removeOldest(day);
}

void DailyBackups::changeFailed()
{
    if (mMade.isEmpty())
        return;
    QFile::remove(mMade);
    mMade.clear();
    mDay = {};
}

/// `newest` stays even if its date is the oldest, because the clock has gone back.
void DailyBackups::removeOldest(const QString &newest) const
{
    QStringList all = days();
    all.removeOne(newest);
    for (qsizetype index = maximumCount - 1; index < all.size(); ++index)
        QFile::remove(path(all.at(index)));
}

bool DailyBackups::isName(const QString &fileName)
{
    return fileName.size() > prefix.size() + suffix.size() && fileName.startsWith(prefix) && fileName.endsWith(suffix)
           && isDay(dayOf(fileName));
}

QStringList DailyBackups::days() const
{
    QStringList found;
    for (const QString &name : QDir(mFolder).entryList({prefix + u'*' + suffix}, QDir::Files)) {
        if (isName(name))
            found += dayOf(name);
    }
    std::ranges::sort(found, std::greater());
    return found;
}

Result<QByteArray> DailyBackups::read(const QString &day) const
{
    if (!days().contains(day))
        return Error{u"there is no backup of %1"_s.arg(day)};
    return PropertyList::readFileBytes(path(day));
}

bool DailyBackups::clear()
{
    for (const QString &day : days())
        QFile::remove(path(day));
    mDay = {};
    return days().isEmpty();
}
