// SPDX-License-Identifier: MIT
#include "macros/macrotimelineaccessibility.h"

#include "macros/macrotimelineview.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

#include <algorithm>

namespace {

enum class Part { scale, lane, event };

using Place = std::pair<Part, int>; // the index of the lane or the event

class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessiblePart(MacroTimelineView *view, const Place &place) : mView(view), mPlace(place) {}

    [[nodiscard]] const Place &place() const { return mPlace; }

    bool isValid() const override
    {
        if (!mView)
            return false;
        switch (mPlace.first) {
        case Part::scale: return true;
        case Part::lane: return mPlace.second < mView->timeline().lanes;
        case Part::event: return mPlace.second < mView->timeline().eventCount();
        }
        return false;
    }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return mView ? mView->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(mView); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

    QAccessible::Role role() const override
    {
        return mPlace.first == Part::event ? QAccessible::ListItem : QAccessible::StaticText;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid() || kind != QAccessible::Name)
            return {};
        switch (mPlace.first) {
        case Part::scale: return mView->scaleText();
        case Part::lane: return mView->laneLabels().value(mPlace.second);
        case Part::event: return mView->eventText(mPlace.second);
        }
        return {};
    }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const MacroTimelineLayout &layout = mView->timelineLayout();
        QRect place;
        switch (mPlace.first) {
        case Part::scale: place = QRect(0, 0, layout.size.width(), layout.scaleHeight); break;
        case Part::lane: place = mView->laneRect(mPlace.second); break;
        case Part::event: place = mView->eventRect(mPlace.second); break;
        }
        return place.translated(mView->viewport()->mapToGlobal(QPoint()));
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const QWidget *viewport = mView->viewport();
        const QRect shown = viewport->rect().translated(viewport->mapToGlobal(QPoint()));
        state.invisible = !mView->isVisible() || !shown.intersects(rect());
        state.disabled = !mView->isEnabled();
        state.readOnly = true;
        if (mPlace.first != Part::event)
            return state;
        state.selectable = mView->isEnabled();
        state.focusable = state.selectable;
        state.selected = mView->selectedEvent() == mPlace.second;
        state.focused = state.selected && mView->hasFocus() && mView->isVisible();
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ActionInterface && mPlace.first == Part::event)
            return static_cast<QAccessibleActionInterface *>(this);
        return nullptr;
    }

    QStringList actionNames() const override
    {
        return isValid() && mView->isEnabled() ? QStringList{pressAction()} : QStringList();
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
    void doAction(const QString &action) override
    {
        if (actionNames().contains(action))
            mView->chooseEvent(mPlace.second);
    }

private:
    QPointer<MacroTimelineView> mView;
    Place mPlace;
};

/// The children are the time scale, the lanes in view, and the events in view.
class AccessibleTimeline : public QAccessibleWidget
{
public:
    explicit AccessibleTimeline(MacroTimelineView *view) : QAccessibleWidget(view, QAccessible::List) {}
    ~AccessibleTimeline() override
    {
        for (const QAccessible::Id id : std::as_const(mParts))
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return 1 + lanes().count() + events().count(); }

    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        if (index == 0)
            return part({Part::scale, 0});
        index -= 1;
        if (index < lanes().count())
            return part({Part::lane, lanes().first + index});
        return part({Part::event, events().first + index - lanes().count()});
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto *one = dynamic_cast<const AccessiblePart *>(child);
        if (!one || one->parent() != this)
            return -1;
        const int index = one->place().second;
        const auto indexIn = [index](const MacroTimelineLayout::Range &range, int before) {
            return index >= range.first && index < range.end ? before + index - range.first : -1;
        };
        switch (one->place().first) {
        case Part::scale: return 0;
        case Part::lane: return indexIn(lanes(), 1);
        case Part::event: return indexIn(events(), 1 + lanes().count());
        }
        return -1;
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        const int event = view()->eventAt(view()->viewport()->mapFromGlobal(QPoint(x, y)));
        return event >= 0 ? part({Part::event, event}) : nullptr;
    }

    QAccessibleInterface *focusChild() const override
    {
        if (!view()->hasFocus())
            return nullptr;
        const int event = view()->selectedEvent();
        return event >= 0 ? part({Part::event, event}) : QAccessibleWidget::focusChild();
    }

    QString text(QAccessible::Text kind) const override
    {
        switch (kind) {
        case QAccessible::Description: return view()->summary();
        case QAccessible::Value: return view()->changedPause();
        default: return QAccessibleWidget::text(kind);
        }
    }

    [[nodiscard]] QAccessibleInterface *part(const Place &place) const
    {
        const std::pair key(int(place.first), place.second);
        if (const auto known = mParts.constFind(key); known != mParts.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto *one = new AccessiblePart(view(), place);
        mParts.insert(key, QAccessible::registerAccessibleInterface(one));
        return one;
    }

private:
    [[nodiscard]] MacroTimelineView *view() const { return static_cast<MacroTimelineView *>(object()); }

    [[nodiscard]] MacroTimelineLayout::Range lanes() const
    {
        return view()->timelineLayout().lanesInView(view()->timeline());
    }

    [[nodiscard]] MacroTimelineLayout::Range events() const
    {
        const MacroTimelineLayout::Range all = view()->timelineLayout().eventsInView(view()->timeline());
        constexpr int most = MacroTimelineAccessibility::mostEvents;
        if (all.count() <= most)
            return all;
        const int middle = std::max(all.first, view()->selectedEvent());
        const int first = std::clamp(middle - most / 2, all.first, all.end - most);
        return {first, first + most};
    }

    mutable QHash<std::pair<int, int>, QAccessible::Id> mParts; // the requested ones
};

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    auto *view = qobject_cast<MacroTimelineView *>(object);
    return view ? new AccessibleTimeline(view) : nullptr;
}

} // namespace

void MacroTimelineAccessibility::install()
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
}

void MacroTimelineAccessibility::reportSelection(MacroTimelineView *view)
{
    if (!QAccessible::isActive() || !view->isVisible() || view->selectedEvent() < 0)
        return;
    auto *timeline = static_cast<AccessibleTimeline *>(QAccessible::queryAccessibleInterface(view));
    QAccessibleInterface *part = timeline->part({Part::event, view->selectedEvent()});
    QAccessibleEvent selection(part, QAccessible::SelectionAdd);
    QAccessible::updateAccessibility(&selection);
    if (!view->hasFocus())
        return;
    QAccessibleEvent focus(part, QAccessible::Focus);
    QAccessible::updateAccessibility(&focus);
}

void MacroTimelineAccessibility::reportChange(MacroTimelineView *view)
{
    if (!QAccessible::isActive() || !view->isVisible())
        return;
    QAccessibleValueChangeEvent event(view, view->changedPause());
    QAccessible::updateAccessibility(&event);
}
