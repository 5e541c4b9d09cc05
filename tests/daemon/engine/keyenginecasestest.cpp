// SPDX-License-Identifier: MIT
// Runs every file of the folder enginecases on the key engine; enginecases/README.md describes their format.
#include "tests/daemon/engine/enginescript.h"
#include "tests/support/casefile.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class KeyEngineCasesTest : public CaseFilesTest
{
    Q_OBJECT

public:
    KeyEngineCasesTest() : CaseFilesTest(QStringLiteral(KESTRA_ENGINE_CASES_DIR)) {}

private:
    void runCaseFile(const QString &path) override { runCase<EngineScript>(path, &EngineScript::sentDown); }
    void addMistakes() override;
    QString problemWith(const QString &line) override { return EngineScript().run(line); }
};

void KeyEngineCasesTest::addMistakes()
{
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

QTEST_APPLESS_MAIN(KeyEngineCasesTest)
#include "keyenginecasestest.moc"
