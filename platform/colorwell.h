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
    /// Shows `color`; emits nothing.
    void setColor(const QColor &color);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user chose a colour; color() is it.
    void colorPicked(const QColor &color);
    /// The user is choosing a colour in `dialog`, which deletes itself.
    void dialogOpened(QDialog *dialog);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void openDialog();

    QColor mColor = Qt::white;
    QPointer<QColorDialog> mDialog;
};
