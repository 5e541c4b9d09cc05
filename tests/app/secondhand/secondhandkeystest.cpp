// SPDX-License-Identifier: MIT
// Another client changes the settings during the operations of the keys tab.
#include "tests/app/secondhand/combinationtest.h"
#include "tests/support/testmain.h"

#include <QTest>

class SecondHandKeysTest : public CombinationTest
{
    Q_OBJECT

public:
    SecondHandKeysTest() : CombinationTest(keyOperations) {}
};

QTEST_MAIN(SecondHandKeysTest)
#include "secondhandkeystest.moc"
