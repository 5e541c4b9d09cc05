// SPDX-License-Identifier: MIT
#include "daemon/keyboards/timedlight.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Backlight::Settings lit(int effect, int brightness = Backlight::maximumBrightness)
{
    return {.isOn = true, .color = {10, 20, 30}, .effect = effect, .brightness = brightness};
}

constexpr int fixed = Backlight::fixedColorEffect;
constexpr int cycling = Backlight::spectrumCyclingEffect;

} // namespace

class TimedLightTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isOffAtFirst();
    void announcesEachNewColorOnce();
    void sleepsWhileNothingChanges();
    void wakesOnceForEachChange();
    void catchesUpAfterALongPause();
    void isDarkWithoutPower();
    void continuesAutomatically();

private:
    Backlight::Time mNow{};
    std::unique_ptr<TimedLight> mLight;
    QStringList mAnnounced;
};

void TimedLightTest::init()
{
    mNow = 5s;
    mAnnounced.clear();
    mLight = std::make_unique<TimedLight>([this] { return mNow; });
    connect(mLight.get(), &TimedLight::changed, this,
            [this](Backlight::Color color) { mAnnounced += Backlight::colorText(color); });
}

void TimedLightTest::isOffAtFirst()
{
    QVERIFY(mLight->color().isOff());
    QVERIFY(!mLight->sleep());
}

void TimedLightTest::announcesEachNewColorOnce()
{
    mLight->show(lit(fixed));
    mLight->show(lit(fixed));
    mLight->look();
    mLight->show(lit(2)); // unknown effect, looks the same
    mLight->show(lit(fixed, 2));
    mLight->show(lit(fixed, 0));
    Backlight::Settings off = lit(fixed);
    off.isOn = false;
    mLight->show(off);
    QCOMPARE(mAnnounced, QStringList({u"#0a141e"_s, u"#050a0f"_s, u"#000000"_s}));
}

void TimedLightTest::sleepsWhileNothingChanges()
{
    mLight->show(lit(cycling));
    QVERIFY(mLight->sleep());
    Backlight::Settings off = lit(cycling);
    off.isOn = false;
    for (const Backlight::Settings &still : {lit(fixed), lit(2), off, lit(cycling, 0)}) {
        mLight->show(lit(cycling));
        mLight->show(still);
        QVERIFY(!mLight->sleep());
    }
}

void TimedLightTest::wakesOnceForEachChange()
{
    mNow = 5s + 30ms;
    mLight->show(lit(cycling));
    QCOMPARE(mLight->sleep(), std::optional(Backlight::spectrumStep - 30ms));
    mNow += *mLight->sleep();
    mLight->look();
    QCOMPARE(mLight->sleep(), std::optional(Backlight::spectrumStep));
    QCOMPARE(mAnnounced.size(), 2);
    mNow += *mLight->sleep() - 1ms; // a timer that fires early
    mLight->look();
    QCOMPARE(mLight->sleep(), std::optional(Backlight::Time(1ms)));
    QCOMPARE(mAnnounced.size(), 2);
}

void TimedLightTest::catchesUpAfterALongPause()
{
    mLight->show(lit(cycling));
    mNow += 1h + 3ms; // the machine was suspended
    mLight->look();
    QCOMPARE(mAnnounced.size(), 1); // an hour is a whole number of rounds, so the colour is the same
    QCOMPARE(mLight->sleep(), std::optional(Backlight::spectrumStep - 3ms));
}

void TimedLightTest::isDarkWithoutPower()
{
    mLight->show(lit(cycling));
    mLight->setPowered(false);
    QVERIFY(mLight->color().isOff());
    QVERIFY(!mLight->sleep());
    QCOMPARE(mAnnounced.last(), u"#000000"_s);
    mLight->show(lit(fixed));
    QVERIFY(mLight->color().isOff());
    mLight->setPowered(true);
    QCOMPARE(mAnnounced.last(), u"#0a141e"_s);
}

void TimedLightTest::continuesAutomatically()
{
    TimedLight light; // uses the machine's clock
    QStringList seen;
    connect(&light, &TimedLight::changed, this,
            [&seen](Backlight::Color color) { seen += Backlight::colorText(color); });
    light.show(lit(cycling));
    QTRY_VERIFY(seen.size() >= 3);
    QCOMPARE(QSet<QString>(seen.begin(), seen.end()).size(), seen.size());
}

QTEST_GUILESS_MAIN(TimedLightTest)
#include "timedlighttest.moc"
