// SPDX-License-Identifier: MIT
#include "macros/macrouseslinks.h"

#include "base/text.h"
#include "base/visibletext.h"
#include "keys/keynames.h"
#include "platform/flowlayout.h"
#include "platform/mnemonics.h"
#include "platform/spacing.h"

#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using KeyMappings::MacroUse;

namespace {

constexpr qsizetype shownLinks = 4;
constexpr int widestLink = 220;

} // namespace

QString macroUseWords(const MacroUse &use)
{
    return localizedFormat("lkeyMacroUse", {keyName(use.keyCode), visibleText(use.profileName, u' ')});
}

QString macroUsesWords(const QList<MacroUse> &uses)
{
    if (uses.isEmpty())
        return {};
    QStringList words;
    for (const MacroUse &use : uses.first(std::min(shownLinks, uses.size())))
        words += macroUseWords(use);
    if (uses.size() > shownLinks)
        words += localizedFormat("lkeyMacroUsesMore", {QString::number(uses.size() - shownLinks)});
    return localizedFormat("lkeyMacroUses", {words.join(localizedText("lkeyMacroUseSeparator"))});
}

MacroUsesLinks::MacroUsesLinks(QWidget *parent) : QWidget(parent), mLabel(new QLabel), mNote(new QLabel)
{
    setObjectName("mMacroUses"_L1);
    mLabel->setObjectName("mMacroUsesLabel"_L1);
    mNote->setObjectName("mMacroUsesNote"_L1);
    mNote->setText(localizedText("lkeyMacroUsesSwitch"));
    mNote->setWordWrap(true);
    auto *flow = new QWidget;
    auto *links = new FlowLayout(flow, Spacing::tight, 0, FlowLayout::Rows::fromTheLeft);
    links->addWidget(mLabel);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(flow);
    column->addWidget(mNote);
    build();
}

void MacroUsesLinks::show(const QList<MacroUse> &uses, int activeProfile)
{
    if (uses == mUses && activeProfile == mActiveProfile)
        return; // keeps the focus on its link
    mUses = uses;
    mActiveProfile = activeProfile;
    build();
}

void MacroUsesLinks::build()
{
    for (QToolButton *link : std::as_const(mLinks))
        link->deleteLater();
    for (QToolButton *link : std::as_const(mLinks))
        link->hide();
    mLinks.clear();
    mLabel->setText(localizedText(mUses.isEmpty() ? "lkeyMacroUnused" : "lkeyMacroUsesLabel"));
    for (const MacroUse &use : mUses.first(std::min(shownLinks, mUses.size()))) {
        QToolButton *link = addLink(macroUseWords(use));
        link->setToolTip(u"<p>"_s + tipOf(use).toHtmlEscaped() + u"</p>"_s);
        link->setAccessibleDescription(tipOf(use));
        connect(link, &QToolButton::clicked, this, [this, use] { Q_EMIT chosen(use); });
    }
    if (mUses.size() > shownLinks)
        addMenu();
    mNote->setVisible(
        std::ranges::any_of(mUses, [this](const MacroUse &use) { return use.profileIndex != mActiveProfile; }));
}

QToolButton *MacroUsesLinks::addLink(const QString &text)
{
    auto *link = new QToolButton;
    link->setObjectName("mMacroUse"_L1);
    link->setAutoRaise(true);
    link->setFocusPolicy(Qt::StrongFocus);
    link->setText(Mnemonics::escaped(link->fontMetrics().elidedText(text, Qt::ElideMiddle, widestLink)));
    link->setAccessibleName(text);
    Mnemonics::exclude(link); // the links come and go with the selection
    QFont underlined = link->font();
    underlined.setUnderline(true);
    link->setFont(underlined);
    mLabel->parentWidget()->layout()->addWidget(link);
    // A link behind the others in the order of Tab, and before what follows them.
    setTabOrder(mLinks.isEmpty() ? static_cast<QWidget *>(this) : mLinks.last(), link);
    link->show();
    mLinks += link;
    return link;
}

void MacroUsesLinks::addMenu()
{
    const QList<MacroUse> further = mUses.sliced(shownLinks);
    QToolButton *link = addLink(localizedFormat("lkeyMacroUsesMore", {QString::number(further.size())}));
    link->setObjectName("mMoreMacroUses"_L1);
    auto *menu = new QMenu(link);
    menu->setToolTipsVisible(true);
    for (const MacroUse &use : further) {
        QAction *item = menu->addAction(Mnemonics::escaped(macroUseWords(use)));
        item->setToolTip(u"<p>"_s + tipOf(use).toHtmlEscaped() + u"</p>"_s);
        connect(item, &QAction::triggered, this, [this, use] { Q_EMIT chosen(use); });
    }
    link->setMenu(menu);
    link->setPopupMode(QToolButton::InstantPopup);
}

QString MacroUsesLinks::tipOf(const MacroUse &use) const
{
    if (use.profileIndex == mActiveProfile)
        return localizedText("lkeyMacroUseTip");
    return localizedFormat("lkeyMacroUseSwitchTip", {visibleText(use.profileName, u' ')});
}
