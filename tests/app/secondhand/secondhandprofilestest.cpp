// SPDX-License-Identifier: MIT
// Another client changes the settings during the operations of the profiles tab.
#include "tests/app/secondhand/combinationtest.h"
#include "tests/support/testmain.h"

#include <QTest>

class SecondHandProfilesTest : public CombinationTest
{
    Q_OBJECT

public:
    SecondHandProfilesTest() : CombinationTest(profileOperations) {}
};

QTEST_MAIN(SecondHandProfilesTest)
#include "secondhandprofilestest.moc"
