// SPDX-License-Identifier: MIT
// Runs every file of the folder nodecases on the translator; nodecases/README.md says how they are written.
#include "tests/daemon/linux/nodescript.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyTranslatorCasesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void caseHolds_data();
    void caseHolds();
    void mistakesInACaseAreFound_data();
    void mistakesInACaseAreFound();
};

void KeyTranslatorCasesTest::caseHolds_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(KESTRA_NODE_CASES_DIR));
    const QFileInfoList files = folder.entryInfoList({u"*.txt"_s}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.filePath();
}

void KeyTranslatorCasesTest::caseHolds()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    NodeScript script;
    QStringList expected;
    bool isInput = true;
    int number = 0;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        ++number;
        if (line.startsWith(u'#'))
            continue;
        if (line.isEmpty()) {
            isInput = isInput && script.outputLines().isEmpty(); // a blank line before the first event parts comments
        } else if (isInput) {
            const QString problem = script.run(line);
            QVERIFY2(problem.isEmpty(), qPrintable(u"line %1: %2"_s.arg(number).arg(problem)));
        } else {
            expected += line;
        }
    }
    QVERIFY(!expected.isEmpty());
    QCOMPARE(script.outputLines().join(u'\n'), expected.join(u'\n'));
    QCOMPARE(script.down(), QSet<QString>()); // a case ends with every key up
}

void KeyTranslatorCasesTest::mistakesInACaseAreFound_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("kind of node") << u"node 1 usb"_s;
    QTest::newRow("node") << u"2 key KEY_A 1"_s;
    QTest::newRow("event") << u"0 press KEY_A 1"_s;
    QTest::newRow("code") << u"0 key KEY_BANANA 1"_s;
    QTest::newRow("no value") << u"0 key KEY_A"_s;
    QTest::newRow("value") << u"0 key KEY_A down"_s;
}

void KeyTranslatorCasesTest::mistakesInACaseAreFound()
{
    QFETCH(QString, line);
    NodeScript script;
    QVERIFY(script.run(u"node 0 hid"_s).isEmpty());
    QVERIFY(!script.run(line).isEmpty());
}

QTEST_APPLESS_MAIN(KeyTranslatorCasesTest)
#include "keytranslatorcasestest.moc"
