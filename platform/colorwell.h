// SPDX-License-Identifier: MIT
// A button that shows a colour and lets the user pick another one in a sheet, which never blocks. Main thread only.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPointer>

class QColorDialog;
class QDialog;

class ColorWell : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ColorWell(QWidget *parent = nullptr);

    [[nodiscard]] QColor color() const { return mColor; }
    /// Shows `color` without emitting a signal.
    void setColor(const QColor &color);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user chose `color`, which color() now returns.
    void colorPicked(const QColor &color);
    /// `dialog` has opened for the user to choose a colour; it deletes itself.
    void dialogOpened(QDialog *dialog);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void openDialog();

    QColor mColor = Qt::white;
    QPointer<QColorDialog> mDialog;
};
