// SPDX-License-Identifier: MIT
// Reports the application in front to the daemon, on GNOME on Wayland, which hides its windows from other programs.
// Shared by the entries for all versions of the Shell: extension.js and __init__.js.

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';

// docs/daemon-protocol.md describes them.
const SERVICE = 'org.quillkestra.QuillCoreEngineMsgPort';
const OBJECT = '/FrontApplication';
const INTERFACE = 'org.quillkestra.FrontApplication';

const NOTHING = ['', '', ''];

/**
 * Class, desktop entry and process of a window, as the daemon takes them; empty texts where unknown. Never the title.
 *
 * @param {Meta.Window|null} window - the window; null for none
 * @param {Shell.WindowTracker} tracker - knows the desktop entries
 * @returns {string[]} three texts
 */
function describe(window, tracker) {
    if (!window)
        return NOTHING;
    const id = tracker.get_window_app(window)?.get_id() ?? '';
    const processId = window.get_pid();
    return [
        window.get_wm_class() ?? '',
        id.endsWith('.desktop') ? id : '', // the Shell makes up other ids for windows without an entry
        processId > 0 ? String(processId) : '',
    ];
}

/** Reports from its creation until destroy(). The daemon may come later, end, and come back. */
export class FrontApplicationReporter {
    constructor() {
        this._connections = [];
        this._window = null;
        this._windowConnection = 0;
        this._bus = null; // while the daemon runs
        this._daemon = null;
        this._reported = null;
        this._watch = 0;
        // On X11, the daemon sees all windows itself.
        if (!(Meta.is_wayland_compositor?.() ?? true))
            return;
        this._tracker = Shell.WindowTracker.get_default();
        this._connect(global.display, 'notify::focus-window');
        // The application of a new window may become known after the focus.
        this._connect(this._tracker, 'notify::focus-app');
        this._followWindow();
        this._watch = Gio.bus_watch_name(Gio.BusType.SESSION, SERVICE, Gio.BusNameWatcherFlags.NONE,
            (bus, name, owner) => {
                this._bus = bus;
                this._daemon = owner;
                this._reported = null;
                this._report();
            },
            () => {
                this._daemon = null;
            });
    }

    /**
     * Ends the reports.
     *
     * @param {boolean} isLocked - whether the Shell ends it because the screen is locked, and creates another one later.
     *     Until then, no application is in front. Otherwise, the daemon uses what else reports applications.
     */
    destroy(isLocked) {
        for (const [object, id] of this._connections)
            object.disconnect(id);
        this._connections = [];
        this._leaveWindow();
        if (this._watch)
            Gio.bus_unwatch_name(this._watch);
        this._watch = 0;
        this._tell(NOTHING);
        if (!isLocked)
            this._call('EndReports', null);
        this._daemon = null;
    }

    _connect(object, signal) {
        this._connections.push([object, object.connect(signal, () => this._followWindow())]);
    }

    _followWindow() {
        const window = global.display.focus_window;
        if (window !== this._window) {
            this._leaveWindow();
            this._window = window;
            this._windowConnection = window?.connect('notify::wm-class', () => this._report()) ?? 0;
        }
        this._report();
    }

    _leaveWindow() {
        if (this._windowConnection)
            this._window.disconnect(this._windowConnection);
        this._windowConnection = 0;
        this._window = null;
    }

    _report() {
        this._tell(describe(this._window, this._tracker));
    }

    _tell(application) {
        const text = JSON.stringify(application);
        if (text === this._reported)
            return;
        this._reported = text;
        this._call('TellWindow', new GLib.Variant('(sss)', application));
    }

    _call(method, body) {
        if (!this._daemon)
            return;
        const message = Gio.DBusMessage.new_method_call(this._daemon, OBJECT, INTERFACE, method);
        message.set_flags(Gio.DBusMessageFlags.NO_REPLY_EXPECTED | Gio.DBusMessageFlags.NO_AUTO_START);
        if (body)
            message.set_body(body);
        this._bus.send_message(message, Gio.DBusSendMessageFlags.NONE);
    }
}
