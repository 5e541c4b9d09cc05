// SPDX-License-Identifier: MIT
#include "cli/deviceclient.h"

#include "base/devicekeys.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObjectClient devices{
    .path = DeviceKeys::objectPath, .interface = DeviceKeys::interfaceName, .words = "use of real keyboards"_L1};

/// The daemon's own messages are whole sentences and contain the remedy.
DaemonObjectResult<void> inItsWords(const DaemonObjectResult<QVariantList> &result)
{
    if (result)
        return {};
    DaemonObjectError error = result.error();
    const auto isOurs = [&error](DeviceKeys::Key name) { return error.name == name; };
    if (isOurs(DeviceKeys::unknownError) || isOurs(DeviceKeys::refusedError) || isOurs(DeviceKeys::notKeptError))
        error.message = error.text;
    if (isOurs(DeviceKeys::unknownError))
        error.code = ExitCode::usage;
    else if (isOurs(DeviceKeys::notKeptError))
        error.code = ExitCode::incomplete;
    return error;
}

} // namespace

DaemonObjectResult<QList<QVariantMap>> DeviceClient::list()
{
    const DaemonObjectResult<QVariantList> values = devices.call("List"_L1, {}, u"the keyboards cannot be listed"_s);
    if (!values)
        return values.error();
    return qdbus_cast<QList<QVariantMap>>(values->value(0));
}

DaemonObjectResult<QVariantMap> DeviceClient::status()
{
    const DaemonObjectResult<QVariantList> values =
        devices.call("Status"_L1, {}, u"the state of the keyboards cannot be read"_s);
    if (!values)
        return values.error();
    return qdbus_cast<QVariantMap>(values->value(0));
}

DaemonObjectResult<void> DeviceClient::use(const QStringList &ids)
{
    return inItsWords(devices.call("Use"_L1, {ids}, u"the keyboards cannot be used"_s));
}

DaemonObjectResult<void> DeviceClient::useAlso(const QStringList &ids)
{
    return inItsWords(devices.call("UseAlso"_L1, {ids}, u"the keyboards cannot be used"_s));
}

DaemonObjectResult<void> DeviceClient::releaseThese(const QStringList &ids)
{
    return inItsWords(devices.call("ReleaseThese"_L1, {ids}, u"the keyboards cannot be released"_s));
}

DaemonObjectResult<void> DeviceClient::release()
{
    return inItsWords(devices.call("Release"_L1, {}, u"the keyboards cannot be released"_s));
}
