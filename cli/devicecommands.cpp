// SPDX-License-Identifier: MIT
// "device list", "use", "release" and "rule": which real keyboards the daemon takes over.
#include "base/devicekeys.h"
#include "cli/commandtable.h"
#include "cli/deviceclient.h"
#include "cli/devicerule.h"

#include <QJsonArray>
#include <QJsonObject>

#include <unistd.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString text(const QVariantMap &device, DeviceKeys::Key key)
{
    return device.value(key).toString();
}

QJsonObject jsonOf(const QVariantMap &device)
{
    return {{u"id"_s, device.value(DeviceKeys::id).toString()},
            {u"name"_s, device.value(DeviceKeys::name).toString()},
            {u"vendor"_s, device.value(DeviceKeys::vendor).toInt()},
            {u"product"_s, device.value(DeviceKeys::product).toInt()},
            {u"serial"_s, device.value(DeviceKeys::serial).toString()},
            {u"path"_s, device.value(DeviceKeys::path).toString()},
            {u"nodes"_s, QJsonArray::fromStringList(device.value(DeviceKeys::nodes).toStringList())},
            {u"inUse"_s, device.value(DeviceKeys::isInUse).toBool()},
            {u"problem"_s, device.value(DeviceKeys::problem).toString()}};
}

void printTable(Console &console, const QList<QVariantMap> &devices)
{
    if (devices.isEmpty())
        console.print(u"no keyboard is plugged in"_s);
    qsizetype width = 0;
    for (const QVariantMap &device : devices)
        width = std::max(width, text(device, DeviceKeys::id).size());
    for (const QVariantMap &device : devices) {
        const QChar mark = device.value(DeviceKeys::isInUse).toBool() ? u'*' : u' ';
        console.print(
            u"%1  %2  %3"_s.arg(mark).arg(text(device, DeviceKeys::id), -width).arg(text(device, DeviceKeys::name)));
        if (const QString problem = text(device, DeviceKeys::problem); !problem.isEmpty())
            console.print(u"      cannot be used: "_s + problem);
    }
}

ExitCode fail(CommandContext &context, const DaemonObjectResult &result)
{
    return context.console.fail(result.failure, result.reason);
}

} // namespace

ExitCode listDevices(CommandContext &context)
{
    DaemonObjectResult result;
    const QList<QVariantMap> devices = DeviceClient::list(result);
    if (result.failure != ExitCode::ok)
        return fail(context, result);
    if (!context.hasOption(Options::json)) {
        printTable(context.console, devices);
        return ExitCode::ok;
    }
    QJsonArray list;
    for (const QVariantMap &device : devices)
        list.append(jsonOf(device));
    context.console.printJson(list);
    return ExitCode::ok;
}

ExitCode useDevices(CommandContext &context)
{
    DaemonObjectResult result = DeviceClient::use(context.arguments);
    if (result.failure != ExitCode::ok)
        return fail(context, result);
    const QVariantMap status = DeviceClient::status(result);
    if (result.failure != ExitCode::ok)
        return fail(context, result);
    const QString state = text(status, DeviceKeys::state);
    if (const QString problem = text(status, DeviceKeys::problem); state == DeviceKeys::stateFailed)
        return context.console.fail(ExitCode::refused, problem);
    // The key that ended this command line is most likely still down.
    const QString names = status.value(DeviceKeys::names).toStringList().join(u", "_s);
    context.console.print(state == DeviceKeys::stateInUse ? u"in use: "_s + names
                                                          : u"in use as soon as no key is down"_s);
    context.console.print(
        u"to get out: hold Backspace, Escape and Return together, or say \"kestractl device release\""_s);
    return ExitCode::ok;
}

ExitCode releaseDevices(CommandContext &context)
{
    const DaemonObjectResult result = DeviceClient::release();
    if (result.failure != ExitCode::ok)
        return fail(context, result);
    context.console.print(u"the virtual keyboard is in use"_s);
    return ExitCode::ok;
}

ExitCode showDeviceRule(CommandContext &context)
{
    DaemonObjectResult result;
    const QList<QVariantMap> devices = DeviceClient::list(result);
    if (result.failure != ExitCode::ok)
        return fail(context, result);
    const QString id = context.arguments.first();
    const auto device = std::ranges::find_if(devices, [&id](const QVariantMap &candidate) {
        return candidate.value(DeviceKeys::id).toString() == id
               || candidate.value(DeviceKeys::nodes).toStringList().contains(id);
    });
    if (device == devices.end())
        return context.console.fail(ExitCode::usage, u"no keyboard \"%1\" (see kestractl device list)"_s.arg(id));
    const std::optional<QString> rule = deviceRule(*device, ::getuid());
    if (!rule)
        return context.console.fail(
            ExitCode::refused, u"the keyboard \"%1\" tells neither maker nor product: no rule can name it"_s.arg(id));
    context.console.printBytes(rule->toUtf8());
    return ExitCode::ok;
}
