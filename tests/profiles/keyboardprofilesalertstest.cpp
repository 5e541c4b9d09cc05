// SPDX-License-Identifier: MIT
// The alerts that ask before a deletion and a restoration, and the effects of their answers.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/testmain.h"

#include <QLabel>

using namespace Qt::StringLiterals;

class KeyboardProfilesAlertsTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { openTab(); }
    void cleanup() { closeTab(); }

    void restoreKeepsTheName();
    void cancelledRestoreChangesNothing();
    void alertClosesWithItsProfile_data();
    void alertClosesWithItsProfile();
    void alertStaysWhileItsProfileExists();
    void longNameIsShortenedInTheAlert();
};

void KeyboardProfilesAlertsTest::restoreKeepsTheName()
{
    fill({u"A"_s, u"Work"_s}, 1);
    choose(ProfileCommands::restoreDefault);
    QVERIFY(alert());
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(),
             u"Restore the profile “Work” to its default settings?"_s);
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, profileNamed(u"Work"_s));
}

void KeyboardProfilesAlertsTest::cancelledRestoreChangesNothing()
{
    fill({u"A"_s, u"Work"_s}, 1);
    choose(ProfileCommands::restoreDefault);
    press("alertAlternativeButton"_L1);
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesAlertsTest::alertClosesWithItsProfile_data()
{
    QTest::addColumn<int>("tag");
    QTest::newRow("delete") << int(ProfileCommands::deleteProfile);
    QTest::newRow("restore") << int(ProfileCommands::restoreDefault);
}

void KeyboardProfilesAlertsTest::alertClosesWithItsProfile()
{
    QFETCH(int, tag);
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    choose(tag);
    QVERIFY(alert());
    // Simulates a profile switch by the application in front.
    mDelegate->active = 2;
    mDelegate->refresh();
    QVERIFY(!alert());
    QVERIFY(mDelegate->calls.isEmpty());
    choose(tag);
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->calls.size(), 1);
}

void KeyboardProfilesAlertsTest::alertStaysWhileItsProfileExists()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::deleteProfile);
    mDelegate->profiles.prepend(profileNamed(u"New"_s));
    mDelegate->active = 2;
    mDelegate->refresh();
    QVERIFY(alert());
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
    QCOMPARE(mDelegate->calls.first().profileID, 2);
}

void KeyboardProfilesAlertsTest::longNameIsShortenedInTheAlert()
{
    fill({u"A"_s, u"Start "_s + u"many words "_s.repeated(1000) + u"End"_s}, 1);
    choose(ProfileCommands::deleteProfile);
    const auto *title = alert()->findChild<QLabel *>(u"alertTitle"_s);
    QVERIFY(title->text().startsWith(u"Delete the profile “Start"_s));
    QVERIFY(title->text().endsWith(u"End”?"_s));
    QVERIFY(title->text().contains(u'…'));
}

QTEST_MAIN(KeyboardProfilesAlertsTest)
#include "keyboardprofilesalertstest.moc"
