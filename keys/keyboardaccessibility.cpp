// SPDX-License-Identifier: MIT
#include "keys/keyboardaccessibility.h"

#include "base/text.h"
#include "keys/keybutton.h"

#include <QAccessibleWidget>

using namespace Qt::StringLiterals;

namespace {

class AccessibleKey : public QAccessibleWidget
{
public:
    explicit AccessibleKey(KeyButton *key) : QAccessibleWidget(key, QAccessible::ListItem) {}

    /// The key's name, and its legend if that differs: users who speak to the computer say what they see.
    QString text(QAccessible::Text kind) const override
    {
        QString text = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Name)
            return text;
        for (const QString &legend : key()->legends()) {
            if (!text.contains(legend, Qt::CaseInsensitive))
                text += u", "_s + legend;
        }
        return text;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = key()->isSelectable();
        state.extSelectable = key()->isSelectable();
        state.selected = key()->isShownSelected();
        state.disabled = state.disabled || !key()->isSelectable();
        return state;
    }

    QStringList actionNames() const override
    {
        return key()->isSelectable() && key()->isEnabled() ? QStringList{pressAction(), showMenuAction()}
                                                           : QStringList();
    }

    void doAction(const QString &action) override
    {
        if (!actionNames().contains(action))
            return;
        if (action == pressAction())
            key()->click();
        else
            key()->requestMenu();
    }

private:
    KeyButton *key() const { return static_cast<KeyButton *>(object()); }
};

class AccessiblePicture : public QAccessibleWidget
{
public:
    explicit AccessiblePicture(QWidget *picture) : QAccessibleWidget(picture, QAccessible::List) {}

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Description ? localizedText("lkeyKeysWordmark") : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiSelectable = true;
        return state;
    }
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    if (className == "KeyButton"_L1)
        return new AccessibleKey(static_cast<KeyButton *>(object));
    if (className == "KeyboardPicture"_L1)
        return new AccessiblePicture(static_cast<QWidget *>(object));
    return nullptr;
}

} // namespace

void KeyboardAccessibility::install()
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
}

void KeyboardAccessibility::reportSelection(KeyButton *key)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(key, key->isShownSelected() ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
    QAccessible::updateAccessibility(&event);
}
