// SPDX-License-Identifier: MIT
#include "keys/keybutton.h"

#include "keys/keyboardaccessibility.h"
#include "keys/keycap.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

const auto compareLookEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

KeyButton::KeyButton(const KeyShape &shape, bool isSelectable, QWidget *parent)
    : QAbstractButton(parent), mShape(shape), mLegend(shape.legend), mUpperLegend(shape.upperLegend),
      mIsSelectable(isSelectable)
{
    setObjectName(shape.outlet);
    KeyboardAccessibility::install();
    setFocusPolicy(isSelectable ? Qt::ClickFocus : Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void KeyButton::setButtonType(Type type)
{
    const bool wasShownSelected = isShownSelected();
    mType = type;
    if (type == Type::momentaryPushIn)
        mState = 0;
    if (isShownSelected() != wasShownSelected)
        KeyboardAccessibility::reportSelection(this);
    compareLookLater();
}

void KeyButton::setNextState()
{
    mState = mType == Type::onOff ? 1 - mState : 0;
}

void KeyButton::setAlsoSelected(bool isSelected)
{
    const bool wasShownSelected = isShownSelected();
    mIsAlsoSelected = isSelected;
    if (isShownSelected() != wasShownSelected)
        KeyboardAccessibility::reportSelection(this);
    compareLookLater();
}

void KeyButton::highlight(bool isOn)
{
    mIsHighlighted = isOn;
    compareLookLater();
}

void KeyButton::setMark(KeyMark mark)
{
    mMark = mark;
    compareLookLater();
}

void KeyButton::setLegend(const QString &legend, const QString &upperLegend)
{
    if (legend == mLegend && upperLegend == mUpperLegend)
        return;
    mLegend = legend;
    mUpperLegend = upperLegend;
    update();
}

QStringList KeyButton::legends() const
{
    QStringList texts{mUpperLegend, mLegend};
    texts.removeAll(QString());
    return texts;
}

void KeyButton::setFound(bool isFound)
{
    mIsFound = isFound;
    compareLookLater();
}

bool KeyButton::shows(const QString &character) const
{
    return !character.isEmpty()
           && (character.compare(mLegend, Qt::CaseInsensitive) == 0
               || character.compare(mUpperLegend, Qt::CaseInsensitive) == 0);
}

void KeyButton::requestMenu()
{
    Q_EMIT menuRequested(mapToGlobal(rect().bottomLeft()));
}

void KeyButton::setUnit(qreal pixels)
{
    mUnit = pixels;
    update();
}

QSize KeyButton::sizeHint() const
{
    return (mShape.place.size() * mUnit).toSize();
}

void KeyButton::compareLookLater()
{
    if (mIsComparisonPosted || look() == mUpdatedLook)
        return;
    mIsComparisonPosted = true;
    QCoreApplication::postEvent(this, new QEvent(compareLookEvent));
}

bool KeyButton::event(QEvent *event)
{
    if (event->type() == compareLookEvent) {
        mIsComparisonPosted = false;
        if (look() != mUpdatedLook) {
            mUpdatedLook = look();
            update();
        }
        return true;
    }
    switch (event->type()) {
    case QEvent::EnabledChange:
    case QEvent::PaletteChange: update(); break;
    default: break;
    }
    return QAbstractButton::event(event);
}

void KeyButton::paintEvent(QPaintEvent *event)
{
    if (event->rect().contains(rect()))
        mUpdatedLook = look(); // painted now: a pending comparison requests nothing
    QPainter painter(this);
    paintKeycap(painter, rect(), mUnit,
                {.look = mShape.look,
                 .legend = mLegend,
                 .upperLegend = mUpperLegend,
                 .mark = mMark,
                 .isSelectable = mIsSelectable,
                 .isEnabled = isEnabled(),
                 .isHighlighted = isShownHighlighted(),
                 .isSelected = isShownSelected(),
                 .isDown = isDown(),
                 .isHovered = underMouse(),
                 .hasFocus = hasFocus(),
                 .isFound = mIsFound},
                palette());
}

void KeyButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
        Q_EMIT moveRequested(static_cast<Qt::Key>(event->key()), event->modifiers() & Qt::ShiftModifier);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter: click(); return;
    default: break;
    }
    constexpr Qt::KeyboardModifiers commandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QString typed = event->text();
    // Space presses the key, as on every button.
    if (!(event->modifiers() & commandModifiers) && !typed.isEmpty() && typed[0].isPrint() && !typed[0].isSpace())
        Q_EMIT characterTyped(typed);
    else
        QAbstractButton::keyPressEvent(event);
}

void KeyButton::mousePressEvent(QMouseEvent *event)
{
    if (mIsSelectable && event->button() == Qt::LeftButton && event->modifiers() & Qt::ControlModifier)
        Q_EMIT toggleRequested();
    else
        QAbstractButton::mousePressEvent(event);
}

void KeyButton::contextMenuEvent(QContextMenuEvent *event)
{
    if (!mIsSelectable)
        event->ignore();
    else if (event->reason() == QContextMenuEvent::Keyboard)
        requestMenu();
    else
        Q_EMIT menuRequested(event->globalPos());
}
