// SPDX-License-Identifier: MIT
// A field for words to search for, with a placeholder that can be read on every desktop. Main thread only.
#pragma once

#include <QLineEdit>

/// Some desktops give a dark palette without a colour for placeholders. Theirs is then the light palette's, which is
/// black; the field replaces such a colour by a faint one of its text.
class SearchField : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchField(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void keepPlaceholderReadable();
};
