// SPDX-License-Identifier: MIT
// The settings store writes documents and their copies: the normal case, and the state after a kill or with a full
// disk.
#include "tests/daemon/settings/settingsstorefixture.h"

#include "base/qlcoreutility.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/filemode.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/folderflushfailure.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QPoint>
#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

class SettingsStoreTest : public SettingsStoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeFolder(); }
    void cleanup() { removeFolder(); }

    void emptyFolderHasNoDocument();
    void loadsWhatWasSaved();
    void keepsTheLastGoodCopies();
    void missingFileUsesNewestCopy();
    void interruptedReplacementIsFound();
    void killBetweenAnyTwoStepsLosesNothing_data();
    void killBetweenAnyTwoStepsLosesNothing();
    void killWithoutHardLinksLosesNothing();
    void gapInTheCopiesIsFilledFirst();
    void unconfirmedReplacementIsUndone();
    void unconfirmedFirstDocumentIsRemoved();
    void fullDiskChangesNothing();
    void fullDiskKeepsTheCopyInUse();
    void leftOversOfAKilledWriterAreRemoved();
    void writtenFilesAreForTheUserOnly();
    void removedFolderIsCreatedAgain_data();
    void removedFolderIsCreatedAgain();
    void changeIsRefusedWhenTheFolderCannotBeCreated();
    void folderOfAnotherDaemonIsLeftAlone();
    void refusesValuesWithoutPropertyListForm();
};

void SettingsStoreTest::emptyFolderHasNoDocument()
{
    QVERIFY(!mStore->load());
}

void SettingsStoreTest::loadsWhatWasSaved()
{
    const QVariantMap document = documentNamed(u"Fée"_s);
    QVERIFY(mStore->save(document));
    QCOMPARE(mStore->load(), std::optional(document));
    reopen();
    QCOMPARE(mStore->load(), std::optional(document));
}

void SettingsStoreTest::keepsTheLastGoodCopies()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    const auto stored = [&](const QString &name) {
        return nameOf(QlCoreUtility::convertDataToDictionary(contentOf(name)));
    };
    QCOMPARE(stored(u"settings.plist"_s), u"5"_s);
    QCOMPARE(stored(u"settings.plist.1"_s), u"4"_s);
    QCOMPARE(stored(u"settings.plist.2"_s), u"3"_s);
    QCOMPARE(stored(u"settings.plist.3"_s), u"2"_s);
    QCOMPARE(filesMatching(u"settings.plist*"_s).size(), 4);
}

void SettingsStoreTest::missingFileUsesNewestCopy()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    QVERIFY(QFile::remove(filePath(u"settings.plist"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.1 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"2"_s);
}

void SettingsStoreTest::interruptedReplacementIsFound()
{
    // The state after a crash between the second name for the old document and the renaming of the copies; the new
    // document is damaged.
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    QVERIFY(QFile::rename(filePath(u"settings.plist"_s), filePath(u"settings.plist.0"_s)));
    writeFile(filePath(u"settings.plist"_s), "damage");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.0 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"old"_s);
    QVERIFY(mStore->save(documentNamed(u"new"_s)));
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"old"_s);
    QVERIFY(!QFile::exists(filePath(u"settings.plist.0"_s)));
}

void SettingsStoreTest::killBetweenAnyTwoStepsLosesNothing_data()
{
    QTest::addColumn<QStringList>("left");  // settings.plist, .0, .1, .2, .3
    QTest::addColumn<bool>("isSecondName"); // .0 is another name of settings.plist
    QTest::addColumn<QStringList>("afterNext");
    const auto row = [](const char *name, const QString &left, bool isSecondName, const QString &afterNext) {
        QTest::newRow(name) << left.split(u',') << isSecondName << afterNext.split(u',');
    };
    // Documents 1 to 4 were saved, and the daemon was killed while it saved 5.
    row("before the second name", u"4,,3,2,1"_s, false, u"6,,4,3,2"_s);
    row("before the replacement", u"4,4,3,2,1"_s, true, u"6,,4,3,2"_s);
    row("after the replacement", u"5,4,3,2,1"_s, false, u"6,,5,4,3"_s);
    row("after the copy .3", u"5,4,3,,2"_s, false, u"6,,5,4,3"_s);
    row("after the copy .2", u"5,4,,3,2"_s, false, u"6,,5,4,3"_s);
    row("after the copy .1", u"5,,4,3,2"_s, false, u"6,,5,4,3"_s);
    // The first saves, with fewer copies.
    row("before the first document", u",,,,"_s, false, u"6,,,,"_s);
    row("before the second document", u"1,1,,,"_s, true, u"6,,1,,"_s);
    row("after the second document", u"2,1,,,"_s, false, u"6,,2,1,"_s);
    row("before the third document", u"2,2,1,,"_s, true, u"6,,2,1,"_s);
    row("after the third document", u"3,2,1,,"_s, false, u"6,,3,2,1"_s);
}

// Each step leaves the folder in one of these states. The newest document is found, and the save after next keeps all
// three before it.
void SettingsStoreTest::killBetweenAnyTwoStepsLosesNothing()
{
    QFETCH(QStringList, left);
    QFETCH(bool, isSecondName);
    store(left);
    if (isSecondName) {
        QVERIFY(QFile::remove(filePath(u"settings.plist.0"_s)));
        QCOMPARE(::link(QFile::encodeName(filePath(u"settings.plist"_s)).constData(),
                        QFile::encodeName(filePath(u"settings.plist.0"_s)).constData()),
                 0);
    }
    reopen();
    QCOMPARE(nameOf(mStore->load()), left.first());
    QVERIFY(mStore->save(documentNamed(u"6"_s)));
    QTEST(storedNames(), "afterNext");
}

void SettingsStoreTest::killWithoutHardLinksLosesNothing()
{
    // A restored folder holds the second name as a file of its own.
    store({u"4"_s, u"4"_s, u"3"_s, u"2"_s, u"1"_s});
    QVERIFY(mStore->load());
    QVERIFY(mStore->save(documentNamed(u"6"_s)));
    QCOMPARE(storedNames(), QStringList({u"6"_s, u""_s, u"4"_s, u"3"_s, u"2"_s}));
}

void SettingsStoreTest::gapInTheCopiesIsFilledFirst()
{
    store({u"5"_s, u""_s, u"4"_s, u""_s, u"2"_s}); // .2 was damaged and set aside
    QVERIFY(mStore->load());
    QVERIFY(mStore->save(documentNamed(u"6"_s)));
    QCOMPARE(storedNames(), QStringList({u"6"_s, u""_s, u"5"_s, u"4"_s, u"2"_s}));
}

void SettingsStoreTest::unconfirmedReplacementIsUndone()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    const QStringList before = storedNames();
    {
        const FolderFlushFailure failure(EIO);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*: Input/output error"_s));
        QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
        QCOMPARE(failure.count(), 1);
    }
    QCOMPARE(storedNames(), before);
    QVERIFY(mStore->save(documentNamed(u"4"_s)));
    QCOMPARE(storedNames(), QStringList({u"4"_s, u""_s, u"3"_s, u"2"_s, u"1"_s}));
}

void SettingsStoreTest::unconfirmedFirstDocumentIsRemoved()
{
    const FolderFlushFailure failure(EIO);
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*: Input/output error"_s));
    QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
    QCOMPARE(failure.count(), 1);
    QVERIFY(!mStore->load());
}

void SettingsStoreTest::fullDiskChangesNothing()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    const QStringList before = filesMatching(u"*"_s);
    {
        const FileSizeLimit fullDisk(16);
        for (int attempt = 0; attempt < 5; ++attempt) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*: File too large"_s));
            QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
        }
    }
    QCOMPARE(filesMatching(u"*"_s), before);
    QCOMPARE(nameOf(mStore->load()), u"3"_s);
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"2"_s);
    QVERIFY(mStore->save(documentNamed(u"4"_s))); // the disk has room again
    QCOMPARE(nameOf(mStore->load()), u"4"_s);
}

void SettingsStoreTest::fullDiskKeepsTheCopyInUse()
{
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    QVERIFY(QFile::rename(filePath(u"settings.plist"_s), filePath(u"settings.plist.0"_s)));
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.0 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"old"_s);
}

void SettingsStoreTest::leftOversOfAKilledWriterAreRemoved()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    writeFile(filePath(u"settings.plist.aBcDeF"_s), "half a docu");
    writeFile(filePath(u"settings.plist.damaged-20250101T000000Z"_s), "kept");
    writeFile(filePath(u"notes.txt"_s), "kept");
    reopen();
    QVERIFY(!QFile::exists(filePath(u"settings.plist.aBcDeF"_s)));
    QVERIFY(QFile::exists(filePath(u"settings.plist.damaged-20250101T000000Z"_s)));
    QVERIFY(QFile::exists(filePath(u"notes.txt"_s)));
    QCOMPARE(nameOf(mStore->load()), u"1"_s);
}

void SettingsStoreTest::writtenFilesAreForTheUserOnly()
{
    const mode_t before = ::umask(0);
    for (const QString &name : {u"1"_s, u"2"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    QVERIFY(setMode(filePath(u"settings.plist"_s), 0644)); // a new file would inherit it
    QVERIFY(mStore->save(documentNamed(u"3"_s)));
    ::umask(before);
    QCOMPARE(modeOf(filePath(u"settings.plist"_s)), 0600);
    QCOMPARE(modeOf(filePath(u"settings.plist.2"_s)), 0600);
    QCOMPARE(modeOf(mFolder), 0700);
}

void SettingsStoreTest::removedFolderIsCreatedAgain_data()
{
    QTest::addColumn<QString>("removed");
    QTest::newRow("the folder") << u"state/quill-kestra"_s;
    QTest::newRow("the folder around it") << u"state"_s;
}

void SettingsStoreTest::removedFolderIsCreatedAgain()
{
    QFETCH(QString, removed);
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(QDir(mTemporary->filePath(removed)).removeRecursively());
    int madeCount = 0;
    mStore->setFolderHandler([&] { ++madeCount; });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was removed while the daemon ran, and was made again"_s));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
    QCOMPARE(storedNames(), QStringList({u"2"_s, u""_s, u""_s, u""_s, u""_s}));
    QCOMPARE(modeOf(mFolder), 0700);
    QCOMPARE(mStore->problems().size(), 1);
    QCOMPARE(madeCount, 1);
    SettingsStore second(mFolder);
    const auto opened = second.open();
    QVERIFY(!opened);
    QVERIFY(opened.error().cause == SettingsStore::OpenError::Cause::inUse);
    QVERIFY(mStore->save(documentNamed(u"3"_s)));
    QCOMPARE(storedNames(), QStringList({u"3"_s, u""_s, u"2"_s, u""_s, u""_s}));
    QCOMPARE(madeCount, 1);
}

void SettingsStoreTest::changeIsRefusedWhenTheFolderCannotBeCreated()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(QDir(mFolder).removeRecursively());
    writeFile(mFolder, "in the way");
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot make the folder"_s));
    QVERIFY(!mStore->save(documentNamed(u"2"_s)));
    QVERIFY(QFile::remove(mFolder));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was made again"_s));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
}

void SettingsStoreTest::folderOfAnotherDaemonIsLeftAlone()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(QDir(mFolder).removeRecursively());
    SettingsStore second(mFolder);
    QVERIFY(second.open());
    QVERIFY(!second.load());
    QVERIFY(second.save(documentNamed(u"second"_s)));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"another daemon uses the settings"_s));
    QVERIFY(!mStore->save(documentNamed(u"2"_s)));
    QCOMPARE(storedNames().first(), u"second"_s);
}

void SettingsStoreTest::refusesValuesWithoutPropertyListForm()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVariantMap document = documentNamed(u"2"_s);
    document.insert(u"point"_s, QPoint(1, 2));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot be written as a property list"_s));
    QVERIFY(!mStore->save(document));
    QCOMPARE(nameOf(mStore->load()), u"1"_s);
}

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "settingsstoretest.moc"
