// SPDX-License-Identifier: MIT
// The parts of the window that belong to no tab: its shortcuts, its mnemonics and the preview of the light.
#include "app/mainwindow.h"
#include "base/text.h"
#include "keys/lightpreview.h"
#include "macros/macroinsertsheet.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "tests/app/hubfixture.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QApplication>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
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

/// The texts of `root` that can have a mnemonic, without those of other windows and of the pages of tabs.
QStringList textsIn(QWidget *root)
{
    QStringList texts;
    QList<QWidget *> pages;
    for (const QTabWidget *tabs : root->findChildren<QTabWidget *>()) {
        for (int index = 0; index < tabs->count(); ++index)
            pages += tabs->widget(index);
    }
    const QList<QWidget *> widgets = root->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        bool isOfPage = false;
        for (const QWidget *page : pages)
            isOfPage = isOfPage || page->isAncestorOf(widget);
        if (widget->window() != root->window() || isOfPage)
            continue;
        if (const auto *bar = qobject_cast<QTabBar *>(widget)) {
            for (int index = 0; index < bar->count(); ++index)
                texts += bar->tabText(index);
        } else if (const auto *button = qobject_cast<QAbstractButton *>(widget)) {
            // Five check boxes of the lighting tab do nothing; others come and go with the macro.
            static const QStringList idle{
                u"mSidestrips"_s,         u"mUnderglow"_s,        u"mInGameAPMMain"_s, u"mInGameAPMSidestrips"_s,
                u"mInGameAPMUnderglow"_s, u"mReleaseKeysAtEnd"_s, u"mMacroUse"_s,      u"mMoreMacroUses"_s};
            const bool isExpected = !qobject_cast<const PopUpButton *>(button) && !button->text().isEmpty();
            if (isExpected && !idle.contains(button->objectName()))
                texts += button->text();
        } else if (const auto *label = qobject_cast<QLabel *>(widget); label && label->buddy()) {
            texts += label->text();
        }
    }
    return texts;
}

/// The texts of `texts` without a mnemonic, or with that of another.
QStringList conflicts(const QStringList &texts)
{
    QStringList found;
    QHash<QString, QString> owners;
    for (const QString &text : texts) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (key.isEmpty() || owners.contains(key))
            found += text + u" / "_s + owners.value(key);
        owners.insert(key, text);
    }
    return found;
}

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
    void mnemonicsDifferInEveryTabAndSheet_data();
    void mnemonicsDifferInEveryTabAndSheet();
    void mnemonicsReachButtonsAndLists();

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
    QFETCH(int, profiles);
    QFETCH(int, macros);
    QTest::keyClick(focusOn(tab, focus), Qt::Key_N, Qt::ControlModifier);
    QTRY_COMPARE(mDaemon->count(Command::addProfile), profiles);
    QTRY_COMPARE(mDaemon->count(Command::addMacro), macros);
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

void MainWindowTest::mnemonicsDifferInEveryTabAndSheet_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : {"en", "de", "fr", "es", "ja", "zh_Hans"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

void MainWindowTest::mnemonicsDifferInEveryTabAndSheet()
{
    QFETCH(QString, language);
    const auto english = qScopeGuard([] { installTexts(textsFolder(), {u"en"_s}); });
    installTexts(textsFolder(), {language});
    mHub = std::make_unique<Hub>();
    const QStringList outside = textsIn(mHub->window.get());
    QVERIFY(outside.size() >= 10); // five tabs, the buttons at the top and at the bottom
    QStringList found;
    for (int index = 0; index < tabs()->count(); ++index)
        found += conflicts(outside + textsIn(tabs()->widget(index)));
    QVERIFY(textsIn(tabs()->widget(macrosTab)).size() >= 5);
    QVERIFY(textsIn(tabs()->widget(lightingTab)).size() >= 7);
    mHub->window->show();
    for (Sheet *sheet : mHub->window->findChildren<Sheet *>()) {
        if (!sheet->isWindow())
            continue; // a part of the window
        sheet->beginSheet(mHub->window.get());
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
        QVERIFY(!textsIn(sheet).isEmpty());
        found += conflicts(textsIn(sheet));
        sheet->endSheet();
    }
    MacroInsertSheet insertion; // the tab shows it on the window only when it comes up
    auto *kinds = insertion.findChild<PopUpButton *>(u"mInsertKind"_s);
    insertion.ask(mHub->window.get(), {}, 0, {0});
    QVERIFY(QTest::qWaitForWindowExposed(&insertion));
    for (int kind = 0; kind < kinds->numberOfItems(); ++kind) {
        kinds->itemAtIndex(kind)->trigger();
        found += conflicts(textsIn(&insertion));
    }
    insertion.endSheet();
    QCOMPARE(found.join(u"; "_s), QString());
}

void MainWindowTest::mnemonicsReachButtonsAndLists()
{
    const auto press = [this](QWidget *focused, const QString &text) {
        const QKeyCombination key = QKeySequence::mnemonic(text)[0];
        QTest::keyClick(focused, key.key(), key.keyboardModifiers());
    };
    QWidget *table = focusOn(profilesTab, u"mProfilesTableView"_s); // takes all combinations with Ctrl
    press(table, tabs()->tabText(macrosTab));
    QTRY_COMPARE(tabs()->currentIndex(), int(macrosTab));
    press(tabs()->tabBar(), mHub->find<QLabel>("mMacroListLabel")->text());
    QTRY_VERIFY(mHub->find<TableView>("mMacroTableView")->hasFocus());
    press(mHub->find<TableView>("mMacroTableView"), mHub->find<QPushButton>("mAddMacro")->text());
    QTRY_COMPARE(mDaemon->count(Command::addMacro), 1);
}

QTEST_MAIN(MainWindowTest)
#include "mainwindowtest.moc"
