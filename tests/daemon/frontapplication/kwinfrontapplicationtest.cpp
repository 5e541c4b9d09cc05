// SPDX-License-Identifier: MIT
// The daemon hands its script to KWin: tested with a simulated scripting service on a private bus. KWin's
// execution of the script is not tested here.
#include "daemon/frontapplication/kwinfrontapplication.h"
#include "tests/support/testmain.h"

#include <QDBusConnection>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// The object at /Scripting.
class ScriptingService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")

public:
    explicit ScriptingService(int scriptNumber = 0)
        : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"kwin"_s)), mScriptNumber(scriptNumber)
    {
        mBus.registerObject(u"/Scripting"_s, this, QDBusConnection::ExportScriptableSlots);
        mBus.registerService(u"org.kde.KWin"_s);
    }
    ~ScriptingService() override
    {
        mBus.unregisterService(u"org.kde.KWin"_s);
        QDBusConnection::disconnectFromBus(u"kwin"_s);
    }

    QStringList calls;
    QByteArray script; // content of the file when it was loaded

public Q_SLOTS:
    Q_SCRIPTABLE int loadScript(const QString &path, const QString &name)
    {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            script = file.readAll();
        calls += u"load "_s + name;
        return std::exchange(mIsLoaded, true) ? -1 : mScriptNumber;
    }
    Q_SCRIPTABLE void start() { calls += u"start"_s; }
    Q_SCRIPTABLE bool unloadScript(const QString &name)
    {
        calls += u"unload "_s + name;
        QMetaObject::invokeMethod(
            this, [this] { mIsLoaded = false; }, Qt::QueuedConnection); // like KWin, after its answer
        return mIsLoaded;
    }
    void leaveLoaded() { mIsLoaded = true; }

private:
    QDBusConnection mBus;
    int mScriptNumber;
    bool mIsLoaded = false;
};

class KWinFrontApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void loadsAndUnloadsItsScript();
    void replacesTheScriptOfAKilledDaemon();
    void isUnusableWhenTheScriptIsRefused();
    void isUnusableWithoutKWin();
    void isUnusableOnX11();
    void isUnusableWhenKWinEnds();

private:
    std::unique_ptr<KWinFrontApplication> mSource;
    std::unique_ptr<QSignalSpy> mReady;
    std::unique_ptr<QSignalSpy> mUnusable;
};

void KWinFrontApplicationTest::init()
{
    qputenv("WAYLAND_DISPLAY", "wayland-test");
    mSource = std::make_unique<KWinFrontApplication>(QDBusConnection::sessionBus());
    mReady = std::make_unique<QSignalSpy>(mSource.get(), &FrontApplicationSource::ready);
    mUnusable = std::make_unique<QSignalSpy>(mSource.get(), &FrontApplicationSource::unusable);
}

void KWinFrontApplicationTest::loadsAndUnloadsItsScript()
{
    ScriptingService kwin;
    const QString name = u"org.quillkestra.FrontApplication"_s;
    mSource->start();
    QTRY_COMPARE(mReady->size(), 1);
    QTRY_COMPARE(kwin.calls, QStringList({u"unload "_s + name, u"load "_s + name, u"start"_s}));
    QCOMPARE(kwin.script, KWinFrontApplication::script());
    QVERIFY(kwin.script.contains("\"org.quillkestra.QuillCoreEngineMsgPort\", \"/FrontApplication\""));
    QVERIFY(kwin.script.contains("\"org.quillkestra.FrontApplication\", \"TellWindow\""));
    mSource.reset();
    QTRY_COMPARE(kwin.calls.last(), u"unload "_s + name);
}

void KWinFrontApplicationTest::replacesTheScriptOfAKilledDaemon()
{
    ScriptingService kwin;
    kwin.leaveLoaded();
    mSource->start();
    QTRY_COMPARE(mReady->size(), 1);
    QTRY_COMPARE(kwin.calls.last(), u"start"_s);
}

void KWinFrontApplicationTest::isUnusableWhenTheScriptIsRefused()
{
    const ScriptingService kwin(-1);
    mSource->start();
    QTRY_COMPARE(mUnusable->size(), 1);
    QCOMPARE(mReady->size(), 0);
}

void KWinFrontApplicationTest::isUnusableWithoutKWin()
{
    mSource->start();
    QCOMPARE(mUnusable->size(), 1);
}

void KWinFrontApplicationTest::isUnusableOnX11()
{
    const ScriptingService kwin;
    qunsetenv("WAYLAND_DISPLAY");
    mSource->start();
    QCOMPARE(mUnusable->size(), 1);
    QCOMPARE(kwin.calls, QStringList());
}

void KWinFrontApplicationTest::isUnusableWhenKWinEnds()
{
    auto kwin = std::make_unique<ScriptingService>();
    mSource->start();
    QTRY_COMPARE(mReady->size(), 1);
    kwin.reset();
    QTRY_COMPARE(mUnusable->size(), 1);
}

QTEST_GUILESS_MAIN(KWinFrontApplicationTest)
#include "kwinfrontapplicationtest.moc"
