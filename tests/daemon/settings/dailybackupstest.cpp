// SPDX-License-Identifier: MIT
// The daily backups of the settings.
#include "daemon/settings/dailybackups.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "daemon/settings/settingsdocument.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap documentNumbered(int number)
{
    return SettingsDocument::withDeviceSetting(SettingsDocument::minimal(), "Number"_L1, number);
}

} // namespace

class DailyBackupsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void keepsTheStateAtTheBeginningOfADay();
    void continuesAfterARestart();
    void overwritesNothingWhenTheClockGoesBack();
    void keepsThirty();
    void keepsTheNewOneWhenTheClockGoesBack();
    void failedChangeLeavesNone();
    void isPrivate();
    void takenNameLeavesTheDayWithout();
    void ignoresOtherFiles();
    void clearRemovesAll();

private:
    void change(int number) { mBackups->beforeChange(documentNumbered(number)); }
    [[nodiscard]] int numberOf(const QString &day) const
    {
        const auto bytes = mBackups->read(day);
        const auto document = bytes ? PropertyList::read(*bytes) : std::nullopt;
        return document ? document->toMap().value(u"DeviceSettings"_s).toMap().value(u"Number"_s).toInt() : -1;
    }
    [[nodiscard]] QString path(const QString &day) const { return mFolder->filePath(u"settings-%1.plist"_s.arg(day)); }
    void restart()
    {
        mBackups.emplace(mFolder->path());
        mBackups->setToday([this] { return mToday; });
    }

    std::optional<QTemporaryDir> mFolder;
    std::optional<DailyBackups> mBackups;
    QDate mToday;
};

void DailyBackupsTest::init()
{
    mFolder.emplace();
    mToday = QDate(2026, 11, 21);
    restart();
}

void DailyBackupsTest::keepsTheStateAtTheBeginningOfADay()
{
    QCOMPARE(mBackups->days(), QStringList());
    change(1);
    change(2);
    mToday = mToday.addDays(2);
    change(3);
    change(4);
    QCOMPARE(mBackups->days(), QStringList({u"2026-11-23"_s, u"2026-11-21"_s}));
    QCOMPARE(numberOf(u"2026-11-21"_s), 1);
    QCOMPARE(numberOf(u"2026-11-23"_s), 3);
    QCOMPARE(mBackups->read(u"2026-11-22"_s).error().message, u"there is no backup of 2026-11-22"_s);
}

void DailyBackupsTest::continuesAfterARestart()
{
    change(1);
    restart();
    change(2);
    QCOMPARE(numberOf(u"2026-11-21"_s), 1);
}

void DailyBackupsTest::overwritesNothingWhenTheClockGoesBack()
{
    change(1);
    mToday = mToday.addDays(1);
    change(2);
    mToday = mToday.addDays(-1);
    change(3);
    QCOMPARE(numberOf(u"2026-11-21"_s), 1);
    QCOMPARE(numberOf(u"2026-11-22"_s), 2);
}

void DailyBackupsTest::keepsThirty()
{
    for (int number = 0; number < 40; ++number) {
        change(number);
        mToday = mToday.addDays(1);
    }
    const QStringList days = mBackups->days();
    QCOMPARE(days.size(), 30);
    QCOMPARE(days.first(), mToday.addDays(-1).toString(Qt::ISODate));
    QCOMPARE(numberOf(days.last()), 10);
}

void DailyBackupsTest::keepsTheNewOneWhenTheClockGoesBack()
{
    for (int number = 0; number < 30; ++number) {
        change(number);
        mToday = mToday.addDays(1);
    }
    mToday = QDate(2020, 1, 1);
    change(77);
    QCOMPARE(mBackups->days().size(), 30);
    QCOMPARE(numberOf(u"2020-01-01"_s), 77);
}

void DailyBackupsTest::failedChangeLeavesNone()
{
    change(1);
    mBackups->changeFailed();
    QCOMPARE(mBackups->days(), QStringList());
    change(2);
    change(3);
    mBackups->changeFailed(); // the copy is that of a change that was stored
    QCOMPARE(numberOf(u"2026-11-21"_s), 2);
}

void DailyBackupsTest::isPrivate()
{
    change(1);
    QCOMPARE(QFile::permissions(path(u"2026-11-21"_s)) & ~(QFile::ReadUser | QFile::WriteUser),
             QFile::Permissions(QFile::ReadOwner | QFile::WriteOwner));
}

void DailyBackupsTest::takenNameLeavesTheDayWithout()
{
    QVERIFY(QDir(mFolder->path()).mkdir(u"settings-2026-11-22.plist"_s));
    mToday = mToday.addDays(1);
    change(1); // another thing has the name
    QCOMPARE(mBackups->days(), QStringList());
    mToday = mToday.addDays(1);
    change(2);
    QCOMPARE(numberOf(u"2026-11-23"_s), 2);
}

void DailyBackupsTest::ignoresOtherFiles()
{
    for (const QString &name : {u"settings-2026-13-01.plist"_s, u"settings-.plist"_s, u"settings-x.plist"_s})
        QVERIFY(QFile(mFolder->filePath(name)).open(QIODevice::WriteOnly));
    QCOMPARE(mBackups->days(), QStringList());
    QVERIFY(!mBackups->read(u"../settings"_s));
}

void DailyBackupsTest::clearRemovesAll()
{
    change(1);
    QVERIFY(mBackups->clear());
    QCOMPARE(mBackups->days(), QStringList());
    change(2);
    QCOMPARE(numberOf(u"2026-11-21"_s), 2);
}

QTEST_GUILESS_MAIN(DailyBackupsTest)
#include "dailybackupstest.moc"
