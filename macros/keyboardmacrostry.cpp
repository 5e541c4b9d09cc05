// SPDX-License-Identifier: MIT
// Trying the selected macro, and the mouse buttons of a recording.
#include "macros/keyboardmacroscontroller.h"

#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/macrotrysheet.h"

#include <QPushButton>

void KeyboardMacrosController::buildTrySheet()
{
    mTryWindow = new MacroTrySheet;
    connect(mTryWindow, &MacroTrySheet::startRequested, this, [this](int repeat) {
        if (mMacroDelegate && macroRow() >= 0)
            mMacroDelegate->startTryMacroIndex(repeat, macroRow());
    });
    connect(mTryWindow, &MacroTrySheet::stopRequested, this, [this] {
        if (mMacroDelegate)
            mMacroDelegate->stopTry();
    });
}

void KeyboardMacrosController::clickTryMacro(QObject *)
{
    if (!mTryWindow || macroRow() < 0)
        return;
    mTryWindow->show(mMacrosWindow, MacroRecord::name(macroAt(macroRow())));
    mTrySubject.note(mTryWindow, selectedMacro());
}

void KeyboardMacrosController::showTriedKeys(const QList<TriedKey> &keys)
{
    if (mTryWindow)
        mTryWindow->play(keys);
}

void KeyboardMacrosController::endTry(TryEnd end)
{
    if (mTryWindow)
        mTryWindow->end(end);
}

void KeyboardMacrosController::recordButton(int button, bool isDown)
{
    if (mMacroDelegate)
        mMacroDelegate->recordButton(button, isDown);
}
