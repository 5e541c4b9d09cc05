// SPDX-License-Identifier: MIT
// Remembers the subject of a tab's dialog and ends the dialog when its answer would affect something else. A tab's
// controller owns one for each kind of subject. Main thread only.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QVariant>

/// The answer to a dialog applies to the selection at that time. By then the keyboard, another client or the
/// application in front may have changed the selection.
class SheetSubject
{
public:
    /// The result of an outdated dialog that is not a Sheet: neither OK nor Cancel.
    static constexpr int outdatedReturn = 2;

    /// Notes that `dialog`, which is up, is about `subject`, and forgets an earlier dialog. An invalid subject means
    /// that the dialog is about nothing that already exists.
    void note(QDialog *dialog, const QVariant &subject = {});

    /// Call this whenever the thing that the answer would affect may have changed; `subject` is what it is now. Ends
    /// the dialog if it is still up and about another subject: a Sheet (including an alert) by its cancel button, any
    /// other dialog with outdatedReturn.
    void endUnless(const QVariant &subject);

    /// Call this when an answer can no longer affect anything. Ends the dialog in the same way.
    void end();

private:
    QPointer<QDialog> mDialog;
    QVariant mSubject;
};
