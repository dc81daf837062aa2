#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""The smallest runner: one account, one status."""

import signal
from datetime import datetime, timezone

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

from streams import ERRORS, REQUEST, Error, ErrorType, Kind, Record, Status, StreamError

NAME = "smallest"
INTERFACE = "com.orvane.kinlet.runner"

SERVICE = Record("SocialService", {"Id": NAME, "Description": "Smallest network"})
ACCOUNT = Record("SocialServiceAccount", {
    "Id": f"{NAME}:account", "SocialServiceId": NAME, "AccountName": "Ada"})
HELLO = Record("SocialActivity", {
    "Id": f"{NAME}:1", "ParentAccount": f"{NAME}:account", "OwnerPersonId": f"{NAME}:ada",
    "ActivityType": 1, "Description": "Hello from Python",
    "StartTime": datetime(2026, 1, 5, 9, tzinfo=timezone.utc)})
ANSWERS = {Kind.SERVICES: [SERVICE], Kind.ACCOUNTS: [ACCOUNT], Kind.ACTIVITIES: [HELLO]}


class Runner(dbus.service.Object):
    @dbus.service.method(INTERFACE, in_signature="isay", out_signature="", byte_arrays=True)
    def performRequest(self, kind, request_id, data):
        try:
            request = REQUEST.decode(data)
        except StreamError as error:
            raise dbus.DBusException(
                str(error), name="org.freedesktop.DBus.Error.InvalidArgs") from error
        # After the reply, which tells that the request has been taken.
        GLib.idle_add(self.answer, kind, request_id, request)

    def answer(self, kind, request_id, request):
        errors = []
        # Without the filters: examples/runner-python shows how they are applied.
        if request.kind in ANSWERS:
            request.results = ANSWERS[request.kind]
        else:
            errors = [Error(ErrorType.UNSUPPORTED_REQUEST)]
        request.status = Status.FINISHED
        self.requestFinished(kind, request_id, REQUEST.write(request), ERRORS.write(errors))
        return GLib.SOURCE_REMOVE

    @dbus.service.signal(INTERFACE, signature="isayay")
    def requestFinished(self, kind, request_id, request, errors):
        pass

    @dbus.service.method(INTERFACE, in_signature="", out_signature="a{sv}")
    def metaData(self):
        return {"name": NAME, "version": "1.0"}


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
# The object first: whoever sees the name may call at once.
runner = Runner(bus, f"/{NAME}")
bus_name = dbus.service.BusName(f"com.orvane.kinlet.{NAME}", bus, do_not_queue=True)
loop = GLib.MainLoop()
GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, loop.quit)
loop.run()
