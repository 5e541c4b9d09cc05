// SPDX-License-Identifier: MIT
#include "platform/pulldownbutton.h"

#include "base/resources.h"
#include "base/text.h"

#include <QAction>
#include <QEvent>
#include <QIcon>
#include <QImage>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionToolButton>

using namespace Qt::StringLiterals;

PulldownButton::PulldownButton(QWidget *parent) : QToolButton(parent), mMenu(new QMenu(this))
{
    setMenu(mMenu);
    setPopupMode(InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    connect(mMenu, &QMenu::aboutToShow, this, &PulldownButton::validateItems);
}

void PulldownButton::setImages(const QString &onImage, const QString &offImage)
{
    mOnImage = onImage;
    mOffImage = offImage;
    setIcon({});
    if (isVisible())
        loadImages();
}

void PulldownButton::loadImages()
{
    const auto isDark = [this] {
        return palette().color(QPalette::ButtonText).lightness() > palette().color(QPalette::Button).lightness();
    };
    const auto load = [&](const QString &name, QPalette::ColorGroup group) {
        QImage image(resourcePath(u"images/"_s + name));
        // The pictures are dark: on a dark button they take the colour of its text.
        if (isDark() && !image.isNull()) {
            image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
            QPainter painter(&image);
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(image.rect(), palette().color(group, QPalette::ButtonText));
        }
        return QPixmap::fromImage(image);
    };
    QIcon icon;
    icon.addPixmap(load(mOnImage, QPalette::Normal), QIcon::Normal);
    icon.addPixmap(load(mOffImage, QPalette::Disabled), QIcon::Disabled);
    setIcon(icon);
}

void PulldownButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !icon().isNull() && !mOnImage.isEmpty())
        loadImages();
}

void PulldownButton::showEvent(QShowEvent *event)
{
    if (icon().isNull() && !mOnImage.isEmpty())
        loadImages();
    QToolButton::showEvent(event);
}

void PulldownButton::initStyleOption(QStyleOptionToolButton *option) const
{
    QToolButton::initStyleOption(option);
    option->features &= ~QStyleOptionToolButton::HasMenu; // no arrow
}

void PulldownButton::setCommands(const QList<MenuCommand> &commands, Handler handler, Validator validator)
{
    mMenu->clear();
    mValidator = std::move(validator);
    addMenuCommands(mMenu, commands, handler);
}

QAction *PulldownButton::itemWithTag(int tag) const
{
    const QList<QAction *> actions = mMenu->actions();
    for (QAction *action : actions) {
        if (action->data().toInt() == tag)
            return action;
    }
    return nullptr;
}

void PulldownButton::validateItems()
{
    const QList<QAction *> actions = mMenu->actions();
    for (QAction *action : actions)
        action->setEnabled(!mValidator || mValidator(action));
}

void addMenuCommands(QMenu *menu, const QList<MenuCommand> &commands, const PulldownButton::Handler &handler)
{
    for (const MenuCommand &command : commands) {
        QAction *action = menu->addAction(localizedText(command.titleKey));
        action->setObjectName(QLatin1StringView(command.titleKey));
        action->setData(command.tag);
        QObject::connect(action, &QAction::triggered, menu, [handler, action] { handler(action); });
    }
}
