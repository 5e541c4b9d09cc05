// SPDX-License-Identifier: MIT
#include "lighting/keyboardlightingcontroller.h"

#include "base/devicesettings.h"
#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "lighting/backlight.h"
#include "lighting/lightingdelegate.h"
#include "platform/addresses.h"
#include "platform/colorwell.h"
#include "platform/radiogroup.h"
#include "platform/sheet.h"
#include "platform/spinner.h"
#include "platform/stepslider.h"
#include "profiles/profileidentity.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QRgba64>
#include <QSignalBlocker>

namespace {

constexpr int restoredBrightness = Backlight::maximumBrightness;
constexpr double maximumComponent = 65535; // of a 64-bit colour

QColor colorFromRecord(const QVariantMap &record)
{
    const Backlight::Shares shares = Backlight::sharesOf(record);
    const auto component = [](double share) { return quint16(qRound(share * maximumComponent)); };
    return QColor::fromRgba64(component(shares.red), component(shares.green), component(shares.blue));
}

/// Shows `version` as the value of `caption`: the Tab key reaches it for selecting, and its name contains both.
void showVersion(QLabel *label, const QLabel *caption, const QString &version)
{
    label->setText(version);
    label->setAccessibleName(caption->text() + u' ' + version);
    label->setFocusPolicy(version.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
}

} // namespace

KeyboardLightingController::KeyboardLightingController(QObject *parent)
    : QObject(parent), mOpenUrl([](const QUrl &address) { QDesktopServices::openUrl(address); })
{
    buildView();
}

KeyboardLightingController::~KeyboardLightingController()
{
    if (!mView->parent())
        delete mView;
}

void KeyboardLightingController::awakeFromNib()
{
    mUserSettingsDict = {};
    mLightingSettingsDict = QVariantMap();
    mDeviceSettingsDict = {};
}

QString KeyboardLightingController::profileName() const
{
    return ProfileRecord::name(lightingSettingsDict());
}

QVariant KeyboardLightingController::profile() const
{
    const int active = DeviceSettings(mDeviceSettingsDict).activeProfileIndex();
    return profileIdentity(lightingSettingsDict(), mAllProfilesArray, active);
}

// Following the main controller

void KeyboardLightingController::updateUISettings()
{
    if (!mLightingSettingsDict)
        return;
    const QVariantMap &record = *mLightingSettingsDict;
    const QVariant shown = profile();
    mSheetSubject.endUnless(shown);
    if (shown != std::exchange(mShownProfile, shown))
        mBrightnessValue->endDrag(); // the drag was meant for the other profile
    const Backlight::Settings settings = Backlight::settingsOf(record);
    showLight(settings);
    mMain->setChecked(settings.isOn);
    mProfileNameLabel->setText(visibleText(profileName(), u' '));
    showBrightness(settings.brightness);
    mEnableAddOnHighlight->setChecked(Backlight::isGameLightingOn(record));
    const QVariantList colors = Backlight::colorsOf(record);
    if (!colors.isEmpty())
        mMainColor->setColor(colorFromRecord(colors.first().toMap()));
    const std::optional<int> effect = Backlight::effectOf(record);
    if (effect == Backlight::fixedColorEffect)
        mLighting->selectRow(fixedColorRow);
    else if (effect == Backlight::spectrumCyclingEffect)
        mLighting->selectRow(spectrumCyclingRow);
}

void KeyboardLightingController::setControlsState(bool isEnabled)
{
    const QList<QWidget *> controls{
        mMain,           mSidestrips,      mUnderglow,           mMainColor,           mSidestripsColor,
        mUnderglowColor, mInGameAPMMain,   mInGameAPMSidestrips, mInGameAPMUnderglow,  mBrightnessValue,
        mLighting,       mRestoreSettings, mBrightnessLabel,     mEnableAddOnHighlight};
    if (!isEnabled) {
        mBrightnessValue->endDrag();
        mSheetSubject.end();
    }
    for (QWidget *control : controls)
        control->setEnabled(isEnabled);
    if (mPreview)
        mPreview->setEnabled(isEnabled);
    mAreLabelsEnabled = isEnabled;
    colorLabels();
}

/// Greys the labels by colour alone: they stay readable for assistive tools and selectable.
void KeyboardLightingController::colorLabels()
{
    QPalette disabled;
    disabled.setColor(QPalette::WindowText, mView->palette().color(QPalette::Disabled, QPalette::WindowText));
    const QList<QLabel *> labels{mProfileNameLabel,      mCurrentProfileLabel, mDriverVersionLabel,
                                 mFirmwareVersionLabel,  mDriverVersion,       mFirmwareVersion,
                                 mBrightnessOffLabel,    mBrightnessDimLabel,  mBrightnessNormaLabel,
                                 mBrightnessBrightLabel, mBrightnessLabel};
    for (QLabel *label : labels)
        label->setPalette(mAreLabelsEnabled ? QPalette() : disabled);
}

bool KeyboardLightingController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == mView && event->type() == QEvent::PaletteChange)
        colorLabels();
    return QObject::eventFilter(watched, event);
}

void KeyboardLightingController::updateBrightnessValue(int level)
{
    showBrightness(level);
    Backlight::Settings settings = mShownLight;
    settings.brightness = mBrightnessValue->value();
    showLight(settings);
}

void KeyboardLightingController::showLight(const Backlight::Settings &settings)
{
    mShownLight = settings;
    if (mShowLight)
        mShowLight(settings);
}

void KeyboardLightingController::showBrightness(int level)
{
    const QSignalBlocker quiet(mBrightnessValue);
    mBrightnessValue->setValue(level);
}

void KeyboardLightingController::showDriverVersion(const QString &version)
{
    showVersion(mDriverVersion, mDriverVersionLabel, version);
}

void KeyboardLightingController::showFirmwareVersion(const QString &version)
{
    showVersion(mFirmwareVersion, mFirmwareVersionLabel, version);
}

void KeyboardLightingController::startProgresIndicatorAnimation()
{
    mFirmwareVersion->hide();
    mFirmwareVersionIndicator->startAnimation();
}

void KeyboardLightingController::stopProgressIndicatorAnimation()
{
    mFirmwareVersionIndicator->stopAnimation();
    mFirmwareVersion->show();
}

// Actions

void KeyboardLightingController::tickMain(QObject *)
{
    mUserSettingsDict[SettingsKeys::scrollLed] = mMain->isChecked() ? 1 : 0;
}

void KeyboardLightingController::clickMainColor(QObject *)
{
    QVariantList colors = Backlight::colorsOf(lightingSettingsDict());
    if (colors.isEmpty())
        return;
    QVariantMap color = colors.first().toMap();
    const QRgba64 picked = mMainColor->color().rgba64();
    color[SettingsKeys::red] = picked.red() / maximumComponent;
    color[SettingsKeys::green] = picked.green() / maximumComponent;
    color[SettingsKeys::blue] = picked.blue() / maximumComponent;
    colors[0] = color;
    send({{SettingsKeys::ledKbColors, colors}});
}

void KeyboardLightingController::tickEnableAddOnHighlight(QObject *)
{
    send({{SettingsKeys::gameLightingOn, mEnableAddOnHighlight->isChecked()}});
}

void KeyboardLightingController::brightnessValueChange(QObject *)
{
    updateValueOfSetting(mBrightnessValue->value(), SettingsKeys::brightnessKbNormal);
}

void KeyboardLightingController::selectColor(QObject *)
{
    if (mLighting->selectedRow() == fixedColorRow)
        send({{SettingsKeys::backlightLed, 1}, {SettingsKeys::ledKbEffects, Backlight::fixedColorEffect}});
    else if (mLighting->selectedRow() == spectrumCyclingRow)
        send({{SettingsKeys::ledKbEffects, Backlight::spectrumCyclingEffect}});
}

void KeyboardLightingController::selectSpectrumCycling(QObject *)
{
    // Deliberate: sends nothing, because the group's own action has already sent the effect.
}

void KeyboardLightingController::clickCheckUpdates(QObject *)
{
    mOpenUrl(QUrl(QString(Addresses::driverDownloads)));
}

void KeyboardLightingController::clickRestoreSettings(QObject *)
{
    const QString name = nameInAlert(profileName());
    const AlertTexts texts{localizedFormat("lkeyRestoreDefaultTitle", {name}), localizedText("lkeyRestoreDefaultDesc"),
                           localizedText("lkeyOK"), localizedText("lkeyCancel")};
    Sheet *alert = showAlert(texts, mLightingWindow, [self = QPointer(this)](int returnCode) {
        if (self)
            self->sheetDidEndReturnCodeContextInfo(returnCode, confirmRestore);
    });
    mSheetSubject.note(alert, profile());
}

void KeyboardLightingController::sheetDidEndReturnCodeContextInfo(int returnCode, int)
{
    if (returnCode != alertFirstButtonReturn)
        return;
    QVariantMap record = mDefaultDict;
    record[SettingsKeys::profileName] = profileName();
    // These values apply whatever the default record has.
    record[SettingsKeys::brightnessKbNormal] = restoredBrightness;
    record[SettingsKeys::profileOsdOn] = true;
    send(record);
}

void KeyboardLightingController::updateValueOfSetting(int value, const QString &key)
{
    send({{key, value}});
}

void KeyboardLightingController::send(const QVariantMap &settings)
{
    // Without a record no row is selected, and the first profile would get the change.
    if (mLightingDelegate && !lightingSettingsDict().isEmpty())
        mLightingDelegate->updateValueForSetting(settings);
}
