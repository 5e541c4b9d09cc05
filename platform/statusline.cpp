// SPDX-License-Identifier: MIT
#include "platform/statusline.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    auto *line = qobject_cast<StatusLine *>(object);
    return line ? new QAccessibleWidget(line, QAccessible::StatusBar) : nullptr;
}

} // namespace

StatusLine::StatusLine(QWidget *parent) : QWidget(parent)
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void StatusLine::setText(const QString &text)
{
    if (text == mText)
        return;
    mText = text;
    setAccessibleName(text); // reports the change
    update();
}

QSize StatusLine::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

QString StatusLine::shownText() const
{
    return fontMetrics().elidedText(mText, Qt::ElideRight, width());
}

bool StatusLine::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const bool isElided = shownText() != mText;
    // Markup, so the tool tip has several lines. Names from outside must not become markup.
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       isElided ? u"<p>"_s + mText.toHtmlEscaped() + u"</p>"_s : QString(), this);
    return true;
}

void StatusLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    style()->drawItemText(&painter, rect(),
                          QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter, palette(),
                          isEnabled(), shownText(), QPalette::WindowText);
}
