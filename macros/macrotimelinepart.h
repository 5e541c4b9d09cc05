// SPDX-License-Identifier: MIT
// The timeline with everything around it: its heading, the zoom buttons, and the notice of keys that stay down. Shows
// the lines of an event list; the tab that owns it carries out what the user does. Main thread only.
#pragma once

#include <QStringList>
#include <QVariant>
#include <QWidget>

class MacroTimelineView;
class QAbstractButton;
class QLabel;
class QPushButton;

class MacroTimelinePart : public QWidget
{
    Q_OBJECT

public:
    explicit MacroTimelinePart(QWidget *parent = nullptr);

    [[nodiscard]] MacroTimelineView *view() const { return mView; }
    /// The controls that take the focus, in the order of their places.
    [[nodiscard]] QList<QWidget *> controls() const;
    /// True if these lines of this macro were shown last, and from these events if the lines do not distinguish all
    /// keys. `macro` is any value that names it.
    [[nodiscard]] bool shows(const QVariant &macro, const QStringList &lines, const QVariantMap &record) const;
    /// Shows lines of an event list; the events of `record` are as for MacroTimeline::ofLines(). Another macro is shown
    /// as a whole.
    void showEvents(const QVariant &macro, const QStringList &lines, const QVariantMap &record);
    /// During a recording, the user watches the events come: no key counts as left down yet.
    void setRecording(bool isRecording);

Q_SIGNALS:
    /// The user wants the releases of the keys that are left down.
    void releasesWanted();

private:
    QAbstractButton *addButton(const char *name, const QIcon &icon, const char *tipKey,
                               void (MacroTimelineView::*zoom)());
    void showNotice();

    MacroTimelineView *mView = nullptr;
    QLabel *mTotal = nullptr;
    QList<QWidget *> mZoomButtons;
    QLabel *mNotice = nullptr;
    QPushButton *mRelease = nullptr;
    QVariant mMacro;
    QStringList mLines;
    QVariant mSequence; ///< of the record
    bool mIsRecording = false;
};
