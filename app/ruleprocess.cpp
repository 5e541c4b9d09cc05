// SPDX-License-Identifier: MIT
#include "app/ruleprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The exit codes of pkexec itself.
constexpr int wasDismissed = 126;
constexpr int wasNotAuthorized = 127;

} // namespace

RuleProcess::Programs RuleProcess::installedPrograms()
{
    const QFileInfo helper(
        QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../libexec/quill-kestra-keyboard-rule"_L1));
    const bool isOfRootAlone = helper.isFile() && !helper.isSymLink() && helper.ownerId() == 0
                               && !helper.permission(QFile::WriteGroup) && !helper.permission(QFile::WriteOther);
    return {.pkexec = QStandardPaths::findExecutable(u"pkexec"_s),
            .helper = isOfRootAlone ? helper.filePath() : QString()};
}

RuleProcess::RuleProcess(const Programs &programs, QObject *parent) : QObject(parent), mPrograms(programs) {}

RuleProcess::~RuleProcess()
{
    if (!mProcess)
        return;
    // The password question, or the helper, ends by itself.
    mProcess->disconnect(this);
    mProcess->setParent(nullptr);
    QObject::connect(mProcess, &QProcess::finished, mProcess, &QObject::deleteLater);
}

void RuleProcess::start(const QStringList &arguments)
{
    if (mProcess || !isAvailable())
        return;
    mProblem.clear();
    mProcess = new QProcess(this);
    mProcess->setProcessChannelMode(QProcess::MergedChannels);
    mProcess->setStandardInputFile(QProcess::nullDevice());
    connect(mProcess, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
        mProblem = QString::fromLocal8Bit(mProcess->readAll()).trimmed();
        if (status != QProcess::NormalExit)
            return finish(Failure::refused);
        switch (exitCode) {
        case 0: return finish({});
        case wasDismissed: return finish(Failure::dismissed);
        case wasNotAuthorized: return finish(Failure::impossible);
        default: return finish(Failure::refused);
        }
    });
    connect(mProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(Failure::impossible);
    });
    // Without the option, pkexec would ask in the terminal from which the configurator was started.
    mProcess->start(mPrograms.pkexec, QStringList{u"--disable-internal-agent"_s, mPrograms.helper} + arguments);
}

void RuleProcess::finish(const Outcome &outcome)
{
    std::exchange(mProcess, nullptr)->deleteLater();
    Q_EMIT finished(outcome);
}
