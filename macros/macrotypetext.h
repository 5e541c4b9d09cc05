// SPDX-License-Identifier: MIT
// The sheet on which the user writes a text that becomes events of the selected macro. Owned by the macros tab; main
// thread only.
#pragma once

#include "macros/macrorecord.h"
#include "platform/keymap.h"
#include "platform/sheet.h"
#include "typing/typedtext.h"
#include "typing/typingtable.h"

#include <optional>

class DesktopKeymap;
class NumberOnlyTextField;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class RadioGroup;

/// Shows, while the user types, how many events the text needs or what the layout cannot type. Only a text that can be
/// typed as a whole can be inserted. The text stays in the sheet until textWasInserted().
class MacroTypeText : public Sheet
{
    Q_OBJECT

public:
    explicit MacroTypeText(QWidget *parent = nullptr);

    /// Comes up on `window` for a macro with these events (event dictionaries), with the user's layout. `capacity`: as
    /// MacroRecord::capacity(). `selectedEvent` is the index of the selected event; without one, the text can only go
    /// to the end.
    void ask(QWidget *window, const QVariantList &events, int capacity, std::optional<int> selectedEvent);
    /// Uses `keymap` until the desktop's layout changes.
    void showKeymap(const Keymap &keymap);
    /// Clears the text for the next time.
    void textWasInserted();

Q_SIGNALS:
    /// `index` is that of the event before which `typed` must come; the number of events means at the end. `pauseMs`
    /// separates `typed` from its neighbours.
    void insertRequested(const QList<MacroRecord::Event> &typed, int index, int pauseMs);

private:
    enum Place { beforeSelected, atEnd }; // rows of mPlace

    void layOut();
    void followDesktop();
    void showOutcome();
    [[nodiscard]] QString outcomeWords() const;
    [[nodiscard]] bool fits() const;
    [[nodiscard]] QString text() const; ///< as the user has written it
    [[nodiscard]] int place() const;    ///< the index of the event before which the text comes
    void insert();

    DesktopKeymap *mDesktop = nullptr; ///< made when the sheet first comes up
    TypingTable mTable;
    TypedText mTyped;
    QVariantList mEvents; ///< of the macro
    int mCapacity = 0;    ///< of the macro, in events
    std::optional<int> mSelectedEvent;

    QPlainTextEdit *mText;
    QLabel *mLayout;
    NumberOnlyTextField *mPause;
    RadioGroup *mPlace;
    QLabel *mOutcome;
    QPushButton *mCancel;
    QPushButton *mInsert;
};
