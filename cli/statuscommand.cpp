// SPDX-License-Identifier: MIT
// "status": the state of daemon, keyboard and settings.
#include "base/devicekeys.h"
#include "base/document.h"
#include "base/frontapplicationkeys.h"
#include "base/profilerecord.h"
#include "base/settingsobjectkeys.h"
#include "cli/commandtable.h"
#include "cli/deviceclient.h"
#include "cli/frontapplicationclient.h"
#include "cli/virtualkeyboardclient.h"
#include "lighting/backlight.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView problemsRow{"settingsProblems"};
constexpr QLatin1StringView activeProfileRow{"activeProfile"};

/// A property of the application in front; null when the daemon does not report it.
QJsonValue frontApplication(QLatin1StringView property)
{
    const DaemonObjectResult<QVariant> value = frontApplicationObject.property(property);
    return value ? QJsonValue(value->toString()) : QJsonValue();
}

/// The remedy where the desktop does not report the application in front; empty where it does.
QString frontApplicationHint()
{
    const DaemonObjectResult<QVariant> seesAll = frontApplicationObject.property("SeesAllWindows"_L1);
    if (!seesAll || seesAll->toBool())
        return {};
    const QString focus = u"\"kestractl focus NAME\" reports "_s;
    const DaemonObjectResult<QVariant> needsExtension =
        frontApplicationObject.property(FrontApplicationKeys::needsShellExtension);
    const bool hasSource = frontApplication("Source"_L1).toString() != FrontApplicationKeys::noSource;
    if (needsExtension && needsExtension->toBool())
        return (hasSource ? u"GNOME on Wayland reports applications other than those of X11 to its extension alone"_s
                          : u"GNOME on Wayland reports windows to its extension alone"_s)
               + u": install and enable the package %1; until then, "_s.arg(FrontApplicationKeys::shellExtensionPackage)
               + focus + (hasSource ? u"others"_s : u"an application"_s);
    return (hasSource ? u"this desktop reports X11 applications only"_s
                      : u"this desktop does not report the application in front"_s)
           + u"; "_s + focus + u"others"_s;
}

/// The problems of the settings files since the daemon started; null when the daemon does not report them.
QJsonValue settingsProblems()
{
    constexpr DaemonObjectClient settings{.path = SettingsObjectKeys::objectPath,
                                          .interface = SettingsObjectKeys::interfaceName,
                                          .words = "state of the settings files"_L1};
    const DaemonObjectResult<QVariant> problems = settings.property(SettingsObjectKeys::problems);
    return problems ? QJsonValue(QJsonArray::fromStringList(problems->toStringList())) : QJsonValue();
}

using Rows = QList<std::pair<QString, QJsonValue>>;

/// Whether the keyboard that the daemon now uses is there; `device` is the status of the real ones.
QString attachment(const QVariantMap &device)
{
    const QString state = device.value(DeviceKeys::state).toString();
    if (!state.isEmpty() && state != DeviceKeys::stateReleased)
        return state == DeviceKeys::stateInUse ? u"attached"_s : u"not attached"_s;
    const std::optional<bool> attached = VirtualKeyboardClient::isAttached();
    return !attached ? u"unknown"_s : *attached ? u"attached"_s : u"not attached"_s;
}

/// The state of the real keyboards; all null when the daemon does not report it.
Rows deviceRows(const QVariantMap &device)
{
    const auto value = [&device](DeviceKeys::Key key) { return QJsonValue::fromVariant(device.value(key)); };
    const QStringList names = device.value(DeviceKeys::names).toStringList();
    const QJsonObject latency{{u"count"_s, value(DeviceKeys::latencyCount)},
                              {u"p50Us"_s, value(DeviceKeys::latencyP50Us)},
                              {u"p99Us"_s, value(DeviceKeys::latencyP99Us)},
                              {u"maximumUs"_s, value(DeviceKeys::latencyMaximumUs)}};
    return {{u"deviceState"_s, value(DeviceKeys::state)},
            {u"devices"_s, device.isEmpty() ? QJsonValue() : QJsonArray::fromStringList(names)},
            {u"deviceProblem"_s, value(DeviceKeys::problem)},
            {u"grabs"_s, value(DeviceKeys::grabs)},
            {u"realTime"_s, value(DeviceKeys::isRealTime)},
            {u"lostEvents"_s, value(DeviceKeys::lostEvents)},
            {u"latency"_s, device.isEmpty() ? QJsonValue() : latency}};
}

/// The rows of the answer, in the order printed.
Rows statusRows(const Document &document, DaemonClient &daemon)
{
    const QVariantMap profile = document.activeProfile();
    const DaemonObjectResult<QVariantMap> status = DeviceClient::status();
    const QVariantMap device = status ? *status : QVariantMap();
    const QString keyboard = attachment(device);
    const std::optional<QString> firmware = keyboard == u"attached"_s ? daemon.firmwareVersion() : std::nullopt;
    Rows rows{{u"daemon"_s, u"running"_s},
              {u"keyboard"_s, keyboard},
              {u"firmware"_s, firmware ? QJsonValue(*firmware) : QJsonValue()}};
    rows += deviceRows(device);
    rows += Rows{{activeProfileRow, document.activeProfileIndex()},
                 {u"activeProfileName"_s, ProfileRecord::name(profile)},
                 {u"frontApplication"_s, frontApplication("Application"_L1)},
                 {u"frontApplicationSource"_s, frontApplication("Source"_L1)},
                 {u"frontApplicationHint"_s, frontApplicationHint()},
                 {u"profiles"_s, document.profiles().size()},
                 {u"macros"_s, document.macros().size()},
                 {u"gameMode"_s, document.deviceSettings().isGameModeOn()},
                 {u"brightness"_s, Backlight::settingsOf(profile).brightness},
                 {problemsRow, settingsProblems()}};
    return rows;
}

QString latencyWords(const QJsonObject &latency)
{
    const auto number = [&latency](const QString &name) { return QString::number(latency.value(name).toInteger()); };
    if (latency.value(u"count"_s).toInteger() == 0)
        return u"no keys yet"_s;
    return u"p50 %1 µs, p99 %2 µs, maximum %3 µs of %4 keys"_s.arg(number(u"p50Us"_s), number(u"p99Us"_s),
                                                                   number(u"maximumUs"_s), number(u"count"_s));
}

QString words(const QJsonValue &value)
{
    if (value.isNull())
        return u"unknown"_s;
    if (value.isBool())
        return value.toBool() ? u"on"_s : u"off"_s;
    if (value.isDouble())
        return QString::number(value.toInteger());
    if (value.isObject())
        return latencyWords(value.toObject());
    const QString text = value.isArray() ? value.toVariant().toStringList().join(u", "_s) : value.toString();
    return text.isEmpty() ? u"none"_s : text;
}

/// One line each, because they are sentences.
void printProblems(const QJsonArray &problems, Console &console)
{
    for (const QJsonValue &problem : problems)
        console.print(u"settingsProblem: "_s + problem.toString());
}

} // namespace

CommandResult<void> showStatus(CommandContext &context)
{
    const bool asJson = context.hasOption(Options::json);
    const CommandResult<QVariantMap> document = context.daemon.document();
    if (!document) {
        // A missing or silent daemon is also an answer, for scripts to read.
        const bool isMissing = document.error().code == ExitCode::noDaemon;
        const QString state = isMissing ? u"not running"_s : u"not answering"_s;
        if (asJson)
            context.console.printJson(QJsonObject{{u"daemon"_s, state}});
        else
            context.console.print(u"daemon: "_s + state);
        return document.error();
    }
    QJsonObject object;
    for (const auto &[name, value] : statusRows(Document(*document), context.daemon)) {
        object.insert(name, value);
        const bool isHintWithoutNeed = name == "frontApplicationHint"_L1 && value.toString().isEmpty();
        if (!asJson && name == problemsRow)
            printProblems(value.toArray(), context.console);
        else if (!asJson && name == activeProfileRow)
            context.console.print(name + u": "_s + QString::number(value.toInteger() + 1)); // users count from 1
        else if (!asJson && !isHintWithoutNeed)
            context.console.print(name + u": "_s + words(value));
    }
    if (asJson)
        context.console.printJson(object);
    return {};
}
