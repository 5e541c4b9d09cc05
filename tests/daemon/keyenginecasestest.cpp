// SPDX-License-Identifier: MIT
// Runs every file of the folder enginecases on the key engine; enginecases/README.md says how they are written.
#include "tests/daemon/enginescript.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class KeyEngineCasesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void caseHolds_data();
    void caseHolds();
    void mistakesInACaseAreFound_data();
    void mistakesInACaseAreFound();
};

void KeyEngineCasesTest::caseHolds_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(KESTRA_ENGINE_CASES_DIR));
    const QFileInfoList files = folder.entryInfoList({u"*.txt"_s}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qUtf8Printable(file.completeBaseName())) << file.filePath();
}

void KeyEngineCasesTest::caseHolds()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    EngineScript script;
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
    QCOMPARE(script.sentDown(), QList<HidUsage>()); // a case ends with every key let go of
}

void KeyEngineCasesTest::mistakesInACaseAreFound_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("event") << u"push A"_s;
    QTest::newRow("key") << u"press Banana"_s;
    QTest::newRow("no key") << u"press"_s;
    QTest::newRow("kind") << u"profile 0 key A sing C"_s;
    QTest::newRow("target") << u"profile 0 key A single-key Banana"_s;
    QTest::newRow("modifier") << u"profile 0 key A single-key C D"_s;
    QTest::newRow("capture") << u"capture maybe"_s;
    QTest::newRow("macro without a pause") << u"macro 0 A down"_s;
    QTest::newRow("macro with half an event") << u"macro 0 5 A"_s;
    QTest::newRow("macro that leaves a gap") << u"macro 1 5 A down"_s;
    QTest::newRow("macro to delete") << u"delete-macro 0"_s;
    QTest::newRow("time") << u"wait long"_s;
}

void KeyEngineCasesTest::mistakesInACaseAreFound()
{
    QFETCH(QString, line);
    EngineScript script;
    QVERIFY(!script.run(line).isEmpty());
}

QTEST_APPLESS_MAIN(KeyEngineCasesTest)
#include "keyenginecasestest.moc"
