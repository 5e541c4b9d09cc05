// SPDX-License-Identifier: MIT
#include "macros/numberonlytextfield.h"

#include <QApplication>
#include <QLocale>
#include <QValidator>

/// Every edit passes here (keys, paste, drop, input methods), told as the whole text before and after it.
class NumberOnlyTextField::Vetting : public QValidator
{
public:
    explicit Vetting(NumberOnlyTextField *field) : QValidator(field), mField(field) {}

    State validate(QString &input, int &) const override
    {
        const QString before = mField->text();
        if (input == before)
            return Acceptable;
        qsizetype start = 0;
        while (start < qMin(before.size(), input.size()) && before.at(start) == input.at(start))
            ++start;
        qsizetype tail = 0;
        while (tail < qMin(before.size(), input.size()) - start && before.at(before.size() - 1 - tail) == input.at(input.size() - 1 - tail))
            ++tail;
        const QString replacement = input.sliced(start, input.size() - start - tail);
        if (mField->textViewShouldChangeTextInRangeReplacementString(int(start), int(before.size() - start - tail), replacement))
            return Acceptable;
        QApplication::beep();
        emit mField->editRefused();
        return Invalid;
    }

private:
    NumberOnlyTextField *mField;
};

NumberOnlyTextField::NumberOnlyTextField(QWidget *parent) : QLineEdit(parent)
{
    setValidator(new Vetting(this));
}

bool NumberOnlyTextField::textViewShouldChangeTextInRangeReplacementString(int position, int length,
                                                                           const QString &replacement) const
{
    if (position >= maximumLength)
        return false;
    if (replacement.isEmpty())
        return true;
    if (text().size() - length + replacement.size() > maximumLength)
        return false;
    bool isNumber = false;
    QLocale().toDouble(replacement, &isNumber);
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
