// SPDX-License-Identifier: MIT
#include "base/settingskeys.h"
#include "tests/app/secondhand/operation.h"

#include <QColorDialog>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr char alert[] = "alert";
constexpr char colorDialog[] = "colorDialog";
constexpr char slider[] = "mBrightnessValue";
constexpr int draggedTo = 2;
constexpr int draggedOnTo = 4; // the end of the slider

void restoreSubject(Scene &scene)
{
    QVariantMap record = defaultProfile(scene);
    record.insert(SettingsKeys::profileName, scene.ledger.profileRecord().value(SettingsKeys::profileName));
    record.insert(SettingsKeys::brightnessKbNormal, 4);
    record.insert(SettingsKeys::profileOsdOn, true);
    scene.ledger.changeProfile(record);
}

Operation restoring()
{
    return {.name = "restoring",
            .tab = lightingTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profile,
            .begin = [](Scene &scene) { Person::click(scene, "mRestoreSettings"); },
            .isOpen = [](const Scene &) { return Person::dialog(alert) != nullptr; },
            .beginCommands = {},
            .ends = {{"finished",
                      [](Scene &) { Person::clickIn(alert, "alertDefaultButton"); },
                      restoreSubject,
                      {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(alert); }, {}, {}}}};
}

Operation choosingAColor()
{
    const auto choose = [](Scene &) {
        if (auto *dialog = qobject_cast<QColorDialog *>(Person::dialog(colorDialog))) {
            dialog->setCurrentColor(QColor(255, 0, 0));
            dialog->accept();
        }
    };
    const auto change = [](Scene &scene) {
        QVariantList colors = scene.ledger.profileRecord().value(SettingsKeys::ledKbColors).toList();
        QVariantMap color = colors.value(0).toMap();
        color.insert(SettingsKeys::red, 1.0);
        color.insert(SettingsKeys::green, 0.0);
        color.insert(SettingsKeys::blue, 0.0);
        colors[0] = color;
        scene.ledger.changeProfile({{SettingsKeys::ledKbColors, colors}});
    };
    return {.name = "colour dialog",
            .tab = lightingTab,
            .kind = OperationKind::sheet,
            .subject = Subject::profilesLight,
            .begin = [](Scene &scene) { Person::click(scene, "mMainColor"); },
            .isOpen = [](const Scene &) { return Person::dialog(colorDialog) != nullptr; },
            .beginCommands = {},
            .ends = {{"finished", choose, change, {Command::updateProfile}},
                     {"cancelled", [](Scene &) { Person::cancel(colorDialog); }, {}, {}}}};
}

QPoint handleAt(const QSlider *brightness, int value)
{
    QStyleOptionSlider option;
    option.initFrom(brightness);
    option.orientation = Qt::Horizontal;
    option.subControls = QStyle::SC_All;
    option.minimum = brightness->minimum();
    option.maximum = brightness->maximum();
    option.sliderPosition = option.sliderValue = value;
    option.tickPosition = brightness->tickPosition();
    option.tickInterval = brightness->tickInterval();
    return brightness->style()
        ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, brightness)
        .center();
}

std::function<void(Scene &)> brightnessOf(int value)
{
    return [value](Scene &scene) { scene.ledger.changeProfile({{SettingsKeys::brightnessKbNormal, value}}); };
}

Operation draggingTheBrightness()
{
    const auto begin = [](Scene &scene) {
        auto *brightness = scene.find<QSlider>(slider);
        QTest::mousePress(brightness, Qt::LeftButton, {}, handleAt(brightness, brightness->value()));
        QTest::mouseMove(brightness, handleAt(brightness, draggedTo));
        brightnessOf(draggedTo)(scene);
    };
    const auto release = [](Scene &scene) {
        auto *brightness = scene.find<QSlider>(slider);
        QTest::mouseRelease(brightness, Qt::LeftButton, {}, handleAt(brightness, brightness->value()));
    };
    const auto dragOn = [](Scene &scene) {
        auto *brightness = scene.find<QSlider>(slider);
        QTest::mouseMove(brightness, handleAt(brightness, draggedOnTo));
        QTest::mouseRelease(brightness, Qt::LeftButton, {}, handleAt(brightness, draggedOnTo));
    };
    return {.name = "dragging the brightness",
            .tab = lightingTab,
            .kind = OperationKind::drag,
            .subject = Subject::profilesLight,
            .begin = begin,
            .isOpen = [](const Scene &scene) { return scene.find<QSlider>(slider)->isSliderDown(); },
            .beginCommands = {Command::updateProfile},
            .ends = {{"dragged on", dragOn, brightnessOf(draggedOnTo), {Command::updateProfile}},
                     {"released", release, {}, {}}}};
}

} // namespace

std::vector<Operation> lightingOperations()
{
    return {restoring(), choosingAColor(), draggingTheBrightness()};
}
