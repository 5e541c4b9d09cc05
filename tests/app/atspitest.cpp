// SPDX-License-Identifier: MIT
// The program's output on the desktop's accessibility bus, as a screen reader receives it: each control of every tab
// has a name. The test has a virtual display and an accessibility service of its own.
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/testmain.h"
#include "tools/tour/accessibletree.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QSet>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int startLimitMs = 20000;

const QString accessibilityBus = u"accessibility"_s; // name of the connection

/// Roles of operable controls, as AT-SPI names them.
const QStringList interactiveRoles{u"push button"_s, u"check box"_s, u"radio button"_s, u"combo box"_s,
                                   u"slider"_s,      u"text"_s,      u"table"_s,        u"page tab"_s,
                                   u"button menu"_s, u"list item"_s};

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

public Q_SLOTS:
    /// For QtDBus: the state of a control has changed.
    void receiveState(const QDBusMessage &message);
    /// For QtDBus: the name of a control has changed.
    void receiveName(const QDBusMessage &message);

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void everyControlReportsItsName();
    void keysAndPopUpsReportTheirRoles();
    void keysFollowTheKeyboardLayout();
    void everyTabReportsItsSelection();
    void statusLineReportsItsChanges();

private:
    [[nodiscard]] QDBusConnection bus() const;
    [[nodiscard]] QList<AccessibleControl> controls() const;
    [[nodiscard]] QList<AccessibleControl> pageTabs() const;
    [[nodiscard]] QStringList tabsInFront() const;

    void click(const AccessibleControl &control) const;
    /// Role and name, by now, of the control that has sent `event`.
    [[nodiscard]] QString nameOf(const QDBusMessage &event) const;

    QList<QDBusMessage> mRenamed;       // reports of changed names
    QStringList mSelected, mDeselected; // paths of the controls that reported it
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
    environment.insert(u"KESTRA_SPARE_DAEMONS"_s, u"1"_s);
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
    // An orderly end would store its selected key in the build's resources.
    mConfigurator.kill();
    mConfigurator.waitForFinished(5000);
    QDBusConnection::disconnectFromBus(accessibilityBus); // before the bus ends
    end(mService);
    mDaemon.reset();
    end(mDisplay);
}

QDBusConnection AtSpiTest::bus() const
{
    QDBusInterface service(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s);
    const QDBusReply<QString> address = service.call(u"GetAddress"_s);
    return QDBusConnection::connectToBus(address.value(), accessibilityBus);
}

QList<AccessibleControl> AtSpiTest::controls() const
{
    return AccessibleTree(bus(), uint(mConfigurator.processId())).showingControls();
}

void AtSpiTest::click(const AccessibleControl &control) const
{
    const QPoint middle = control.screenRect.center();
    QCOMPARE(
        QProcess::execute(u"env"_s, {u"DISPLAY="_s + mDisplayName, u"xdotool"_s, u"mousemove"_s,
                                     QString::number(middle.x()), QString::number(middle.y()), u"click"_s, u"1"_s}),
        0);
}

void AtSpiTest::receiveName(const QDBusMessage &message)
{
    if (message.arguments().value(0) == u"accessible-name"_s)
        mRenamed += message;
}

QString AtSpiTest::nameOf(const QDBusMessage &event) const
{
    QDBusInterface control(event.service(), event.path(), u"org.a11y.atspi.Accessible"_s, bus());
    const QDBusReply<QString> role = control.call(u"GetRoleName"_s);
    return role.value() + u": "_s + control.property("Name").toString();
}

void AtSpiTest::receiveState(const QDBusMessage &message)
{
    if (message.arguments().value(0) == u"selected"_s)
        (message.arguments().value(1).toInt() ? mSelected : mDeselected) += message.path();
}

QList<AccessibleControl> AtSpiTest::pageTabs() const
{
    QList<AccessibleControl> tabs = controls();
    tabs.removeIf([](const AccessibleControl &control) { return control.role != "page tab"_L1; });
    return tabs;
}

QStringList AtSpiTest::tabsInFront() const
{
    QList<AccessibleControl> tabs = pageTabs();
    tabs.removeIf([](const AccessibleControl &tab) { return !tab.states.contains("selected"_L1); });
    return names(tabs);
}

void AtSpiTest::everyControlReportsItsName()
{
    const auto isThere = [this] {
        const QList<AccessibleControl> all = controls();
        return std::ranges::any_of(all,
                                   [](const AccessibleControl &control) { return control.name == u"Assignment:"; });
    };
    QTRY_VERIFY_WITH_TIMEOUT(isThere(), startLimitMs);
    QStringList nameless;
    QList<qsizetype> counts;
    const QList<AccessibleControl> tabs = pageTabs();
    QCOMPARE(tabs.size(), 5);
    for (const AccessibleControl &tab : tabs) {
        click(tab);
        QTRY_COMPARE_WITH_TIMEOUT(tabsInFront(), QStringList{tab.name}, startLimitMs);
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
    QVERIFY(counts.at(3) > 15); // those of the lighting tab and the header
    QVERIFY2(nameless.isEmpty(), qPrintable(nameless.join(u'\n')));
}

void AtSpiTest::keysAndPopUpsReportTheirRoles()
{
    const QList<AccessibleControl> tabs = pageTabs();
    QVERIFY(!tabs.isEmpty());
    click(tabs.first());
    QTRY_COMPARE_WITH_TIMEOUT(tabsInFront(), QStringList{tabs.first().name}, startLimitMs);
    int keys = 0;
    int selectedKeys = 0;
    for (const AccessibleControl &control : controls()) {
        if (control.name == "Assignment:"_L1 && control.role != "label"_L1) {
            QCOMPARE(control.role, u"combo box"_s);
            QCOMPARE(control.value, u"Default key"_s);
        }
        if (control.role != "list item"_L1)
            continue;
        ++keys;
        selectedKeys += control.states.contains("selected"_L1);
    }
    QCOMPARE(keys, 124);
    QCOMPARE(selectedKeys, 1);
}

void AtSpiTest::keysFollowTheKeyboardLayout()
{
    const QList<AccessibleControl> tabs = pageTabs();
    QVERIFY(!tabs.isEmpty());
    click(tabs.first());
    QTRY_COMPARE_WITH_TIMEOUT(tabsInFront(), QStringList{tabs.first().name}, startLimitMs);
    const auto setLayout = [this](const QString &layout) {
        QProcess process;
        process.start(u"setxkbmap"_s, {u"-display"_s, mDisplayName, layout});
        return process.waitForFinished() && process.exitCode() == 0;
    };
    QVERIFY(setLayout(u"de"_s));
    QTRY_VERIFY_WITH_TIMEOUT(names(controls()).contains(u"Z (key Y)"_s), startLimitMs);
    QVERIFY(setLayout(u"us"_s));
    QTRY_VERIFY_WITH_TIMEOUT(names(controls()).contains(u"Y"_s), startLimitMs);
}

void AtSpiTest::everyTabReportsItsSelection()
{
    const QList<AccessibleControl> tabs = pageTabs();
    QCOMPARE(tabs.size(), 5);
    click(tabs.first());
    QTRY_COMPARE_WITH_TIMEOUT(tabsInFront(), QStringList{tabs.first().name}, startLimitMs);
    // Programs report only events that a client listens to.
    QDBusConnection connection = bus();
    QVERIFY(connection.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, u"StateChanged"_s, this,
                               SLOT(receiveState(QDBusMessage))));
    QDBusInterface registry(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s, u"org.a11y.atspi.Registry"_s,
                            connection);
    QCOMPARE(registry.call(u"RegisterEvent"_s, u"object:state-changed:selected"_s).type(), QDBusMessage::ReplyMessage);
    // A signal announces the listener to the program. Its answer to this later call shows that it has received the
    // signal.
    QCOMPARE(tabsInFront(), QStringList{tabs.first().name});
    for (const AccessibleControl &tab : {tabs.at(4), tabs.at(1)}) {
        click(tab);
        QTRY_COMPARE_WITH_TIMEOUT(tabsInFront(), QStringList{tab.name}, startLimitMs);
    }
    QTRY_COMPARE_WITH_TIMEOUT(mSelected.size(), 2, startLimitMs);
    QTRY_COMPARE_WITH_TIMEOUT(mDeselected.size(), 2, startLimitMs);
    QCOMPARE(mDeselected.at(1), mSelected.at(0));
    QCOMPARE(QSet(mSelected.begin(), mSelected.end()).size(), 2);
    QVERIFY(!mSelected.contains(mDeselected.at(0)));
}

void AtSpiTest::statusLineReportsItsChanges()
{
    QDBusConnection connection = bus();
    QVERIFY(connection.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, u"PropertyChange"_s, this,
                               SLOT(receiveName(QDBusMessage))));
    QDBusInterface registry(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s, u"org.a11y.atspi.Registry"_s,
                            connection);
    QCOMPARE(registry.call(u"RegisterEvent"_s, u"object:property-change:accessible-name"_s).type(),
             QDBusMessage::ReplyMessage);
    (void)tabsInFront(); // as above: the program has received the signal
    QCOMPARE(mDaemon->callKeyboard(u"PressGameMode"_s), QString());
    // The keys tab also renames its notice about game mode.
    const auto ofStatusBar = [this] {
        QStringList names;
        for (const QDBusMessage &event : std::as_const(mRenamed))
            names += nameOf(event);
        return names.filter(u"status bar: "_s);
    };
    QTRY_COMPARE_WITH_TIMEOUT(ofStatusBar().size(), 1, startLimitMs);
    QVERIFY2(ofStatusBar().first().endsWith(u"Game mode: on"_s), qPrintable(ofStatusBar().first()));
}

QTEST_MAIN(AtSpiTest)
#include "atspitest.moc"
