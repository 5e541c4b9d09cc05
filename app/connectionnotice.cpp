// SPDX-License-Identifier: MIT
#include "app/connectionnotice.h"

#include "base/text.h"
#include "platform/mnemonics.h"
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
    connect(mHelp, &QPushButton::clicked, this,
            [this] { isStartOffered() ? Q_EMIT startRequested() : Q_EMIT helpRequested(); });
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
    const bool wasAbsent = mState.service == Service::absent;
    mState = state;
    const bool isAbsent = state.service == Service::absent;
    if (!isAbsent)
        mCanStart = mHasStartFailed = false;
    updateWidgets();
    if (isAbsent && !wasAbsent)
        Q_EMIT serviceMissed();
}

void ConnectionNotice::setCanStartService(bool canStart)
{
    mCanStart = canStart && mState.service == Service::absent;
    updateWidgets();
}

void ConnectionNotice::showStartFailure()
{
    mHasStartFailed = mState.service == Service::absent;
    updateWidgets();
}

void ConnectionNotice::updateWidgets()
{
    constexpr int symbolSize = 24;
    const bool isWithoutService = mState.service == Service::silent || mState.service == Service::absent;
    const bool isWithoutKeyboard = mState.service == Service::running && !mState.isAttached;
    const bool wasHidden = isHidden();
    setVisible(isWithoutService || isWithoutKeyboard);
    if (isHidden() != wasHidden)
        Q_EMIT shown();
    if (isHidden())
        return;
    const Symbol symbol = isWithoutService ? Symbol::noService : Symbol::noKeyboard;
    mPicture->setPixmap(Symbols::icon(symbol).pixmap(QSize(symbolSize, symbolSize), devicePixelRatio()));
    const char *text = isWithoutKeyboard ? "lkeyNoticeNoKeyboard"
                       : mHasStartFailed ? "lkeyNoticeStartFailed"
                       : mCanStart       ? "lkeyNoticeServiceStopped"
                                         : "lkeyNoticeNoService";
    mText->setText(localizedText(text));
    mKeyboards->setVisible(isWithoutKeyboard);
    mHelp->setVisible(isWithoutService);
    // One button for both: the window has few letters left for Alt, and the header of a small one no room.
    Mnemonics::setText(mHelp, localizedText(isStartOffered() ? "lkeyNoticeStart" : "lkeyNoticeHelp"));
}

bool ConnectionNotice::isStartOffered() const
{
    return mCanStart && !mHasStartFailed;
}
