// SPDX-License-Identifier: MIT
// Runs the lines of an engine case (see enginecases/README.md) on a key engine, as the daemon would run them. The
// test's thread.
#pragma once

#include "daemon/keyengine.h"

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
    [[nodiscard]] QString runEvent(const QStringList &words);
    [[nodiscard]] QString setMapping(const QStringList &words);
    void switchTo(int profile);
    void take(const EngineOutputs &outputs);

    KeyEngine mEngine;
    QList<QVariantMap> mProfiles{{}};
    int mActive = 0;
    bool mIsGameModeOn = false;
    QStringList mOutputLines;
};
