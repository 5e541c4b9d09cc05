// SPDX-License-Identifier: MIT
// Another client changes the settings during the operations of the lighting tab.
#include "tests/app/secondhand/combinationtest.h"
#include "tests/support/testmain.h"

#include <QTest>

class SecondHandLightingTest : public CombinationTest
{
    Q_OBJECT

public:
    SecondHandLightingTest() : CombinationTest(lightingOperations) {}
};

QTEST_MAIN(SecondHandLightingTest)
#include "secondhandlightingtest.moc"
