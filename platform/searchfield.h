// SPDX-License-Identifier: MIT
// A field for words to search for, with a placeholder that can be read on every desktop. Main thread only.
#pragma once

#include <QLineEdit>

class QKeyEvent;

/// Some desktops give a dark palette without a colour for placeholders. Theirs is then the light palette's, which is
/// black; the field replaces such a colour by a faint one of its text. A field without changes of its own leaves the
/// keys for undo and redo to the window.
class SearchField : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchField(QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] bool leavesToWindow(const QKeyEvent &event) const;
    void keepPlaceholderReadable();
};
