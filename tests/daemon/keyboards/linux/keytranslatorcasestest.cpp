// SPDX-License-Identifier: MIT
// Runs every file of the folder nodecases on the translator; nodecases/README.md says how they are written.
#include "tests/daemon/keyboards/linux/nodescript.h"
#include "tests/support/casefile.h"
#include "tests/support/testmain.h"

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
    addCaseRows(QStringLiteral(KESTRA_NODE_CASES_DIR));
}

void KeyTranslatorCasesTest::caseHolds()
{
    QFETCH(QString, path);
    runCase<NodeScript>(path, &NodeScript::down);
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
