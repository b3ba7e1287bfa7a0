"""A program's accessibility tree, as a screen reader sees it; read anew on every access.

Uses the accessibility bus directly: the usual library caches, and a test must not see stale values."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

TIMEOUT_MS = 5000
STATES = {
    "active": 1,
    "editable": 7,
    "enabled": 8,
    "focusable": 11,
    "focused": 12,
    "modal": 16,
    "selectable": 22,
    "selected": 23,
    "sensitive": 24,
    "showing": 25,
    "visible": 30,
}
# What a user can act on; anything else is only informative.
CONTROLS = {
    "push button",
    "button",
    "button menu",
    "push button menu",
    "check box",
    "combo box",
    "list",
    "list item",
    "menu item",
    "text",
    "entry",
}


class Gone(Exception):
    """The control has left the window, or the program has ended."""


class Node:
    """A control as exposed to assistive technology. Holds only its address."""

    def __init__(self, bus, owner, path):
        self._bus, self._owner, self._path = bus, owner, path

    def __eq__(self, other):
        return isinstance(other, Node) and (self._owner, self._path) == (other._owner, other._path)

    def __hash__(self):
        return hash((self._owner, self._path))

    def __repr__(self):
        try:
            return f"{self.role} {self.name!r}"
        except Gone:
            return "a control that is gone"

    def _call(self, interface, method, arguments=None):
        try:
            return self._bus.call_sync(
                self._owner, self._path, interface, method, arguments, None,
                Gio.DBusCallFlags.NONE, TIMEOUT_MS, None,
            ).unpack()
        except GLib.Error as error:
            raise Gone(error.message) from error

    def _property(self, name):
        arguments = GLib.Variant("(ss)", ("org.a11y.atspi.Accessible", name))
        return self._call("org.freedesktop.DBus.Properties", "Get", arguments)[0]

    @property
    def name(self):
        return self._property("Name")

    @property
    def description(self):
        return self._property("Description")

    @property
    def role(self):
        return self._call("org.a11y.atspi.Accessible", "GetRoleName")[0]

    @property
    def states(self):
        low, high = self._call("org.a11y.atspi.Accessible", "GetState")[0]
        bits = low | high << 32
        return {name for name, bit in STATES.items() if bits >> bit & 1}

    @property
    def place(self):
        """Left, top, width and height on the screen."""
        return self._call("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))[0]

    @property
    def children(self):
        told = self._call("org.a11y.atspi.Accessible", "GetChildren")[0]
        return [Node(self._bus, owner, path) for owner, path in told if not path.endswith("/null")]

    def below(self):
        """The control and all its descendants, parents first. Omits those that disappear while being read."""
        waiting = [self]
        while waiting:
            node = waiting.pop()
            try:
                children = node.children
            except Gone:
                continue
            yield node
            waiting.extend(reversed(children))


def connect():
    """Connects to the bus that assistive programs share."""
    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    address = session.call_sync(
        "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
        Gio.DBusCallFlags.NONE, TIMEOUT_MS, None,
    ).unpack()[0]
    flags = (
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    )
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)


def program(bus, pid):
    """The root of the process's accessibility tree; None until it exposes one."""
    registry = Node(bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
    for node in registry.children:
        try:
            owner = bus.call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", GLib.Variant("(s)", (node._owner,)), None,
                Gio.DBusCallFlags.NONE, TIMEOUT_MS, None,
            ).unpack()[0]
        except GLib.Error:
            continue
        if owner == pid:
            return node
    return None
