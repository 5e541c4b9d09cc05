// SPDX-License-Identifier: MIT
// The search field of the keys tab with its result and the buttons that step through the keys found. Main thread only.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

/// Return steps to the next key found, Shift+Return to the previous one. Escape clears the field.
class KeySearchBar : public QWidget
{
    Q_OBJECT

public:
    explicit KeySearchBar(QWidget *parent = nullptr);

    [[nodiscard]] QString query() const;
    /// Shows how many keys fit, or that none does; nothing while the field is empty.
    void setResult(qsizetype keyCount);
    /// Moves the focus to the field and selects its text.
    void beginSearch();

Q_SIGNALS:
    void queryChanged();
    void nextRequested();
    void previousRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QToolButton *addStep(const char *objectName, Qt::ArrowType arrow, const char *textKey);

    QLineEdit *mField;
    QLabel *mResult;
    QToolButton *mPrevious;
    QToolButton *mNext;
};
