// SPDX-License-Identifier: MIT
// The card under the keyboard picture: the selected key, what it does, and the controls that change it. The keys tab
// makes its content. Main thread only.
#pragma once

#include "keys/keygeometry.h"
#include "keys/keymark.h"
#include "macros/macrotimeline.h"

#include <QString>
#include <QWidget>

class MacroPreview;
class QGridLayout;
class QLabel;
class QPushButton;

/// The texts of a card, all of them plain.
struct KeyCardContent
{
    const KeyShape *shape = nullptr; ///< of the key's cap; null: no key is selected
    QString legend = {};             ///< of the cap, in the user's keyboard layout
    QString upperLegend = {};
    KeyMark mark = KeyMark::none;
    qsizetype keys = 1;       ///< selected keys; a card of several shows a pile of caps
    QString name = {};        ///< of the key, or of several keys
    QString words = {};       ///< what the key does
    QString detail = {};      ///< what belongs to the assignment; may be empty
    QString problem = {};     ///< why the key does nothing; replaces the detail
    QString program = {};     ///< path of the application whose icon the card shows; else the card shows the mark
    MacroTimeline macro = {}; ///< the preview
    bool offersRecording = false;
};

/// Assistive tools find the card as a group. Its name is that of the key, its description all that it shows.
class KeyCard : public QWidget
{
    Q_OBJECT

public:
    explicit KeyCard(QWidget *parent = nullptr);

    /// Adds a row with `caption` and `control` at the trailing side.
    void addControl(QLabel *caption, QWidget *control);
    void show(const KeyCardContent &content);
    [[nodiscard]] const KeyCardContent &content() const { return mContent; }

Q_SIGNALS:
    void recordingRequested(); ///< the user wants to record the macro, which has no events

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    class Cap;
    class Picture;
    class ElidedLabel;

    [[nodiscard]] QWidget *buildTexts();
    void setHeight();
    void describe();

    KeyCardContent mContent;
    Cap *mCap = nullptr;
    Picture *mPicture = nullptr;
    QLabel *mName = nullptr;
    ElidedLabel *mWords = nullptr;
    MacroPreview *mPreview = nullptr;
    QLabel *mDetail = nullptr;
    QLabel *mProblem = nullptr;
    QPushButton *mRecord = nullptr;
    QGridLayout *mControls = nullptr;
    QWidget *mLastControl = nullptr; ///< until the card is first shown
};
