// SPDX-License-Identifier: MIT
// Where Kestra.plist is when the installation can be written and when it cannot. Rights do not stop the superuser, so
// the cases that need a read-only installation run in a child process without its rights.
#include "app/util/resources.h"
#include "app/util/propertylist.h"

#include <QtTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr uid_t unprivilegedUser = 65534; // "nobody"
const QByteArray factoryContent = "{ installed = yes; }";

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What `call` returns in a child process that has an ordinary user's rights; null when the child failed.
template <typename Call> QString asOrdinaryUser(Call call)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        if (::getuid() == 0 && (::setgid(unprivilegedUser) != 0 || ::setuid(unprivilegedUser) != 0))
            ::_exit(2);
        const QByteArray result = QFile::encodeName(call());
        const bool isWhole = ::write(ends[1], result.constData(), size_t(result.size())) == result.size();
        ::_exit(isWhole ? 0 : 3);
    }
    ::close(ends[1]);
    QFile reader;
    QString result;
    if (child > 0 && reader.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        result = QFile::decodeName(reader.readAll());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {};
    return result;
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
    void readOnlyFileInWritableFolderIsCopied();
    void installedFileWhenNoCopyCanBeMade();

private:
    void setModes(mode_t folderMode, mode_t fileMode) const;

    std::optional<QTemporaryDir> m_folder;
    QString m_installation;
    QString m_installedFile;
    QString m_userFolder;
    QString m_copy;
};

void ResourcesTest::init()
{
    m_folder.emplace();
    QVERIFY(m_folder->isValid());
    m_installation = m_folder->filePath(u"installation"_s);
    m_installedFile = m_installation + u"/Kestra.plist"_s;
    m_userFolder = m_folder->filePath(u"user"_s);
    m_copy = m_userFolder + u"/quill-kestra/Kestra.plist"_s;
    QVERIFY(QDir().mkpath(m_installation) && QDir().mkpath(m_userFolder));
    QVERIFY(PropertyList::writeFileAtomically(m_installedFile, factoryContent));
    // The ordinary user gets through to both, and may write in the user folder.
    QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(m_userFolder).constData(), 0777) == 0);
    qputenv("QUILL_KESTRA_RESOURCES", QFile::encodeName(m_installation));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_userFolder));
}

void ResourcesTest::cleanup()
{
    setModes(0755, 0644);
    qunsetenv("QUILL_KESTRA_RESOURCES");
    qunsetenv("XDG_DATA_HOME");
    m_folder.reset();
}

void ResourcesTest::setModes(mode_t folderMode, mode_t fileMode) const
{
    QCOMPARE(::chmod(QFile::encodeName(m_installedFile).constData(), fileMode), 0);
    QCOMPARE(::chmod(QFile::encodeName(m_installation).constData(), folderMode), 0);
}

void ResourcesTest::environmentNamesTheFolder()
{
    QCOMPARE(resourceFolder(), m_installation);
    QCOMPARE(resourcePath(u"help/index.html"_s), m_installation + u"/help/index.html"_s);
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
    QCOMPARE(kestraPlistPath(), m_installedFile);
    QVERIFY(!QFileInfo::exists(m_copy));
}

void ResourcesTest::readOnlyInstallationIsCopiedForTheUser()
{
    setModes(0555, 0444);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), m_copy);
    QCOMPARE(contentOf(m_copy), factoryContent);
    QCOMPARE(contentOf(m_installedFile), factoryContent);
}

void ResourcesTest::copyCanBeReplaced()
{
    setModes(0555, 0444);
    const QString outcome = asOrdinaryUser([] {
        return PropertyList::writeFileAtomically(kestraPlistPath(), "{ changed = yes; }") ? u"written"_s : u"refused"_s;
    });
    QCOMPARE(outcome, u"written"_s);
    QCOMPARE(contentOf(m_copy), QByteArray("{ changed = yes; }"));
    QCOMPARE(contentOf(m_installedFile), factoryContent);
}

void ResourcesTest::existingCopyIsKept()
{
    setModes(0555, 0444);
    QVERIFY(QDir().mkpath(QFileInfo(m_copy).path()));
    QVERIFY(PropertyList::writeFileAtomically(m_copy, "{ mine = yes; }"));
    QCOMPARE(asOrdinaryUser(kestraPlistPath), m_copy);
    QCOMPARE(contentOf(m_copy), QByteArray("{ mine = yes; }"));
}

void ResourcesTest::readOnlyFileInWritableFolderIsCopied()
{
    setModes(0777, 0444);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), m_copy);
}

void ResourcesTest::installedFileWhenNoCopyCanBeMade()
{
    setModes(0555, 0444);
    QVERIFY(::chmod(QFile::encodeName(m_userFolder).constData(), 0555) == 0);
    QCOMPARE(asOrdinaryUser(kestraPlistPath), m_installedFile);
}

QTEST_GUILESS_MAIN(ResourcesTest)
#include "resourcestest.moc"
