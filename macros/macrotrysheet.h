// SPDX-License-Identifier: MIT
// The sheet on which the user tries a macro: it shows what the computer would receive, as it comes. Its text field is
// for the real key. Owned by the macros tab; main thread only.
#pragma once

#include "macros/macrotry.h"
#include "platform/sheet.h"

class PopUpButton;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class StatusLine;

/// Escape stops a running try at once; without one, it closes the sheet. The sheet closes when the text field loses the
/// focus: a real macro must not go on typing elsewhere. A try ends when the window stops being active.
class MacroTrySheet : public Sheet
{
    Q_OBJECT

public:
    MacroTrySheet();

    /// Shows the sheet for the macro `name`.
    void show(QWidget *window, const QString &name);
    [[nodiscard]] bool isPlaying() const { return mIsPlaying; }

    /// The output of the running try.
    void play(const QList<TriedKey> &keys);
    void end(TryEnd end);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The user starts a try. `repeat`: as "param2" of a key that plays the macro.
    void startRequested(int repeat);
    /// The try must stop: the user has stopped it, or the sheet has closed.
    void stopRequested();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    void start();
    void stop();
    void showPlaying(bool isPlaying);

    QLabel *mTitle = nullptr;
    PopUpButton *mRepeat = nullptr;
    QPushButton *mStart = nullptr;
    QPushButton *mStop = nullptr;
    QPushButton *mClose = nullptr;
    QPlainTextEdit *mOutput = nullptr;
    StatusLine *mStatus = nullptr;
    QLabel *mFieldLabel = nullptr;
    QPlainTextEdit *mField = nullptr;
    bool mIsPlaying = false;
};
