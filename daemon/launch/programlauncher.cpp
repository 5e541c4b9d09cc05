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

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

using Plan = ProgramLauncher::Plan;

Plan refused(const QString &reason)
{
    return {.command = {}, .workingDirectory = {}, .refusal = reason};
}

/// The path of a program given by its full path, or by its name, which is looked up in $PATH. Empty if there is no
/// executable one. Relative paths are refused: below the folders of $PATH they could lead anywhere.
QString executable(const QString &program)
{
    const bool isNameOrFullPath = program.startsWith(u'/') || !program.contains(u'/');
    return isNameOrFullPath ? QStandardPaths::findExecutable(program) : QString();
}

Plan planForDesktopEntry(const QString &path)
{
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    if (!entry)
        return refused(u"it is not a desktop entry"_s);
    if (entry->text(u"Type"_s) != "Application"_L1)
        return refused(u"it is not an application"_s);
    if (entry->flag(u"Hidden"_s))
        return refused(u"it is marked as deleted (Hidden)"_s);
    if (entry->flag(u"Terminal"_s))
        return refused(u"it needs a terminal"_s);
    const QString tried = entry->text(u"TryExec"_s);
    if (!tried.isEmpty() && executable(tried).isEmpty())
        return refused(u"\"%1\" (TryExec) is not installed"_s.arg(tried));
    std::optional<QStringList> command = entry->commandLine();
    if (!command)
        return refused(u"its Exec line cannot be used"_s);
    const QString program = executable(command->constFirst());
    if (program.isEmpty())
        return refused(u"\"%1\" cannot be run"_s.arg(command->constFirst()));
    command->first() = program;
    const QString directory = entry->text(u"Path"_s);
    return {.command = *command, .workingDirectory = directory.isEmpty() ? QDir::homePath() : directory, .refusal = {}};
}

Plan planForBundle(const QString &path)
{
    const QDir contents(path + u"/Contents"_s);
    const std::optional<QVariantMap> information =
        PropertyList::readPropertyListFile(contents.filePath(u"Info.plist"_s));
    if (!information)
        return refused(u"it has no readable Contents/Info.plist"_s);
    const QString name = information->value(u"CFBundleExecutable"_s).toString();
    if (name.isEmpty() || name.contains(u'/')) // only a name cannot lead out of the bundle
        return refused(u"its CFBundleExecutable is not a file name"_s);
    const QFileInfo program(contents.filePath(u"MacOS/"_s + name));
    if (!program.isFile() || !program.isExecutable())
        return refused(u"\"%1\" cannot be run"_s.arg(program.filePath()));
    return {.command = {program.filePath()}, .workingDirectory = QDir::homePath(), .refusal = {}};
}

void logRefusal(const QString &path, const QString &reason)
{
    qCWarning(lcKeyboard, "file: a key cannot start \"%s\": %s", qUtf8Printable(path), qUtf8Printable(reason));
}

} // namespace

ProgramLauncher::Plan ProgramLauncher::planFor(const QString &path)
{
    const QFileInfo file(QDir::cleanPath(path)); // without a folder's trailing slash
    if (!file.isAbsolute() || !file.exists())
        return refused(u"there is no such file"_s);
    if (file.isDir())
        return file.suffix() == "app"_L1 ? planForBundle(file.filePath())
                                         : refused(u"it is not an application bundle"_s);
    return file.suffix() == "desktop"_L1 ? planForDesktopEntry(file.filePath())
                                         : refused(u"it is not a desktop entry"_s);
}

void ProgramLauncher::launch(const QString &path)
{
    Plan plan = planFor(path);
    if (!plan.isRefused() && TransientService::isNeeded()) {
        TransientService::start(
            sharedSessionBus(), plan.command, plan.workingDirectory, QCoreApplication::instance(),
            [path](const QString &reason) { logRefusal(path, u"the user's service manager: "_s + reason); });
    } else if (!plan.isRefused()) {
        if (const int error = DetachedProcess::start(plan.command, plan.workingDirectory))
            plan.refusal = u"%1 in %2: %3"_s.arg(plan.command.constFirst(), plan.workingDirectory,
                                                 QString::fromLocal8Bit(std::strerror(error)));
    }
    if (plan.isRefused())
        logRefusal(path, plan.refusal);
    else
        qCInfo(lcKeyboard, "keyboard: a key starts \"%s\": %s", qUtf8Printable(path),
               qUtf8Printable(plan.command.constFirst()));
}
