// SPDX-License-Identifier: MIT
// The extension's entry for GNOME Shell 45 and later, imported as the Shell does, with stubs for what the Shell
// provides, and a daemon that the test plays. Usage: gjs -m importtest.js EXTENSION_FOLDER RESOURCES
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import GObject from 'gi://GObject';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import system from 'system';

const [folder, resources] = system.programArgs;
const SERVICE = 'org.quillkestra.QuillCoreEngineMsgPort';
const INTERFACE = `<node><interface name="org.quillkestra.FrontApplication"><method name="TellWindow">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
</method><method name="EndReports"/></interface></node>`;
const ENDED = 'EndReports';
const NOTHING = ['', '', ''];
const exportObject = Gio.DBusInterfaceSkeleton.prototype.export;

let handlers = 0; // of the stubs' signals

const Counting = GObject.registerClass(class Counting extends GObject.Object {
    connect(...args) {
        ++handlers;
        return super.connect(...args);
    }

    disconnect(id) {
        --handlers;
        super.disconnect(id);
    }
});

const Window = GObject.registerClass({
    Properties: {
        'wm-class': GObject.ParamSpec.string('wm-class', '', '', GObject.ParamFlags.READWRITE, ''),
        'title': GObject.ParamSpec.string('title', '', '', GObject.ParamFlags.READWRITE, ''),
    },
}, class Window extends Counting {
    get_wm_class() {
        return this.wm_class;
    }

    get_pid() {
        return this.processId;
    }

    get_title() {
        return this.title;
    }
});

const Display = GObject.registerClass({
    Properties: {
        'focus-window': GObject.ParamSpec.object('focus-window', '', '', GObject.ParamFlags.READWRITE, Window.$gtype),
    },
}, class Display extends Counting {});

const Tracker = GObject.registerClass({
    Properties: {
        'focus-app': GObject.ParamSpec.string('focus-app', '', '', GObject.ParamFlags.READWRITE, ''),
    },
}, class Tracker extends Counting {
    get_window_app(window) {
        return window.entry ? {get_id: () => window.entry} : null;
    }
});

/** The daemon on the bus, from its creation until end(). */
class Daemon {
    constructor() {
        this.reports = [];
        this.bus = Gio.DBusConnection.new_for_address_sync(GLib.getenv('DBUS_SESSION_BUS_ADDRESS'),
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, null, null);
        const object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, {
            TellWindow: (windowClass, entry, processId) => {
                this.reports.push([windowClass, entry, processId]);
            },
            EndReports: () => {
                this.reports.push(ENDED);
            },
        });
        exportObject.call(object, this.bus, '/FrontApplication');
        callBus(this.bus, 'RequestName', new GLib.Variant('(su)', [SERVICE, 0]));
    }

    end() {
        this.bus.close_sync(null);
    }
}

function callBus(bus, method, body) {
    bus.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', method, body, null,
        Gio.DBusCallFlags.NONE, -1, null);
}

function fail(text) {
    printerr(`importtest: ${text}`);
    system.exit(1);
}

function waitUntil(condition, what) {
    const limit = GLib.get_monotonic_time() + 60 * GLib.USEC_PER_SEC;
    const wakeUp = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 50, () => GLib.SOURCE_CONTINUE);
    while (!condition()) {
        if (GLib.get_monotonic_time() > limit)
            fail(`it did not come: ${what}`);
        GLib.MainContext.default().iteration(true);
    }
    GLib.source_remove(wakeUp);
}

/** From here on, the test fails when the extension offers anything on the bus. */
function forbidExports() {
    const forbidden = [
        [Gio, ['bus_own_name', 'bus_own_name_on_connection']],
        [Gio.DBus, ['own_name', 'own_name_on_connection']],
        [Gio.DBusConnection.prototype,
            ['own_name', 'register_object', 'register_subtree', 'export_action_group', 'export_menu_model']],
        [Gio.DBusInterfaceSkeleton.prototype, ['export']],
    ];
    for (const [owner, names] of forbidden) {
        for (const name of names) {
            if (typeof owner[name] !== 'function')
                fail(`there is no ${name}`);
            owner[name] = () => fail(`the extension calls ${name}`);
        }
    }
}

function isLast(daemon, report) {
    return JSON.stringify(daemon.reports.at(-1)) === JSON.stringify(report);
}

/** Fails if the extension has sent anything to the daemon since the last report. */
function expectNoReport(daemon, what) {
    const before = daemon.reports.length;
    // Comes after everything that the extension would send to this daemon.
    const marker = ['marker', String(before), ''];
    const watch = Gio.bus_watch_name(Gio.BusType.SESSION, SERVICE, Gio.BusNameWatcherFlags.NONE, bus =>
        bus.call(SERVICE, '/FrontApplication', 'org.quillkestra.FrontApplication', 'TellWindow',
            new GLib.Variant('(sss)', marker), null, Gio.DBusCallFlags.NONE, -1, null, null), null);
    waitUntil(() => isLast(daemon, marker), 'a report of the test itself');
    Gio.bus_unwatch_name(watch);
    if (daemon.reports.length !== before + 1)
        fail(`${what}: ${JSON.stringify(daemon.reports.slice(before))}`);
}

// The library of the Shell has a main.js of its own, and resources that are registered later have precedence: the first
// line loads the library, the second registers its resources.
GObject.type_ensure(Shell.WindowTracker.$gtype);
Gio.resources_lookup_data('/org/gnome/shell/ui/main.js', Gio.ResourceLookupFlags.NONE);
Gio.Resource.load(resources)._register();
const display = new Display();
const tracker = new Tracker();
globalThis.global = {display};
let isWayland = false;
Meta.is_wayland_compositor = () => isWayland;
Shell.WindowTracker.get_default = () => tracker;

const game = new Window({wm_class: 'game', title: 'private'});
Object.assign(game, {entry: 'org.example.Game.desktop', processId: 7});
const other = new Window({wm_class: null, title: 'private'});
Object.assign(other, {entry: 'window:5', processId: 0});

const module = await import(`file://${folder}/extension.js`);
const Main = await import('resource:///org/gnome/shell/ui/main.js');
forbidExports();
const extension = new module.default({uuid: 'quill-kestra@quillkestra.org'});
if (extension.metadata.uuid !== 'quill-kestra@quillkestra.org')
    fail('the extension is none of the Shell');

// On X11.
display.focus_window = game;
extension.enable();
if (handlers !== 0)
    fail(`on X11, there are ${handlers} handlers`);
let daemon = new Daemon();
expectNoReport(daemon, 'reports on X11');
extension.disable();
expectNoReport(daemon, 'reports of the end on X11');
daemon.end();

// On Wayland, the daemon starts later than the Shell, with a window in front.
isWayland = true;
extension.enable();
daemon = new Daemon();
waitUntil(() => isLast(daemon, ['game', 'org.example.Game.desktop', '7']), 'the window in front at the start');
display.focus_window = other;
waitUntil(() => isLast(daemon, NOTHING), 'a window without names');
other.wm_class = 'later';
waitUntil(() => isLast(daemon, ['later', '', '']), 'a class that is set later');
other.entry = 'org.example.Other.desktop';
tracker.focus_app = 'other';
waitUntil(() => isLast(daemon, ['later', 'org.example.Other.desktop', '']), 'an application that is known later');

// Another daemon, with the same window in front.
daemon.end();
daemon = new Daemon();
waitUntil(() => isLast(daemon, ['later', 'org.example.Other.desktop', '']), 'the window in front, for another daemon');

extension.disable();
waitUntil(() => isLast(daemon, ENDED), 'the end of the reports');
if (JSON.stringify(daemon.reports.at(-2)) !== JSON.stringify(NOTHING))
    fail('the last report is not that nothing is in front');
if (handlers !== 0)
    fail(`disable() leaves ${handlers} handlers`);
daemon.end();
daemon = new Daemon();
expectNoReport(daemon, 'reports after disable()');

display.focus_window = game;
extension.enable();
waitUntil(() => isLast(daemon, ['game', 'org.example.Game.desktop', '7']), 'the window in front, enabled again');

// The Shell also disables its extensions while the screen is locked.
Main.sessionMode.isLocked = true;
extension.disable();
waitUntil(() => isLast(daemon, NOTHING), 'the report at the lock of the screen');
expectNoReport(daemon, 'reports while the screen is locked');
Main.sessionMode.isLocked = false;
extension.enable();
waitUntil(() => isLast(daemon, ['game', 'org.example.Game.desktop', '7']), 'the window in front after the lock');
system.exit(0);
