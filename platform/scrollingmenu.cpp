// SPDX-License-Identifier: MIT
#include "platform/scrollingmenu.h"

#include "platform/popupbutton.h"

#include <QActionGroup>
#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QProxyStyle>
#include <QTimerEvent>

#include <algorithm>

namespace {

constexpr int pauseInTypingMs = 1000;

/// The style of the program, except that a long menu scrolls instead of filling the screen with columns.
class ScrollingStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// One for all menus of the program.
QStyle *scrollingStyle()
{
    static QPointer<QStyle> style;
    if (!style) {
        style = new ScrollingStyle(QApplication::style()->name());
        style->setParent(qApp);
    }
    return style;
}

} // namespace

ScrollingMenu::ScrollingMenu(QWidget *parent) : QMenu(parent), mChoices(new QActionGroup(this))
{
    mChoices->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    // Not before: the menu is made at the start, but opened much later.
    connect(this, &QMenu::aboutToShow, this, [this] { setStyle(scrollingStyle()); });
}

void ScrollingMenu::addChoice(QAction *item)
{
    item->setCheckable(true);
    // In an exclusive group, the current item has a mark and the others have no empty box.
    mChoices->addAction(item);
}

void ScrollingMenu::markItem(QAction *item)
{
    if (QAction *earlier = markedItem(); earlier && earlier != item)
        earlier->setChecked(false);
    if (item)
        item->setChecked(true);
}

QAction *ScrollingMenu::markedItem() const
{
    return mChoices->checkedAction();
}

bool ScrollingMenu::isReachable(const QAction *item) const
{
    return item && item->isVisible() && item->isEnabled() && !item->isSeparator();
}

void ScrollingMenu::showEvent(QShowEvent *event)
{
    mPause.stop(); // typing begins a new text
    QMenu::showEvent(event);
    // Deferred, because a menu opened by a key activates its first item after it is shown.
    const auto showMarkedItem = [this] {
        if (isVisible() && isReachable(markedItem()))
            setActiveAction(markedItem());
    };
    QMetaObject::invokeMethod(this, showMarkedItem, Qt::QueuedConnection);
}

void ScrollingMenu::keyPressEvent(QKeyEvent *event)
{
    const QString text = event->text();
    const bool isCommand = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    // A blank chooses the active item, except within a text.
    const bool isText = !text.isEmpty() && text.front().isPrint() && (text != u" " || mPause.isActive());
    if (isText && !isCommand)
        search(text);
    else
        QMenu::keyPressEvent(event);
}

void ScrollingMenu::search(const QString &text)
{
    mTyped = mPause.isActive() ? mTyped + text : text;
    mPause.start(pauseInTypingMs, this);
    const bool isOneLetter = std::ranges::all_of(mTyped, [this](QChar letter) { return letter == mTyped.front(); });
    const QList<QAction *> items = actions();
    const qsizetype active = items.indexOf(activeAction());
    const auto findFrom = [&](qsizetype start, const QString &wanted) -> QAction * {
        for (qsizetype step = 0; step < items.size(); ++step) {
            QAction *item = items[(start + step) % items.size()];
            if (isReachable(item) && menuItemTitle(item).startsWith(wanted, Qt::CaseInsensitive))
                return item;
        }
        return nullptr;
    };
    // A longer text may still fit the active item; a single letter means the next one.
    QAction *found = findFrom(std::max<qsizetype>(0, mTyped.size() > 1 ? active : active + 1), mTyped);
    if (!found && isOneLetter)
        found = findFrom(active + 1, mTyped.first(1));
    if (found)
        setActiveAction(found);
}

void ScrollingMenu::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == mPause.timerId())
        mPause.stop();
    else
        QMenu::timerEvent(event);
}
