// SPDX-License-Identifier: MIT
#include "platform/tabbaraccessibility.h"

#include "platform/tabview.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

/// One tab, which does not have its own QObject.
class AccessibleTab : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessibleTab(QTabBar *bar, int index) : mBar(bar), mIndex(index) {}

    bool isValid() const override { return mBar && mIndex < mBar->count(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return isValid() ? mBar->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(mBar); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::PageTab; }
    void setText(QAccessible::Text, const QString &) override {}

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        if (kind == QAccessible::Description)
            return mBar->tabToolTip(mIndex);
        if (kind != QAccessible::Name)
            return {};
        const QString name = mBar->accessibleTabName(mIndex);
        return name.isEmpty() ? mBar->tabText(mIndex).remove(u'&') : name;
    }

    QRect rect() const override
    {
        return isValid() ? mBar->tabRect(mIndex).translated(mBar->mapToGlobal(QPoint())) : QRect();
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state = parent()->state();
        const bool isInFront = mIndex == mBar->currentIndex();
        state.selectable = true;
        state.selected = isInFront;
        state.focused = isInFront && mBar->hasFocus();
        state.disabled = state.disabled || !mBar->isTabEnabled(mIndex);
        state.invisible = state.invisible || !mBar->isTabVisible(mIndex);
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

    void doAction(const QString &action) override
    {
        if (isValid() && action == pressAction())
            mBar->setCurrentIndex(mIndex);
    }

private:
    QPointer<QTabBar> mBar;
    int mIndex;
};

/// The children are the tabs, followed by the widgets in the bar that scroll it.
class AccessibleTabBar : public QAccessibleWidget
{
public:
    explicit AccessibleTabBar(QTabBar *bar) : QAccessibleWidget(bar, QAccessible::PageTabList) {}

    ~AccessibleTabBar() override
    {
        for (const QAccessible::Id id : std::as_const(mTabs))
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return bar()->count() + QAccessibleWidget::childCount(); }

    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= bar()->count())
            return QAccessibleWidget::child(index - bar()->count());
        if (const auto known = mTabs.constFind(index); known != mTabs.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto *tab = new AccessibleTab(bar(), index);
        mTabs.insert(index, QAccessible::registerAccessibleInterface(tab));
        return tab;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        for (auto tab = mTabs.cbegin(); tab != mTabs.cend(); ++tab) {
            if (QAccessible::accessibleInterface(tab.value()) == child)
                return tab.key();
        }
        const int index = QAccessibleWidget::indexOfChild(child);
        return index < 0 ? index : index + bar()->count();
    }

    QAccessibleInterface *focusChild() const override
    {
        return bar()->hasFocus() ? child(bar()->currentIndex()) : nullptr;
    }

private:
    QTabBar *bar() const { return static_cast<QTabBar *>(object()); }

    mutable QHash<int, QAccessible::Id> mTabs; // the requested ones, by index
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    if (className != "QTabBar"_L1 || !qobject_cast<TabView *>(object->parent()))
        return nullptr;
    return new AccessibleTabBar(static_cast<QTabBar *>(object));
}

} // namespace

void TabBarAccessibility::install()
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
}
