// SPDX-License-Identifier: MIT
#include "macros/macrotrysheet.h"

#include "base/text.h"
#include "keys/keymapping.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"
#include "platform/popupbutton.h"
#include "platform/spacing.h"
#include "platform/statusline.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLines = 500; // of the output; the oldest go first
constexpr int outputLines = 8;
constexpr int fieldLines = 2;
constexpr int standardWidth = 460;

QString lineOf(const TriedKey &key)
{
    const QVariantMap event =
        MacroRecord::eventRecord({.command = key.isDown ? MacroRecord::keyDown : MacroRecord::keyUp,
                                  .delayMs = 0,
                                  .page = key.page,
                                  .argument = key.argument});
    const QString time = QString::number(double(key.timeUs) / 1'000'000, 'f', 3);
    return time + u"  "_s + eventParser::parseSequence(event).value(1).trimmed();
}

const char *textOf(TryEnd end)
{
    switch (end) {
    case TryEnd::finished: return "lkeyTryFinished";
    case TryEnd::stopped: return "lkeyTryStopped";
    case TryEnd::changed: return "lkeyTryChanged";
    case TryEnd::limit: return "lkeyTryLimit";
    case TryEnd::empty: return "lkeyTryEmpty";
    case TryEnd::tooMany: return "lkeyTryTooMany";
    case TryEnd::unavailable: break;
    }
    return "lkeyTryUnavailable";
}

QLabel *makeText(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void setLines(QPlainTextEdit *edit, int lines)
{
    const int margins = 2 * (edit->frameWidth() + static_cast<int>(edit->document()->documentMargin()));
    edit->setFixedHeight(lines * edit->fontMetrics().lineSpacing() + margins);
}

} // namespace

MacroTrySheet::MacroTrySheet()
{
    setObjectName("mTryWindow"_L1);
    setWindowTitle(localizedText("lkeyTryTitle"));
    build();
    showPlaying(false);
}

void MacroTrySheet::build()
{
    const auto makeButton = [](QPushButton *&button, const char *name, const char *textKey) {
        button = new QPushButton(localizedText(textKey));
        button->setObjectName(QLatin1StringView(name));
        button->setAutoDefault(false);
        return button;
    };
    mTitle = makeText("mTryTitle");
    mRepeat = new PopUpButton;
    mRepeat->setObjectName("mTryRepeat"_L1);
    mRepeat->setAccessibleName(localizedText("lkeyTryRepeat"));
    for (const KeyMappings::RepeatMode &mode : KeyMappings::repeatModes())
        mRepeat->addItemWithTitle(localizedText(mode.labelKey));
    auto *row = new QHBoxLayout;
    row->addWidget(mRepeat);
    row->addStretch();
    row->addWidget(makeButton(mStart, "mTryStart", "lkeyTryStart"));
    row->addWidget(makeButton(mStop, "mTryStop", "lkeyStop"));

    mOutput = new QPlainTextEdit;
    mOutput->setObjectName("mTryOutput"_L1);
    mOutput->setReadOnly(true);
    mOutput->setTabChangesFocus(true);
    mOutput->setMaximumBlockCount(mostLines);
    mOutput->setAccessibleName(localizedText("lkeyTryOutput"));
    setLines(mOutput, outputLines);
    mStatus = new StatusLine;
    mStatus->setObjectName("mTryStatus"_L1);

    mFieldLabel = makeText("mTryFieldLabel");
    mFieldLabel->setText(localizedText("lkeyTryField"));
    mField = new QPlainTextEdit;
    mField->setObjectName("mTryField"_L1);
    mField->setAccessibleName(localizedText("lkeyTryField"));
    mField->setAccessibleDescription(localizedText("lkeyTryFieldTip"));
    mField->setToolTip(localizedText("lkeyTryFieldTip"));
    mField->setMaximumBlockCount(mostLines);
    mField->installEventFilter(this);
    mFieldLabel->setBuddy(mField);
    setLines(mField, fieldLines);
    makeButton(mClose, "mTryClose", "lkeyClose");
    auto *closing = new QHBoxLayout;
    closing->addStretch();
    closing->addWidget(mClose);

    auto *column = new QVBoxLayout(this);
    column->setSpacing(Spacing::normal);
    column->addWidget(mTitle);
    column->addLayout(row);
    column->addWidget(mOutput);
    column->addWidget(mStatus);
    column->addSpacing(Spacing::normal);
    column->addWidget(mFieldLabel);
    column->addWidget(mField);
    column->addLayout(closing);
    setMinimumWidth(standardWidth);

    // The field comes last: Tab is a key that a macro can have, and leaving the field closes the sheet.
    const QList<QWidget *> order{mRepeat, mStart, mStop, mOutput, mClose, mField};
    for (qsizetype index = 1; index < order.size(); ++index)
        QWidget::setTabOrder(order.at(index - 1), order.at(index));
    connect(mStart, &QPushButton::clicked, this, &MacroTrySheet::start);
    connect(mStop, &QPushButton::clicked, this, &MacroTrySheet::stop);
    connect(mClose, &QPushButton::clicked, this, [this] { endSheet(); });
    setCancelButton(mClose);
    setCloseButton(mClose);
}

void MacroTrySheet::show(QWidget *window, const QString &name)
{
    mTitle->setText(localizedFormat("lkeyTryExplanation", {nameInAlert(name)}));
    mRepeat->selectItemAtIndex(0);
    mOutput->clear();
    mField->clear();
    mStatus->setText(localizedText("lkeyTryReady"));
    showPlaying(false);
    beginSheet(window, [this](int) { stop(); });
    mStart->setFocus();
}

void MacroTrySheet::start()
{
    mOutput->clear();
    mStatus->setText(localizedText("lkeyTryPlaying"));
    showPlaying(true);
    mStop->setFocus();
    Q_EMIT startRequested(KeyMappings::macroRepeatValue(mRepeat->indexOfSelectedItem()));
}

void MacroTrySheet::stop()
{
    if (!mIsPlaying)
        return;
    end(TryEnd::stopped);
    Q_EMIT stopRequested();
}

void MacroTrySheet::play(const QList<TriedKey> &keys)
{
    QStringList lines;
    for (const TriedKey &key : keys.last(std::min<qsizetype>(keys.size(), mostLines)))
        lines += lineOf(key);
    mOutput->appendPlainText(lines.join(u'\n'));
}

void MacroTrySheet::end(TryEnd end)
{
    if (!mIsPlaying)
        return;
    const bool hadFocus = mStop->hasFocus();
    showPlaying(false);
    if (hadFocus)
        mStart->setFocus();
    mStatus->setText(localizedText(textOf(end)));
}

void MacroTrySheet::showPlaying(bool isPlaying)
{
    mIsPlaying = isPlaying;
    mStart->setEnabled(!isPlaying);
    mRepeat->setEnabled(!isPlaying);
    mStop->setEnabled(isPlaying);
}

void MacroTrySheet::keyPressEvent(QKeyEvent *event)
{
    if (mIsPlaying && event->matches(QKeySequence::Cancel))
        stop();
    else
        Sheet::keyPressEvent(event);
}

bool MacroTrySheet::event(QEvent *event)
{
    if (event->type() == QEvent::WindowDeactivate)
        stop();
    return Sheet::event(event);
}

bool MacroTrySheet::eventFilter(QObject *watched, QEvent *event)
{
    // A menu of the field itself is not another place to type.
    const bool leavesField = watched == mField && event->type() == QEvent::FocusOut
                             && static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason;
    // Later: the sheet must not close while the focus moves.
    if (leavesField)
        QMetaObject::invokeMethod(
            this, [this] { endSheet(); }, Qt::QueuedConnection);
    return Sheet::eventFilter(watched, event);
}
