// SPDX-License-Identifier: MIT
// The layout of a private X server, which the test changes with setxkbmap as a user does.
#include "platform/x11keymap.h"
#include "tests/support/testdesktop.h"
#include "tests/support/testmain.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class X11KeymapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void followsTheLayoutOfTheServer();
    void withoutAServerThereIsNoLayout();
    void endOfTheServerKeepsTheLayout();

private:
    [[nodiscard]] QByteArray display() const;
    [[nodiscard]] bool setLayout(const QString &layout) const;

    std::unique_ptr<TestDesktop> mDesktop;
};

namespace {

QString characterOf(const X11Keymap &keymap, const char *key)
{
    return keymap.keymap().charactersOf(key).plain;
}

} // namespace

void X11KeymapTest::init()
{
    mDesktop = std::make_unique<TestDesktop>(TestDesktop::Kind::x11);
    QVERIFY(mDesktop->start());
}

void X11KeymapTest::cleanup()
{
    mDesktop.reset();
}

QByteArray X11KeymapTest::display() const
{
    return mDesktop->in({}).value(u"DISPLAY"_s).toLatin1();
}

bool X11KeymapTest::setLayout(const QString &layout) const
{
    QProcess process;
    process.setProcessEnvironment(mDesktop->in(QProcessEnvironment::systemEnvironment()));
    process.start(u"setxkbmap"_s, {layout});
    return process.waitForFinished() && process.exitCode() == 0;
}

void X11KeymapTest::followsTheLayoutOfTheServer()
{
    QVERIFY(setLayout(u"us"_s));
    const X11Keymap keymap(display());
    QVERIFY(!keymap.keymap().isNull());
    QCOMPARE(characterOf(keymap, "AD06"), u"y"_s);
    QSignalSpy changed(&keymap, &X11Keymap::changed);
    QVERIFY(setLayout(u"de"_s));
    QTRY_COMPARE(characterOf(keymap, "AD06"), u"z"_s);
    QVERIFY(changed.count() > 0);
    QVERIFY(setLayout(u"fr"_s));
    QTRY_COMPARE(characterOf(keymap, "AD01"), u"a"_s);
    QVERIFY(setLayout(u"us"_s));
    QTRY_COMPARE(characterOf(keymap, "AD01"), u"q"_s);
}

void X11KeymapTest::withoutAServerThereIsNoLayout()
{
    const X11Keymap keymap(QByteArray(":54321"));
    QVERIFY(keymap.keymap().isNull());
}

void X11KeymapTest::endOfTheServerKeepsTheLayout()
{
    QVERIFY(setLayout(u"de"_s));
    const X11Keymap keymap(display());
    QCOMPARE(characterOf(keymap, "AD06"), u"z"_s);
    mDesktop->stop();
    QCoreApplication::processEvents();
    QCOMPARE(characterOf(keymap, "AD06"), u"z"_s);
}

QTEST_MAIN(X11KeymapTest)
#include "x11keymaptest.moc"
