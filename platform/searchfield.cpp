// SPDX-License-Identifier: MIT
#include "platform/searchfield.h"

#include <QEvent>

#include <cstdlib>

SearchField::SearchField(QWidget *parent) : QLineEdit(parent)
{
    keepPlaceholderReadable();
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
