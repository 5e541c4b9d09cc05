// SPDX-License-Identifier: MIT
// The screen while the program opens the keyboard. The window is painted before the program sends its request, and
// while the program waits for a missing daemon, the screen shows the window alone. The sheet that was just open leaves
// no trace, although the program processes no event for six seconds. Runs on a private desktop.
#include "base/daemonprotocol.h"
#include "platform/messageport.h"
#include "tests/support/scripteddaemon.h"
#include "tests/support/testdesktop.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <atomic>
#include <semaphore>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize screenSize(1280, 800);
constexpr int startLimitMs = 30'000;
constexpr int bytesPerDot = 4;

QImage imageOf(const QByteArray &picture)
{
    return QImage(reinterpret_cast<const uchar *>(picture.constData()), screenSize.width(), screenSize.height(),
                  QImage::Format_RGB32)
        .copy();
}

int differingDots(const QImage &one, const QImage &other)
{
    int count = 0;
    for (int y = 0; y < screenSize.height(); ++y) {
        for (int x = 0; x < screenSize.width(); ++x)
            count += one.pixel(x, y) != other.pixel(x, y);
    }
    return count;
}

} // namespace

class RestoringSheetPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesNoTraceWhileTheProgramWaits();
    void windowIsOnTheScreenBeforeTheFirstRequest();

private:
    /// Starts the program and takes a picture in the middle of its wait.
    QImage pictureOfTheWait(const TestDesktop &desktop, const QStringList &arguments);
};

void RestoringSheetPictureTest::initTestCase()
{
    for (const QString &program : {u"Xvfb"_s, u"openbox"_s}) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            QSKIP("needs Xvfb and openbox");
    }
}

QImage RestoringSheetPictureTest::pictureOfTheWait(const TestDesktop &desktop, const QStringList &arguments)
{
    const QByteArray empty = desktop.picture();
    QProcessEnvironment environment = desktop.in(QProcessEnvironment::systemEnvironment());
    environment.insert(u"KESTRA_BENCH_READY"_s, u"1"_s);
    environment.insert(u"KESTRA_SPARE_DAEMONS"_s, u"1"_s);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/kestra-configurator"_s, arguments);
    // The pictures from the first visible content to the end of the wait.
    QList<QByteArray> pictures;
    QElapsedTimer time;
    time.start();
    while (!program.waitForReadyRead(100) && program.state() != QProcess::NotRunning && time.elapsed() < startLimitMs) {
        const QByteArray picture = desktop.picture();
        if (picture != empty)
            pictures += picture;
    }
    const bool isReady = program.readAllStandardOutput().startsWith("ready");
    program.kill();
    program.waitForFinished(startLimitMs);
    const auto isEmptyAgain = [&] { return desktop.picture() == empty; };
    if (!isReady || pictures.size() < 10 || !QTest::qWaitFor(isEmptyAgain, startLimitMs))
        return {};
    return imageOf(pictures.at(pictures.size() / 2));
}

void RestoringSheetPictureTest::leavesNoTraceWhileTheProgramWaits()
{
    QVERIFY(!RemoteMessagePort::open(DaemonProtocol::requestPortName));
    TestDesktop desktop(TestDesktop::Kind::x11, screenSize);
    QVERIFY(desktop.start());
    QCOMPARE(desktop.picture().size(), screenSize.width() * screenSize.height() * bytesPerDot);
    const QImage without = pictureOfTheWait(desktop, {u"--no-launch-notice"_s}); // this launch shows no sheet
    QVERIFY(!without.isNull());
    const QImage with = pictureOfTheWait(desktop, {});
    QVERIFY(!with.isNull());
    const QDir folder(QCoreApplication::applicationDirPath() + u"/screenshots"_s);
    QVERIFY(folder.mkpath(u"."_s));
    QVERIFY(without.save(folder.filePath(u"waiting-without-sheet.png"_s)));
    QVERIFY(with.save(folder.filePath(u"waiting-after-sheet.png"_s)));
    QCOMPARE(differingDots(with, without), 0);
}

void RestoringSheetPictureTest::windowIsOnTheScreenBeforeTheFirstRequest()
{
    TestDesktop desktop(TestDesktop::Kind::x11, screenSize);
    QVERIFY(desktop.start());
    const QImage empty = imageOf(desktop.picture());
    // The daemon answers the bus, but no request: the first request waits until the picture is taken.
    ScriptedDaemon daemon;
    std::atomic<bool> isAsked = false;
    std::binary_semaphore isPictureTaken(0);
    daemon.setScript(DaemonProtocol::Command::openDevice, [&](const auto &) {
        isAsked = true;
        isPictureTaken.acquire();
        return std::vector<ScriptedDaemon::Reply>();
    });
    QProcess program;
    QProcessEnvironment environment = desktop.in(QProcessEnvironment::systemEnvironment());
    environment.insert(u"KESTRA_SPARE_DAEMONS"_s, u"1"_s);
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/kestra-configurator"_s, QStringList());
    const bool wasAsked = QTest::qWaitFor([&] { return isAsked.load(); }, startLimitMs);
    const QImage shown = imageOf(desktop.picture());
    isPictureTaken.release();
    program.kill();
    program.waitForFinished(startLimitMs);
    QVERIFY(wasAsked);
    QVERIFY(shown.save(QCoreApplication::applicationDirPath() + u"/screenshots/asking.png"_s));
    QVERIFY(differingDots(shown, empty) > screenSize.width() * screenSize.height() / 2);
    QSet<QRgb> colors; // an unpainted window has few
    for (int y = 0; y < screenSize.height(); ++y) {
        for (int x = 0; x < screenSize.width(); ++x)
            colors += shown.pixel(x, y);
    }
    QVERIFY2(colors.size() > 100, qPrintable(QString::number(colors.size())));
}

QTEST_GUILESS_MAIN(RestoringSheetPictureTest)
#include "restoringsheetpicturetest.moc"
