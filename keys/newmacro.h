// SPDX-License-Identifier: MIT
// Makes a macro for a key in one go: adds it, records it, and lets the user name it. Owned by the keys tab. Main thread
// only.
#pragma once

#include "base/capturesource.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>

class DistributedNotificationCenter;
class KeysDelegate;
class NewMacroSheet;
class QWidget;

/// The macro exists from the beginning, because the daemon records into a macro that it has. Every way to cancel
/// deletes it again. If the deletion fails, which the status line reports, an unassigned macro stays in the list.
/// Where something else than the user ends the sheet, a recorded macro stays, and the status line reports it. All
/// changes of one sheet are one entry of the history; the deletion of recorded events is one of its own.
class NewMacro : public QObject
{
    Q_OBJECT

public:
    explicit NewMacro(QObject *parent);

    /// Neither is owned.
    void setDelegate(KeysDelegate *delegate) { mDelegate = delegate; }
    void observe(DistributedNotificationCenter &center);

    /// Adds the macro, opens the sheet and starts the recording. `key` names the key, `profile` identifies the profile
    /// in which it gets the macro. `parent` owns the sheet, `window` has it. Opens no sheet if the daemon has not
    /// accepted the macro; the status line has the reason.
    void begin(QWidget *parent, QWidget *window, const QString &key, const QVariant &profile);
    /// The macros of the document; ends the sheet when the new one is gone.
    void setMacros(const QVariantList &macros);
    /// Ends the sheet and keeps what was recorded if `profile`, the active one, is not that of begin().
    void keepUnless(const QVariant &profile);
    /// Ends a running recording and keeps the sheet.
    void stopRunningRecording();
    /// Ends the sheet, as if the user had clicked Stop and closed it, and keeps what was recorded.
    void keep();
    /// A recording that a removed keyboard or an ended daemon has taken along is over.
    void keyboardCameBack();
    /// Without the keyboard, and with it the daemon's capture, ends the sheet and keeps what was recorded.
    void setKeyboardAttached(bool isAttached);

    /// The widget that takes the keys of a recording; null while none runs.
    [[nodiscard]] QWidget *captureArea() const;
    void showCaptureSource(const CaptureSource &source);

Q_SIGNALS:
    void captureAreaChanged();
    void assigned(int macroRow); ///< the user has named the macro; the key gets it

private:
    enum class Step { closed, recording, recorded };

    [[nodiscard]] bool isUp() const { return mStep != Step::closed; }
    [[nodiscard]] int row() const; ///< of the new macro; -1 if it is gone
    [[nodiscard]] QVariantList storedEvents() const;
    void setStep(Step step);
    void startRecording();
    void recordButton(int button, bool isDown);
    void stopRecording();
    void recordClicked();
    void giveTypedName();
    void assign();
    void cancel();
    void close();
    void takeEvents(const QVariantMap &userInfo);

    KeysDelegate *mDelegate = nullptr;
    QPointer<NewMacroSheet> mSheet;
    QVariantList mMacros;
    QVariant mMacroId; ///< of the new macro
    QVariant mProfile; ///< of begin()
    CaptureSource mSource;
    Step mStep = Step::closed;
    bool mIsAttached = true;
};
