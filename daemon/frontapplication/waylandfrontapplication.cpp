// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/waylandfrontapplication.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

WaylandFrontApplication *self(void *data)
{
    return static_cast<WaylandFrontApplication *>(data);
}

bool isActivated(const wl_array *states)
{
    const auto *first = static_cast<const uint32_t *>(states->data);
    const auto *end = first + states->size / sizeof(uint32_t);
    return std::find(first, end, ForeignToplevel::stateActivated) != end;
}

} // namespace

// Callbacks of libwayland, in the order of the events of each interface.

const wl_registry_listener WaylandFrontApplication::registryListener = {
    .global = [](void *data, wl_registry *registry, uint32_t name, const char *interface,
                 uint32_t) { self(data)->globalAdded(registry, name, interface); },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};

const wl_callback_listener WaylandFrontApplication::answeredListener = {
    .done = [](void *data, wl_callback *, uint32_t) { self(data)->globalsAdded(); },
};

const ForeignToplevel::ManagerListener WaylandFrontApplication::managerListener = {
    .toplevel = [](void *data, wl_proxy *, wl_proxy *handle) { self(data)->windowAdded(handle); },
    .finished = [](void *data, wl_proxy *) { self(data)->fail(u"the compositor reports no more windows"_s); },
};

const ForeignToplevel::HandleListener WaylandFrontApplication::handleListener = {
    .title = [](void *, wl_proxy *, const char *) {},
    .appId = [](void *data, wl_proxy *handle,
                const char *appId) { self(data)->mWindows[handle].applicationId = QString::fromUtf8(appId); },
    .outputEnter = [](void *, wl_proxy *, wl_output *) {},
    .outputLeave = [](void *, wl_proxy *, wl_output *) {},
    .state = [](void *data, wl_proxy *handle,
                wl_array *states) { self(data)->mWindows[handle].isActivated = ::isActivated(states); },
    .done = [](void *data, wl_proxy *handle) { self(data)->windowChanged(handle); },
    .closed = [](void *data, wl_proxy *handle) { self(data)->windowClosed(handle); },
};

WaylandFrontApplication::~WaylandFrontApplication()
{
    mNotifier.reset(); // before its socket is closed
    if (!mDisplay)
        return;
    for (auto window = mWindows.keyBegin(); window != mWindows.keyEnd(); ++window)
        wl_proxy_destroy(*window);
    if (mManager)
        wl_proxy_destroy(mManager);
    if (mAnswered)
        wl_callback_destroy(mAnswered);
    if (mRegistry)
        wl_registry_destroy(mRegistry);
    wl_display_disconnect(mDisplay);
}

void WaylandFrontApplication::start()
{
    // Without the variable, libwayland would use the first compositor it finds, possibly of another session.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return fail(u"WAYLAND_DISPLAY is not set"_s);
    mDisplay = wl_display_connect(nullptr);
    if (!mDisplay)
        return fail(u"no compositor answers at %1"_s.arg(qEnvironmentVariable("WAYLAND_DISPLAY")));
    mRegistry = wl_display_get_registry(mDisplay);
    wl_registry_add_listener(mRegistry, &registryListener, this);
    mAnswered = wl_display_sync(mDisplay);
    wl_callback_add_listener(mAnswered, &answeredListener, this);
    mNotifier = std::make_unique<QSocketNotifier>(wl_display_get_fd(mDisplay), QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &WaylandFrontApplication::readAvailable);
    wl_display_flush(mDisplay);
}

void WaylandFrontApplication::globalAdded(wl_registry *registry, uint32_t name, const char *interface)
{
    if (mManager || std::strcmp(interface, ForeignToplevel::managerInterface.name) != 0)
        return;
    mManager = static_cast<wl_proxy *>(wl_registry_bind(registry, name, &ForeignToplevel::managerInterface, 1));
    // libwayland expects every listener as an array of functions.
    wl_proxy_add_listener(
        mManager, reinterpret_cast<void (**)()>(const_cast<ForeignToplevel::ManagerListener *>(&managerListener)),
        this);
}

void WaylandFrontApplication::globalsAdded()
{
    if (mManager)
        Q_EMIT ready();
    else
        fail(u"the compositor does not report the windows of other programs"_s);
}

void WaylandFrontApplication::windowAdded(wl_proxy *handle)
{
    mWindows.insert(handle, {});
    wl_proxy_add_listener(
        handle, reinterpret_cast<void (**)()>(const_cast<ForeignToplevel::HandleListener *>(&handleListener)), this);
}

void WaylandFrontApplication::windowChanged(wl_proxy *handle)
{
    const Window window = mWindows.value(handle);
    if (window.isActivated) {
        mFront = handle;
        Q_EMIT applicationChanged({.windowClass = window.applicationId, .desktopEntry = window.applicationId});
    } else if (handle == mFront) {
        mFront = nullptr;
        Q_EMIT applicationChanged({});
    }
}

void WaylandFrontApplication::windowClosed(wl_proxy *handle)
{
    mWindows[handle].isActivated = false;
    windowChanged(handle);
    mWindows.remove(handle);
    wl_proxy_marshal_flags(handle, ForeignToplevel::destroyHandleOpcode, nullptr, wl_proxy_get_version(handle),
                           WL_MARSHAL_FLAG_DESTROY);
}

void WaylandFrontApplication::readAvailable()
{
    while (wl_display_prepare_read(mDisplay) != 0)
        wl_display_dispatch_pending(mDisplay);
    wl_display_flush(mDisplay);
    wl_display_read_events(mDisplay);
    wl_display_dispatch_pending(mDisplay);
    wl_display_flush(mDisplay);
    if (wl_display_get_error(mDisplay) != 0)
        fail(u"the compositor is gone"_s);
    if (hasFailed())
        mNotifier->setEnabled(false);
}
