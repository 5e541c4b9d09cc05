// SPDX-License-Identifier: MIT
// The application in front on a Wayland compositor that reports other clients' windows (Sway, labwc, Wayfire, ...): the
// "activated" window, by its application id.
#pragma once

#include "daemon/frontapplication/foreigntoplevelprotocol.h"
#include "daemon/frontapplication/frontapplicationsource.h"

#include <QHash>
#include <QSocketNotifier>

#include <memory>

class WaylandFrontApplication : public FrontApplicationSource
{
    Q_OBJECT

public:
    ~WaylandFrontApplication() override;

    /// Connects to $WAYLAND_DISPLAY. The compositor's answer shows later whether it reports windows.
    void start() override;

private:
    struct Window
    {
        QString applicationId;
        bool isActivated = false;
    };

    static const wl_registry_listener registryListener;
    static const wl_callback_listener answeredListener;
    static const ForeignToplevel::ManagerListener managerListener;
    static const ForeignToplevel::HandleListener handleListener;

    void globalAdded(wl_registry *registry, uint32_t name, const char *interface);
    void globalsAdded();
    void windowAdded(wl_proxy *handle);
    void windowChanged(wl_proxy *handle);
    void windowClosed(wl_proxy *handle);
    void readAvailable();

    wl_display *mDisplay = nullptr;
    wl_registry *mRegistry = nullptr;
    wl_callback *mAnswered = nullptr;
    wl_proxy *mManager = nullptr;
    QHash<wl_proxy *, Window> mWindows;
    wl_proxy *mFront = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
};
