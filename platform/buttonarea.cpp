// SPDX-License-Identifier: MIT
#include "platform/buttonarea.h"

#include "base/hidusage.h"

#include <QContextMenuEvent>
#include <QEvent>
#include <QMouseEvent>

#include <bit>

ButtonArea::ButtonArea(QWidget *parent) : QLabel(parent)
{
    setFrameStyle(QFrame::Box | QFrame::Plain); // its border shows where clicks are recorded
    setMargin(fontMetrics().height());
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

int ButtonArea::numberOf(Qt::MouseButton button)
{
    // Qt's bits have the order of the HID usages: primary, secondary, tertiary, then the others.
    const int number = button == Qt::NoButton ? 0 : std::countr_zero(static_cast<quint32>(button)) + 1;
    return number <= HidUsage::lastMacroButton ? number : 0;
}

bool ButtonArea::event(QEvent *event)
{
    const bool losesPointer = event->type() == QEvent::WindowDeactivate || event->type() == QEvent::UngrabMouse
                              || (event->type() == QEvent::EnabledChange && !isEnabled());
    if (losesPointer)
        releaseAll();
    return QLabel::event(event);
}

void ButtonArea::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    const int number = numberOf(event->button());
    // While a button is down, Qt also sends this area the clicks beside it.
    if (number == 0 || mHeld.contains(number) || !rect().contains(event->position().toPoint()))
        return;
    mHeld += number;
    Q_EMIT buttonChanged(number, true);
}

void ButtonArea::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    if (!rect().contains(event->position().toPoint()))
        releaseAll();
}

void ButtonArea::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    const int number = numberOf(event->button());
    if (mHeld.removeOne(number))
        Q_EMIT buttonChanged(number, false);
}

void ButtonArea::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept(); // the right button is recorded
}

void ButtonArea::hideEvent(QHideEvent *event)
{
    releaseAll();
    QLabel::hideEvent(event);
}

void ButtonArea::releaseAll()
{
    while (!mHeld.isEmpty())
        Q_EMIT buttonChanged(mHeld.takeLast(), false);
}
