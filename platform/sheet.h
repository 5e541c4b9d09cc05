// SPDX-License-Identifier: MIT
// A sheet: a window-modal dialog that belongs to one window and never blocks the caller.
#pragma once

#include <QDialog>
#include <QPointer>

#include <functional>

class QAbstractButton;
class ScrolledPage;

/// Main thread only. Beginning a sheet that is already up shows it again. Content that is larger than the screen, or
/// for a pane than the window, scrolls.
class Sheet : public QDialog
{
    Q_OBJECT

public:
    using DidEnd = std::function<void(int returnCode)>;

    /// The place of a sheet: a separate window on its window, or a pane in the middle of the window, painted with it. A
    /// pane keeps all clicks and keys from the rest of the window.
    enum class Place { ownWindow, insideWindow };

    explicit Sheet(QWidget *parent = nullptr, Place place = Place::ownWindow);

    /// Shows the sheet on `window` as soon as the window is shown. `didEnd` runs once, when the sheet ends.
    void beginSheet(QWidget *window, DidEnd didEnd = {});

    /// Ends the sheet with `returnCode` and hides it. Does nothing when the sheet is not up.
    void endSheet(int returnCode = 0);

    /// Hides the sheet without ending it; only endSheet() ends it.
    void orderOut();

    /// The button that Escape and the sheet's close button press. Without one they do nothing.
    void setCancelButton(QAbstractButton *button) { mCancelButton = button; }

    /// The button that the sheet's close button presses, for sheets on which Escape does nothing.
    void setCloseButton(QAbstractButton *button) { mCloseButton = button; }

    [[nodiscard]] bool isUp() const { return mIsUp; }

    void open() override;
    void reject() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    [[nodiscard]] bool isInside() const { return mPlace == Place::insideWindow; }
    void openInside();
    void moveToMiddle();
    [[nodiscard]] QSize room() const;
    void fitIntoRoom();
    [[nodiscard]] bool isKeptFrom(const QObject *receiver) const;

    Place mPlace;
    ScrolledPage *mPage = nullptr;  ///< around the content, once that was larger than the room for it
    QPointer<QWidget> mFocusBefore; ///< focus of the window before a pane came up
    DidEnd mDidEnd;
    QAbstractButton *mCancelButton = nullptr;
    QAbstractButton *mCloseButton = nullptr;
    bool mIsUp = false;
    bool mIsWaitingForWindow = false; ///< up, but not shown before its window
};

/// Texts of an alert: one or two buttons below a title and a description, with the desktop's warning icon.
struct AlertTexts
{
    QString title;
    QString description;
    QString defaultButton;
    QString alternativeButton; ///< empty for an alert with one button
    QString detail = {};       ///< what the action affects, below the description; may be empty
};

/// `name`, of any length, for the title of an alert or the text of a sheet: on one line (base/visibletext.h), with the
/// middle of an unusually long name left out.
[[nodiscard]] QString nameInAlert(const QString &name);

/// Return codes of an alert's buttons.
inline constexpr int alertFirstButtonReturn = 1000;
inline constexpr int alertSecondButtonReturn = 1001;

/// Shows a warning alert as a sheet on `window` and returns at once; the alert deletes itself when dismissed. Its
/// object name is "alert"; the names of its buttons are "alertDefaultButton" and "alertAlternativeButton", that of the
/// detail is "alertDetail".
Sheet *showAlert(const AlertTexts &texts, QWidget *window, Sheet::DidEnd didEnd = {});
