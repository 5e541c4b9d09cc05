// SPDX-License-Identifier: MIT
#include "macros/macroinsertsheet.h"

#include "base/text.h"
#include "keys/keynames.h"
#include "macros/eventparser.h"
#include "macros/macroedits.h"
#include "macros/macrorecord.h"
#include "macros/numberonlytextfield.h"
#include "platform/mnemonics.h"
#include "platform/popupbutton.h"
#include "platform/radiogroup.h"
#include "platform/spacing.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using Kind = MacroInsertion::Kind;

namespace {

constexpr std::array kindTexts{"lkeyInsertPress", "lkeyInsertRelease", "lkeyInsertTap", "lkeyInsertClick",
                               "lkeyInsertPause"};
constexpr int sheetWidth = 460;

template <typename Widget> Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1StringView(name));
    return widget;
}

QLabel *makeText(const char *name)
{
    auto *label = named(new QLabel, name);
    label->setTextFormat(Qt::PlainText); // the names of keyboards come from outside
    label->setWordWrap(true);
    return label;
}

NumberOnlyTextField *makeNumber(const char *name)
{
    auto *field = named(new NumberOnlyTextField, name);
    field->setText(QString::number(MacroRecord::standardDelayMs));
    return field;
}

/// The name of the key in the event list, and that of the key on the keyboard where it is another one. Empty for a key
/// without a name in the list.
QString titleOfKey(int code)
{
    const QString inList = eventParser::getStringWithHIDWithModifier(code, 0);
    const QString onKeyboard = keyName(code);
    if (inList.isEmpty() || onKeyboard.isEmpty() || inList.compare(onKeyboard, Qt::CaseInsensitive) == 0)
        return inList;
    return u"%1 (%2)"_s.arg(inList, onKeyboard);
}

QString nameOfButton(int button)
{
    return eventParser::nameOfKeyOrButton(
        MacroEdits::press({.page = HidUsage::buttonPage, .usage = static_cast<quint16>(button)}));
}

} // namespace

MacroInsertSheet::MacroInsertSheet(QWidget *parent) : Sheet(parent)
{
    setObjectName("mInsertWindow"_L1);
    setWindowTitle(localizedText("lkeyInsertTitle"));
    build();
    layOut();
    setCancelButton(mCancel);
    connect(mKind, &PopUpButton::itemPicked, this, &MacroInsertSheet::showKind);
    connect(mKey, &PopUpButton::itemPicked, this, [this](int index) { chooseKey(mKeyCodes.at(index)); });
    connect(mButton, &PopUpButton::itemPicked, this, &MacroInsertSheet::showOutcome);
    connect(mPlace, &RadioGroup::rowClicked, this, &MacroInsertSheet::showOutcome);
    for (const NumberOnlyTextField *field : {mPause, mHold})
        connect(field, &QLineEdit::textChanged, this, &MacroInsertSheet::showOutcome);
    connect(mPressKey, &QPushButton::clicked, this, [this](bool isChecked) {
        mPressKey->setFocus(); // typed keys go to the part that has the focus
        Q_EMIT captureRequested(isChecked);
    });
    connect(mCancel, &QPushButton::clicked, this, [this] { endSheet(); });
    connect(mInsert, &QPushButton::clicked, this, &MacroInsertSheet::insert);
}

void MacroInsertSheet::build()
{
    mKind = named(new PopUpButton, "mInsertKind");
    for (const char *text : kindTexts)
        mKind->addItemWithTitle(localizedText(text));
    mKind->selectItemAtIndex(int(Kind::tap));
    mKey = named(new PopUpButton, "mInsertKey");
    fillKeys();
    mPressKey = named(new QPushButton(localizedText("lkeyInsertPressKey")), "mInsertPressKey");
    mPressKey->setCheckable(true);
    mPressKey->setAutoDefault(false);
    mCaptureHint = makeText("mInsertCaptureHint");
    mButton = named(new PopUpButton, "mInsertButton");
    for (int button = HidUsage::firstButton; button <= HidUsage::lastMacroButton; ++button)
        mButton->addItemWithTitle(nameOfButton(button));
    mPause = makeNumber("mInsertPause");
    mHold = makeNumber("mInsertHold");
    mPlace = named(new RadioGroup, "mInsertPlace");
    mPlace->setAccessibleName(localizedText("lkeyTypeTextPlace"));
    mPlace->addRow(localizedText("lkeyInsertBefore"));
    mPlace->addRow(localizedText("lkeyInsertAfter"));
    mPlace->selectRow(afterSelected);
    mOutcome = makeText("mInsertOutcome");
    mCancel = named(new QPushButton(localizedText("lkeyCancel")), "mInsertCancel");
    mCancel->setAutoDefault(false);
    mInsert = named(new QPushButton(localizedText("lkeyTypeTextInsert")), "mInsertOK");
    mInsert->setDefault(true);
}

void MacroInsertSheet::fillKeys()
{
    for (int code = HidUsage::firstKey; code <= HidUsage::lastKey; ++code) {
        const QString title = titleOfKey(code);
        if (title.isEmpty())
            continue;
        mKey->addItemWithTitle(title, code);
        mKeyCodes += code;
    }
    mKeyCode = mKeyCodes.first();
}

void MacroInsertSheet::layOut()
{
    mKeyRow = new QWidget;
    auto *key = new QVBoxLayout(mKeyRow); // side by side, both would be cut in a small window
    key->setContentsMargins({});
    key->addWidget(mKey);
    key->addWidget(mPressKey);
    mForm = new QFormLayout;
    mForm->setSpacing(Spacing::normal);
    mForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    const auto addRow = [this](const char *text, QWidget *field, QWidget *buddy) {
        auto *label = new QLabel(localizedText(text));
        label->setBuddy(buddy);
        buddy->setAccessibleName(label->text());
        mForm->addRow(label, field);
        return label;
    };
    addRow("lkeyInsertKind", mKind, mKind);
    addRow("lkeyInsertKey", mKeyRow, mKey);
    addRow("lkeyInsertButton", mButton, mButton);
    mPauseLabel = addRow("lkeyInsertPauseBefore", mPause, mPause);
    addRow("lkeyInsertHold", mHold, mHold);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(mCancel);
    buttons->addWidget(mInsert);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(Spacing::normal);
    column->addLayout(mForm);
    column->addWidget(mCaptureHint);
    column->addWidget(mPlace);
    column->addWidget(mOutcome);
    column->addStretch(1);
    column->addLayout(buttons);
    setMinimumWidth(sheetWidth);
}

void MacroInsertSheet::ask(QWidget *window, const QVariantList &events, int capacity, const QList<int> &selected)
{
    mEvents = events;
    mCapacity = capacity;
    mSelected = selected;
    mPlace->setVisible(!selected.isEmpty());
    showCapturing(false);
    showKind();
    beginSheet(window, [this](int) { Q_EMIT captureRequested(false); });
    mKind->setFocus();
}

void MacroInsertSheet::chooseKey(int code)
{
    mKeyCode = code;
    if (const auto index = mKeyCodes.indexOf(code); index >= 0)
        mKey->selectItemAtIndex(int(index));
    else
        mKey->setShownTitle(u"0x%1"_s.arg(code, 2, 16, QLatin1Char('0')));
    showOutcome();
}

void MacroInsertSheet::showSource(const CaptureSource &source)
{
    mSource = source;
    showCapturing(mPressKey->isChecked());
}

void MacroInsertSheet::showCapturing(bool isCapturing)
{
    mPressKey->setChecked(isCapturing);
    const QString request = captureText(
        mSource,
        {.unknown = "lkeyEnterMacroEvent", .window = "lkeyTypeKeyHere", .realKeyboards = "lkeyEnterMacroEventOn"});
    const QString hint = captureHint(mSource);
    mCaptureHint->setText(hint.isEmpty() ? request : request + u'\n' + hint);
    mCaptureHint->setVisible(isCapturing);
    mPressKey->setAccessibleDescription(isCapturing ? mCaptureHint->text() : QString());
}

QWidget *MacroInsertSheet::captureArea() const
{
    return mPressKey;
}

MacroInsertion MacroInsertSheet::insertion() const
{
    const Kind kind{mKind->indexOfSelectedItem()};
    const HidUsage button{.page = HidUsage::buttonPage,
                          .usage = static_cast<quint16>(HidUsage::firstButton + mButton->indexOfSelectedItem())};
    return {.kind = kind,
            .key = kind == Kind::click ? button : HidUsage{.usage = static_cast<quint16>(mKeyCode)},
            .pauseMs = mPause->integerValue(),
            .holdMs = mHold->integerValue()};
}

int MacroInsertSheet::place() const
{
    if (mSelected.isEmpty())
        return int(mEvents.size());
    return mPlace->selectedRow() == beforeSelected ? mSelected.first() : mSelected.last() + 1;
}

Result<MacroInsertion::Outcome, MacroInsertion::Problem> MacroInsertSheet::outcome() const
{
    return insertion().into(mEvents, place(), mCapacity);
}

void MacroInsertSheet::showKind()
{
    const MacroInsertion wanted = insertion();
    const Kind kind = wanted.kind;
    mForm->setRowVisible(mKeyRow, kind != Kind::click && kind != Kind::pause);
    mForm->setRowVisible(mButton, kind == Kind::click);
    mForm->setRowVisible(mHold, wanted.hasHold());
    const QString pause = localizedText(kind == Kind::pause ? "lkeyInsertPauseLength" : "lkeyInsertPauseBefore");
    if (Mnemonics::plainText(mPauseLabel->text()) != pause) {
        mPauseLabel->setText(pause);
        mPause->setAccessibleName(pause);
        Mnemonics::assign(this); // the new text gets a letter again
    }
    showOutcome();
}

void MacroInsertSheet::showOutcome()
{
    const MacroInsertion wanted = insertion();
    const bool isComplete = !mPause->text().isEmpty() && wanted.pauseMs >= (wanted.kind == Kind::pause ? 1 : 0)
                            && (!wanted.hasHold() || (!mHold->text().isEmpty() && wanted.holdMs >= 0));
    const auto made = outcome();
    QString words;
    if (made && made->addsUnpaired)
        words = localizedText("lkeyInsertUnpaired");
    else if (!made && made.error() == MacroInsertion::Problem::pauseTooLong)
        words = localizedText("lkeyInsertTooLong");
    else if (!made)
        words =
            localizedFormat("lkeyInsertFull", {QString::number(std::max<qsizetype>(0, mCapacity - mEvents.size()))});
    mOutcome->setText(words);
    mKind->setAccessibleDescription(words);
    mInsert->setAccessibleDescription(words);
    mInsert->setEnabled(isComplete && made);
}

void MacroInsertSheet::insert()
{
    const auto made = outcome();
    if (!made)
        return;
    endSheet();
    Q_EMIT insertRequested(*made);
}
