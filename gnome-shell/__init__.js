// SPDX-License-Identifier: MIT
// The entry for GNOME Shell 43 and 44. These load an extension as imports.extension of its folder. This file of the
// folder has precedence over extension.js, which is a module for later versions.

const ExtensionUtils = imports.misc.extensionUtils;
const Main = imports.ui.main;

class QuillKestraExtension {
    constructor() {
        this._shared = ExtensionUtils.getCurrentExtension().dir.get_child('frontapplication.js').get_uri();
        this._isEnabled = false;
        this._reporter = null;
    }

    enable() {
        this._isEnabled = true;
        import(this._shared).then(({FrontApplicationReporter}) => {
            // Meanwhile it may have been disabled, and enabled again.
            if (this._isEnabled && !this._reporter)
                this._reporter = new FrontApplicationReporter();
        }).catch(error => logError(error, 'Quill Kestra'));
    }

    disable() {
        this._isEnabled = false;
        this._reporter?.destroy(Main.sessionMode.isLocked);
        this._reporter = null;
    }
}

/* exported extension */
var extension = {
    init() {
        return new QuillKestraExtension();
    },
};
