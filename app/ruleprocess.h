// SPDX-License-Identifier: MIT
// Starts the rule helper through pkexec: the desktop asks for an administrator's password, and the helper gives the
// user at the seat the right to one keyboard, or takes it back. Never waits. Main thread only.
#pragma once

#include "base/result.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QProcess;

class RuleProcess : public QObject
{
    Q_OBJECT

public:
    struct Programs
    {
        QString pkexec; ///< full paths; empty if there is none
        QString helper;
    };

    enum class Failure {
        dismissed,  ///< the user has closed the question for the password
        impossible, ///< no agent of the desktop could ask, or the user may not do this
        refused     ///< by the helper; see problem()
    };
    using Outcome = Result<void, Failure>;

    /// Those of this installation. The helper counts only if it belongs to root and root alone may write it, because
    /// polkit knows it by its path: a program in a build folder has none.
    [[nodiscard]] static Programs installedPrograms();

    explicit RuleProcess(const Programs &programs = installedPrograms(), QObject *parent = nullptr);
    ~RuleProcess() override;

    [[nodiscard]] bool isAvailable() const { return !mPrograms.pkexec.isEmpty() && !mPrograms.helper.isEmpty(); }
    [[nodiscard]] bool isRunning() const { return mProcess != nullptr; }
    /// The last words of the helper, in English.
    [[nodiscard]] QString problem() const { return mProblem; }

    /// `node` is one of the keyboard's event devices, "/dev/input/event3". finished() follows. Does nothing while it is
    /// running or not available.
    void install(const QString &node) { start({node}); }
    void remove(const QString &node) { start({QStringLiteral("--remove"), node}); }

Q_SIGNALS:
    void finished(const RuleProcess::Outcome &outcome);

private:
    void start(const QStringList &arguments);
    void finish(const Outcome &outcome);

    Programs mPrograms;
    QProcess *mProcess = nullptr;
    QString mProblem;
};
