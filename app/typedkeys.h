// SPDX-License-Identifier: MIT
// Presses the keys that the user types into a sheet or a recording on the virtual keyboard, which has no other keys.
// Owned by the hub; main thread only.
#pragma once

#include "app/virtualkeys.h"
#include "base/capturesource.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <optional>

class DevicesStatus;
class QKeyEvent;
class QWidget;
class ServiceStatus;

/// Listens to one area of the window at most, only while all of this holds: the virtual keyboard is in use, the daemon
/// gives its keys to this program, and the area has the focus. No key then acts in the window. A key means its place on
/// the keyboard, not its letter. When any of it ends, the keys that are down are released.
class TypedKeys : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this.
    TypedKeys(const DevicesStatus &devices, const ServiceStatus &service, QObject *parent = nullptr);
    ~TypedKeys() override;

    /// Listens to `area` and the widgets in it from now on; null ends it. Escape, tapped alone, also cancels an area
    /// that is a Sheet.
    void listen(QWidget *area);

    /// The keyboard on which the user presses the keys for the area.
    [[nodiscard]] CaptureSource source() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void sourceChanged();

private:
    [[nodiscard]] bool isListening() const;
    [[nodiscard]] bool isInArea(const QObject *object) const;
    void follow();
    void captureChanged();
    bool takeOverride(QKeyEvent &event, bool isForArea);
    bool takePress(const QKeyEvent &event, bool isForArea);
    bool takeRelease(const QKeyEvent &event, bool isForArea);
    void releaseAll();
    void stopFiltering();

    const DevicesStatus &mDevices;
    VirtualKeys mKeys;
    QPointer<QWidget> mArea;
    bool mHasEnded = false;                        ///< the daemon has ended the capture while the area still waits
    bool mIsEscapeAlone = false;                   ///< Escape is down, and no other key was pressed since
    QHash<quint32, std::optional<quint16>> mTaken; ///< scan codes that are down and act nowhere else, with their usages
};
