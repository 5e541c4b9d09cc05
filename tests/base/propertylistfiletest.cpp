// SPDX-License-Identifier: MIT
#include "base/propertylist.h"
#include "tests/support/folderflushfailure.h"
#include "tests/support/fulldocument.h"
#include "tests/support/pipeatopening.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QtTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Why the file cannot be read; empty if it can.
QString reasonNotToRead(const QString &path)
{
    const Result<QByteArray> bytes = PropertyList::readFileBytes(path);
    return bytes ? QString() : bytes.error().message;
}

} // namespace

class PropertyListFileTest : public QObject
{
    Q_OBJECT

private slots:
    void writtenFileIsRead();
    void readsEveryForm();
    void missingFileIsAbsent();
    void folderIsAbsent();
    void otherRootIsAbsent();
    void emptyFileIsAbsent();
    void tooLargeFileIsAbsent();
    void readsOnlyARegularFile();
    void doesNotWaitForAPipeInItsPlace();
    void opensNoOtherFileForANameWithANull();
    void replacesFileByANewOne();
    void keepsOldFileWhenWritingFails();
    void leavesNothingElseInTheFolder();
    void followsSymbolicLinks();
    void writesIntoNoMissingFolder();
    void writingFailsWithoutAFlushOfTheFolder_data();
    void writingFailsWithoutAFlushOfTheFolder();
    void allocatesMemoryForTheContentOnly();
    void reportsWhyAFileCannotBeRead();
    void reportsWhyADictionaryCannotBeWritten();

private:
    QString inFolder(const QString &name) const { return mFolder.filePath(name); }

    QTemporaryDir mFolder;
};

void PropertyListFileTest::writtenFileIsRead()
{
    const QVariantMap document = fullDocument();
    QVERIFY(PropertyList::writePropertyListFile(inFolder(u"full.plist"_s), document));
    QCOMPARE(PropertyList::readPropertyListFile(inFolder(u"full.plist"_s)).valueOr({}), document);
}

void PropertyListFileTest::readsEveryForm()
{
    writeFile(inFolder(u"xml"_s), "<plist version=\"1.0\"><dict><key>a</key><string>b</string></dict></plist>");
    writeFile(inFolder(u"text"_s), "{ a = b; }");
    const QVariantMap expected{{u"a"_s, u"b"_s}};
    QCOMPARE(PropertyList::readPropertyListFile(inFolder(u"xml"_s)).valueOr({}), expected);
    QCOMPARE(PropertyList::readPropertyListFile(inFolder(u"text"_s)).valueOr({}), expected);
}

void PropertyListFileTest::missingFileIsAbsent()
{
    const auto read = PropertyList::readPropertyListFile(inFolder(u"missing"_s));
    QVERIFY(!read);
    QCOMPARE(read.error().cause, PropertyList::ReadError::Cause::unreadable);
    QCOMPARE(read.error().message, u"No such file or directory"_s);
}

void PropertyListFileTest::folderIsAbsent()
{
    QVERIFY(!PropertyList::readPropertyListFile(mFolder.path()));
}

void PropertyListFileTest::otherRootIsAbsent()
{
    QVERIFY(
        PropertyList::writeFileAtomically(inFolder(u"array"_s), PropertyList::writeBinary(QVariantList{1}).value()));
    const auto read = PropertyList::readPropertyListFile(inFolder(u"array"_s));
    QVERIFY(!read);
    QCOMPARE(read.error().cause, PropertyList::ReadError::Cause::noDictionary);
}

void PropertyListFileTest::emptyFileIsAbsent()
{
    writeFile(inFolder(u"empty"_s), "");
    QVERIFY(!PropertyList::readPropertyListFile(inFolder(u"empty"_s)));
}

void PropertyListFileTest::tooLargeFileIsAbsent()
{
    const QByteArray text = "{ a = b; }";
    writeFile(inFolder(u"largest"_s), text + QByteArray(PropertyList::maximumInputBytes - text.size(), ' '));
    QVERIFY(PropertyList::readPropertyListFile(inFolder(u"largest"_s)));
    writeFile(inFolder(u"larger"_s), text + QByteArray(PropertyList::maximumInputBytes - text.size() + 1, ' '));
    QVERIFY(!PropertyList::readPropertyListFile(inFolder(u"larger"_s)));
}

void PropertyListFileTest::readsOnlyARegularFile()
{
    const QString pipe = inFolder(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &path : {u"/dev/zero"_s, pipe}) { // reading would never end, or wait for a writer
        QCOMPARE(reasonNotToRead(path), u"Not a regular file"_s);
        QVERIFY(!PropertyList::readPropertyListFile(path));
    }
    QVERIFY(QFile::link(inFolder(u"linked"_s), inFolder(u"link to it"_s)));
    writeFile(inFolder(u"linked"_s), "{ a = b; }");
    QVERIFY(PropertyList::readPropertyListFile(inFolder(u"link to it"_s)));
}

// The file may be replaced at any moment, even between two calls of the reader.
void PropertyListFileTest::doesNotWaitForAPipeInItsPlace()
{
    const QString path = inFolder(u"becomes a pipe"_s);
    writeFile(path, "{ a = b; }");
    const PipeAtOpening pipe(path);
    QCOMPARE(reasonNotToRead(path), u"Not a regular file"_s);
    QVERIFY(pipe.wasOpened());
    QVERIFY(!pipe.hasWaited());
}

void PropertyListFileTest::opensNoOtherFileForANameWithANull()
{
    writeFile(inFolder(u"name"_s), "{ a = b; }");
    QVERIFY(!PropertyList::readFileBytes(inFolder(u"name"_s) + QChar(QChar::Null) + u".plist"_s));
}

void PropertyListFileTest::replacesFileByANewOne()
{
    const QString path = inFolder(u"replaced"_s);
    QVERIFY(PropertyList::writeFileAtomically(path, "old"));
    QFile reader(path); // a reader that has already opened the file keeps the old content
    QVERIFY(reader.open(QIODevice::ReadOnly));
    QVERIFY(PropertyList::writeFileAtomically(path, "new content"));
    QCOMPARE(reader.readAll(), QByteArray("old"));
    QFile again(path);
    QVERIFY(again.open(QIODevice::ReadOnly));
    QCOMPARE(again.readAll(), QByteArray("new content"));
}

void PropertyListFileTest::keepsOldFileWhenWritingFails()
{
    // A folder takes the place of the file; this fails for every user.
    const QString path = inFolder(u"folder"_s);
    QVERIFY(QDir().mkpath(path + u"/inside"_s));
    QVERIFY(!PropertyList::writeFileAtomically(path, "data"));
    QVERIFY(QFileInfo::exists(path + u"/inside"_s));
    QVERIFY(!PropertyList::writeFileAtomically(u"/dev/full/file"_s, "data"));
}

void PropertyListFileTest::leavesNothingElseInTheFolder()
{
    const QTemporaryDir folder;
    QVERIFY(PropertyList::writeFileAtomically(folder.filePath(u"a"_s), "1"));
    QVERIFY(PropertyList::writeFileAtomically(folder.filePath(u"a"_s), "2"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"a"_s});
}

void PropertyListFileTest::followsSymbolicLinks()
{
    const QString target = inFolder(u"target"_s);
    const QString link = inFolder(u"link"_s);
    QVERIFY(PropertyList::writeFileAtomically(target, "old"));
    QVERIFY(QFile::link(target, link));
    QVERIFY(PropertyList::writeFileAtomically(link, "new"));
    QVERIFY(QFileInfo(link).isSymbolicLink());
    QFile file(target);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("new"));
}

void PropertyListFileTest::writesIntoNoMissingFolder()
{
    const Result<void> written = PropertyList::writeFileAtomically(inFolder(u"none/file"_s), "data");
    QVERIFY(!written);
    QVERIFY(written.error().message.contains(u"No such file"_s));
    QVERIFY(!QFileInfo::exists(inFolder(u"none"_s)));
}

void PropertyListFileTest::writingFailsWithoutAFlushOfTheFolder_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("isWritten");
    QTest::newRow("input/output error") << EIO << false;
    QTest::newRow("no space") << ENOSPC << false;
    QTest::newRow("over the quota") << EDQUOT << false;
    QTest::newRow("read-only") << EROFS << false;
    QTest::newRow("the file system does not flush folders") << EINVAL << true;
    QTest::newRow("the file system knows no flushing") << ENOTSUP << true;
}

void PropertyListFileTest::writingFailsWithoutAFlushOfTheFolder()
{
    QFETCH(int, error);
    const FolderFlushFailure failure(error);
    const Result<void> written = PropertyList::writeFileAtomically(inFolder(u"flushed"_s), "data");
    QTEST(bool(written), "isWritten");
    QCOMPARE(written ? QString() : written.error().message, written ? QString() : qt_error_string(error));
    QCOMPARE(failure.count(), 1);
}

void PropertyListFileTest::allocatesMemoryForTheContentOnly()
{
    writeFile(inFolder(u"small"_s), "{ a = b; }");
    const Result<QByteArray> small = PropertyList::readFileBytes(inFolder(u"small"_s));
    QVERIFY(small && small->capacity() < 1024 * 1024);
    const QByteArray large(300'000, 'a'); // more than one read returns
    writeFile(inFolder(u"large"_s), large);
    QCOMPARE(PropertyList::readFileBytes(inFolder(u"large"_s)).valueOr({}), large);
}

void PropertyListFileTest::reportsWhyAFileCannotBeRead()
{
    writeFile(inFolder(u"readable"_s), "{ a = b; }");
    const Result<QByteArray> bytes = PropertyList::readFileBytes(inFolder(u"readable"_s));
    QVERIFY(bytes);
    QCOMPARE(*bytes, QByteArray("{ a = b; }"));
    QVERIFY(reasonNotToRead(inFolder(u"missing"_s)).contains(u"No such file"_s));
    QVERIFY(reasonNotToRead(mFolder.path()).contains(u"Is a directory"_s));
    // The first page of a process is never mapped.
    QVERIFY(reasonNotToRead(u"/proc/self/mem"_s).contains(u"Input/output error"_s));
}

void PropertyListFileTest::reportsWhyADictionaryCannotBeWritten()
{
    const Result<void> written = PropertyList::writePropertyListFile(inFolder(u"none/file"_s), {});
    QVERIFY(!written);
    QCOMPARE(written.error().message, u"No such file or directory"_s);
    const QVariantMap unknownType{{u"a"_s, QVariant::fromValue(QPoint())}};
    const Result<void> encoded = PropertyList::writePropertyListFile(inFolder(u"file"_s), unknownType);
    QVERIFY(!encoded);
    QCOMPARE(encoded.error().message, u"its contents exceed the limits of a property list"_s);
    QVERIFY(!QFile::exists(inFolder(u"file"_s)));
}

QTEST_GUILESS_MAIN(PropertyListFileTest)
#include "propertylistfiletest.moc"
