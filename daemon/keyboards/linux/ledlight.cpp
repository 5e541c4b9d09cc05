// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/ledlight.h"

#include "daemon/system/logging.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace {

using Channel = KeyboardLed::Channel;

bool isLit(const Backlight::Settings &settings)
{
    return !Backlight::colorAt(settings, Backlight::Time(0)).isOff();
}

Backlight::Settings atFullBrightness(Backlight::Settings settings)
{
    if (settings.brightness > Backlight::minimumBrightness)
        settings.brightness = Backlight::maximumBrightness;
    return settings;
}

/// 0, or the errno value of the failure. The kernel accepts or refuses the value as a whole.
int writeAttribute(const QString &folder, const char *name, const QByteArray &value)
{
    const QByteArray path = QFile::encodeName(folder) + '/' + name;
    const int file = ::open(path.constData(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (file < 0)
        return errno;
    const ssize_t written = ::write(file, value.constData(), size_t(value.size()));
    const int error = written < 0 ? errno : written < value.size() ? EIO : 0;
    ::close(file);
    return error;
}

} // namespace

LedLight::LedLight(Services services, QObject *parent) : QObject(parent), mServices(std::move(services))
{
    connect(&mColor, &TimedLight::changed, this, &LedLight::write);
    setPowered();
}

LedLight::LedLight(Services services, TimedLight::Clock clock, QObject *parent)
    : QObject(parent), mServices(std::move(services)), mColor(std::move(clock))
{
    connect(&mColor, &TimedLight::changed, this, &LedLight::write);
    setPowered();
}

void LedLight::useNodes(const QStringList &nodes)
{
    mLeds.clear();
    if (!nodes.isEmpty()) {
        for (const KeyboardLed &led : keyboardLeds(nodes, mServices.folders))
            mLeds += Led{.led = led,
                         .brightness = {},
                         .intensity = {},
                         .hasColorFailed = false,
                         .hasFailed = false,
                         .isForeign = false};
    }
    setPowered();
    write();
}

void LedLight::show(const Backlight::Settings &settings)
{
    mSettings = settings;
    mIsSet = true;
    mColor.show(atFullBrightness(settings));
    write();
}

/// Without an LED that shows a colour, the colour needs no timer.
void LedLight::setPowered()
{
    mColor.setPowered(
        std::ranges::any_of(mLeds, [](const Led &led) { return led.led.showsColor() && !led.hasColorFailed; }));
}

void LedLight::write()
{
    if (!mIsSet)
        return;
    for (Led &led : mLeds) {
        writeIntensity(led); // first, so a light that turns on has its colour at once
        writeBrightness(led);
    }
}

void LedLight::writeIntensity(Led &led)
{
    if (led.led.channels.isEmpty() || led.hasColorFailed || !isLit(mSettings))
        return;
    const QByteArray intensity = intensityOf(led.led);
    if (intensity == led.intensity)
        return;
    led.intensity = intensity;
    const int error = writeAttribute(led.led.folder, "multi_intensity", intensity);
    if (error == 0)
        return;
    led.hasColorFailed = true;
    qCWarning(lcKeyboard, "keyboard: the colour of the LED %s cannot be set: %s%s", qUtf8Printable(led.led.name),
              std::strerror(error), // NOLINT(concurrency-mt-unsafe): one thread
              error == EACCES ? " (\"kestractl device rule\" prints a rule that gives the right to it)" : "");
    // Queued: the current call may come from the very change that this would end.
    QMetaObject::invokeMethod(this, &LedLight::setPowered, Qt::QueuedConnection);
}

void LedLight::writeBrightness(Led &led)
{
    const uint brightness = brightnessOf(led.led);
    if (brightness == led.brightness || led.hasFailed)
        return;
    led.brightness = brightness;
    if (!led.isForeign) {
        const int error = writeAttribute(led.led.folder, "brightness", QByteArray::number(brightness));
        if (error == 0)
            return;
        led.isForeign = (error == EACCES || error == EPERM) && mServices.setForeignBrightness;
        led.hasFailed = !led.isForeign;
        qCWarning(lcKeyboard, "keyboard: the brightness of the LED %s cannot be set: %s%s",
                  qUtf8Printable(led.led.name), std::strerror(error), // NOLINT(concurrency-mt-unsafe): one thread
                  led.isForeign ? "; the session is asked to" : "");
    }
    if (led.isForeign)
        mServices.setForeignBrightness(led.led.name, brightness);
}

uint LedLight::brightnessOf(const KeyboardLed &led) const
{
    if (!isLit(mSettings))
        return 0;
    const double level = double(mSettings.brightness) / Backlight::maximumBrightness;
    const double share = led.channels.isEmpty() ? shareOf(led.color) : 1;
    const auto brightness = uint(std::lround(led.maximum * level * share));
    return share > 0 ? std::max(brightness, 1U) : 0; // a dim light is not off, however few its steps
}

QByteArray LedLight::intensityOf(const KeyboardLed &led) const
{
    QByteArrayList values;
    for (const Channel channel : led.channels)
        values += QByteArray::number(std::lround(led.maximum * shareOf(channel)));
    return values.join(' ');
}

/// The share of `channel` in the colour at full brightness: 0 to 1.
double LedLight::shareOf(Channel channel) const
{
    constexpr double full = 255;
    const Backlight::Color color = mColor.color();
    switch (channel) {
    case Channel::red: return color.red / full;
    case Channel::green: return color.green / full;
    case Channel::blue: return color.blue / full;
    case Channel::anyColor: return 1;
    case Channel::unused: return 0;
    }
    return 0;
}
