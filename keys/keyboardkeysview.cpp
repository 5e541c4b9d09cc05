// SPDX-License-Identifier: MIT
// The part of KeyboardKeysController that creates its widgets and connects them to the actions.
#include "keys/keyboardkeyscontroller.h"

#include "base/text.h"
#include "keys/keyboardpicture.h"
#include "keys/keycard.h"
#include "keys/keylayout.h"
#include "keys/keymarkslegend.h"
#include "keys/keynames.h"
#include "keys/keysearchbar.h"
#include "platform/boldtext.h"
#include "platform/groupbox.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "platform/spacing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int macrosTabIndex = 2;
constexpr int assignmentWidthCharacters = 30;

QLabel *makeLabel(QLatin1StringView name, const QString &text = {})
{
    auto *label = new QLabel(text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText); // profile names may come from strangers' files
    return label;
}

void keepSpaceWhenHidden(QWidget *widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

QPushButton *makeButton(QLatin1StringView name, const char *textKey)
{
    auto *button = new QPushButton(localizedText(textKey));
    button->setObjectName(name);
    return button;
}

struct FixedKeyName
{
    QLatin1StringView outlet;
    const char *nameKey;
};

constexpr FixedKeyName fixedKeyNames[] = {
    {"mEject"_L1, "lkeyKeysEjectKey"}, {"mMacro"_L1, "lkeyKeysMacroKey"},       {"mFN"_L1, "lkeyKeysFnKey"},
    {"mMenu"_L1, "lkeyKeysMenuKey"},   {"mNumPadBlank"_L1, "lkeyKeysBlankKey"},
};

} // namespace

void KeyboardKeysController::buildView()
{
    mView = new QWidget;
    mView->setObjectName("mKeysView"_L1);
    connectNewMacro();
    auto *layout = new QVBoxLayout(mView);
    layout->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(buildHeader());
    layout->addWidget(buildKeyboard());
    layout->addWidget(buildCard());
    layout->addWidget(buildNotice());
    layout->addStretch(1);
    buildSingleKeySheet();
}

QWidget *KeyboardKeysController::buildHeader()
{
    auto *header = new QWidget;
    mCurrentProfileLabel = makeLabel("mCurrentProfileLabel"_L1, localizedText("lkeyCurrentProfile"));
    mProfileNameLabel = makeLabel("mProfileNameLabel"_L1);
    makeBold(mProfileNameLabel);
    // A long name is cut off instead of widening the window.
    mProfileNameLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mCurrentProfileLabel);
    layout->addWidget(mProfileNameLabel, 1);
    mSearchBar = new KeySearchBar;
    layout->addWidget(mSearchBar);
    return header;
}

QWidget *KeyboardKeysController::buildKeyboard()
{
    mPicture = new KeyboardPicture;
    mPicture->setObjectName("mKeyboardPicture"_L1);
    mPicture->setAccessibleName(localizedText("lkeyKeysPicture"));
#define KESTRA_KEY(outlet, action, code, functionKeyName) outlet = mPicture->button(#outlet##_L1);
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart) outlet = mPicture->button(#outlet##_L1);
#include "keys/keytable.inc"
    showKeyNames();
    for (const FixedKeyName &row : fixedKeyNames) {
        KeyButton *button = mPicture->button(row.outlet);
        button->setAccessibleName(localizedText(row.nameKey));
        button->setAccessibleDescription(localizedText("lkeyKeysNoAssignment"));
        button->setToolTip(
            localizedFormat("lkeyKeysToolTip", {button->accessibleName(), button->accessibleDescription()}));
    }

    mKeysBox = new GroupBox(localizedText("lkeyKeysBox"));
    mKeysBox->setObjectName("mKeysBox"_L1);
    auto *layout = new QVBoxLayout(mKeysBox);
    layout->setContentsMargins(Spacing::normal, Spacing::normal, Spacing::normal, Spacing::normal);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(mPicture);
    mMarksLegend = new KeyMarksLegend;
    layout->addWidget(mMarksLegend);
    return mKeysBox;
}

QWidget *KeyboardKeysController::buildCard()
{
    mKeyCard = new KeyCard;
    mKeyCard->setObjectName("mKeyCard"_L1);
    mAssignLabel = makeLabel("mAssignLabel"_L1, localizedText("lkeyAssignFunction"));
    mAssignFunction = new PopUpButton;
    mAssignFunction->setObjectName("mAssignFunction"_L1);
    mAssignFunction->setAccessibleName(localizedText("lkeyAssignFunction"));
    mAssignLabel->setBuddy(mAssignFunction);
    mPlaybackOptionLabel = makeLabel("mPlaybackOptionLabel"_L1, localizedText("lkeyPlaybackOption"));
    mMacroPlaybackPopUp = new PopUpButton;
    mMacroPlaybackPopUp->setObjectName("mMacroPlaybackPopUp"_L1);
    mMacroPlaybackPopUp->setAccessibleName(localizedText("lkeyPlaybackOption"));
    mPlaybackOptionLabel->setBuddy(mMacroPlaybackPopUp);
    // Whatever their titles: the card must not move while keys are selected.
    for (PopUpButton *popUp : {mAssignFunction, mMacroPlaybackPopUp})
        popUp->setFixedWidth(popUp->fontMetrics().averageCharWidth() * assignmentWidthCharacters);
    keepSpaceWhenHidden(mMacroPlaybackPopUp);
    keepSpaceWhenHidden(mPlaybackOptionLabel);
    mKeyCard->addControl(mAssignLabel, mAssignFunction);
    mKeyCard->addControl(mPlaybackOptionLabel, mMacroPlaybackPopUp);
    return mKeyCard;
}

QWidget *KeyboardKeysController::buildNotice()
{
    auto *notice = new QWidget;
    mFunctionKeysInfoImage = makeLabel("mFunctionKeysInfoImage"_L1);
    // The icon is set when it is first shown: looking it up loads the desktop's icon theme.
    const int size = notice->style()->pixelMetric(QStyle::PM_SmallIconSize);
    mFunctionKeysInfoImage->setFixedSize(size, size);
    mFunctionKeysInfoLabel = makeLabel("mFunctionKeysInfoLabel"_L1);
    mFunctionKeysInfoLabel->setWordWrap(true);
    keepSpaceWhenHidden(mFunctionKeysInfoImage);
    keepSpaceWhenHidden(mFunctionKeysInfoLabel);
    auto *layout = new QHBoxLayout(notice);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mFunctionKeysInfoImage, 0, Qt::AlignTop);
    layout->addWidget(mFunctionKeysInfoLabel, 1);
    return notice;
}

void KeyboardKeysController::buildSingleKeySheet()
{
    mSingleKeyWindow = new Sheet(mView);
    mSingleKeyWindow->setObjectName("mSingleKeyWindow"_L1);
    mSingleKeyWindow->setWindowTitle(localizedText("lkeySingleKey"));
    mSingleKeyInputLabel = makeLabel("mSingleKeyInputLabel"_L1);
    mSingleKeyInputLabel->setWordWrap(true);
    mSingleKeyInput = new QLineEdit;
    mSingleKeyInput->setObjectName("mSingleKeyInput"_L1);
    mSingleKeyInput->setReadOnly(true); // shows the key that the daemon captured; the user types nothing here
    mSingleKeyInput->setAlignment(Qt::AlignHCenter);
    mSingleKeyHint = makeLabel("mSingleKeyHint"_L1);
    mSingleKeyHint->setWordWrap(true);
    mSingleKeyCancel = makeButton("mSingleKeyCancel"_L1, "lkeyCancel");
    mSingleKeyOK = makeButton("mSingleKeyOK"_L1, "lkeyOK");
    // The sheet asks for a key. Until one is captured, Return, Enter and Space of a keyboard that the daemon has not
    // grabbed must press no button. Afterwards Return means OK; Escape cancels at any time.
    mSingleKeyCancel->setAutoDefault(false);
    mSingleKeyOK->setAutoDefault(false);
    mSingleKeyWindow->setCancelButton(mSingleKeyCancel);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(mSingleKeyCancel);
    buttons->addWidget(mSingleKeyOK);
    auto *layout = new QVBoxLayout(mSingleKeyWindow);
    layout->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(mSingleKeyInputLabel);
    layout->addWidget(mSingleKeyInput);
    layout->addWidget(mSingleKeyHint);
    layout->addLayout(buttons);
    mSingleKeyWindow->setMinimumWidth(360);
    showCaptureSource({});
}

void KeyboardKeysController::connectActions()
{
#define KESTRA_KEY(outlet, action, code, functionKeyName)                                                              \
    connect(outlet, &QAbstractButton::clicked, this, [this] { action(outlet); });
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart)                                                              \
    connect(outlet, &QAbstractButton::clicked, this, [this] { action(outlet); });
#include "keys/keytable.inc"
    connectPicture();
    connect(mAssignFunction, &PopUpButton::itemPicked, this, [this] { clickAssignFunction(mAssignFunction); });
    connect(mMacroPlaybackPopUp, &PopUpButton::itemPicked, this, [this] { clickMacroPlayback(mMacroPlaybackPopUp); });
    connect(mKeyCard, &KeyCard::recordingRequested, this, [this] {
        if (mKeysDelegate)
            mKeysDelegate->selectTabAtIndex(macrosTabIndex);
    });
    connect(mSingleKeyOK, &QPushButton::clicked, this, [this] { clickSingleKeyOK(mSingleKeyOK); });
    connect(mSingleKeyCancel, &QPushButton::clicked, this, [this] { clickSingleKeyCancel(mSingleKeyCancel); });
}
