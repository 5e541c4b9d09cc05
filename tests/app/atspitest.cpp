// SPDX-License-Identifier: MIT
// What a screen reader is told by the program itself, over the desktop's accessibility bus: each control of every tab
// has a name. The virtual display and the accessibility service are the test's own.
#include "tests/support/daemonprocessfixture.h"
#include "tools/tour/accessibletree.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int startLimitMs = 20000;

/// Roles of what a person uses, as AT-SPI calls them.
const QString accessibilityBus = u"accessibility"_s; // the name of the connection
const QStringList interactiveRoles{u"push button"_s, u"check box"_s, u"radio button"_s, u"combo box"_s,  u"slider"_s,
                                   u"text"_s,        u"table"_s,     u"page tab"_s,     u"button menu"_s};

QStringList names(const QList<AccessibleControl> &controls)
{
    QStringList result;
    for (const AccessibleControl &control : controls)
        result += control.name;
    return result;
}

void end(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished(5000);
}

} // namespace

class AtSpiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void everyControlTellsItsName();

private:
    [[nodiscard]] QList<AccessibleControl> controls() const;
    [[nodiscard]] QList<AccessibleControl> pageTabs() const;

    QProcess mDisplay, mService, mConfigurator;
    QString mDisplayName;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void AtSpiTest::initTestCase()
{
    const QString launcher = u"/usr/libexec/at-spi-bus-launcher"_s;
    if (QStandardPaths::findExecutable(u"Xvfb"_s).isEmpty() || !QFile::exists(launcher))
        QSKIP("needs Xvfb and at-spi2-core");
    mDisplay.start(u"Xvfb"_s,
                   {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1400x900x24"_s, u"-nolisten"_s, u"tcp"_s});
    QVERIFY(QTest::qWaitFor([this] { return mDisplay.bytesAvailable() > 1; }, startLimitMs));
    mDisplayName = u':' + QString::fromLatin1(mDisplay.readAll().trimmed());
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mDaemon->environment().insert(u"DISPLAY"_s, mDisplayName);
    QVERIFY(mDaemon->start());
    QProcessEnvironment environment = mDaemon->environment();
    environment.insert(u"DISPLAY"_s, mDisplayName);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    mService.setProcessEnvironment(environment);
    mService.start(launcher, {u"--launch-immediately"_s});
    const QDBusConnection bus = QDBusConnection::sessionBus();
    QTRY_VERIFY_WITH_TIMEOUT(bus.interface()->isServiceRegistered(u"org.a11y.Bus"_s), startLimitMs);
    mConfigurator.setProcessEnvironment(environment);
    mConfigurator.start(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/kestra-configurator"_s, {});
    QVERIFY(mConfigurator.waitForStarted());
}

void AtSpiTest::cleanupTestCase()
{
    // Ended in order it would keep its selected key in the build's resources.
    mConfigurator.kill();
    mConfigurator.waitForFinished(5000);
    QDBusConnection::disconnectFromBus(accessibilityBus); // before it goes away
    end(mService);
    mDaemon.reset();
    end(mDisplay);
}

QList<AccessibleControl> AtSpiTest::controls() const
{
    QDBusInterface service(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s);
    const QDBusReply<QString> address = service.call(u"GetAddress"_s);
    if (!address.isValid())
        return {};
    const QDBusConnection bus = QDBusConnection::connectToBus(address.value(), accessibilityBus);
    return AccessibleTree(bus, uint(mConfigurator.processId())).showingControls();
}

QList<AccessibleControl> AtSpiTest::pageTabs() const
{
    QList<AccessibleControl> tabs = controls();
    tabs.removeIf([](const AccessibleControl &control) { return control.role != "page tab"_L1; });
    return tabs;
}

void AtSpiTest::everyControlTellsItsName()
{
    const auto isThere = [this] {
        const QList<AccessibleControl> all = controls();
        return std::ranges::any_of(all,
                                   [](const AccessibleControl &control) { return control.name == u"Assignment:"; });
    };
    QTRY_VERIFY_WITH_TIMEOUT(isThere(), startLimitMs);
    QStringList nameless;
    QList<qsizetype> counts;
    QStringList before = names(controls());
    const QList<AccessibleControl> tabs = pageTabs();
    QCOMPARE(tabs.size(), 5);
    for (const AccessibleControl &tab : tabs) {
        const QPoint middle = tab.screenRect.center();
        QCOMPARE(
            QProcess::execute(u"env"_s, {u"DISPLAY="_s + mDisplayName, u"xdotool"_s, u"mousemove"_s,
                                         QString::number(middle.x()), QString::number(middle.y()), u"click"_s, u"1"_s}),
            0);
        // Tabs tell nothing of being in front; what is shown changes with them.
        const auto hasChanged = [&] { return names(controls()) != before; };
        if (tab.name != tabs.first().name)
            QTRY_VERIFY_WITH_TIMEOUT(hasChanged(), startLimitMs);
        before = names(controls());
        counts += 0;
        for (const AccessibleControl &control : controls()) {
            if (!interactiveRoles.contains(control.role))
                continue;
            ++counts.last();
            if (control.name.trimmed().isEmpty())
                nameless += tab.name + u": "_s + control.role + u' ' + control.description;
        }
    }
    QVERIFY2(counts.first() > 119, qPrintable(QString::number(counts.first()))); // the keys alone are as many
    QVERIFY(counts.at(3) > 15);                                                  // the lighting tab's and the header's
    QVERIFY2(nameless.isEmpty(), qPrintable(nameless.join(u'\n')));
}

QTEST_MAIN(AtSpiTest)
#include "atspitest.moc"
