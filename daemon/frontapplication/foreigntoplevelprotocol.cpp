// SPDX-License-Identifier: MIT
#include "daemon/frontapplication/foreigntoplevelprotocol.h"

#include <array>
#include <iterator>

namespace {

// Types of arguments: one entry per argument, null if it is not an object.
constinit const wl_interface *noTypes[] = {nullptr, nullptr, nullptr, nullptr, nullptr};
constinit const wl_interface *seatTypes[] = {&wl_seat_interface};
constinit const wl_interface *rectangleTypes[] = {&wl_surface_interface, nullptr, nullptr, nullptr, nullptr};
constinit const wl_interface *outputTypes[] = {&wl_output_interface};
constinit const wl_interface *handleTypes[] = {&ForeignToplevel::handleInterface};

constexpr wl_message managerRequests[] = {{"stop", "", noTypes}};
constexpr wl_message managerEvents[] = {{"toplevel", "n", handleTypes}, {"finished", "", noTypes}};

constexpr wl_message handleRequests[] = {
    {"set_maximized", "", noTypes},
    {"unset_maximized", "", noTypes},
    {"set_minimized", "", noTypes},
    {"unset_minimized", "", noTypes},
    {"activate", "o", seatTypes},
    {"close", "", noTypes},
    {"set_rectangle", "oiiii", rectangleTypes},
    {"destroy", "", noTypes},
};
constexpr wl_message handleEvents[] = {
    {"title", "s", noTypes},
    {"app_id", "s", noTypes},
    {"output_enter", "o", outputTypes},
    {"output_leave", "o", outputTypes},
    {"state", "a", noTypes},
    {"done", "", noTypes},
    {"closed", "", noTypes},
};

} // namespace

const wl_interface ForeignToplevel::managerInterface = {"zwlr_foreign_toplevel_manager_v1", 1,
                                                        std::size(managerRequests),         managerRequests,
                                                        std::size(managerEvents),           managerEvents};
const wl_interface ForeignToplevel::handleInterface = {"zwlr_foreign_toplevel_handle_v1", 1,
                                                       std::size(handleRequests),         handleRequests,
                                                       std::size(handleEvents),           handleEvents};
