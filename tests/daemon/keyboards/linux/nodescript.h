// SPDX-License-Identifier: MIT
// Runs the lines of a case of the folder nodecases (see its README.md) on a translator. Used on the test's thread.
#pragma once

#include "daemon/keyboards/linux/keytranslator.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

class NodeScript
{
public:
    /// Runs one input line. A line that is an event adds one line to outputLines(). Returns the mistake in the line;
    /// empty when the line was run.
    [[nodiscard]] QString run(const QString &line);

    [[nodiscard]] const QStringList &outputLines() const { return mOutputLines; }
    [[nodiscard]] const QSet<QString> &down() const { return mDown; }

private:
    [[nodiscard]] QString runEvent(const QString &node, const QStringList &words);
    void take(int index, const KeyTranslator::Event &event);
    void remove(int index);
    void show(const TranslatorOutput &output);
    void showKey(const QString &key, bool isDown, const QString &systemKey = {});

    KeyTranslator mTranslator;
    QHash<QString, int> mNodes;
    QStringList mOutputs; // of the current line
    QStringList mOutputLines;
    QSet<QString> mDown;
};
