// SPDX-License-Identifier: MIT
// The Wayland protocol for a compositor's list of all windows, as tables for libwayland:
// wlr-foreign-toplevel-management-unstable-v1 of the wlr-protocols collection, version 1. Names, signatures and numbers
// are the protocol's. The tables are written by hand, because hardly any distribution packages its XML file.
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

/// In the order of the protocol's events.
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
