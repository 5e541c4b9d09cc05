// SPDX-License-Identifier: MIT
// A small picture of the keyboard with some of its keys lit. Takes no input; main thread only.
#pragma once

#include <QList>
#include <QWidget>

class KeyMiniature : public QWidget
{
    Q_OBJECT

public:
    explicit KeyMiniature(QWidget *parent = nullptr);

    /// Lights the keys with these codes (USB HID usages of page 7), and no others. Ignores codes without a key. The
    /// accessible name becomes the names of the keys.
    void setLitKeys(const QList<int> &codes);
    [[nodiscard]] const QList<int> &litKeys() const { return mLitKeys; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QList<int> mLitKeys;
};
