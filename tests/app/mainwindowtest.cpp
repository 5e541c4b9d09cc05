// SPDX-License-Identifier: MIT
// The parts of the window that belong to no tab: its shortcuts and the preview of the light.
#include "app/mainwindow.h"
#include "keys/lightpreview.h"
#include "platform/tableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;
using Command = DaemonProtocol::Command;

namespace {

enum Tab { keysTab, profilesTab, macrosTab, lightingTab };

/// Whether the program quits by `action`, performed in the event loop.
bool quitsBy(const std::function<void()> &action)
{
    constexpr int limitMs = 60'000;
    constexpr int exitOfTheLimit = 1;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(exitOfTheLimit); });
    limit.start(limitMs);
    QMetaObject::invokeMethod(qApp, action, Qt::QueuedConnection);
    return QCoreApplication::exec() != exitOfTheLimit;
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void controlWAndControlQWorkInEveryTab_data();
    void controlWAndControlQWorkInEveryTab();
    void controlNAddsToTheListOfTheTab_data();
    void controlNAddsToTheListOfTheTab();
    void controlNDoesNothingWithoutAKeyboard();
    void nameEditorKeepsTheShortcuts_data();
    void nameEditorKeepsTheShortcuts();
    void tablesTakeOtherCombinations_data();
    void tablesTakeOtherCombinations();
    void lightingTabShowsTheLightOfTheProfile();

private:
    void addFocusRows();
    /// Opens the tab and gives the widget the focus.
    QWidget *focusOn(int tab, const QString &widget);
    [[nodiscard]] QTabWidget *tabs() const { return mHub->find<QTabWidget>("mKeyboardTabView"); }

    HubResources mResources;
    std::unique_ptr<ScriptedDaemon> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void MainWindowTest::init()
{
    mDaemon = std::make_unique<ScriptedDaemon>(sampleDocument());
    mHub = std::make_unique<Hub>();
    mHub->open(*mDaemon);
    mHub->window->show();
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
}

void MainWindowTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void MainWindowTest::addFocusRows()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("focus");
    QTest::newRow("tab bar") << int(keysTab) << QString();
    QTest::newRow("profiles") << int(profilesTab) << u"mProfilesTableView"_s;
    QTest::newRow("macros") << int(macrosTab) << u"mMacroTableView"_s;
    QTest::newRow("events") << int(macrosTab) << u"mMacroDetailsTableView"_s;
    QTest::newRow("slider") << int(lightingTab) << u"mBrightnessValue"_s;
}

QWidget *MainWindowTest::focusOn(int tab, const QString &widget)
{
    tabs()->setCurrentIndex(tab);
    if (tab == macrosTab)
        mHub->find<TableView>("mMacroTableView")->selectRow(0);
    QWidget *focused = widget.isEmpty() ? tabs()->tabBar() : mHub->window->findChild<QWidget *>(widget);
    focused->setFocus();
    return focused;
}

void MainWindowTest::controlWAndControlQWorkInEveryTab_data()
{
    addFocusRows();
}

void MainWindowTest::controlWAndControlQWorkInEveryTab()
{
    QFETCH(int, tab);
    QFETCH(QString, focus);
    for (const Qt::Key key : {Qt::Key_Q, Qt::Key_W}) {
        mHub->window->show();
        mHub->window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
        const QPointer<QWidget> focused = focusOn(tab, focus);
        QVERIFY(focused->hasFocus());
        QVERIFY(quitsBy([focused, key] { QTest::keyClick(focused.data(), key, Qt::ControlModifier); }));
        QVERIFY(!mHub->window->isVisible());
    }
}

void MainWindowTest::controlNAddsToTheListOfTheTab_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("profiles");
    QTest::addColumn<int>("macros");
    QTest::newRow("keys") << int(keysTab) << QString() << 0 << 0;
    QTest::newRow("profiles, tab bar") << int(profilesTab) << QString() << 1 << 0;
    QTest::newRow("profiles, table") << int(profilesTab) << u"mProfilesTableView"_s << 1 << 0;
    QTest::newRow("macros, list") << int(macrosTab) << u"mMacroTableView"_s << 0 << 1;
    QTest::newRow("macros, events") << int(macrosTab) << u"mMacroDetailsTableView"_s << 0 << 1;
    QTest::newRow("lighting") << int(lightingTab) << QString() << 0 << 0;
}

void MainWindowTest::controlNAddsToTheListOfTheTab()
{
    QFETCH(int, tab);
    QFETCH(QString, focus);
    QTest::keyClick(focusOn(tab, focus), Qt::Key_N, Qt::ControlModifier);
    QTEST(mDaemon->count(Command::addProfile), "profiles");
    QTEST(mDaemon->count(Command::addMacro), "macros");
}

void MainWindowTest::controlNDoesNothingWithoutAKeyboard()
{
    focusOn(profilesTab, {});
    mHub->controller->deviceDisconnectedNotification({u"Device Removed 271"_s, {}});
    mHub->window->activateWindow();
    QTest::keyClick(tabs()->tabBar(), Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(mDaemon->count(Command::addProfile), 0);
}

void MainWindowTest::nameEditorKeepsTheShortcuts_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::newRow("Ctrl+N") << int(Qt::Key_N) << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+W") << int(Qt::Key_W) << int(Qt::ControlModifier);
    QTest::newRow("Ctrl+Q") << int(Qt::Key_Q) << int(Qt::ControlModifier);
    QTest::newRow("mnemonic") << int(Qt::Key_Z) << int(Qt::AltModifier);
}

void MainWindowTest::nameEditorKeepsTheShortcuts()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    focusOn(macrosTab, u"mMacroTableView"_s);
    auto *list = mHub->find<TableView>("mMacroTableView");
    list->editColumnRow(0, 0, true);
    auto *editor = list->findChild<QLineEdit *>(u"cellEditor"_s);
    QVERIFY(editor);
    const QString text = editor->text();
    auto *mnemonic = new QShortcut(Qt::ALT | Qt::Key_Z, mHub->window.get());
    int activations = 0;
    connect(mnemonic, &QShortcut::activated, mnemonic, [&activations] { ++activations; });
    // In the event loop, because the program quits only there.
    const auto press = [editor = QPointer(editor), key, modifier] {
        QTest::keyClick(editor.data(), Qt::Key(key), Qt::KeyboardModifier(modifier));
        QCoreApplication::exit();
    };
    QMetaObject::invokeMethod(qApp, press, Qt::QueuedConnection);
    QCoreApplication::exec();
    QCOMPARE(list->editedRow(), 0);
    QCOMPARE(editor->text(), text);
    QCOMPARE(activations, 0);
    QVERIFY(mHub->window->isVisible());
    QCOMPARE(mDaemon->count(Command::addMacro), 0);
    QTest::keyClick(editor, Qt::Key_Escape);
    QTRY_COMPARE(list->editedRow(), -1);
    QTest::keyClick(list, Qt::Key_Z, Qt::AltModifier);
    QCOMPARE(activations, 1);
}

void MainWindowTest::tablesTakeOtherCombinations_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("focus");
    QTest::newRow("profiles") << int(profilesTab) << u"mProfilesTableView"_s;
    QTest::newRow("events") << int(macrosTab) << u"mMacroDetailsTableView"_s;
}

void MainWindowTest::tablesTakeOtherCombinations()
{
    QFETCH(int, tab);
    QFETCH(QString, focus);
    QWidget *focused = focusOn(tab, focus);
    auto *shortcut = new QShortcut(Qt::CTRL | Qt::Key_K, tabs()->currentWidget());
    int activations = 0;
    connect(shortcut, &QShortcut::activated, shortcut, [&activations] { ++activations; });
    QTest::keyClick(focused, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(activations, 0);
    QTest::keyClick(tabs()->tabBar(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(activations, 1);
}

void MainWindowTest::lightingTabShowsTheLightOfTheProfile()
{
    auto *preview = mHub->find<LightPreview>("mLightPreview");
    QVERIFY(preview && tabs()->widget(lightingTab)->isAncestorOf(preview));
    QVariantMap document = sampleDocument();
    QVariantList profiles = document.value(u"Profiles"_s).toList();
    QVariantMap raid = profiles.at(1).toMap();
    raid[u"BacklightLED"_s] = 1;
    raid[u"LEDKBEffects"_s] = Backlight::spectrumCyclingEffect;
    raid[u"BrightnessKBNormal"_s] = 3;
    profiles[1] = raid;
    document[u"Profiles"_s] = profiles;
    mHub->controller->updateToLatestSettings(document);
    mHub->controller->setProperties();
    mHub->controller->updateUISettings();
    QVERIFY(preview->light().settings() == Backlight::settingsOf(raid));
    QVERIFY(!preview->light().isMoving()); // behind another tab
    tabs()->setCurrentIndex(lightingTab);
    QVERIFY(preview->light().isMoving());
    tabs()->setCurrentIndex(keysTab);
    QVERIFY(!preview->light().isMoving());
}

QTEST_MAIN(MainWindowTest)
#include "mainwindowtest.moc"
