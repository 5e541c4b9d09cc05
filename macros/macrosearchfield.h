// SPDX-License-Identifier: MIT
// The field that searches the list of macros. Main thread only.
#pragma once

#include "platform/searchfield.h"

/// Return steps to the next macro found, Shift+Return to the previous one, and the down arrow goes to the list. Escape
/// clears the field; an empty field leaves Escape to the window.
class MacroSearchField : public SearchField
{
    Q_OBJECT

public:
    explicit MacroSearchField(QWidget *parent = nullptr);

    /// Whether `name` has all words of the search, in any letter case. Without a word, every name has.
    [[nodiscard]] bool fits(const QString &name) const;
    [[nodiscard]] bool isSearching() const;
    /// Says how many macros fit, or that none does. Nothing while there is no search.
    void setResult(int count);
    /// Moves the focus to the field and selects its text.
    void beginSearch();

Q_SIGNALS:
    void stepRequested(int step); ///< 1 or -1
    void listRequested();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] bool takes(const QKeyEvent &event) const;
};
