// SPDX-License-Identifier: MIT
// "device list", "use", "release" and "rule": the real keyboards that the daemon uses.
#include "base/devicekeys.h"
#include "base/devicerule.h"
#include "cli/commandtable.h"
#include "cli/deviceclient.h"

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
            {u"kind"_s, device.value(DeviceKeys::kind).toString()},
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
        const QString kind = text(device, DeviceKeys::kind);
        const QString words = kind.isEmpty() || kind == DeviceKeys::kindKeyboard ? QString() : u" (%1)"_s.arg(kind);
        console.print(u"%1  %2  %3"_s.arg(mark)
                          .arg(text(device, DeviceKeys::id), -width)
                          .arg(text(device, DeviceKeys::name) + words));
        if (const QString problem = text(device, DeviceKeys::problem); !problem.isEmpty())
            console.print(u"      cannot be used: "_s + problem);
    }
}

} // namespace

CommandResult<void> listDevices(CommandContext &context)
{
    const auto devices = DeviceClient::list();
    if (!devices)
        return devices.error();
    if (!context.hasOption(Options::json)) {
        printTable(context.console, *devices);
        return {};
    }
    QJsonArray list;
    for (const QVariantMap &device : *devices)
        list.append(jsonOf(device));
    context.console.printJson(list);
    return {};
}

CommandResult<void> useDevices(CommandContext &context)
{
    if (const auto used = DeviceClient::use(context.arguments); !used)
        return used.error();
    const auto status = DeviceClient::status();
    if (!status)
        return status.error();
    const QString state = text(*status, DeviceKeys::state);
    if (state == DeviceKeys::stateFailed)
        return CommandError{{text(*status, DeviceKeys::problem)}, ExitCode::refused};
    // The key that ended this command line is most likely still down.
    const QString names = status->value(DeviceKeys::names).toStringList().join(u", "_s);
    context.console.print(state == DeviceKeys::stateInUse ? u"in use: "_s + names
                                                          : u"in use as soon as no key is down"_s);
    context.console.print(
        u"to release it: hold Backspace, Escape and Return together, or run \"kestractl device release\""_s);
    return {};
}

CommandResult<void> releaseDevices(CommandContext &context)
{
    if (const auto released = DeviceClient::release(); !released)
        return released.error();
    context.console.print(u"the virtual keyboard is in use"_s);
    return {};
}

CommandResult<void> showDeviceRule(CommandContext &context)
{
    const auto devices = DeviceClient::list();
    if (!devices)
        return devices.error();
    const QString id = context.arguments.first();
    const auto device = std::ranges::find_if(*devices, [&id](const QVariantMap &candidate) {
        return candidate.value(DeviceKeys::id).toString() == id
               || candidate.value(DeviceKeys::nodes).toStringList().contains(id);
    });
    if (device == devices->end())
        return wrongUsage(u"no keyboard \"%1\" (see kestractl device list)"_s.arg(id));
    const std::optional<QString> rule = deviceRule(*device, ::getuid());
    if (!rule)
        return CommandError{
            {u"the keyboard \"%1\" reports neither vendor nor product, so no rule can name it"_s.arg(id)},
            ExitCode::refused};
    context.console.printBytes(rule->toUtf8());
    return {};
}
