// SPDX-License-Identifier: MIT
#include "platform/emptystate.h"

#include "platform/spacing.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int symbolSize = 40;
constexpr int behindTheParts = 1; // of the layout: the stretch that centres them

QVBoxLayout *columnOf(QWidget *state)
{
    return static_cast<QVBoxLayout *>(state->layout());
}

} // namespace

EmptyState::EmptyState(Symbol symbol, QWidget *parent) : QWidget(parent), mSymbol(symbol)
{
    mPicture = new QLabel;
    mPicture->setAlignment(Qt::AlignCenter);
    mLabel = new QLabel;
    mLabel->setAlignment(Qt::AlignCenter);
    mLabel->setWordWrap(true);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    column->setSpacing(Spacing::normal);
    column->addStretch();
    column->addWidget(mPicture);
    column->addWidget(mLabel);
    column->addStretch();
    showSymbol();
}

void EmptyState::addDetail(const QString &text)
{
    auto *detail = new QLabel(text);
    detail->setAlignment(Qt::AlignCenter);
    detail->setWordWrap(true);
    columnOf(this)->insertWidget(columnOf(this)->count() - behindTheParts, detail);
}

QPushButton *EmptyState::addButton(const QString &text)
{
    auto *button = new QPushButton(text);
    button->setAutoDefault(false);
    columnOf(this)->insertWidget(columnOf(this)->count() - behindTheParts, button, 0, Qt::AlignHCenter);
    return button;
}

void EmptyState::showSymbol()
{
    const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
    mPicture->setPixmap(Symbols::icon(mSymbol).pixmap(QSize(symbolSize, symbolSize), devicePixelRatio(), mode));
}

void EmptyState::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange)
        showSymbol();
}
