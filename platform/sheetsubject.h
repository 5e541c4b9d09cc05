// SPDX-License-Identifier: MIT
// What the dialog that a tab has up is about, so that it goes when its answer would reach something else. Each tab's
// controller owns one for each kind of thing that its dialogs are about. Main thread only.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QVariant>

/// The commands go to what is selected when the user answers. The keyboard, another client or the application in front
/// may have selected something else by then.
class SheetSubject
{
public:
    /// The code that a dialog other than a Sheet finishes with when it was about something else: not OK nor Cancel.
    static constexpr int outdatedReturn = 2;

    /// `dialog`, which is up, is about `subject`; about nothing that is there already, where that is invalid. An
    /// earlier one is forgotten.
    void note(QDialog *dialog, const QVariant &subject = {});

    /// To be called whenever what the answer would reach may have changed; `subject` is what that is now. Ends the
    /// dialog if it is still up and about anything else: a Sheet, which an alert is too, by its cancel button, any
    /// other dialog with outdatedReturn.
    void endUnless(const QVariant &subject);

    /// To be called when no answer can reach anything. Ends the dialog in the same way.
    void end();

private:
    QPointer<QDialog> mDialog;
    QVariant mSubject;
};
