// SPDX-License-Identifier: MIT
// The hub's reaction to the daemon's notifications, and its messages to the user.
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/latestreplyslot.h"
#include "keys/keyboardkeyscontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"
#include "platform/addresses.h"
#include "platform/helpviewer.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "platform/tableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/rawposter.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTextBrowser>

#include <atomic>
#include <functional>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

class NotificationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void loadsAndEnablesWhenAKeyboardIsAttached();
    void enablesTheControlsWhenReadingFails();
    void readsTheProductFromTheName_data();
    void readsTheProductFromTheName();
    void observesRepliesAtEveryAttach();
    void performsAnAttachmentInOrder();
    void restartsACaptureWhenTheKeyboardReturns_data();
    void restartsACaptureWhenTheKeyboardReturns();
    void endsARecordingWhenTheKeyboardReturns();
    void sendsNothingForARecordingThatARemovalEnded();
    void performsARemovalInOrder();
    void removesItsObserverWhileItReloadsAChangedProfile();
    void disablesTheControlsAndReportsARemovedKeyboard();
    void keepsTheFirmwareSpinnerOffUntilTheKeyboardReturns();
    void stopsARecordingWhenTheKeyboardIsRemoved();
    void showsTheRemovalAgain();
    void reloadsWhenAnotherClientChangedAProfile();
    void ignoresItsOwnChanges();
    void keepsItsObserversWhenAskedToRemoveItself();
    void acceptsDpiUpdates();
    void acceptsNewMacrosFromTheKeyboard();
    void acceptsEachPieceOfANotificationSeparately_data();
    void acceptsEachPieceOfANotificationSeparately();
    void reloadsTheLinesOfTheSelectedMacroWhenTheyMayHaveChanged_data();
    void reloadsTheLinesOfTheSelectedMacroWhenTheyMayHaveChanged();
    void showsABrightnessSetOnTheKeyboard();
    void survivesNotificationsOfWrongTypes_data();
    void survivesNotificationsOfWrongTypes();
    void showsErrorsByTheirCode_data();
    void showsErrorsByTheirCode();
    void closesTheDeviceSheetByItsButton();
    void restoresTheFocusWhenTheKeyboardReturns();
    void notificationsArriveAfterLargeOnes();
    void opensThePages();
    void showsWhyAPageDoesNotOpen_data();
    void showsWhyAPageDoesNotOpen();
    void opensTheHelpBook();
    void f1OpensTheHelpPageOfTheTab_data();
    void f1OpensTheHelpPageOfTheTab();

private:
    [[nodiscard]] int observers(const QString &name) const
    {
        return DistributedNotificationCenter::defaultCenter().observationCount(mHub->controller.get(), name);
    }

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<Hub> mHub;
};

namespace {

/// Calls a function for each event of one kind that a widget gets.
class EventWatcher : public QObject
{
public:
    EventWatcher(QWidget *widget, QEvent::Type type, std::function<void()> function)
        : mType(type), mFunction(std::move(function))
    {
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == mType)
            mFunction();
        return false;
    }

private:
    QEvent::Type mType;
    std::function<void()> mFunction;
};

} // namespace

void NotificationsTest::init()
{
    mDaemon = std::make_unique<ScriptedDaemon>(sampleDocument());
    mHub = std::make_unique<Hub>();
    mHub->open(*mDaemon);
}

void NotificationsTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void NotificationsTest::loadsAndEnablesWhenAKeyboardIsAttached()
{
    mDaemon->postNotification(u"Device Removed 271"_s);
    QTRY_VERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    mHub->controller->updateDriverVersions(QVariantMap{{u"FirmwareVersion"_s, u"1.0"_s}});
    mDaemon->setDocument(withActiveProfile(sampleDocument(), 0));
    mDaemon->postNotification(u"Device Attached 271"_s);
    QTRY_VERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isUp());
    QVERIFY(mHub->find<QWidget>("mA")->isEnabled());
    QCOMPARE(mDaemon->commands(), std::vector<int>{4});
    QCOMPARE(mHub->controller->deviceSettingsDict().value(u"ActiveProfile"_s).toInt(), 0);
    QVERIFY(mHub->controller->firmwareVersionString().isEmpty());
    QCOMPARE(mHub->find<QLabel>("mProfileNameLabel")->text(), u"Default Profile"_s);
    QCOMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), 4);
    QCOMPARE(mHub->find<TableView>("mProfilesTableView")->selectedRow(), 0);
}

void NotificationsTest::enablesTheControlsWhenReadingFails()
{
    const QVariantList profiles = mHub->controller->profilesArray();
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    mDaemon->setSilent(Command::readSettings);
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QCOMPARE(mDaemon->count(Command::readSettings), 1);
    QVERIFY(mHub->find<QWidget>("mA")->isEnabled());
    QVERIFY(mHub->find<QWidget>("mProfilesTableView")->isEnabled());
    QCOMPARE(mHub->controller->profilesArray(), profiles);
}

void NotificationsTest::readsTheProductFromTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("product");
    QTest::addColumn<bool>("isWired");
    QTest::addColumn<QString>("newObservation");
    QTest::newRow("271") << u"Device Attached 271"_s << 271 << true << u"commandReplyNotification271"_s;
    QTest::newRow("0") << u"Device Attached 0"_s << 0 << false << u"commandReplyNotification0"_s;
    QTest::newRow("another") << u"Device Attached 12"_s << 271 << true << QString();
    QTest::newRow("none") << u"Device Attached"_s << 271 << true << QString();
    QTest::newRow("no number") << u"Device Attached x"_s << 271 << true << QString();
}

void NotificationsTest::readsTheProductFromTheName()
{
    QFETCH(QString, name);
    QFETCH(int, product);
    QFETCH(bool, isWired);
    QFETCH(QString, newObservation);
    const DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    const auto observations = [&](const QString &observed) {
        return center.observationCount(mHub->controller.get(), observed);
    };
    const int before = observations(u"commandReplyNotification271"_s) + observations(u"commandReplyNotification0"_s);
    const int beforeNew = observations(newObservation);
    mHub->controller->deviceConnectedNotification({name, {}});
    QCOMPARE(mHub->controller->devicePID(), product);
    QCOMPARE(mHub->controller->isWiredDevice(), isWired);
    const int after = observations(u"commandReplyNotification271"_s) + observations(u"commandReplyNotification0"_s);
    QCOMPARE(after - before, newObservation.isEmpty() ? 0 : 1);
    if (!newObservation.isEmpty())
        QCOMPARE(observations(newObservation), beforeNew + 1);
    // The requests that follow contain the new number.
    QCOMPARE(mDaemon->lastRequest(Command::readSettings).dictionary.value(u"ProductID"_s).toInt(), product);
    QCOMPARE(observations(u"Device Attached 271"_s), 1);
}

void NotificationsTest::observesRepliesAtEveryAttach()
{
    mDaemon->postNotification(u"Device Attached 271"_s);
    mDaemon->postNotification(u"Device Attached 271"_s);
    QTRY_COMPARE(mDaemon->count(Command::readSettings), 2);
    QTRY_COMPARE(DistributedNotificationCenter::defaultCenter().observationCount(mHub->controller.get(),
                                                                                 u"commandReplyNotification271"_s),
                 3);
}

void NotificationsTest::performsAnAttachmentInOrder()
{
    const QString name = u"Device Attached 271"_s;
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    const auto *shownProfile = mHub->find<QLabel>("mProfileNameLabel");
    QStringList steps;
    const auto note = [&](const QString &step) {
        steps += u"%1; profile %2, %3 observers, product %4"_s.arg(step, shownProfile->text())
                     .arg(observers(name))
                     .arg(mHub->controller->devicePID());
    };
    const EventWatcher sheet(mHub->find<Sheet>("mCommunicationAlertWindow"), QEvent::Hide, [&] { note(u"told"_s); });
    const EventWatcher controls(mHub->find<QWidget>("mA"), QEvent::EnabledChange, [&] { note(u"enabled"_s); });
    const EventWatcher lighting(mHub->find<QWidget>("mBrightnessValue"), QEvent::EnabledChange,
                                [&] { note(u"lighting enabled"_s); });
    mDaemon->setScript(Command::readSettings, [&](const ScriptedDaemon::Request &) {
        note(u"read"_s); // the main thread is blocked meanwhile
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded(
            {{u"ReturnStatus"_s, 0}, {u"AllDevSettings"_s, withActiveProfile(sampleDocument(), 0)}})}};
    });
    mHub->controller->deviceConnectedNotification({u"Device Attached 0"_s, {}});
    QCOMPARE(steps, (QStringList{u"told; profile Raid, 0 observers, product 271"_s,
                                 u"read; profile Raid, 0 observers, product 0"_s,
                                 u"enabled; profile Raid, 0 observers, product 0"_s,
                                 u"lighting enabled; profile Raid, 0 observers, product 0"_s}));
    QCOMPARE(shownProfile->text(), u"Default Profile"_s);
    QCOMPARE(observers(name), 1);
}

void NotificationsTest::restartsACaptureWhenTheKeyboardReturns_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<bool>("wasRemoved");
    for (const auto &[name, command] : {std::pair{"single key", Command::startSingleKeyRecording},
                                        std::pair{"key for an event", Command::startEditHid}}) {
        QTest::addRow("%s, keyboard removed before", name) << command << true; // the removal has closed the sheet
        QTest::addRow("%s, daemon started anew", name) << command << false;
    }
}

void NotificationsTest::restartsACaptureWhenTheKeyboardReturns()
{
    QFETCH(Command, command);
    QFETCH(bool, wasRemoved);
    if (command == Command::startSingleKeyRecording) {
        mHub->find<QAbstractButton>("mA")->click();
        mHub->find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    } else {
        mHub->controller->selectTabAtIndex(2);
        mHub->find<TableView>("mMacroTableView")->selectRow(0);
        mHub->controller->macrosController()->updateSelectedMacroWithMacroDetails({u"Key Press A"_s});
        mHub->find<TableView>("mMacroDetailsTableView")->selectRow(0);
        mHub->find<PulldownButton>("mSettingsMacroDetails")->itemWithTag(MacroCommands::edit)->trigger();
    }
    QCOMPARE(mDaemon->count(command), 1);
    if (wasRemoved)
        mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    mDaemon->forgetRequests();
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    // First come the requests of every attachment.
    std::vector<int> expected{int(Command::readSettings)};
    if (!wasRemoved)
        expected.push_back(int(command));
    QCOMPARE(mDaemon->commands(), expected);
}

void NotificationsTest::sendsNothingForARecordingThatARemovalEnded()
{
    mHub->controller->selectTabAtIndex(2);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    for (const char *button : {"mRecordMacroDetails", "mAddMacroDetails"}) {
        mHub->find<QPushButton>(button)->click();
        mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
        mDaemon->forgetRequests();
        mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
        QCOMPARE(mDaemon->commands(), std::vector<int>{int(Command::readSettings)});
    }
}

void NotificationsTest::endsARecordingWhenTheKeyboardReturns()
{
    mHub->controller->selectTabAtIndex(2);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    mHub->find<QPushButton>("mRecordMacroDetails")->click();
    mDaemon->forgetRequests();
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}}); // of a restarted daemon
    QCOMPARE(mDaemon->count(Command::stopMacroRecording), 1);
    QVERIFY(!mHub->controller->macrosController()->isRecordingOrCapturing());
    QVERIFY(!mHub->controller->macrosController()->recordButtonReadsStop());
    QVERIFY(mHub->find<QWidget>("mMacroTableView")->isEnabled());
    QVERIFY(mHub->find<QWidget>("mRecordMacroDetails")->isEnabled());
}

void NotificationsTest::performsARemovalInOrder()
{
    const QString name = u"Device Removed 271"_s;
    mHub->controller->selectTabAtIndex(2);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    mHub->find<QPushButton>("mRecordMacroDetails")->click();
    mHub->controller->setDriverVersions();
    auto *spinner = mHub->find<Spinner>("mFirmwareVersionIndicator");
    QTRY_VERIFY(spinner->isAnimating());
    const auto *version = mHub->find<QLabel>("mFirmwareVersion");
    QStringList steps;
    const auto note = [&](const QString &step) {
        steps += u"%1; %2 observers, version \"%3\", %4"_s.arg(step)
                     .arg(observers(name))
                     .arg(version->text(), spinner->isAnimating() ? u"asked for"_s : u"not asked for"_s);
    };
    const EventWatcher sheet(mHub->find<Sheet>("mCommunicationAlertWindow"), QEvent::Show, [&] { note(u"told"_s); });
    const EventWatcher controls(mHub->find<QWidget>("mA"), QEvent::EnabledChange, [&] { note(u"disabled"_s); });
    mDaemon->setScript(Command::stopMacroRecording, [&](const ScriptedDaemon::Request &) {
        note(u"stopped"_s); // the main thread is blocked meanwhile
        return std::vector<ScriptedDaemon::Reply>{{ScriptedDaemon::encoded({{u"ReturnStatus"_s, 0}})}};
    });
    mHub->controller->deviceDisconnectedNotification({name, {}});
    QCOMPARE(steps, (QStringList{u"told; 0 observers, version \"\", asked for"_s,
                                 u"stopped; 0 observers, version \"-\", not asked for"_s,
                                 u"disabled; 0 observers, version \"-\", not asked for"_s}));
    QCOMPARE(observers(name), 1);
}

void NotificationsTest::removesItsObserverWhileItReloadsAChangedProfile()
{
    const QString name = u"Profile Updated 271"_s;
    std::atomic<int> observersMeanwhile = -1;
    mDaemon->setScript(Command::readSettings, [&](const ScriptedDaemon::Request &) {
        observersMeanwhile = observers(name); // the main thread is blocked meanwhile
        return std::vector<ScriptedDaemon::Reply>();
    });
    mHub->controller->deamonProfileUpdateNotification({name, {}});
    QCOMPARE(observersMeanwhile, 0);
    QCOMPARE(observers(name), 1);
    mHub->controller->deamonProfileUpdateNotification({name, {{u"Source App"_s, u"org.quillkestra.Configurator"_s}}});
    QCOMPARE(observers(name), 1);
}

void NotificationsTest::disablesTheControlsAndReportsARemovedKeyboard()
{
    const QVariantList profiles = mHub->controller->profilesArray();
    mHub->controller->setDriverVersions();
    QTRY_VERIFY(mHub->find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    mDaemon->forgetRequests();
    mDaemon->postNotification(u"Device Removed 271"_s);
    QTRY_VERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QVERIFY(!mHub->find<QWidget>("mA")->isEnabled());
    QVERIFY(!mHub->find<QWidget>("mProfilesTableView")->isEnabled());
    QCOMPARE(mHub->find<QLabel>("mFirmwareVersion")->text(), u"-"_s);
    QVERIFY(!mHub->find<Spinner>("mFirmwareVersionIndicator")->isAnimating());
    QCOMPARE(mHub->controller->profilesArray(), profiles);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
}

void NotificationsTest::keepsTheFirmwareSpinnerOffUntilTheKeyboardReturns()
{
    const auto *spinner = mHub->find<Spinner>("mFirmwareVersionIndicator");
    const auto *version = mHub->find<QLabel>("mFirmwareVersion");
    mHub->controller->setDriverVersions(); // a queued call starts the spinner
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    QCoreApplication::processEvents();
    QVERIFY(!spinner->isAnimating());
    mHub->controller->setDriverVersions(); // every three seconds until the version is known
    QCoreApplication::processEvents();
    QCOMPARE(mDaemon->count(Command::queryFirmwareVersion), 2);
    QVERIFY(!spinner->isAnimating());
    QVERIFY(version->isVisibleTo(version->parentWidget()));
    QCOMPARE(version->text(), u"-"_s);
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    mHub->controller->setDriverVersions();
    QTRY_VERIFY(spinner->isAnimating());
}

void NotificationsTest::stopsARecordingWhenTheKeyboardIsRemoved()
{
    mHub->controller->selectTabAtIndex(2);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    mHub->find<QPushButton>("mRecordMacroDetails")->click();
    mDaemon->postNotification(u"Device Removed 271"_s);
    QTRY_COMPARE(mDaemon->count(Command::stopMacroRecording), 1);
    QTRY_VERIFY(!mHub->find<QWidget>("mA")->isEnabled());
    QVERIFY(!mHub->find<QWidget>("mMacroTableView")->isEnabled());
}

void NotificationsTest::showsTheRemovalAgain()
{
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    QVERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QCOMPARE(DistributedNotificationCenter::defaultCenter().observationCount(mHub->controller.get(),
                                                                             u"Device Removed 271"_s),
             1);
    mHub->find<QPushButton>("mCommunicationOKButton")->click();
    QVERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
}

void NotificationsTest::reloadsWhenAnotherClientChangedAProfile()
{
    mDaemon->setDocument(withActiveProfile(sampleDocument(), 0));
    mDaemon->postNotification(u"Profile Updated 271"_s, {{u"Source App"_s, u"org.quillkestra.kestractl"_s}});
    QTRY_COMPARE(mHub->find<QLabel>("mProfileNameLabel")->text(), u"Default Profile"_s);
    QCOMPARE(mDaemon->commands(), std::vector<int>{4});
    QCOMPARE(mHub->find<TableView>("mProfilesTableView")->selectedRow(), 0);

    // Without a name it does not count as the configurator's own.
    mDaemon->postNotification(u"Profile Updated 271"_s);
    QTRY_COMPARE(mDaemon->count(Command::readSettings), 2);
}

void NotificationsTest::ignoresItsOwnChanges()
{
    mDaemon->postNotification(u"Profile Updated 271"_s, {{u"Source App"_s, u"org.quillkestra.Configurator"_s}});
    // Notifications arrive in order: once the next one is handled, this one is too.
    mDaemon->postNotification(u"Illumination Updated 271"_s, {{u"BrightnessKBNormal"_s, 1}});
    QTRY_COMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), 1);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
}

void NotificationsTest::keepsItsObserversWhenAskedToRemoveItself()
{
    mHub->controller->removeSelfAsNotificationObserver();
    for (const QString &name :
         {u"Device Attached 271"_s, u"Device Removed 271"_s, u"Profile Updated 271"_s, u"DPI Updated 271"_s,
          u"Saved New OTFM 271"_s, u"Illumination Updated 271"_s, u"commandReplyNotification271"_s})
        QCOMPARE(observers(name), 1);
}

void NotificationsTest::acceptsDpiUpdates()
{
    mDaemon->postNotification(u"DPI Updated 271"_s, {{u"DPI"_s, 800}});
    mDaemon->postNotification(u"Illumination Updated 271"_s, {{u"BrightnessKBNormal"_s, 3}});
    QTRY_COMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), 3);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
}

void NotificationsTest::acceptsNewMacrosFromTheKeyboard()
{
    QVariantMap profile = sampleDocument().value(u"Profiles"_s).toList().constFirst().toMap();
    profile[u"ProfileName"_s] = u"On the fly"_s;
    const QVariantList macros{QVariantMap{{u"MacroName"_s, u"OTFM 1"_s}}};
    const QVariantList profilesBefore = mHub->controller->profilesArray();
    const int brightnessBefore = mHub->find<QSlider>("mBrightnessValue")->value();
    QVERIFY(brightnessBefore != profile.value(u"BrightnessKBNormal"_s).toInt());
    mDaemon->postNotification(u"Saved New OTFM 271"_s, {{u"AllMacros"_s, macros}, {u"ActiveProfile"_s, profile}});
    QTRY_COMPARE(mHub->controller->macrosArray(), macros);
    QCOMPARE(mHub->controller->currentProfileDict(), profile);
    // Deliberately only these two pieces of the document.
    QCOMPARE(mHub->controller->profilesArray(), profilesBefore);
    QCOMPARE(mHub->controller->keysController()->allMacrosArray(), macros);
    QCOMPARE(mHub->controller->keysController()->keysCurrentProfileDict(), profile);
    QTRY_COMPARE(mHub->find<TableView>("mMacroTableView")->numberOfRows(), 1);
    const QWidget *keysTab = mHub->controller->keysController()->view();
    QCOMPARE(keysTab->findChild<QLabel *>(u"mProfileNameLabel"_s)->text(), u"On the fly"_s);
    // Only the keys and macros tabs show it at once. Deliberate.
    QCOMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), brightnessBefore);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
}

void NotificationsTest::acceptsEachPieceOfANotificationSeparately_data()
{
    QTest::addColumn<QVariant>("macros");
    QTest::addColumn<QVariant>("profile");
    QTest::addColumn<bool>("areMacrosTaken");
    QTest::addColumn<bool>("isProfileTaken");
    const QVariant macros = QVariantList{QVariantMap{{u"MacroName"_s, u"New"_s}}};
    const QVariant profile = QVariantMap{{u"ProfileName"_s, u"New"_s}};
    QTest::newRow("both") << macros << profile << true << true;
    QTest::newRow("macros alone") << macros << QVariant() << true << false;
    QTest::newRow("the profile alone") << QVariant() << profile << false << true;
    QTest::newRow("a profile of the wrong type") << macros << QVariant(1) << true << false;
    QTest::newRow("macros of the wrong type") << QVariant(u"none"_s) << profile << false << true;
    QTest::newRow("neither") << QVariant() << QVariant() << false << false;
}

void NotificationsTest::acceptsEachPieceOfANotificationSeparately()
{
    QFETCH(QVariant, macros);
    QFETCH(QVariant, profile);
    QFETCH(bool, areMacrosTaken);
    QFETCH(bool, isProfileTaken);
    const QVariantList macrosBefore = mHub->controller->macrosArray();
    const QVariantMap profileBefore = mHub->controller->currentProfileDict();
    QVariantMap news;
    if (macros.isValid())
        news[u"AllMacros"_s] = macros;
    if (profile.isValid())
        news[u"ActiveProfile"_s] = profile;
    mHub->controller->savedNewOTFMNotification({u"Saved New OTFM 271"_s, news});
    QCOMPARE(mHub->controller->macrosArray(), areMacrosTaken ? macros.toList() : macrosBefore);
    QCOMPARE(mHub->controller->keysController()->keysCurrentProfileDict(),
             isProfileTaken ? profile.toMap() : profileBefore);
    QCOMPARE(mHub->find<TableView>("mMacroTableView")->numberOfRows(), areMacrosTaken ? 1 : macrosBefore.size());
}

void NotificationsTest::reloadsTheLinesOfTheSelectedMacroWhenTheyMayHaveChanged_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isFetched");
    QTest::newRow("the same record") << u"delay"_s << QVariant(20) << false;
    QTest::newRow("another name") << u"MacroName"_s << QVariant(u"New"_s) << false;
    QTest::newRow("other events") << u"sequence"_s << QVariant(QVariantMap{{u"Events"_s, QVariantList()}}) << true;
}

void NotificationsTest::reloadsTheLinesOfTheSelectedMacroWhenTheyMayHaveChanged()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, isFetched);
    mHub->find<TableView>("mMacroTableView")->selectRow(0);
    mDaemon->forgetRequests();
    QVariantList macros = mHub->controller->macrosArray();
    QVariantMap macro = macros.first().toMap();
    macro[key] = value;
    macros[0] = macro;
    mHub->controller->savedNewOTFMNotification(
        {u"Saved New OTFM 271"_s,
         {{u"AllMacros"_s, macros}, {u"ActiveProfile"_s, mHub->controller->currentProfileDict()}}});
    QCOMPARE(mDaemon->commands(), isFetched ? std::vector<int>{int(Command::readMacroLines)} : std::vector<int>());
}

void NotificationsTest::showsABrightnessSetOnTheKeyboard()
{
    mDaemon->postNotification(u"Illumination Updated 271"_s, {{u"BrightnessKBNormal"_s, 0}});
    QTRY_COMPARE(mHub->find<QSlider>("mBrightnessValue")->value(), 0);
    QCOMPARE(mDaemon->commands(), std::vector<int>());
}

void NotificationsTest::survivesNotificationsOfWrongTypes_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Device Attached 271", "Device Removed 271", "Profile Updated 271", "DPI Updated 271",
                             "Saved New OTFM 271", "Illumination Updated 271", "commandReplyNotification271",
                             "SingleKeyEvent271", "Game Mode Pressed 271", "MacroSequence271", "SingleKeyEvent1048"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void NotificationsTest::survivesNotificationsOfWrongTypes()
{
    QFETCH(QString, name);
    const QVariantMap profileBefore = mHub->controller->currentProfileDict();
    const QVariantList macrosBefore = mHub->controller->macrosArray();
    const QVariantMap wrong{{u"Source App"_s, 3},
                            {u"AllMacros"_s, QVariantMap{{u"x"_s, 1}}},
                            {u"ActiveProfile"_s, u"none"_s},
                            {u"BrightnessKBNormal"_s, QVariantList{1}},
                            {u"MessageID"_s, QByteArray("14")},
                            {u"FirmwareVersion"_s, QVariantList()},
                            {u"singleKey"_s, u"A"_s},
                            {u"singleKeyModif"_s, QVariantMap()},
                            {u"messagesArray"_s, QVariantList{1, QVariantMap(), true}}};
    mDaemon->postNotification(name, wrong);
    mDaemon->postNotification(name);
    // Both are handled once the last notification, posted after them, has arrived.
    mDaemon->postNotification(u"commandReplyNotification271"_s,
                              {{u"MessageID"_s, 14}, {u"FirmwareVersion"_s, u"last"_s}});
    QTRY_COMPARE(mHub->controller->firmwareVersionString(), u"last"_s);
    QCOMPARE(mHub->controller->currentProfileDict(), profileBefore);
    QCOMPARE(mHub->controller->macrosArray(), macrosBefore);
}

void NotificationsTest::showsErrorsByTheirCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("description");
    QTest::newRow("0") << 0 << u"The keyboard service does not respond"_s << localizedText("lkeyCommErrorDesc");
    QTest::newRow("1") << 1 << u"No keyboard found"_s << localizedText("lkeyDeviceNotFoundDesc");
    QTest::newRow("2") << 2 << QString() << QString();
    QTest::newRow("negative") << -1 << QString() << QString();
}

void NotificationsTest::showsErrorsByTheirCode()
{
    QFETCH(int, code);
    QFETCH(QString, title);
    QFETCH(QString, description);
    mHub->controller->showErrorForErrorCode(code);
    auto *alert = mHub->find<Sheet>("alert");
    QCOMPARE(alert != nullptr, !title.isEmpty());
    if (!alert)
        return;
    QVERIFY(alert->isVisible());
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), title);
    QCOMPARE(alert->findChild<QLabel *>(u"alertDescription"_s)->text(), description);
    QCOMPARE(alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->text().remove(u'&'), u"OK"_s);
    QCOMPARE(alert->parentWidget(), mHub->window.get());
    QVERIFY(!alert->findChild<QPushButton *>(u"alertAlternativeButton"_s));
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QTRY_VERIFY(!mHub->find<Sheet>("alert"));
    QVERIFY(mHub->find<QWidget>("mA")->isEnabled());
}

void NotificationsTest::closesTheDeviceSheetByItsButton()
{
    mHub->controller->showErrorDialog();
    QVERIFY(mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QCOMPARE(mHub->find<Sheet>("mCommunicationAlertWindow")->parentWidget(), mHub->window.get());
    QCOMPARE(mHub->find<QLabel>("mCommunicationAlertTitle")->text(), u"No keyboard found"_s);
    QCOMPARE(mHub->find<QLabel>("mCommunicationAlertDesc")->text(), localizedText("lkeyDeviceNotFoundDesc"));
    mHub->find<QPushButton>("mCommunicationOKButton")->click();
    QVERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isVisible());
    QVERIFY(!mHub->find<Sheet>("mCommunicationAlertWindow")->isUp());
}

void NotificationsTest::restoresTheFocusWhenTheKeyboardReturns()
{
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    auto *key = mHub->find<QAbstractButton>("mA");
    key->click();
    key->setFocus();
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    QVERIFY(!key->hasFocus());
    mHub->controller->deviceConnectedNotification({u"Device Attached 271"_s, {}});
    QTRY_VERIFY(key->hasFocus());
}

void NotificationsTest::notificationsArriveAfterLargeOnes()
{
    const RawPoster other;
    for (int count = 0; count < 3; ++count)
        other.post(u"Profile Updated 271"_s, 40'000'000);
    other.waitUntilPosted();
    QTRY_COMPARE(mDaemon->count(Command::readSettings), 3);
    mDaemon->setDocument(withActiveProfile(sampleDocument(), 0));
    mDaemon->postNotification(u"Profile Updated 271"_s);
    QTRY_COMPARE(mHub->find<QLabel>("mProfileNameLabel")->text(), u"Default Profile"_s);
    mHub->controller->switchProfileWithID(1);
    QCOMPARE(mDaemon->count(Command::switchProfile), 1);
}

void NotificationsTest::opensThePages()
{
    mHub->find<QAbstractButton>("mFBButton")->click();
    mHub->find<QAbstractButton>("mTwitterButton")->click();
    mHub->find<QAbstractButton>("mQuillClubButton")->click();
    mHub->find<QAbstractButton>("mCheckUpdates")->click();
    const QList<QUrl> expected{QUrl(Addresses::firstSocialNetwork), QUrl(Addresses::secondSocialNetwork),
                               QUrl(Addresses::community), QUrl(Addresses::driverDownloads)};
    QCOMPARE(mHub->openedPages, expected);
    for (const QUrl &page : expected)
        QVERIFY2(page.host().endsWith(u".example"_s), qPrintable(page.toString()));
}

void NotificationsTest::showsWhyAPageDoesNotOpen_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<WebPages::Outcome>("outcome");
    QTest::addColumn<QString>("description");
    const QString community(Addresses::community);
    const QString downloads(Addresses::driverDownloads);
    QTest::newRow("no browser") << u"mQuillClubButton"_s << WebPages::Outcome::noBrowser
                                << u"No browser could open %1."_s.arg(community);
    QTest::newRow("no browser for updates")
        << u"mCheckUpdates"_s << WebPages::Outcome::noBrowser << u"No browser could open %1."_s.arg(downloads);
    const QString placeholder =
        u"%1 is a placeholder. The distributor of this program has not entered an address yet."_s;
    QTest::newRow("placeholder") << u"mQuillClubButton"_s << WebPages::Outcome::placeholder
                                 << placeholder.arg(community);
    QTest::newRow("placeholder for updates")
        << u"mCheckUpdates"_s << WebPages::Outcome::placeholder << placeholder.arg(downloads);
}

void NotificationsTest::showsWhyAPageDoesNotOpen()
{
    QFETCH(QString, button);
    QFETCH(WebPages::Outcome, outcome);
    QFETCH(QString, description);
    auto *link = mHub->window->findChild<QAbstractButton *>(button);
    link->click();
    QVERIFY(!mHub->find<Sheet>("alert")); // an opened page is not reported
    mHub->outcomeOfPages = outcome;
    link->click();
    auto *alert = mHub->find<Sheet>("alert");
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), u"The web page was not opened"_s);
    QCOMPARE(alert->findChild<QLabel *>(u"alertDescription"_s)->text(), description);
    alert->findChild<QPushButton *>(u"alertDefaultButton"_s)->click();
    QTRY_VERIFY(!mHub->find<Sheet>("alert"));
}

void NotificationsTest::opensTheHelpBook()
{
    const auto viewers = [] {
        QWidgetList found = QApplication::topLevelWidgets();
        found.removeIf([](const QWidget *widget) { return widget->objectName() != "helpViewer"_L1; });
        return found;
    };
    HelpViewer::registerBook(u"Book"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/help/en"_s);
    mHub->find<QPushButton>("mHelpButton")->click();
    mHub->find<QPushButton>("mHelpButton")->click();
    QCOMPARE(viewers().size(), 1);
    QWidget *viewer = viewers().constFirst();
    QVERIFY(viewer->isVisible());
    QCOMPARE(viewer->windowTitle(), u"Book"_s);
    const auto *page = viewer->findChild<QTextBrowser *>(u"helpBrowser"_s);
    QCOMPARE(page->source().fileName(), u"index.html"_s);
    QVERIFY(page->toPlainText().contains(u"Quill Kestra"_s));
    viewer->close();
    QTRY_VERIFY(viewers().isEmpty());
}

void NotificationsTest::f1OpensTheHelpPageOfTheTab_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("page");
    QTest::newRow("keys") << 0 << u"keys.html"_s;
    QTest::newRow("profiles") << 1 << u"profiles.html"_s;
    QTest::newRow("macros") << 2 << u"macros.html"_s;
    QTest::newRow("lighting") << 3 << u"lighting.html"_s;
    QTest::newRow("maintenance") << 4 << u"maintenance.html"_s;
}

void NotificationsTest::f1OpensTheHelpPageOfTheTab()
{
    QFETCH(int, tab);
    QFETCH(QString, page);
    HelpViewer::registerBook(u"Book"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/help/en"_s);
    QWidget *window = mHub->window.get();
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
    mHub->controller->selectTabAtIndex(tab);
    QTest::keyClick(window, Qt::Key_F1);
    QTextBrowser *browser = nullptr;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == "helpViewer"_L1)
            browser = widget->findChild<QTextBrowser *>(u"helpBrowser"_s);
    }
    QVERIFY(browser);
    QCOMPARE(browser->source().fileName(), page);
    const QPointer<QWidget> viewer = browser->window();
    viewer->close();
    QTRY_VERIFY(!viewer);
}

QTEST_MAIN(NotificationsTest)
#include "notificationstest.moc"
