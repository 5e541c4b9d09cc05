// SPDX-License-Identifier: MIT
#include "daemon/keyboards/devicechoice.h"
#include "tests/support/filemode.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <memory>

using namespace Qt::StringLiterals;

class DeviceChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mFolder = std::make_unique<QTemporaryDir>(); }
    void cleanup() { mFolder.reset(); }

    void noFileMeansNoChoice();
    void choiceIsReadUnchanged();
    void releaseIsAlsoStored();
    void fileIsForTheUserOnly();
    void nothingIsWrittenWhenNothingChanges();
    void unknownKeysAreKept();
    void damagedFileIsSetAside_data();
    void damagedFileIsSetAside();
    void unreadableFileIsLeftAlone();
    void linkWithoutItsFileIsLeftAlone();
    void fullDiskLeavesTheOldChoice();

private:
    QString path() const { return mFolder->filePath(u"devices.plist"_s); }
    QStringList files() const
    {
        return QDir(mFolder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }
    QList<ChosenDevice> loaded() const { return DeviceChoice(mFolder->path()).load(); }

    const QList<ChosenDevice> mTwo{{.vendor = 0xffff, .product = 0, .serial = u"Nº \"7\""_s, .path = {}},
                                   {.vendor = 1, .product = 2, .serial = {}, .path = u"pci-0000:00:14.0-usb-0:2"_s}};
    std::unique_ptr<QTemporaryDir> mFolder;
};

void DeviceChoiceTest::noFileMeansNoChoice()
{
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.load().isEmpty());
    QVERIFY(choice.save({}));
    QCOMPARE(files(), QStringList());
}

void DeviceChoiceTest::choiceIsReadUnchanged()
{
    QVERIFY(DeviceChoice(mFolder->path()).save(mTwo));
    QCOMPARE(loaded(), mTwo);
    QCOMPARE(files(), QStringList{u"devices.plist"_s});
}

void DeviceChoiceTest::releaseIsAlsoStored()
{
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.save(mTwo));
    QVERIFY(choice.save({}));
    QVERIFY(QFile::exists(path()));
    QVERIFY(loaded().isEmpty());
}

void DeviceChoiceTest::fileIsForTheUserOnly()
{
    DeviceChoice choice(mFolder->path());
    const mode_t before = ::umask(0);
    const bool isSaved = choice.save(mTwo);
    ::umask(before);
    QVERIFY(isSaved);
    QCOMPARE(modeOf(path()), 0600);
}

void DeviceChoiceTest::nothingIsWrittenWhenNothingChanges()
{
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.save(mTwo));
    struct stat before = {};
    QCOMPARE(::stat(QFile::encodeName(path()).constData(), &before), 0);
    QVERIFY(choice.save(mTwo));
    struct stat after = {};
    QCOMPARE(::stat(QFile::encodeName(path()).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QVERIFY(QFile::remove(path()));
    QVERIFY(choice.save(mTwo)); // the file was removed from outside
    QCOMPARE(loaded(), mTwo);
}

void DeviceChoiceTest::unknownKeysAreKept()
{
    QVERIFY(DeviceChoice(mFolder->path()).save(mTwo));
    QVariantMap root = PropertyList::readPropertyListFile(path()).valueOr({});
    root.insert(u"Later"_s, 5);
    QVariantList devices = root.value(u"Devices"_s).toList();
    QVariantMap first = devices.at(0).toMap();
    first.insert(u"Nickname"_s, u"left"_s);
    devices[0] = first;
    root.insert(u"Devices"_s, devices);
    writeFile(path(), PropertyList::writeBinary(root).value_or(QByteArray()));

    DeviceChoice choice(mFolder->path());
    QCOMPARE(choice.load(), mTwo);
    QVERIFY(choice.save({mTwo.at(1), mTwo.at(0)}));
    root = PropertyList::readPropertyListFile(path()).valueOr({});
    QCOMPARE(root.value(u"Later"_s), QVariant(5));
    devices = root.value(u"Devices"_s).toList();
    QCOMPARE(devices.size(), 2);
    QVERIFY(!devices.at(0).toMap().contains(u"Nickname"_s));
    QCOMPARE(devices.at(1).toMap().value(u"Nickname"_s), QVariant(u"left"_s));
}

void DeviceChoiceTest::damagedFileIsSetAside_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto file = [](const QVariant &root) { return PropertyList::writeBinary(root).value_or(QByteArray()); };
    const auto entry = [&](const QVariant &vendor, const QVariant &serial) {
        return file(
            QVariantMap{{u"Devices"_s,
                         QVariantList{QVariantMap{
                             {u"Vendor"_s, vendor}, {u"Product"_s, 2}, {u"Serial"_s, serial}, {u"Path"_s, u"p"_s}}}}});
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no property list") << QByteArray("keyboards!");
    QTest::newRow("cut off") << entry(1, u"S"_s).chopped(9);
    QTest::newRow("no dictionary") << file(QVariantList{1});
    QTest::newRow("no devices") << file(QVariantMap{{u"Device"_s, QVariantList()}});
    QTest::newRow("devices of another type") << file(QVariantMap{{u"Devices"_s, u"1"_s}});
    QTest::newRow("device of another type") << file(QVariantMap{{u"Devices"_s, QVariantList{1}}});
    QTest::newRow("vendor too large") << entry(65536, u"S"_s);
    QTest::newRow("vendor negative") << entry(-1, u"S"_s);
    QTest::newRow("vendor as text") << entry(u"1"_s, u"S"_s);
    QTest::newRow("serial as number") << entry(1, 5);
    QTest::newRow("no serial") << file(QVariantMap{
        {u"Devices"_s, QVariantList{QVariantMap{{u"Vendor"_s, 1}, {u"Product"_s, 2}, {u"Path"_s, u"p"_s}}}}});
}

void DeviceChoiceTest::damagedFileIsSetAside()
{
    QFETCH(QByteArray, content);
    writeFile(path(), content);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"devices.plist is damaged, set aside as"_s));
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.load().isEmpty());
    QCOMPARE(files().size(), 1);
    QVERIFY2(files().first().startsWith(u"devices.plist.damaged-"_s), qPrintable(files().first()));
    QFile aside(mFolder->filePath(files().first()));
    QVERIFY(aside.open(QIODevice::ReadOnly));
    QCOMPARE(aside.readAll(), content);
    QVERIFY(choice.save(mTwo));
    QCOMPARE(loaded(), mTwo);
    QCOMPARE(files().size(), 2);
}

void DeviceChoiceTest::unreadableFileIsLeftAlone()
{
    QVERIFY(QDir().mkdir(path())); // no process can read a folder as a file, not even the superuser's
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot read .*devices.plist"_s));
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.load().isEmpty());
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"in the way"_s));
    QVERIFY(!choice.save(mTwo));
    QCOMPARE(files(), QStringList{u"devices.plist"_s});
    QVERIFY(QDir().rmdir(path()));
    QVERIFY(choice.save(mTwo));
    QCOMPARE(loaded(), mTwo);
}

void DeviceChoiceTest::linkWithoutItsFileIsLeftAlone()
{
    const QString target = mFolder->filePath(u"disk/devices.plist"_s);
    QVERIFY(QFile::link(target, path()));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot read .*devices.plist"_s));
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.load().isEmpty());
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"in the way"_s));
    QVERIFY(!choice.save(mTwo));
    QCOMPARE(QFile::symLinkTarget(path()), target);
}

void DeviceChoiceTest::fullDiskLeavesTheOldChoice()
{
    DeviceChoice choice(mFolder->path());
    QVERIFY(choice.save({mTwo.at(0)}));
    {
        const FileSizeLimit limit(20);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"cannot write .*devices.plist"_s));
        QVERIFY(!choice.save(mTwo));
    }
    QCOMPARE(loaded(), QList<ChosenDevice>{mTwo.at(0)});
    QCOMPARE(files(), QStringList{u"devices.plist"_s});
    QVERIFY(choice.save(mTwo)); // the choice has not mistaken it for the one on disk
    QCOMPARE(loaded(), mTwo);
}

QTEST_GUILESS_MAIN(DeviceChoiceTest)
#include "devicechoicetest.moc"
