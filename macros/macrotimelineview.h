// SPDX-License-Identifier: MIT
// The timeline of a macro: a lane for each key and button, with a bar from each press to its release. The user selects
// events in it and changes pauses. Keeps a copy of the macro's timeline and reports what the user does; its owner
// carries it out. Main thread only.
#pragma once

#include "macros/macrotimeline.h"
#include "macros/macrotimelinelayout.h"

#include <QAbstractScrollArea>

#include <optional>

/// Keys: Left, Right, Home and End select an event, + and − zoom, 0 shows the whole macro. Alt+Left and Alt+Right
/// change the pause before the selected event in steps of 10 ms; the change ends when Alt is released. The mouse
/// changes the pause before an event by dragging the edge of its bar. A change of a pause is reported once, at its end.
/// Escape, other events, and a view that is disabled or hidden discard it.
class MacroTimelineView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    static constexpr int pauseStepMs = 10;
    static constexpr int longestPauseMs = 999'999; ///< as in the entry field of a delay

    explicit MacroTimelineView(QWidget *parent = nullptr);
    ~MacroTimelineView() override;

    /// Shows the events of `lines`, the rows of an event list. `events` are as for MacroTimeline::ofLines(). The scale
    /// stays, unless the whole macro was shown. Discards a change of a pause; the selection and the playhead go.
    void showEvents(const QStringList &lines, const QVariantList &events);
    /// Shows the whole macro, also after each change of its events or of the size, until the user zooms.
    void fit();
    void zoomIn();
    void zoomOut();
    /// Marks the event or the pause of a row of the event list, and scrolls to it; -1 for none.
    void selectRow(int row);
    /// Whether the user can change pauses; true by default.
    void setEditable(bool isEditable);
    /// Draws in the colours of an enabled view, even while it is disabled: the user watches a recording.
    void setWatched(bool isWatched);

    /// Marks the event, by its index, that is played; scrolls to it.
    void setPlayhead(int event);
    void clearPlayhead();

    // Queries
    [[nodiscard]] const MacroTimeline &timeline() const { return mTimeline; }
    [[nodiscard]] const MacroTimelineLayout &timelineLayout() const { return mLayout; }
    [[nodiscard]] int selectedRow() const { return mSelectedRow; }
    [[nodiscard]] int selectedEvent() const; ///< -1 for none
    [[nodiscard]] int playedEvent() const { return mPlayedEvent; }
    /// True while the user changes a pause.
    [[nodiscard]] bool isChangingPause() const { return mChange.has_value(); }
    /// Returns the names of the lanes; the loaded string table has that of a key without a name.
    [[nodiscard]] QStringList laneLabels() const { return mLaneLabels; }
    /// Names the keys and buttons that are down at the end; empty if there are none.
    [[nodiscard]] QString leftDownText() const;
    /// Returns an event in words: its line, its time, the pause before it.
    [[nodiscard]] QString eventText(int event) const;
    /// Returns how many events there are, how long they take, and the keys.
    [[nodiscard]] QString summary() const;
    /// Returns the place of an event in the viewport, in its lane; in all lanes if it has no bar.
    [[nodiscard]] QRect eventRect(int event) const;
    [[nodiscard]] QRect laneRect(int lane) const;
    [[nodiscard]] QString scaleText() const; ///< the labels of the time scale in view
    /// Returns the event at a place of the viewport, on its bar or near its edge; -1 for none.
    [[nodiscard]] int eventAt(const QPoint &place) const { return hitAt(place).event; }
    /// Returns the pause that the user is changing, with its unit; empty if he changes none.
    [[nodiscard]] QString changedPause() const;
    /// Selects an event as the user does: with rowChosen().
    void chooseEvent(int event);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user selected a row of the event list.
    void rowChosen(int row);
    /// The user gave the delay of this row another value.
    void pauseChosen(int row, int delayMs);

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Hit
    {
        int event = -1; ///< -1 for none
        bool isEdge = false;
    };
    /// A change of the pause before an event, from its beginning to its end.
    struct Change
    {
        int event = 0;
        int delayMs = 0;
        bool isDrag = false; ///< with the mouse; otherwise with the keys
        int grabbedX = 0;    ///< of a drag
        bool hasMoved = false;
    };

    [[nodiscard]] Hit hitAt(const QPoint &place) const;
    [[nodiscard]] bool canChangePause(int event) const;
    void setScale(double pixelsPerMs, double anchorX);
    [[nodiscard]] double anchor() const;
    void updateLayout();
    void showEventInView(int event);
    void stepSelection(int key);
    void stepPause(int steps);
    void setChangedDelay(int delayMs);
    void finishChange();
    void discardChange();
    void updateCursor(const QPoint &place);

    MacroTimeline mTimeline;
    MacroTimelineLayout mLayout;
    QStringList mLines;
    QStringList mLaneLabels;
    int mSelectedRow = -1;
    int mPlayedEvent = -1;
    bool mIsFitting = true; ///< the whole macro is shown
    bool mIsEditable = true;
    bool mIsWatched = false;
    std::optional<Change> mChange;
};
