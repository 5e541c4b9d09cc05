// SPDX-License-Identifier: MIT
#include "platform/desktopkeymap.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Desktop = DesktopKeymap::Desktop;

class DesktopKeymapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void readsTheLayoutOfTheSystemsFile_data();
    void readsTheLayoutOfTheSystemsFile();
    void waylandHasPriorityInTheEnvironment();
    void platformsNameTheDesktop();
    void usesTheSystemsLayoutWithoutADesktop_data();
    void usesTheSystemsLayoutWithoutADesktop();
};

void DesktopKeymapTest::cleanup()
{
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("DISPLAY");
}

void DesktopKeymapTest::readsTheLayoutOfTheSystemsFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("as installers write it")
        << QByteArray("# KEYBOARD CONFIGURATION FILE\n\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"de\"\nXKBVARIANT=\"\"\n")
        << u"German"_s;
    QTest::newRow("without quotation marks") << QByteArray("XKBLAYOUT=fr\n") << u"French"_s;
    QTest::newRow("the first of several") << QByteArray("XKBLAYOUT=\"es,us\"\nXKBVARIANT=\",\"\n") << u"Spanish"_s;
    QTest::newRow("variant") << QByteArray("XKBLAYOUT='fr,us'\nXKBVARIANT='bepo,intl'\n") << u"French (BEPO)"_s;
    QTest::newRow("commented out") << QByteArray("#XKBLAYOUT=\"de\"\n") << u"English (US)"_s;
    QTest::newRow("unknown") << QByteArray("XKBLAYOUT=\"no-such-layout\"\n") << u"English (US)"_s;
    QTest::newRow("empty") << QByteArray() << u"English (US)"_s;
}

void DesktopKeymapTest::readsTheLayoutOfTheSystemsFile()
{
    QFETCH(QByteArray, text);
    QTEST(DesktopKeymap::keymapOfFile(text).name(), "name");
}

void DesktopKeymapTest::waylandHasPriorityInTheEnvironment()
{
    QCOMPARE(DesktopKeymap::desktopOfEnvironment(), Desktop::none);
    qputenv("DISPLAY", ":0");
    QCOMPARE(DesktopKeymap::desktopOfEnvironment(), Desktop::x11);
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    QCOMPARE(DesktopKeymap::desktopOfEnvironment(), Desktop::wayland);
}

void DesktopKeymapTest::platformsNameTheDesktop()
{
    QCOMPARE(DesktopKeymap::desktopOfPlatform(u"xcb"_s), Desktop::x11);
    QCOMPARE(DesktopKeymap::desktopOfPlatform(u"wayland-egl"_s), Desktop::wayland);
    QCOMPARE(DesktopKeymap::desktopOfPlatform(u"offscreen"_s), Desktop::none);
}

void DesktopKeymapTest::usesTheSystemsLayoutWithoutADesktop_data()
{
    QTest::addColumn<Desktop>("desktop");
    QTest::newRow("none") << Desktop::none;
    QTest::newRow("X11 without a server") << Desktop::x11;
    QTest::newRow("Wayland without a compositor") << Desktop::wayland;
}

void DesktopKeymapTest::usesTheSystemsLayoutWithoutADesktop()
{
    QFETCH(Desktop, desktop);
    qputenv("DISPLAY", ":no-such-display");
    qputenv("WAYLAND_DISPLAY", "no-such-compositor");
    const DesktopKeymap layout(desktop);
    QVERIFY(!layout.keymap().isNull());
    QCOMPARE(layout.keymap().name(), DesktopKeymap(Desktop::none).keymap().name());
}

QTEST_MAIN(DesktopKeymapTest)
#include "desktopkeymaptest.moc"
