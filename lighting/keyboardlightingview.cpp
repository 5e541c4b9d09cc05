// SPDX-License-Identifier: MIT
// The layout of the lighting tab.
#include "lighting/keyboardlightingcontroller.h"

#include "base/text.h"
#include "lighting/backlight.h"
#include "lighting/tickcaptions.h"
#include "platform/boldtext.h"
#include "platform/checkbox.h"
#include "platform/colorwell.h"
#include "platform/groupbox.h"
#include "platform/mnemonics.h"
#include "platform/radiogroup.h"
#include "platform/spacing.h"
#include "platform/spinner.h"
#include "platform/stepslider.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int groupSpacing = Spacing::separate;
constexpr int widestSlider = 480;
// Four captions for five levels: the level between normal and bright has none.
constexpr int offLevel = Backlight::minimumBrightness, dimLevel = 1, normalLevel = 2;
constexpr int brightLevel = Backlight::maximumBrightness;

/// Explains a control that does not do what its name says, in its tool tip and for screen readers.
void explain(QWidget *control, const char *textKey)
{
    const QString text = localizedText(textKey);
    const QString earlier = control->toolTip();
    control->setToolTip(earlier.isEmpty() ? text : earlier + u'\n' + text);
    control->setAccessibleDescription(text);
}

} // namespace

QCheckBox *KeyboardLightingController::makeCheckBox(QCheckBox *&field, const char *name, const char *textKey,
                                                    void (KeyboardLightingController::*action)(QObject *))
{
    field = new CheckBox(localizedText(textKey));
    field->setObjectName(QLatin1StringView(name));
    connect(field, &QCheckBox::clicked, this, [this, box = field, action] { (this->*action)(box); });
    return field;
}

ColorWell *KeyboardLightingController::makeColorWell(ColorWell *&field, const char *name, const char *textKey,
                                                     void (KeyboardLightingController::*action)(QObject *))
{
    field = new ColorWell;
    field->setObjectName(QLatin1StringView(name));
    field->setAccessibleName(localizedText(textKey));
    field->setToolTip(localizedText(textKey));
    connect(field, &ColorWell::colorPicked, this, [this, well = field, action] { (this->*action)(well); });
    connect(field, &ColorWell::dialogOpened, this, [this](QDialog *dialog) { mSheetSubject.note(dialog, profile()); });
    return field;
}

QLabel *KeyboardLightingController::makeLabel(QLabel *&field, const char *name, const char *textKey)
{
    field = new QLabel(textKey ? localizedText(textKey) : QString());
    field->setObjectName(QLatin1StringView(name));
    field->setTextFormat(Qt::PlainText);
    return field;
}

QWidget *KeyboardLightingController::buildZones()
{
    using Self = KeyboardLightingController;
    auto *group = new GroupBox(localizedText("lkeyLightingZones"));
    auto *grid = new QGridLayout(group);
    grid->addWidget(makeCheckBox(mMain, "mMain", "lkeyZoneMain", &Self::tickMain), 0, 0);
    grid->addWidget(makeColorWell(mMainColor, "mMainColor", "lkeyZoneMainColor", &Self::clickMainColor), 0, 1);
    grid->addWidget(makeCheckBox(mInGameAPMMain, "mInGameAPMMain", "lkeyInGameMain", &Self::tickInGameAPMMain), 0, 2);
    grid->addWidget(makeCheckBox(mSidestrips, "mSidestrips", "lkeyZoneSidestrips", &Self::tickSidestrips), 1, 0);
    grid->addWidget(
        makeColorWell(mSidestripsColor, "mSidestripsColor", "lkeyZoneSidestripsColor", &Self::clickSidestripsColor), 1,
        1);
    grid->addWidget(makeCheckBox(mInGameAPMSidestrips, "mInGameAPMSidestrips", "lkeyInGameSidestrips",
                                 &Self::tickInGameAPMSidestrips),
                    1, 2);
    grid->addWidget(makeCheckBox(mUnderglow, "mUnderglow", "lkeyZoneUnderglow", &Self::tickUnderglow), 2, 0);
    grid->addWidget(
        makeColorWell(mUnderglowColor, "mUnderglowColor", "lkeyZoneUnderglowColor", &Self::clickUnderglowColor), 2, 1);
    grid->addWidget(
        makeCheckBox(mInGameAPMUnderglow, "mInGameAPMUnderglow", "lkeyInGameUnderglow", &Self::tickInGameAPMUnderglow),
        2, 2);
    explain(mMain, "lkeyZoneMainTip");
    const QList<QWidget *> withoutEffect{mSidestrips,    mUnderglow,           mSidestripsColor,   mUnderglowColor,
                                         mInGameAPMMain, mInGameAPMSidestrips, mInGameAPMUnderglow};
    for (QWidget *control : withoutEffect)
        explain(control, "lkeyOtherZoneTip");
    for (QCheckBox *box : {mSidestrips, mUnderglow, mInGameAPMMain, mInGameAPMSidestrips, mInGameAPMUnderglow})
        Mnemonics::exclude(box);
    grid->setHorizontalSpacing(groupSpacing);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(3, 1);
    return group;
}

QWidget *KeyboardLightingController::buildEffects()
{
    auto *group = new GroupBox(localizedText("lkeyLightingEffect"));
    mLighting = new RadioGroup;
    mLighting->setObjectName("mLighting"_L1);
    mLighting->setAccessibleName(localizedText("lkeyLightingEffect"));
    mLighting->addRow(localizedText("lkeyEffectFixedColor"));
    // The row's own action accompanies the group's action and sends nothing.
    QRadioButton *cycling = mLighting->addRow(localizedText("lkeyEffectSpectrumCycling"));
    connect(cycling, &QRadioButton::clicked, this, [this, cycling] { selectSpectrumCycling(cycling); });
    connect(mLighting, &RadioGroup::rowClicked, this, [this] { selectColor(mLighting); });
    makeCheckBox(mEnableAddOnHighlight, "mEnableAddOnHighlight", "lkeyEnableAddOnHighlight",
                 &KeyboardLightingController::tickEnableAddOnHighlight);
    explain(mEnableAddOnHighlight, "lkeyEnableAddOnHighlightTip");

    auto *column = new QVBoxLayout(group);
    column->addWidget(mLighting);
    column->addSpacing(Spacing::normal);
    column->addWidget(mEnableAddOnHighlight);
    column->addStretch();
    return group;
}

QWidget *KeyboardLightingController::buildBrightness()
{
    auto *group = new GroupBox;
    mBrightnessValue = new StepSlider;
    mBrightnessValue->setObjectName("mBrightnessValue"_L1);
    mBrightnessValue->setRange(offLevel, brightLevel);
    mBrightnessValue->setAccessibleName(localizedText("lkeyBrightness"));
    connect(mBrightnessValue, &QSlider::valueChanged, this, [this] { brightnessValueChange(mBrightnessValue); });
    makeLabel(mBrightnessLabel, "mBrightnessLabel", "lkeyBrightness")->setBuddy(mBrightnessValue);

    auto *captions = new TickCaptions(mBrightnessValue);
    captions->addCaption(makeLabel(mBrightnessOffLabel, "mBrightnessOffLabel", "lkeyBrightnessOff"), offLevel);
    captions->addCaption(makeLabel(mBrightnessDimLabel, "mBrightnessDimLabel", "lkeyBrightnessDim"), dimLevel);
    captions->addCaption(makeLabel(mBrightnessNormaLabel, "mBrightnessNormaLabel", "lkeyBrightnessNormal"),
                         normalLevel);
    captions->addCaption(makeLabel(mBrightnessBrightLabel, "mBrightnessBrightLabel", "lkeyBrightnessBright"),
                         brightLevel);

    auto *grid = new QGridLayout(group);
    grid->addWidget(mBrightnessLabel, 0, 0);
    grid->addWidget(mBrightnessValue, 0, 1);
    grid->addWidget(captions, 1, 1);
    // In a small window, a wider slider could not be scrolled into view as a whole.
    for (QWidget *part : std::initializer_list<QWidget *>{mBrightnessValue, captions})
        part->setMaximumWidth(widestSlider);
    grid->setColumnStretch(1, widestSlider);
    grid->setColumnStretch(2, 1);
    grid->setHorizontalSpacing(groupSpacing);
    return group;
}

QWidget *KeyboardLightingController::buildVersions()
{
    auto *group = new GroupBox;
    makeLabel(mDriverVersionLabel, "mDriverVersionLabel", "lkeyDriverVersion");
    makeLabel(mFirmwareVersionLabel, "mFirmwareVersionLabel", "lkeyFirmwareVersion");
    makeLabel(mDriverVersion, "mDriverVersion");
    makeLabel(mFirmwareVersion, "mFirmwareVersion");
    for (QLabel *version : {mDriverVersion, mFirmwareVersion})
        version->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    showDriverVersion({});
    showFirmwareVersion({});
    mFirmwareVersionIndicator = new Spinner;
    mFirmwareVersionIndicator->setObjectName("mFirmwareVersionIndicator"_L1);
    mFirmwareVersionIndicator->setAccessibleName(localizedText("lkeyFirmwareVersionQuery"));
    mCheckUpdates = new QPushButton(localizedText("lkeyCheckUpdates"));
    mCheckUpdates->setObjectName("mCheckUpdates"_L1);
    connect(mCheckUpdates, &QPushButton::clicked, this, [this] { clickCheckUpdates(mCheckUpdates); });
    mRestoreSettings = new QPushButton(localizedText("lkeyRestoreSettings"));
    mRestoreSettings->setObjectName("mRestoreSettings"_L1);
    connect(mRestoreSettings, &QPushButton::clicked, this, [this] { clickRestoreSettings(mRestoreSettings); });

    auto *grid = new QGridLayout(group);
    grid->addWidget(mDriverVersionLabel, 0, 0);
    grid->addWidget(mDriverVersion, 0, 1);
    grid->addWidget(mFirmwareVersionLabel, 1, 0);
    grid->addWidget(mFirmwareVersion, 1, 1);
    grid->addWidget(mFirmwareVersionIndicator, 1, 1, Qt::AlignLeading | Qt::AlignVCenter);
    grid->addWidget(mCheckUpdates, 0, 3, 2, 1, Qt::AlignVCenter);
    grid->addWidget(mRestoreSettings, 0, 4, 2, 1, Qt::AlignVCenter);
    grid->setColumnMinimumWidth(1, 120);
    grid->setRowMinimumHeight(1, mFirmwareVersionIndicator->sizeHint().height());
    grid->setColumnStretch(2, 1);
    grid->setHorizontalSpacing(groupSpacing);
    return group;
}

void KeyboardLightingController::buildView()
{
    mView = new QWidget;
    mView->setObjectName("lightingView"_L1);
    auto *profile = new QHBoxLayout;
    profile->addWidget(makeLabel(mCurrentProfileLabel, "mCurrentProfileLabel", "lkeyCurrentProfile"));
    profile->addWidget(makeLabel(mProfileNameLabel, "mProfileNameLabel"), 1);
    makeBold(mProfileNameLabel);
    // A long name is cut off instead of widening the page.
    mProfileNameLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *upper = new QHBoxLayout;
    upper->setSpacing(groupSpacing);
    upper->addWidget(buildZones(), 3);
    upper->addWidget(buildEffects(), 2);

    auto *column = new QVBoxLayout(mView);
    column->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    column->setSpacing(groupSpacing);
    column->addLayout(profile);
    column->addLayout(upper);
    column->addWidget(buildBrightness());
    column->addWidget(buildVersions());
    column->addStretch();
    mView->installEventFilter(this);
}

void KeyboardLightingController::setPreview(QWidget *preview, LightShower show)
{
    mPreview = preview;
    mShowLight = std::move(show);
    static_cast<QVBoxLayout *>(mView->layout())->addWidget(preview, 1);
    showLight(mShownLight);
}
