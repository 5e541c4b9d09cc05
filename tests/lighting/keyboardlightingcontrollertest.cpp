// SPDX-License-Identifier: MIT
#include "lighting/keyboardlightingcontroller.h"
#include "base/text.h"
#include "lighting/backlight.h"
#include "lighting/lightingdelegate.h"
#include "platform/addresses.h"
#include "platform/colorwell.h"
#include "platform/radiogroup.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

class RecordingDelegate : public LightingDelegate
{
public:
    void updateValueForSetting(const QVariantMap &settings) override { sent.append(settings); }

    QList<QVariantMap> sent;
};

QVariantMap color(double red, double green, double blue)
{
    return {{u"Red"_s, red}, {u"Green"_s, green}, {u"Blue"_s, blue}, {u"Zone"_s, 3}};
}

QVariantMap lightingRecord()
{
    return {{u"ProfileName"_s, u"Work"_s},
            {u"BacklightLED"_s, 1},
            {u"LEDKBColors"_s, QVariantList{color(1, 0, 0.2), color(0, 1, 0)}},
            {u"LEDKBEffects"_s, 0},
            {u"BrightnessKBNormal"_s, 3},
            {u"GameLightingOn"_s, true},
            {u"ScrollLED"_s, 0}};
}

const QStringList zoneControls{u"mMain"_s,          u"mSidestrips"_s,          u"mUnderglow"_s,
                               u"mMainColor"_s,     u"mSidestripsColor"_s,     u"mUnderglowColor"_s,
                               u"mInGameAPMMain"_s, u"mInGameAPMSidestrips"_s, u"mInGameAPMUnderglow"_s};
const QStringList otherControls{u"mBrightnessValue"_s, u"mLighting"_s, u"mRestoreSettings"_s, u"mBrightnessLabel"_s,
                                u"mEnableAddOnHighlight"_s};
const QStringList greyedLabels{u"mProfileNameLabel"_s,      u"mCurrentProfileLabel"_s, u"mDriverVersionLabel"_s,
                               u"mFirmwareVersionLabel"_s,  u"mDriverVersion"_s,       u"mFirmwareVersion"_s,
                               u"mBrightnessOffLabel"_s,    u"mBrightnessDimLabel"_s,  u"mBrightnessNormaLabel"_s,
                               u"mBrightnessBrightLabel"_s, u"mBrightnessLabel"_s};

} // namespace

class KeyboardLightingControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(installEnglishTexts()); }
    void init();
    void cleanup();

    void nameOfTheProfileStaysOnItsLine();
    void refreshShowsTheRecord();
    void refreshSendsNothing();
    void refreshWaitsForARecord();
    void refreshReadsNumbersOfEveryKind_data();
    void refreshReadsNumbersOfEveryKind();
    void brightnessBeyondTheSliderStaysAtItsEndAndSendsNothing();
    void effectSelectsTheRow_data();
    void effectSelectsTheRow();
    void recordWithoutColorsLeavesTheWellAlone_data();
    void recordWithoutColorsLeavesTheWellAlone();
    void fixedColorAlsoSendsTheBacklight();
    void spectrumCyclingSendsOnlyTheEffect();
    void noSelectedRowSendsNothing();
    void colorReplacesOnlyTheFirstElement();
    void colorWithoutAFirstElementSendsNothing();
    void pickingInTheColorDialogSends();
    void cancellingTheColorDialogSendsNothing();
    void mainBoxIsKeptLocally();
    void addOnHighlightSendsABoolean();
    void brightnessSendsTheLevel();
    void brightnessHasFiveStepsUnderFourCaptions();
    void captionsAreUnderTheirSteps_data();
    void captionsAreUnderTheirSteps();
    void brightnessChangedOnTheKeyboardSendsNothing();
    void controlsWithoutEffectSendNothing();
    void toolTipsShowWhichControlsHaveNoEffect();
    void previewShowsTheLight();
    void previewFollowsTheBrightnessKeys();
    void updateValueSendsOneNumber();
    void updatesOpenTheDownloadPage();
    void restoreAsksFirst();
    void restoreKeepsTheNameAndForcesTwoValues();
    void restoreAlertClosesWithItsProfile();
    void colorDialogClosesWithItsProfile();
    void restoreDependsOnlyOnTheAnswer();
    void restoreKeepsAnyName();
    void cancelledRestoreSendsNothing();
    void restoreWithoutANameHasAnEmptyArgument();
    void controlsFollowTheirState();
    void labelsAreGreyedWithoutADevice();
    void greyFollowsTheColorsOfTheDesktop();
    void spinnerTakesThePlaceOfTheVersion();
    void awakeningEmptiesTheDictionaries();
    void versionFieldsCanBeReplaced();

private:
    template <typename T> T *outlet(const char *name) const { return mWindow->findChild<T *>(QLatin1StringView(name)); }
    Sheet *alert() const { return mWindow->findChild<Sheet *>(u"alert"_s); }
    void press(QLatin1StringView alertButton);
    /// Simulates a profile switch by the application in front, or a change of the same profile elsewhere.
    void refreshWithProfile(const QString &name);

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<KeyboardLightingController> mController;
    RecordingDelegate mDelegate;
    QList<QUrl> mOpened;
};

void KeyboardLightingControllerTest::init()
{
    mDelegate.sent.clear();
    mOpened.clear();
    mWindow = std::make_unique<QWidget>();
    mController = std::make_unique<KeyboardLightingController>();
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mController->view());
    mController->awakeFromNib();
    mController->setMLightingDelegate(&mDelegate);
    mController->setMLightingWindow(mWindow.get());
    mController->setUrlOpener([this](const QUrl &address) { mOpened.append(address); });
    mController->setMLightingSettingsDict(lightingRecord());
    mController->updateUISettings();
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void KeyboardLightingControllerTest::cleanup()
{
    mController.reset();
    mWindow.reset();
}

void KeyboardLightingControllerTest::press(QLatin1StringView alertButton)
{
    QVERIFY(alert());
    auto *button = alert()->findChild<QPushButton *>(alertButton);
    QVERIFY(button);
    button->click();
}

void KeyboardLightingControllerTest::refreshWithProfile(const QString &name)
{
    QVariantMap record = lightingRecord();
    record[u"ProfileName"_s] = name;
    record[u"BrightnessKBNormal"_s] = 2;
    mController->setMLightingSettingsDict(record);
    mController->updateUISettings();
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 2);
}

void KeyboardLightingControllerTest::nameOfTheProfileStaysOnItsLine()
{
    refreshWithProfile(u"Game\n\u202eexe"_s);
    QCOMPARE(outlet<QLabel>("mProfileNameLabel")->text(), u"Game  exe"_s);
}

void KeyboardLightingControllerTest::refreshShowsTheRecord()
{
    QVERIFY(outlet<QCheckBox>("mMain")->isChecked());
    QCOMPARE(outlet<QLabel>("mProfileNameLabel")->text(), u"Work"_s);
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 3);
    QVERIFY(outlet<QCheckBox>("mEnableAddOnHighlight")->isChecked());
    QCOMPARE(outlet<ColorWell>("mMainColor")->color().name(), u"#ff0033"_s);
    QCOMPARE(outlet<ColorWell>("mMainColor")->color().alphaF(), 1.0f);
    QCOMPARE(outlet<RadioGroup>("mLighting")->selectedRow(), 0);
    QVariantMap other = lightingRecord();
    other.insert({{u"BacklightLED"_s, 0}, {u"BrightnessKBNormal"_s, 0}, {u"GameLightingOn"_s, false}});
    mController->setMLightingSettingsDict(other);
    mController->updateUISettings();
    QVERIFY(!outlet<QCheckBox>("mMain")->isChecked());
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 0);
    QVERIFY(!outlet<QCheckBox>("mEnableAddOnHighlight")->isChecked());
}

void KeyboardLightingControllerTest::refreshSendsNothing()
{
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::refreshWaitsForARecord()
{
    mController->setMLightingSettingsDict(std::nullopt);
    mController->updateUISettings();
    QCOMPARE(outlet<QLabel>("mProfileNameLabel")->text(), u"Work"_s);
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 3);
}

void KeyboardLightingControllerTest::refreshReadsNumbersOfEveryKind_data()
{
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<bool>("isOn");
    QTest::newRow("integer") << QVariant(1) << true;
    QTest::newRow("boolean") << QVariant(true) << true;
    QTest::newRow("real") << QVariant(1.0) << true;
    QTest::newRow("real below one, cut") << QVariant(0.9) << false;
    QTest::newRow("boolean off") << QVariant(false) << false;
    QTest::newRow("no number") << QVariant(QVariantList{1}) << false;
    QTest::newRow("absent") << QVariant() << false;
}

void KeyboardLightingControllerTest::refreshReadsNumbersOfEveryKind()
{
    QFETCH(QVariant, number);
    QFETCH(bool, isOn);
    QVariantMap record = lightingRecord();
    for (const QString &key : {u"BacklightLED"_s, u"GameLightingOn"_s, u"BrightnessKBNormal"_s})
        record[key] = number;
    mController->setMLightingSettingsDict(record);
    mController->updateUISettings();
    QCOMPARE(outlet<QCheckBox>("mMain")->isChecked(), isOn);
    QCOMPARE(outlet<QCheckBox>("mEnableAddOnHighlight")->isChecked(), isOn);
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), isOn ? 1 : 0);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::brightnessBeyondTheSliderStaysAtItsEndAndSendsNothing()
{
    for (const auto &[stored, shown] : {std::pair(100, 4), std::pair(-1, 0)}) {
        QVariantMap record = lightingRecord();
        record[u"BrightnessKBNormal"_s] = stored;
        mController->setMLightingSettingsDict(record);
        mController->updateUISettings();
        QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), shown);
        mController->updateBrightnessValue(2);
        mController->updateBrightnessValue(stored);
        QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), shown);
    }
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::effectSelectsTheRow_data()
{
    QTest::addColumn<QVariant>("effect");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("fixed colour") << QVariant(0) << 1 << 0;
    QTest::newRow("spectrum cycling") << QVariant(4) << 0 << 1;
    QTest::newRow("unknown, first row") << QVariant(2) << 0 << 0;
    QTest::newRow("unknown, second row") << QVariant(2) << 1 << 1;
    QTest::newRow("none given") << QVariant() << 1 << 1;
}

void KeyboardLightingControllerTest::effectSelectsTheRow()
{
    QFETCH(QVariant, effect);
    QFETCH(int, before);
    QFETCH(int, after);
    outlet<RadioGroup>("mLighting")->selectRow(before);
    QVariantMap record = lightingRecord();
    record[u"LEDKBEffects"_s] = effect;
    mController->setMLightingSettingsDict(record);
    mController->updateUISettings();
    QCOMPARE(outlet<RadioGroup>("mLighting")->selectedRow(), after);
}

void KeyboardLightingControllerTest::recordWithoutColorsLeavesTheWellAlone_data()
{
    QTest::addColumn<QVariant>("colors");
    QTest::newRow("none") << QVariant();
    QTest::newRow("empty array") << QVariant(QVariantList());
    QTest::newRow("text") << QVariant(u"red"_s);
}

void KeyboardLightingControllerTest::recordWithoutColorsLeavesTheWellAlone()
{
    QFETCH(QVariant, colors);
    QVariantMap record = lightingRecord();
    record[u"LEDKBColors"_s] = colors;
    mController->setMLightingSettingsDict(record);
    mController->updateUISettings();
    QCOMPARE(outlet<ColorWell>("mMainColor")->color().name(), u"#ff0033"_s);
}

void KeyboardLightingControllerTest::fixedColorAlsoSendsTheBacklight()
{
    outlet<RadioGroup>("mLighting")->selectRow(1);
    outlet<RadioGroup>("mLighting")->findChildren<QRadioButton *>().at(0)->click();
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"BacklightLED"_s, 1}, {u"LEDKBEffects"_s, 0}}}));
}

void KeyboardLightingControllerTest::spectrumCyclingSendsOnlyTheEffect()
{
    outlet<RadioGroup>("mLighting")->findChildren<QRadioButton *>().at(1)->click();
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"LEDKBEffects"_s, 4}}}));
}

void KeyboardLightingControllerTest::noSelectedRowSendsNothing()
{
    KeyboardLightingController controller;
    controller.awakeFromNib();
    controller.setMLightingDelegate(&mDelegate);
    QCOMPARE(controller.view()->findChild<RadioGroup *>(u"mLighting"_s)->selectedRow(), -1);
    controller.selectColor(nullptr);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::colorReplacesOnlyTheFirstElement()
{
    outlet<ColorWell>("mMainColor")->setColor(QColor::fromRgbF(0, 0.6f, 1, 0.3f));
    mController->clickMainColor(outlet<ColorWell>("mMainColor"));
    QCOMPARE(mDelegate.sent.size(), 1);
    QCOMPARE(mDelegate.sent.first().keys(), QStringList{u"LEDKBColors"_s});
    const QVariantList colors = mDelegate.sent.first().value(u"LEDKBColors"_s).toList();
    QCOMPARE(colors.size(), 2);
    const QVariantMap first = colors.first().toMap();
    QCOMPARE(first.value(u"Red"_s), QVariant(0.0));
    QCOMPARE(first.value(u"Green"_s), QVariant(0.6));
    QCOMPARE(first.value(u"Blue"_s), QVariant(1.0));
    QCOMPARE(first.value(u"Zone"_s), QVariant(3));
    QCOMPARE(first.size(), 4);
    QCOMPARE(colors.at(1).toMap(), color(0, 1, 0));
    QCOMPARE(mController->lightingSettingsDict(), lightingRecord());
}

void KeyboardLightingControllerTest::colorWithoutAFirstElementSendsNothing()
{
    for (const QVariant &colors : {QVariant(QVariantList()), QVariant(u"red"_s)}) {
        QVariantMap record = lightingRecord();
        record[u"LEDKBColors"_s] = colors;
        mController->setMLightingSettingsDict(record);
        mController->clickMainColor(nullptr);
        QVERIFY(mDelegate.sent.isEmpty());
    }
}

void KeyboardLightingControllerTest::pickingInTheColorDialogSends()
{
    auto *well = outlet<ColorWell>("mMainColor");
    well->click();
    auto *dialog = well->findChild<QColorDialog *>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->windowModality(), Qt::WindowModal);
    QCOMPARE(dialog->currentColor().name(), u"#ff0033"_s);
    dialog->setCurrentColor(QColor(0, 0, 255));
    dialog->accept();
    QCOMPARE(well->color().name(), u"#0000ff"_s);
    QCOMPARE(mDelegate.sent.size(), 1);
    QCOMPARE(mDelegate.sent.first().value(u"LEDKBColors"_s).toList().first().toMap().value(u"Blue"_s), QVariant(1.0));
}

void KeyboardLightingControllerTest::cancellingTheColorDialogSendsNothing()
{
    auto *well = outlet<ColorWell>("mMainColor");
    well->click();
    auto *dialog = well->findChild<QColorDialog *>();
    QVERIFY(dialog);
    dialog->setCurrentColor(QColor(0, 0, 255));
    dialog->reject();
    QCOMPARE(well->color().name(), u"#ff0033"_s);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::mainBoxIsKeptLocally()
{
    outlet<QCheckBox>("mMain")->click();
    QCOMPARE(mController->userSettingsDict(), (QVariantMap{{u"ScrollLED"_s, 0}}));
    outlet<QCheckBox>("mMain")->click();
    QCOMPARE(mController->userSettingsDict(), (QVariantMap{{u"ScrollLED"_s, 1}}));
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::addOnHighlightSendsABoolean()
{
    outlet<QCheckBox>("mEnableAddOnHighlight")->click();
    outlet<QCheckBox>("mEnableAddOnHighlight")->click();
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"GameLightingOn"_s, false}}, {{u"GameLightingOn"_s, true}}}));
    QCOMPARE(mDelegate.sent.first().value(u"GameLightingOn"_s).userType(), int(QMetaType::Bool));
}

void KeyboardLightingControllerTest::brightnessSendsTheLevel()
{
    auto *slider = outlet<QSlider>("mBrightnessValue");
    QCOMPARE(slider->minimum(), 0);
    QCOMPARE(slider->maximum(), 4);
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Right);
    QTest::keyClick(slider, Qt::Key_Home);
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"BrightnessKBNormal"_s, 4}}, {{u"BrightnessKBNormal"_s, 0}}}));
    QCOMPARE(mDelegate.sent.first().value(u"BrightnessKBNormal"_s).userType(), int(QMetaType::Int));
}

void KeyboardLightingControllerTest::brightnessHasFiveStepsUnderFourCaptions()
{
    auto *slider = outlet<QSlider>("mBrightnessValue");
    QCOMPARE(slider->maximum() - slider->minimum() + 1, 5);
    QCOMPARE(slider->tickInterval(), 1);
    QVERIFY(slider->tickPosition() != QSlider::NoTicks);
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Home);
    mDelegate.sent.clear();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Right})
        QTest::keyClick(slider, key);
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"BrightnessKBNormal"_s, 1}},
                                                 {{u"BrightnessKBNormal"_s, 2}},
                                                 {{u"BrightnessKBNormal"_s, 3}},
                                                 {{u"BrightnessKBNormal"_s, 4}}}));
    QCOMPARE(outlet<QLabel>("mBrightnessOffLabel")->text(), u"Off"_s);
    QCOMPARE(outlet<QLabel>("mBrightnessDimLabel")->text(), u"Dim"_s);
    QCOMPARE(outlet<QLabel>("mBrightnessNormaLabel")->text(), u"Normal"_s);
    QCOMPARE(outlet<QLabel>("mBrightnessBrightLabel")->text(), u"Bright"_s);
}

void KeyboardLightingControllerTest::captionsAreUnderTheirSteps_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void KeyboardLightingControllerTest::captionsAreUnderTheirSteps()
{
    QFETCH(Qt::LayoutDirection, direction);
    mWindow->setLayoutDirection(direction);
    mWindow->resize(900, 600);
    QCoreApplication::sendPostedEvents();
    auto *slider = outlet<QSlider>("mBrightnessValue");
    const std::pair<const char *, int> captions[] = {{"mBrightnessOffLabel", 0},
                                                     {"mBrightnessDimLabel", 1},
                                                     {"mBrightnessNormaLabel", 2},
                                                     {"mBrightnessBrightLabel", 4}};
    for (const auto &[name, step] : captions) {
        mController->updateBrightnessValue(step);
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.maximum = 4;
        option.sliderPosition = option.sliderValue = step;
        option.upsideDown = direction == Qt::RightToLeft;
        option.direction = Qt::LeftToRight; // like sliders, because only one of the two must mirror them
        const QRect handle =
            slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
        const int handleCentre = slider->mapTo(mWindow.get(), handle.center()).x();
        auto *caption = outlet<QLabel>(name);
        const QRect place(caption->mapTo(mWindow.get(), QPoint()), caption->size());
        // Captions at the ends stay inside the row, so they are not cut off.
        const bool isAtAnEnd = step == 0 || step == 4;
        QVERIFY2(isAtAnEnd ? place.left() <= handleCentre && handleCentre <= place.right()
                           : qAbs(place.center().x() - handleCentre) <= 2,
                 name);
        QVERIFY2(place.width() >= caption->sizeHint().width(), name);
    }
}

void KeyboardLightingControllerTest::brightnessChangedOnTheKeyboardSendsNothing()
{
    mController->updateBrightnessValue(1);
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 1);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::controlsWithoutEffectSendNothing()
{
    for (const char *name :
         {"mSidestrips", "mUnderglow", "mInGameAPMMain", "mInGameAPMSidestrips", "mInGameAPMUnderglow"})
        outlet<QCheckBox>(name)->click();
    for (const char *name : {"mSidestripsColor", "mUnderglowColor"}) {
        auto *well = outlet<ColorWell>(name);
        well->click();
        auto *dialog = well->findChild<QColorDialog *>();
        QVERIFY2(dialog, name);
        dialog->setCurrentColor(QColor(0, 255, 0));
        dialog->accept();
    }
    mController->selectSpectrumCycling(nullptr);
    mController->populateUISettings();
    QVERIFY(mDelegate.sent.isEmpty());
    QVERIFY(mController->userSettingsDict().isEmpty());
}

void KeyboardLightingControllerTest::toolTipsShowWhichControlsHaveNoEffect()
{
    for (const QString &name : zoneControls + QStringList{u"mEnableAddOnHighlight"_s}) {
        auto *control = mController->view()->findChild<QWidget *>(name);
        const bool hasEffect = name == "mMainColor"_L1;
        QVERIFY2(control->toolTip().contains(u"no effect"_s) != hasEffect, qPrintable(name));
        QCOMPARE(control->accessibleDescription().contains(u"no effect"_s), !hasEffect);
    }
}

void KeyboardLightingControllerTest::previewShowsTheLight()
{
    auto *preview = new QWidget;
    Backlight::Settings shown;
    mController->setPreview(preview, [&shown](const Backlight::Settings &settings) { shown = settings; });
    QVERIFY(mController->view()->isAncestorOf(preview));
    QVERIFY(shown == Backlight::settingsOf(lightingRecord())); // at once
    for (const QVariantMap &change :
         {QVariantMap{{u"LEDKBEffects"_s, 4}}, {{u"BacklightLED"_s, 0}}, {{u"BrightnessKBNormal"_s, 1}}}) {
        QVariantMap record = lightingRecord();
        record.insert(change);
        mController->setMLightingSettingsDict(record);
        mController->updateUISettings();
        QVERIFY(shown == Backlight::settingsOf(record));
    }
    mController->setControlsState(false);
    QVERIFY(!preview->isEnabled());
    mController->setControlsState(true);
    QVERIFY(preview->isEnabled());
}

void KeyboardLightingControllerTest::previewFollowsTheBrightnessKeys()
{
    Backlight::Settings shown;
    mController->setPreview(new QWidget, [&shown](const Backlight::Settings &settings) { shown = settings; });
    mController->updateBrightnessValue(1);
    QCOMPARE(shown.brightness, 1);
    mController->updateBrightnessValue(9);
    QCOMPARE(shown.brightness, 4); // as the slider shows it
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::updateValueSendsOneNumber()
{
    mController->updateValueOfSetting(7, u"BrightnessKBNormal"_s);
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"BrightnessKBNormal"_s, 7}}}));
}

void KeyboardLightingControllerTest::updatesOpenTheDownloadPage()
{
    outlet<QPushButton>("mCheckUpdates")->click();
    QCOMPARE(mOpened, QList<QUrl>{QUrl(QString(Addresses::driverDownloads))});
    QVERIFY(mOpened.first().isValid());
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::restoreAsksFirst()
{
    outlet<QPushButton>("mRestoreSettings")->click();
    QVERIFY(mDelegate.sent.isEmpty());
    QVERIFY(alert() && alert()->isVisible());
    QCOMPARE(alert()->parentWidget(), mWindow.get());
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(),
             u"Restore the profile “Work” to its default settings?"_s);
    QCOMPARE(alert()->findChild<QLabel *>(u"alertDescription"_s)->text(), localizedText("lkeyRestoreDefaultDesc"));
    // The button is on the lighting tab, but the keys are also restored.
    QVERIFY(localizedText("lkeyRestoreDefaultDesc").contains(u"Your keys"_s));
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertDefaultButton"_s)->text().remove(u'&'), u"OK"_s);
    QCOMPARE(alert()->findChild<QPushButton *>(u"alertAlternativeButton"_s)->text().remove(u'&'), u"Cancel"_s);
}

void KeyboardLightingControllerTest::restoreKeepsTheNameAndForcesTwoValues()
{
    const QVariantMap keys{{u"4"_s, QVariantMap{{u"command"_s, 45}}}};
    mController->setMDefaultDict(
        {{u"ProfileName"_s, u"Default"_s}, {u"BrightnessKBNormal"_s, 1}, {u"ProfileOSDOn"_s, 0}, {u"Keys"_s, keys}});
    outlet<QPushButton>("mRestoreSettings")->click();
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate.sent, (QList<QVariantMap>{{{u"ProfileName"_s, u"Work"_s},
                                                  {u"BrightnessKBNormal"_s, 4},
                                                  {u"ProfileOSDOn"_s, true},
                                                  {u"Keys"_s, keys}}}));
    QCOMPARE(mDelegate.sent.first().value(u"ProfileOSDOn"_s).userType(), int(QMetaType::Bool));
}

void KeyboardLightingControllerTest::restoreAlertClosesWithItsProfile()
{
    outlet<QPushButton>("mRestoreSettings")->click();
    const QPointer<Sheet> shown = alert();
    refreshWithProfile(u"Work"_s);
    QVERIFY(shown && shown->isUp());
    refreshWithProfile(u"R&D"_s);
    QTRY_VERIFY(!shown);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::colorDialogClosesWithItsProfile()
{
    auto *well = outlet<ColorWell>("mMainColor");
    well->click();
    const QPointer<QColorDialog> dialog = well->findChild<QColorDialog *>();
    dialog->setCurrentColor(QColor(0, 0, 255));
    refreshWithProfile(u"Work"_s);
    QVERIFY(dialog && dialog->isVisible());
    refreshWithProfile(u"R&D"_s);
    QTRY_VERIFY(!dialog);
    QVERIFY(mDelegate.sent.isEmpty());
    QCOMPARE(well->color().name(), u"#ff0033"_s);
}

void KeyboardLightingControllerTest::restoreDependsOnlyOnTheAnswer()
{
    QCOMPARE(KeyboardLightingController::confirmRestore, 9);
    mController->setMDefaultDict({{u"ProfileName"_s, u"Default"_s}});
    for (const int returnCode : {0, 1, 999, 1001})
        mController->sheetDidEndReturnCodeContextInfo(returnCode, 9);
    QVERIFY(mDelegate.sent.isEmpty());
    mController->sheetDidEndReturnCodeContextInfo(1000, 3);
    QCOMPARE(
        mDelegate.sent,
        (QList<QVariantMap>{{{u"ProfileName"_s, u"Work"_s}, {u"BrightnessKBNormal"_s, 4}, {u"ProfileOSDOn"_s, true}}}));
    QCOMPARE(mController->defaultDict(), (QVariantMap{{u"ProfileName"_s, u"Default"_s}}));
}

void KeyboardLightingControllerTest::restoreKeepsAnyName()
{
    const QString name = u"%@ %1 <b>x</b> “"_s;
    QVariantMap record = lightingRecord();
    record[u"ProfileName"_s] = name;
    mController->setMLightingSettingsDict(record);
    outlet<QPushButton>("mRestoreSettings")->click();
    auto *title = alert()->findChild<QLabel *>(u"alertTitle"_s);
    QVERIFY(title->text().contains(name));
    QCOMPARE(title->textFormat(), Qt::PlainText);
    press("alertDefaultButton"_L1);
    QCOMPARE(mDelegate.sent.value(0).value(u"ProfileName"_s), QVariant(name));
}

void KeyboardLightingControllerTest::cancelledRestoreSendsNothing()
{
    outlet<QPushButton>("mRestoreSettings")->click();
    press("alertAlternativeButton"_L1);
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::restoreWithoutANameHasAnEmptyArgument()
{
    mController->setMLightingSettingsDict(QVariantMap());
    outlet<QPushButton>("mRestoreSettings")->click();
    QCOMPARE(alert()->findChild<QLabel *>(u"alertTitle"_s)->text(),
             u"Restore the profile “” to its default settings?"_s);
}

void KeyboardLightingControllerTest::controlsFollowTheirState()
{
    auto *updates = outlet<QPushButton>("mCheckUpdates");
    for (const bool isEnabled : {false, true}) {
        mController->setControlsState(isEnabled);
        for (const QString &name : zoneControls + otherControls) {
            auto *control = mWindow->findChild<QWidget *>(name);
            QVERIFY2(control, qPrintable(name));
            QVERIFY2(control->isEnabled() == isEnabled, qPrintable(name));
        }
        QVERIFY(updates->isEnabled());
    }
    updates->setEnabled(false);
    mController->setControlsState(true);
    QVERIFY(!updates->isEnabled());
}

void KeyboardLightingControllerTest::labelsAreGreyedWithoutADevice()
{
    const QPalette palette = mController->view()->palette();
    const QColor grey = palette.color(QPalette::Disabled, QPalette::WindowText);
    const QColor normal = palette.color(QPalette::Active, QPalette::WindowText);
    QVERIFY(grey != normal);
    for (const bool isEnabled : {false, true}) {
        mController->setControlsState(isEnabled);
        for (const QString &name : greyedLabels) {
            auto *label = mWindow->findChild<QLabel *>(name);
            QVERIFY2(label, qPrintable(name));
            const QColor shown = label->palette().color(QPalette::Active, QPalette::WindowText);
            QVERIFY2(shown == (isEnabled ? normal : grey), qPrintable(name));
        }
    }
}

void KeyboardLightingControllerTest::greyFollowsTheColorsOfTheDesktop()
{
    mController->setControlsState(false);
    QPalette dark = mWindow->palette();
    dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(10, 200, 30));
    mWindow->setPalette(dark);
    auto *label = outlet<QLabel>("mProfileNameLabel");
    QCOMPARE(label->palette().color(QPalette::Active, QPalette::WindowText), QColor(10, 200, 30));
}

void KeyboardLightingControllerTest::spinnerTakesThePlaceOfTheVersion()
{
    auto *spinner = outlet<Spinner>("mFirmwareVersionIndicator");
    mController->firmwareVersion()->setText(u"1.2"_s);
    QVERIFY(!spinner->isVisible());
    mController->startProgresIndicatorAnimation();
    mController->startProgresIndicatorAnimation();
    QVERIFY(spinner->isVisible() && spinner->isAnimating());
    QVERIFY(!mController->firmwareVersion()->isVisible());
    mController->stopProgressIndicatorAnimation();
    QVERIFY(!spinner->isVisible() && !spinner->isAnimating());
    QVERIFY(mController->firmwareVersion()->isVisible());
    QCOMPARE(mController->driverVersion()->objectName(), u"mDriverVersion"_s);
}

void KeyboardLightingControllerTest::awakeningEmptiesTheDictionaries()
{
    outlet<QCheckBox>("mMain")->click();
    mController->setMDeviceSettingsDict({{u"ActiveProfile"_s, 0}});
    mController->awakeFromNib();
    QVERIFY(mController->userSettingsDict().isEmpty());
    QVERIFY(mController->lightingSettingsDict().isEmpty());
    QVERIFY(mController->deviceSettingsDict().isEmpty());
    // Unlike a missing record, an empty one is shown.
    mController->updateUISettings();
    QVERIFY(!outlet<QCheckBox>("mMain")->isChecked());
    QVERIFY(outlet<QLabel>("mProfileNameLabel")->text().isEmpty());
    QCOMPARE(outlet<QSlider>("mBrightnessValue")->value(), 0);
    QVERIFY(!outlet<QCheckBox>("mEnableAddOnHighlight")->isChecked());
    QVERIFY(mDelegate.sent.isEmpty());
}

void KeyboardLightingControllerTest::versionFieldsCanBeReplaced()
{
    QLabel driver;
    QLabel firmware;
    mController->setMDriverVersion(&driver);
    mController->setMFirmwareVersion(&firmware);
    QCOMPARE(mController->driverVersion(), &driver);
    QCOMPARE(mController->firmwareVersion(), &firmware);
    firmware.show();
    mController->startProgresIndicatorAnimation();
    QVERIFY(!firmware.isVisible());
    mController->stopProgressIndicatorAnimation();
    QVERIFY(firmware.isVisible());
}

QTEST_MAIN(KeyboardLightingControllerTest)
#include "keyboardlightingcontrollertest.moc"
