// SPDX-License-Identifier: MIT
#include "platform/popupaccessibility.h"

#include "platform/popupbutton.h"

#include <QAccessibleWidget>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

/// Tools on Linux know no value that is a text. They read it as the text of the combo box, which cannot be edited.
class AccessiblePopUp : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit AccessiblePopUp(PopUpButton *button) : QAccessibleWidget(button, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? button()->shownTitleOfSelectedItem() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = button()->popUpMenu()->isVisible();
        state.collapsed = !state.expanded;
        state.readOnly = true;
        return state;
    }

    QStringList actionNames() const override
    {
        return button()->isEnabled() ? QStringList{showMenuAction(), pressAction()} : QStringList();
    }

    void doAction(const QString &action) override
    {
        if (actionNames().contains(action))
            button()->openMenu();
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(int startOffset, int endOffset) const override
    {
        return text(QAccessible::Value).mid(startOffset, endOffset - startOffset);
    }
    int characterCount() const override { return static_cast<int>(text(QAccessible::Value).size()); }
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint &) const override { return -1; }
    QString attributes(int, int *startOffset, int *endOffset) const override
    {
        *startOffset = 0;
        *endOffset = characterCount();
        return {};
    }
    void scrollToSubstring(int, int) override {}

    // Nothing in it can be selected, and it has no cursor.
    void selection(int, int *startOffset, int *endOffset) const override { *startOffset = *endOffset = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}

private:
    PopUpButton *button() const { return static_cast<PopUpButton *>(object()); }
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    return className == "PopUpButton"_L1 ? new AccessiblePopUp(static_cast<PopUpButton *>(object)) : nullptr;
}

} // namespace

void PopUpAccessibility::install()
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
}

void PopUpAccessibility::reportValue(PopUpButton *button)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(button, button->shownTitleOfSelectedItem());
    QAccessible::updateAccessibility(&event);
}
