// SPDX-License-Identifier: MIT
// Trying the selected macro, and the mouse buttons of a recording.
#include "macros/keyboardmacroscontroller.h"

#include "macros/macrodelegate.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelinepart.h"
#include "macros/macrotimelineview.h"
#include "macros/macrotrysheet.h"

#include <QPushButton>

#include <algorithm>

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
        mTimeline->view()->clearPlayhead();
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
    if (!mTryWindow)
        return;
    mTryWindow->play(keys);
    const auto isOfMacro = [](const TriedKey &key) { return key.event >= 0; };
    const auto latest = std::find_if(keys.crbegin(), keys.crend(), isOfMacro);
    if (mTryWindow->isPlaying() && latest != keys.crend())
        mTimeline->view()->setPlayhead(latest->event);
}

void KeyboardMacrosController::endTry(TryEnd end)
{
    if (mTryWindow)
        mTryWindow->end(end);
    mTimeline->view()->clearPlayhead();
}

void KeyboardMacrosController::recordButton(int button, bool isDown)
{
    if (mMacroDelegate)
        mMacroDelegate->recordButton(button, isDown);
}
