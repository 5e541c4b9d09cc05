// SPDX-License-Identifier: MIT
// Runs the lines of an engine case (see enginecases/README.md) on a key engine, as the daemon would run them. The
// test's thread.
#pragma once

#include "daemon/engine/keyengine.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// One case: everything that its input does, as text.
class EngineScript
{
public:
    /// Runs one input line. A line that is an event adds one line to outputLines().
    /// Returns what is wrong with the line; empty when it was run.
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
    /// As take(), but only what brings something is a line: it was no event.
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
