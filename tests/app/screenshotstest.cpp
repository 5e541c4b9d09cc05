// SPDX-License-Identifier: MIT
// Draws the whole window with the real daemon on every tab, with its sheets and alerts, in both palettes and in the
// shortest and the longest language. The pictures are in the folder `screenshots` beside the tests, for a person to
// inspect. The test checks that no text is cut off, every text has enough contrast, and disabled controls look
// disabled.
#include "base/frontapplicationkeys.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/daemontransport.h"
#include "keys/keymapping.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/macrocommands.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/drawncontrols.h"
#include "tests/support/fulldocument.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDBusConnection>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr double leastTextContrast = 4.5;    // WCAG 2, 1.4.3
constexpr double leastIndicatorContrast = 3; // WCAG 2, 1.4.11
constexpr int macrosTab = 2;
constexpr int lightingTab = 3;
constexpr QSize windowSize(1200, 760);

struct Scene
{
    const char *name;
    int tab;
    void (*open)(const Hub &hub); ///< null: only the tab
    bool isSheet = true;          ///< the scene opens a sheet
};

void choose(const Hub &hub, const char *gear, int tag)
{
    hub.find<PulldownButton>(gear)->itemWithTag(tag)->trigger();
}

void editEvent(const Hub &hub, int row)
{
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    hub.find<TableView>("mMacroDetailsTableView")->selectRow(row);
    choose(hub, "mSettingsMacroDetails", MacroCommands::edit);
}

/// Makes three changes and waits until the window offers to undo the last one.
void changeKeys(const Hub &hub)
{
    for (const int code : {4, 5, 6}) {
        const QVariantMap keys = hub.controller->currentProfileDict().value(SettingsKeys::keys).toMap();
        hub.controller->updateKeySettings(
            {{SettingsKeys::keys, KeyMappings::withEntry(keys, QString::number(code),
                                                         KeyMappings::Assignment::launchProgram, u"/bin/game"_s, 0)}});
    }
    QTRY_VERIFY(hub.find<QToolButton>("mUndoButton")->text().contains(u'C'));
}

void openHistory(const Hub &hub)
{
    hub.find<QToolButton>("mHistoryButton")->click();
    auto *list = hub.find<QTreeWidget>("mHistoryList");
    QTRY_COMPARE(list->topLevelItemCount(), 1);
    list->setCurrentItem(list->topLevelItem(0)->child(2));
    QTRY_VERIFY(!hub.find<QLabel>("mHistoryEffect")->text().isEmpty());
}

const QString gnomeShell = u"org.gnome.Shell"_s;

const std::array scenes{
    Scene{"keys", 0, nullptr},
    Scene{"profiles", 1, nullptr},
    Scene{"macros", macrosTab, [](const Hub &hub) { hub.find<TableView>("mMacroTableView")->selectRow(0); }, false},
    Scene{"macros-recording", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.find<QPushButton>("mAddMacroDetails")->click();
          },
          false},
    Scene{"lighting", lightingTab, nullptr},
    Scene{"lighting-cycling-dim", lightingTab,
          [](const Hub &hub) {
              hub.find<RadioGroup>("mLighting")->findChildren<QRadioButton *>().at(1)->click();
              hub.find<QSlider>("mBrightnessValue")->setValue(1);
          },
          false},
    Scene{"lighting-off", lightingTab, [](const Hub &hub) { hub.find<QSlider>("mBrightnessValue")->setValue(0); },
          false},
    Scene{"lighting-versions", lightingTab,
          [](const Hub &hub) {
              hub.controller->setDriverVersions();
              QTRY_VERIFY(!hub.find<QLabel>("mFirmwareVersion")->text().isEmpty());
          },
          false},
    Scene{"lighting-asking", lightingTab,
          [](const Hub &hub) {
              hub.find<QLabel>("mDriverVersion")->setText(u"1.0"_s);
              hub.controller->lightingController()->startProgresIndicatorAnimation();
          },
          false},
    Scene{"keys-off", 0, [](const Hub &hub) { hub.find<QSlider>("mBrightnessValue")->setValue(0); }, false},
    Scene{"keys-dim", 0, [](const Hub &hub) { hub.find<QSlider>("mBrightnessValue")->setValue(1); }, false},
    Scene{"keys-cycling", 0,
          [](const Hub &hub) { hub.find<RadioGroup>("mLighting")->findChildren<QRadioButton *>().at(1)->click(); },
          false},
    Scene{"maintenance", 4, nullptr},
    Scene{"status-report", 1,
          [](const Hub &hub) {
              hub.controller->report({.event = StatusReport::Event::exportFailed,
                                      .subject = u"Raid.KestraProfile"_s,
                                      .reason = u"Permission denied"_s});
          },
          false},
    Scene{"status-elided", 1,
          [](const Hub &hub) {
              hub.controller->report(
                  {.event = StatusReport::Event::exportFailed, .subject = u"A very long name "_s.repeated(20)});
          },
          false},
    Scene{
        "status-gnome", 1,
        [](const Hub &hub) {
            QVERIFY(QDBusConnection::sessionBus().registerService(gnomeShell));
            QTRY_VERIFY(
                hub.find<StatusLine>("mStatusLine")->shownText().contains(FrontApplicationKeys::shellExtensionPackage));
        },
        false},
    Scene{"undo", 0, changeKeys, false},
    Scene{"history-empty", 0, [](const Hub &hub) { hub.find<QToolButton>("mHistoryButton")->click(); }},
    Scene{"history", 0,
          [](const Hub &hub) {
              changeKeys(hub);
              openHistory(hub);
          }},
    Scene{
        "history-before", 0,
        [](const Hub &hub) {
            changeKeys(hub);
            const QVariantMap keys = hub.controller->currentProfileDict().value(SettingsKeys::keys).toMap();
            hub.controller->updateKeySettings(
                {{SettingsKeys::keys, KeyMappings::withEntry(keys, u"4"_s, KeyMappings::Assignment::disabled, 0, 0)}});
            openHistory(hub);
            auto *list = hub.find<QTreeWidget>("mHistoryList");
            list->setCurrentItem(list->topLevelItem(0)->child(0));
            QTRY_VERIFY(hub.find<QPushButton>("mHistoryRestore")->isEnabled());
        }},
    Scene{"history-forget", 0,
          [](const Hub &hub) {
              changeKeys(hub);
              openHistory(hub);
              hub.find<QPushButton>("mHistoryClear")->click();
          }},
    Scene{"undo-offered", macrosTab,
          [](const Hub &hub) {
              changeKeys(hub); // the window knows the history now
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.controller->removeAllEventsForMacroAtIndex(0);
              QTRY_VERIFY(hub.find<StatusLine>("mStatusLine")->shownText().contains("Ctrl+Z"_L1));
          },
          false},
    Scene{"single-key-sheet", 0,
          [](const Hub &hub) { hub.find<Sheet>("mSingleKeyWindow")->beginSheet(hub.window.get()); }},
    Scene{"event-sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 0); }},
    Scene{"delay-sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 1); }},
    Scene{"macro-deletion", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.find<QPushButton>("mDeleteMacro")->click();
          }},
    Scene{"profile-deletion", 1,
          [](const Hub &hub) { choose(hub, "mSettingsProfile", ProfileCommands::deleteProfile); }},
    Scene{"profile-restoring", 1,
          [](const Hub &hub) { choose(hub, "mSettingsProfile", ProfileCommands::restoreDefault); }},
    Scene{"lighting-restoring", lightingTab,
          [](const Hub &hub) { hub.find<QPushButton>("mRestoreSettings")->click(); }},
    Scene{"communication-error", 0, [](const Hub &hub) { hub.controller->showErrorForErrorCode(0); }},
    Scene{"device-not-found", 0, [](const Hub &hub) { hub.controller->showErrorDialog(); }},
    Scene{"restoring-state", 0, [](const Hub &hub) { hub.controller->showRestoringStateWindow(); }},
};

QVariantMap startDocument()
{
    const QVariantMap device{{SettingsKeys::activeProfile, 0}, {SettingsKeys::profileOsdOn, 0}};
    QVariantMap raid = fullProfile(u"Raid night"_s);
    raid[SettingsKeys::autoSwitchOn] = 0;
    return {{SettingsKeys::profiles, QVariantList{fullProfile(u"Desktop"_s), raid}},
            {SettingsKeys::macros, QVariantList{fullMacro(u"Opening burst"_s, 0, 12), fullMacro(u"Heal"_s, 1, 4)}},
            {SettingsKeys::deviceSettings, device}};
}

/// The visible sheet in front; null without one.
Sheet *shownSheet()
{
    const auto isShown = [](const Sheet *sheet) { return sheet->isVisible(); };
    for (QWidget *widget : QApplication::allWidgets()) {
        auto *sheet = qobject_cast<Sheet *>(widget);
        if (sheet && sheet->isVisible() && !std::ranges::any_of(sheet->findChildren<Sheet *>(), isShown))
            return sheet;
    }
    return nullptr;
}

} // namespace

class ScreenshotsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void drawsTheWindow_data();
    void drawsTheWindow();
    void drawsTheHelp_data();
    void drawsTheHelp();
    void disabledControlsLookDisabled_data();
    void disabledControlsLookDisabled();
    void untickedBoxesAreVisibleOnADarkDesktop();
    void findsAFaintIndicator();
    void findsFaintTexts();
    void findsCutTexts();

private:
    void openWindow(const QString &language, bool isDark);

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void ScreenshotsTest::initTestCase()
{
    // The build's resources, with the pictures of the buttons.
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
}

void ScreenshotsTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->store(startDocument()));
    QVERIFY(mDaemon->start());
}

void ScreenshotsTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
    QDBusConnection::sessionBus().unregisterService(gnomeShell); // of a scene
}

void ScreenshotsTest::openWindow(const QString &language, bool isDark)
{
    installTexts(textsFolder(), {language});
    wearPalette(isDark);
    mHub = std::make_unique<Hub>();
    mHub->window->resize(windowSize);
    mHub->controller->initializeDevice();
    QVERIFY(QTest::qWaitForWindowExposed(mHub->window.get()));
}

void ScreenshotsTest::drawsTheWindow_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("scene");
    for (const char *language : {"en", "fr"}) {
        for (const bool isDark : {false, true}) {
            for (size_t scene = 0; scene < scenes.size(); ++scene)
                QTest::addRow("%s-%s-%s", scenes[scene].name, language, isDark ? "dark" : "light")
                    << QString::fromLatin1(language) << isDark << int(scene);
        }
    }
}

void ScreenshotsTest::drawsTheWindow()
{
    QFETCH(QString, language);
    QFETCH(bool, isDark);
    QFETCH(int, scene);
    openWindow(language, isDark);
    const Scene &shown = scenes[size_t(scene)];
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    tabs->setCurrentIndex(shown.tab);
    if (shown.open)
        shown.open(*mHub);
    QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
    Sheet *sheet = shownSheet();
    QCOMPARE(sheet != nullptr, shown.open && shown.isSheet);
    QWidget *front = mHub->window.get();
    if (sheet) {
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
        front = sheet;
    }
    QVERIFY(savePicture(drawnWithSheet(mHub->window.get(), sheet), u"window"_s));
    for (const auto *gear : front->findChildren<PulldownButton *>())
        QVERIFY2(!gear->isVisible() || !gear->icon().pixmap(gear->iconSize()).isNull(), qPrintable(gear->objectName()));
    // Texts of the daemon may still come, and the layout follows them.
    const auto faults = [front] { return cutTexts(front) + faintTexts(front, leastTextContrast); };
    QTRY_VERIFY2(faults().isEmpty(), qPrintable(faults().join(u'\n')));
}

void ScreenshotsTest::drawsTheHelp_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QString>("query");
    for (const auto &[language, query] : {std::pair("en", u"brightness"_s), std::pair("fr", u"macro"_s)}) {
        for (const bool isDark : {false, true}) {
            const char *palette = isDark ? "dark" : "light";
            QTest::addRow("help-%s-%s", language, palette) << QString::fromLatin1(language) << isDark << QString();
            QTest::addRow("help-search-%s-%s", language, palette) << QString::fromLatin1(language) << isDark << query;
        }
    }
}

void ScreenshotsTest::drawsTheHelp()
{
    QFETCH(QString, language);
    QFETCH(bool, isDark);
    QFETCH(QString, query);
    openWindow(language, isDark);
    mHub->find<QPushButton>("mHelpButton")->click();
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(all, u"helpViewer"_s, &QWidget::objectName);
    QVERIFY(found != all.end());
    QWidget *help = *found;
    QVERIFY(QTest::qWaitForWindowExposed(help));
    auto *list = help->findChild<QListWidget *>(u"helpList"_s);
    const int pages = list->count();
    if (!query.isEmpty()) {
        QTest::keyClicks(help->findChild<QLineEdit *>(u"helpSearch"_s), query);
        QTRY_VERIFY(list->count() > 0 && list->count() < pages);
        QTest::keyClick(help->findChild<QLineEdit *>(u"helpSearch"_s), Qt::Key_Return);
    }
    QCoreApplication::processEvents();
    QVERIFY(savePicture(drawnWithSheet(help, nullptr), u"window"_s));
    const QStringList faults = cutTexts(help) + faintTexts(help, leastTextContrast);
    help->close(); // deletes it
    QCoreApplication::sendPostedEvents(help, QEvent::DeferredDelete);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void ScreenshotsTest::disabledControlsLookDisabled_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("tab");
    for (const bool isDark : {false, true}) {
        // The maintenance tab has no controls.
        for (const auto &[tab, name] : {std::pair(0, "keys"), std::pair(1, "profiles"), std::pair(macrosTab, "macros"),
                                        std::pair(lightingTab, "lighting")})
            QTest::addRow("%s-absent-%s", name, isDark ? "dark" : "light") << isDark << tab;
    }
}

void ScreenshotsTest::disabledControlsLookDisabled()
{
    QFETCH(bool, isDark);
    QFETCH(int, tab);
    openWindow(u"en"_s, isDark);
    mHub->find<QTabWidget>("mKeyboardTabView")->setCurrentIndex(tab);
    QCoreApplication::processEvents();
    QWidget *page = mHub->find<QTabWidget>("mKeyboardTabView")->currentWidget();
    QList<std::pair<QAbstractButton *, QImage>> enabled;
    for (QAbstractButton *button : page->findChildren<QAbstractButton *>()) {
        if (button->isVisible() && button->isEnabled())
            enabled.emplaceBack(button, drawn(button));
    }
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    const auto isAnyDisabled = [&] {
        return std::ranges::any_of(enabled, [](const auto &pair) { return !pair.first->isEnabled(); });
    };
    QTRY_VERIFY(isAnyDisabled());
    QCoreApplication::processEvents();
    QVERIFY(savePicture(drawnWithSheet(mHub->window.get(), shownSheet()), u"window"_s));
    QStringList alike;
    for (const auto &[button, before] : enabled) {
        if (!button->isEnabled() && drawn(button) == before)
            alike += button->objectName();
    }
    QVERIFY2(alike.isEmpty(), qPrintable(alike.join(u'\n')));
}

void ScreenshotsTest::untickedBoxesAreVisibleOnADarkDesktop()
{
    openWindow(u"en"_s, true);
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    const auto faults = [this] {
        QCoreApplication::processEvents();
        return faintIndicators(mHub->window.get(), leastIndicatorContrast).join(u'\n');
    };
    tabs->setCurrentIndex(1);
    auto *box = mHub->find<QCheckBox>("mEnableOnScreenDisplay");
    QVERIFY(box->isVisible() && box->isEnabled());
    box->setChecked(false);
    auto *profiles = mHub->find<TableView>("mProfilesTableView");
    const QModelIndex tick = profiles->model()->index(1, profiles->model()->columnCount() - 1);
    QVERIFY(tick.flags().testFlag(Qt::ItemIsUserCheckable));
    QCOMPARE(tick.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    for (const int selectedRow : {0, 1}) {
        profiles->selectRow(selectedRow);
        QCOMPARE(faults(), QString());
    }
    tabs->setCurrentIndex(3);
    for (auto *zone : mHub->find<QWidget>("lightingView")->findChildren<QCheckBox *>())
        zone->setChecked(false);
    for (const int effect : {0, 1}) {
        mHub->find<RadioGroup>("mLighting")->selectRow(effect);
        QCOMPARE(faults(), QString());
    }
}

void ScreenshotsTest::findsAFaintIndicator()
{
    // On a dark desktop the style alone draws such controls.
    wearPalette(true);
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(new QCheckBox(u"Box"_s));
    layout->addWidget(new QRadioButton(u"Circle"_s));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(faintIndicators(&window, leastIndicatorContrast).size(), 2);
}

void ScreenshotsTest::findsFaintTexts()
{
    wearPalette(false);
    QCOMPARE(qRound(contrastRatio(Qt::black, Qt::white)), 21);
    QWidget window;
    auto *inside = new QPushButton(u"Faint"_s, &window);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(faintTexts(&window, leastTextContrast).isEmpty());
    QPalette faint = inside->palette();
    faint.setColor(QPalette::ButtonText, QColor(0xb0, 0xb0, 0xb0));
    inside->setPalette(faint);
    QCOMPARE(faintTexts(&window, leastTextContrast).size(), 1);
}

void ScreenshotsTest::findsCutTexts()
{
    QWidget window;
    auto *button = new QPushButton(u"A text wider than its button"_s, &window);
    button->setObjectName(u"narrow"_s);
    button->resize(20, 20);
    QCOMPARE(cutTexts(&window).size(), 1);
    QCOMPARE(cutButtons(&window), QStringList{u"narrow"_s});
    button->hide();
    QCOMPARE(cutButtons(&window), QStringList());
}

QTEST_MAIN(ScreenshotsTest)
#include "screenshotstest.moc"
