// SPDX-License-Identifier: MIT
#include "platform/pulldownbutton.h"

#include "app/util/resources.h"
#include "app/util/text.h"

#include <QAction>
#include <QIcon>
#include <QMenu>

using namespace Qt::StringLiterals;

PulldownButton::PulldownButton(QWidget *parent) : QToolButton(parent), mMenu(new QMenu(this))
{
    setMenu(mMenu);
    setPopupMode(InstantPopup);
    setStyleSheet(u"QToolButton::menu-indicator { image: none; }"_s);
    setFocusPolicy(Qt::StrongFocus);
    connect(mMenu, &QMenu::aboutToShow, this, &PulldownButton::validateItems);
}

void PulldownButton::setImages(const QString &onImage, const QString &offImage)
{
    QIcon icon;
    icon.addFile(resourcePath(u"images/"_s + onImage), {}, QIcon::Normal);
    icon.addFile(resourcePath(u"images/"_s + offImage), {}, QIcon::Disabled);
    setIcon(icon);
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
