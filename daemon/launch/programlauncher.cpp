// SPDX-License-Identifier: MIT
#include "daemon/launch/programlauncher.h"

#include "base/propertylist.h"
#include "daemon/launch/detachedprocess.h"
#include "daemon/launch/transientservice.h"
#include "daemon/system/logging.h"
#include "platform/desktopentry.h"
#include "platform/sessionbus.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

using Plan = ProgramLauncher::Plan;

/// The path of a program given by its full path, or by its name, which is looked up in $PATH. Empty if there is no
/// executable one. Relative paths are refused: below the folders of $PATH they could lead anywhere.
QString executable(const QString &program)
{
    const bool isNameOrFullPath = program.startsWith(u'/') || !program.contains(u'/');
    return isNameOrFullPath ? QStandardPaths::findExecutable(program) : QString();
}

Result<Plan> planForDesktopEntry(const QString &path)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    if (!entry)
        return Error{u"it is not a desktop entry"_s};
    if (entry->text(u"Type"_s) != "Application"_L1)
        return Error{u"it is not an application"_s};
    if (entry->flag(u"Hidden"_s))
        return Error{u"it is marked as deleted (Hidden)"_s};
    if (entry->flag(u"Terminal"_s))
        return Error{u"it needs a terminal"_s};
    const QString tried = entry->text(u"TryExec"_s);
    if (!tried.isEmpty() && executable(tried).isEmpty())
        return Error{u"\"%1\" (TryExec) is not installed"_s.arg(tried)};
    std::optional<QStringList> command = entry->commandLine();
    if (!command)
        return Error{u"its Exec line cannot be used"_s};
    const QString program = executable(command->constFirst());
    if (program.isEmpty())
        return Error{u"\"%1\" cannot be run"_s.arg(command->constFirst())};
    command->first() = program;
    const QString directory = entry->text(u"Path"_s);
    return Plan{.command = *command, .workingDirectory = directory.isEmpty() ? QDir::homePath() : directory};
}

Result<Plan> planForBundle(const QString &path)
{
    const QDir contents(path + u"/Contents"_s);
    const auto information = PropertyList::readPropertyListFile(contents.filePath(u"Info.plist"_s));
    if (!information)
        return Error{u"its Contents/Info.plist cannot be used: %1"_s.arg(information.error().message)};
    const QString name = information->value(u"CFBundleExecutable"_s).toString();
    if (name.isEmpty() || name.contains(u'/')) // only a name cannot lead out of the bundle
        return Error{u"its CFBundleExecutable is not a file name"_s};
    const QFileInfo program(contents.filePath(u"MacOS/"_s + name));
    if (!program.isFile() || !program.isExecutable())
        return Error{u"\"%1\" cannot be run"_s.arg(program.filePath())};
    return Plan{.command = {program.filePath()}, .workingDirectory = QDir::homePath()};
}

void logRefusal(const QString &path, const QString &reason)
{
    qCWarning(lcKeyboard, "file: a key cannot start \"%s\": %s", qUtf8Printable(path), qUtf8Printable(reason));
}

/// Starts the program of `path`, or asks the service manager to. The manager may refuse later, which is logged.
Result<void> start(const Plan &plan, const QString &path)
{
    if (TransientService::isNeeded()) {
        TransientService::start(
            sharedSessionBus(), plan.command, plan.workingDirectory, QCoreApplication::instance(),
            [path](const QString &reason) { logRefusal(path, u"the user's service manager: "_s + reason); });
        return {};
    }
    const Result<void> started = DetachedProcess::start(plan.command, plan.workingDirectory);
    if (!started)
        return Error{u"%1 in %2: %3"_s.arg(plan.command.constFirst(), plan.workingDirectory, started.error().message)};
    return {};
}

} // namespace

Result<ProgramLauncher::Plan> ProgramLauncher::planFor(const QString &path)
{
    const QFileInfo file(QDir::cleanPath(path)); // without a folder's trailing slash
    if (!file.isAbsolute() || !file.exists())
        return Error{u"there is no such file"_s};
    if (file.isDir() && file.suffix() == "app"_L1)
        return planForBundle(file.filePath());
    if (file.isDir())
        return Error{u"it is not an application bundle"_s};
    if (file.suffix() == "desktop"_L1)
        return planForDesktopEntry(file.filePath());
    return Error{u"it is not a desktop entry"_s};
}

void ProgramLauncher::launch(const QString &path)
{
    const Result<Plan> plan = planFor(path);
    const Result<void> started = plan ? start(*plan, path) : plan.withoutValue();
    if (started)
        qCInfo(lcKeyboard, "keyboard: a key starts \"%s\": %s", qUtf8Printable(path),
               qUtf8Printable(plan->command.constFirst()));
    else
        logRefusal(path, started.error().message);
}
