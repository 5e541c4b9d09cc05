// SPDX-License-Identifier: MIT
// "status": what a person asks first.
#include "app/util/plistnumbers.h"
#include "app/util/settingskeys.h"
#include "cli/commandtable.h"
#include "cli/frontapplicationclient.h"
#include "cli/keydescription.h"
#include "cli/virtualkeyboardclient.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

/// A property of the application in front; null when the daemon does not tell it.
QJsonValue frontApplication(QLatin1StringView property)
{
    DaemonObjectResult result;
    const std::optional<QVariant> value = frontApplicationObject.property(property, result);
    return value ? QJsonValue(value->toString()) : QJsonValue();
}

/// What to do where the desktop does not tell which application is in front; empty where it does.
QString frontApplicationHint()
{
    DaemonObjectResult result;
    const std::optional<QVariant> seesAll = frontApplicationObject.property("SeesAllWindows"_L1, result);
    if (!seesAll || seesAll->toBool())
        return {};
    const QString source = frontApplication("Source"_L1).toString();
    return (source == "none"_L1 ? u"this desktop does not tell which application is in front"_s
                                : u"this desktop tells of X11 applications only"_s)
           + u"; tell it by \"kestractl focus NAME\""_s;
}

/// The rows of the answer, in the order printed.
QList<std::pair<QString, QJsonValue>> statusRows(const QVariantMap &document, DaemonClient &daemon)
{
    const QVariantMap device = document.value(SettingsKeys::deviceSettings).toMap();
    const QVariantMap profile = activeProfileRecord(document);
    const std::optional<bool> attached = VirtualKeyboardClient::isAttached();
    const std::optional<QString> firmware = attached.value_or(false) ? daemon.firmwareVersion() : std::nullopt;
    return {{u"daemon"_s, u"running"_s},
            {u"keyboard"_s, !attached   ? u"unknown"_s
                            : *attached ? u"attached"_s
                                        : u"not attached"_s},
            {u"firmware"_s, firmware ? QJsonValue(*firmware) : QJsonValue()},
            {u"activeProfile"_s, PlistNumbers::integerValue(device.value(SettingsKeys::activeProfile))},
            {u"activeProfileName"_s, profile.value(SettingsKeys::profileName).toString()},
            {u"frontApplication"_s, frontApplication("Application"_L1)},
            {u"frontApplicationSource"_s, frontApplication("Source"_L1)},
            {u"frontApplicationHint"_s, frontApplicationHint()},
            {u"profiles"_s, document.value(SettingsKeys::profiles).toList().size()},
            {u"macros"_s, document.value(SettingsKeys::macros).toList().size()},
            {u"gameMode"_s, device.value(SettingsKeys::gameMode).toBool()},
            {u"brightness"_s, PlistNumbers::integerValue(profile.value(SettingsKeys::brightnessKbNormal))}};
}

QString words(const QJsonValue &value)
{
    if (value.isNull())
        return u"unknown"_s;
    if (value.isBool())
        return value.toBool() ? u"on"_s : u"off"_s;
    if (value.isDouble())
        return QString::number(value.toInt());
    return value.toString().isEmpty() ? u"none"_s : value.toString();
}

} // namespace

ExitCode showStatus(CommandContext &context)
{
    const bool asJson = context.hasOption(Options::json);
    const DaemonClient::Answer document = context.daemon.document();
    if (!document.ok()) {
        // A missing or silent daemon is an answer too, so that a script can read it.
        const QString state = document.failure == ExitCode::noDaemon ? u"not running"_s : u"not answering"_s;
        if (asJson)
            context.console.printJson(QJsonObject{{u"daemon"_s, state}});
        else
            context.console.print(u"daemon: "_s + state);
        return context.console.fail(document.failure, document.reason);
    }
    QJsonObject object;
    for (const auto &[name, value] : statusRows(document.reply, context.daemon)) {
        object.insert(name, value);
        const bool isHintWithoutNeed = name == "frontApplicationHint"_L1 && value.toString().isEmpty();
        if (!asJson && !isHintWithoutNeed)
            context.console.print(name + u": "_s + words(value));
    }
    if (asJson)
        context.console.printJson(object);
    return ExitCode::ok;
}
