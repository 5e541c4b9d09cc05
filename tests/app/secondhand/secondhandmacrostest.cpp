// SPDX-License-Identifier: MIT
// Another client changes the settings during the operations of the macros tab.
#include "tests/app/secondhand/combinationtest.h"
#include "tests/support/testmain.h"

#include <QTest>

class SecondHandMacrosTest : public CombinationTest
{
    Q_OBJECT

public:
    SecondHandMacrosTest() : CombinationTest(macroOperations) {}
};

QTEST_MAIN(SecondHandMacrosTest)
#include "secondhandmacrostest.moc"
