// SPDX-License-Identifier: MIT
#include "keys/newmacrosheet.h"

#include "base/text.h"
#include "macros/eventparser.h"
#include "platform/buttonarea.h"
#include "platform/mnemonics.h"
#include "platform/spacing.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int listHeight = 180;
constexpr int sheetWidth = 400;

template <typename Widget> Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1StringView(name));
    return widget;
}

} // namespace

NewMacroSheet::NewMacroSheet(QWidget *parent)
    : Sheet(parent), mArea(named(new QWidget, "mNewMacroArea")), mHint(named(new QLabel, "mNewMacroHint")),
      mEvents(named(new QListWidget, "mNewMacroEvents")), mButtonArea(named(new ButtonArea, "mNewMacroButtonArea")),
      mRecord(named(new QPushButton, "mNewMacroRecord")),
      mNameLabel(named(new QLabel(localizedText("lkeyNewMacroName")), "mNewMacroNameLabel")),
      mName(named(new QLineEdit, "mNewMacroName")),
      mCancel(named(new QPushButton(localizedText("lkeyCancel")), "mNewMacroCancel")),
      mAssign(named(new QPushButton(localizedText("lkeyNewMacroAssign")), "mNewMacroAssign"))
{
    setObjectName("mNewMacroSheet"_L1);
    mHint->setTextFormat(Qt::PlainText); // the names of keyboards come from outside
    mHint->setWordWrap(true);
    mArea->setFocusPolicy(Qt::ClickFocus); // a click gives a recording its keys again
    mEvents->setFocusPolicy(Qt::NoFocus);
    mEvents->setSelectionMode(QAbstractItemView::NoSelection);
    mEvents->setAccessibleName(localizedText("lkeyNewMacroEvents"));
    mButtonArea->setText(localizedText("lkeyButtonArea"));
    mNameLabel->setBuddy(mName);
    for (QPushButton *button : {mRecord, mCancel, mAssign})
        button->setAutoDefault(false);
    setCancelButton(mCancel);
    layOut();
    connect(mButtonArea, &ButtonArea::buttonChanged, this, &NewMacroSheet::buttonChanged);
    connect(mRecord, &QPushButton::clicked, this, &NewMacroSheet::recordClicked);
    connect(mAssign, &QPushButton::clicked, this, &NewMacroSheet::assignClicked);
    connect(mCancel, &QPushButton::clicked, this, &NewMacroSheet::cancelClicked);
}

void NewMacroSheet::layOut()
{
    auto *recording = new QVBoxLayout(mArea);
    recording->setContentsMargins({});
    recording->setSpacing(Spacing::normal);
    recording->addWidget(mHint);
    recording->addWidget(mEvents);
    recording->addWidget(mButtonArea);
    QSizePolicy keepsItsPlace = mButtonArea->sizePolicy(); // the sheet keeps its size when the recording ends
    keepsItsPlace.setRetainSizeWhenHidden(true);
    mButtonArea->setSizePolicy(keepsItsPlace);
    recording->addWidget(mRecord, 0, Qt::AlignTrailing);
    mEvents->setFixedHeight(listHeight);
    auto *name = new QHBoxLayout;
    name->addWidget(mNameLabel);
    name->addWidget(mName, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(mCancel);
    buttons->addWidget(mAssign);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(Spacing::normal);
    column->addWidget(mArea);
    column->addLayout(name);
    column->addLayout(buttons);
    setMinimumWidth(sheetWidth);
}

void NewMacroSheet::begin(QWidget *window, const QString &key, const QString &name)
{
    setWindowTitle(localizedFormat("lkeyNewMacroTitle", {key}));
    mFirstName = name;
    mName->setText(name);
    showRecording();
    beginSheet(window);
    mArea->setFocus();
}

void NewMacroSheet::showSource(const CaptureSource &source)
{
    mSource = source;
    showHint();
}

void NewMacroSheet::showHint()
{
    if (!mIsRecording) {
        mHint->setText(localizedText(mHasEvents ? "lkeyNewMacroReady" : "lkeyNewMacroNothing"));
    } else {
        const QString request = captureText(
            mSource, {.unknown = "lkeyHoldEscape", .window = "lkeyTypeMacroHere", .realKeyboards = "lkeyRecordingOn"});
        const QString way = mSource.kind == CaptureSource::Kind::unknown ? QString() : captureHint(mSource);
        mHint->setText(way.isEmpty() ? request : request + u'\n' + way);
    }
    mRecord->setAccessibleDescription(mHint->text());
}

void NewMacroSheet::showRecording()
{
    mIsRecording = true;
    mHasEvents = false;
    mEvents->clear();
    mButtonArea->show();
    Mnemonics::setText(mRecord, localizedText("lkeyStop"));
    mName->setEnabled(false);
    mAssign->setEnabled(false);
    mAssign->setDefault(false);
    showHint();
    mArea->setFocus();
}

void NewMacroSheet::showRecorded(const QVariantList &events)
{
    mIsRecording = false;
    mButtonArea->hide();
    mHasEvents = !events.isEmpty();
    mEvents->clear(); // a recording without a key leaves the macro as it was
    addLines(eventParser::getMessagesArray(events));
    Mnemonics::setText(mRecord, localizedText("lkeyRecord"));
    mName->setEnabled(mHasEvents);
    mAssign->setEnabled(mHasEvents);
    mAssign->setDefault(mHasEvents);
    showHint();
    if (mHasEvents) {
        mName->setFocus();
        mName->selectAll();
    } else {
        mRecord->setFocus();
    }
}

void NewMacroSheet::addLines(const QStringList &lines)
{
    for (const QString &line : lines)
        mEvents->addItem(line.trimmed());
    mEvents->scrollToBottom();
}

QString NewMacroSheet::typedName() const
{
    return mName->text() == mFirstName ? QString() : mName->text();
}

bool NewMacroSheet::hasLines() const
{
    return mEvents->count() > 0;
}
