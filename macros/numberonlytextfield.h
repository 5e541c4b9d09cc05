// SPDX-License-Identifier: MIT
// The entry field of a delay. It accepts at most six characters that form a number, and beeps at anything else. Owned
// by the macros tab. Main thread only.
#pragma once

#include <QLineEdit>

class KeyboardMacrosController;

class NumberOnlyTextField : public QLineEdit
{
    Q_OBJECT

public:
    static constexpr int maximumLength = 6;

    explicit NumberOnlyTextField(QWidget *parent = nullptr);

    void setKeyboardMacrosController(KeyboardMacrosController *controller) { mKeyboardMacrosController = controller; }
    [[nodiscard]] KeyboardMacrosController *keyboardMacrosController() const { return mKeyboardMacrosController; }

    /// True if `replacement` may replace the `length` characters at `position`.
    [[nodiscard]] bool textViewShouldChangeTextInRangeReplacementString(int position, int length,
                                                                        const QString &replacement) const;
    /// Returns the text as a whole number, read up to the first character that does not belong to one; 0 without
    /// digits.
    [[nodiscard]] int integerValue() const;

Q_SIGNALS:
    /// An edit was refused, with a beep.
    void editRefused();

private:
    class Vetting;

    [[nodiscard]] bool shouldChange(const QString &before, int position, int length, const QString &replacement) const;

    KeyboardMacrosController *mKeyboardMacrosController = nullptr;
};
