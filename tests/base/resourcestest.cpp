// SPDX-License-Identifier: MIT
// Where Kestra.plist is when the installation can be written and when it cannot. Rights do not stop the superuser, so
// the cases that need a read-only installation run in a child process without its rights.
#include "base/resources.h"
#include "base/propertylist.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray factoryContent =
    "{ \"Default Settings\" = { installed = yes; }; \"Device Info\" = { \"Last selected key\" = \"\"; }; }";

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ResourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void environmentNamesTheFolder();
    void folderIsBesideTheExecutableByDefault();
    void writableInstallationIsUsedInPlace();
    void readOnlyInstallationIsCopiedForTheUser();
    void copyCanBeReplaced();
    void existingCopyIsKept();
    void damagedCopyIsMadeAnew_data();
    void damagedCopyIsMadeAnew();
    void copyIsNeverHalfWritten();
    void installedFileWhenItIsDamagedItself();
    void readOnlyFileInWritableFolderIsCopied();
    void installedFileWhenNoCopyCanBeMade();

private:
    void setModes(mode_t folderMode, mode_t fileMode) const;

    std::optional<QTemporaryDir> mFolder;
    QString mInstallation;
    QString mInstalledFile;
    QString mUserFolder;
    QString mCopy;
};

void ResourcesTest::init()
{
    mFolder.emplace();
    QVERIFY(mFolder->isValid());
    mInstallation = mFolder->filePath(u"installation"_s);
    mInstalledFile = mInstallation + u"/Kestra.plist"_s;
    mUserFolder = mFolder->filePath(u"user"_s);
    mCopy = mUserFolder + u"/quill-kestra/Kestra.plist"_s;
    QVERIFY(QDir().mkpath(mInstallation) && QDir().mkpath(mUserFolder));
    QVERIFY(PropertyList::writeFileAtomically(mInstalledFile, factoryContent));
    // The ordinary user gets through to both, and may write in the user folder.
    QVERIFY(::chmod(QFile::encodeName(mFolder->path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(mUserFolder).constData(), 0777) == 0);
    qputenv("QUILL_KESTRA_RESOURCES", QFile::encodeName(mInstallation));
    qputenv("XDG_DATA_HOME", QFile::encodeName(mUserFolder));
}

void ResourcesTest::cleanup()
{
    setModes(0755, 0644);
    qunsetenv("QUILL_KESTRA_RESOURCES");
    qunsetenv("XDG_DATA_HOME");
    mFolder.reset();
}

void ResourcesTest::setModes(mode_t folderMode, mode_t fileMode) const
{
    QCOMPARE(::chmod(QFile::encodeName(mInstalledFile).constData(), fileMode), 0);
    QCOMPARE(::chmod(QFile::encodeName(mInstallation).constData(), folderMode), 0);
}

void ResourcesTest::environmentNamesTheFolder()
{
    QCOMPARE(resourceFolder(), mInstallation);
    QCOMPARE(resourcePath(u"help/index.html"_s), mInstallation + u"/help/index.html"_s);
}

void ResourcesTest::folderIsBesideTheExecutableByDefault()
{
    qunsetenv("QUILL_KESTRA_RESOURCES");
    const QDir executableFolder(QCoreApplication::applicationDirPath());
    const QString beside = executableFolder.filePath(u"resources"_s);
    QVERIFY(!QFileInfo::exists(beside)); // tests stand in a folder of their own
    QCOMPARE(resourceFolder(), QDir::cleanPath(executableFolder.filePath(u"../share/quill-kestra"_s)));
    QVERIFY(QDir().mkdir(beside));
    const QString found = resourceFolder();
    QVERIFY(QDir().rmdir(beside));
    QCOMPARE(found, beside);
}

void ResourcesTest::writableInstallationIsUsedInPlace()
{
    QCOMPARE(kestraPlistPath(), mInstalledFile);
    QVERIFY(!QFileInfo::exists(mCopy));
}

void ResourcesTest::readOnlyInstallationIsCopiedForTheUser()
{
    setModes(0555, 0444);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    QCOMPARE(contentOf(mCopy), factoryContent);
    QCOMPARE(contentOf(mInstalledFile), factoryContent);
}

void ResourcesTest::copyCanBeReplaced()
{
    setModes(0555, 0444);
    const QString outcome = asOrdinaryUser([] {
        return PropertyList::writeFileAtomically(kestraPlistPath(), "{ changed = yes; }") ? u"written"_s : u"refused"_s;
    });
    QCOMPARE(outcome, u"written"_s);
    QCOMPARE(contentOf(mCopy), QByteArray("{ changed = yes; }"));
    QCOMPARE(contentOf(mInstalledFile), factoryContent);
}

void ResourcesTest::existingCopyIsKept()
{
    setModes(0555, 0444);
    QVERIFY(QDir().mkpath(QFileInfo(mCopy).path()));
    QVERIFY(PropertyList::writeFileAtomically(mCopy, "{ \"Default Settings\" = { mine = yes; }; }"));
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    QCOMPARE(contentOf(mCopy), QByteArray("{ \"Default Settings\" = { mine = yes; }; }"));
}

void ResourcesTest::damagedCopyIsMadeAnew_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::addColumn<QString>("lastSelectedKey"); // afterwards
    QTest::newRow("empty") << QByteArray() << u""_s;
    QTest::newRow("half") << factoryContent.first(factoryContent.size() / 2) << u""_s;
    QTest::newRow("an array") << QByteArray("( a, b )") << u""_s;
    QTest::newRow("no factory settings") << QByteArray("{ a = b; }") << u""_s;
    QTest::newRow("factory settings of another type") << QByteArray("{ \"Default Settings\" = ( a ); }") << u""_s;
    QTest::newRow("only the last selected key")
        << QByteArray("{ \"Device Info\" = { \"Last selected key\" = \"58\"; }; }") << u"58"_s;
    QTest::newRow("remembered of another type") << QByteArray("{ \"Device Info\" = ( a ); }") << u""_s;
}

void ResourcesTest::damagedCopyIsMadeAnew()
{
    QFETCH(QByteArray, damaged);
    setModes(0555, 0444);
    const QString folder = QFileInfo(mCopy).path();
    QVERIFY(QDir().mkpath(folder));
    QFile file(mCopy);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(damaged) == damaged.size());
    file.close();
    QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0777) == 0);
    QVERIFY(::chmod(QFile::encodeName(mCopy).constData(), 0666) == 0);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    const QVariantMap copy = PropertyList::readPropertyListFile(mCopy).value_or(QVariantMap());
    QCOMPARE(copy.value(u"Default Settings"_s), QVariant(QVariantMap{{u"installed"_s, u"yes"_s}}));
    QTEST(copy.value(u"Device Info"_s).toMap().value(u"Last selected key"_s).toString(), "lastSelectedKey");
}

void ResourcesTest::copyIsNeverHalfWritten()
{
    setModes(0555, 0444);
    const auto onAFullDisk = [] {
        const FileSizeLimit fullDisk(16);
        return kestraPlistPath();
    };
    QCOMPARE(asOrdinaryUser(onAFullDisk), mInstalledFile);
    QCOMPARE(QDir(QFileInfo(mCopy).path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void ResourcesTest::installedFileWhenItIsDamagedItself()
{
    QVERIFY(PropertyList::writeFileAtomically(mInstalledFile, "{ half"));
    setModes(0555, 0444);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mInstalledFile);
    QVERIFY(!QFileInfo::exists(mCopy));
}

void ResourcesTest::readOnlyFileInWritableFolderIsCopied()
{
    setModes(0777, 0444);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
}

void ResourcesTest::installedFileWhenNoCopyCanBeMade()
{
    setModes(0555, 0444);
    QVERIFY(::chmod(QFile::encodeName(mUserFolder).constData(), 0555) == 0);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mInstalledFile);
}

QTEST_GUILESS_MAIN(ResourcesTest)
#include "resourcestest.moc"
