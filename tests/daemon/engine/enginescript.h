// SPDX-License-Identifier: MIT
// Runs the lines of an engine case (see enginecases/README.md) on a key engine in the same way as the daemon. Used on
// the test's thread.
#pragma once

#include "daemon/engine/keyengine.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// One case: all outputs that its input causes, as text.
class EngineScript
{
public:
    /// Runs one input line. A line that is an event adds one line to outputLines(). Returns the mistake in the line;
    /// empty when the line was run.
    [[nodiscard]] QString run(const QString &line);

    [[nodiscard]] const QStringList &outputLines() const { return mOutputLines; }
    [[nodiscard]] QList<HidUsage> sentDown() const { return mEngine.sentDown(); }

private:
    [[nodiscard]] QString runSetting(const QStringList &words);
    [[nodiscard]] QString runEvent(const QStringList &words);
    [[nodiscard]] QString setMapping(const QStringList &words);
    [[nodiscard]] QString setMacro(const QStringList &words);
    [[nodiscard]] QString deleteMacro(const QStringList &words);
    [[nodiscard]] QString pass(const QStringList &words);
    void switchTo(int profile);
    void useMap();
    void useMacros();
    [[nodiscard]] QStringList textsOf(const EngineOutputs &outputs);
    void take(const EngineOutputs &outputs);
    /// Like take(), but adds a line only for outputs that are not empty, because no event of the case caused them.
    void takeBetween(const EngineOutputs &outputs);

    KeyEngine mEngine;
    KeyEngine::Time mNow{};
    QList<QVariantMap> mProfiles{{}};
    QVariantList mMacros;
    PlayableMacros mPlayable;
    int mLastMacroId = 0;
    int mActive = 0;
    bool mIsGameModeOn = false;
    QStringList mOutputLines;
};
