// SPDX-License-Identifier: MIT
// The entry for GNOME Shell 45 and later. Earlier versions use __init__.js.

import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import {sessionMode} from 'resource:///org/gnome/shell/ui/main.js';

import {FrontApplicationReporter} from './frontapplication.js';

export default class QuillKestraExtension extends Extension {
    enable() {
        this._reporter = new FrontApplicationReporter();
    }

    disable() {
        this._reporter?.destroy(sessionMode.isLocked);
        this._reporter = null;
    }
}
