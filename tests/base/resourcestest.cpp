// SPDX-License-Identifier: MIT
// The location of Kestra.plist when the installation is writable and when it is not. Permissions do not restrict the
// superuser, so the cases with a read-only installation run in a child process without its rights.
#include "base/resources.h"
#include "base/propertylist.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/ordinaryuser.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

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
    void copyWithTheInstalledSettingsIsKept();
    void copyAdoptsTheSettingsOfAnUpdate_data();
    void copyAdoptsTheSettingsOfAnUpdate();
    void olderCopyIsKeptWhenItCannotBeWritten_data();
    void olderCopyIsKeptWhenItCannotBeWritten();
    void copyIsKeptWhenTheInstalledFileIsDamaged_data();
    void copyIsKeptWhenTheInstalledFileIsDamaged();
    void damagedCopyIsRecreated_data();
    void damagedCopyIsRecreated();
    void copyIsNeverHalfWritten();
    void installedFileIsUsedWhenItIsDamagedItself();
    void readOnlyFileInWritableFolderIsCopied();
    void installedFileIsUsedWhenNoCopyCanBeCreated();

private:
    void setModes(mode_t folderMode, mode_t fileMode) const;
    /// The user's copy, which the ordinary user may replace.
    void makeCopy(const QByteArray &content) const;

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
    // The ordinary user can reach both, and may write in the user folder.
    QVERIFY(::chmod(QFile::encodeName(mFolder->path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(mUserFolder).constData(), 0777) == 0);
    qputenv("QUILL_KESTRA_RESOURCES", QFile::encodeName(mInstallation));
    qputenv("XDG_DATA_HOME", QFile::encodeName(mUserFolder));
}

void ResourcesTest::cleanup()
{
    setModes(0755, 0644);
    ::chmod(QFile::encodeName(QFileInfo(mCopy).path()).constData(), 0777); // some tests have no such folder
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
    QVERIFY(!QFileInfo::exists(beside)); // tests are in a separate folder
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

void ResourcesTest::makeCopy(const QByteArray &content) const
{
    writeFile(mCopy, content);
    QCOMPARE(::chmod(QFile::encodeName(QFileInfo(mCopy).path()).constData(), 0777), 0);
    QCOMPARE(::chmod(QFile::encodeName(mCopy).constData(), 0666), 0);
}

void ResourcesTest::copyWithTheInstalledSettingsIsKept()
{
    const QByteArray copy =
        "{ \"Device Info\" = { \"Last selected key\" = \"58\"; }; \"Default Settings\" = { installed = "
        "yes; }; other = mine; }";
    setModes(0555, 0444);
    makeCopy(copy);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    QCOMPARE(contentOf(mCopy), copy);
}

void ResourcesTest::copyAdoptsTheSettingsOfAnUpdate_data()
{
    QTest::addColumn<QByteArray>("installed");
    const auto xml = [](const QByteArray &value) {
        return "<plist><dict><key>Default Settings</key><dict><key>a</key>" + value + "</dict></dict></plist>";
    };
    QTest::newRow("other value") << xml("<integer>2</integer>");
    QTest::newRow("other type") << xml("<true/>");
    QTest::newRow("one more") << xml("<integer>1</integer><key>b</key><string/>");
    QTest::newRow("none") << QByteArray("{ \"Default Settings\" = {}; }");
}

void ResourcesTest::copyAdoptsTheSettingsOfAnUpdate()
{
    QFETCH(QByteArray, installed);
    writeFile(mInstalledFile, installed);
    setModes(0555, 0444);
    makeCopy("<plist><dict><key>Default Settings</key><dict><key>a</key><integer>1</integer></dict>"
             "<key>Device Info</key><dict><key>Last selected key</key><string>58</string>"
             "<key>other</key><real>1.5</real></dict></dict></plist>");
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    const QVariantMap copy = PropertyList::readPropertyListFile(mCopy).valueOr({});
    const QVariantMap expected = PropertyList::readPropertyListFile(mInstalledFile).valueOr({});
    const QString settings = u"Default Settings"_s;
    QCOMPARE(PropertyList::writeBinary(copy.value(settings)), PropertyList::writeBinary(expected.value(settings)));
    QCOMPARE(copy.value(u"Device Info"_s), QVariant(QVariantMap{{u"Last selected key"_s, u"58"_s}, {u"other"_s, 1.5}}));
    QCOMPARE(contentOf(mInstalledFile), installed);
}

void ResourcesTest::olderCopyIsKeptWhenItCannotBeWritten_data()
{
    QTest::addColumn<bool>("isDiskFull"); // otherwise the folder is read-only
    QTest::newRow("full disk") << true;
    QTest::newRow("read-only folder") << false;
}

void ResourcesTest::olderCopyIsKeptWhenItCannotBeWritten()
{
    QFETCH(bool, isDiskFull);
    const QByteArray older = "{ \"Default Settings\" = { older = yes; }; }";
    setModes(0555, 0444);
    makeCopy(older);
    const QString folder = QFileInfo(mCopy).path();
    if (!isDiskFull)
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0555), 0);
    const auto path = [isDiskFull] {
        std::optional<FileSizeLimit> fullDisk;
        if (isDiskFull)
            fullDisk.emplace(16);
        return kestraPlistPath();
    };
    QCOMPARE(asOrdinaryUser(path), mCopy);
    QCOMPARE(contentOf(mCopy), older);
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"Kestra.plist"_s});
}

void ResourcesTest::copyIsKeptWhenTheInstalledFileIsDamaged_data()
{
    QTest::addColumn<QByteArray>("installed");
    QTest::newRow("half") << factoryContent.first(factoryContent.size() / 2);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no factory settings") << QByteArray("{ a = b; }");
}

void ResourcesTest::copyIsKeptWhenTheInstalledFileIsDamaged()
{
    QFETCH(QByteArray, installed);
    writeFile(mInstalledFile, installed);
    setModes(0555, 0444);
    makeCopy(factoryContent);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    QCOMPARE(contentOf(mCopy), factoryContent);
}

void ResourcesTest::damagedCopyIsRecreated_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::addColumn<QString>("lastSelectedKey"); // expected in the end
    QTest::newRow("empty") << QByteArray() << u""_s;
    QTest::newRow("half") << factoryContent.first(factoryContent.size() / 2) << u""_s;
    QTest::newRow("an array") << QByteArray("( a, b )") << u""_s;
    QTest::newRow("no factory settings") << QByteArray("{ a = b; }") << u""_s;
    QTest::newRow("factory settings of another type") << QByteArray("{ \"Default Settings\" = ( a ); }") << u""_s;
    QTest::newRow("only the last selected key")
        << QByteArray("{ \"Device Info\" = { \"Last selected key\" = \"58\"; }; }") << u"58"_s;
    QTest::newRow("remembered of another type") << QByteArray("{ \"Device Info\" = ( a ); }") << u""_s;
}

void ResourcesTest::damagedCopyIsRecreated()
{
    QFETCH(QByteArray, damaged);
    setModes(0555, 0444);
    makeCopy(damaged);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mCopy);
    const QVariantMap copy = PropertyList::readPropertyListFile(mCopy).valueOr({});
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

void ResourcesTest::installedFileIsUsedWhenItIsDamagedItself()
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

void ResourcesTest::installedFileIsUsedWhenNoCopyCanBeCreated()
{
    setModes(0555, 0444);
    QVERIFY(::chmod(QFile::encodeName(mUserFolder).constData(), 0555) == 0);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), mInstalledFile);
}

QTEST_GUILESS_MAIN(ResourcesTest)
#include "resourcestest.moc"
