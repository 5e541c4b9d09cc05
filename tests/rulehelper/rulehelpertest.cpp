// SPDX-License-Identifier: MIT
#include "base/devicekeys.h"
#include "base/devicerule.h"
#include "rulehelper/systemservices.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class RuleHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void takesAnEventDeviceAlone_data();
    void takesAnEventDeviceAlone();
    void readsTheRequest();
    void numbersInputDevicesAlone_data();
    void numbersInputDevicesAlone();
    void followsNoLinkToTheFolder();
    void installsTheRuleOfTheKeyboard();
    void installsItAgain();
    void keepsTheRulesOfOtherKeyboards();
    void removesTheRule();
    void removesWhatIsNotThere();
    void refusesAKeyboardWithoutNumbers();
    void refusesADeviceThatWasReplaced_data();
    void refusesADeviceThatWasReplaced();
    void refusesWhatTheSystemRefuses();
    void doesNotWriteThroughALink();
    void reportsAFolderThatCannotBeWritten();
    void reportsWhatUdevSays();

private:
    [[nodiscard]] Result<void> run(bool isRemoval = false);
    [[nodiscard]] QStringList files() const;
    [[nodiscard]] QString rulePath() const;

    std::unique_ptr<QTemporaryDir> mFolder;
    RuleHelper::Keyboard mKeyboard;
    RuleHelper::Services mServices;
    QList<dev_t> mNumbers; // answers in turn; the last one stays
    QStringList mApplied;
};

namespace {

const dev_t numberOfNode = makedev(13, 71);

} // namespace

void RuleHelperTest::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    mKeyboard = {
        .device = {{DeviceKeys::vendor, 0x1b2cU}, {DeviceKeys::product, 0xafU}, {DeviceKeys::serial, u"AB-12"_s}},
        .systemPath = u"/sys/devices/usb1/1-2/input/input7/event7"_s,
        .wholePath = u"/sys/devices/usb1/1-2"_s};
    mNumbers = {numberOfNode};
    mApplied.clear();
    mServices = {.numberOf = [this](const QByteArray &node) -> Result<dev_t> {
                     if (node != "event7")
                         return Error{u"no such device"_s};
                     return mNumbers.size() > 1 ? mNumbers.takeFirst() : mNumbers.first();
                 },
                 .keyboardOf = [this](dev_t number) -> Result<RuleHelper::Keyboard> {
                     if (number != numberOfNode)
                         return Error{u"not a keyboard"_s};
                     return mKeyboard;
                 },
                 .apply = [this](const RuleHelper::Keyboard &keyboard, bool isGranted) -> Result<void> {
                     mApplied += keyboard.wholePath + (isGranted ? " granted"_L1 : " revoked"_L1);
                     return {};
                 },
                 .rulesFolder = mFolder->path()};
}

void RuleHelperTest::cleanup()
{
    mFolder.reset();
}

Result<void> RuleHelperTest::run(bool isRemoval)
{
    return RuleHelper::carryOut({.node = "event7", .isRemoval = isRemoval}, mServices);
}

QStringList RuleHelperTest::files() const
{
    return QDir(mFolder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QString RuleHelperTest::rulePath() const
{
    return mFolder->filePath(deviceRuleFileName(mKeyboard.device).value());
}

void RuleHelperTest::takesAnEventDeviceAlone_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString node = u"/dev/input/event7"_s;
    QTest::newRow("none") << QStringList();
    QTest::newRow("empty") << QStringList{QString()};
    QTest::newRow("two") << QStringList{node, node};
    QTest::newRow("remove alone") << QStringList{u"--remove"_s};
    QTest::newRow("remove twice") << QStringList{u"--remove"_s, u"--remove"_s};
    QTest::newRow("remove last") << QStringList{node, u"--remove"_s};
    QTest::newRow("remove and two") << QStringList{u"--remove"_s, node, node};
    QTest::newRow("another option") << QStringList{u"--help"_s};
    QTest::newRow("no number") << QStringList{u"/dev/input/event"_s};
    QTest::newRow("letters") << QStringList{u"/dev/input/event7a"_s};
    QTest::newRow("sign") << QStringList{u"/dev/input/event+7"_s};
    QTest::newRow("leading zero") << QStringList{u"/dev/input/event07"_s};
    QTest::newRow("long number") << QStringList{u"/dev/input/event123456"_s};
    QTest::newRow("other digits") << QStringList{u"/dev/input/event٧"_s};
    QTest::newRow("space") << QStringList{u"/dev/input/event7 "_s};
    QTest::newRow("end of line") << QStringList{u"/dev/input/event7\n"_s};
    QTest::newRow("zero") << QStringList{u"/dev/input/event7"_s + QChar(0)};
    QTest::newRow("quote") << QStringList{u"/dev/input/event7\", RUN+=\"/bin/evil"_s};
    QTest::newRow("way up") << QStringList{u"/dev/input/../input/event7"_s};
    QTest::newRow("below") << QStringList{u"/dev/input/event7/x"_s};
    QTest::newRow("link by id") << QStringList{u"/dev/input/by-id/event7"_s};
    QTest::newRow("another folder") << QStringList{u"/tmp/event7"_s};
    QTest::newRow("relative") << QStringList{u"dev/input/event7"_s};
    QTest::newRow("two slashes") << QStringList{u"//dev/input/event7"_s};
}

void RuleHelperTest::takesAnEventDeviceAlone()
{
    QFETCH(QStringList, arguments);
    const Result<RuleHelper::Request> request = RuleHelper::requestOf(arguments);
    QVERIFY(!request);
    QVERIFY(!request.error().message.isEmpty());
}

void RuleHelperTest::readsTheRequest()
{
    const Result<RuleHelper::Request> grant = RuleHelper::requestOf({u"/dev/input/event0"_s});
    QVERIFY(grant);
    QCOMPARE(grant->node, "event0");
    QVERIFY(!grant->isRemoval);
    const Result<RuleHelper::Request> removal = RuleHelper::requestOf({u"--remove"_s, u"/dev/input/event12345"_s});
    QVERIFY(removal);
    QCOMPARE(removal->node, "event12345");
    QVERIFY(removal->isRemoval);
}

void RuleHelperTest::numbersInputDevicesAlone_data()
{
    QTest::addColumn<QByteArray>("folder");
    QTest::addColumn<QByteArray>("node");
    QTest::newRow("missing") << QByteArray("/dev") << QByteArray("event99999");
    QTest::newRow("missing folder") << QByteArray("/dev/nothing") << QByteArray("event7");
    QTest::newRow("another device") << QByteArray("/dev") << QByteArray("null");
    QTest::newRow("folder") << QByteArray("/") << QByteArray("dev");
    QTest::newRow("link to a device") << QByteArray("/dev") << QByteArray("stdin");
    QTest::newRow("file") << QByteArray("/proc/self") << QByteArray("status");
}

void RuleHelperTest::numbersInputDevicesAlone()
{
    QFETCH(QByteArray, folder);
    QFETCH(QByteArray, node);
    const Result<dev_t> number = RuleHelper::inputDeviceNumber(folder, node);
    QVERIFY(!number);
    QVERIFY(!number.error().message.isEmpty());
}

void RuleHelperTest::followsNoLinkToTheFolder()
{
    const QByteArray link = mFolder->filePath(u"input"_s).toLocal8Bit();
    QCOMPARE(::symlink("/dev", link.constData()), 0);
    const Result<dev_t> number = RuleHelper::inputDeviceNumber(link, "null");
    QVERIFY(!number);
    QVERIFY2(number.error().message.contains(QString::fromLocal8Bit(link)), qPrintable(number.error().message));
}

void RuleHelperTest::installsTheRuleOfTheKeyboard()
{
    QVERIFY(run());
    QCOMPARE(files(), QStringList{deviceRuleFileName(mKeyboard.device).value()});
    QFile file(rulePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), eventDeviceRule(mKeyboard.device).value());
    struct stat status = {};
    QCOMPARE(::stat(rulePath().toLocal8Bit().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, 0644U);
    QCOMPARE(mApplied, QStringList{u"/sys/devices/usb1/1-2 granted"_s});
}

void RuleHelperTest::installsItAgain()
{
    QVERIFY(run());
    QVERIFY(run());
    QCOMPARE(files().size(), 1);
    QCOMPARE(mApplied.size(), 2);
}

void RuleHelperTest::keepsTheRulesOfOtherKeyboards()
{
    QVERIFY(run());
    mKeyboard.device.insert(DeviceKeys::serial, u"AB-13"_s);
    QVERIFY(run());
    QCOMPARE(files().size(), 2);
    QVERIFY(run(true));
    QCOMPARE(files().size(), 1);
    QVERIFY(!QFile::exists(rulePath()));
}

void RuleHelperTest::removesTheRule()
{
    QVERIFY(run());
    QVERIFY(run(true));
    QCOMPARE(files(), QStringList());
    QCOMPARE(mApplied.last(), u"/sys/devices/usb1/1-2 revoked"_s);
}

void RuleHelperTest::removesWhatIsNotThere()
{
    QVERIFY(run(true));
    QCOMPARE(mApplied, QStringList{u"/sys/devices/usb1/1-2 revoked"_s}); // the right may be left from elsewhere
}

void RuleHelperTest::refusesAKeyboardWithoutNumbers()
{
    mKeyboard.device.insert(DeviceKeys::vendor, 0U);
    mKeyboard.device.insert(DeviceKeys::product, 0U);
    QVERIFY(!run());
    QVERIFY(!run(true));
    QCOMPARE(files(), QStringList());
    QCOMPARE(mApplied, QStringList());
}

void RuleHelperTest::refusesADeviceThatWasReplaced_data()
{
    QTest::addColumn<bool>("isRemoval");
    QTest::newRow("install") << false;
    QTest::newRow("remove") << true;
}

void RuleHelperTest::refusesADeviceThatWasReplaced()
{
    QFETCH(bool, isRemoval);
    if (isRemoval)
        QVERIFY(run());
    const QStringList before = files();
    mApplied.clear();
    mNumbers = {numberOfNode, makedev(13, 72)};
    QVERIFY(!run(isRemoval));
    QCOMPARE(files(), before);
    QCOMPARE(mApplied, QStringList());
}

void RuleHelperTest::refusesWhatTheSystemRefuses()
{
    mNumbers = {makedev(13, 72)};
    const Result<void> done = run();
    QVERIFY(!done);
    QCOMPARE(done.error().message, u"not a keyboard"_s);
    QVERIFY(!RuleHelper::carryOut({.node = "event8"}, mServices));
    QCOMPARE(files(), QStringList());
    QCOMPARE(mApplied, QStringList());
}

void RuleHelperTest::doesNotWriteThroughALink()
{
    const QString target = mFolder->filePath(u"target"_s);
    QVERIFY(QFile::link(target, rulePath()));
    QVERIFY(!run());
    QVERIFY(!QFile::exists(target));
    QCOMPARE(mApplied, QStringList());
    QVERIFY(run(true)); // removes the link
    QVERIFY(!QFileInfo(rulePath()).isSymLink());
}

void RuleHelperTest::reportsAFolderThatCannotBeWritten()
{
    mServices.rulesFolder = mFolder->filePath(u"missing"_s);
    const Result<void> done = run();
    QVERIFY(!done);
    QVERIFY2(done.error().message.contains(mServices.rulesFolder), qPrintable(done.error().message));
    QCOMPARE(mApplied, QStringList());
}

void RuleHelperTest::reportsWhatUdevSays()
{
    mServices.apply = [](const RuleHelper::Keyboard &, bool) -> Result<void> { return Error{u"udev is asleep"_s}; };
    const Result<void> done = run();
    QVERIFY(!done);
    QCOMPARE(done.error().message, u"udev is asleep"_s);
}

QTEST_GUILESS_MAIN(RuleHelperTest)
#include "rulehelpertest.moc"
