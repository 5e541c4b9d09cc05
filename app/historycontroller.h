// SPDX-License-Identifier: MIT
// Undo and redo in the window: the two shortcuts, the button that names the change, and the way to what was undone.
// Owned by the hub; main thread only.
#pragma once

#include "app/historystatus.h"

#include <QPointer>
#include <QVariantList>

#include <algorithm>
#include <optional>

class HistorySheet;
class KeyboardMainController;
struct StatusReport;
class QShortcut;
class QToolButton;

/// Takes back only what the window shows at the time: while a sheet, an editor or a recording has the keys, there is no
/// shortcut, and during a recording the button is disabled.
class HistoryController : public QObject
{
    Q_OBJECT

public:
    /// `hub` must outlive this.
    HistoryController(KeyboardMainController &hub, const ServiceStatus &service);

    /// Adds the shortcuts to `window`, and connects the buttons. Must be called once.
    void setOutlets(QWidget *window, QToolButton *undoButton, QToolButton *historyButton);
    /// Follows the daemon from now on. Must be called once.
    void start();
    /// Must be called when the hub enables or disables its controls.
    void setControlsState(bool isEnabled);
    /// Must be called when a change has begun or ended that lets the keyboard's keys reach the window.
    void captureChanged() { showState(); }
    /// Offers no undo of the changes up to the entry `id`.
    void passOver(uint id) { mLatestId = std::max(id, mLatestId.value_or(0)); }
    /// Must be called when the hub has read the document again, after a change by another client or by this.
    void documentFollowed();

private:
    /// The settings before a change that is on its way, or that is done and not yet in the window.
    struct Step
    {
        QVariantMap entry;
        int activeProfile = 0;
        QVariantMap profile;
        QVariantList macros;
        bool isDone = false;
        bool isFollowed = false;
    };

    enum class Way { undo, redo, restore };

    void undo(const std::optional<QVariantMap> &entry);
    void redo();
    void restore(const QVariantMap &entry, uint newest);
    void clear();
    void openSheet();
    /// Reports in the status line and in an open sheet.
    void report(const StatusReport &report);
    void begin(const QVariantMap &entry);
    void ended(const HistoryStatus::Outcome &outcome, Way way);
    void revealIfComplete();
    void reveal(const Step &step);
    [[nodiscard]] int rowOfMacro(const Step &step, const QVariantMap &change) const;
    /// Says in the status line that the user's latest change can be undone, if nothing else takes it back.
    void offerUndo();
    [[nodiscard]] bool canAct() const;
    void showState();

    KeyboardMainController &mHub;
    HistoryStatus mHistory;
    QPointer<QWidget> mWindow;
    QPointer<QToolButton> mUndoButton;
    QPointer<HistorySheet> mSheet; ///< made when it is first opened; the window owns it
    QShortcut *mUndoShortcut = nullptr;
    QShortcut *mRedoShortcut = nullptr;
    std::optional<QVariantMap> mPressedEntry; ///< the button's entry when it was pressed
    std::optional<Step> mStep;
    std::optional<uint> mLatestId; ///< of the next entries so far; absent while they are unknown
    bool mAreControlsOn = false;
};
