// SPDX-License-Identifier: MIT
#include "daemon/keyboards/devicechoice.h"

#include "base/devicekeys.h"
#include "base/propertylist.h"
#include "daemon/system/damagedfile.h"
#include "daemon/system/logging.h"
#include "daemon/system/privatefiles.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

std::optional<quint16> number(const QVariantMap &entry, DeviceKeys::Key key)
{
    const QVariant value = entry.value(key);
    if (value.typeId() != QMetaType::Int || value.toInt() < 0 || value.toInt() > std::numeric_limits<quint16>::max())
        return {};
    return static_cast<quint16>(value.toInt());
}

std::optional<ChosenDevice> choiceOf(const QVariant &value)
{
    const QVariantMap entry = value.toMap();
    const std::optional<quint16> vendor = number(entry, DeviceKeys::vendor);
    const std::optional<quint16> product = number(entry, DeviceKeys::product);
    const QVariant serial = entry.value(DeviceKeys::serial);
    const QVariant path = entry.value(DeviceKeys::path);
    if (!vendor || !product || serial.typeId() != QMetaType::QString || path.typeId() != QMetaType::QString)
        return {};
    return ChosenDevice{.vendor = *vendor, .product = *product, .serial = serial.toString(), .path = path.toString()};
}

/// The choices in a file's dictionary; absent if it has another structure.
std::optional<QList<ChosenDevice>> choicesIn(const QVariantMap &root)
{
    const QVariant list = root.value(DeviceKeys::devices);
    if (list.typeId() != QMetaType::QVariantList)
        return {};
    QList<ChosenDevice> choices;
    for (const QVariant &value : list.toList()) {
        const std::optional<ChosenDevice> choice = choiceOf(value);
        if (!choice)
            return {};
        choices += *choice;
    }
    return choices;
}

/// `choice` with the other values of its entry in the file.
QVariantMap entryOf(const ChosenDevice &choice, const QVariantList &before)
{
    const auto old = std::ranges::find_if(before, [&](const QVariant &value) { return choiceOf(value) == choice; });
    QVariantMap entry = old != before.end() ? old->toMap() : QVariantMap();
    entry.insert(DeviceKeys::vendor, int(choice.vendor));
    entry.insert(DeviceKeys::product, int(choice.product));
    entry.insert(DeviceKeys::serial, choice.serial);
    entry.insert(DeviceKeys::path, choice.path);
    return entry;
}

} // namespace

DeviceChoice::DeviceChoice(const QString &folder) : mPath(QDir(folder).filePath(u"devices.plist"_s)) {}

QList<ChosenDevice> DeviceChoice::load()
{
    mRoot.clear();
    mChoices.clear();
    mIsUnreadable = false;
    const QFileInfo file(mPath);
    if (!file.exists() && !file.isSymLink()) // a link without its file may lead to a disk that is mounted later
        return {};
    const Result<QByteArray> bytes = PropertyList::readFileBytes(mPath);
    if (!bytes) {
        refuse(bytes.error().message);
        return {};
    }
    const QVariantMap root = PropertyList::read(*bytes).value_or(QVariant()).toMap();
    if (const std::optional<QList<ChosenDevice>> choices = choicesIn(root)) {
        mRoot = root;
        mChoices = *choices;
        return mChoices;
    }
    const Result<QString> aside = setDamagedFileAside(mPath, mPath);
    if (aside)
        qCWarning(lcSettings, "file: %s is damaged, set aside as %s: no keyboard is chosen", qUtf8Printable(mPath),
                  qUtf8Printable(*aside));
    else
        refuse(u"damaged, and cannot be set aside: "_s + aside.error().message);
    return {};
}

void DeviceChoice::refuse(const QString &reason)
{
    mIsUnreadable = true;
    qCCritical(lcSettings,
               "file: cannot read %s (%s): no keyboard is chosen, and no choice is kept until it is moved away",
               qUtf8Printable(mPath), qUtf8Printable(reason));
}

bool DeviceChoice::save(const QList<ChosenDevice> &choices)
{
    if (mFolderKeeper && !mFolderKeeper())
        return false; // the log has the reason
    const QFileInfo file(mPath);
    if (mIsUnreadable && (file.exists() || file.isSymLink())) {
        qCCritical(lcSettings, "file: %s is in the way of the choice", qUtf8Printable(mPath));
        return false;
    }
    if (choices == mChoices && (file.exists() || choices.isEmpty()))
        return true;
    const QVariantList before = mRoot.value(DeviceKeys::devices).toList();
    QVariantList entries;
    for (const ChosenDevice &choice : choices)
        entries += entryOf(choice, before);
    QVariantMap root = mRoot;
    root.insert(DeviceKeys::devices, entries);
    if (const Result<void> written = PropertyList::writePropertyListFile(mPath, root); !written) {
        qCCritical(lcSettings, "file: cannot write %s: %s", qUtf8Printable(mPath),
                   qUtf8Printable(written.error().message));
        return false;
    }
    (void)makeFilePrivate(mPath); // after a failure the folder is private, or the log has reported it
    mRoot = root;
    mChoices = choices;
    mIsUnreadable = false;
    return true;
}
