// SPDX-License-Identifier: MIT
#include "cli/deviceclient.h"

#include "base/devicekeys.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;

namespace {

constexpr DaemonObject devices{
    .path = DeviceKeys::objectPath, .interface = DeviceKeys::interfaceName, .words = "use of real keyboards"_L1};

/// The daemon's own words are whole sentences, with the remedy.
DaemonObjectResult inItsWords(DaemonObjectResult result)
{
    const auto isOurs = [&result](DeviceKeys::Key error) { return result.errorName == error; };
    if (isOurs(DeviceKeys::unknownError) || isOurs(DeviceKeys::refusedError) || isOurs(DeviceKeys::notKeptError))
        result.reason = result.errorText;
    if (isOurs(DeviceKeys::unknownError))
        result.failure = ExitCode::usage;
    return result;
}

} // namespace

QList<QVariantMap> DeviceClient::list(DaemonObjectResult &result)
{
    result = devices.call("List"_L1);
    return qdbus_cast<QList<QVariantMap>>(result.values.value(0));
}

QVariantMap DeviceClient::status(DaemonObjectResult &result)
{
    result = devices.call("Status"_L1);
    return qdbus_cast<QVariantMap>(result.values.value(0));
}

DaemonObjectResult DeviceClient::use(const QStringList &ids)
{
    return inItsWords(devices.call("Use"_L1, {ids}));
}

DaemonObjectResult DeviceClient::release()
{
    return inItsWords(devices.call("Release"_L1));
}
