// SPDX-License-Identifier: MIT
// Mnemonics: the letters with which Alt reaches the controls of a window. They are given by the program, because the
// texts of six languages cannot be kept free of conflicts by hand. Main thread only.
#pragma once

#include <QString>

class QAbstractButton;
class QWidget;

namespace Mnemonics {

/// Gives a letter to each button with a text, each label of a control and each tab in `window`. In every state, the
/// letters of all controls that can be visible together differ: those outside of the tabs, and those of one page. A
/// letter once given stays. A text without a free Latin letter gets one in parentheses, as is usual in Chinese and
/// Japanese. Does not enter other windows.
void assign(QWidget *window);

/// Leaves `button` without a letter: it does nothing, and a window has few letters.
void exclude(QAbstractButton *button);

/// Sets the text of `button`. If the button had a letter, it gets one again.
void setText(QAbstractButton *button, const QString &text);

/// Returns `text` as the text of a button or menu entry that shows it unchanged: an ampersand marks no letter in it.
[[nodiscard]] QString escaped(QString text);

/// Returns `text` without its mnemonic.
[[nodiscard]] QString plainText(const QString &text);

} // namespace Mnemonics
