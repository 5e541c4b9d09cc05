// SPDX-License-Identifier: MIT
#include "base/devicerule.h"

#include "base/devicekeys.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QtEndian>

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

bool canBeNamed(const QVariantMap &device)
{
    return device.value(DeviceKeys::vendor).toUInt() != 0 || device.value(DeviceKeys::product).toUInt() != 0;
}

/// The keyboards to which a rule applies, for its comments.
QString meaningOf(const QVariantMap &device)
{
    const QString make = hexadecimal(device.value(DeviceKeys::vendor).toUInt()) + u':'
                         + hexadecimal(device.value(DeviceKeys::product).toUInt());
    return conditionOf(device).isEmpty() ? u"every keyboard of the make %1"_s.arg(make)
                                         : u"one keyboard of the make %1"_s.arg(make);
}

/// `word` as one word of a shell's command line.
QString quotedForShell(QString word)
{
    static const QRegularExpression plain(u"\\A[A-Za-z0-9._/-]+\\z"_s);
    if (plain.match(word).hasMatch())
        return word;
    return u'\'' + word.replace(u'\'', "'\\''"_L1) + u'\'';
}

QString eventDeviceLine(const QVariantMap &device)
{
    return u"ACTION!=\"remove\", SUBSYSTEM==\"input\", KERNEL==\"event*\", ATTRS{id/vendor}==\"%1\", "
           "ATTRS{id/product}==\"%2\"%3, TAG+=\"uaccess\""_s.arg(
               hexadecimal(device.value(DeviceKeys::vendor).toUInt()),
               hexadecimal(device.value(DeviceKeys::product).toUInt()), conditionOf(device));
}

} // namespace

std::optional<QStringList> deviceRuleCommands(const QVariantMap &device, const QString &program)
{
    const QString id = device.value(DeviceKeys::id).toString();
    if (!canBeNamed(device) || !isPlainId(id))
        return {};
    return QStringList{
        u"%1 device rule %2 | sudo tee /etc/udev/rules.d/70-quill-kestra-%2.rules"_s.arg(quotedForShell(program), id),
        u"sudo udevadm control --reload && sudo udevadm trigger --action=change "
        "--subsystem-match=input --subsystem-match=misc --subsystem-match=leds"_s};
}

std::optional<QString> deviceRule(const QVariantMap &device, uint userId)
{
    const std::optional<QStringList> commands = deviceRuleCommands(device, u"kestractl"_s);
    if (!commands)
        return {};
    const QString hid = u"????:%1:%2.*"_s.arg(hexadecimal(device.value(DeviceKeys::vendor).toUInt()).toUpper(),
                                              hexadecimal(device.value(DeviceKeys::product).toUInt()).toUpper());
    return QStringList{
        u"# Lets the user at the seat use %1 with Quill Kestra. To install it:"_s.arg(meaningOf(device)),
        u"#   "_s + commands->at(0),
        u"#   "_s + commands->at(1),
        u"# To take it back, remove this file and restart the computer. Until then, devices keep the right."_s,
        eventDeviceLine(device),
        u"ACTION!=\"remove\", SUBSYSTEM==\"misc\", KERNEL==\"uinput\", OPTIONS+=\"static_node=uinput\", "
        "TAG+=\"uaccess\""_s,
        u"# The light of the keys, where the keyboard has one; not the lamps of the lock keys."_s,
        u"ACTION!=\"remove\", SUBSYSTEM==\"leds\", KERNEL!=\"input*\", KERNELS==\"%1\", "
        "RUN+=\"/bin/chown -f %2 %S%p/brightness %S%p/multi_intensity\""_s.arg(hid, QString::number(userId)),
        QString()}
        .join(u'\n');
}

std::optional<QString> eventDeviceRule(const QVariantMap &device)
{
    if (!canBeNamed(device))
        return {};
    return QStringList{u"# Lets the user at the seat use %1 with Quill Kestra. The configurator installed it."_s.arg(
                           meaningOf(device)),
                       eventDeviceLine(device), QString()}
        .join(u'\n');
}

std::optional<QString> deviceRuleFileName(const QVariantMap &device)
{
    if (!canBeNamed(device))
        return {};
    const QByteArray digest =
        QCryptographicHash::hash(conditionOf(device).toUtf8(), QCryptographicHash::Sha256).first(sizeof(quint64));
    return QString::asprintf("70-quill-kestra-%05u-%05u-%020llu.rules", device.value(DeviceKeys::vendor).toUInt(),
                             device.value(DeviceKeys::product).toUInt(),
                             static_cast<unsigned long long>(qFromBigEndian<quint64>(digest.constData())));
}
