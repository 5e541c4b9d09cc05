// SPDX-License-Identifier: MIT
#include "app/typedkeys.h"

#include "app/devicesstatus.h"
#include "base/keycodes.h"
#include "platform/sheet.h"

#include <QApplication>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 escapeUsage = 41;
constexpr quint32 firstScanCode = 8; // that of the kernel's key code 0, on X11 and Wayland

/// The key at the place of `event`. Absent for a key that cannot be assigned, such as a media key. An event without a
/// place, from a tool, has a meaning only as Escape.
std::optional<quint16> usageOf(const QKeyEvent &event)
{
    const quint32 scanCode = event.nativeScanCode();
    if (scanCode <= firstScanCode)
        return event.key() == Qt::Key_Escape ? std::optional(escapeUsage) : std::nullopt;
    const quint32 code = scanCode - firstScanCode;
    if (code >= KeyCodes::codeCount)
        return {};
    const auto macroKey = KeyCodes::macroKeyOfCode(static_cast<quint16>(code));
    const auto key = macroKey ? macroKey : KeyCodes::usageOfCode(static_cast<quint16>(code));
    return key ? std::optional(key->usage) : std::nullopt;
}

} // namespace

TypedKeys::TypedKeys(const DevicesStatus &devices, const ServiceStatus &service, QObject *parent)
    : QObject(parent), mDevices(devices), mKeys(service)
{
    connect(&mDevices, &DevicesStatus::changed, this, &TypedKeys::follow);
    connect(&mKeys, &VirtualKeys::captureChanged, this, &TypedKeys::captureChanged);
}

TypedKeys::~TypedKeys() = default;

void TypedKeys::listen(QWidget *area)
{
    mArea = area;
    mHasEnded = false;
    releaseAll();
    if (area)
        qApp->installEventFilter(this);
    else
        stopFiltering();
    Q_EMIT sourceChanged();
}

CaptureSource TypedKeys::source() const
{
    using Kind = CaptureSource::Kind;
    if (mDevices.isVirtual())
        return {mHasEnded ? Kind::ended : Kind::window, {}};
    if (!mDevices.keyboards() || mDevices.keyboards()->names.isEmpty())
        return {};
    return {Kind::realKeyboards, nameInAlert(mDevices.keyboards()->names.join(u", "_s))};
}

bool TypedKeys::isListening() const
{
    return mArea && mDevices.isVirtual() && mKeys.areCaptured();
}

bool TypedKeys::isInArea(const QObject *object) const
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget && mArea && (widget == mArea || mArea->isAncestorOf(widget));
}

void TypedKeys::follow()
{
    if (!isListening())
        releaseAll();
    Q_EMIT sourceChanged();
}

void TypedKeys::captureChanged()
{
    mHasEnded = mArea && !mKeys.areCaptured();
    follow();
}

bool TypedKeys::eventFilter(QObject *watched, QEvent *event)
{
    // A popup, such as a menu, also takes the focus of keys.
    if (event->type() == QEvent::FocusOut && isInArea(watched))
        releaseAll();
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress
                       || event->type() == QEvent::KeyRelease;
    if (!isKey || !qobject_cast<QWidget *>(watched)) // the window itself gets each key first
        return false;
    const bool isForArea = isListening() && isInArea(watched);
    auto &key = *static_cast<QKeyEvent *>(event);
    switch (event->type()) {
    case QEvent::ShortcutOverride: return takeOverride(key, isForArea);
    case QEvent::KeyPress: return takePress(key, isForArea);
    default: return takeRelease(key, isForArea);
    }
}

/// An accepted override keeps the key from all shortcuts.
bool TypedKeys::takeOverride(QKeyEvent &event, bool isForArea)
{
    const bool isTaken = isForArea || (event.isAutoRepeat() && mTaken.contains(event.nativeScanCode()));
    if (isTaken)
        event.accept();
    return isTaken;
}

bool TypedKeys::takePress(const QKeyEvent &event, bool isForArea)
{
    const quint32 scanCode = event.nativeScanCode();
    if (event.isAutoRepeat())
        return isForArea || mTaken.contains(scanCode);
    mTaken.remove(scanCode); // its release went elsewhere
    if (!isForArea)
        return false;
    const std::optional<quint16> usage = usageOf(event);
    mIsEscapeAlone = usage == escapeUsage && mKeys.pressed().isEmpty();
    mTaken.insert(scanCode, usage);
    if (usage)
        mKeys.press(*usage);
    return true;
}

bool TypedKeys::takeRelease(const QKeyEvent &event, bool isForArea)
{
    const quint32 scanCode = event.nativeScanCode();
    if (event.isAutoRepeat() || !mTaken.contains(scanCode))
        return isForArea || mTaken.contains(scanCode);
    const std::optional<quint16> usage = mTaken.take(scanCode);
    if (usage)
        mKeys.release(*usage);
    const bool isTap = usage == escapeUsage && mIsEscapeAlone;
    if (usage == escapeUsage)
        mIsEscapeAlone = false;
    auto *sheet = qobject_cast<Sheet *>(mArea);
    if (isTap && isForArea && sheet)
        sheet->reject();
    else
        stopFiltering();
    return true;
}

void TypedKeys::releaseAll()
{
    mIsEscapeAlone = false;
    mKeys.releaseAll();
}

/// Continues while a key is down: its repetition and its release must not act in the window either.
void TypedKeys::stopFiltering()
{
    if (!mArea && mTaken.isEmpty())
        qApp->removeEventFilter(this);
}
