// SPDX-License-Identifier: MIT
#include "macros/macropausesheet.h"

#include "base/text.h"
#include "macros/numberonlytextfield.h"
#include "platform/spacing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

MacroPauseSheet::MacroPauseSheet(QWidget *parent)
    : Sheet(parent), mLabel(new QLabel), mNumber(new NumberOnlyTextField), mHint(new QLabel),
      mCancel(new QPushButton(localizedText("lkeyCancel"))), mOK(new QPushButton(localizedText("lkeyOK")))
{
    setObjectName("mPauseWindow"_L1);
    mLabel->setObjectName("mPauseLabel"_L1);
    mLabel->setBuddy(mNumber);
    mNumber->setObjectName("mPauseField"_L1);
    mHint->setObjectName("mPauseHint"_L1);
    mHint->setWordWrap(true);
    mCancel->setObjectName("mPauseCancel"_L1);
    mCancel->setAutoDefault(false);
    mOK->setObjectName("mPauseOK"_L1);
    mOK->setDefault(true);
    setCancelButton(mCancel);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(mCancel);
    buttons->addWidget(mOK);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(Spacing::normal);
    column->addWidget(mLabel);
    column->addWidget(mNumber);
    column->addWidget(mHint);
    column->addLayout(buttons);
    setMinimumWidth(360);
    connect(mNumber, &QLineEdit::textChanged, this,
            [this](const QString &text) { mOK->setEnabled(!text.isEmpty() && mNumber->integerValue() >= 0); });
    connect(mCancel, &QPushButton::clicked, this, [this] { endSheet(); });
    connect(mOK, &QPushButton::clicked, this, [this] {
        endSheet();
        Q_EMIT changeRequested(mChange, mNumber->integerValue());
    });
}

void MacroPauseSheet::ask(QWidget *window, Change change, int eventCount)
{
    mChange = change;
    const bool isScale = change == Change::scale;
    const QString count = QString::number(eventCount);
    setWindowTitle(localizedText(isScale ? "lkeyScalePausesTitle" : "lkeySetPauseTitle"));
    mLabel->setText(localizedText(isScale ? "lkeyScalePausesField" : "lkeyEnterMacroDelay"));
    mHint->setText(localizedFormat(isScale ? "lkeyScalePausesHint" : "lkeySetPauseHint", {count}));
    mNumber->setAccessibleDescription(mHint->text());
    mNumber->clear();
    mOK->setEnabled(false);
    beginSheet(window);
    mNumber->setFocus();
}
