// SPDX-License-Identifier: MIT
#include "rulehelper/systemservices.h"

#include "base/devicekeys.h"

#include <libudev.h>
#include <linux/major.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *rightsTag = "uaccess";
constexpr const char *accessList = "system.posix_acl_access"; // where the login manager notes the user's right
/// udev may lose a message that arrives while it is busy with another.
constexpr int applyAttempts = 3;

class Descriptor
{
public:
    explicit Descriptor(int number) : mNumber(number) {}
    ~Descriptor()
    {
        if (mNumber >= 0)
            ::close(mNumber);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int number() const { return mNumber; }

private:
    int mNumber;
};

template <auto unref> struct Unref
{
    template <typename T> void operator()(T *object) const { unref(object); }
};
using Udev = std::unique_ptr<udev, Unref<udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, Unref<udev_device_unref>>;
using UdevEnumerate = std::unique_ptr<udev_enumerate, Unref<udev_enumerate_unref>>;

QString systemError(const char *subject)
{
    return u"%1: %2"_s.arg(QString::fromUtf8(subject), QString::fromLocal8Bit(std::strerror(errno)));
}

QString attribute(udev_device *device, const char *name)
{
    return device ? QString::fromUtf8(udev_device_get_sysattr_value(device, name)) : QString();
}

uint hexAttribute(udev_device *device, const char *name)
{
    return attribute(device, name).toUInt(nullptr, 16);
}

bool hasMake(udev_device *input, const QVariantMap &keyboard)
{
    return hexAttribute(input, "id/vendor") == keyboard.value(DeviceKeys::vendor).toUInt()
           && hexAttribute(input, "id/product") == keyboard.value(DeviceKeys::product).toUInt();
}

Result<RuleHelper::Keyboard> keyboardOf(dev_t number)
{
    const Udev udev(udev_new());
    const UdevDevice device(udev ? udev_device_new_from_devnum(udev.get(), 'c', number) : nullptr);
    if (!device || udev_device_get_devnum(device.get()) != number)
        return Error{u"udev does not know the device"_s};
    // Parents belong to the device and must not be freed.
    udev_device *input = udev_device_get_parent_with_subsystem_devtype(device.get(), "input", nullptr);
    const QString systemPath = QString::fromUtf8(udev_device_get_syspath(device.get()));
    if (!input || qstrcmp(udev_device_get_property_value(device.get(), "ID_INPUT_KEYBOARD"), "1") != 0)
        return Error{u"the device is not a keyboard"_s};
    // Any program with the right to uinput could give its device the numbers of another one.
    if (systemPath.startsWith("/sys/devices/virtual/input/"_L1))
        return Error{u"the keyboard was made by a program"_s};
    udev_device *usb = udev_device_get_parent_with_subsystem_devtype(device.get(), "usb", "usb_device");
    udev_device *hid = udev_device_get_parent_with_subsystem_devtype(device.get(), "hid", nullptr);
    udev_device *whole = usb ? usb : hid ? hid : input;
    const QVariantMap description{
        {DeviceKeys::vendor, hexAttribute(input, "id/vendor")},
        {DeviceKeys::product, hexAttribute(input, "id/product")},
        {DeviceKeys::serial, attribute(input, "uniq")},
        {DeviceKeys::path, QString::fromUtf8(udev_device_get_property_value(usb ? usb : device.get(), "ID_PATH"))}};
    return RuleHelper::Keyboard{.device = description,
                                .systemPath = systemPath,
                                .wholePath = QString::fromUtf8(udev_device_get_syspath(whole))};
}

Result<void> runUdevadm(std::vector<std::string> arguments)
{
    const char *program = ::access("/usr/bin/udevadm", X_OK) == 0 ? "/usr/bin/udevadm" : "/bin/udevadm";
    arguments.insert(arguments.begin(), program);
    std::vector<char *> words;
    for (std::string &argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    std::array<char *, 1> noEnvironment{nullptr};
    pid_t process = 0;
    errno = ::posix_spawn(&process, program, nullptr, nullptr, words.data(), noEnvironment.data());
    if (errno != 0)
        return Error{systemError(program)};
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return Error{u"udevadm %1 failed"_s.arg(QString::fromStdString(arguments.at(1)))};
    return {};
}

struct EventNode
{
    QString systemPath;
    QByteArray path;
    bool isGranted = false; // has the tag now
};

/// The keyboard's event devices. A receiver may also have those of other devices, which have other numbers.
std::vector<EventNode> eventNodesOf(const RuleHelper::Keyboard &keyboard)
{
    std::vector<EventNode> nodes;
    const Udev udev(udev_new());
    const UdevDevice whole(udev ? udev_device_new_from_syspath(udev.get(), keyboard.wholePath.toUtf8().constData())
                                : nullptr);
    const UdevEnumerate enumeration(whole ? udev_enumerate_new(udev.get()) : nullptr);
    if (!enumeration)
        return nodes;
    udev_enumerate_add_match_parent(enumeration.get(), whole.get());
    udev_enumerate_add_match_subsystem(enumeration.get(), "input");
    udev_enumerate_add_match_sysname(enumeration.get(), "event*");
    udev_enumerate_scan_devices(enumeration.get());
    udev_list_entry *entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumeration.get()))
    {
        const UdevDevice node(udev_device_new_from_syspath(udev.get(), udev_list_entry_get_name(entry)));
        udev_device *input =
            node ? udev_device_get_parent_with_subsystem_devtype(node.get(), "input", nullptr) : nullptr;
        if (!input || !udev_device_get_devnode(node.get()) || !hasMake(input, keyboard.device))
            continue;
        nodes.push_back({.systemPath = QString::fromUtf8(udev_device_get_syspath(node.get())),
                         .path = udev_device_get_devnode(node.get()),
                         .isGranted = udev_device_has_current_tag(node.get(), rightsTag) > 0});
    }
    return nodes;
}

/// The login manager gives the right to devices that have the tag, but takes none from a device that has lost it.
Result<void> revokeRights(const std::vector<EventNode> &nodes)
{
    for (const EventNode &node : nodes) {
        if (!node.isGranted && ::lremovexattr(node.path.constData(), accessList) != 0 && errno != ENODATA
            && errno != EOPNOTSUPP)
            return Error{systemError(node.path.constData())};
    }
    return {};
}

Result<void> apply(const RuleHelper::Keyboard &keyboard, bool isGranted)
{
    for (int attempt = 0; attempt < applyAttempts; ++attempt) {
        if (const auto reloaded = runUdevadm({"control", "--reload"}); !reloaded)
            return reloaded.error();
        const auto triggered = runUdevadm({"trigger", "--settle", "--action=change", "--subsystem-match=input",
                                           "--parent-match=" + keyboard.wholePath.toStdString()});
        if (!triggered)
            return triggered.error();
        const std::vector<EventNode> nodes = eventNodesOf(keyboard);
        const auto chosen = std::ranges::find(nodes, keyboard.systemPath, &EventNode::systemPath);
        if (chosen == nodes.end())
            return Error{u"the keyboard is no longer there"_s};
        if (chosen->isGranted == isGranted)
            return isGranted ? Result<void>() : revokeRights(nodes);
    }
    return Error{isGranted ? u"the rule is installed, but udev has not applied it"_s
                           : u"the rule is removed, but another one still gives the right"_s};
}

} // namespace

Result<dev_t> RuleHelper::inputDeviceNumber(const QByteArray &folder, const QByteArray &node)
{
    const Descriptor parent(::open(folder.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (parent.number() < 0)
        return Error{systemError(folder.constData())};
    const Descriptor device(::openat(parent.number(), node.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (device.number() < 0 || ::fstat(device.number(), &status) != 0)
        return Error{systemError(node.constData())};
    if (!S_ISCHR(status.st_mode) || major(status.st_rdev) != INPUT_MAJOR)
        return Error{u"%1 is not an input device"_s.arg(QString::fromLocal8Bit(node))};
    return status.st_rdev;
}

RuleHelper::Services RuleHelper::systemServices()
{
    return {.numberOf = [](const QByteArray &node) { return inputDeviceNumber("/dev/input", node); },
            .keyboardOf = keyboardOf,
            .apply = apply,
            .rulesFolder = u"/etc/udev/rules.d"_s};
}
