// SPDX-License-Identifier: MIT
// Stands for resource:///org/gnome/shell/extensions/extension.js of GNOME Shell 45.
export class Extension {
    constructor(metadata) {
        this.metadata = metadata;
    }
}
