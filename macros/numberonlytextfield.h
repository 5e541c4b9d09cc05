// SPDX-License-Identifier: MIT
// The entry field of a delay. It accepts at most six characters that form a number, and beeps at anything else. After a
// refused "," or ".", it also refuses the digits typed on: "12,5" leaves 12 and never becomes 125. Owned by the macros
// tab. Main thread only.
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

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    class Vetting;

    /// Continues with the next text, after the user has done something else than typing on.
    void beginText() { mIsFractionTyped = false; }

    [[nodiscard]] bool shouldChange(const QString &before, int position, int length, const QString &replacement) const;

    KeyboardMacrosController *mKeyboardMacrosController = nullptr;
    bool mIsFractionTyped = false; ///< a separator was refused: the digits typed next are not part of the whole number
};
