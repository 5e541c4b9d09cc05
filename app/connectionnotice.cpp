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

ConnectionNotice::ConnectionNotice(QWidget *parent, std::chrono::milliseconds startLimit) : QWidget(parent)
{
    mStartLimit.setSingleShot(true);
    mStartLimit.setInterval(startLimit);
    connect(&mStartLimit, &QTimer::timeout, this, &ConnectionNotice::showStartFailure);
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
    connect(mHelp, &QPushButton::clicked, this, &ConnectionNotice::clickHelp);
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
    setStart(isAbsent ? mStart : Start::unknown);
    if (isAbsent && !wasAbsent)
        Q_EMIT serviceMissed();
}

void ConnectionNotice::setCanStartService(bool canStart)
{
    if (mState.service == Service::absent)
        setStart(canStart ? Start::possible : Start::unknown);
}

void ConnectionNotice::showStartFailure()
{
    if (mStart == Start::requested)
        setStart(Start::failed);
}

void ConnectionNotice::setStart(Start start)
{
    mStart = start;
    updateWidgets();
}

void ConnectionNotice::clickHelp()
{
    if (mStart != Start::possible) {
        Q_EMIT helpRequested();
        if (mStart == Start::failed)
            Q_EMIT serviceMissed(); // the help may have helped: then the user tries again
        return;
    }
    setStart(Start::requested);
    mStartLimit.start();
    Q_EMIT startRequested();
}

const char *ConnectionNotice::textKey() const
{
    if (mState.service == Service::running)
        return "lkeyNoticeNoKeyboard";
    switch (mStart) {
    case Start::unknown: break;
    case Start::possible: return "lkeyNoticeServiceStopped";
    case Start::requested: return "lkeyNoticeServiceStarting";
    case Start::failed: return "lkeyNoticeStartFailed";
    }
    return "lkeyNoticeNoService";
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
    mText->setText(localizedText(textKey()));
    mKeyboards->setVisible(isWithoutKeyboard);
    mHelp->setVisible(isWithoutService);
    // One button for both: the window has few letters left for Alt, and the header of a small one no room.
    const bool isStart = mStart == Start::possible || mStart == Start::requested;
    Mnemonics::setText(mHelp, localizedText(isStart ? "lkeyNoticeStart" : "lkeyNoticeHelp"));
    mHelp->setEnabled(mStart != Start::requested);
}
