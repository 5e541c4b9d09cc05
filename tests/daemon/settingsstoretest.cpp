// SPDX-License-Identifier: MIT
#include "daemon/settingsstore.h"
#include "app/util/qlcoreutility.h"
#include "daemon/settingsdocument.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <optional>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

QVariantMap documentNamed(const QString &profileName)
{
    QVariantMap document = SettingsDocument::minimal();
    return SettingsDocument::withProfiles(document,
                                          {QVariantMap{{u"ProfileName"_s, profileName}, {u"Keys"_s, QVariantMap()}}});
}

QString nameOf(const std::optional<QVariantMap> &document)
{
    return document ? SettingsDocument::profiles(*document).first().toMap().value(u"ProfileName"_s).toString()
                    : QString();
}

/// While it lives, no file of this process can grow beyond `bytes`: a full disk, as the code sees it.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        mOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &mOld);
        const rlimit limit{bytes, mOld.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &mOld);
        std::signal(SIGXFSZ, mOldHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit mOld{};
    void (*mOldHandler)(int) = SIG_DFL;
};

} // namespace

class SettingsStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void emptyFolderHasNoDocument();
    void loadsWhatWasSaved();
    void keepsTheLastGoodCopies();
    void setsDamagedFileAsideAndUsesNewestCopy_data();
    void setsDamagedFileAsideAndUsesNewestCopy();
    void damagedFilesAreNeverOverwritten();
    void allDamagedMeansNoDocument();
    void missingFileUsesNewestCopy();
    void interruptedReplacementIsFound();
    void fullDiskLeavesEverythingAsItWas();
    void fullDiskKeepsTheCopyInUse();
    void leftOversOfAKilledWriterAreRemoved();
    void folderIsUsedByOneDaemonOnly();
    void folderThatCannotBeMadeIsReported();
    void folderIsForTheUserOnly();
    void defaultFolderFollowsTheEnvironment_data();
    void defaultFolderFollowsTheEnvironment();
    void refusesWhatHasNoPropertyListForm();

private:
    [[nodiscard]] QString filePath(const QString &name) const { return mFolder + u'/' + name; }
    [[nodiscard]] QStringList filesMatching(const QString &pattern) const
    {
        return QDir(mFolder).entryList({pattern}, QDir::Files);
    }
    [[nodiscard]] QByteArray contentOf(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    void reopen();

    std::optional<QTemporaryDir> mTemporary;
    QString mFolder;
    std::unique_ptr<SettingsStore> mStore;
};

void SettingsStoreTest::init()
{
    mTemporary.emplace();
    mFolder = mTemporary->filePath(u"state/quill-kestra"_s);
    reopen();
}

void SettingsStoreTest::cleanup()
{
    mStore.reset();
    mTemporary.reset();
}

void SettingsStoreTest::reopen()
{
    mStore.reset();
    mStore = std::make_unique<SettingsStore>(mFolder);
    QCOMPARE(mStore->open(), SettingsStore::OpenResult::open);
}

QByteArray SettingsStoreTest::contentOf(const QString &name) const
{
    QFile file(filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SettingsStoreTest::write(const QString &name, const QByteArray &content) const
{
    QFile file(filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

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

void SettingsStoreTest::setsDamagedFileAsideAndUsesNewestCopy_data()
{
    QTest::addColumn<QByteArray>("damage");
    const QByteArray good = QlCoreUtility::convertDictionaryToData(documentNamed(u"x"_s)).value();
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half") << good.first(good.size() / 2);
    QTest::newRow("no trailer") << good.chopped(1);
    QTest::newRow("zeros") << QByteArray(good.size(), '\0');
    QTest::newRow("text") << QByteArray("not a property list");
    QTest::newRow("another property list") << QlCoreUtility::convertDictionaryToData(QVariantMap{{u"a"_s, 1}}).value();
}

void SettingsStoreTest::setsDamagedFileAsideAndUsesNewestCopy()
{
    QFETCH(QByteArray, damage);
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    QVERIFY(mStore->save(documentNamed(u"new"_s)));
    write(u"settings.plist"_s, damage);
    reopen();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist is damaged .* set aside as"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"the copy .*settings\\.plist\\.1 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"old"_s);
    const QStringList damaged = filesMatching(u"settings.plist.damaged-*"_s);
    QCOMPARE(damaged.size(), 1);
    QVERIFY(QRegularExpression(u"^settings\\.plist\\.damaged-\\d{8}T\\d{6}Z$"_s).match(damaged.first()).hasMatch());
    QCOMPARE(contentOf(damaged.first()), damage);
    // Goes on from there, and the copy that was in use stays a copy.
    QVERIFY(mStore->save(documentNamed(u"newer"_s)));
    reopen();
    QCOMPARE(nameOf(mStore->load()), u"newer"_s);
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"old"_s);
    QCOMPARE(contentOf(damaged.first()), damage);
}

void SettingsStoreTest::damagedFilesAreNeverOverwritten()
{
    for (int round = 0; round < 3; ++round) {
        write(u"settings.plist"_s, QByteArray("damage ") + QByteArray::number(round));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
        QVERIFY(!mStore->load());
    }
    QStringList contents;
    for (const QString &name : filesMatching(u"settings.plist.damaged-*"_s))
        contents += QString::fromLatin1(contentOf(name));
    contents.sort();
    QCOMPARE(contents, QStringList({u"damage 0"_s, u"damage 1"_s, u"damage 2"_s}));
}

void SettingsStoreTest::allDamagedMeansNoDocument()
{
    for (const QString &name : {u"settings.plist"_s, u"settings.plist.1"_s, u"settings.plist.3"_s}) {
        write(name, "damage");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
    }
    QVERIFY(!mStore->load());
    QCOMPARE(filesMatching(u"settings.plist.damaged-*"_s).size(), 3);
    QVERIFY(mStore->save(documentNamed(u"fresh"_s)));
    QCOMPARE(nameOf(mStore->load()), u"fresh"_s);
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
    // As a crash leaves it between the second name for the old document and the copies' renaming, with the new one
    // damaged.
    QVERIFY(mStore->save(documentNamed(u"old"_s)));
    QVERIFY(QFile::rename(filePath(u"settings.plist"_s), filePath(u"settings.plist.0"_s)));
    write(u"settings.plist"_s, "damage");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"settings\\.plist\\.0 is used"_s));
    QCOMPARE(nameOf(mStore->load()), u"old"_s);
    QVERIFY(mStore->save(documentNamed(u"new"_s)));
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"old"_s);
    QVERIFY(!QFile::exists(filePath(u"settings.plist.0"_s)));
}

void SettingsStoreTest::fullDiskLeavesEverythingAsItWas()
{
    for (const QString &name : {u"1"_s, u"2"_s, u"3"_s})
        QVERIFY(mStore->save(documentNamed(name)));
    const QStringList before = filesMatching(u"*"_s);
    {
        const FileSizeLimit fullDisk(16);
        for (int attempt = 0; attempt < 5; ++attempt) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write"_s));
            QVERIFY(!mStore->save(documentNamed(u"lost"_s)));
        }
    }
    QCOMPARE(filesMatching(u"*"_s), before);
    QCOMPARE(nameOf(mStore->load()), u"3"_s);
    QCOMPARE(nameOf(QlCoreUtility::convertDataToDictionary(contentOf(u"settings.plist.1"_s))), u"2"_s);
    QVERIFY(mStore->save(documentNamed(u"4"_s))); // there is room again
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
    write(u"settings.plist.aBcDeF"_s, "half a docu");
    write(u"settings.plist.damaged-20250101T000000Z"_s, "kept");
    write(u"notes.txt"_s, "kept");
    reopen();
    QVERIFY(!QFile::exists(filePath(u"settings.plist.aBcDeF"_s)));
    QVERIFY(QFile::exists(filePath(u"settings.plist.damaged-20250101T000000Z"_s)));
    QVERIFY(QFile::exists(filePath(u"notes.txt"_s)));
    QCOMPARE(nameOf(mStore->load()), u"1"_s);
}

void SettingsStoreTest::folderIsUsedByOneDaemonOnly()
{
    SettingsStore second(mFolder);
    QCOMPARE(second.open(), SettingsStore::OpenResult::inUse);
    QVERIFY(second.errorText().contains(mFolder));
    mStore.reset();
    SettingsStore third(mFolder);
    QCOMPARE(third.open(), SettingsStore::OpenResult::open);
}

void SettingsStoreTest::folderThatCannotBeMadeIsReported()
{
    write(u"file"_s, "in the way");
    SettingsStore store(filePath(u"file/below"_s));
    QCOMPARE(store.open(), SettingsStore::OpenResult::unusable);
    QVERIFY(!store.errorText().isEmpty());
}

void SettingsStoreTest::folderIsForTheUserOnly()
{
    const QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(!(QFile::permissions(mFolder) & others));
}

void SettingsStoreTest::defaultFolderFollowsTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("stateHome");
    QTest::addColumn<QString>("folder");
    QTest::newRow("set") << QByteArray("/somewhere/state") << u"/somewhere/state/quill-kestra"_s;
    QTest::newRow("not set") << QByteArray() << QDir::home().filePath(u".local/state/quill-kestra"_s);
    QTest::newRow("relative") << QByteArray("state") << QDir::home().filePath(u".local/state/quill-kestra"_s);
}

void SettingsStoreTest::defaultFolderFollowsTheEnvironment()
{
    QFETCH(QByteArray, stateHome);
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", stateHome);
    const QString folder = SettingsStore::defaultFolder();
    qputenv("XDG_STATE_HOME", before);
    QTEST(folder, "folder");
}

void SettingsStoreTest::refusesWhatHasNoPropertyListForm()
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
