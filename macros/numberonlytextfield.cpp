// SPDX-License-Identifier: MIT
#include "macros/numberonlytextfield.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QValidator>

#include <algorithm>

/// Checks every edit (keys, paste, drop, input methods), which arrives as the whole text before and after it.
class NumberOnlyTextField::Vetting : public QValidator
{
public:
    explicit Vetting(NumberOnlyTextField *field) : QValidator(field), mField(field)
    {
        connect(field, &QLineEdit::textChanged, this, [this](const QString &text) {
            mAccepted = text;
            mField->beginText();
        });
    }

    State validate(QString &input, int &) const override
    {
        if (input == mAccepted)
            return Acceptable;
        const qsizetype shared = qMin(mAccepted.size(), input.size());
        qsizetype start = 0;
        while (start < shared && mAccepted.at(start) == input.at(start))
            ++start;
        qsizetype tail = 0;
        while (tail < shared - start && mAccepted.at(mAccepted.size() - 1 - tail) == input.at(input.size() - 1 - tail))
            ++tail;
        const auto length = int(mAccepted.size() - start - tail);
        const QString replacement = input.sliced(start, input.size() - start - tail);
        const bool isSeparator = replacement.size() == 1 && !replacement.front().isLetterOrNumber();
        if (!mField->mIsFractionTyped && mField->shouldChange(mAccepted, int(start), length, replacement))
            return Acceptable;
        mField->mIsFractionTyped |= isSeparator;
        QApplication::beep();
        emit mField->editRefused();
        return Invalid;
    }

private:
    NumberOnlyTextField *mField;
    QString mAccepted; // the text before the edit: the field already holds the new one when it asks
};

NumberOnlyTextField::NumberOnlyTextField(QWidget *parent) : QLineEdit(parent)
{
    setValidator(new Vetting(this));
}

void NumberOnlyTextField::focusInEvent(QFocusEvent *event)
{
    beginText();
    QLineEdit::focusInEvent(event);
}

void NumberOnlyTextField::keyPressEvent(QKeyEvent *event)
{
    const QString text = event->text();
    const bool isEditingKey =
        text.isEmpty() || !text.front().isPrint() || event->modifiers().testFlag(Qt::ControlModifier);
    const bool isModifier = event->key() == Qt::Key_Shift || event->key() == Qt::Key_Control;
    if (isEditingKey && !isModifier)
        beginText();
    QLineEdit::keyPressEvent(event);
}

void NumberOnlyTextField::mousePressEvent(QMouseEvent *event)
{
    beginText();
    QLineEdit::mousePressEvent(event);
}

bool NumberOnlyTextField::textViewShouldChangeTextInRangeReplacementString(int position, int length,
                                                                           const QString &replacement) const
{
    return shouldChange(text(), position, length, replacement);
}

bool NumberOnlyTextField::shouldChange(const QString &before, int position, int length,
                                       const QString &replacement) const
{
    if (position >= maximumLength)
        return false;
    if (replacement.isEmpty())
        return true;
    if (before.size() - length + replacement.size() > maximumLength)
        return false;
    // Accepts plain numbers only: a locale also reads "inf", "1e5" and "1,000", of which integerValue() would read too
    // little.
    if (std::ranges::any_of(replacement, [](QChar character) { return character.isLetter(); }))
        return false;
    QLocale locale;
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    bool isNumber = false;
    locale.toDouble(replacement, &isNumber);
    return isNumber;
}

int NumberOnlyTextField::integerValue() const
{
    QString digits;
    for (const QChar character : text().trimmed()) {
        if (!character.isDigit())
            break;
        digits += QChar(u'0' + character.digitValue());
    }
    return digits.toInt();
}
