// SPDX-License-Identifier: MIT
// A sheet: a window-modal dialog that belongs to one window and never blocks the caller.
#pragma once

#include <QDialog>
#include <QPointer>

#include <functional>

class QAbstractButton;

/// Main thread only. A sheet that is up when it is begun again is simply shown again.
class Sheet : public QDialog
{
    Q_OBJECT

public:
    using DidEnd = std::function<void(int returnCode)>;

    /// Where a sheet is shown: as a window on its window, or as a pane in the middle of it, which is painted with it. A
    /// pane keeps all clicks and keys from the rest of the window.
    enum class Place { ownWindow, insideWindow };

    explicit Sheet(QWidget *parent = nullptr, Place place = Place::ownWindow);

    /// Shows the sheet on `window`, as soon as that is shown itself; `didEnd` runs once, when the sheet ends.
    void beginSheet(QWidget *window, DidEnd didEnd = {});

    /// Ends the sheet with `returnCode` and hides it. Does nothing when it is not up.
    void endSheet(int returnCode = 0);

    /// Takes the sheet off the screen; it has ended only after endSheet().
    void orderOut();

    /// The button that Escape and the sheet's close button press. Without one they do nothing.
    void setCancelButton(QAbstractButton *button) { mCancelButton = button; }

    /// The button that the sheet's close button presses, where Escape is to do nothing.
    void setCloseButton(QAbstractButton *button) { mCloseButton = button; }

    [[nodiscard]] bool isUp() const { return mIsUp; }

    void open() override;
    void reject() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    [[nodiscard]] bool isInside() const { return mPlace == Place::insideWindow; }
    void openInside();
    void moveToMiddle();
    [[nodiscard]] bool isKeptFrom(const QObject *receiver) const;

    Place mPlace;
    QPointer<QWidget> mFocusBefore; ///< of the window, while a pane is up
    DidEnd mDidEnd;
    QAbstractButton *mCancelButton = nullptr;
    QAbstractButton *mCloseButton = nullptr;
    bool mIsUp = false;
    bool mIsWaitingForWindow = false; ///< up, and to be shown with its window
};

/// One or two buttons below a title and a description, with the desktop's warning picture.
struct AlertTexts
{
    QString title;
    QString description;
    QString defaultButton;
    QString alternativeButton; ///< empty: the alert has one button
};

/// `name`, which may be of any length, as a part of an alert's title: on one line (base/visibletext.h), its middle left
/// out where it is longer than usual names.
[[nodiscard]] QString nameInAlert(const QString &name);

/// Return codes of an alert's buttons.
inline constexpr int alertFirstButtonReturn = 1000;
inline constexpr int alertSecondButtonReturn = 1001;

/// Shows a warning alert as a sheet on `window` and returns at once; the alert deletes itself when dismissed.
/// Its object name is "alert", its buttons' are "alertDefaultButton" and "alertAlternativeButton".
Sheet *showAlert(const AlertTexts &texts, QWidget *window, Sheet::DidEnd didEnd = {});
