// SPDX-License-Identifier: MIT
// The whole accessible tree of the window, in each of its states: every painted text is in it, at the place where it is
// painted; every control that takes the focus has a name; exactly one object has the focus. Runs with the real daemon.
#include "base/settingskeys.h"
#include "base/text.h"
#include "daemonlink/daemonobjectcall.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keymapping.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrocommands.h"
#include "macros/macrotimelineview.h"
#include "macros/macrotypetext.h"
#include "platform/applicationchooser.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/fulldocument.h"
#include "tests/support/paintedtexts.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <array>

using namespace Qt::StringLiterals;

namespace {

enum Tab { keysTab, profilesTab, macrosTab, lightingTab, maintenanceTab };

/// A visible object of the tree, as a screen reader receives it.
struct Node
{
    QString texts; ///< all its texts, one per line
    QRect place;   ///< on the screen
    QString name;
    QString description;      ///< for messages
    bool isFocusable = false; ///< not for a plain container, which passes the focus on
    bool isFocused = false;
    bool hasFocusInside = false;
};

QString textsOf(QAccessibleInterface *object)
{
    QStringList texts{object->text(QAccessible::Name), object->text(QAccessible::Description),
                      object->text(QAccessible::Value), object->text(QAccessible::Accelerator)};
    if (QAccessibleTextInterface *text = object->textInterface())
        texts += text->text(0, text->characterCount());
    return texts.join(u'\n');
}

/// Collects the visible objects from `object` down. Returns whether one of them has the focus.
bool collect(QAccessibleInterface *object, QList<Node> &nodes)
{
    const QAccessible::State state = object->state();
    if (state.invisible || state.invalid)
        return false;
    const QString name = object->text(QAccessible::Name);
    const auto index = nodes.size();
    nodes +=
        Node{.texts = textsOf(object),
             .place = object->rect(),
             .name = name,
             .description = u"%1 \"%2\" (role %3)"_s.arg(object->object() ? object->object()->objectName() : QString(),
                                                         name, QString::number(object->role())),
             .isFocusable = state.focusable && !state.disabled && object->role() != QAccessible::Client,
             .isFocused = bool(state.focused)};
    bool hasFocusInside = false;
    for (int child = 0; child < object->childCount(); ++child) {
        QAccessibleInterface *one = object->child(child);
        // Another window belongs to the tree of its own.
        if (one
            && !(one->object() && one->object()->isWidgetType() && static_cast<QWidget *>(one->object())->isWindow()))
            hasFocusInside = collect(one, nodes) || hasFocusInside;
    }
    nodes[index].hasFocusInside = hasFocusInside;
    return hasFocusInside || state.focused;
}

QList<Node> treeOf(QWidget *window)
{
    QList<Node> nodes;
    collect(QAccessible::queryAccessibleInterface(window), nodes);
    return nodes;
}

/// The parts of `text`, which an ellipsis may have shortened at the end or in the middle.
QStringList wholeParts(const QString &text)
{
    QStringList parts = text.split(u'…');
    // An ellipsis can also belong to the text ("Keyboard…").
    for (QString &part : parts)
        part = part.trimmed();
    parts.removeAll(QString());
    return parts;
}

QStringList faultsOfTexts(QWidget *window, const QList<Node> &nodes)
{
    QStringList faults;
    for (const PaintedText &painted : paintedTexts(window)) {
        const QRect place = painted.place.toAlignedRect().translated(window->mapToGlobal(QPoint()));
        // In texts without Latin letters, the mnemonic follows in parentheses. It may be no part of the name.
        static const QRegularExpression mnemonic(u"\\([A-Z0-9]\\)"_s);
        const auto contains = [&](const QStringList &parts, const Node &node) {
            return std::ranges::all_of(
                parts, [&node](const QString &part) { return node.texts.contains(part, Qt::CaseInsensitive); });
        };
        const bool isInTree = std::ranges::any_of(nodes, [&](const Node &node) {
            return node.place.intersects(place)
                   && (contains(wholeParts(painted.text), node)
                       || contains(wholeParts(QString(painted.text).remove(mnemonic)), node));
        });
        if (!isInTree)
            faults +=
                u"not in the tree: \"%1\" at %2, %3"_s.arg(painted.text).arg(painted.place.x()).arg(painted.place.y());
    }
    return faults;
}

QStringList faultsOfNames(const QList<Node> &nodes)
{
    QStringList faults;
    for (const Node &node : nodes) {
        if (node.isFocusable && node.name.trimmed().isEmpty())
            faults += u"no name: "_s + node.description;
        if (node.texts.contains("No Translation"_L1))
            faults += u"no translation: "_s + node.description;
    }
    return faults;
}

/// Faults of the window in front, and of the focus in all windows.
QStringList faultsOfTree()
{
    QStringList faults;
    QStringList focused;
    QWidget *front = QApplication::activeWindow();
    if (!front)
        return {u"no window"_s};
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        const QList<Node> nodes = treeOf(window);
        if (window == front)
            faults += faultsOfTexts(window, nodes) + faultsOfNames(nodes);
        for (const Node &node : nodes) {
            if (node.isFocused && !node.hasFocusInside) // a list and its row are one focus
                focused += node.description;
        }
    }
    if (focused.size() != 1)
        faults += u"%1 have the focus: %2"_s.arg(focused.size()).arg(focused.join(u"; "));
    return faults;
}

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

void changeAndOpenHistory(const Hub &hub)
{
    QVariantMap keys = hub.controller->currentProfileDict().value(SettingsKeys::keys).toMap();
    for (const int code : {4, 5})
        keys = KeyMappings::withEntry(keys, QString::number(code), KeyMappings::Assignment::disabled, 0, 0);
    hub.controller->updateKeySettings({{SettingsKeys::keys, keys}});
    hub.find<QToolButton>("mHistoryButton")->click();
    QTRY_COMPARE(hub.find<QTreeWidget>("mHistoryParts")->topLevelItemCount(), 2);
    QTRY_VERIFY(hub.find<QPushButton>("mHistoryRestore")->isEnabled());
}

void openTypeText(const Hub &hub, const QString &text)
{
    hub.find<TableView>("mMacroTableView")->selectRow(0);
    choose(hub, "mSettingsMacroDetails", MacroCommands::typeText);
    hub.find<MacroTypeText>("mTypeTextWindow")->showKeymap(Keymap::fromNames("us"));
    hub.find<QPlainTextEdit>("mTypeTextField")->setPlainText(text);
}

void recordNewMacro(const Hub &hub)
{
    hub.controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s)->trigger();
    for (const QLatin1StringView call : {"Press"_L1, "Release"_L1})
        QDBusConnection::sessionBus().call(
            daemonObjectCall("/VirtualKeyboard"_L1, "org.quillkestra.VirtualKeyboard"_L1, call, {7U, 4U}));
    QTRY_COMPARE(hub.find<QListWidget>("mNewMacroEvents")->count(), 3);
}

struct Scene
{
    const char *name;
    int tab;
    void (*open)(const Hub &hub); ///< null: only the tab
};

const std::array scenes{
    Scene{"keys", keysTab, nullptr},
    Scene{"keys-search", keysTab,
          [](const Hub &hub) {
              hub.find<QLineEdit>("mKeySearchField")->setFocus();
              QTest::keyClicks(QApplication::focusWidget(), u"page"_s);
          }},
    Scene{"profiles", profilesTab, [](const Hub &hub) { hub.find<TableView>("mProfilesTableView")->setFocus(); }},
    Scene{"profile-name", profilesTab,
          [](const Hub &hub) { choose(hub, "mSettingsProfile", ProfileCommands::rename); }},
    Scene{"profile-deletion", profilesTab,
          [](const Hub &hub) { choose(hub, "mSettingsProfile", ProfileCommands::deleteProfile); }},
    Scene{"macros", macrosTab, [](const Hub &hub) { hub.find<TableView>("mMacroTableView")->selectRow(0); }},
    Scene{"macro-events", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.find<TableView>("mMacroDetailsTableView")->setFocus();
              hub.find<TableView>("mMacroDetailsTableView")->selectRow(2);
          }},
    Scene{"macro-timeline", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              auto *timeline = hub.find<MacroTimelineView>("mMacroTimelineView");
              timeline->setFocus();
              QTest::keyClick(timeline, Qt::Key_Right);
              QTest::keyClick(timeline, Qt::Key_Plus);
          }},
    Scene{"macro-name", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              choose(hub, "mSettingsMacro", MacroCommands::rename);
          }},
    Scene{"recording", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.find<QPushButton>("mAddMacroDetails")->click();
          }},
    Scene{"event-sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 0); }},
    Scene{"delay-sheet", macrosTab, [](const Hub &hub) { editEvent(hub, 1); }},
    Scene{"try-sheet", macrosTab,
          [](const Hub &hub) {
              hub.find<TableView>("mMacroTableView")->selectRow(0);
              hub.find<QPushButton>("mTryMacro")->click();
              hub.controller->macrosController()->showTriedKeys({{.event = 0, .page = 7, .argument = 4}});
          }},
    Scene{"type-text-sheet", macrosTab, [](const Hub &hub) { openTypeText(hub, u"a text"_s); }},
    Scene{"type-text-refused", macrosTab, [](const Hub &hub) { openTypeText(hub, u"日本"_s); }},
    Scene{"lighting", lightingTab, nullptr},
    Scene{"lighting-versions", lightingTab,
          [](const Hub &hub) {
              hub.controller->setDriverVersions();
              QTRY_VERIFY(!hub.find<QLabel>("mFirmwareVersion")->text().isEmpty());
          }},
    Scene{"lighting-restoring", lightingTab,
          [](const Hub &hub) { hub.find<QPushButton>("mRestoreSettings")->click(); }},
    Scene{"maintenance", maintenanceTab, nullptr},
    Scene{"single-key-sheet", keysTab,
          [](const Hub &hub) { hub.find<Sheet>("mSingleKeyWindow")->beginSheet(hub.window.get()); }},
    Scene{"new-macro-recording", keysTab, recordNewMacro},
    Scene{"new-macro-recorded", keysTab,
          [](const Hub &hub) {
              recordNewMacro(hub);
              hub.find<QPushButton>("mNewMacroRecord")->click();
              QVERIFY(hub.find<QPushButton>("mNewMacroAssign")->isEnabled());
          }},
    Scene{"keyboards", keysTab, [](const Hub &hub) { hub.find<QAbstractButton>("mKeyboardButton")->click(); }},
    Scene{"history-empty", keysTab, [](const Hub &hub) { hub.find<QToolButton>("mHistoryButton")->click(); }},
    Scene{"history", keysTab, changeAndOpenHistory},
    Scene{"applications", profilesTab,
          [](const Hub &hub) {
              auto *chooser = new ApplicationChooser(ApplicationList::Windows::all, hub.window.get());
              chooser->setApplications({}, {{.windowClass = u"Game.exe"_s}, {.windowClass = u"Tool"_s}});
              chooser->open();
              chooser->findChild<QLineEdit *>()->setText(u"game"_s); // selects a row of the list
          }},
    Scene{"communication-error", keysTab, [](const Hub &hub) { hub.controller->showErrorForErrorCode(0); }},
    Scene{"device-not-found", keysTab, [](const Hub &hub) { hub.controller->showErrorDialog(); }},
    Scene{"restoring-state", keysTab, [](const Hub &hub) { hub.controller->showRestoringStateWindow(); }},
};

QVariantMap startDocument()
{
    const QVariantMap device{{SettingsKeys::activeProfile, 0}, {SettingsKeys::profileOsdOn, 0}};
    return {{SettingsKeys::profiles, QVariantList{fullProfile(u"Desktop"_s), fullProfile(u"Raid night"_s)}},
            {SettingsKeys::macros, QVariantList{fullMacro(u"Opening burst"_s, 0, 60), fullMacro(u"Heal"_s, 1, 4)}},
            {SettingsKeys::deviceSettings, device}};
}

} // namespace

class AccessibleTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyPaintedTextIsInTheTree_data();
    void everyPaintedTextIsInTheTree();
    void windowWithoutDaemonIsInTheTree();
    void hiddenTablesTakeNoFocus();
    void versionsCanBeReadAndSelected();
    void findsFaults();

private:
    void openWindow(const QString &language, bool isDark);

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void AccessibleTreeTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->store(startDocument()));
    QVERIFY(mDaemon->start());
}

void AccessibleTreeTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void AccessibleTreeTest::openWindow(const QString &language, bool isDark)
{
    installTexts(textsFolder(), {language});
    wearPalette(isDark);
    mHub = std::make_unique<Hub>();
    mHub->window->resize(1180, 700);
    QVERIFY(mHub->openInFront());
}

void AccessibleTreeTest::everyPaintedTextIsInTheTree_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("scene");
    const auto addRow = [](const QString &language, bool isDark, std::size_t scene) {
        QTest::addRow("%s-%s-%s", scenes[scene].name, qPrintable(language), isDark ? "dark" : "light")
            << language << isDark << int(scene);
    };
    for (std::size_t scene = 0; scene < scenes.size(); ++scene) {
        addRow(u"en"_s, false, scene);
        addRow(u"de"_s, true, scene);
        if (!scenes[scene].open) {
            for (const QString &language : {u"es"_s, u"fr"_s, u"ja"_s, u"zh_Hans"_s})
                addRow(language, false, scene);
        }
    }
}

void AccessibleTreeTest::everyPaintedTextIsInTheTree()
{
    QFETCH(QString, language);
    QFETCH(bool, isDark);
    QFETCH(int, scene);
    openWindow(language, isDark);
    const Scene &shown = scenes[std::size_t(scene)];
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    tabs->setCurrentIndex(shown.tab);
    tabs->setFocus();
    if (shown.open)
        shown.open(*mHub);
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QDialog *>(widget) && widget->isVisible()) {
            widget->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(widget));
        }
    }
    // Texts of the daemon may still come, and the layout follows them.
    QTRY_VERIFY2(faultsOfTree().isEmpty(), qPrintable(faultsOfTree().join(u"\n"_s)));
}

void AccessibleTreeTest::windowWithoutDaemonIsInTheTree()
{
    mDaemon.reset();
    mHub = std::make_unique<Hub>();
    mHub->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(mHub->window.get()));
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        QTRY_VERIFY2(faultsOfTree().isEmpty(), qPrintable(faultsOfTree().join(u"\n"_s)));
    }
}

void AccessibleTreeTest::hiddenTablesTakeNoFocus()
{
    openWindow(u"en"_s, false);
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    auto *profiles = mHub->find<TableView>("mProfilesTableView");
    // The profile changes behind another tab, as it does with the application in front.
    tabs->setCurrentIndex(keysTab);
    QCOMPARE(profiles->selectedRow(), 0);
    QVERIFY(mDaemon->request(DaemonProtocol::Command::switchProfile, {{u"ProfileID"_s, 1}}));
    QTRY_COMPARE(profiles->selectedRow(), 1);
    const auto isCellFocused = [profiles] {
        QAccessibleInterface *table = QAccessible::queryAccessibleInterface(profiles);
        return bool(table->tableInterface()->cellAt(profiles->selectedRow(), 1)->state().focused);
    };
    QVERIFY(!isCellFocused());
    // A name is being edited when the tab disappears.
    tabs->setCurrentIndex(profilesTab);
    choose(*mHub, "mSettingsProfile", ProfileCommands::rename);
    QCOMPARE(profiles->editedRow(), 1);
    tabs->setCurrentIndex(lightingTab);
    QCoreApplication::processEvents();
    QVERIFY(!profiles->hasFocus());
    QVERIFY(!QApplication::focusWidget() || QApplication::focusWidget()->isVisible());
    QVERIFY(!isCellFocused());
}

void AccessibleTreeTest::versionsCanBeReadAndSelected()
{
    openWindow(u"en"_s, false);
    mHub->find<QTabWidget>("mKeyboardTabView")->setCurrentIndex(lightingTab);
    mHub->controller->setDriverVersions();
    for (const char *name : {"mDriverVersion", "mFirmwareVersion"}) {
        auto *version = mHub->find<QLabel>(name);
        QTRY_VERIFY(!version->text().isEmpty() && version->isVisible());
        const QString read = QAccessible::queryAccessibleInterface(version)->text(QAccessible::Name);
        const QString caption = mHub->find<QLabel>(qPrintable(QLatin1StringView(name) + u"Label"_s))->text();
        QVERIFY2(read.contains(version->text()) && read.contains(caption), qPrintable(read));
        QVERIFY(version->focusPolicy() & Qt::TabFocus);
        version->setFocus(Qt::TabFocusReason);
        QTest::keyClick(version, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(version->selectedText(), version->text());
    }
}

void AccessibleTreeTest::findsFaults()
{
    QWidget window;
    window.resize(300, 200);
    auto *label = new QLabel(u"Painted"_s, &window);
    label->setGeometry(10, 10, 200, 30);
    auto *button = new QPushButton(u"Button"_s, &window);
    button->setGeometry(10, 60, 200, 30);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    button->setFocus();
    QTRY_COMPARE(faultsOfTree(), QStringList());
    label->setAccessibleName(u"Other"_s);
    QCOMPARE(faultsOfTree().size(), 1);
    label->setAccessibleName({});
    button->setText({});
    QCOMPARE(faultsOfTree().size(), 1);
    button->clearFocus();
    QCOMPARE(faultsOfTree().size(), 2);
}

QTEST_MAIN(AccessibleTreeTest)
#include "accessibletreetest.moc"
