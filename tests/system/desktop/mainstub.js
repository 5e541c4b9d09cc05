// SPDX-License-Identifier: MIT
// Stands for resource:///org/gnome/shell/ui/main.js of GNOME Shell 45.
export const sessionMode = {isLocked: false};
