#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""A process on the session bus that does what a test tells it, in lines of JSON.

Usage: fakerunner.py [BUS-NAME...]

It owns the names and tells every method call that it gets, with its signature. It answers nothing but the
calls themselves, and sends what the lines on its standard input say.
"""

import json
import os
import signal
import sys

import dbus
from dbus.lowlevel import (ErrorMessage, MethodCallMessage, MethodReturnMessage,
                           SignalMessage)
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

INTERFACE = "com.orvane.kinlet.runner"

# Whether calls get error replies.
refuses = False


def tell(**event):
    print(json.dumps(event), flush=True)


def plain(value):
    return bytes(value).hex() if isinstance(value, (dbus.ByteArray, bytes)) else value


def on_message(connection, message):
    if not isinstance(message, MethodCallMessage):
        return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
    if message.get_interface() == INTERFACE:
        tell(call=message.get_member(), path=message.get_path(), signature=message.get_signature(),
             arguments=[plain(value) for value in message.get_args_list(byte_arrays=True)])
    if refuses:
        connection.send_message(ErrorMessage(message, "org.example.Error.Refused", "No"))
    elif not message.get_no_reply():
        reply = MethodReturnMessage(message)
        if message.get_member() == "metaData":
            reply.append({"name": "told by the runner", "version": "7"}, signature="a{sv}")
        connection.send_message(reply)
    return dbus.lowlevel.HANDLER_RESULT_HANDLED


def send(connection, path, member, signature, *values):
    message = SignalMessage(path, INTERFACE, member)
    if signature:
        message.append(signature=signature, *values)
    connection.send_message(message)


def variants(texts):
    """Texts in hexadecimal digits become byte arrays, anything else stays."""
    return dbus.Array([dbus.ByteArray(bytes.fromhex(text)) if isinstance(text, str) else text
                       for text in texts], signature="v")


def obey(connection, order):
    global refuses
    action = order["do"]
    if action == "own":
        connection.request_name(order["name"],
                                0 if order.get("queue") else dbus.bus.NAME_FLAG_DO_NOT_QUEUE)
    elif action == "release":
        connection.release_name(order["name"])
    elif action == "refuse":
        refuses = True
    elif action == "send":
        send(connection, order["path"], order["member"], order["signature"], *order["arguments"])
    elif action == "finish":
        for _ in range(order.get("times", 1)):
            send(connection, order["path"], "requestFinished", "isayay", order.get("type", 0),
                 order["id"], dbus.ByteArray(bytes.fromhex(order["request"])),
                 dbus.ByteArray(bytes.fromhex(order.get("error", ""))))
        if order.get("die"):
            # Sending only begins before the connection is flushed.
            os.kill(os.getpid(), signal.SIGKILL)
    elif action == "push":
        data = variants(order["data"] * order.get("times", 1))
        for _ in range(order.get("messages", 1)):
            send(connection, order["path"], order["member"], "avas", data,
                 dbus.Array(order["properties"], signature="s"))
    connection.flush()
    tell(done=action)


def main():
    DBusGMainLoop(set_as_default=True)
    loop = GLib.MainLoop()
    connection = dbus.bus.BusConnection(dbus.bus.BusConnection.TYPE_SESSION)
    connection.add_message_filter(on_message)
    for name in sys.argv[1:]:
        connection.request_name(name, dbus.bus.NAME_FLAG_DO_NOT_QUEUE)

    def on_input(_channel, condition):
        line = sys.stdin.readline() if condition & GLib.IO_IN else ""
        if not line:
            loop.quit()
            return False
        obey(connection, json.loads(line))
        return True

    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, on_input)
    tell(ready=connection.get_unique_name())
    loop.run()


if __name__ == "__main__":
    main()
