// SPDX-License-Identifier: MIT
// The sheet that inserts a press, a release, a tap, a mouse click or a pause into the selected macro. Owned by the
// macros tab; main thread only.
#pragma once

#include "base/capturesource.h"
#include "macros/macroinsertion.h"
#include "platform/sheet.h"

#include <QVariantList>

class NumberOnlyTextField;
class PopUpButton;
class QFormLayout;
class QLabel;
class QPushButton;
class RadioGroup;

/// Keeps its choices for the next time.
class MacroInsertSheet : public Sheet
{
    Q_OBJECT

public:
    explicit MacroInsertSheet(QWidget *parent = nullptr);

    /// Comes up on `window` for a macro with these events (event dictionaries). `capacity`: as MacroRecord::capacity().
    /// `selected`: the indexes of the selected events, ascending; without one, the new events come at the end.
    void ask(QWidget *window, const QVariantList &events, int capacity, const QList<int> &selected);
    /// Chooses this key of the keyboard page, also one that the list does not have.
    void chooseKey(int code);

    // Choosing the key by pressing it
    void showSource(const CaptureSource &source);
    void showCapturing(bool isCapturing);
    /// The part that has the focus, and takes typed keys, during a capture.
    [[nodiscard]] QWidget *captureArea() const;

Q_SIGNALS:
    /// The user chose Insert; the sheet has ended. `outcome` has the events to store and the rows to select.
    void insertRequested(const MacroInsertion::Outcome &outcome);
    /// A capture must begin or end.
    void captureRequested(bool begins);

private:
    enum Place { beforeSelected, afterSelected }; // rows of mPlace

    void build();
    void layOut();
    void fillKeys();
    [[nodiscard]] MacroInsertion insertion() const;
    [[nodiscard]] Result<MacroInsertion::Outcome, MacroInsertion::Problem> outcome() const;
    [[nodiscard]] int place() const; ///< the index of the event before which the new ones come
    void showKind();
    void showOutcome();
    void insert();

    QVariantList mEvents; ///< of the macro
    int mCapacity = 0;    ///< how many it may have
    QList<int> mSelected;
    QList<int> mKeyCodes; ///< of the items of mKey
    int mKeyCode = 0;     ///< the chosen key
    CaptureSource mSource;

    QFormLayout *mForm = nullptr;
    PopUpButton *mKind = nullptr; ///< its items are in the order of MacroInsertion::Kind
    PopUpButton *mKey = nullptr;
    QPushButton *mPressKey = nullptr;
    QWidget *mKeyRow = nullptr;
    QLabel *mCaptureHint = nullptr;
    PopUpButton *mButton = nullptr; ///< of the mouse
    NumberOnlyTextField *mPause = nullptr;
    QLabel *mPauseLabel = nullptr;
    NumberOnlyTextField *mHold = nullptr;
    RadioGroup *mPlace = nullptr;
    QLabel *mOutcome = nullptr;
    QPushButton *mCancel = nullptr;
    QPushButton *mInsert = nullptr;
};
