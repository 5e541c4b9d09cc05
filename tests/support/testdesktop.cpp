// SPDX-License-Identifier: MIT
#include "tests/support/testdesktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>
#include <grp.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int waitMs = 20'000;

/// Display numbers are unique to the test's process, and higher than those of other programs.
constexpr qint64 firstDisplayNumber = 1000;

std::unique_ptr<QProcess> started(const QString &program, const QStringList &arguments,
                                  const QProcessEnvironment &environment, const std::function<void()> &inChild = {})
{
    auto process = std::make_unique<QProcess>();
    if (inChild)
        process->setChildProcessModifier(inChild);
    process->setProcessEnvironment(environment);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, arguments);
    return process->waitForStarted(waitMs) ? std::move(process) : nullptr;
}

constexpr uid_t nobody = 65534;

/// Sway refuses to run as root, the user of tests in containers.
bool giveToNobody(const QString &folder)
{
    return ::chown(QFile::encodeName(folder).constData(), nobody, nobody) == 0;
}

void becomeNobody()
{
    if (::setgroups(0, nullptr) != 0 || ::setgid(nobody) != 0 || ::setuid(nobody) != 0)
        ::_exit(1);
}

} // namespace

TestDesktop::TestDesktop(Kind kind, QSize screenSize) : mKind(kind), mScreenSize(screenSize) {}

TestDesktop::~TestDesktop()
{
    stop();
    removeLeftOvers();
}

/// A killed X server leaves its socket and its lock.
void TestDesktop::removeLeftOvers() const
{
    if (mKind != Kind::x11 || mDisplay.isEmpty())
        return;
    const QString number = mDisplay.sliced(1);
    QFile::remove(u"/tmp/.X11-unix/X"_s + number);
    QFile::remove(u"/tmp/.X%1-lock"_s.arg(number));
}

QProcessEnvironment TestDesktop::in(QProcessEnvironment environment) const
{
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"XAUTHORITY"_s);
    if (mKind == Kind::x11) {
        environment.insert(u"DISPLAY"_s, mDisplay);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    } else {
        environment.insert(u"XDG_RUNTIME_DIR"_s, mRuntimeFolder.path());
        environment.insert(u"WAYLAND_DISPLAY"_s, mDisplay);
        environment.insert(u"SWAYSOCK"_s, mRuntimeFolder.filePath(u"sway.sock"_s));
        environment.insert(u"QT_QPA_PLATFORM"_s, u"wayland"_s);
    }
    return environment;
}

bool TestDesktop::start()
{
    return mRuntimeFolder.isValid() && (mKind == Kind::x11 ? startX11() : startWayland());
}

bool TestDesktop::startX11()
{
    // The server must not reset when its last client disconnects, because the next client may be on its way.
    const QString screen = u"%1x%2x24"_s.arg(mScreenSize.width()).arg(mScreenSize.height());
    // Not the lowest free number (-displayfd): another server could take it before this one restarts.
    mDisplay = u':' + QString::number(firstDisplayNumber + QCoreApplication::applicationPid());
    removeLeftOvers();
    mServer = started(u"Xvfb"_s, {mDisplay, u"-noreset"_s, u"-screen"_s, u"0"_s, screen, u"-nolisten"_s, u"tcp"_s},
                      QProcessEnvironment::systemEnvironment());
    if (!mServer)
        return false;
    const auto isConnected = [this] {
        mX11Windows = std::make_unique<X11Windows>(mDisplay);
        return mX11Windows->isConnected();
    };
    if (!QTest::qWaitFor(isConnected, waitMs))
        return false;
    QProcessEnvironment environment = in(QProcessEnvironment::systemEnvironment());
    environment.insert(u"HOME"_s, mRuntimeFolder.path()); // without a user's settings
    mWindowManager = started(u"openbox"_s, {u"--sm-disable"_s}, environment);
    return mWindowManager && QTest::qWaitFor([this] { return mX11Windows->areManaged(); }, waitMs);
}

bool TestDesktop::startWayland()
{
    const QString configuration = mRuntimeFolder.filePath(u"config"_s);
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly) || file.write("xwayland disable\noutput * resolution 640x480\n") < 0)
        return false;
    file.close();
    const auto sockets = [this] {
        return QDir(mRuntimeFolder.path()).entryList({u"wayland-?"_s}, QDir::System | QDir::Files);
    };
    for (const QString &left : sockets() + QStringList{u"sway.sock"_s}) // of a killed desktop
        QFile::remove(mRuntimeFolder.filePath(left));
    QProcessEnvironment environment = in(QProcessEnvironment::systemEnvironment());
    environment.remove(u"WAYLAND_DISPLAY"_s); // otherwise it would become a window of another compositor
    environment.insert(u"WLR_BACKENDS"_s, u"headless"_s);
    environment.insert(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && !giveToNobody(mRuntimeFolder.path()))
        return false;
    mServer = started(u"sway"_s, {u"--config"_s, configuration}, environment,
                      isRoot ? becomeNobody : std::function<void()>());
    if (!mServer || !QTest::qWaitFor([&] { return !sockets().isEmpty(); }, waitMs))
        return false;
    mDisplay = sockets().first();
    return QTest::qWaitFor([this] { return run(u"swaymsg"_s, {u"-t"_s, u"get_version"_s}); }, waitMs);
}

void TestDesktop::stop()
{
    for (const QString &name : mWindows.keys())
        close(name);
    mX11Windows.reset();
    if (mServer)
        mServer->kill();
    end(std::move(mWindowManager));
    end(std::move(mServer));
}

void TestDesktop::end(std::unique_ptr<QProcess> process)
{
    if (!process)
        return;
    process->kill();
    process->waitForFinished(waitMs);
}

bool TestDesktop::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(in(QProcessEnvironment::systemEnvironment()));
    process.start(program, arguments);
    return process.waitForFinished(waitMs) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool TestDesktop::open(const QString &name)
{
    auto process =
        started(QString::fromLocal8Bit(KESTRA_NAMED_WINDOW), {name}, in(QProcessEnvironment::systemEnvironment()));
    if (!process)
        return false;
    mWindows.insert(name, process.release());
    // The window can get the focus as soon as the desktop knows it.
    return QTest::qWaitFor([&] { return focus(name); }, waitMs);
}

void TestDesktop::close(const QString &name)
{
    std::unique_ptr<QProcess> process(mWindows.take(name));
    if (!process)
        return;
    process->closeWriteChannel();
    if (!process->waitForFinished(waitMs))
        end(std::move(process));
}

bool TestDesktop::focus(const QString &name) const
{
    if (mKind == Kind::x11)
        return mX11Windows->activate(name);
    return run(u"swaymsg"_s, {u"[app_id=\"^%1$\"]"_s.arg(name), u"focus"_s});
}
