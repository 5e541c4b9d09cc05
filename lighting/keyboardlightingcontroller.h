// SPDX-License-Identifier: MIT
// The lighting tab: colour, effect and brightness of the active profile's key lighting, the versions, and restoring.
// Keeps copies of the main controller's data and asks its delegate for every change. Main thread only.
#pragma once

#include "lighting/backlight.h"
#include "platform/sheetsubject.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

class ColorWell;
class LightingDelegate;
class QCheckBox;
class QLabel;
class QPushButton;
class QWidget;
class RadioGroup;
class Spinner;
class StepSlider;

class KeyboardLightingController : public QObject
{
    Q_OBJECT

public:
    using UrlOpener = std::function<void(const QUrl &)>;

    /// Context number of the restore sheet.
    static constexpr int confirmRestore = 9;

    explicit KeyboardLightingController(QObject *parent = nullptr);
    ~KeyboardLightingController() override;

    // Content of the tab
    [[nodiscard]] QWidget *view() const { return mView; }
    [[nodiscard]] QLabel *driverVersion() const { return mDriverVersion; }
    [[nodiscard]] QLabel *firmwareVersion() const { return mFirmwareVersion; }
    /// Shows the version of the driver or the firmware. An empty text hides it from the Tab key.
    void showDriverVersion(const QString &version);
    void showFirmwareVersion(const QString &version);
    [[nodiscard]] QWidget *lightingWindow() const { return mLightingWindow; }
    [[nodiscard]] LightingDelegate *lightingDelegate() const { return mLightingDelegate; }
    [[nodiscard]] QVariantMap defaultDict() const { return mDefaultDict; }
    [[nodiscard]] QVariantMap deviceSettingsDict() const { return mDeviceSettingsDict; }
    [[nodiscard]] QVariantMap lightingSettingsDict() const { return mLightingSettingsDict.value_or(QVariantMap()); }
    [[nodiscard]] QVariantMap userSettingsDict() const { return mUserSettingsDict; }

    // From the main controller
    void awakeFromNib();
    void setMDefaultDict(const QVariantMap &profile) { mDefaultDict = profile; }
    void setMDeviceSettingsDict(const QVariantMap &settings) { mDeviceSettingsDict = settings; }
    void setMAllProfilesArray(const QVariantList &profiles) { mAllProfilesArray = profiles; }
    void setMLightingSettingsDict(const std::optional<QVariantMap> &profile) { mLightingSettingsDict = profile; }
    // The controller does not own the next four, which must live as long as they are set.
    void setMDriverVersion(QLabel *label) { mDriverVersion = label; }
    void setMFirmwareVersion(QLabel *label) { mFirmwareVersion = label; }
    void setMLightingDelegate(LightingDelegate *delegate) { mLightingDelegate = delegate; }
    void setMLightingWindow(QWidget *window) { mLightingWindow = window; }
    using LightShower = std::function<void(const Backlight::Settings &settings)>;
    /// Adds `preview`, a picture that `show` makes show a light. The tab takes ownership of it.
    void setPreview(QWidget *preview, LightShower show);
    /// Shows the latest record. Does nothing before there is one.
    void updateUISettings();
    void populateUISettings() {}
    void setControlsState(bool isEnabled);
    /// Shows a brightness that was changed on the keyboard, and sends nothing.
    void updateBrightnessValue(int level);
    /// Shows the spinner in place of the firmware version. The spelling stays, because others call it by this name.
    void startProgresIndicatorAnimation();
    void stopProgressIndicatorAnimation();

    // Actions and their parts
    void tickMain(QObject *sender);
    // The zone and in-game controls below exist without effect. Deliberate: the keyboard has one zone.
    void tickSidestrips(QObject *) {}
    void tickUnderglow(QObject *) {}
    void clickSidestripsColor(QObject *) {}
    void clickUnderglowColor(QObject *) {}
    void tickInGameAPMMain(QObject *) {}
    void tickInGameAPMSidestrips(QObject *) {}
    void tickInGameAPMUnderglow(QObject *) {}
    void clickMainColor(QObject *sender);
    void tickEnableAddOnHighlight(QObject *sender);
    void brightnessValueChange(QObject *sender);
    void selectColor(QObject *sender);
    void selectSpectrumCycling(QObject *sender);
    void clickCheckUpdates(QObject *sender);
    void clickRestoreSettings(QObject *sender);
    void updateValueOfSetting(int value, const QString &key);
    void sheetDidEndReturnCodeContextInfo(int returnCode, int context);

    /// Sets the function that opens web pages; initially the desktop's browser.
    void setUrlOpener(UrlOpener opener) { mOpenUrl = std::move(opener); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum EffectRow { fixedColorRow = 0, spectrumCyclingRow = 1 };

    void buildView();
    QWidget *buildZones();
    QWidget *buildEffects();
    QWidget *buildBrightness();
    QWidget *buildVersions();
    QCheckBox *makeCheckBox(QCheckBox *&field, const char *name, const char *textKey,
                            void (KeyboardLightingController::*action)(QObject *));
    ColorWell *makeColorWell(ColorWell *&field, const char *name, const char *textKey,
                             void (KeyboardLightingController::*action)(QObject *));
    QLabel *makeLabel(QLabel *&field, const char *name, const char *textKey = nullptr);
    void colorLabels();
    void showBrightness(int level);
    void showLight(const Backlight::Settings &settings);
    void send(const QVariantMap &settings);
    [[nodiscard]] QString profileName() const;
    [[nodiscard]] QVariant profile() const; ///< identifies the profile shown

    QWidget *mView = nullptr;
    QLabel *mProfileNameLabel = nullptr;
    QLabel *mCurrentProfileLabel = nullptr;
    QCheckBox *mMain = nullptr;
    QCheckBox *mSidestrips = nullptr;
    QCheckBox *mUnderglow = nullptr;
    ColorWell *mMainColor = nullptr;
    ColorWell *mSidestripsColor = nullptr;
    ColorWell *mUnderglowColor = nullptr;
    QCheckBox *mInGameAPMMain = nullptr;
    QCheckBox *mInGameAPMSidestrips = nullptr;
    QCheckBox *mInGameAPMUnderglow = nullptr;
    QCheckBox *mEnableAddOnHighlight = nullptr;
    StepSlider *mBrightnessValue = nullptr;
    RadioGroup *mLighting = nullptr;
    QLabel *mBrightnessLabel = nullptr;
    QLabel *mBrightnessOffLabel = nullptr;
    QLabel *mBrightnessDimLabel = nullptr;
    QLabel *mBrightnessNormaLabel = nullptr;
    QLabel *mBrightnessBrightLabel = nullptr;
    QLabel *mDriverVersionLabel = nullptr;
    QLabel *mFirmwareVersionLabel = nullptr;
    QLabel *mDriverVersion = nullptr;
    QLabel *mFirmwareVersion = nullptr;
    QPushButton *mCheckUpdates = nullptr;
    QPushButton *mRestoreSettings = nullptr;
    Spinner *mFirmwareVersionIndicator = nullptr;

    QWidget *mPreview = nullptr; ///< null until setPreview()
    LightShower mShowLight;
    Backlight::Settings mShownLight;

    std::optional<QVariantMap> mLightingSettingsDict;
    QVariantMap mDeviceSettingsDict;
    QVariantList mAllProfilesArray;
    QVariantMap mDefaultDict;
    QVariantMap mUserSettingsDict;
    QPointer<QWidget> mLightingWindow;
    SheetSubject mSheetSubject; ///< the profile() of the open alert or colour dialog
    QVariant mShownProfile;     ///< the profile() shown last
    LightingDelegate *mLightingDelegate = nullptr;
    UrlOpener mOpenUrl;
    bool mAreLabelsEnabled = true;
};
