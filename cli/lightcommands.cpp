// SPDX-License-Identifier: MIT
// "light": shows and changes the key lighting of the active profile.
#include "base/document.h"
#include "base/result.h"
#include "base/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/virtualkeyboardclient.h"
#include "lighting/backlight.h"

#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A word after "light color", "light effect" or "light brightness", and its value.
struct NamedValue
{
    QLatin1StringView name;
    int value;
};

constexpr NamedValue colorNames[] = {
    {QLatin1StringView("red"), 0xff0000},    {QLatin1StringView("orange"), 0xff8000},
    {QLatin1StringView("yellow"), 0xffff00}, {QLatin1StringView("green"), 0x00ff00},
    {QLatin1StringView("cyan"), 0x00ffff},   {QLatin1StringView("blue"), 0x0000ff},
    {QLatin1StringView("purple"), 0x8000ff}, {QLatin1StringView("pink"), 0xff00ff},
    {QLatin1StringView("white"), 0xffffff},
};

constexpr NamedValue effectNames[] = {
    {QLatin1StringView("fixed"), Backlight::fixedColorEffect},
    {QLatin1StringView("spectrum"), Backlight::spectrumCyclingEffect},
};

// The level between normal and bright has no name, as in the configurator.
constexpr NamedValue brightnessNames[] = {
    {QLatin1StringView("off"), Backlight::minimumBrightness},
    {QLatin1StringView("dim"), 1},
    {QLatin1StringView("normal"), 2},
    {QLatin1StringView("bright"), Backlight::maximumBrightness},
};

std::optional<int> valueOf(std::span<const NamedValue> names, const QString &name)
{
    const auto found = std::ranges::find_if(
        names, [&name](const NamedValue &row) { return name.compare(row.name, Qt::CaseInsensitive) == 0; });
    return found == names.end() ? std::nullopt : std::optional(found->value);
}

QLatin1StringView nameOf(std::span<const NamedValue> names, int value)
{
    const auto found = std::ranges::find(names, value, &NamedValue::value);
    return found == names.end() ? QLatin1StringView() : found->name;
}

/// The keys of a profile to change for the word after the setting.
using Change = Result<QVariantMap> (*)(const QString &word, const QVariantMap &profile);

Result<QVariantMap> switchOn(const QString &, const QVariantMap &)
{
    return QVariantMap{{SettingsKeys::backlightLed, 1}};
}

Result<QVariantMap> switchOff(const QString &, const QVariantMap &)
{
    return QVariantMap{{SettingsKeys::backlightLed, 0}};
}

std::optional<Backlight::Color> colorOf(const QString &word)
{
    if (const std::optional<int> named = valueOf(colorNames, word))
        return Backlight::Color{static_cast<quint8>(*named >> 16), static_cast<quint8>(*named >> 8),
                                static_cast<quint8>(*named)};
    // Also without the mark, which begins a comment in a shell.
    return Backlight::colorFromText(word.startsWith(u'#') ? word : u'#' + word);
}

Result<QVariantMap> changeColor(const QString &word, const QVariantMap &profile)
{
    const std::optional<Backlight::Color> color = colorOf(word);
    if (!color)
        return Error{
            u"\"%1\" is not a colour: give six hexadecimal digits, as ff8000, or a name, as orange"_s.arg(word)};
    constexpr double full = 255;
    QVariantList colors = Backlight::colorsOf(profile);
    QVariantMap first = colors.value(0).toMap();
    first[SettingsKeys::red] = color->red / full;
    first[SettingsKeys::green] = color->green / full;
    first[SettingsKeys::blue] = color->blue / full;
    // Only the first one belongs to the keys; the others are kept.
    if (colors.isEmpty())
        colors.append(first);
    else
        colors[0] = first;
    return QVariantMap{{SettingsKeys::ledKbColors, colors}};
}

Result<QVariantMap> changeEffect(const QString &word, const QVariantMap &)
{
    const std::optional<int> effect = valueOf(effectNames, word);
    if (!effect)
        return Error{u"\"%1\" is not an effect: give fixed or spectrum"_s.arg(word)};
    QVariantMap settings{{SettingsKeys::ledKbEffects, *effect}};
    // As in the configurator: a user who chooses a colour wants to see it.
    if (*effect == Backlight::fixedColorEffect)
        settings.insert(SettingsKeys::backlightLed, 1);
    return settings;
}

Result<QVariantMap> changeBrightness(const QString &word, const QVariantMap &)
{
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    const std::optional<int> level = isNumber ? std::optional(number) : valueOf(brightnessNames, word);
    if (!level || *level < Backlight::minimumBrightness || *level > Backlight::maximumBrightness)
        return Error{u"\"%1\" is not a brightness: give 0 to 4, off, dim, normal or bright"_s.arg(word)};
    return QVariantMap{{SettingsKeys::brightnessKbNormal, *level}};
}

struct LightSetting
{
    QLatin1StringView word;
    QLatin1StringView argument; ///< as the help shows it; empty for none
    Change change;
    QLatin1StringView help;
    QLatin1StringView otherSpelling = {}; ///< of the word, where there is one
};

constexpr LightSetting lightSettings[] = {
    {QLatin1StringView("on"), QLatin1StringView(), switchOn, QLatin1StringView("switch the light on")},
    {QLatin1StringView("off"), QLatin1StringView(), switchOff, QLatin1StringView("switch the light off")},
    {QLatin1StringView("color"), QLatin1StringView("COLOR"), changeColor, QLatin1StringView("give the keys a colour"),
     QLatin1StringView("colour")},
    {QLatin1StringView("effect"), QLatin1StringView("fixed|spectrum"), changeEffect,
     QLatin1StringView("show one colour, or all colours in turn")},
    {QLatin1StringView("brightness"), QLatin1StringView("N|off|dim|normal|bright"), changeBrightness,
     QLatin1StringView("set the brightness, from 0 (off) to 4 (bright)")},
};

void showSettings(CommandContext &context, const QVariantMap &document)
{
    const Backlight::Settings settings = Backlight::settingsOf(Document(document).activeProfile());
    const QLatin1StringView effect = nameOf(effectNames, settings.effect);
    const std::optional<QString> now = VirtualKeyboardClient::shownLight();
    if (context.hasOption(Options::json)) {
        context.console.printJson(
            QJsonObject{{u"backlight"_s, settings.isOn},
                        {u"color"_s, Backlight::colorText(settings.color)},
                        {u"effect"_s, effect.isEmpty() ? QJsonValue() : QJsonValue(QString(effect))},
                        {u"brightness"_s, settings.brightness},
                        {u"now"_s, now ? QJsonValue(*now) : QJsonValue()}});
        return;
    }
    const QLatin1StringView brightness = nameOf(brightnessNames, settings.brightness);
    context.console.print(u"backlight: "_s + (settings.isOn ? "on"_L1 : "off"_L1));
    context.console.print(u"color: "_s + Backlight::colorText(settings.color));
    context.console.print(u"effect: "_s
                          + (effect.isEmpty() ? u"unknown (%1)"_s.arg(settings.effect) : QString(effect)));
    context.console.print(u"brightness: "_s + QString::number(settings.brightness)
                          + (brightness.isEmpty() ? QString() : u" (%1)"_s.arg(brightness)));
    context.console.print(u"now: "_s + now.value_or(u"unknown"_s));
}

CommandResult<void> change(CommandContext &context, const QVariantMap &document, const LightSetting &setting)
{
    const Result<QVariantMap> settings = setting.change(context.arguments.value(1), Document(document).activeProfile());
    if (!settings)
        return wrongUsage(settings.error().message);
    const CommandResult<QVariantMap> reply =
        context.daemon.sendChecked(DaemonProtocol::Command::updateProfile,
                                   {{DaemonProtocol::profileId, Document(document).activeProfileIndex()},
                                    {DaemonProtocol::deviceSettingsDictionary, *settings}},
                                   u"the light cannot be changed"_s);
    if (!reply)
        return reply.error();
    // The daemon may hold something else than was asked for.
    showSettings(context, reply->value(DaemonProtocol::returnDictionary).toMap());
    return {};
}

/// The setting that the first argument names.
CommandResult<const LightSetting *> findSetting(const CommandContext &context)
{
    const QString &word = context.arguments.first();
    const auto found = std::ranges::find_if(lightSettings, [&word](const LightSetting &setting) {
        return word == setting.word || (!word.isEmpty() && word == setting.otherSpelling);
    });
    if (found == std::end(lightSettings))
        return wrongUsage(u"\"%1\" is not a setting of the light (see kestractl help light)"_s.arg(word));
    const bool hasArgument = context.arguments.size() > 1;
    if (hasArgument && found->argument.isEmpty())
        return wrongUsage(u"\"light %1\" takes nothing more"_s.arg(word));
    if (!hasArgument && !found->argument.isEmpty())
        return wrongUsage(u"\"light %1\" needs %2"_s.arg(word, found->argument));
    return found;
}

} // namespace

CommandResult<void> showOrSetLight(CommandContext &context)
{
    const LightSetting *setting = nullptr;
    if (!context.arguments.isEmpty()) {
        const CommandResult<const LightSetting *> found = findSetting(context);
        if (!found)
            return found.error();
        setting = *found;
    }
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document)
        return document.error();
    if (setting)
        return change(context, *document, *setting);
    showSettings(context, *document);
    return {};
}

QList<CommandForm> lightCommandForms()
{
    QList<CommandForm> forms{{.words = u"[--json]"_s, .help = u"show the light of the active profile"_s}};
    for (const LightSetting &setting : lightSettings) {
        QString words = setting.word;
        if (!setting.otherSpelling.isEmpty())
            words += u'|' + setting.otherSpelling;
        if (!setting.argument.isEmpty())
            words += u' ' + setting.argument;
        forms += {.words = words, .help = setting.help};
    }
    return forms;
}
