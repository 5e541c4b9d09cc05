// SPDX-License-Identifier: MIT
// The "auto switch" boxes, the application chooser that they open, and the removal of an application.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"

#include "platform/filepanels.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class KeyboardProfilesAutoSwitchTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { openTab(); }
    void cleanup() { closeTab(); }

    void clickIntoTheBoxTicksIt();
    void boxOfAnotherRowSwitchesFirst();
    void chooserOpensWithoutAnApplication();
    void cancellingTheChooserTurnsItOff_data();
    void cancellingTheChooserTurnsItOff();
    void newlyActiveRecordDecidesWhetherAChoiceIsNeeded_data();
    void newlyActiveRecordDecidesWhetherAChoiceIsNeeded();
    void refusedSwitchChangesNoOtherProfile_data();
    void refusedSwitchChangesNoOtherProfile();
    void tableIsReadAgain_data();
    void tableIsReadAgain();

private:
    void tick(int row, int value)
    {
        mController->tableViewSetObjectValueForTableColumnRow(table(), value, u"auto switch"_s, row);
    }
    [[nodiscard]] int shownBox(int row) const
    {
        return table()->model()->index(row, 3).data(Qt::CheckStateRole).toInt();
    }
    [[nodiscard]] bool isChooserOpen() const
    {
        return mController->applicationChooser() && mController->applicationChooser()->isVisible();
    }
};

void KeyboardProfilesAutoSwitchTest::clickIntoTheBoxTicksIt()
{
    fillWith({profileNamed(u"A"_s, u"Editor"_s, 0)});
    for (const int value : {1, 0}) {
        mDelegate->calls.clear();
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {},
                          table()->visualRect(table()->model()->index(0, 3)).center());
        QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
        QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, value}}));
        QCOMPARE(mDelegate->calls.first().settings.value(u"AutoSwitchOn"_s).typeId(), int(QMetaType::Int));
        QCOMPARE(shownBox(0), int(value == 1 ? Qt::Checked : Qt::Unchecked));
    }
}

void KeyboardProfilesAutoSwitchTest::boxOfAnotherRowSwitchesFirst()
{
    fillWith({profileNamed(u"A"_s, u"Editor"_s, 1), profileNamed(u"B"_s, u"Racer"_s, 0)});
    tick(1, 1);
    QCOMPARE(mDelegate->operations(), (QStringList{u"switch"_s, u"update"_s}));
    QCOMPARE(mDelegate->calls.at(0).profileID, 1);
    QCOMPARE(mDelegate->calls.at(1).settings, (QVariantMap{{u"AutoSwitchOn"_s, 1}}));
    mDelegate->calls.clear();
    tick(1, 0);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, 0}}));
    tick(0, 0);
    QCOMPARE(mDelegate->operations(), (QStringList{u"update"_s, u"switch"_s, u"update"_s}));
    QCOMPARE(mDelegate->calls.at(1).profileID, 0);
    QVERIFY(!mController->applicationChooser());
}

void KeyboardProfilesAutoSwitchTest::chooserOpensWithoutAnApplication()
{
    fill({u"A"_s, u"B"_s});
    tick(0, 1);
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(isChooserOpen());
    QCOMPARE(shownBox(0), int(Qt::Unchecked));
    QVERIFY(chooseOtherApplication());
    QVERIFY(!isChooserOpen());
    QVERIFY(mController->profileFileBrowserPanel()->isVisible());
    QVERIFY(mController->profileFileBrowserPanel()->nameFilters().first().contains(u"*.app"_s));
    QVERIFY(mDelegate->calls.isEmpty());
    // The answer "no application" applies to the row that the user switched to.
    tick(1, 1);
    QVERIFY(chooseOtherApplication());
    mController->profileFileBrowserPanel()->reject();
    QCOMPARE(mDelegate->operations(), (QStringList{u"switch"_s, u"update"_s}));
    QCOMPARE(shownBox(1), int(Qt::Unchecked));
}

void KeyboardProfilesAutoSwitchTest::cancellingTheChooserTurnsItOff_data()
{
    QTest::addColumn<QString>("application");
    QTest::addColumn<bool>("isFilePanel");
    QTest::newRow("without an application") << QString() << false;
    QTest::newRow("with one that was to be changed") << u"Racer"_s << false;
    QTest::newRow("without an application, in the file panel") << QString() << true;
    QTest::newRow("with one that was to be changed, in the file panel") << u"Racer"_s << true;
}

void KeyboardProfilesAutoSwitchTest::cancellingTheChooserTurnsItOff()
{
    QFETCH(QString, application);
    fillWith({profileNamed(u"A"_s, application, 1)});
    QFETCH(bool, isFilePanel);
    choose(ProfileCommands::assignApplication);
    if (isFilePanel) {
        QVERIFY(chooseOtherApplication());
        mController->profileFileBrowserPanel()->reject();
    } else {
        mController->applicationChooser()->reject();
    }
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    QCOMPARE(mDelegate->calls.first().settings, (QVariantMap{{u"AutoSwitchOn"_s, 0}}));
    QCOMPARE(shownBox(0), int(Qt::Unchecked));
    QCOMPARE(table()->model()->index(0, 2).data().toString(), application);
}

void KeyboardProfilesAutoSwitchTest::newlyActiveRecordDecidesWhetherAChoiceIsNeeded_data()
{
    QTest::addColumn<QString>("ofSelected");
    QTest::addColumn<QString>("ofClicked");
    QTest::addColumn<bool>("opensChooser");
    QTest::newRow("the selected one has none") << QString() << u"Racer"_s << false;
    QTest::newRow("the clicked one has none") << u"Racer"_s << QString() << true;
}

void KeyboardProfilesAutoSwitchTest::newlyActiveRecordDecidesWhetherAChoiceIsNeeded()
{
    QFETCH(QString, ofSelected);
    QFETCH(QString, ofClicked);
    QFETCH(bool, opensChooser);
    fillWith({profileNamed(u"A"_s, ofSelected), profileNamed(u"B"_s, ofClicked)});
    tick(1, 1);
    QCOMPARE(isChooserOpen(), opensChooser);
    QCOMPARE(mDelegate->operations(),
             opensChooser ? QStringList{u"switch"_s} : (QStringList{u"switch"_s, u"update"_s}));
}

void KeyboardProfilesAutoSwitchTest::refusedSwitchChangesNoOtherProfile_data()
{
    QTest::addColumn<QString>("ofSelected");
    QTest::addColumn<int>("value");
    QTest::newRow("on") << u"Racer"_s << 1;
    QTest::newRow("on, without an application") << QString() << 1;
    QTest::newRow("off") << u"Racer"_s << 0;
}

void KeyboardProfilesAutoSwitchTest::refusedSwitchChangesNoOtherProfile()
{
    QFETCH(QString, ofSelected);
    QFETCH(int, value);
    fillWith({profileNamed(u"A"_s, ofSelected), profileNamed(u"B"_s, u"Editor"_s)});
    mDelegate->answers = false;
    tick(1, value);
    QVERIFY(!isChooserOpen());
    QCOMPARE(mDelegate->operations(), QStringList{u"switch"_s});
}

void KeyboardProfilesAutoSwitchTest::tableIsReadAgain_data()
{
    QTest::addColumn<QString>("act");
    for (const char *act : {"ticked", "ticked without an application", "unticked", "application removed"})
        QTest::newRow(act) << QString::fromLatin1(act);
}

void KeyboardProfilesAutoSwitchTest::tableIsReadAgain()
{
    QFETCH(QString, act);
    const bool isBound = act != "ticked without an application"_L1;
    fillWith({profileNamed(u"A"_s, isBound ? u"Racer"_s : QString())});
    mDelegate->answers = false;
    QSignalSpy fetched(table()->model(), &QAbstractItemModel::dataChanged);
    if (act == "application removed"_L1)
        choose(ProfileCommands::removeApplication);
    else
        tick(0, act == "unticked"_L1 ? 0 : 1);
    QCOMPARE(fetched.count(), 1);
}

QTEST_MAIN(KeyboardProfilesAutoSwitchTest)
#include "keyboardprofilesautoswitchtest.moc"
