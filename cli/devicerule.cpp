// SPDX-License-Identifier: MIT
#include "cli/devicerule.h"

#include "base/devicekeys.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Whether `text` has no quotes, line ends or characters with a meaning in udev's patterns.
bool isHarmless(const QString &text)
{
    static const QRegularExpression harmless(u"\\A[A-Za-z0-9._:+/=@-]+( [A-Za-z0-9._:+/=@-]+)*\\z"_s);
    return text.size() <= 128 && harmless.match(text).hasMatch();
}

/// Whether `id` is safe in a shell's command line and in a file name.
bool isPlainId(const QString &id)
{
    static const QRegularExpression plain(u"\\A[A-Za-z0-9._:-]{1,128}\\z"_s);
    return plain.match(id).hasMatch();
}

QString hexadecimal(uint number)
{
    return QString::asprintf("%04x", number);
}

/// The condition that only this keyboard of its make meets; empty when there is none.
QString conditionOf(const QVariantMap &device)
{
    const QString serial = device.value(DeviceKeys::serial).toString();
    if (isHarmless(serial))
        return u", ATTRS{uniq}==\"%1\""_s.arg(serial);
    // The port as udev names it for the keyboard, followed by the interface in the case of its event nodes.
    const QString path = device.value(DeviceKeys::path).toString();
    if (serial.isEmpty() && isHarmless(path))
        return u", ENV{ID_PATH}==\"%1|%1:*\""_s.arg(path);
    return {};
}

} // namespace

std::optional<QString> deviceRule(const QVariantMap &device, uint userId)
{
    const uint vendor = device.value(DeviceKeys::vendor).toUInt();
    const uint product = device.value(DeviceKeys::product).toUInt();
    const QString id = device.value(DeviceKeys::id).toString();
    if ((vendor == 0 && product == 0) || !isPlainId(id))
        return {};
    const QString make = hexadecimal(vendor) + u':' + hexadecimal(product);
    const QString file = u"/etc/udev/rules.d/70-quill-kestra-%1.rules"_s.arg(id);
    const QString condition = conditionOf(device);
    const QString meant =
        condition.isEmpty() ? u"every keyboard of the make %1"_s.arg(make) : u"one keyboard of the make %1"_s.arg(make);
    const QString hid = u"????:%1:%2.*"_s.arg(hexadecimal(vendor).toUpper(), hexadecimal(product).toUpper());
    return QStringList{
        u"# Lets the user at the seat use %1 with Quill Kestra. To install it:"_s.arg(meant),
        u"#   kestractl device rule %1 | sudo tee %2"_s.arg(id, file),
        u"#   sudo udevadm control --reload && sudo udevadm trigger --action=change --subsystem-match=input "
        "--subsystem-match=misc --subsystem-match=leds"_s,
        u"# To take it back, remove the file and do the second line again."_s,
        u"ACTION!=\"remove\", SUBSYSTEM==\"input\", KERNEL==\"event*\", ATTRS{id/vendor}==\"%1\", "
        "ATTRS{id/product}==\"%2\"%3, TAG+=\"uaccess\""_s.arg(hexadecimal(vendor), hexadecimal(product), condition),
        u"ACTION!=\"remove\", SUBSYSTEM==\"misc\", KERNEL==\"uinput\", OPTIONS+=\"static_node=uinput\", "
        "TAG+=\"uaccess\""_s,
        u"# The light of the keys, where the keyboard has one; not the lamps of the lock keys."_s,
        u"ACTION!=\"remove\", SUBSYSTEM==\"leds\", KERNEL!=\"input*\", KERNELS==\"%1\", "
        "RUN+=\"/bin/chown -f %2 %S%p/brightness %S%p/multi_intensity\""_s.arg(hid, QString::number(userId)),
        QString()}
        .join(u'\n');
}
