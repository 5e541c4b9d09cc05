// SPDX-License-Identifier: MIT
// Replaces all events of a macro at once, for a client that has read them. Owned by the DeviceDaemon; main thread only.
#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

class CaptureSession;
class CurrentSettings;

class MacroReplacement
{
public:
    /// Both must outlive this.
    MacroReplacement(CurrentSettings &settings, const CaptureSession &captures);

    enum class Refusal {
        gone,     ///< no macro has this number
        busy,     ///< a client records into it
        changed,  ///< it has other events than the caller has read
        invalid,  ///< the daemon does not store these events; the message has the reason
        notSaved, ///< the settings file could not be written
    };
    struct Failure : Error
    {
        Refusal refusal;
    };

    /// Stores `events`, a property list with an array of events, in place of those of the macro whose own "macroID" is
    /// `macroId`, as one change. `digest`: MacroRecord::digest() of the events that the caller has read. Notifies the
    /// clients of a change by `sourceApp`. Equal events change nothing. After a refusal, nothing has changed.
    Result<void, Failure> replace(quint32 macroId, const QString &digest, const QByteArray &events,
                                  const QString &sourceApp);

private:
    CurrentSettings &mSettings;
    const CaptureSession &mCaptures;
};
