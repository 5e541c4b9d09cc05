// SPDX-License-Identifier: MIT
// The part of the header that says what to do without a keyboard or without its service, and offers it. It is empty
// otherwise. Owned by the window; main thread only.
#pragma once

#include "app/statuswords.h"

#include <QWidget>

class QLabel;
class QPushButton;

class ConnectionNotice : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionNotice(QWidget *parent = nullptr);

    void show(const StatusState &state);

Q_SIGNALS:
    void keyboardsRequested(); ///< the user wants to choose a keyboard
    void helpRequested();      ///< the user wants to read what to do about the service
    void shown();              ///< or hidden again

private:
    QLabel *mPicture = nullptr;
    QLabel *mText = nullptr;
    QPushButton *mKeyboards = nullptr;
    QPushButton *mHelp = nullptr;
};
