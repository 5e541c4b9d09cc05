// SPDX-License-Identifier: MIT
// The daemon on real desktops without a screen: an X server with a window manager, and a Wayland compositor. Windows
// are opened, focused and closed, and the profile follows.
#include "daemon/frontapplication/sessionenvironment.h"
#include "daemon/settings/settingsdocument.h"
#include "tests/daemon/frontapplication/usermanagerservice.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testdesktop.h"
#include "tests/support/testmain.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QJsonObject>
#include <QTest>
#include <QUuid>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

Q_DECLARE_METATYPE(TestDesktop::Kind)

namespace {

const QString interface = u"org.quillkestra.FrontApplication"_s;

/// A GNOME Shell on the bus, with the extension in it, or another client. Present during its lifetime.
class Reporter
{
public:
    explicit Reporter(const QString &service = {})
        : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, mName))
    {
        if (!service.isEmpty())
            mBus.registerService(service);
    }
    ~Reporter() { QDBusConnection::disconnectFromBus(mName); }
    Reporter(const Reporter &) = delete;
    Reporter &operator=(const Reporter &) = delete;

    /// Calls a method of the application in front. Returns the name of the error; empty on success.
    QString call(const QString &method, const QVariantList &arguments) const
    {
        return answer(interface, method, arguments).errorName();
    }
    QString tellWindow(const QString &windowClass) const { return call(u"TellWindow"_s, {windowClass, u""_s, u""_s}); }
    bool needsShellExtension() const
    {
        const QDBusMessage found =
            answer(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, u"NeedsShellExtension"_s});
        return found.arguments().value(0).value<QDBusVariant>().variant().toBool();
    }

private:
    QDBusMessage answer(const QString &calledInterface, const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(u"org.quillkestra.QuillCoreEngineMsgPort"_s,
                                                              u"/FrontApplication"_s, calledInterface, method);
        message.setArguments(arguments);
        return mBus.call(message);
    }

    QString mName = QUuid::createUuid().toString();
    QDBusConnection mBus;
};

const QString gnomeShell = u"org.gnome.Shell"_s;
const QString accessDenied = u"org.freedesktop.DBus.Error.AccessDenied"_s;

} // namespace

class FrontApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void profileFollowsTheFocus_data() { desktops(); }
    void profileFollowsTheFocus();
    void daemonOutlivesTheDesktop_data() { desktops(); }
    void daemonOutlivesTheDesktop();
    void desktopThatStartsLaterIsFound_data() { desktops(); }
    void desktopThatStartsLaterIsFound();
    void desktopThatOnlyTheServiceManagerKnowsIsFound_data() { desktops(); }
    void desktopThatOnlyTheServiceManagerKnowsIsFound();
    void statusReportsTheLimitsOfX11OnAWaylandDesktop();
    void executableIsKnownOnX11();
    void gnomeShellAloneReportsWhileItIsTheSource();
    void reportsOfGnomeShellReplaceThoseOfX11();
    void reportsOfAGnomeShellOnX11AreThoseOfAnyClient();
    void extensionOfGnomeShellIsMissed_data();
    void extensionOfGnomeShellIsMissed();
    void extensionOfGnomeShellIsMissedOnceItEnds();

private:
    static void desktops();
    /// A daemon on `desktop` with "Default Profile", "A" and "B", the latter two bound to the applications "kestra-a"
    /// and "kestra-b".
    enum class Variables {
        ofDesktop,
        withWayland, ///< also those of a Wayland session, whose compositor does not report its windows
        none
    };
    void startDaemon(const TestDesktop &desktop, Variables = Variables::ofDesktop);
    QString source() const { return status().value(u"frontApplicationSource"_s).toString(); }
    QJsonObject status() const { return runKestractl({u"status"_s, u"--json"_s}).json().object(); }
    QString activeProfile() const { return status().value(u"activeProfileName"_s).toString(); }
    QString hint() const { return status().value(u"frontApplicationHint"_s).toString(); }

    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void FrontApplicationTest::desktops()
{
    QTest::addColumn<TestDesktop::Kind>("kind");
    QTest::addColumn<QString>("source");
    QTest::newRow("X11") << TestDesktop::Kind::x11 << u"x11"_s;
    QTest::newRow("Wayland") << TestDesktop::Kind::wayland << u"wayland"_s;
}

void FrontApplicationTest::startDaemon(const TestDesktop &desktop, Variables variables)
{
    mDaemon.reset(); // before the next one takes its names
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mDaemon->environment() = desktop.in(mDaemon->environment());
    if (variables == Variables::withWayland)
        mDaemon->environment().insert(u"WAYLAND_DISPLAY"_s, u"wayland-without-windows"_s);
    if (variables == Variables::none) {
        for (const QString &name : SessionEnvironment::variables())
            mDaemon->environment().remove(name);
    }
    QVERIFY(mDaemon->start());
    for (const QString &name : {u"A"_s, u"B"_s}) {
        const QVariantMap appInfo{{u"identifier"_s, QString(u"kestra-"_s + name.toLower())}};
        QVERIFY(mDaemon->request(
            Command::addProfile,
            {{u"DeviceSettingsDictionary"_s,
              QVariantMap{{u"ProfileName"_s, name}, {u"AppInfo"_s, appInfo}, {u"AutoSwitchOn"_s, 1}}}}));
    }
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 0}}));
}

void FrontApplicationTest::profileFollowsTheFocus()
{
    QFETCH(TestDesktop::Kind, kind);
    TestDesktop desktop(kind);
    QVERIFY(desktop.start());
    startDaemon(desktop);
    QFETCH(QString, source);
    QTRY_COMPARE(status().value(u"frontApplicationSource"_s).toString(), source);
    QVERIFY(!runKestractl({u"status"_s}).text().contains(u"Hint"_s));
    QCOMPARE(activeProfile(), u"Default Profile"_s);
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    QCOMPARE(status().value(u"frontApplication"_s).toString(), u"kestra-a"_s);
    QVERIFY(desktop.open(u"kestra-b"_s));
    QTRY_COMPARE(activeProfile(), u"B"_s);
    QVERIFY(desktop.focus(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    QVERIFY(desktop.open(u"kestra-unbound"_s));
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);
    QVERIFY(desktop.focus(u"kestra-b"_s));
    QTRY_COMPARE(activeProfile(), u"B"_s);
    desktop.close(u"kestra-unbound"_s);
    desktop.close(u"kestra-b"_s);
    QTRY_COMPARE(activeProfile(), u"A"_s); // the remaining window gets the focus
    desktop.close(u"kestra-a"_s);
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);
    mDaemon.reset();
}

void FrontApplicationTest::daemonOutlivesTheDesktop()
{
    QFETCH(TestDesktop::Kind, kind);
    QFETCH(QString, source);
    TestDesktop desktop(kind);
    QVERIFY(desktop.start());
    startDaemon(desktop);
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    desktop.stop();
    QTRY_COMPARE(status().value(u"frontApplicationSource"_s).toString(), u"none"_s);
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);
    QCOMPARE(runKestractl({u"focus"_s, u"kestra-b"_s}).exitCode, 0);
    QTRY_COMPARE(activeProfile(), u"B"_s);
    QVERIFY(desktop.start());
    QTRY_COMPARE_WITH_TIMEOUT(status().value(u"frontApplicationSource"_s).toString(), source, 20000);
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    QCOMPARE(mDaemon->terminate(), 0);
}

void FrontApplicationTest::desktopThatStartsLaterIsFound()
{
    QFETCH(TestDesktop::Kind, kind);
    QFETCH(QString, source);
    TestDesktop desktop(kind);
    QVERIFY(desktop.start()); // to determine its name
    desktop.stop();
    startDaemon(desktop);
    QCOMPARE(status().value(u"frontApplicationSource"_s).toString(), u"none"_s);
    QVERIFY(desktop.start());
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE_WITH_TIMEOUT(status().value(u"frontApplicationSource"_s).toString(), source, 20000);
    QTRY_COMPARE(activeProfile(), u"A"_s); // was in front before the daemon looked
    mDaemon.reset();
}

void FrontApplicationTest::desktopThatOnlyTheServiceManagerKnowsIsFound()
{
    QFETCH(TestDesktop::Kind, kind);
    QFETCH(QString, source);
    UserManagerService manager;
    TestDesktop desktop(kind);
    startDaemon(desktop, Variables::none); // like a user service before the login
    QCOMPARE(status().value(u"frontApplicationSource"_s).toString(), u"none"_s);
    QVERIFY(desktop.start());
    QVERIFY(desktop.open(u"kestra-a"_s));
    QCOMPARE(status().value(u"frontApplicationSource"_s).toString(), u"none"_s);
    const QProcessEnvironment session = desktop.in({});
    manager.setEnvironment(session.toStringList());
    manager.endJob(u"graphical-session.target"_s);
    QTRY_COMPARE_WITH_TIMEOUT(status().value(u"frontApplicationSource"_s).toString(), source, 20000);
    QTRY_COMPARE(activeProfile(), u"A"_s);
    mDaemon.reset();
}

void FrontApplicationTest::statusReportsTheLimitsOfX11OnAWaylandDesktop()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    startDaemon(desktop, Variables::withWayland);
    QTRY_COMPARE(status().value(u"frontApplicationSource"_s).toString(), u"x11"_s);
    QVERIFY(runKestractl({u"status"_s})
                .text()
                .contains(u"frontApplicationHint: this desktop reports X11 applications only; \"kestractl focus "
                          "NAME\" reports others\n"_s));
    mDaemon.reset();
}

void FrontApplicationTest::executableIsKnownOnX11()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    startDaemon(desktop);
    const QVariantMap appInfo{{u"executable"_s, u"/elsewhere/namedwindow"_s}};
    QVERIFY(
        mDaemon->request(Command::updateProfile,
                         {{u"ProfileID"_s, 1}, {u"DeviceSettingsDictionary"_s, QVariantMap{{u"AppInfo"_s, appInfo}}}}));
    QVERIFY(desktop.open(u"something-else"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    mDaemon.reset();
}

void FrontApplicationTest::gnomeShellAloneReportsWhileItIsTheSource()
{
    const TestDesktop nothing(TestDesktop::Kind::wayland); // never started
    startDaemon(nothing, Variables::withWayland);
    const Reporter other;
    QCOMPARE(other.tellWindow(u"kestra-b"_s), QString());
    QCOMPARE(activeProfile(), u"B"_s);
    auto shell = std::make_unique<Reporter>(gnomeShell);
    QCOMPARE(shell->tellWindow(u"kestra-a"_s), QString());
    QTRY_COMPARE(source(), u"gnome"_s);
    QCOMPARE(activeProfile(), u"A"_s);

    QCOMPARE(other.tellWindow(u"kestra-b"_s), accessDenied);
    QCOMPARE(other.call(u"Tell"_s, {u"kestra-b"_s}), accessDenied);
    QVERIFY(runKestractl({u"focus"_s, u"kestra-b"_s}).exitCode != 0);
    QCOMPARE(activeProfile(), u"A"_s);
    QCOMPARE(shell->tellWindow(u"kestra-b"_s), QString());
    QCOMPARE(activeProfile(), u"B"_s);
    QCOMPARE(shell->tellWindow(u""_s), QString());
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);

    QCOMPARE(shell->tellWindow(u"kestra-a"_s), QString());
    shell.reset();
    QTRY_COMPARE(source(), u"none"_s);
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);
    QCOMPARE(other.tellWindow(u"kestra-b"_s), QString());
    QTRY_COMPARE(activeProfile(), u"B"_s);

    const Reporter nextShell(gnomeShell);
    QCOMPARE(source(), u"none"_s); // not before it reports
    QCOMPARE(nextShell.tellWindow(u"kestra-a"_s), QString());
    QTRY_COMPARE(source(), u"gnome"_s);
    QCOMPARE(activeProfile(), u"A"_s);
    QCOMPARE(mDaemon->terminate(), 0);
}

void FrontApplicationTest::reportsOfGnomeShellReplaceThoseOfX11()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    startDaemon(desktop, Variables::withWayland);
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    auto shell = std::make_unique<Reporter>(gnomeShell);
    QCOMPARE(source(), u"x11"_s);
    QCOMPARE(shell->tellWindow(u"kestra-b"_s), QString());
    QTRY_COMPARE(source(), u"gnome"_s);
    QCOMPARE(activeProfile(), u"B"_s);
    desktop.close(u"kestra-a"_s);
    QCOMPARE(shell->tellWindow(u"kestra-b"_s), QString());
    QCOMPARE(activeProfile(), u"B"_s);
    QVERIFY(desktop.open(u"kestra-a"_s));
    shell.reset();
    QTRY_COMPARE(source(), u"x11"_s);
    QTRY_COMPARE(activeProfile(), u"A"_s);
    mDaemon.reset();
}

void FrontApplicationTest::reportsOfAGnomeShellOnX11AreThoseOfAnyClient()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    startDaemon(desktop);
    const Reporter shell(gnomeShell);
    const Reporter other;
    QCOMPARE(shell.tellWindow(u"kestra-b"_s), QString());
    QCOMPARE(other.tellWindow(u"kestra-a"_s), QString());
    QTRY_COMPARE(source(), u"x11"_s);
    QVERIFY(!other.needsShellExtension());
    QVERIFY(desktop.open(u"kestra-b"_s));
    QTRY_COMPARE(activeProfile(), u"B"_s);
    QVERIFY(desktop.open(u"kestra-a"_s));
    QTRY_COMPARE(activeProfile(), u"A"_s);
    mDaemon.reset();
}

void FrontApplicationTest::extensionOfGnomeShellIsMissed_data()
{
    QTest::addColumn<TestDesktop::Kind>("kind");
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<QString>("sourceBefore");
    QTest::addColumn<QString>("hintWithShell");
    QTest::newRow("Wayland alone") << TestDesktop::Kind::wayland << Variables::withWayland << u"none"_s
                                   << u"GNOME on Wayland reports windows to its extension alone: install and enable "
                                      "the package gnome-shell-extension-quill-kestra; until then, \"kestractl focus "
                                      "NAME\" reports an application"_s;
    QTest::newRow("Xwayland") << TestDesktop::Kind::x11 << Variables::withWayland << u"x11"_s
                              << u"GNOME on Wayland reports applications other than those of X11 to its extension "
                                 "alone: install and enable the package gnome-shell-extension-quill-kestra; until "
                                 "then, \"kestractl focus NAME\" reports others"_s;
    QTest::newRow("X11") << TestDesktop::Kind::x11 << Variables::ofDesktop << u"x11"_s << QString();
}

void FrontApplicationTest::extensionOfGnomeShellIsMissed()
{
    QFETCH(TestDesktop::Kind, kind);
    QFETCH(Variables, variables);
    QFETCH(QString, sourceBefore);
    QFETCH(QString, hintWithShell);
    TestDesktop desktop(kind);
    QVERIFY(kind == TestDesktop::Kind::wayland || desktop.start()); // a Wayland compositor would report its windows
    startDaemon(desktop, variables);
    QTRY_COMPARE(source(), sourceBefore);
    const Reporter other;
    QVERIFY(!other.needsShellExtension());
    const QString hintBefore = hint();
    {
        const Reporter shell(gnomeShell);
        QTRY_COMPARE(hint(), hintWithShell);
        QCOMPARE(other.needsShellExtension(), !hintWithShell.isEmpty());
        QCOMPARE(source(), sourceBefore);
        QCOMPARE(shell.tellWindow(u"kestra-a"_s), QString());
        QTRY_COMPARE(source(), hintWithShell.isEmpty() ? sourceBefore : u"gnome"_s);
        QTRY_VERIFY(!other.needsShellExtension());
        QCOMPARE(hint(), QString());
    }
    QTRY_COMPARE(source(), sourceBefore);
    QTRY_VERIFY(!other.needsShellExtension()); // no GNOME either
    QTRY_COMPARE(hint(), hintBefore);
    mDaemon.reset();
}

void FrontApplicationTest::extensionOfGnomeShellIsMissedOnceItEnds()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    startDaemon(desktop, Variables::withWayland);
    QVERIFY(desktop.open(u"kestra-a"_s));
    const Reporter shell(gnomeShell);
    const Reporter other;
    QCOMPARE(shell.tellWindow(u"kestra-b"_s), QString());
    QTRY_COMPARE(source(), u"gnome"_s);

    // A locked screen.
    QCOMPARE(shell.tellWindow(u""_s), QString());
    QTRY_COMPARE(activeProfile(), u"Default Profile"_s);
    QCOMPARE(other.call(u"EndReports"_s, {}), QString());
    QCOMPARE(source(), u"gnome"_s);
    QVERIFY(!other.needsShellExtension());
    QCOMPARE(other.tellWindow(u"kestra-b"_s), accessDenied);

    QCOMPARE(shell.call(u"EndReports"_s, {}), QString());
    QTRY_COMPARE(source(), u"x11"_s);
    QTRY_COMPARE(activeProfile(), u"A"_s); // X11 windows are followed again
    QTRY_VERIFY(other.needsShellExtension());
    QCOMPARE(runKestractl({u"focus"_s, u"kestra-b"_s}).exitCode, 0);
    QTRY_COMPARE(activeProfile(), u"B"_s);

    QCOMPARE(shell.tellWindow(u"kestra-a"_s), QString());
    QTRY_COMPARE(source(), u"gnome"_s);
    QCOMPARE(activeProfile(), u"A"_s);
    QVERIFY(!other.needsShellExtension());
    mDaemon.reset();
}

QTEST_GUILESS_MAIN(FrontApplicationTest)
#include "frontapplicationtest.moc"
