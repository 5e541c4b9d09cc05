// SPDX-License-Identifier: MIT
// Changes that the daemon refuses or does not answer, and a missing keyboard. Afterwards the window shows the stored
// settings and requests nothing, and the next change goes to the shown record.
#include "base/settingskeys.h"
#include "daemonlink/latestreplyslot.h"
#include "keys/keyboardkeyscontroller.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"
#include "macros/macrorecord.h"
#include "platform/colorwell.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

constexpr int macrosTab = 2;
constexpr int disablePosition = 5;
constexpr int defaultPosition = 0;

struct Change
{
    const char *name;
    Command command;
    void (*make)(const Hub &hub);
};

void chooseProfile(const Hub &hub, int tag)
{
    hub.find<PulldownButton>("mSettingsProfile")->itemWithTag(tag)->trigger();
}

void typeName(const Hub &hub, const char *table, const QString &name)
{
    auto *list = hub.find<TableView>(table);
    list->editColumnRow(list->model()->columnCount() > 1 ? 1 : 0, list->selectedRow(), true);
    auto *editor = qobject_cast<QLineEdit *>(hub.window->focusWidget());
    QVERIFY(editor);
    QTest::keyClicks(editor, name);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list->editedRow(), -1);
}

const std::array changes{
    Change{"key disabled", Command::updateProfile,
           [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(disablePosition)->trigger(); }},
    Change{"macro assigned", Command::updateProfile,
           [](const Hub &hub) {
               hub.find<PopUpButton>("mAssignFunction")->submenuAtIndex(2)->actions().last()->trigger();
           }},
    Change{"on-screen display", Command::updateProfile,
           [](const Hub &hub) { hub.find<QCheckBox>("mEnableOnScreenDisplay")->click(); }},
    Change{"brightness", Command::updateProfile,
           [](const Hub &hub) { hub.find<QSlider>("mBrightnessValue")->setValue(0); }},
    Change{
        "effect", Command::updateProfile,
        [](const Hub &hub) { hub.find<RadioGroup>("mLighting")->findChildren<QAbstractButton *>().first()->click(); }},
    Change{"light of games", Command::updateProfile,
           [](const Hub &hub) { hub.find<QCheckBox>("mEnableAddOnHighlight")->click(); }},
    Change{"colour", Command::updateProfile,
           [](const Hub &hub) {
               auto *well = hub.find<ColorWell>("mMainColor");
               well->setColor(Qt::red);
               emit well->colorPicked(Qt::red);
           }},
    Change{"profile added", Command::addProfile, [](const Hub &hub) { hub.find<QPushButton>("mAddProfile")->click(); }},
    Change{"profile copied", Command::addProfile, [](const Hub &hub) { chooseProfile(hub, ProfileCommands::copy); }},
    Change{"profile renamed", Command::updateProfile,
           [](const Hub &hub) { typeName(hub, "mProfilesTableView", u"New"_s); }},
    Change{"profile switched", Command::switchProfile,
           [](const Hub &hub) { hub.find<TableView>("mProfilesTableView")->selectRow(0); }},
    Change{"profile switched by an arrow key", Command::switchProfile,
           [](const Hub &hub) { QTest::keyClick(hub.find<TableView>("mProfilesTableView"), Qt::Key_Up); }},
    Change{"profile switched by a click", Command::switchProfile,
           [](const Hub &hub) {
               auto *table = hub.find<TableView>("mProfilesTableView");
               QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                                 table->visualRect(table->model()->index(0, 1)).center());
           }},
    Change{"auto switch of another profile", Command::switchProfile,
           [](const Hub &hub) {
               auto *table = hub.find<TableView>("mProfilesTableView");
               QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                                 table->visualRect(table->model()->index(0, 3)).center());
           }},
    Change{"profile restored", Command::updateProfile,
           [](const Hub &hub) { hub.controller->profilesController()->restoreProfileToDefaultSettings(); }},
    Change{"application removed", Command::updateProfile,
           [](const Hub &hub) { chooseProfile(hub, ProfileCommands::removeApplication); }},
    Change{"key back to default", Command::updateProfile,
           [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(defaultPosition)->trigger(); }},
    Change{"profile to switch to", Command::updateProfile,
           [](const Hub &hub) {
               hub.find<PopUpButton>("mAssignFunction")->submenuAtIndex(3)->actions().at(2)->trigger(); // the first
                                                                                                        // profile
           }},
    Change{"macro added", Command::addMacro, [](const Hub &hub) { hub.find<QPushButton>("mAddMacro")->click(); }},
    Change{"macro renamed", Command::renameMacro, [](const Hub &hub) { typeName(hub, "mMacroTableView", u"New"_s); }},
    Change{"macro deleted", Command::deleteMacro,
           [](const Hub &hub) { hub.controller->macrosController()->deleteMacro(); }},
};

/// All parts of the document that the window shows.
QStringList picture(const Hub &hub)
{
    QStringList shown;
    for (const char *name : {"mProfilesTableView", "mMacroTableView"}) {
        auto *table = hub.find<TableView>(name);
        shown +=
            u"%1: row %2, edited %3"_s.arg(QLatin1StringView(name)).arg(table->selectedRow()).arg(table->editedRow());
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            for (int column = 0; column < table->model()->columnCount(); ++column)
                shown += table->model()->index(row, column).data().toString();
        }
    }
    for (const char *name : {"mAssignFunction", "mMacroPlaybackPopUp"})
        shown += hub.find<PopUpButton>(name)->titleOfSelectedItem();
    for (const char *name : {"mEnableOnScreenDisplay", "mEnableAddOnHighlight"})
        shown += QString::number(int(hub.find<QCheckBox>(name)->isChecked()));
    shown += QString::number(hub.find<QSlider>("mBrightnessValue")->value());
    shown += QString::number(hub.find<RadioGroup>("mLighting")->selectedRow());
    shown += hub.find<ColorWell>("mMainColor")->color().name();
    return shown;
}

} // namespace

class RefusedChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void windowShowsTheStoredSettings_data();
    void windowShowsTheStoredSettings();
    void everyControlIsDisabledWithoutAKeyboard_data();
    void everyControlIsDisabledWithoutAKeyboard();
    void confirmationEndsWithTheKeyboard_data();
    void confirmationEndsWithTheKeyboard();
    void dragEndsWithItsProfile_data();
    void dragEndsWithItsProfile();
    void openMenuClosesWhenTheDocumentIsReplaced_data();
    void openMenuClosesWhenTheDocumentIsReplaced();
    void rowsMovedWithoutAReplyAreNotChanged_data();
    void rowsMovedWithoutAReplyAreNotChanged();
    void failedReadingMakesTheRowsUnknown_data();
    void failedReadingMakesTheRowsUnknown();
    void secondDeletionIsNotSentForAnotherProfile();
    void lateReplyDoesNotCountAsARefusedDeletion();
    void nothingIsSentWithoutARecord();
    void commandDoesNotReachAProfileThatReplacedItsOwn_data();
    void commandDoesNotReachAProfileThatReplacedItsOwn();
    void missingLinesAreRequestedWithTheNextDocument();
    void oldEventsAreReadAgainAfterARefusal();
    void oldEventsAreNotCopiedWithoutAReply();
    void deletionWithoutASwitchMovesTheRows();
    void deletionIsForgottenOnlyWhenItDidNotHappen_data();
    void deletionIsForgottenOnlyWhenItDidNotHappen();

private:
    void replaceDocument(const QVariantMap &document)
    {
        mDaemon->setDocument(document);
        mHub->controller->deamonProfileUpdateNotification({u"Profile Updated 271"_s, {}});
    }

    void deleteEventAndFailToAdd()
    {
        mHub->controller->selectTabAtIndex(macrosTab);
        mHub->find<TableView>("mMacroDetailsTableView")->selectRow(0);
        mHub->controller->macrosController()->clickDeleteMacroDetails(nullptr);
        QCOMPARE(mDaemon->count(Command::removeEvent), 1);
        mDaemon->setReply(Command::addMacro, {{DaemonProtocol::returnStatus, 1}});
        mHub->controller->addMacroWithSettings({{u"MacroName"_s, u"Refused"_s}});
        QCOMPARE(mDaemon->count(Command::readSettings), 0);
        mDaemon->setReply(Command::addMacro, {{DaemonProtocol::returnStatus, 0}});
        mDaemon->forgetRequests();
    }

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void RefusedChangesTest::init()
{
    QVariantMap document = sampleDocument();
    QVariantList macros = document[u"Macros"_s].toList();
    for (int row = 0; row < macros.size(); ++row) {
        QVariantMap macro = macros[row].toMap();
        macro[u"macroID"_s] = row + 1;
        macros[row] = macro;
    }
    document[u"Macros"_s] = macros;
    mDaemon = std::make_unique<ScriptedDaemon>(document);
    mDaemon->setReply(Command::readMacroLines, {{u"MacroSequences"_s, QVariantList{u"Key Press A"_s}}});
    mHub = std::make_unique<Hub>();
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    mHub->open(*mDaemon);
    mHub->find<QAbstractButton>("mB")->click(); // a key with its default assignment
    mHub->find<TableView>("mMacroTableView")->selectRow(1);
    mDaemon->forgetRequests();
}

void RefusedChangesTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void RefusedChangesTest::windowShowsTheStoredSettings_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<bool>("isSilent");
    for (size_t change = 0; change < changes.size(); ++change) {
        QTest::addRow("%s, refused", changes[change].name) << int(change) << false;
        QTest::addRow("%s, not answered", changes[change].name) << int(change) << true;
    }
}

void RefusedChangesTest::windowShowsTheStoredSettings()
{
    QFETCH(int, change);
    QFETCH(bool, isSilent);
    const Change &tried = changes[size_t(change)];
    const bool isOfMacros = tried.command == Command::addMacro || tried.command == Command::renameMacro
                            || tried.command == Command::deleteMacro;
    mHub->controller->selectTabAtIndex(isOfMacros ? 2 : 1);
    const QStringList before = picture(*mHub);
    if (isSilent)
        mDaemon->setSilent(tried.command);
    else
        mDaemon->setReply(tried.command, {{u"ReturnStatus"_s, 5}});
    tried.make(*mHub);
    QCOMPARE(picture(*mHub), before);
    std::vector<int> sent = mDaemon->commands();
    std::erase(sent, int(Command::readMacroLines)); // requested for the selected macro after adding and deleting
    if (isSilent && tried.command == Command::deleteMacro)
        std::erase(sent, int(Command::readSettings)); // the change may have happened, so the hub requests the settings
    QCOMPARE(sent, std::vector<int>{int(tried.command)});

    // The next change reaches the shown profile.
    mDaemon->forgetRequests();
    mDaemon->setReply(Command::updateProfile, {{u"ReturnStatus"_s, 0}});
    mHub->find<QSlider>("mBrightnessValue")->setValue(1);
    const ScriptedDaemon::Request request = mDaemon->lastRequest(Command::updateProfile);
    QCOMPARE(request.dictionary.value(u"ProfileID"_s), QVariant(1));
}

void RefusedChangesTest::everyControlIsDisabledWithoutAKeyboard_data()
{
    QTest::addColumn<std::function<void(KeyboardMainController &)>>("then");
    const auto add = [](const char *name, std::function<void(KeyboardMainController &)> then) {
        QTest::newRow(name) << then;
    };
    add("nothing", [](KeyboardMainController &) {});
    add("profile switched from outside", [](KeyboardMainController &hub) {
        hub.deamonProfileUpdateNotification({u"Profile Updated 271"_s, {}});
    });
    add("switch that was under way", [](KeyboardMainController &hub) { hub.switchProfileWithID(0); });
    add("deletion that was under way", [](KeyboardMainController &hub) { hub.deleteProfileWithProfileID(0); });
    add("event that was under way", [](KeyboardMainController &hub) {
        hub.updateSequenceInfoEventIndexNewDict(0, 0, {{u"page"_s, 7}});
    });
    add("macro that was under way", [](KeyboardMainController &hub) { hub.renameMacroAtIndexWithNewName(0, u"X"_s); });
    add("macro recorded on the keyboard", [](KeyboardMainController &hub) {
        hub.savedNewOTFMNotification(
            {u"Saved New OTFM 271"_s, {{u"AllMacros"_s, QVariantList()}, {u"ActiveProfile"_s, QVariantMap()}}});
    });
    add("another tab", [](KeyboardMainController &hub) {
        hub.selectTabAtIndex(1);
        hub.selectTabAtIndex(2);
    });
    add("removed again", [](KeyboardMainController &hub) {
        hub.deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    });
}

void RefusedChangesTest::everyControlIsDisabledWithoutAKeyboard()
{
    QFETCH(std::function<void(KeyboardMainController &)>, then);
    const auto enabled = [this] {
        QStringList names;
        for (const char *name : {"mA",
                                 "mAssignFunction",
                                 "mMacroPlaybackPopUp",
                                 "mProfilesTableView",
                                 "mAddProfile",
                                 "mDeleteProfile",
                                 "mSettingsProfile",
                                 "mEnableOnScreenDisplay",
                                 "mMacroTableView",
                                 "mMacroDetailsTableView",
                                 "mAddMacro",
                                 "mDeleteMacro",
                                 "mSettingsMacro",
                                 "mRecordMacroDetails",
                                 "mAddMacroDetails",
                                 "mDeleteMacroDetails",
                                 "mSettingsMacroDetails",
                                 "mMain",
                                 "mMainColor",
                                 "mBrightnessValue",
                                 "mLighting",
                                 "mRestoreSettings",
                                 "mEnableAddOnHighlight"}) {
            if (mHub->find<QWidget>(name)->isEnabled())
                names += QString::fromLatin1(name);
        }
        return names;
    };
    QVERIFY(enabled().size() > 15);
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    then(*mHub->controller);
    QCOMPARE(enabled(), QStringList());
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QVERIFY(enabled().size() > 15);
}

void RefusedChangesTest::confirmationEndsWithTheKeyboard_data()
{
    QTest::addColumn<std::function<void(const Hub &)>>("open");
    const auto add = [](const char *name, std::function<void(const Hub &)> open) { QTest::newRow(name) << open; };
    for (const auto &[name, tag] : {std::pair{"deleting a profile", int(ProfileCommands::deleteProfile)},
                                    std::pair{"restoring a profile", int(ProfileCommands::restoreDefault)},
                                    std::pair{"importing a profile", int(ProfileCommands::importProfile)},
                                    std::pair{"exporting a profile", int(ProfileCommands::exportProfile)},
                                    std::pair{"choosing an application", int(ProfileCommands::assignApplication)}})
        add(name, [command = tag](const Hub &hub) { chooseProfile(hub, command); });
    for (const auto &[name, tag] : {std::pair{"deleting a macro", int(MacroCommands::deleteMacro)},
                                    std::pair{"importing a macro", int(MacroCommands::importMacro)},
                                    std::pair{"exporting a macro", int(MacroCommands::exportMacro)}})
        add(name, [command = tag](const Hub &hub) {
            hub.find<PulldownButton>("mSettingsMacro")->itemWithTag(command)->trigger();
        });
    add("restoring the lighting", [](const Hub &hub) { hub.find<QPushButton>("mRestoreSettings")->click(); });
    add("choosing a colour", [](const Hub &hub) { hub.find<ColorWell>("mMainColor")->click(); });
    add("choosing a program",
        [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(4)->trigger(); });
    add("capturing a key", [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger(); });
}

void RefusedChangesTest::confirmationEndsWithTheKeyboard()
{
    QFETCH(std::function<void(const Hub &)>, open);
    const auto dialogs = [this] {
        QStringList names;
        for (const auto *dialog : mHub->window->findChildren<QDialog *>()) {
            if (dialog->isVisible())
                names += dialog->objectName();
        }
        return names;
    };
    open(*mHub);
    QCOMPARE(dialogs().size(), 1);
    mDaemon->forgetRequests();
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    QTRY_COMPARE(dialogs(), QStringList{u"mCommunicationAlertWindow"_s});
    QCOMPARE(mDaemon->commands(), std::vector<int>());
    QCOMPARE(mHub->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), defaultPosition);
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QCOMPARE(dialogs(), QStringList());
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::readSettings)});
}

void RefusedChangesTest::dragEndsWithItsProfile_data()
{
    QTest::addColumn<bool>("isSwitched");
    QTest::newRow("another profile") << true;
    QTest::newRow("the same profile, another brightness") << false;
}

void RefusedChangesTest::dragEndsWithItsProfile()
{
    QFETCH(bool, isSwitched);
    mHub->controller->selectTabAtIndex(3);
    auto *slider = mHub->find<QSlider>("mBrightnessValue");
    QTRY_VERIFY(slider->isVisible());
    const int y = slider->height() / 2;
    // The handle is in the middle: 2 of 0 to 4.
    QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(slider->width() / 2, y));
    QVERIFY(slider->isSliderDown());
    QVariantMap document = sampleDocument();
    if (isSwitched)
        document = withActiveProfile(document, 0);
    replaceDocument(document);
    mDaemon->forgetRequests();
    QMouseEvent move(QEvent::MouseMove, QPointF(2, y), slider->mapToGlobal(QPointF(2, y)), Qt::NoButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(slider, &move);
    QCOMPARE(slider->isSliderDown(), !isSwitched);
    QCOMPARE(mDaemon->count(Command::updateProfile), isSwitched ? 0 : 1);
    if (isSwitched)
        QCOMPARE(slider->value(), 4);
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(2, y));
    QVERIFY(!slider->isSliderDown());
    // The next drag works.
    slider->setValue(slider->value() == 1 ? 2 : 1);
    QVERIFY(mDaemon->count(Command::updateProfile) > 0);
}

void RefusedChangesTest::openMenuClosesWhenTheDocumentIsReplaced_data()
{
    QTest::addColumn<std::function<void(const Hub &)>>("open");
    const auto add = [](const char *name, std::function<void(const Hub &)> open) { QTest::newRow(name) << open; };
    add("assignments", [](const Hub &hub) { hub.find<PopUpButton>("mAssignFunction")->openMenu(); });
    add("macros to assign", [](const Hub &hub) {
        auto *popUp = hub.find<PopUpButton>("mAssignFunction");
        popUp->openMenu();
        popUp->submenuAtIndex(2)->popup(hub.window->mapToGlobal(QPoint(90, 90)));
    });
    for (const char *gear : {"mSettingsProfile", "mSettingsMacro", "mSettingsMacroDetails"})
        add(gear, [gear](const Hub &hub) {
            hub.find<PulldownButton>(gear)->menu()->popup(hub.window->mapToGlobal(QPoint(50, 50)));
        });
}

void RefusedChangesTest::openMenuClosesWhenTheDocumentIsReplaced()
{
    QFETCH(std::function<void(const Hub &)>, open);
    open(*mHub);
    QTRY_VERIFY(QApplication::activePopupWidget());
    replaceDocument(withActiveProfile(sampleDocument(), 0));
    QVERIFY(!QApplication::activePopupWidget());
    open(*mHub);
    QTRY_VERIFY(QApplication::activePopupWidget());
    mHub->controller->savedNewOTFMNotification({u"Saved New OTFM 271"_s, {{u"AllMacros"_s, QVariantList()}}});
    QVERIFY(!QApplication::activePopupWidget());
}

void RefusedChangesTest::rowsMovedWithoutAReplyAreNotChanged_data()
{
    QTest::addColumn<bool>("hasHappened");
    QTest::newRow("the deletion has taken place") << true;
    QTest::newRow("the deletion has not taken place") << false;
}

void RefusedChangesTest::rowsMovedWithoutAReplyAreNotChanged()
{
    QFETCH(bool, hasHappened);
    const auto without = [](const QString &key, int row) {
        QVariantMap document = sampleDocument();
        QVariantList records = document[key].toList();
        records.removeAt(row);
        document[key] = records;
        return withActiveProfile(document, 0);
    };
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    if (hasHappened)
        mDaemon->setDocument(without(u"Profiles"_s, 1));
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(3);
    QCOMPARE(mDaemon->commands(), hasHappened ? std::vector<int>{4} : (std::vector<int>{4, 6}));
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(1);
    QCOMPARE(mDaemon->commands(), std::vector<int>{6});
    QCOMPARE(mDaemon->lastRequest(Command::updateProfile).dictionary.value(u"ProfileID"_s).toInt(),
             hasHappened ? 0 : 1);

    mDaemon->setDocument(sampleDocument());
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    mDaemon->setSilent(Command::deleteMacro);
    mHub->controller->deleteMacroAtIndex(0);
    if (hasHappened)
        mDaemon->setDocument(without(u"Macros"_s, 0));
    mDaemon->forgetRequests();
    mHub->controller->removeAllEventsForMacroAtIndex(1);
    QCOMPARE(mDaemon->count(Command::readSettings), 1);
    QCOMPARE(mDaemon->count(Command::removeAllEvents), hasHappened ? 0 : 1);
    mHub->controller->removeAllEventsForMacroAtIndex(1);
    QCOMPARE(mDaemon->count(Command::readSettings), 1);
    QCOMPARE(mDaemon->count(Command::removeAllEvents), hasHappened ? 1 : 2);
}

void RefusedChangesTest::failedReadingMakesTheRowsUnknown_data()
{
    QTest::addColumn<std::function<void(KeyboardMainController &)>>("read");
    const auto add = [](const char *name, std::function<void(KeyboardMainController &)> read) {
        QTest::newRow(name) << read;
    };
    add("profile changed from outside", [](KeyboardMainController &hub) {
        hub.deamonProfileUpdateNotification({u"Profile Updated 271"_s, {}});
    });
    add("keyboard attached", [](KeyboardMainController &hub) {
        hub.deviceConnectedNotification({u"Device Attached 271"_s, {}});
    });
    add("macro deleted", [](KeyboardMainController &hub) { hub.deleteMacroAtIndex(0); });
}

void RefusedChangesTest::failedReadingMakesTheRowsUnknown()
{
    QFETCH(std::function<void(KeyboardMainController &)>, read);
    mDaemon->setSilent(Command::readSettings);
    read(*mHub->controller);
    // Meanwhile the profiles have changed places: there are as many as before, but the row has another one.
    QVariantMap document = sampleDocument();
    QVariantList profiles = document[u"Profiles"_s].toList();
    profiles.move(0, 1);
    document[u"Profiles"_s] = profiles;
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(0); // the window does not know the new rows yet
    QCOMPARE(mDaemon->count(Command::updateProfile), 0);
    mDaemon->setScript(Command::readSettings, [document](const ScriptedDaemon::Request &) {
        return std::vector<ScriptedDaemon::Reply>{
            {ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}, {u"AllDevSettings"_s, document}})}};
    });
    mHub->find<QSlider>("mBrightnessValue")->setValue(1); // meant for the profile that was there
    QCOMPARE(mDaemon->count(Command::updateProfile), 0);
    QCOMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), 4);
    mHub->find<QSlider>("mBrightnessValue")->setValue(3);
    QCOMPARE(mDaemon->count(Command::updateProfile), 1);
}

void RefusedChangesTest::secondDeletionIsNotSentForAnotherProfile()
{
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(0);
    QVariantMap shorter = withActiveProfile(sampleDocument(), 0);
    shorter[u"Profiles"_s] = shorter[u"Profiles"_s].toList().last(1);
    mDaemon->setDocument(shorter);
    mHub->controller->deleteProfileWithProfileID(0);
    QCOMPARE(mDaemon->count(Command::deleteProfile), 1);
    QCOMPARE(mHub->find<TableView>("mProfilesTableView")->model()->rowCount(), 1);
}

void RefusedChangesTest::lateReplyDoesNotCountAsARefusedDeletion()
{
    // The reply to an earlier command, which arrived after the hub had stopped waiting for it.
    mDaemon->setReply(Command::deleteProfile, {{u"ReturnStatus"_s, 0}});
    mHub->controller->deleteProfileWithProfileID(0);
    QVariantMap shorter = withActiveProfile(sampleDocument(), 0);
    shorter[u"Profiles"_s] = shorter[u"Profiles"_s].toList().last(1);
    mDaemon->setDocument(shorter);
    LatestReplySlot::shared().clear();
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(0);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::readSettings)});
}

void RefusedChangesTest::nothingIsSentWithoutARecord()
{
    QVariantMap document = withActiveProfile(sampleDocument(), 25);
    replaceDocument(document);
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(1);
    mHub->find<QCheckBox>("mEnableAddOnHighlight")->click();
    mHub->controller->lightingController()->sheetDidEndReturnCodeContextInfo(alertFirstButtonReturn, 9);
    mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(disablePosition)->trigger();
    QCOMPARE(mDaemon->commands(), std::vector<int>());
    QCOMPARE(mHub->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), defaultPosition);
}

void RefusedChangesTest::commandDoesNotReachAProfileThatReplacedItsOwn_data()
{
    QTest::addColumn<int>("command");
    for (const int command : {ProfileCommands::copy, ProfileCommands::removeApplication, ProfileCommands::deleteProfile,
                              ProfileCommands::restoreDefault, ProfileCommands::assignApplication})
        QTest::addRow("command %d", command) << command;
}

void RefusedChangesTest::commandDoesNotReachAProfileThatReplacedItsOwn()
{
    QFETCH(int, command);
    mHub->controller->selectTabAtIndex(1);
    auto *table = mHub->find<TableView>("mProfilesTableView");
    table->editColumnRow(1, 1, true);
    QTest::keyClicks(mHub->window->focusWidget(), u"New"_s);
    // The reply to the rename shows that another profile has become active.
    mDaemon->setDocument(withActiveProfile(sampleDocument(), 0));
    mDaemon->forgetRequests();
    chooseProfile(*mHub, command);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::updateProfile)});
    QVERIFY(!mHub->find<Sheet>("alert"));
    QVERIFY(!mHub->controller->profilesController()->applicationChooser());
    QCOMPARE(table->selectedRow(), 0);
}

void RefusedChangesTest::missingLinesAreRequestedWithTheNextDocument()
{
    mDaemon->setSilent(Command::readMacroLines);
    mHub->find<TableView>("mMacroTableView")->selectRow(2);
    auto *lines = mHub->find<TableView>("mMacroDetailsTableView");
    QCOMPARE(lines->numberOfRows(), 0);
    // A refusal causes no request.
    mDaemon->setReply(Command::updateProfile, {{u"ReturnStatus"_s, 5}});
    mDaemon->forgetRequests();
    mHub->find<QSlider>("mBrightnessValue")->setValue(0);
    QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::updateProfile)});
    mDaemon->setReply(Command::readMacroLines, {{u"MacroSequences"_s, QVariantList{u"Key Press B"_s}}});
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QCOMPARE(lines->numberOfRows(), 1);
    // After an event was deleted, no old line is shown while the new lines are unknown.
    mHub->controller->selectTabAtIndex(2);
    lines->selectRow(0);
    mDaemon->setSilent(Command::readMacroLines);
    mHub->find<QPushButton>("mDeleteMacroDetails")->click();
    QCOMPARE(mDaemon->count(Command::removeEvent), 1);
    QCOMPARE(lines->numberOfRows(), 0);
}

// The reply to the deletion of an event has no document. The redrawing after the refusal brings none either.
void RefusedChangesTest::oldEventsAreReadAgainAfterARefusal()
{
    deleteEventAndFailToAdd();
    const QVariantList present{MacroRecord::eventRecord({.command = MacroRecord::keyDown, .argument = 4})};
    QVariantMap document = sampleDocument();
    QVariantList macros = document[u"Macros"_s].toList();
    QVariantMap shown = macros.at(1).toMap();
    shown[u"macroID"_s] = 2; // as in init()
    macros[1] = MacroRecord::withEvents(shown, present);
    document[u"Macros"_s] = macros;
    mDaemon->setDocument(document);
    mHub->find<PulldownButton>("mSettingsMacro")->itemWithTag(MacroCommands::duplicateMacro)->trigger();
    QCOMPARE(mDaemon->count(Command::addMacro), 1);
    const QVariantMap request = mDaemon->lastRequest(Command::addMacro).dictionary;
    QCOMPARE(MacroRecord::events(request.value(DaemonProtocol::macroContents).toMap()), present);
}

void RefusedChangesTest::oldEventsAreNotCopiedWithoutAReply()
{
    deleteEventAndFailToAdd();
    mDaemon->setSilent(Command::readSettings);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        mHub->find<PulldownButton>("mSettingsMacro")->itemWithTag(MacroCommands::duplicateMacro)->trigger();
        QCOMPARE(mDaemon->count(Command::readSettings), attempt);
        QCOMPARE(mDaemon->count(Command::addMacro), 0);
    }
}

void RefusedChangesTest::deletionWithoutASwitchMovesTheRows()
{
    QVariantMap shorter = withActiveProfile(sampleDocument(), 0);
    shorter[u"Profiles"_s] = shorter[u"Profiles"_s].toList().first(1);
    mDaemon->setReply(Command::deleteProfile, {{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, shorter}});
    mDaemon->setSilent(Command::switchProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    QCOMPARE(mDaemon->commands(), (std::vector<int>{9, 10}));
    QCOMPARE(mHub->find<TableView>("mProfilesTableView")->model()->rowCount(), 1);
    mHub->find<QSlider>("mBrightnessValue")->setValue(1);
    QCOMPARE(mDaemon->lastRequest(Command::updateProfile).dictionary.value(u"ProfileID"_s), QVariant(0));
}

void RefusedChangesTest::deletionIsForgottenOnlyWhenItDidNotHappen_data()
{
    QTest::addColumn<std::function<QVariantList(QVariantList)>>("after");
    QTest::addColumn<bool>("isForgotten");
    using Edit = std::function<QVariantList(QVariantList)>;
    const auto add = [](const char *name, bool isForgotten, Edit after) {
        QTest::newRow(name) << after << isForgotten;
    };
    const auto with = [](QVariantList profiles, const QString &key, const QVariant &value) {
        QVariantMap profile = profiles[1].toMap();
        profile[key] = value;
        profiles[1] = profile;
        return profiles;
    };
    add("it is still there", true, [](QVariantList profiles) { return profiles; });
    add("it is still there, with another light", true,
        [with](QVariantList profiles) { return with(profiles, u"BrightnessKBNormal"_s, 0); });
    add("it has gone", false, [](QVariantList profiles) { return profiles.first(1); });
    add("it has gone, and another was added", false,
        [with](QVariantList profiles) { return with(profiles, u"ProfileName"_s, u"Other"_s); });
    add("it has moved", false, [](QVariantList profiles) {
        profiles.prepend(profiles.first());
        return profiles;
    });
}

void RefusedChangesTest::deletionIsForgottenOnlyWhenItDidNotHappen()
{
    QFETCH(std::function<QVariantList(QVariantList)>, after);
    QFETCH(bool, isForgotten);
    mDaemon->setSilent(Command::deleteProfile);
    mHub->controller->deleteProfileWithProfileID(1);
    QVariantMap document = withActiveProfile(sampleDocument(), 0);
    document[u"Profiles"_s] = after(document[u"Profiles"_s].toList());
    mDaemon->setDocument(document);
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QVERIFY(!mHub->find<Spinner>("mBusyIndicator")->isAnimating());
    mDaemon->forgetRequests();
    mHub->controller->switchProfileWithID(0);
    // The clean-up after a deletion requests the document once more.
    QCOMPARE(mDaemon->commands(), isForgotten ? std::vector<int>{10} : (std::vector<int>{10, 4}));
}

QTEST_MAIN(RefusedChangesTest)
#include "refusedchangestest.moc"
