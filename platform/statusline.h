// SPDX-License-Identifier: MIT
// One line of text at the bottom of a window. A text that is too long is elided and never widens the window; its tool
// tip is then the whole text. Screen readers find it as a status bar, whose name is the whole text. Main thread only.
#pragma once

#include <QString>
#include <QWidget>

class StatusLine : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    [[nodiscard]] const QString &text() const { return mText; }
    /// The text as the user sees it: elided if the line is too short.
    [[nodiscard]] QString shownText() const;
    /// Reports a new text to assistive tools, which read it when the user is idle: the line never takes the focus.
    void setText(const QString &text);

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString mText;
};
