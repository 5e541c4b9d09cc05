// SPDX-License-Identifier: MIT
// The actions of the user in front of the window.
#include "platform/applicationchooser.h"
#include "platform/filepanels.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/tableview.h"
#include "tests/app/secondhand/scene.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

void Person::click(const Scene &scene, const char *button)
{
    if (auto *widget = scene.find<QWidget>(button); widget && widget->isVisible() && widget->isEnabled())
        QTest::mouseClick(widget, Qt::LeftButton);
}

void Person::chooseFrom(const Scene &scene, const char *gearButton, int tag)
{
    auto *gear = scene.find<PulldownButton>(gearButton);
    gear->validateItems();
    if (gear->isEnabled() && gear->itemWithTag(tag)->isEnabled())
        gear->itemWithTag(tag)->trigger();
}

void Person::openGearMenu(const Scene &scene, const char *gearButton)
{
    // A click would run an event loop of the tool button until the menu closes.
    auto *gear = scene.find<PulldownButton>(gearButton);
    gear->menu()->popup(gear->mapToGlobal(gear->rect().bottomLeft()));
}

void Person::openContextMenu(const Scene &scene, const char *table)
{
    QTest::mouseClick(scene.find<TableView>(table)->viewport(), Qt::RightButton);
}

QMenu *Person::openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void Person::chooseItem(const QString &title)
{
    QMenu *menu = openMenu();
    if (!menu)
        return;
    for (QAction *item : menu->actions()) {
        if (item->isEnabled() && item->isVisible() && item->text() == title) {
            menu->setActiveAction(item);
            QTest::keyClick(menu, item->menu() ? Qt::Key_Right : Qt::Key_Return);
            return;
        }
    }
}

void Person::closeMenus()
{
    constexpr int mostOpen = 3;
    for (int closed = 0; closed < mostOpen && openMenu(); ++closed)
        QTest::keyClick(openMenu(), Qt::Key_Escape);
}

QLineEdit *Person::nameEditor(const Scene &scene, const char *table)
{
    // A closed editor exists until the event loop deletes it.
    for (auto *editor : scene.find<TableView>(table)->findChildren<QLineEdit *>(u"cellEditor"_s)) {
        if (editor->isVisible())
            return editor;
    }
    return nullptr;
}

void Person::typeName(const Scene &scene, const char *table, const QString &text)
{
    QWidget *typedInto = nameEditor(scene, table);
    if (!typedInto)
        typedInto = QApplication::focusWidget();
    if (typedInto)
        QTest::keyClicks(typedInto, text);
}

void Person::pressInName(const Scene &scene, const char *table, Qt::Key key)
{
    if (QLineEdit *editor = nameEditor(scene, table))
        QTest::keyClick(editor, key);
    else if (QWidget *focused = QApplication::focusWidget())
        QTest::keyClick(focused, key);
}

QDialog *Person::dialog(const char *name)
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<QDialog *>(widget);
            found && found->isVisible() && found->objectName() == QLatin1StringView(name))
            return found;
    }
    return nullptr;
}

QStringList Person::openDialogs()
{
    QStringList names;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && qobject_cast<const QDialog *>(widget)
            && widget->objectName() != "mCommunicationAlertWindow"_L1)
            names += widget->objectName();
    }
    return names;
}

void Person::clickIn(const char *dialogName, const char *button)
{
    if (const QDialog *open = dialog(dialogName)) {
        auto *found = open->findChild<QPushButton *>(QLatin1StringView(button));
        if (found && found->isEnabled())
            found->click();
    }
}

void Person::cancel(const char *dialogName)
{
    if (QDialog *open = dialog(dialogName))
        open->reject();
}

void Person::chooseFile(const char *panelName, const QString &path)
{
    auto *panel = qobject_cast<QFileDialog *>(dialog(panelName));
    if (!panel)
        return;
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
    static_cast<QDialog *>(panel)->accept();
}

void Person::chooseApplication(const QString &path)
{
    auto *chooser = qobject_cast<ApplicationChooser *>(dialog("mApplicationChooser"));
    if (!chooser)
        return;
    chooser->setApplications(InstalledApplications::read({QFileInfo(path).path()}), {});
    QTest::keyClicks(chooser->findChild<QLineEdit *>(u"mApplicationSearchField"_s), QFileInfo(path).baseName());
    chooser->accept();
}
