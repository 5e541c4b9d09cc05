// SPDX-License-Identifier: MIT
// The drag with which the user moves the selected rows of a table to another place between the rows. Owned by the
// table, which hands the events of the mouse over. Main thread only.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPoint>

#include <functional>
#include <optional>

class QMouseEvent;
class QPainter;
class QTableView;

/// A place is the row before which the dragged rows would come; the number of rows means at the end.
class RowDrag : public QObject
{
    Q_OBJECT

public:
    /// `placeNear` returns the place that a drop at this place would have. The drag does not own `view`.
    RowDrag(QTableView *view, std::function<int(int place)> placeNear);

    /// The mouse was pressed on a row. The drag begins only when it moves on.
    void press(const QPoint &position);
    /// Whether the move belongs to a press on a row. Near the upper and the lower edge, the table then scrolls.
    bool move(const QMouseEvent *event);
    /// Whether the release belongs to a drag, also one that has ended before. `place` is absent unless the user dropped
    /// the rows within the table.
    struct Release
    {
        bool isOfDrag = false;
        std::optional<int> place;
    };
    [[nodiscard]] Release release(const QMouseEvent *event);
    /// Ends the drag; its release drops nothing.
    void cancel();
    [[nodiscard]] bool isDragging() const { return mState == State::dragging; }

    /// Paints the place of the drop into the viewport.
    void paint(QPainter &painter) const;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    enum class State { idle, pressed, dragging, cancelled };

    void follow();
    [[nodiscard]] std::optional<int> placeOfDrop() const;
    [[nodiscard]] int scrollStep() const; ///< in rows; 0 away from the edges
    void stop(State state);

    QTableView *mView;
    std::function<int(int place)> mPlaceNear;
    State mState = State::idle;
    QPoint mStart;
    QPoint mPosition;          ///< of the mouse, in the viewport
    std::optional<int> mPlace; ///< absent outside of the table
    QBasicTimer mScroll;
};
