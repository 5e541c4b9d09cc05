// SPDX-License-Identifier: MIT
// The windows of a real X server with a window manager, without a screen.
#include "platform/applicationwindows.h"
#include "tests/support/testmain.h"

#include "tests/support/testdesktop.h"

#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;

class ApplicationWindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openWindowsAreReadByTheirClass();
    void withoutAServerThereAreNone();

private:
    static QStringList classes(const QByteArray &display)
    {
        QStringList found;
        for (const FrontApplication &application : ApplicationWindows::read(display))
            found += application.windowClass;
        found.sort();
        return found;
    }
};

void ApplicationWindowsTest::openWindowsAreReadByTheirClass()
{
    TestDesktop desktop(TestDesktop::Kind::x11);
    QVERIFY(desktop.start());
    const QByteArray display = desktop.in({}).value(u"DISPLAY"_s).toLatin1();
    QVERIFY(!display.isEmpty());
    QVERIFY(classes(display).isEmpty());
    QVERIFY(desktop.open(u"kestra-a"_s));
    QVERIFY(desktop.open(u"kestra-b"_s));
    QTRY_COMPARE(classes(display), (QStringList{u"kestra-a"_s, u"kestra-b"_s}));
    for (const FrontApplication &application : ApplicationWindows::read(display)) {
        QVERIFY(!application.windowInstance.isEmpty());
        QCOMPARE(application.executable, QString());
    }
    desktop.close(u"kestra-a"_s);
    QTRY_COMPARE(classes(display), QStringList{u"kestra-b"_s});
    desktop.stop();
    QCOMPARE(classes(display), QStringList());
}

void ApplicationWindowsTest::withoutAServerThereAreNone()
{
    QCOMPARE(classes(":987"), QStringList());
    QCOMPARE(classes("no display"), QStringList());
}

QTEST_GUILESS_MAIN(ApplicationWindowsTest)
#include "applicationwindowstest.moc"
