// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/windowpicture.h"

#include "keys/keybutton.h"
#include "platform/colorwell.h"
#include "platform/mnemonics.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/radiogroup.h"
#include "platform/spinner.h"
#include "platform/tableview.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QSlider>

using namespace Qt::StringLiterals;

namespace {

bool isPictured(const QWidget *widget, const QWidget *window)
{
    // Versions are read by a thread. The undo button follows the daemon at its own pace. The card of the selected key
    // reads the events of its macro when its tab is opened.
    static const QStringList excluded{u"mFirmwareVersion"_s, u"mDriverVersion"_s, u"mFirmwareVersionIndicator"_s,
                                      u"mUndoButton"_s,      u"mMacroPreview"_s,  u"mAssignmentDetail"_s,
                                      u"mRecordFromCard"_s};
    const QString name = widget->objectName();
    return widget->window() == window && name.size() > 1 && name.at(0) == u'm' && name.at(1).isUpper()
           && !excluded.contains(name) && !name.startsWith("mConnectionNotice"_L1); // that follows the service
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QAbstractSlider *>(widget)
           || qobject_cast<const TableView *>(widget) || qobject_cast<const RadioGroup *>(widget);
}

QString tableContents(TableView *table)
{
    QStringList cells;
    const QAbstractItemModel *model = table->model();
    for (int row = 0; row < table->numberOfRows(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex cell = model->index(row, column);
            const QVariant check = cell.data(Qt::CheckStateRole);
            cells += check.isValid() ? check.toString() : cell.data().toString();
        }
    }
    return u"%1; selected %2, edited %3"_s.arg(cells.join(u" | "_s)).arg(table->selectedRow()).arg(table->editedRow());
}

QString menuContents(const QMenu *menu)
{
    QStringList items;
    for (const QAction *item : menu->actions()) {
        if (item->isSeparator() || !item->isVisible())
            continue;
        items += item->text() + (item->isEnabled() ? u""_s : u" (off)"_s)
                 + (item->menu() ? u" > ["_s + menuContents(item->menu()) + u']' : QString());
    }
    return items.join(u" | "_s);
}

QString keyContents(const KeyButton *key)
{
    return u"%1, mark %2%3"_s.arg(key->accessibleDescription())
        .arg(int(key->mark()))
        // A clicked key keeps its highlight until the next redrawing, but does not show it.
        .arg(key->isShownSelected() ? u", selected"_s
             : key->isHighlighted() ? u", highlighted"_s
                                    : QString());
}

QString contentsOf(QWidget *widget)
{
    if (auto *table = qobject_cast<TableView *>(widget))
        return tableContents(table);
    if (const auto *popUp = qobject_cast<PopUpButton *>(widget))
        return popUp->titleOfSelectedItem() + u": "_s + menuContents(popUp->popUpMenu());
    if (auto *gear = qobject_cast<PulldownButton *>(widget)) {
        gear->validateItems();
        return menuContents(gear->menu());
    }
    if (const auto *key = qobject_cast<KeyButton *>(widget))
        return keyContents(key);
    if (const auto *well = qobject_cast<ColorWell *>(widget))
        return well->color().name();
    if (const auto *group = qobject_cast<RadioGroup *>(widget))
        return u"row %1"_s.arg(group->selectedRow());
    if (const auto *spinner = qobject_cast<Spinner *>(widget))
        return spinner->isAnimating() ? u"spinning"_s : u"at rest"_s;
    if (const auto *slider = qobject_cast<QSlider *>(widget))
        return u"%1%2"_s.arg(slider->value()).arg(slider->isSliderDown() ? u", held"_s : QString());
    if (const auto *label = qobject_cast<QLabel *>(widget))
        return label->buddy() ? Mnemonics::plainText(label->text()) : label->text();
    // Which letter is underlined depends on the texts that had to differ so far.
    if (const auto *button = qobject_cast<QAbstractButton *>(widget))
        return Mnemonics::plainText(button->text()) + (button->isChecked() ? u" (on)"_s : QString());
    return {};
}

template <typename Value>
QStringList differencesOf(const QMap<QString, Value> &actual, const QMap<QString, Value> &expected,
                          QString (*text)(const Value &))
{
    QStringList found;
    for (auto entry = expected.cbegin(); entry != expected.cend(); ++entry) {
        // A control that only one window hides counts as a difference of the contents.
        const Value value = actual.value(entry.key(), entry.value());
        if (value != entry.value())
            found += u"%1 is \"%2\" and not \"%3\""_s.arg(entry.key(), text(value), text(entry.value()));
    }
    return found;
}

} // namespace

WindowPicture windowPicture(const QWidget *window)
{
    WindowPicture picture;
    QMap<QString, QWidget *> pictured;
    for (auto *widget : window->findChildren<QWidget *>()) {
        // Some tabs have a label of the same name.
        if (isPictured(widget, window))
            pictured.insert(
                widget->objectName() + (pictured.contains(widget->objectName()) ? u", second"_s : QString()), widget);
    }
    // First, because reading a table also brings the controls beside it up to date.
    for (auto entry = pictured.cbegin(); entry != pictured.cend(); ++entry) {
        if (entry.value()->isHidden())
            continue;
        picture.enabled.insert(entry.key(), entry.value()->isEnabled());
        if (isControl(entry.value()) && entry.value()->isEnabled())
            picture.controlsThatAreOn += entry.key();
    }
    for (auto entry = pictured.cbegin(); entry != pictured.cend(); ++entry)
        picture.contents.insert(entry.key(), entry.value()->isHidden() ? u"hidden"_s : contentsOf(entry.value()));
    return picture;
}

QStringList contentDifferences(const WindowPicture &actual, const WindowPicture &expected)
{
    return differencesOf<QString>(actual.contents, expected.contents, [](const QString &text) { return text; });
}

QStringList enabledDifferences(const WindowPicture &actual, const WindowPicture &expected)
{
    return differencesOf<bool>(actual.enabled, expected.enabled,
                               [](const bool &isEnabled) { return isEnabled ? u"on"_s : u"off"_s; });
}
