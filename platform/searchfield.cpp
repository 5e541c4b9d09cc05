// SPDX-License-Identifier: MIT
#include "platform/searchfield.h"

#include <QKeyEvent>

#include <cstdlib>

SearchField::SearchField(QWidget *parent) : QLineEdit(parent)
{
    keepPlaceholderReadable();
}

bool SearchField::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && leavesToWindow(*static_cast<QKeyEvent *>(event))) {
        event->ignore();
        return true;
    }
    return QLineEdit::event(event);
}

/// Whether the key takes a change back or makes it again, and the field has none. The focus often comes here only
/// because a tab has been opened.
bool SearchField::leavesToWindow(const QKeyEvent &event) const
{
    return (event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo)) && !isUndoAvailable()
           && !isRedoAvailable();
}

void SearchField::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        keepPlaceholderReadable();
}

void SearchField::keepPlaceholderReadable()
{
    constexpr int leastDistance = 90; // of the grey values, from 0 to 255
    constexpr int faintAlpha = 170;
    const QColor base = palette().color(QPalette::Active, QPalette::Base);
    const QColor shown = palette().color(QPalette::Active, QPalette::PlaceholderText);
    // The colour is blended with the field's ground.
    const int distance = std::abs(qGray(shown.rgb()) - qGray(base.rgb())) * shown.alpha() / 255;
    if (distance >= leastDistance)
        return;
    QColor faint = palette().color(QPalette::Active, QPalette::Text);
    faint.setAlpha(faintAlpha);
    if (faint == shown)
        return;   // the text itself is faint
    QPalette own; // with this colour alone; all others remain those of the desktop
    own.setColor(QPalette::PlaceholderText, faint);
    setPalette(own);
}
