// SPDX-License-Identifier: MIT
// Application bundles. Whatever Info.plist contains, a profile can be bound to the bundle, and a key can only start a
// program in the bundle.
#include "daemon/launch/programlauncher.h"
#include "fuzz/target.h"
#include "platform/applicationinformation.h"
#include "profiles/applicationbinding.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// A bundle with a program "game", a file that is not a program, and a folder.
QString makeBundle()
{
    const QString bundle = workFolder().filePath(u"Game.app"_s);
    const QString programs = bundle + u"/Contents/MacOS"_s;
    QDir().mkpath(programs + u"/folder"_s);
    writeWorkFile(programs + u"/data"_s, "data");
    writeWorkFile(programs + u"/game"_s, "#!/bin/sh\n");
    QFile::setPermissions(programs + u"/game"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return bundle;
}

void bundle(QByteArrayView input)
{
    static const QString path = makeBundle();
    writeWorkFile(path + u"/Contents/Info.plist"_s, input);
    if (const auto information = ApplicationInformation::read(path))
        requireWritable(ApplicationBinding::bound({}, *information));
    const Result<ProgramLauncher::Plan> plan = ProgramLauncher::planFor(path);
    require(!plan || plan->command == QStringList{path + u"/Contents/MacOS/game"_s}, "a bundle starts its own program");
}

} // namespace

KESTRA_FUZZ_TARGET(bundle)
