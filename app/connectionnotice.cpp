// SPDX-License-Identifier: MIT
#include "app/connectionnotice.h"

#include "base/text.h"
#include "platform/spacing.h"
#include "platform/symbol.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;
using Service = StatusState::Service;

ConnectionNotice::ConnectionNotice(QWidget *parent) : QWidget(parent)
{
    setObjectName("mConnectionNotice"_L1);
    mPicture = new QLabel;
    mText = new QLabel;
    mText->setObjectName("mConnectionNoticeText"_L1);
    mText->setWordWrap(true);
    // Two lines are as high as the logo: the header keeps its height when the notice appears.
    constexpr int widthCharacters = 36;
    mText->setMinimumSize(mText->fontMetrics().averageCharWidth() * widthCharacters,
                          mText->fontMetrics().lineSpacing() * 2);
    mKeyboards = new QPushButton(localizedText("lkeyChooserOpen"));
    mKeyboards->setObjectName("mConnectionNoticeKeyboards"_L1);
    connect(mKeyboards, &QPushButton::clicked, this, &ConnectionNotice::keyboardsRequested);
    mHelp = new QPushButton(localizedText("lkeyNoticeHelp"));
    mHelp->setObjectName("mConnectionNoticeHelp"_L1);
    connect(mHelp, &QPushButton::clicked, this, &ConnectionNotice::helpRequested);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(Spacing::normal);
    row->addWidget(mPicture);
    row->addWidget(mText);
    row->addWidget(mKeyboards);
    row->addWidget(mHelp);
    row->addStretch();
    show({});
}

void ConnectionNotice::show(const StatusState &state)
{
    constexpr int symbolSize = 24;
    const bool isWithoutService = state.service == Service::silent || state.service == Service::absent;
    const bool isWithoutKeyboard = state.service == Service::running && !state.isAttached;
    const bool wasHidden = isHidden();
    setVisible(isWithoutService || isWithoutKeyboard);
    if (isHidden() != wasHidden)
        Q_EMIT shown();
    if (isHidden())
        return;
    const Symbol symbol = isWithoutService ? Symbol::noService : Symbol::noKeyboard;
    mPicture->setPixmap(Symbols::icon(symbol).pixmap(QSize(symbolSize, symbolSize), devicePixelRatio()));
    mText->setText(localizedText(isWithoutService ? "lkeyNoticeNoService" : "lkeyNoticeNoKeyboard"));
    mKeyboards->setVisible(isWithoutKeyboard);
    mHelp->setVisible(isWithoutService);
}
