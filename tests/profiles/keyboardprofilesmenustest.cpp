// SPDX-License-Identifier: MIT
// The commands of the gear menu and of the context menu, and the keys that run them.
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/testmain.h"

#include "platform/pulldownbutton.h"
#include "profiles/qltableview.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleOption>

#include <optional>

using namespace Qt::StringLiterals;

class KeyboardProfilesMenusTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources"); }
    void init() { openTab(); }
    void cleanup() { closeTab(); }

    void removeApplicationClearsTheFourKeysAndTheSwitch();
    void hintOffersAnApplicationUntilAProfileHasOne();
    void gearMenuRenamesTheSelectedRow();
    void gearDeleteEndsAPendingRename();
    void gearShowsOnlyAPicture();
    void bothMenusListTheCommandsInOrder();
    void gearMenuEnablesCommands_data();
    void gearMenuEnablesCommands();
    void contextMenuEnablesCommands_data();
    void contextMenuEnablesCommands();
    void contextMenuOfADisabledTableIsDisabled();
    void rightClickOpensTheMenuWithoutSelecting_data();
    void rightClickOpensTheMenuWithoutSelecting();
    void menuKeyOpensTheMenu();
    void f2RenamesFromEveryColumn();
    void deleteKeyNeedsAConfirmation();
    void deleteKeyKeepsTheLastProfile();
    void commandsForAProfileNeedASelectedOne_data();
    void commandsForAProfileNeedASelectedOne();
    void unknownTagsDoNothing();
    void keyEquivalentsReachOnlyTheNameEditor();

private:
    void fillFromRow();
};

void KeyboardProfilesMenusTest::removeApplicationClearsTheFourKeysAndTheSwitch()
{
    mDelegate->profiles = {profileNamed(u"A"_s, u"Racer"_s, 1)};
    mDelegate->refresh();
    choose(ProfileCommands::removeApplication);
    QCOMPARE(mDelegate->operations(), QStringList{u"update"_s});
    const QVariantMap settings = mDelegate->calls.first().settings;
    QCOMPARE(settings.size(), 2);
    QCOMPARE(settings.value(u"AutoSwitchOn"_s), QVariant(false));
    QCOMPARE(settings.value(u"AppInfo"_s).toMap(), profileNamed(u"A"_s).value(u"AppInfo"_s).toMap());
    QCOMPARE(table()->model()->index(0, 2).data().toString(), QString());
}

void KeyboardProfilesMenusTest::hintOffersAnApplicationUntilAProfileHasOne()
{
    fill({u"A"_s, u"B"_s}, 1);
    const auto *hint = outlet<QWidget>("mApplicationHint");
    auto *button = outlet<QPushButton>("mFirstApplication");
    QVERIFY(!hint->isHidden());
    QVERIFY(button->isEnabled());
    mController->setControlsState(false);
    QVERIFY(!button->isEnabled());
    mController->setControlsState(true);
    button->click();
    QVERIFY(openApplicationChooser());
    openApplicationChooser()->reject();
    mDelegate->calls.clear(); // cancelling turns the automatic switch off
    fillWith({profileNamed(u"A"_s), profileNamed(u"B"_s, u"Racer"_s, 1)}, 1);
    QVERIFY(hint->isHidden());
    fill({u"A"_s, u"B"_s}, 1);
    QVERIFY(!hint->isHidden());
}

void KeyboardProfilesMenusTest::gearMenuRenamesTheSelectedRow()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    QCOMPARE(table()->editedRow(), 1);
    QCOMPARE(editor()->selectedText(), u"B"_s);
}

void KeyboardProfilesMenusTest::gearDeleteEndsAPendingRename()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose(ProfileCommands::rename);
    choose(ProfileCommands::deleteProfile);
    QCOMPARE(table()->editedRow(), -1);
    QCOMPARE(table()->selectedRow(), 1);
    QVERIFY(alert());
    QVERIFY(mDelegate->calls.isEmpty());
}

namespace {

/// Records the options with which a tool button was drawn.
class NotingStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        if (const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option))
            drawn = *button;
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    mutable std::optional<QStyleOptionToolButton> drawn;
};

} // namespace

void KeyboardProfilesMenusTest::gearShowsOnlyAPicture()
{
    auto *gear = outlet<PulldownButton>("mSettingsProfile");
    NotingStyle style(u"Fusion"_s);
    gear->setStyle(&style);
    (void)gear->grab();
    QVERIFY(style.drawn);
    QVERIFY(style.drawn->text.isEmpty());
    QVERIFY(!style.drawn->icon.isNull());
    QVERIFY(!style.drawn->features.testFlag(QStyleOptionToolButton::HasMenu)); // this is the arrow
    QCOMPARE(gear->popupMode(), QToolButton::InstantPopup);
    const auto picture = [gear](QIcon::Mode mode) { return gear->icon().pixmap(16, 16, mode).toImage(); };
    QVERIFY(picture(QIcon::Normal) != picture(QIcon::Disabled));
    gear->setStyle(nullptr);
}

void KeyboardProfilesMenusTest::bothMenusListTheCommandsInOrder()
{
    fill({u"A"_s, u"B"_s});
    const QStringList titles{u"Rename"_s,
                             u"New"_s,
                             u"Import…"_s,
                             u"Export…"_s,
                             u"Delete…"_s,
                             u"Copy"_s,
                             u"Assign application…"_s,
                             u"Remove application"_s,
                             u"Restore defaults…"_s};
    const std::unique_ptr<QMenu> contextMenu(outlet<QLTableView>("mProfilesTableView")->makeContextMenu());
    for (const QMenu *menu : {outlet<PulldownButton>("mSettingsProfile")->menu(), contextMenu.get()}) {
        QStringList shown;
        for (const QAction *item : menu->actions()) {
            shown += item->text();
            QCOMPARE(item->data().toInt(), int(shown.size()));
        }
        QCOMPARE(shown, titles);
    }
}

namespace {

void addMenuRows(bool isGearMenu)
{
    using namespace ProfileCommands;
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QList<int>>("disabled");
    QTest::newRow("no profile") << 0 << -1 << QString() << QList<int>{removeApplication};
    QTest::newRow("one profile") << 1 << 0 << QString() << QList<int>{deleteProfile, removeApplication};
    QTest::newRow("one profile, none selected")
        << 1 << -1 << QString()
        << (isGearMenu ? QList<int>{removeApplication} : QList<int>{deleteProfile, removeApplication});
    QTest::newRow("two profiles") << 2 << 0 << QString() << QList<int>{removeApplication};
    QTest::newRow("with an application") << 2 << 0 << u"Racer"_s << QList<int>{};
    QTest::newRow("19 profiles") << 19 << 3 << u"Racer"_s << QList<int>{};
    QTest::newRow("20 profiles") << 20 << 3 << u"Racer"_s << QList<int>{newProfile, importProfile, copy};
    QTest::newRow("20 profiles, no application")
        << 20 << 3 << QString() << QList<int>{newProfile, importProfile, copy, removeApplication};
}

QList<int> disabledTags(const QList<QAction *> &items)
{
    QList<int> result;
    for (const QAction *item : items) {
        if (!item->isEnabled())
            result.append(item->data().toInt());
    }
    return result;
}

} // namespace

void KeyboardProfilesMenusTest::fillFromRow()
{
    QFETCH(int, count);
    QFETCH(int, row);
    QFETCH(QString, application);
    for (int i = 0; i < count; ++i)
        mDelegate->profiles.append(profileNamed(u"P%1"_s.arg(i), i == row ? application : QString()));
    mDelegate->active = qMax(0, row);
    mDelegate->refresh();
    if (row < 0)
        table()->deselectAll();
}

void KeyboardProfilesMenusTest::gearMenuEnablesCommands_data()
{
    addMenuRows(true);
}

void KeyboardProfilesMenusTest::gearMenuEnablesCommands()
{
    QFETCH(QList<int>, disabled);
    fillFromRow();
    auto *button = outlet<PulldownButton>("mSettingsProfile");
    button->validateItems();
    const QList<QAction *> items = button->menu()->actions();
    QCOMPARE(items.size(), 9);
    for (int i = 0; i < items.size(); ++i)
        QCOMPARE(items.at(i)->data().toInt(), i + 1);
    QCOMPARE(disabledTags(items), disabled);
}

void KeyboardProfilesMenusTest::contextMenuEnablesCommands_data()
{
    addMenuRows(false);
}

void KeyboardProfilesMenusTest::contextMenuEnablesCommands()
{
    QFETCH(QList<int>, disabled);
    fillFromRow();
    const std::unique_ptr<QMenu> menu(outlet<QLTableView>("mProfilesTableView")->makeContextMenu());
    QCOMPARE(menu->actions().size(), 9);
    QCOMPARE(menu->actions().first()->text(), u"Rename"_s);
    QCOMPARE(disabledTags(menu->actions()), disabled);
}

void KeyboardProfilesMenusTest::contextMenuOfADisabledTableIsDisabled()
{
    fill({u"A"_s, u"B"_s});
    mController->setControlsState(false);
    const std::unique_ptr<QMenu> menu(outlet<QLTableView>("mProfilesTableView")->makeContextMenu());
    QCOMPARE(disabledTags(menu->actions()).size(), 9);
}

void KeyboardProfilesMenusTest::rightClickOpensTheMenuWithoutSelecting_data()
{
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("with a device") << true;
    QTest::newRow("without a device") << false;
}

void KeyboardProfilesMenusTest::rightClickOpensTheMenuWithoutSelecting()
{
    QFETCH(bool, isEnabled);
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    mController->setControlsState(isEnabled);
    const QPoint position = table()->visualRect(table()->model()->index(2, 1)).center();
    QTest::mouseClick(table()->viewport(), Qt::RightButton, {}, position);
    const QPointer<QMenu> menu = outlet<QMenu>("profilesContextMenu");
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(menu->pos(), table()->viewport()->mapToGlobal(position));
    QCOMPARE(disabledTags(menu->actions()).size(), isEnabled ? 1 : 9);
    QCOMPARE(table()->selectedRow(), 1);
    if (isEnabled) {
        // The command acts on the row that was selected before.
        menu->actions().value(ProfileCommands::copy - 1)->trigger();
        QCOMPARE(mDelegate->calls.value(0).settings.value(u"ProfileName"_s), QVariant(u"B(2)"_s));
    }
    menu->close();
    QTRY_VERIFY(!menu);
}

void KeyboardProfilesMenusTest::menuKeyOpensTheMenu()
{
    fill({u"A"_s, u"B"_s}, 1);
    table()->setFocus();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), table()->mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(table()->viewport(), &event);
    const QPointer<QMenu> menu = outlet<QMenu>("profilesContextMenu");
    QVERIFY(menu && menu->isVisible());
    menu->close();
    QTRY_VERIFY(!menu);
}

void KeyboardProfilesMenusTest::f2RenamesFromEveryColumn()
{
    fill({u"A"_s, u"B"_s}, 1);
    table()->setFocus();
    for (int column = 0; column < 4; ++column) {
        table()->selectionModel()->setCurrentIndex(table()->model()->index(1, column), QItemSelectionModel::NoUpdate);
        QTest::keyClick(table(), Qt::Key_F2);
        QCOMPARE(table()->editedRow(), 1);
        QCOMPARE(editor()->selectedText(), u"B"_s);
        table()->abortEditing();
    }
    QVERIFY(mDelegate->calls.isEmpty());
}

void KeyboardProfilesMenusTest::deleteKeyNeedsAConfirmation()
{
    fill({u"A"_s, u"B"_s}, 1);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Delete, Qt::ShiftModifier);
    QVERIFY(!alert());
    QTest::keyClick(table(), Qt::Key_Delete);
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(alert());
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate->operations(), QStringList{u"delete"_s});
    QCOMPARE(mDelegate->calls.first().profileID, 1);
}

void KeyboardProfilesMenusTest::deleteKeyKeepsTheLastProfile()
{
    fill({u"A"_s});
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Delete);
    QVERIFY(!alert());
}

void KeyboardProfilesMenusTest::commandsForAProfileNeedASelectedOne_data()
{
    QTest::addColumn<int>("tag");
    QTest::newRow("rename") << int(ProfileCommands::rename);
    QTest::newRow("export") << int(ProfileCommands::exportProfile);
    QTest::newRow("delete") << int(ProfileCommands::deleteProfile);
    QTest::newRow("copy") << int(ProfileCommands::copy);
    QTest::newRow("remove application") << int(ProfileCommands::removeApplication);
    QTest::newRow("restore default") << int(ProfileCommands::restoreDefault);
}

void KeyboardProfilesMenusTest::commandsForAProfileNeedASelectedOne()
{
    QFETCH(int, tag);
    fill({u"A"_s, u"B"_s});
    table()->deselectAll();
    choose(tag);
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(!alert());
    QVERIFY(!mController->profileSavePanel());
    QCOMPARE(table()->editedRow(), -1);
    QCOMPARE(mController->allProfilesArray().size(), 2);
}

void KeyboardProfilesMenusTest::unknownTagsDoNothing()
{
    fill({u"A"_s, u"B"_s});
    QAction item;
    for (const int tag : {0, 10, -1}) {
        item.setData(tag);
        mController->selectMenuItem(&item);
    }
    QVERIFY(mDelegate->calls.isEmpty());
    QVERIFY(!alert());
    QCOMPARE(table()->editedRow(), -1);
}

void KeyboardProfilesMenusTest::keyEquivalentsReachOnlyTheNameEditor()
{
    fill({u"A"_s, u"B"_s});
    QAction shortcut;
    shortcut.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_K));
    int triggered = 0;
    connect(&shortcut, &QAction::triggered, this, [&] { ++triggered; });
    mWindow->addAction(&shortcut);
    outlet<QPushButton>("mAddProfile")->setFocus();
    QTest::keyClick(outlet<QPushButton>("mAddProfile"), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(triggered, 1);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(triggered, 1);
    table()->editColumnRow(1, 0, false);
    QTest::keyClicks(editor(), u"xy"_s);
    QTest::keyClick(editor(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(editor()->selectedText(), editor()->text());
    // The editor passes keys that it does not use to the window.
    QTest::keyClick(editor(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(triggered, 2);
    QCOMPARE(table()->editedRow(), 0);
}

QTEST_MAIN(KeyboardProfilesMenusTest)
#include "keyboardprofilesmenustest.moc"
