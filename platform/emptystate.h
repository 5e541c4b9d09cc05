// SPDX-License-Identifier: MIT
// Fills an empty part of the window: a symbol, a sentence about the next step, and a button for it. Main thread only.
#pragma once

#include "platform/symbol.h"

#include <QWidget>

class QLabel;
class QPushButton;

class EmptyState : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyState(Symbol symbol, QWidget *parent = nullptr);

    /// The sentence. The caller names the object and sets its text.
    [[nodiscard]] QLabel *label() const { return mLabel; }
    /// Adds a second, quieter sentence.
    void addDetail(const QString &text);
    /// Adds the button for the next step.
    [[nodiscard]] QPushButton *addButton(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    void showSymbol();

    Symbol mSymbol;
    QLabel *mPicture = nullptr;
    QLabel *mLabel = nullptr;
};
