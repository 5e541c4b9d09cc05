// SPDX-License-Identifier: MIT
// The Wayland protocol by which a compositor tells a client of all windows, as libwayland wants it described:
// wlr-foreign-toplevel-management-unstable-v1 of the wlr-protocols collection, version 1. Names, signatures and numbers
// are that protocol's; the tables are written by hand, because hardly a distribution packages its XML file.
#pragma once

#include <wayland-client.h>

namespace ForeignToplevel {

extern const wl_interface managerInterface; ///< zwlr_foreign_toplevel_manager_v1
extern const wl_interface handleInterface;  ///< zwlr_foreign_toplevel_handle_v1

inline constexpr uint32_t destroyHandleOpcode = 7;
inline constexpr uint32_t stateActivated = 2; ///< an element of the array of `state`

/// In the order of the protocol's events.
struct ManagerListener
{
    void (*toplevel)(void *data, wl_proxy *manager, wl_proxy *handle);
    void (*finished)(void *data, wl_proxy *manager);
};

/// Likewise.
struct HandleListener
{
    void (*title)(void *data, wl_proxy *handle, const char *title);
    void (*appId)(void *data, wl_proxy *handle, const char *appId);
    void (*outputEnter)(void *data, wl_proxy *handle, wl_output *output);
    void (*outputLeave)(void *data, wl_proxy *handle, wl_output *output);
    void (*state)(void *data, wl_proxy *handle, wl_array *states);
    void (*done)(void *data, wl_proxy *handle);
    void (*closed)(void *data, wl_proxy *handle);
};

} // namespace ForeignToplevel
