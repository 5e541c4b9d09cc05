// SPDX-License-Identifier: MIT
#include "platform/sheet.h"

#include "base/visibletext.h"
#include "platform/boldtext.h"
#include "platform/mnemonics.h"
#include "platform/screenroom.h"
#include "platform/scrolledpage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMoveEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Whether `event` is input by the mouse or the keyboard.
bool isInput(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut: return true;
    default: return false;
    }
}

} // namespace

Sheet::Sheet(QWidget *parent, Place place) : QDialog(parent, Qt::Sheet), mPlace(place)
{
    if (isInside()) {
        setWindowFlags(Qt::Widget);
        hide(); // a child would be shown with its window
    } else {
        setWindowModality(Qt::WindowModal);
    }
}

void Sheet::beginSheet(QWidget *window, DidEnd didEnd)
{
    if (parentWidget() != window) {
        if (parentWidget())
            parentWidget()->removeEventFilter(this);
        setParent(window, isInside() ? Qt::Widget : Qt::Sheet);
    }
    if (window)
        window->installEventFilter(this);
    if (!isInside())
        setWindowModality(Qt::WindowModal);
    mDidEnd = std::move(didEnd);
    mIsUp = true;
    mIsWaitingForWindow = window && !window->isVisible();
    if (!mIsWaitingForWindow)
        open();
}

void Sheet::open()
{
    fitIntoRoom();
    if (isInside())
        return openInside(); // its letters are among those of the window
    Mnemonics::assign(this);
    QDialog::open();
}

/// The largest size of the sheet that can be seen as a whole.
QSize Sheet::room() const
{
    const QWidget *window = parentWidget() ? parentWidget() : this;
    return isInside() ? window->size() : roomOnScreen(window);
}

void Sheet::fitIntoRoom()
{
    QLayout *contents = layout();
    if (!contents)
        return;
    const QSize most = room();
    const QSize least = minimumSize().expandedTo(contents->totalMinimumSize());
    const int wanted = isVisible() ? size().width() : contents->totalSizeHint().width();
    const int width = std::max(least.width(), std::min(most.width(), wanted));
    const int height = std::max(least.height(), contents->totalMinimumHeightForWidth(width));
    if (!mPage && (least.width() > most.width() || height > most.height())) {
        const QPointer<QWidget> focused = focusWidget();
        auto *content = new QWidget;
        content->setMinimumSize(minimumSize());
        content->setLayout(contents); // with its widgets
        setMinimumSize(0, 0);
        mPage = new ScrolledPage(content);
        auto *outer = new QVBoxLayout(this);
        outer->setContentsMargins(0, 0, 0, 0);
        outer->addWidget(mPage);
        if (focused)
            focused->setFocus();
    }
    if (mPage)
        resize(sizeHint().boundedTo(most));
}

bool Sheet::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && isVisible() && !mPage)
        fitIntoRoom(); // the content may have grown
    return QDialog::event(event);
}

void Sheet::openInside()
{
    moveToMiddle();
    raise();
    if (!isVisible()) {
        mFocusBefore = window()->focusWidget();
        qApp->installEventFilter(this);
    }
    show();
    setFocus();
}

void Sheet::moveToMiddle()
{
    adjustSize();
    resize(size().boundedTo(room()));
    move(parentWidget()->rect().center() - rect().center());
}

/// Whether `receiver` is a part of the window from which the pane keeps input.
bool Sheet::isKeptFrom(const QObject *receiver) const
{
    const auto *widget = qobject_cast<const QWidget *>(receiver);
    return widget && widget != this && widget->window() == window() && !isAncestorOf(widget);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (isInside() && isVisible() && isInput(*event) && isKeptFrom(watched))
        return true;
    if (watched != parentWidget())
        return QDialog::eventFilter(watched, event);
    if (isInside() && event->type() == QEvent::Resize && isVisible())
        moveToMiddle();
    // At start-up the window is placed after its sheet.
    if (!isInside() && event->type() == QEvent::Move && isVisible()) {
        const auto *moved = static_cast<QMoveEvent *>(event);
        move(pos() + moved->pos() - moved->oldPos());
    }
    if (event->type() == QEvent::Show && mIsWaitingForWindow) {
        // Deferred to the event loop, because the window is only about to be shown.
        const auto show = [this] {
            if (std::exchange(mIsWaitingForWindow, false))
                open();
        };
        QMetaObject::invokeMethod(this, show, Qt::QueuedConnection);
    }
    return QDialog::eventFilter(watched, event);
}

void Sheet::endSheet(int returnCode)
{
    if (!mIsUp)
        return;
    mIsUp = false;
    orderOut();
    setResult(returnCode);
    // Cleared first: the handler may begin this sheet again.
    if (const DidEnd didEnd = std::exchange(mDidEnd, {}))
        didEnd(returnCode);
}

void Sheet::orderOut()
{
    mIsWaitingForWindow = false;
    hide();
    if (!isInside())
        return;
    qApp->removeEventFilter(this);
    if (const QPointer<QWidget> before = std::exchange(mFocusBefore, nullptr))
        before->setFocus();
}

void Sheet::reject()
{
    if (mCancelButton)
        mCancelButton->click();
}

void Sheet::closeEvent(QCloseEvent *event)
{
    // Quitting the program also closes its windows in this way, so the event must not be refused for ever.
    if (!mCloseButton)
        return QDialog::closeEvent(event);
    event->accept();
    mCloseButton->click();
}

void Sheet::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    if (!isInside())
        return;
    // The background that Qt fills would make the pane opaque. Around an opaque pane, Qt paints the window in pieces,
    // which takes longer.
    QPainter painter(this);
    painter.setBrush(palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

/// Keys that move the focus stay in a pane, as they do in a window.
bool Sheet::focusNextPrevChild(bool next)
{
    if (!isInside())
        return QDialog::focusNextPrevChild(next);
    QWidget *widget = window()->focusWidget();
    if (!widget || !(widget == this || isAncestorOf(widget)))
        widget = this;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if ((widget == this || isAncestorOf(widget)) && widget->focusPolicy() & Qt::TabFocus && widget->isEnabled()
            && widget->isVisible()) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (widget != this);
    return false;
}

QString nameInAlert(const QString &name)
{
    constexpr int longestInLetters = 60;
    const QFontMetrics metrics(QApplication::font());
    return metrics.elidedText(visibleText(name, u' '), Qt::ElideMiddle, longestInLetters * metrics.averageCharWidth());
}

Sheet *showAlert(const AlertTexts &texts, QWidget *window, Sheet::DidEnd didEnd)
{
    auto *alert = new Sheet(window);
    alert->setObjectName("alert"_L1);
    alert->setWindowTitle(texts.title);
    alert->setAccessibleName(texts.title);
    alert->setAccessibleDescription(texts.detail.isEmpty() ? texts.description
                                                           : texts.description + u' ' + texts.detail);

    auto *icon = new QLabel;
    const int iconSize = alert->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, alert);
    icon->setPixmap(alert->style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, alert).pixmap(iconSize));
    const auto makeLabel = [](const QString &text, QLatin1StringView name) {
        auto *label = new QLabel(text);
        label->setObjectName(name);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    };
    QLabel *title = makeLabel(texts.title, "alertTitle"_L1);
    makeBold(title);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    const auto addButton = [&](const QString &text, QLatin1StringView name, int returnCode) {
        auto *button = new QPushButton(text);
        button->setObjectName(name);
        QObject::connect(button, &QPushButton::clicked, alert, [alert, returnCode] {
            alert->endSheet(returnCode);
            alert->deleteLater();
        });
        buttons->addWidget(button);
        return button;
    };
    QPushButton *alternativeButton = nullptr;
    if (!texts.alternativeButton.isEmpty())
        alternativeButton = addButton(texts.alternativeButton, "alertAlternativeButton"_L1, alertSecondButtonReturn);
    QPushButton *defaultButton = addButton(texts.defaultButton, "alertDefaultButton"_L1, alertFirstButtonReturn);
    defaultButton->setDefault(true);
    defaultButton->setFocus();
    alert->setCancelButton(alternativeButton ? alternativeButton : defaultButton);

    auto *layout = new QGridLayout(alert);
    layout->addWidget(icon, 0, 0, 3, 1, Qt::AlignTop);
    layout->addWidget(title, 0, 1);
    layout->addWidget(makeLabel(texts.description, "alertDescription"_L1), 1, 1);
    if (!texts.detail.isEmpty())
        layout->addWidget(makeLabel(texts.detail, "alertDetail"_L1), 2, 1);
    layout->addLayout(buttons, 3, 0, 1, 2);
    layout->setColumnStretch(1, 1);
    layout->setHorizontalSpacing(16);
    layout->setVerticalSpacing(10);
    alert->setMinimumWidth(420);
    alert->beginSheet(window, std::move(didEnd));
    return alert;
}
