// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/keyboardleds.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestFile = 4096; // the kernel's limit for one attribute

QString content(const QString &folder, QLatin1StringView name)
{
    QFile file(folder + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.read(longestFile)).trimmed() : QString();
}

// No regular expression for the names below: the library takes nearly half a megabyte of memory.

bool isUpperHex(QStringView text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar digit) {
        return (digit >= u'0' && digit <= u'9') || (digit >= u'A' && digit <= u'F');
    });
}

/// The kernel names a HID device by bus, vendor, product and a running number: "0003:046D:C31C.0001". Empty for other
/// names.
QString busOfHidDevice(const QString &name)
{
    constexpr qsizetype digits = 4;
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 0 || !isUpperHex(QStringView(name).sliced(dot + 1)))
        return {};
    const QStringList ids = name.first(dot).split(u':');
    const bool isHid = ids.size() == 3 && std::ranges::all_of(ids, [](const QString &id) {
                           return id.size() == digits && isUpperHex(id);
                       });
    return isHid ? ids.constFirst() : QString();
}

/// The pluggable device that something below it belongs to.
struct Owner
{
    QString folder; ///< empty if not pluggable
    bool isBuiltIn = false;
};

/// `path` is a folder of the kernel's device tree, without links.
Owner ownerOf(const QString &path)
{
    constexpr QLatin1StringView usbBus{"0003"};
    constexpr QLatin1StringView i2cBus{"0018"}; // soldered in
    QString hid;
    QString bus;
    for (QString folder = path; folder.size() > 1; folder = QFileInfo(folder).path()) {
        if (hid.isEmpty()) {
            bus = busOfHidDevice(QFileInfo(folder).fileName());
            if (!bus.isEmpty())
                hid = folder;
        }
        // The USB device above a device of another bus is the adapter of that bus, which many devices share.
        if ((hid.isEmpty() || bus == usbBus) && QFileInfo::exists(folder + u"/idVendor"_s))
            return {.folder = folder, .isBuiltIn = false};
    }
    return {.folder = hid, .isBuiltIn = hid.isEmpty() || bus == i2cBus};
}

bool isNamedAsLight(const QString &led)
{
    return led.contains("kbd_backlight"_L1) || led.contains("kbd_zoned_backlight"_L1);
}

/// The kernel names an LED "device:color:function", with a number if there are several.
bool isNamedAsIndicator(const QString &led)
{
    constexpr std::array functions{"numlock"_L1,   "capslock"_L1, "scrolllock"_L1, "compose"_L1,  "kana"_L1,
                                   "indicator"_L1, "status"_L1,   "power"_L1,      "charging"_L1, "player"_L1,
                                   "mute"_L1,      "micmute"_L1,  "camera"_L1};
    const qsizetype colon = led.lastIndexOf(u':');
    const QStringView name = QStringView(led).sliced(colon + 1);
    return colon >= 0
           && std::ranges::any_of(functions, [name](QLatin1StringView function) { return name.startsWith(function); });
}

KeyboardLed::Channel channelOf(const QString &color)
{
    using Channel = KeyboardLed::Channel;
    struct Name
    {
        QLatin1StringView color;
        Channel channel;
    };
    constexpr std::array names{Name{"red"_L1, Channel::red}, Name{"green"_L1, Channel::green},
                               Name{"blue"_L1, Channel::blue}};
    const auto name = std::ranges::find(names, color, &Name::color);
    return name != names.end() ? name->channel : Channel::unused;
}

std::optional<KeyboardLed> readLed(const QString &name, const QString &folder)
{
    KeyboardLed led{.name = name, .folder = folder, .maximum = 0, .channels = {}, .color = {}};
    bool isNumber = false;
    led.maximum = content(folder, "max_brightness"_L1).toUInt(&isNumber);
    if (!isNumber || led.maximum == 0 || led.maximum > uint(std::numeric_limits<int>::max()))
        return {};
    led.color = channelOf(name.section(u':', -2, -2));
    if (led.color == KeyboardLed::Channel::unused)
        led.color = KeyboardLed::Channel::anyColor;
    if (!QFileInfo::exists(folder + u"/multi_intensity"_s))
        return led;
    const QStringList colors = content(folder, "multi_index"_L1).split(u' ', Qt::SkipEmptyParts);
    std::ranges::transform(colors, std::back_inserter(led.channels), channelOf);
    if (std::ranges::all_of(led.channels, [](auto channel) { return channel == KeyboardLed::Channel::unused; }))
        led.channels.fill(KeyboardLed::Channel::anyColor); // white and amber, for example, can only show bright or dark
    return led.channels.isEmpty() ? std::nullopt : std::optional(led);
}

} // namespace

QList<KeyboardLed> keyboardLeds(const QStringList &nodes, const LedFolders &folders)
{
    QStringList owners;
    bool isBuiltIn = false;
    for (const QString &node : nodes) {
        const QString name = QFileInfo(node).fileName();
        const QString path = QFileInfo(QDir(folders.inputs).filePath(name)).canonicalFilePath();
        if (name.isEmpty() || path.isEmpty())
            continue; // unplugged meanwhile
        const Owner owner = ownerOf(path);
        isBuiltIn = isBuiltIn || owner.isBuiltIn;
        if (!owner.folder.isEmpty())
            owners += owner.folder;
    }
    QList<KeyboardLed> leds;
    const QStringList names = QDir(folders.leds).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        const QString folder = QFileInfo(QDir(folders.leds).filePath(name)).canonicalFilePath();
        const bool isOwned = owners.contains(ownerOf(folder).folder);
        const bool isOfTheMachine = isBuiltIn && ownerOf(folder).folder.isEmpty();
        const bool hasColors = QFileInfo::exists(folder + u"/multi_intensity"_s) && !isNamedAsIndicator(name);
        if (!(isNamedAsLight(name) && (isOwned || isOfTheMachine)) && !(isOwned && hasColors))
            continue;
        if (const std::optional<KeyboardLed> led = readLed(name, folder))
            leds += *led;
    }
    return leds;
}
