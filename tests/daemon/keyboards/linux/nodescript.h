// SPDX-License-Identifier: MIT
// Runs the lines of a case of the folder nodecases (see its README.md) on a translator. Used on the test's thread.
#pragma once

#include "daemon/keyboards/linux/keytranslator.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class NodeScript : private KeySink
{
public:
    NodeScript() : mTranslator(*this) {}

    /// Runs one input line. A line that is an event adds one line to outputLines(). Returns the mistake in the line;
    /// empty when the line was run.
    [[nodiscard]] QString run(const QString &line);

    [[nodiscard]] const QStringList &outputLines() const { return mOutputLines; }
    [[nodiscard]] const QSet<QString> &down() const { return mDown; }

private:
    void takeKey(HidUsage key, bool isDown, Time time) override;
    void passKey(quint16 code, bool isDown, Time time) override;
    void passMotion(quint16 code, int value, Time time) override;
    void takeReleaseChord() override;

    [[nodiscard]] QString runEvent(const QString &node, const QStringList &words);
    void tell(const QString &key, bool isDown);

    KeyTranslator mTranslator;
    QHash<QString, int> mNodes;
    QStringList mOutputs; // of the current line
    QStringList mOutputLines;
    QSet<QString> mDown;
};
