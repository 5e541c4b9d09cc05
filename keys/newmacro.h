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
class Sheet;

/// The macro exists from the beginning, because the daemon records into a macro that it has. Every way to cancel
/// deletes it again. If the deletion fails, which the status line reports, an unassigned macro stays in the list.
class NewMacro : public QObject
{
    Q_OBJECT

public:
    explicit NewMacro(QObject *parent);

    /// Neither is owned.
    void setDelegate(KeysDelegate *delegate) { mDelegate = delegate; }
    void observe(DistributedNotificationCenter &center);

    /// Adds the macro, opens the sheet and starts the recording. `key` names the key. `parent` owns the sheet, `window`
    /// has it. Returns null if the daemon has not accepted the macro; the status line has the reason.
    [[nodiscard]] Sheet *begin(QWidget *parent, QWidget *window, const QString &key);
    /// The macros of the document; ends the sheet when the new one is gone.
    void setMacros(const QVariantList &macros);
    /// A recording that a removed keyboard or an ended daemon has taken along is over.
    void keyboardCameBack();
    /// The keyboard is gone, and with it the daemon's capture.
    void setKeyboardAttached(bool isAttached) { mIsAttached = isAttached; }

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
    void assign();
    void cancel();
    void close();
    void takeEvents(const QVariantMap &userInfo);

    KeysDelegate *mDelegate = nullptr;
    QPointer<NewMacroSheet> mSheet;
    QVariantList mMacros;
    QVariant mMacroId; ///< of the new macro
    CaptureSource mSource;
    Step mStep = Step::closed;
    bool mIsAttached = true;
};
