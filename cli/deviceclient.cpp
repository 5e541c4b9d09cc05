// SPDX-License-Identifier: MIT
#include "cli/deviceclient.h"

#include "base/devicekeys.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;

namespace {

constexpr OwnError ownErrors[] = {{DeviceKeys::unknownError, ExitCode::usage},
                                  {DeviceKeys::refusedError},
                                  {DeviceKeys::notKeptError, ExitCode::incomplete}};
constexpr DaemonObjectClient devices{.path = DeviceKeys::objectPath,
                                     .interface = DeviceKeys::interfaceName,
                                     .words = "use of real keyboards"_L1,
                                     .ownErrors = ownErrors};

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
    return devices.call("Use"_L1, {ids}, u"the keyboards cannot be used"_s).withoutValue();
}

DaemonObjectResult<void> DeviceClient::useAlso(const QStringList &ids)
{
    return devices.call("UseAlso"_L1, {ids}, u"the keyboards cannot be used"_s).withoutValue();
}

DaemonObjectResult<void> DeviceClient::releaseThese(const QStringList &ids)
{
    return devices.call("ReleaseThese"_L1, {ids}, u"the keyboards cannot be released"_s).withoutValue();
}

DaemonObjectResult<void> DeviceClient::release()
{
    return devices.call("Release"_L1, {}, u"the keyboards cannot be released"_s).withoutValue();
}
