// SPDX-License-Identifier: MIT
#include "macros/macrotypetext.h"

#include "base/text.h"
#include "macros/numberonlytextfield.h"
#include "platform/desktopkeymap.h"
#include "platform/radiogroup.h"
#include "platform/spacing.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype shownUntyped = 6; // characters that the sheet names; it counts the others

QLabel *makeLabel(const char *objectName)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1StringView(objectName));
    label->setTextFormat(Qt::PlainText); // it has the user's characters, or a name of the system
    label->setWordWrap(true);
    return label;
}

QPushButton *makeButton(const char *objectName, const char *textKey)
{
    auto *button = new QPushButton(localizedText(textKey));
    button->setObjectName(QLatin1StringView(objectName));
    button->setAutoDefault(false); // Return in a field must not insert
    return button;
}

} // namespace

MacroTypeText::MacroTypeText(QWidget *parent)
    : Sheet(parent), mText(new QPlainTextEdit), mLayout(makeLabel("mTypeTextLayout")), mPause(new NumberOnlyTextField),
      mPlace(new RadioGroup), mOutcome(makeLabel("mTypeTextOutcome")),
      mCancel(makeButton("mTypeTextCancel", "lkeyCancel")), mInsert(makeButton("mTypeTextInsert", "lkeyTypeTextInsert"))
{
    setObjectName("mTypeTextWindow"_L1);
    setWindowTitle(localizedText("lkeyTypeTextTitle"));
    mText->setObjectName("mTypeTextField"_L1);
    mText->setTabChangesFocus(true);
    mPause->setObjectName("mTypeTextPause"_L1);
    mPause->setText(QString::number(MacroRecord::standardDelayMs));
    mPlace->setObjectName("mTypeTextPlace"_L1);
    mPlace->setAccessibleName(localizedText("lkeyTypeTextPlace"));
    mPlace->addRow(localizedText("lkeyTypeTextBefore"));
    mPlace->addRow(localizedText("lkeyTypeTextAtEnd"));
    layOut();
    setCancelButton(mCancel);
    connect(mText, &QPlainTextEdit::textChanged, this, &MacroTypeText::showOutcome);
    connect(mPause, &QLineEdit::textChanged, this, &MacroTypeText::showOutcome);
    connect(mPlace, &RadioGroup::rowClicked, this, &MacroTypeText::showOutcome);
    connect(mCancel, &QPushButton::clicked, this, [this] { endSheet(); });
    connect(mInsert, &QPushButton::clicked, this, &MacroTypeText::insert);
}

void MacroTypeText::layOut()
{
    auto *textLabel = new QLabel(localizedText("lkeyTypeTextField"));
    textLabel->setObjectName("mTypeTextLabel"_L1);
    textLabel->setBuddy(mText);
    auto *pauseLabel = new QLabel(localizedText("lkeyTypeTextPause"));
    pauseLabel->setObjectName("mTypeTextPauseLabel"_L1);
    pauseLabel->setBuddy(mPause);
    auto *pause = new QHBoxLayout;
    pause->addWidget(pauseLabel);
    pause->addWidget(mPause, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(mCancel);
    buttons->addWidget(mInsert);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(Spacing::normal);
    column->addWidget(textLabel);
    column->addWidget(mText, 1);
    column->addWidget(mOutcome);
    column->addWidget(mLayout);
    column->addLayout(pause);
    column->addWidget(mPlace);
    column->addLayout(buttons);
    setMinimumWidth(460);
}

void MacroTypeText::followDesktop()
{
    if (mDesktop)
        return;
    mDesktop = new DesktopKeymap(DesktopKeymap::desktopOfPlatform(QGuiApplication::platformName()), this);
    connect(mDesktop, &DesktopKeymap::changed, this, [this] { showKeymap(mDesktop->keymap()); });
    showKeymap(mDesktop->keymap());
}

void MacroTypeText::ask(QWidget *window, const QVariantList &events, int capacity, std::optional<int> selectedEvent)
{
    mEvents = events;
    mCapacity = capacity;
    mSelectedEvent = selectedEvent;
    mPlace->selectRow(selectedEvent ? beforeSelected : atEnd);
    mPlace->setVisible(selectedEvent.has_value());
    followDesktop();
    showOutcome();
    beginSheet(window);
    mText->setFocus();
    mText->selectAll();
}

void MacroTypeText::showKeymap(const Keymap &keymap)
{
    mTable = TypingTable(keymap);
    mLayout->setText(localizedFormat("lkeyTypeTextLayout", {keymap.name()}));
    showOutcome();
}

void MacroTypeText::textWasInserted()
{
    mText->clear();
}

bool MacroTypeText::fits() const
{
    return mEvents.size() + mTyped.eventCount <= mCapacity;
}

QString MacroTypeText::text() const
{
    QString text = mText->document()->toRawText(); // toPlainText() has spaces in place of U+00A0
    text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
    return text;
}

int MacroTypeText::place() const
{
    const bool isBefore = mSelectedEvent && mPlace->selectedRow() == beforeSelected;
    return isBefore ? *mSelectedEvent : int(mEvents.size());
}

QString MacroTypeText::outcomeWords() const
{
    if (!mTyped.untyped.isEmpty()) {
        QStringList items;
        for (const UntypedCharacter &each : mTyped.untyped.first(qMin(shownUntyped, mTyped.untyped.size())))
            items += localizedFormat("lkeyTypeTextPosition",
                                     {shownCharacter(each.character), QString::number(each.position)});
        if (mTyped.untyped.size() > shownUntyped)
            items += localizedFormat("lkeyTypeTextMore", {QString::number(mTyped.untyped.size() - shownUntyped)});
        return localizedFormat("lkeyTypeTextUntyped", {items.join(localizedText("lkeyTypeTextComma"))});
    }
    const QString count = QString::number(mTyped.eventCount);
    if (!fits())
        return localizedFormat("lkeyTypeTextTooMany", {count, QString::number(mCapacity - mEvents.size())});
    const QString words = localizedFormat("lkeyTypeTextEvents", {count});
    const QStringList held = modifiersHeldBefore(mEvents, place());
    if (held.isEmpty())
        return words;
    return words + u'\n' + localizedFormat("lkeyTypeTextHeld", {held.join(localizedText("lkeyTypeTextComma"))});
}

void MacroTypeText::showOutcome()
{
    mTyped = typeText(text(), mTable, 0);
    const QString words = outcomeWords();
    mOutcome->setText(words);
    mText->setAccessibleDescription(words);
    const bool hasPause = !mPause->text().isEmpty();
    mInsert->setEnabled(mTyped.eventCount > 0 && mTyped.untyped.isEmpty() && fits() && hasPause);
}

void MacroTypeText::insert()
{
    const int pauseMs = mPause->integerValue();
    const TypedText typed = typeText(text(), mTable, pauseMs);
    Q_EMIT insertRequested(typed.events, place(), pauseMs);
}
