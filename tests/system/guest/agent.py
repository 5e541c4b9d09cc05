# SPDX-License-Identifier: MIT
"""An authentication agent of polkit for a session, as a desktop has one. Its user cancels every question. It writes
"registered", and then the action of each question.
Usage: agent.py SESSION"""

import sys

from gi.repository import Gio, GLib

AUTHORITY = "org.freedesktop.PolicyKit1"
PATH = "/org/quillkestra/test/Agent"
INTERFACES = """<node><interface name="org.freedesktop.PolicyKit1.AuthenticationAgent">
  <method name="BeginAuthentication">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{ss}" direction="in"/><arg type="s" direction="in"/><arg type="a(sa{sv})" direction="in"/>
  </method>
  <method name="CancelAuthentication"><arg type="s" direction="in"/></method>
</interface></node>"""


def answer(_connection, _sender, _path, _interface, method, parameters, invocation):
    if method == "BeginAuthentication":
        print(parameters[0], flush=True)
        invocation.return_dbus_error(AUTHORITY + ".Error.Cancelled", "The user has cancelled.")
    else:
        invocation.return_value(None)


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
    bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces[0], answer)
    session = ("unix-session", {"session-id": GLib.Variant("s", sys.argv[1])})
    bus.call_sync(AUTHORITY, "/org/freedesktop/PolicyKit1/Authority", AUTHORITY + ".Authority",
                  "RegisterAuthenticationAgent", GLib.Variant("((sa{sv})ss)", (session, "C", PATH)), None,
                  Gio.DBusCallFlags.NONE, -1)
    print("registered", flush=True)
    GLib.MainLoop().run()


main()
