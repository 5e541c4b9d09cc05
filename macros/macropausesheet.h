// SPDX-License-Identifier: MIT
// The sheet that changes the pauses before all selected events. Owned by the macros tab; main thread only.
#pragma once

#include "platform/sheet.h"

class NumberOnlyTextField;
class QLabel;
class QPushButton;

class MacroPauseSheet : public Sheet
{
    Q_OBJECT

public:
    enum class Change {
        set,   ///< the number is the new pause in milliseconds
        scale, ///< the number is the new length in percent of the present one
    };

    explicit MacroPauseSheet(QWidget *parent = nullptr);

    /// Comes up on `window` with an empty field, for the pauses before `eventCount` events.
    void ask(QWidget *window, Change change, int eventCount);

Q_SIGNALS:
    /// The user chose OK; the sheet has ended. `number` is 0 or more.
    void changeRequested(MacroPauseSheet::Change change, int number);

private:
    Change mChange = Change::set;
    QLabel *mLabel;
    NumberOnlyTextField *mNumber;
    QLabel *mHint;
    QPushButton *mCancel;
    QPushButton *mOK;
};
