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
            {u"state"_s, device.value(DeviceKeys::state).toString()},
            {u"problem"_s, device.value(DeviceKeys::problem).toString()}};
}

/// Why a chosen keyboard that can be used is not in use; empty for others.
QString wordsForState(const QString &state)
{
    if (state == DeviceKeys::stateWaiting)
        return u"chosen: in use as soon as none of its keys is down"_s;
    if (state == DeviceKeys::stateSuspended)
        return u"chosen: released by Backspace, Escape and Return; \"kestractl device use\" grabs it again"_s;
    if (state == DeviceKeys::stateFailed)
        return u"chosen: not in use; \"kestractl status\" shows why"_s;
    return {};
}

void printTable(Console &console, const QList<QVariantMap> &devices, const QStringList &absent)
{
    if (devices.isEmpty())
        console.print(u"no keyboard is plugged in"_s);
    qsizetype width = 0;
    for (const QString &id : absent)
        width = std::max(width, id.size());
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
        else if (const QString reason = wordsForState(text(device, DeviceKeys::state)); !reason.isEmpty())
            console.print(u"      "_s + reason);
    }
    for (const QString &id : absent)
        console.print(u"   %1  chosen, not plugged in"_s.arg(id, -width));
}

} // namespace

CommandResult<void> listDevices(CommandContext &context)
{
    const auto devices = DeviceClient::list();
    if (!devices)
        return devices.error();
    const auto status = DeviceClient::status();
    if (!status)
        return status.error();
    const QStringList absent = status->value(DeviceKeys::absent).toStringList();
    if (!context.hasOption(Options::json)) {
        printTable(context.console, *devices, absent);
        return {};
    }
    QJsonArray list;
    for (const QVariantMap &device : *devices)
        list.append(jsonOf(device));
    for (const QString &id : absent)
        list.append(QJsonObject{{u"id"_s, id}, {u"inUse"_s, false}, {u"state"_s, u"absent"_s}});
    context.console.printJson(list);
    return {};
}

CommandResult<void> useDevices(CommandContext &context)
{
    const auto used = context.hasOption(Options::add) ? DeviceClient::useAlso(context.arguments)
                                                      : DeviceClient::use(context.arguments);
    if (!used)
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
    const auto released =
        context.arguments.isEmpty() ? DeviceClient::release() : DeviceClient::releaseThese(context.arguments);
    if (!released)
        return released.error();
    const auto status = DeviceClient::status();
    if (!status)
        return status.error();
    const QStringList names = status->value(DeviceKeys::names).toStringList();
    if (text(*status, DeviceKeys::state) == DeviceKeys::stateReleased)
        context.console.print(u"the virtual keyboard is in use"_s);
    else
        context.console.print(names.isEmpty() ? u"released; another keyboard is still chosen"_s
                                              : u"released; still in use: "_s + names.join(u", "_s));
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
