// SPDX-License-Identifier: MIT
// The time from the moment a window receives the focus until the daemon notifies clients of the profile, on desktops
// without a screen and with the real daemon. Run it on a private bus:
//   KESTRA_BIN_DIR=build/release/bin dbus-run-session -- build/release/bin/bench_autoswitch
#include "platform/distributednotificationcenter.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testdesktop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int rounds = 100;

struct Times
{
    QList<double> toldMs;    // from the start of the request that moves the focus to the notification
    QList<double> requestMs; // duration of that request alone
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

/// Absent when the desktop or the daemon does not start.
std::optional<Times> measure(TestDesktop &desktop)
{
    DaemonProcessFixture daemon;
    if (!desktop.start())
        return {};
    daemon.environment() = desktop.in(daemon.environment());
    if (!daemon.start())
        return {};
    for (const QString &name : {u"kestra-a"_s, u"kestra-b"_s}) {
        const QVariantMap record{
            {u"ProfileName"_s, name}, {u"AppInfo"_s, QVariantMap{{u"identifier"_s, name}}}, {u"AutoSwitchOn"_s, 1}};
        (void)daemon.request(Command::addProfile, {{u"DeviceSettingsDictionary"_s, record}});
    }
    QObject observer;
    int told = 0;
    DistributedNotificationCenter::defaultCenter().addObserver(&observer, DaemonProtocol::profileUpdated,
                                                               [&](const DistributedNotification &) { ++told; });
    if (!desktop.open(u"kestra-a"_s) || !desktop.open(u"kestra-b"_s))
        return {};
    QTest::qWait(1000); // until the desktop is quiet
    Times times;
    QElapsedTimer timer;
    for (int round = 0; round < rounds; ++round) {
        told = 0;
        timer.start();
        if (!desktop.focus(round % 2 == 0 ? u"kestra-a"_s : u"kestra-b"_s))
            return {};
        times.requestMs += static_cast<double>(timer.nsecsElapsed()) / 1e6;
        while (told == 0 && timer.elapsed() < 5000)
            QCoreApplication::processEvents();
        if (told == 0)
            return {};
        times.toldMs += static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    return times;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    bool isComplete = true;
    for (const auto &[kind, name] :
         {std::pair{TestDesktop::Kind::x11, "X11, openbox"}, std::pair{TestDesktop::Kind::wayland, "Wayland, sway"}}) {
        TestDesktop desktop(kind);
        const std::optional<Times> times = measure(desktop);
        isComplete = isComplete && times;
        if (!times) {
            std::printf("%s: could not be measured\n", name);
            continue;
        }
        std::printf("%s: %d times, focus request %.2f ms, told after %.1f ms, at most %.1f ms\n", name, rounds,
                    median(times->requestMs), median(times->toldMs),
                    *std::max_element(times->toldMs.begin(), times->toldMs.end()));
    }
    return isComplete ? 0 : 1;
}
