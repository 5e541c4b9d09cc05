// SPDX-License-Identifier: MIT
#include "base/devicerule.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

class DeviceRuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheKeyboardAsExactlyAsPossible_data();
    void namesTheKeyboardAsExactlyAsPossible();
    void grantsNothingElse();
    void documentsInstallItInTheSameWay();
    void explainsHowToTakeItBack();
    void textFromTheKeyboardCannotAddToTheRule_data();
    void textFromTheKeyboardCannotAddToTheRule();
    void refusesKeyboardsThatCannotBeNamed_data();
    void refusesKeyboardsThatCannotBeNamed();
    void udevAcceptsTheRule_data();
    void udevAcceptsTheRule();
    void eventDeviceRuleGrantsNothingElse();
    void eachKeyboardHasAFileOfItsOwn();
    void fileNameIsMadeOfDigits();
};

namespace {

QVariantMap device(const QString &serial, const QString &path)
{
    return {{u"Id"_s, u"1b2c:00af"_s},
            {u"Vendor"_s, 0x1b2c},
            {u"Product"_s, 0xaf},
            {u"Serial"_s, serial},
            {u"Path"_s, path}};
}

/// The lines that udev obeys.
QStringList rulesOf(const QVariantMap &keyboard)
{
    QStringList lines = deviceRule(keyboard, 1000).value_or(QString()).split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString &line) { return line.startsWith(u'#'); });
    return lines;
}

/// The comments of the rule for the keyboard with this ID, without their marks.
QStringList commentsOf(const QString &id)
{
    QVariantMap keyboard = device(u"S"_s, u"p"_s);
    keyboard.insert(u"Id"_s, id);
    QStringList lines = deviceRule(keyboard, 1000).value_or(QString()).split(u'\n').filter(u"#"_s);
    for (QString &line : lines)
        line = line.mid(1).simplified();
    return lines;
}

QString contentOf(const char *path)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void DeviceRuleTest::namesTheKeyboardAsExactlyAsPossible_data()
{
    QTest::addColumn<QString>("serial");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("condition");
    const QString path = u"pci-0000:00:14.0-usb-0:2"_s;
    QTest::newRow("serial") << u"AB-12 34"_s << path << u", ATTRS{uniq}==\"AB-12 34\", TAG"_s;
    QTest::newRow("port") << QString() << path << u", ENV{ID_PATH}==\"%1|%1:*\", TAG"_s.arg(path);
    QTest::newRow("make") << QString() << QString() << u"ATTRS{id/product}==\"00af\", TAG"_s;
}

void DeviceRuleTest::namesTheKeyboardAsExactlyAsPossible()
{
    QFETCH(QString, serial);
    QFETCH(QString, path);
    QFETCH(QString, condition);
    const QStringList rules = rulesOf(device(serial, path));
    QCOMPARE(rules.size(), 3);
    QVERIFY2(rules.first().contains(condition), qPrintable(rules.first()));
    QVERIFY(rules.first().contains(u"ATTRS{id/vendor}==\"1b2c\", ATTRS{id/product}==\"00af\""_s));
    const QString text = deviceRule(device(serial, path), 1000).value_or(QString());
    QCOMPARE(text.contains(u"every keyboard of the make 1b2c:00af"_s), serial.isEmpty() && path.isEmpty());
}

void DeviceRuleTest::grantsNothingElse()
{
    const QStringList rules = rulesOf(device(u"S"_s, u"p"_s));
    QCOMPARE(rules.size(), 3);
    QVERIFY(rules.at(0).contains(u"SUBSYSTEM==\"input\", KERNEL==\"event*\""_s));
    QVERIFY(rules.at(1).contains(u"SUBSYSTEM==\"misc\", KERNEL==\"uinput\""_s));
    QVERIFY(rules.at(2).contains(u"SUBSYSTEM==\"leds\", KERNEL!=\"input*\", KERNELS==\"????:1B2C:00AF.*\""_s));
    QCOMPARE(rules.filter(u"RUN"_s).size(), 1);
    QVERIFY(rules.at(2).contains(u"RUN+=\"/bin/chown -f 1000 %S%p/brightness %S%p/multi_intensity\""_s));
    for (const QString &rule : rules)
        QVERIFY2(!rule.contains(u"MODE"_s) && !rule.contains(u"GROUP"_s), qPrintable(rule));
}

// Each keyboard has a file of its own: the rule of a second one must not replace that of the first.
void DeviceRuleTest::documentsInstallItInTheSameWay()
{
    const QStringList comments = commentsOf(u"ID"_s);
    const QString readme = contentOf(KESTRA_README).simplified();
    const QString install = u"kestractl device rule ID | sudo tee /etc/udev/rules.d/70-quill-kestra-ID.rules"_s;
    QCOMPARE(comments.filter(u"| sudo tee"_s), QStringList{install});
    QVERIFY(readme.contains(install));
    const QStringList reload = comments.filter(u"udevadm"_s);
    QCOMPARE(reload.size(), 1);
    QVERIFY2(readme.contains(reload.first()), qPrintable(reload.first()));
    const QString manual = contentOf(KESTRA_MAN_PAGE).remove(u'\\');
    QVERIFY(manual.contains(commentsOf(u"1b2c:00af"_s).filter(u"| sudo tee"_s).first()));
}

void DeviceRuleTest::explainsHowToTakeItBack()
{
    // The access list of a device outlives the rule, and udev removes it only with the device.
    const QString text = u"remove this file and restart the computer"_s;
    QCOMPARE(commentsOf(u"ID"_s).filter(text).size(), 1);
    QVERIFY(contentOf(KESTRA_README).simplified().contains(u"remove the file and restart the computer"_s));
}

void DeviceRuleTest::textFromTheKeyboardCannotAddToTheRule_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quote") << u"1\", RUN+=\"/bin/evil"_s;
    QTest::newRow("end of line") << u"1\nRUN+=x"_s;
    QTest::newRow("end of line at the end") << u"1\n"_s;
    QTest::newRow("carriage return") << u"1\r2"_s;
    QTest::newRow("backslash") << u"1\\"_s;
    QTest::newRow("pattern") << u"*"_s;
    QTest::newRow("alternative") << u"1|2"_s;
    QTest::newRow("set") << u"[1]"_s;
    QTest::newRow("placeholder") << u"$env{X}"_s;
    QTest::newRow("percent") << u"%k"_s;
    QTest::newRow("letters of another script") << u"鍵"_s;
    QTest::newRow("space at the end") << u"1 "_s;
    QTest::newRow("endless") << QString(200, u'1');
}

void DeviceRuleTest::textFromTheKeyboardCannotAddToTheRule()
{
    QFETCH(QString, text);
    // With an unusable serial number or port, the rule applies to the make.
    for (const QVariantMap &keyboard : {device(text, u"p"_s), device(QString(), text)})
        QCOMPARE(rulesOf(keyboard), rulesOf(device(QString(), QString())));
}

void DeviceRuleTest::refusesKeyboardsThatCannotBeNamed_data()
{
    QTest::addColumn<QVariantMap>("keyboard");
    QVariantMap changed = device(u"S"_s, u"p"_s);
    changed.insert(u"Vendor"_s, 0);
    changed.insert(u"Product"_s, 0);
    QTest::newRow("no numbers") << changed;
    QTest::newRow("nothing") << QVariantMap();
    for (const QString &id : {u""_s, u"a b"_s, u"a;reboot"_s, u"a\nRUN+=\"x\""_s, u"../a"_s, u"$(x)"_s}) {
        changed = device(u"S"_s, u"p"_s);
        changed.insert(u"Id"_s, id);
        QTest::newRow(qPrintable(u"id "_s + id)) << changed;
    }
}

void DeviceRuleTest::refusesKeyboardsThatCannotBeNamed()
{
    QFETCH(QVariantMap, keyboard);
    QVERIFY(!deviceRule(keyboard, 1000));
}

void DeviceRuleTest::udevAcceptsTheRule_data()
{
    QTest::addColumn<QString>("rule");
    QTest::newRow("printed") << deviceRule(device(u"S"_s, u"p"_s), 1000).value_or(QString());
    QTest::newRow("of the event devices") << eventDeviceRule(device(QString(), u"p"_s)).value_or(QString());
}

void DeviceRuleTest::udevAcceptsTheRule()
{
    QFETCH(QString, rule);
    QVERIFY(!rule.isEmpty());
    QProcess udevadm;
    udevadm.start(u"udevadm"_s, {u"verify"_s, u"--help"_s});
    if (!udevadm.waitForFinished() || udevadm.exitStatus() != QProcess::NormalExit || udevadm.exitCode() != 0)
        QSKIP("there is no \"udevadm verify\"");
    QTemporaryFile file(QDir::tempPath() + u"/70-XXXXXX.rules"_s);
    QVERIFY(file.open());
    file.write(rule.toUtf8());
    file.close();
    udevadm.start(u"udevadm"_s, {u"verify"_s, file.fileName()});
    QVERIFY(udevadm.waitForFinished());
    QVERIFY2(udevadm.exitCode() == 0, udevadm.readAllStandardError().constData());
}

void DeviceRuleTest::eventDeviceRuleGrantsNothingElse()
{
    const QString text = eventDeviceRule(device(u"S"_s, u"p"_s)).value_or(QString());
    QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString &line) { return line.startsWith(u'#'); });
    QCOMPARE(lines, QStringList{rulesOf(device(u"S"_s, u"p"_s)).first()});
    for (const QString &word : {u"MODE"_s, u"GROUP"_s, u"OWNER"_s, u"RUN"_s, u"PROGRAM"_s, u"IMPORT"_s})
        QVERIFY2(!lines.first().contains(word), qPrintable(lines.first()));
    QVERIFY(lines.first().endsWith(u", TAG+=\"uaccess\""_s));
}

void DeviceRuleTest::eachKeyboardHasAFileOfItsOwn()
{
    QVariantMap other = device(u"S"_s, QString());
    other.insert(u"Product"_s, 0xb0);
    const QList<QVariantMap> keyboards{device(u"S"_s, u"p"_s), device(u"T"_s, u"p"_s), device(QString(), u"p"_s),
                                       device(QString(), QString()), other};
    QSet<QString> names;
    for (const QVariantMap &keyboard : keyboards)
        names += deviceRuleFileName(keyboard).value_or(QString());
    QCOMPARE(names.size(), keyboards.size());
    QVERIFY(!names.contains(QString()));
    // The rule is the same, whatever the port.
    QCOMPARE(deviceRuleFileName(device(u"S"_s, u"q"_s)), deviceRuleFileName(device(u"S"_s, u"p"_s)));
    QVERIFY(!deviceRuleFileName({}));
}

void DeviceRuleTest::fileNameIsMadeOfDigits()
{
    static const QRegularExpression digits(u"\\A70-quill-kestra-[0-9]{5}-[0-9]{5}-[0-9]{20}\\.rules\\z"_s);
    for (const QString &serial : {u"S"_s, u"../../x"_s, u"a\"b\n"_s}) {
        const QString name = deviceRuleFileName(device(serial, u"p"_s)).value_or(QString());
        QVERIFY2(digits.match(name).hasMatch(), qPrintable(name));
    }
}

QTEST_GUILESS_MAIN(DeviceRuleTest)
#include "deviceruletest.moc"
