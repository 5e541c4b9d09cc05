// SPDX-License-Identifier: MIT
// One key of the keyboard picture: a button that is painted as a keycap. Main thread only.
#pragma once

#include "keys/keygeometry.h"
#include "keys/keymark.h"

#include <QAbstractButton>

/// The button of the selected key has the on/off type, every other one the momentary push-in type. A click changes
/// neither type nor state; the controller does. A click on a key that cannot be selected therefore shows nothing. The
/// button is painted again only if its look has changed by the time the event loop runs. The reason is that the
/// controller clears and sets all highlights on every change of the settings.
class KeyButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Type { onOff = 6, momentaryPushIn = 7 };

    /// `shape` must outlive the button.
    KeyButton(const KeyShape &shape, bool isSelectable, QWidget *parent = nullptr);

    [[nodiscard]] const KeyShape &shape() const { return mShape; }
    [[nodiscard]] const QString &legend() const { return mLegend; }
    /// The texts on the key, from top to bottom; empty for a symbol that is drawn.
    [[nodiscard]] QStringList legends() const;
    [[nodiscard]] const QString &upperLegend() const { return mUpperLegend; }
    [[nodiscard]] bool isSelectable() const { return mIsSelectable; }
    [[nodiscard]] Type buttonType() const { return mType; }
    [[nodiscard]] int state() const { return mState; } ///< 1 on, 0 off
    [[nodiscard]] bool isHighlighted() const { return mIsHighlighted; }
    [[nodiscard]] KeyMark mark() const { return mMark; }
    [[nodiscard]] bool isFound() const { return mIsFound; }
    /// True if the key shows `character`, alone or with Shift; letter case does not matter.
    [[nodiscard]] bool shows(const QString &character) const;
    /// True if it is one of several selected keys, but not the one selected last.
    [[nodiscard]] bool isAlsoSelected() const { return mIsAlsoSelected; }
    /// True if it is painted as a selected key. This depends on the on/off type: the key restored at the start, which
    /// was never pressed, is then also shown.
    [[nodiscard]] bool isShownSelected() const { return mType == Type::onOff || mIsAlsoSelected; }
    /// True if it is painted as mapped. The selected key never is, whatever its highlight.
    [[nodiscard]] bool isShownHighlighted() const { return mIsHighlighted && !isShownSelected(); }

    /// Also turns off a momentary button, which has no lasting state.
    void setButtonType(Type type);
    /// Turns an on/off button on or off; a momentary one stays off.
    void setNextState();
    void setAlsoSelected(bool isSelected);
    /// Sets whether the key is shown as mapped while it is not selected.
    void highlight(bool isOn);
    void setMark(KeyMark mark);
    /// Sets the characters on the key; at first, they are those of its shape.
    void setLegend(const QString &legend, const QString &upperLegend);
    /// Sets whether the key is shown as one that the search has found.
    void setFound(bool isFound);
    /// Emits menuRequested() with the lower left corner.
    void requestMenu();
    /// Length of one key unit in pixels.
    void setUnit(qreal pixels);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// An arrow key, Home or End; `isExtending` with Shift.
    void moveRequested(Qt::Key key, bool isExtending);
    void toggleRequested();   ///< the key joins the selected keys or leaves them
    void additionRequested(); ///< the key joins the selected keys
    void characterTyped(const QString &character);
    void menuRequested(const QPoint &position); ///< position on the screen

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void nextCheckState() override {} // a click alone selects nothing
    bool event(QEvent *event) override;

private:
    /// The part of the look that the controller sets. QAbstractButton handles the rest (pressed, hovered, focus).
    struct Look
    {
        bool isSelected = false;
        bool isHighlighted = false;
        KeyMark mark = KeyMark::none;
        bool isFound = false;

        bool operator==(const Look &) const = default;
    };

    [[nodiscard]] Look look() const { return {isShownSelected(), isShownHighlighted(), mMark, mIsFound}; }
    void compareLookLater();

    const KeyShape &mShape;
    QString mLegend;
    QString mUpperLegend;
    bool mIsSelectable;
    Type mType = Type::momentaryPushIn;
    int mState = 0;
    bool mIsHighlighted = false;
    KeyMark mMark = KeyMark::none;
    bool mIsFound = false;
    bool mIsAlsoSelected = false;
    qreal mUnit = 44;
    Look mUpdatedLook; ///< the look at the latest request for a repaint
    bool mIsComparisonPosted = false;
};
