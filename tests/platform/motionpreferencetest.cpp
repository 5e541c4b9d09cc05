// SPDX-License-Identifier: MIT
// The desktop's preference for motion, from a simulated settings portal on a private bus.
#include "platform/motionpreference.h"
#include "tests/support/testmain.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Settings = QMap<QString, QVariantMap>;

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString interfaceGroup = u"org.gnome.desktop.interface"_s;
const QString appearanceGroup = u"org.freedesktop.appearance"_s;

class FakePortal : public QDBusVirtualObject
{
public:
    FakePortal() : mConnection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s))
    {
        mConnection.registerVirtualObject(path, this);
    }
    ~FakePortal() override
    {
        leave();
        mConnection.unregisterObject(path);
        QDBusConnection::disconnectFromBus(u"portal"_s);
    }

    bool come(const Settings &settings)
    {
        mSettings = settings;
        return mConnection.registerService(service);
    }
    void leave() { mConnection.unregisterService(service); }
    void change(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        mConnection.send(signal);
    }
    [[nodiscard]] int reads() const { return mReads; }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() != interface || message.member() != "ReadAll"_L1)
            return false;
        const QStringList groups = message.arguments().value(0).toStringList();
        Settings answer;
        for (auto group = mSettings.cbegin(); group != mSettings.cend(); ++group) {
            if (groups.contains(group.key()))
                answer.insert(group.key(), group.value());
        }
        ++mReads;
        return connection.send(message.createReply(QVariant::fromValue(answer)));
    }

private:
    QDBusConnection mConnection;
    Settings mSettings;
    int mReads = 0;
};

Settings settings(const QVariant &animations, const QVariant &reducedMotion)
{
    Settings result;
    if (animations.isValid())
        result[interfaceGroup].insert(u"enable-animations"_s, animations);
    if (reducedMotion.isValid())
        result[appearanceGroup].insert(u"reduced-motion"_s, reducedMotion);
    return result;
}

} // namespace

class MotionPreferenceTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    /// For QtDBus: the portal announces a changed setting.
    void settingChanged(const QDBusMessage &message) { mChangedKeys += message.arguments().value(1).toString(); }

private Q_SLOTS:
    void initTestCase();
    void init() { mChangedKeys.clear(); }
    void readsTheSettingOfThePortal_data();
    void readsTheSettingOfThePortal();
    void followsChanges();
    void allowsMotionWithoutAPortal();
    void allowsMotionWithoutABus();
    void readsAPortalThatStartsLater();

private:
    QStringList mChangedKeys; // as the bus reported to this process
};

void MotionPreferenceTest::initTestCase()
{
    qDBusRegisterMetaType<Settings>();
    // From any sender, because otherwise this connection would watch the portal's name before a preference does.
    QVERIFY(QDBusConnection::sessionBus().connect({}, path, interface, u"SettingChanged"_s, this,
                                                  SLOT(settingChanged(QDBusMessage))));
}

void MotionPreferenceTest::readsTheSettingOfThePortal_data()
{
    QTest::addColumn<QVariant>("animations");
    QTest::addColumn<QVariant>("reducedMotion");
    QTest::addColumn<bool>("isAllowed");
    QTest::newRow("nothing") << QVariant() << QVariant() << true;
    QTest::newRow("animations on") << QVariant(true) << QVariant() << true;
    QTest::newRow("animations off") << QVariant(false) << QVariant() << false;
    QTest::newRow("no preference") << QVariant(true) << QVariant(0U) << true;
    QTest::newRow("less motion") << QVariant(true) << QVariant(1U) << false;
    QTest::newRow("less motion alone") << QVariant() << QVariant(1U) << false;
    QTest::newRow("both") << QVariant(false) << QVariant(1U) << false;
    QTest::newRow("a value of later days") << QVariant(true) << QVariant(7U) << true;
    QTest::newRow("wrong types") << QVariant(u"false"_s) << QVariant(u"1"_s) << true;
}

void MotionPreferenceTest::readsTheSettingOfThePortal()
{
    QFETCH(QVariant, animations);
    QFETCH(QVariant, reducedMotion);
    QFETCH(bool, isAllowed);
    FakePortal portal;
    QVERIFY(portal.come(settings(animations, reducedMotion)));
    const MotionPreference preference(QDBusConnection::sessionBus());
    QVERIFY(preference.isMotionAllowed()); // as long as it has not answered
    const QSignalSpy changes(&preference, &MotionPreference::changed);
    QTRY_COMPARE(portal.reads(), 1);
    // Signals after the answer on its connection are read after it.
    portal.change(interfaceGroup, u"another-key"_s, false);
    QTRY_COMPARE(mChangedKeys, QStringList{u"another-key"_s});
    QCOMPARE(preference.isMotionAllowed(), isAllowed);
    QCOMPARE(changes.size(), isAllowed ? 0 : 1);
}

void MotionPreferenceTest::followsChanges()
{
    FakePortal portal;
    QVERIFY(portal.come(settings(true, 0U)));
    const MotionPreference preference(QDBusConnection::sessionBus());
    const QSignalSpy changes(&preference, &MotionPreference::changed);
    QTRY_COMPARE(portal.reads(), 1);
    portal.change(interfaceGroup, u"enable-animations"_s, false);
    QTRY_COMPARE(changes.size(), 1);
    QVERIFY(!preference.isMotionAllowed());
    portal.change(appearanceGroup, u"reduced-motion"_s, 1U);
    portal.change(interfaceGroup, u"enable-animations"_s, true); // one of the two settings still reduces motion
    portal.change(u"org.example"_s, u"reduced-motion"_s, 0U);
    portal.change(appearanceGroup, u"reduced-motion"_s, 0U);
    QTRY_COMPARE(changes.size(), 2);
    QVERIFY(preference.isMotionAllowed());
}

void MotionPreferenceTest::allowsMotionWithoutAPortal()
{
    const MotionPreference preference(QDBusConnection::sessionBus());
    QVERIFY(preference.isMotionAllowed());
}

void MotionPreferenceTest::allowsMotionWithoutABus()
{
    const MotionPreference preference(QDBusConnection(u"none such"_s));
    QVERIFY(preference.isMotionAllowed());
}

void MotionPreferenceTest::readsAPortalThatStartsLater()
{
    FakePortal portal;
    const MotionPreference preference(QDBusConnection::sessionBus());
    const QSignalSpy changes(&preference, &MotionPreference::changed);
    QVERIFY(portal.come(settings(false, {})));
    QTRY_COMPARE(changes.size(), 1);
    QVERIFY(!preference.isMotionAllowed());
}

QTEST_GUILESS_MAIN(MotionPreferenceTest)
#include "motionpreferencetest.moc"
