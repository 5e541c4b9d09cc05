// SPDX-License-Identifier: MIT
#include "cli/devicerule.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QProcess>
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
    void textFromTheKeyboardCannotAddToTheRule_data();
    void textFromTheKeyboardCannotAddToTheRule();
    void refusesKeyboardsThatCannotBeNamed_data();
    void refusesKeyboardsThatCannotBeNamed();
    void udevAcceptsTheRule();
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

void DeviceRuleTest::udevAcceptsTheRule()
{
    QProcess udevadm;
    udevadm.start(u"udevadm"_s, {u"verify"_s, u"--help"_s});
    if (!udevadm.waitForFinished() || udevadm.exitStatus() != QProcess::NormalExit || udevadm.exitCode() != 0)
        QSKIP("there is no \"udevadm verify\"");
    QTemporaryFile file(QDir::tempPath() + u"/70-XXXXXX.rules"_s);
    QVERIFY(file.open());
    file.write(deviceRule(device(u"S"_s, u"p"_s), 1000).value_or(QString()).toUtf8());
    file.close();
    udevadm.start(u"udevadm"_s, {u"verify"_s, file.fileName()});
    QVERIFY(udevadm.waitForFinished());
    QVERIFY2(udevadm.exitCode() == 0, udevadm.readAllStandardError().constData());
}

QTEST_GUILESS_MAIN(DeviceRuleTest)
#include "deviceruletest.moc"
