// SPDX-License-Identifier: MIT
// The settings store meets files that differ from those it wrote: damaged, wrong, odd, or of another program.
#include "tests/daemon/settings/settingsstorefixture.h"

#include "base/qlcoreutility.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/support/filemode.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/folderflushfailure.h"
#include "tests/support/hardlinkfailure.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Objects in the place of a file.
enum class OddKind { folder, fullFolder, pipe, inputOutputError, missingTarget };

// The first page of a process is never mapped, so reading it fails with an input/output error.
constexpr QLatin1StringView inputOutputErrorTarget{"/proc/self/mem"};
constexpr QLatin1StringView missingTarget{"/nowhere/settings.plist"};

constexpr std::array oddKinds{std::pair{OddKind::folder, "a folder"}, std::pair{OddKind::fullFolder, "a full folder"},
                              std::pair{OddKind::pipe, "a pipe"},
                              std::pair{OddKind::missingTarget, "a link to nothing"},
                              std::pair{OddKind::inputOutputError, "an input/output error"}};

/// A row for each of `kinds` in the place of each file of `names`.
void addOddRows(const QStringList &names, std::span<const std::pair<OddKind, const char *>> kinds)
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<OddKind>("kind");
    for (const auto &[kind, words] : kinds) {
        for (const QString &name : names)
            QTest::addRow("%s is %s", qPrintable(name), words) << name << kind;
    }
}

} // namespace

class SettingsStoreProblemsTest : public SettingsStoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeFolder(); }
    void cleanup() { removeFolder(); }

    void setsDamagedFileAsideAndUsesNewestCopy_data();
    void setsDamagedFileAsideAndUsesNewestCopy();
    void damagedFilesAreNeverOverwritten();
    void allDamagedMeansNoDocument();
    void repairsWrongValuesEvenWhenACopyIsGood();
    void repairThatCannotBeWrittenLeavesTheFileAlone();
    void originalThatCannotBeKeptIsNotOverwritten();
    void originalIsKeptWithoutHardLinks();
    void newestCopyIsRepaired();
    void unusedCopyKeepsItsWrongValue();
    void fileChangedByAnotherProgramIsKept_data();
    void fileChangedByAnotherProgramIsKept();
    void fileThatAppearsIsKept();
    void sameContentIsNotAChange();
    void changeByAnotherProgramIsKeptOnceWithAFullDisk();
    void unreadableChangeByAnotherProgramIsSetAside();
    void reportsEachProblem();
    void reportsTheLatestProblems();
    void unreadableFileIsReportedAndLeftAlone_data();
    void unreadableFileIsReportedAndLeftAlone();
    void fileWithoutTheRightToReadIsReported();
    void oddCopyIsSetAside_data();
    void oddCopyIsSetAside();
    void copyWithoutTheRightToReadIsSetAside();
    void newestGoodCopyIsUsedAmongOddOnes();
    void oddFileThatAppearsLaterIsSetAside_data();
    void oddFileThatAppearsLaterIsSetAside();
    void fileThatCannotBeReadLaterIsLeftAlone();

private:
    /// Puts something odd in the place of the file.
    [[nodiscard]] bool makeOdd(const QString &name, OddKind kind) const;
    [[nodiscard]] bool isOdd(const QString &name, OddKind kind) const;
    /// All entries that were set aside, including folders.
    [[nodiscard]] QStringList setAsideEntries() const
    {
        return QDir(mFolder).entryList({u"settings.plist.damaged-*"_s}, QDir::AllEntries | QDir::System);
    }
    /// Lets an ordinary user use the folder, which root may own.
    [[nodiscard]] bool giveToEverybody() const;
};

bool SettingsStoreProblemsTest::makeOdd(const QString &name, OddKind kind) const
{
    const QString path = filePath(name);
    QFile::remove(path);
    switch (kind) {
    case OddKind::folder: return QDir().mkdir(path);
    case OddKind::fullFolder: return QDir().mkdir(path) && QDir().mkdir(path + u"/inside"_s);
    case OddKind::pipe: return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
    case OddKind::inputOutputError: return QFile::link(inputOutputErrorTarget, path);
    case OddKind::missingTarget: return QFile::link(missingTarget, path);
    }
    return false;
}

bool SettingsStoreProblemsTest::isOdd(const QString &name, OddKind kind) const
{
    const QFileInfo file(filePath(name));
    switch (kind) {
    case OddKind::folder: return file.isDir();
    case OddKind::fullFolder: return file.isDir() && QFileInfo(filePath(name + u"/inside"_s)).isDir();
    case OddKind::pipe: return !file.isFile() && !file.isDir() && !file.isSymLink();
    case OddKind::inputOutputError: return file.symLinkTarget() == inputOutputErrorTarget;
    case OddKind::missingTarget: return file.symLinkTarget() == missingTarget;
    }
    return false;
}

bool SettingsStoreProblemsTest::giveToEverybody() const
{
    return setMode(mTemporary->path(), 0777) && setMode(mTemporary->filePath(u"state"_s), 0777)
           && setMode(mFolder, 0777) && std::ranges::all_of(filesMatching(u"*"_s), [this](const QString &name) {
                  return setMode(filePath(name), 0666);
              });
}

void SettingsStoreProblemsTest::setsDamagedFileAsideAndUsesNewestCopy_data()
{
    QTest::addColumn<QByteArray>("damage");
    const QByteArray good = dataOf(documentNamed(u"x"_s));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half") << good.first(good.size() / 2);
    QTest::newRow("no trailer") << good.chopped(1);
    QTest::newRow("zeros") << QByteArray(good.size(), '\0');
    QTest::newRow("text") << QByteArray("not a property list");
    QTest::newRow("another property list") << dataOf(QVariantMap{{u"a"_s, 1}});
}

void SettingsStoreProblemsTest::setsDamagedFileAsideAndUsesNewestCopy()
{
    QFETCH(QByteArray, damage);
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    QVERIFY(mStore->save(documentNamed(u"new"_s)));
    writeFile(filePath(u"settings.plist"_s), damage);
    reopen();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist is damaged .* set aside as"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"the copy .*settings\\.plist\\.1 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"old"_s);
    const QStringList damaged = filesMatching(u"settings.plist.damaged-*"_s);
    QCOMPARE(damaged.size(), 1);
    QVERIFY(QRegularExpression(u"^settings\\.plist\\.damaged-\\d{8}T\\d{6}Z$"_s).match(damaged.first()).hasMatch());
    QCOMPARE(contentOf(damaged.first()), damage);
    // The store continues with that copy, and the copy stays a copy.
    QVERIFY(mStore->save(documentNamed(u"newer"_s)));
    reopen();
    QCOMPARE(nameOf(mStore->load()), u"newer"_s);
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"old"_s);
    QCOMPARE(contentOf(damaged.first()), damage);
}

void SettingsStoreProblemsTest::damagedFilesAreNeverOverwritten()
{
    for (int round = 0; round < 3; ++round) {
        writeFile(filePath(u"settings.plist"_s), QByteArray("damage ") + QByteArray::number(round));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
        QVERIFY(!mStore->load());
    }
    QStringList contents;
    for (const QString &name : filesMatching(u"settings.plist.damaged-*"_s))
        contents += QString::fromLatin1(contentOf(name));
    contents.sort();
    QCOMPARE(contents, QStringList({u"damage 0"_s, u"damage 1"_s, u"damage 2"_s}));
}

void SettingsStoreProblemsTest::allDamagedMeansNoDocument()
{
    for (const QString &name : {u"settings.plist"_s, u"settings.plist.1"_s, u"settings.plist.3"_s}) {
        writeFile(filePath(name), "damage");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
    }
    QVERIFY(!mStore->load());
    QCOMPARE(filesMatching(u"settings.plist.damaged-*"_s).size(), 3);
    QVERIFY(mStore->save(documentNamed(u"fresh"_s)));
    QCOMPARE(nameOf(mStore->load()), u"fresh"_s);
}

void SettingsStoreProblemsTest::repairsWrongValuesEvenWhenACopyIsGood()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    writeFile(filePath(u"settings.plist"_s), dataOf(wrongDocumentNamed(u"edited"_s)));
    reopen();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist: \"ActiveProfile\" was not a position"_s));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"settings\\.plist was repaired .* kept as .*plist\\.damaged-"_s));
    QCOMPARE(mStore->load(), std::optional(documentNamed(u"edited"_s)));
    // The change is on the disk, with the original beside it and the copies unchanged.
    QCOMPARE(storedNames(), QStringList({u"edited"_s, u""_s, u"2"_s, u"1"_s, u""_s}));
    const QStringList originals = filesMatching(u"settings.plist.damaged-*"_s);
    QCOMPARE(originals.size(), 1);
    QCOMPARE(contentOf(originals.first()), dataOf(wrongDocumentNamed(u"edited"_s)));
    reopen();
    QCOMPARE(mStore->load(), std::optional(documentNamed(u"edited"_s)));
    QVERIFY(mStore->save(documentNamed(u"4"_s)));
    QCOMPARE(storedNames(), QStringList({u"4"_s, u""_s, u"edited"_s, u"2"_s, u"1"_s}));
    QCOMPARE(filesMatching(u"settings.plist.damaged-*"_s), originals);
}

void SettingsStoreProblemsTest::repairThatCannotBeWrittenLeavesTheFileAlone()
{
    const QByteArray original = dataOf(wrongDocumentNamed(u"edited"_s));
    writeFile(filePath(u"settings.plist"_s), original);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was not a position"_s));
    {
        const FileSizeLimit fullDisk(16);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"its repair cannot be written"_s));
        QCOMPARE(nameOf(mStore->load()), u"edited"_s);
    }
    QVERIFY(mStore->problems().constLast().contains(u"its repair cannot be written"_s));
    QCOMPARE(filesMatching(u"settings.plist*"_s), QStringList{u"settings.plist"_s});
    QCOMPARE(contentOf(u"settings.plist"_s), original);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was repaired"_s));
    QVERIFY(mStore->save(documentNamed(u"next"_s))); // the disk has room again
    QCOMPARE(storedNames(), QStringList({u"next"_s, u""_s, u""_s, u""_s, u""_s}));
    QCOMPARE(contentOf(filesMatching(u"settings.plist.damaged-*"_s).value(0)), original);
}

void SettingsStoreProblemsTest::originalThatCannotBeKeptIsNotOverwritten()
{
    const QByteArray original = dataOf(wrongDocumentNamed(u"edited"_s));
    writeFile(filePath(u"settings.plist"_s), original);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was not a position"_s));
    const HardLinkFailure noLinks(EPERM);
    const FileSizeLimit fullDisk(16);
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot keep .*settings\\.plist .*File too large"_s));
    QCOMPARE(nameOf(mStore->load()), u"edited"_s);
    QCOMPARE(filesMatching(u"settings.plist*"_s), QStringList{u"settings.plist"_s});
    QCOMPARE(contentOf(u"settings.plist"_s), original);
}

void SettingsStoreProblemsTest::originalIsKeptWithoutHardLinks()
{
    const QByteArray original = dataOf(wrongDocumentNamed(u"edited"_s));
    writeFile(filePath(u"settings.plist"_s), original);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was not a position"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was repaired"_s));
    const HardLinkFailure noLinks(EPERM);
    QCOMPARE(nameOf(mStore->load()), u"edited"_s);
    const QString kept = filesMatching(u"settings.plist.damaged-*"_s).value(0);
    QCOMPARE(contentOf(kept), original);
    QCOMPARE(modeOf(filePath(kept)), 0600);
    QCOMPARE(contentOf(u"settings.plist"_s), dataOf(documentNamed(u"edited"_s)));
}

void SettingsStoreProblemsTest::newestCopyIsRepaired()
{
    store({u"4"_s, u""_s, u"3"_s, u"2"_s, u"1"_s});
    writeFile(filePath(u"settings.plist"_s), "damage");
    writeFile(filePath(u"settings.plist.1"_s), dataOf(wrongDocumentNamed(u"3"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist is damaged .* set aside as"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"the copy .*settings\\.plist\\.1 is used"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.1: \"ActiveProfile\" was not"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.1 was repaired"_s));
    QCOMPARE(nameOf(mStore->load()), u"3"_s);
    QCOMPARE(storedNames(), QStringList({u"3"_s, u""_s, u""_s, u"2"_s, u"1"_s}));
    QByteArrayList kept;
    for (const QString &name : filesMatching(u"settings.plist.damaged-*"_s))
        kept += contentOf(name);
    QCOMPARE(kept.size(), 2);
    QVERIFY(kept.contains("damage"));
    QVERIFY(kept.contains(dataOf(wrongDocumentNamed(u"3"_s))));
}

void SettingsStoreProblemsTest::unusedCopyKeepsItsWrongValue()
{
    store({u"2"_s, u""_s, u"1"_s, u""_s, u""_s});
    const QByteArray original = dataOf(wrongDocumentNamed(u"1"_s));
    writeFile(filePath(u"settings.plist.1"_s), original);
    QCOMPARE(nameOf(mStore->load()), u"2"_s);
    QCOMPARE(contentOf(u"settings.plist.1"_s), original);
    QCOMPARE(filesMatching(u"settings.plist.damaged-*"_s), QStringList());
}

void SettingsStoreProblemsTest::fileChangedByAnotherProgramIsKept_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isReplaced"); // otherwise written in place
    for (const bool isReplaced : {false, true}) {
        const char *how = isReplaced ? "replaced" : "in place";
        QTest::addRow("a document, %s", how) << dataOf(documentNamed(u"put back"_s)) << isReplaced;
        QTest::addRow("of the same size, %s", how) << dataOf(documentNamed(u"3"_s)) << isReplaced;
        QTest::addRow("damage, %s", how) << QByteArray("damage") << isReplaced;
        QTest::addRow("nothing, %s", how) << QByteArray() << isReplaced;
    }
}

void SettingsStoreProblemsTest::fileChangedByAnotherProgramIsKept()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isReplaced);
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
    reopen();
    QVERIFY(mStore->load());
    if (isReplaced)
        QVERIFY(QFile::remove(filePath(u"settings.plist"_s)));
    writeFile(filePath(u"settings.plist"_s), content);
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"another program changed .*settings\\.plist.*kept as .*replaced-"_s));
    QVERIFY(mStore->save(documentNamed(u"4"_s)));
    const QStringList kept = filesMatching(u"settings.plist.replaced-*"_s);
    QCOMPARE(kept.size(), 1);
    QCOMPARE(contentOf(kept.first()), content);
    QCOMPARE(mStore->problems().size(), 1);
    QVERIFY(mStore->problems().first().contains(kept.first()));
    QCOMPARE(storedNames(), QStringList({u"4"_s, u""_s, u"1"_s, u""_s, u""_s}));
    QVERIFY(mStore->save(documentNamed(u"5"_s)));
    QCOMPARE(storedNames(), QStringList({u"5"_s, u""_s, u"4"_s, u"1"_s, u""_s}));
    QCOMPARE(filesMatching(u"settings.plist.replaced-*"_s), kept);
}

void SettingsStoreProblemsTest::fileThatAppearsIsKept()
{
    QVERIFY(!mStore->load());
    writeFile(filePath(u"settings.plist"_s), dataOf(documentNamed(u"put there"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"another program changed"_s));
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QCOMPARE(contentOf(filesMatching(u"settings.plist.replaced-*"_s).value(0)), dataOf(documentNamed(u"put there"_s)));
}

void SettingsStoreProblemsTest::sameContentIsNotAChange()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(QFile::remove(filePath(u"settings.plist"_s)));
    writeFile(filePath(u"settings.plist"_s), dataOf(documentNamed(u"1"_s)));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
    QCOMPARE(mStore->problems(), QStringList());
    QCOMPARE(storedNames(), QStringList({u"2"_s, u""_s, u"1"_s, u""_s, u""_s}));
}

void SettingsStoreProblemsTest::changeByAnotherProgramIsKeptOnceWithAFullDisk()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    writeFile(filePath(u"settings.plist"_s), "put back");
    {
        const FileSizeLimit fullDisk(16);
        for (int attempt = 0; attempt < 2; ++attempt) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
            QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
        }
    }
    QCOMPARE(filesMatching(u"settings.plist*"_s), QStringList{u"settings.plist"_s});
    QCOMPARE(contentOf(u"settings.plist"_s), QByteArray("put back"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"another program changed"_s));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
    QCOMPARE(contentOf(filesMatching(u"settings.plist.replaced-*"_s).value(0)), QByteArray("put back"));
    // A save that failed after the replacement leaves the daemon's own document, which does not count as a change.
    {
        const FolderFlushFailure failure(EIO);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
    }
    {
        const HardLinkFailure noLinks(EPERM);
        const FolderFlushFailure failure(EIO);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
        QVERIFY(!mStore->save(documentNamed(u"not confirmed"_s)));
    }
    QVERIFY(mStore->save(documentNamed(u"3"_s)));
    QCOMPARE(mStore->problems().size(), 1);
}

void SettingsStoreProblemsTest::unreadableChangeByAnotherProgramIsSetAside()
{
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(makeOdd(u"settings.plist"_s, OddKind::inputOutputError));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist cannot be read .*set aside as"_s));
    QVERIFY(mStore->save(documentNamed(u"2"_s)));
    QCOMPARE(storedNames().first(), u"2"_s);
    QVERIFY(isOdd(setAsideEntries().value(0), OddKind::inputOutputError));
}

void SettingsStoreProblemsTest::reportsEachProblem()
{
    int toldCount = 0;
    mStore->setProblemHandler([&] { ++toldCount; });
    QVERIFY(mStore->save(documentNamed(u"1"_s)));
    QVERIFY(mStore->load());
    QCOMPARE(mStore->problems(), QStringList());
    QVariantMap wrong = wrongDocumentNamed(u"edited"_s);
    wrong = SettingsDocument::withMacros(wrong, {1, 2, 3});
    writeFile(filePath(u"settings.plist"_s), dataOf(wrong));
    writeFile(filePath(u"settings.plist.2"_s), "damage");
    for (int line = 0; line < 6; ++line) // four wrong values, the end of the repair, and the damaged copy
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist"_s));
    QVERIFY(mStore->load());
    QCOMPARE(mStore->problems().size(), 2);
    QCOMPARE(toldCount, 2);
    QVERIFY2(mStore->problems().first().startsWith(filePath(u"settings.plist.2 is damaged"_s)),
             qPrintable(mStore->problems().first()));
    const QString repair = mStore->problems().last();
    QVERIFY2(repair.startsWith(filePath(u"settings.plist was repaired"_s)), qPrintable(repair));
    QVERIFY2(repair.contains(u"macro 3 was not a dictionary"_s), qPrintable(repair));
    QVERIFY2(repair.contains(u"and 1 more"_s), qPrintable(repair));
}

void SettingsStoreProblemsTest::reportsTheLatestProblems()
{
    for (int round = 0; round <= SettingsStore::maximumProblems; ++round) {
        writeFile(filePath(u"settings.plist"_s), "damage");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is damaged"_s));
        QVERIFY(!mStore->load());
    }
    QCOMPARE(mStore->problems().size(), SettingsStore::maximumProblems);
    // The names have the time and, within a second, a number.
    const QStringList names = filesMatching(u"settings.plist.damaged-*"_s);
    QCOMPARE(names.size(), SettingsStore::maximumProblems + 1);
    const auto isNamed = [&](const QString &name) {
        return std::ranges::any_of(mStore->problems(), [&](const QString &problem) { return problem.endsWith(name); });
    };
    QCOMPARE(std::ranges::count_if(names, isNamed), SettingsStore::maximumProblems);
}

void SettingsStoreProblemsTest::unreadableFileIsReportedAndLeftAlone_data()
{
    addOddRows({u"settings.plist"_s}, oddKinds);
}

void SettingsStoreProblemsTest::unreadableFileIsReportedAndLeftAlone()
{
    QFETCH(QString, name);
    QFETCH(OddKind, kind);
    for (const QString &each : {u"1"_s, u"2"_s, u"3"_s, u"4"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    QVERIFY(makeOdd(name, kind));
    const auto entries = [&] { return QDir(mFolder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden); };
    const QStringList before = entries();
    const QStringList namesBefore = storedNames();
    mStore.reset();
    SettingsStore store(mFolder);
    const auto opened = store.open();
    QVERIFY(!opened);
    QVERIFY(opened.error().cause == SettingsStore::OpenError::Cause::unusable);
    const QString &message = opened.error().message;
    QVERIFY2(message.startsWith(u"cannot read %1: "_s.arg(filePath(name))), qPrintable(message));
    QCOMPARE(entries(), before);
    QCOMPARE(storedNames(), namesBefore);
}

void SettingsStoreProblemsTest::fileWithoutTheRightToReadIsReported()
{
    QVERIFY(mStore->save(documentNamed(u"mine"_s)));
    mStore.reset();
    QVERIFY(giveToEverybody());
    QVERIFY(setMode(filePath(u"settings.plist"_s), 0));
    const QString outcome = asOrdinaryUser([this] {
        SettingsStore store(mFolder);
        const auto opened = store.open();
        return opened ? u"opened"_s : opened.error().message;
    });
    QCOMPARE(outcome, u"cannot read %1: Permission denied"_s.arg(filePath(u"settings.plist"_s)));
    QVERIFY(setMode(filePath(u"settings.plist"_s), 0600));
    QCOMPARE(storedNames().first(), u"mine"_s);
}

void SettingsStoreProblemsTest::oddCopyIsSetAside_data()
{
    addOddRows({u"settings.plist.0"_s, u"settings.plist.1"_s, u"settings.plist.3"_s}, oddKinds);
}

void SettingsStoreProblemsTest::oddCopyIsSetAside()
{
    QFETCH(QString, name);
    QFETCH(OddKind, kind);
    for (const QString &each : {u"1"_s, u"2"_s, u"3"_s, u"4"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    QVERIFY(makeOdd(name, kind));
    reopen();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name + u" cannot be read .* set aside as "_s));
    QCOMPARE(nameOf(mStore->load()), u"4"_s);
    QCOMPARE(setAsideEntries().size(), 1);
    QVERIFY(isOdd(setAsideEntries().first(), kind));
    QCOMPARE(mStore->problems().size(), 1);
    for (const QString &each : {u"5"_s, u"6"_s, u"7"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    QCOMPARE(storedNames(), QStringList({u"7"_s, u""_s, u"6"_s, u"5"_s, u"4"_s}));
    QCOMPARE(mStore->problems().size(), 1);
}

void SettingsStoreProblemsTest::copyWithoutTheRightToReadIsSetAside()
{
    for (const QString &each : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    mStore.reset();
    QVERIFY(giveToEverybody());
    QVERIFY(setMode(filePath(u"settings.plist.1"_s), 0));
    const QString outcome = asOrdinaryUser([this] {
        SettingsStore store(mFolder);
        if (const auto opened = store.open(); !opened)
            return opened.error().message;
        const QString name = nameOf(store.load());
        const bool isSaved = store.save(documentNamed(u"4"_s)) && store.save(documentNamed(u"5"_s));
        return name + (isSaved ? u", saved"_s : u", not saved"_s) + u", "_s + store.problems().join(u'\n');
    });
    QVERIFY2(outcome.startsWith(u"3, saved, "_s + filePath(u"settings.plist.1 cannot be read (Permission denied)"_s)),
             qPrintable(outcome));
    QCOMPARE(storedNames(), QStringList({u"5"_s, u""_s, u"4"_s, u"3"_s, u"1"_s}));
    QCOMPARE(setAsideEntries().size(), 1);
    QVERIFY(setMode(filePath(setAsideEntries().first()), 0600));
    QCOMPARE(contentOf(setAsideEntries().first()), dataOf(documentNamed(u"2"_s)));
}

void SettingsStoreProblemsTest::newestGoodCopyIsUsedAmongOddOnes()
{
    for (const QString &each : {u"1"_s, u"2"_s, u"3"_s, u"4"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    writeFile(filePath(u"settings.plist"_s), "damage");
    QVERIFY(makeOdd(u"settings.plist.1"_s, OddKind::pipe));
    QVERIFY(makeOdd(u"settings.plist.3"_s, OddKind::folder));
    reopen();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist is damaged"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.1 cannot be read"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.2 is used"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.3 cannot be read"_s));
    QCOMPARE(nameOf(mStore->load()), u"2"_s);
    QCOMPARE(setAsideEntries().size(), 3);
}

void SettingsStoreProblemsTest::oddFileThatAppearsLaterIsSetAside_data()
{
    // Regular files are not read again while the daemon runs.
    addOddRows({u"settings.plist"_s, u"settings.plist.0"_s, u"settings.plist.1"_s, u"settings.plist.2"_s},
               std::span(oddKinds).first(oddKinds.size() - 1));
}

void SettingsStoreProblemsTest::oddFileThatAppearsLaterIsSetAside()
{
    QFETCH(QString, name);
    QFETCH(OddKind, kind);
    for (const QString &each : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(each)));
    QVERIFY(makeOdd(name, kind));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name + u" is not a regular file, set aside as "_s));
    QVERIFY(mStore->save(documentNamed(u"4"_s)));
    QVERIFY(mStore->save(documentNamed(u"5"_s)));
    QCOMPARE(storedNames().first(2), QStringList({u"5"_s, u""_s}));
    QCOMPARE(storedNames().at(2), u"4"_s);
    QCOMPARE(setAsideEntries().size(), 1);
    QVERIFY(isOdd(setAsideEntries().first(), kind));
}

void SettingsStoreProblemsTest::fileThatCannotBeReadLaterIsLeftAlone()
{
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    const QString aside = filePath(u"aside"_s);
    QVERIFY(QFile::rename(filePath(u"settings.plist"_s), aside));
    QVERIFY(QDir().mkdir(filePath(u"settings.plist"_s)));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"settings\\.plist cannot be read .*nothing is saved until"_s));
    QVERIFY(!mStore->load());
    QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
    QVERIFY(QFileInfo(filePath(u"settings.plist"_s)).isDir());
    QVERIFY(QDir().rmdir(filePath(u"settings.plist"_s))); // was moved away
    QVERIFY(mStore->save(documentNamed(u"new"_s)));
    QCOMPARE(storedNames().first(), u"new"_s);
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"aside"_s))), u"old"_s);
}

QTEST_GUILESS_MAIN(SettingsStoreProblemsTest)
#include "settingsstoreproblemstest.moc"
