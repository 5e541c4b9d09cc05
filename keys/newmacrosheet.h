// SPDX-License-Identifier: MIT
// The sheet on which the user records a new macro for a key and names it. NewMacro decides what it shows. Main thread
// only.
#pragma once

#include "base/capturesource.h"
#include "platform/sheet.h"

#include <QStringList>

class ButtonArea;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class NewMacroSheet : public Sheet
{
    Q_OBJECT

public:
    explicit NewMacroSheet(QWidget *parent);

    /// Shows an empty sheet. `key` names the key, `name` is the first name of the macro.
    void begin(QWidget *window, const QString &key, const QString &name);
    void showSource(const CaptureSource &source);
    void showRecording();
    /// Shows the end of a recording: the events (event dictionaries) that the macro has now.
    void showRecorded(const QVariantList &events);
    void addLines(const QStringList &lines);

    /// The name that the user has typed; empty while it is the first one.
    [[nodiscard]] QString typedName() const;
    /// Whether it lists events, stored or just recorded.
    [[nodiscard]] bool hasLines() const;
    /// The part that has the focus, and takes typed keys, during a recording.
    [[nodiscard]] QWidget *recordingArea() const { return mArea; }

Q_SIGNALS:
    void recordClicked();                        ///< also the click on Stop
    void buttonChanged(int number, bool isDown); ///< as of ButtonArea, during a recording
    void assignClicked();
    void cancelClicked();

private:
    void layOut();
    void showHint();

    QWidget *mArea;
    QLabel *mHint;
    QListWidget *mEvents;
    ButtonArea *mButtonArea;
    QPushButton *mRecord;
    QLabel *mNameLabel;
    QLineEdit *mName;
    QPushButton *mCancel;
    QPushButton *mAssign;
    QString mFirstName;
    CaptureSource mSource;
    bool mIsRecording = false;
    bool mHasEvents = false;
};
