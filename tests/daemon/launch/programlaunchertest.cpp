// SPDX-License-Identifier: MIT
#include "daemon/launch/programlauncher.h"
#include "tests/support/testmain.h"

#include "base/qlcoreutility.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Why the launch is refused; empty if it is not.
QString refusalOf(const Result<ProgramLauncher::Plan> &plan)
{
    return plan ? QString() : plan.error().message;
}

} // namespace

class ProgramLauncherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void desktopEntryIsStartedByItsExecLine();
    void desktopEntryChoosesItsDirectory();
    void programIsFoundOnThePath();
    void desktopEntryIsRefused_data();
    void desktopEntryIsRefused();
    void existingTryExecIsAccepted();
    void bundleIsStartedByItsExecutable();
    void bundleIsRefused_data();
    void bundleIsRefused();
    void anythingElseIsRefused_data();
    void anythingElseIsRefused();
    void launchRunsTheProgram();
    void failedLaunchReportsTheReason_data();
    void failedLaunchReportsTheReason();

private:
    /// Writes a file below the test's folder and creates its folders. Returns the path.
    QString write(const QString &name, const QByteArray &content, bool isExecutable = false) const;
    QString entry(const QByteArray &lines) const
    {
        return writeDesktopEntry(mFolder->filePath(u"game.desktop"_s), lines);
    }
    /// A bundle with this information dictionary and an executable "game".
    QString bundle(const QVariantMap &information) const;

    std::optional<QTemporaryDir> mFolder;
    QByteArray mPath;
};

void ProgramLauncherTest::init()
{
    mFolder.emplace();
    mPath = qgetenv("PATH");
    qputenv("PATH", mPath + ':' + QFile::encodeName(mFolder->filePath(u"bin"_s)));
    write(u"bin/game"_s, "#!/bin/sh\npwd -P > \"$1.part\" && mv \"$1.part\" \"$1\"\n", true);
    write(u"bin/tools/game"_s, "#!/bin/sh\n", true);
}

void ProgramLauncherTest::cleanup()
{
    qputenv("PATH", mPath);
    mFolder.reset();
}

QString ProgramLauncherTest::write(const QString &name, const QByteArray &content, bool isExecutable) const
{
    const QString path = writeFile(mFolder->filePath(name), content);
    if (isExecutable)
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    return path;
}

QString ProgramLauncherTest::bundle(const QVariantMap &information) const
{
    write(u"Game.app/Contents/Info.plist"_s, QlCoreUtility::convertDictionaryToData(information).value());
    write(u"Game.app/Contents/MacOS/game"_s, "#!/bin/sh\n", true);
    write(u"Game.app/Contents/MacOS/data"_s, "no program");
    return mFolder->filePath(u"Game.app"_s);
}

void ProgramLauncherTest::desktopEntryIsStartedByItsExecLine()
{
    const QString program = mFolder->filePath(u"bin/game"_s);
    const Result<ProgramLauncher::Plan> plan = ProgramLauncher::planFor(
        entry("Name=A game\nIcon=icon\nExec=\"" + program.toUtf8() + "\" --title=%c %i \"two words\" %U $HOME\n"));
    QVERIFY2(plan, qPrintable(refusalOf(plan)));
    QCOMPARE(plan->command,
             QStringList({program, u"--title=A game"_s, u"--icon"_s, u"icon"_s, u"two words"_s, u"$HOME"_s}));
}

void ProgramLauncherTest::desktopEntryChoosesItsDirectory()
{
    QCOMPARE(ProgramLauncher::planFor(entry("Exec=game\n")).valueOr({}).workingDirectory, QDir::homePath());
    QCOMPARE(ProgramLauncher::planFor(entry("Exec=game\nPath=/opt/a game\n")).valueOr({}).workingDirectory,
             u"/opt/a game"_s);
}

void ProgramLauncherTest::programIsFoundOnThePath()
{
    QCOMPARE(ProgramLauncher::planFor(entry("Exec=game\n")).valueOr({}).command,
             QStringList{mFolder->filePath(u"bin/game"_s)});
}

void ProgramLauncherTest::desktopEntryIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("refusal");
    const QByteArray start = "[Desktop Entry]\nType=Application\n";
    QTest::newRow("no entry") << QByteArray("Exec=game\n") << u"it is not a desktop entry"_s;
    QTest::newRow("no type") << QByteArray("[Desktop Entry]\nExec=game\n") << u"it is not an application"_s;
    QTest::newRow("a link") << QByteArray("[Desktop Entry]\nType=Link\nExec=game\n") << u"it is not an application"_s;
    QTest::newRow("hidden") << start + "Exec=game\nHidden=true\n" << u"it is marked as deleted (Hidden)"_s;
    QTest::newRow("terminal") << start + "Exec=game\nTerminal=true\n" << u"it needs a terminal"_s;
    QTest::newRow("not installed") << start + "Exec=game\nTryExec=no-such-program\n"
                                   << u"\"no-such-program\" (TryExec) is not installed"_s;
    QTest::newRow("no Exec") << start << u"its Exec line cannot be used"_s;
    QTest::newRow("bad Exec") << start + "Exec=game \"x\n" << u"its Exec line cannot be used"_s;
    QTest::newRow("no program") << start + "Exec=no-such-program x\n" << u"\"no-such-program\" cannot be run"_s;
    for (const QByteArray path : {"../bin/game", "./game", "tools/game", "tools/../game"}) {
        QTest::addRow("relative path %s", path.constData()) << start + "Exec=" + path + '\n'
                                                            << u"\"%1\" cannot be run"_s.arg(QString::fromLatin1(path));
        QTest::addRow("relative path %s to try", path.constData())
            << start + "Exec=game\nTryExec=" + path + '\n'
            << u"\"%1\" (TryExec) is not installed"_s.arg(QString::fromLatin1(path));
    }
    QTest::newRow("no program at the path") << start + "Exec=/etc/passwd\n" << u"\"/etc/passwd\" cannot be run"_s;
}

void ProgramLauncherTest::desktopEntryIsRefused()
{
    QFETCH(QByteArray, content);
    QTEST(refusalOf(ProgramLauncher::planFor(write(u"game.desktop"_s, content))), "refusal");
}

void ProgramLauncherTest::existingTryExecIsAccepted()
{
    QVERIFY(ProgramLauncher::planFor(entry("Exec=game\nTryExec=game\n")));
    QVERIFY(ProgramLauncher::planFor(entry("Exec=game\nTryExec=/bin/sh\nTerminal=false\nHidden=false\n")));
}

void ProgramLauncherTest::bundleIsStartedByItsExecutable()
{
    const QString path = bundle({{u"CFBundleExecutable"_s, u"game"_s}});
    for (const QString &given : {path, path + u'/'}) {
        const Result<ProgramLauncher::Plan> plan = ProgramLauncher::planFor(given);
        QVERIFY2(plan, qPrintable(refusalOf(plan)));
        QCOMPARE(plan->command, QStringList{path + u"/Contents/MacOS/game"_s});
        QCOMPARE(plan->workingDirectory, QDir::homePath());
    }
}

void ProgramLauncherTest::bundleIsRefused_data()
{
    QTest::addColumn<QVariantMap>("information");
    QTest::newRow("no executable") << QVariantMap{{u"CFBundleName"_s, u"Game"_s}};
    QTest::newRow("no name") << QVariantMap{{u"CFBundleExecutable"_s, QString()}};
    QTest::newRow("number") << QVariantMap{{u"CFBundleExecutable"_s, 5}};
    QTest::newRow("absent") << QVariantMap{{u"CFBundleExecutable"_s, u"absent"_s}};
    QTest::newRow("not executable") << QVariantMap{{u"CFBundleExecutable"_s, u"data"_s}};
    QTest::newRow("a folder") << QVariantMap{{u"CFBundleExecutable"_s, u".."_s}};
    QTest::newRow("out of the bundle") << QVariantMap{{u"CFBundleExecutable"_s, u"../../../bin/game"_s}};
}

void ProgramLauncherTest::bundleIsRefused()
{
    QFETCH(QVariantMap, information);
    QVERIFY(!ProgramLauncher::planFor(bundle(information)));
}

void ProgramLauncherTest::anythingElseIsRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QString();
    QTest::newRow("absent") << u"/no/such/game.desktop"_s;
    QTest::newRow("a program") << u"/bin/sh"_s;
    QTest::newRow("a folder") << u"/usr"_s;
    QTest::newRow("a name") << u"sh"_s;
    QTest::newRow("a command line") << u"/bin/sh -c reboot"_s;
}

void ProgramLauncherTest::anythingElseIsRefused()
{
    QFETCH(QString, path);
    QVERIFY(!ProgramLauncher::planFor(path));
    // A path relative to the current folder is also refused, even if the file exists.
    writeDesktopEntry(mFolder->filePath(u"other.desktop"_s), "Exec=game\n");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(mFolder->path()));
    const bool isRefused = !ProgramLauncher::planFor(u"other.desktop"_s);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(isRefused);
    QVERIFY(ProgramLauncher::planFor(mFolder->filePath(u"other.desktop"_s)));
}

void ProgramLauncherTest::launchRunsTheProgram()
{
    const QString result = mFolder->filePath(u"the result"_s);
    const QByteArray folder = QFileInfo(mFolder->path()).canonicalFilePath().toUtf8();
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"a key starts \".*/game.desktop\": .*/bin/game$"_s));
    ProgramLauncher::launch(entry("Exec=game \"" + result.toUtf8() + "\"\nPath=" + folder + '\n'));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(result), 20'000);
    QFile file(result);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().trimmed(), folder);
}

void ProgramLauncherTest::failedLaunchReportsTheReason_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("message");
    QTest::newRow("refused") << QByteArray("Exec=game\nTerminal=true\n") << u"cannot start .*: it needs a terminal"_s;
    QTest::newRow("no directory") << QByteArray("Exec=game\nPath=/no/such/directory\n")
                                  << u"cannot start .*: .*/bin/game in /no/such/directory: No such file"_s;
}

void ProgramLauncherTest::failedLaunchReportsTheReason()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, message);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(message));
    ProgramLauncher::launch(entry(lines));
}

QTEST_GUILESS_MAIN(ProgramLauncherTest)
#include "programlaunchertest.moc"
