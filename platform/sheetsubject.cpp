// SPDX-License-Identifier: MIT
#include "platform/sheetsubject.h"

#include "platform/sheet.h"

#include <utility>

void SheetSubject::note(QDialog *dialog, const QVariant &subject)
{
    mDialog = dialog;
    mSubject = subject;
}

void SheetSubject::endUnless(const QVariant &subject)
{
    if (mSubject.isValid() && subject != mSubject)
        end();
}

void SheetSubject::end()
{
    if (!mDialog)
        return;
    // Cleared first: ending the dialog may call this function again.
    const QPointer<QDialog> dialog = std::exchange(mDialog, nullptr);
    if (auto *sheet = qobject_cast<Sheet *>(dialog)) {
        if (sheet->isUp())
            sheet->reject();
    } else if (!dialog->isHidden()) {
        dialog->done(outdatedReturn);
    }
}
