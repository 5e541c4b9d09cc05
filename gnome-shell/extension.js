// SPDX-License-Identifier: MIT
// The entry for GNOME Shell 45 and later. Earlier versions use __init__.js.

import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

import {FrontApplicationReporter} from './frontapplication.js';

export default class QuillKestraExtension extends Extension {
    enable() {
        this._reporter = new FrontApplicationReporter();
    }

    disable() {
        this._reporter?.destroy();
        this._reporter = null;
    }
}
