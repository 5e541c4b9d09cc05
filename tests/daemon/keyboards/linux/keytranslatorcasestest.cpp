// SPDX-License-Identifier: MIT
// Runs every file of the folder nodecases on the translator; nodecases/README.md describes their format.
#include "tests/daemon/keyboards/linux/nodescript.h"
#include "tests/support/casefile.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class KeyTranslatorCasesTest : public CaseFilesTest
{
    Q_OBJECT

public:
    KeyTranslatorCasesTest() : CaseFilesTest(QStringLiteral(KESTRA_NODE_CASES_DIR)) {}

private:
    void runCaseFile(const QString &path) override { runCase<NodeScript>(path, &NodeScript::down); }
    void addMistakes() override;
    QString problemWith(const QString &line) override;
};

void KeyTranslatorCasesTest::addMistakes()
{
    QTest::newRow("kind of node") << u"node 1 usb"_s;
    QTest::newRow("node") << u"2 key KEY_A 1"_s;
    QTest::newRow("event") << u"0 press KEY_A 1"_s;
    QTest::newRow("code") << u"0 key KEY_BANANA 1"_s;
    QTest::newRow("no value") << u"0 key KEY_A"_s;
    QTest::newRow("value") << u"0 key KEY_A down"_s;
}

QString KeyTranslatorCasesTest::problemWith(const QString &line)
{
    NodeScript script;
    // Without an event device every line would have a mistake.
    const QString problem = script.run(u"node 0 hid"_s);
    return problem.isEmpty() ? script.run(line) : QString();
}

QTEST_APPLESS_MAIN(KeyTranslatorCasesTest)
#include "keytranslatorcasestest.moc"
