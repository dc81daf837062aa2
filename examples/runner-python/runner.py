#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""A provider for Kinlet in a process of its own, without Qt: a small network held in memory.

Usage: runner.py [ID]

It owns the name com.orvane.kinlet.ID on the session bus; the default id is "example". README.md
says how to have the bus start it.
"""

import fnmatch
import re
import signal
import sys
from datetime import datetime, timedelta, timezone

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

from streams import (ERRORS, RECORD, REQUEST, Attachment, Error, ErrorType, Kind, Media, Record,
                     Status, StreamError, Syntax, TextList)

PREFIX = "com.orvane.kinlet."
INTERFACE = "com.orvane.kinlet.runner"

# Types of activities, and timelines, as SocialActivity and KinletTimeline number them.
STATUS, COMMENT, MESSAGE, ANY_TYPE = 1, 2, 3, 4
ANY_TIMELINE, HOMEPAGE, PROFILE, PERSONAL, FAVORITES = range(5)


class Network:
    """Persons and what they write. It knows nothing of the bus.

    Ids begin with the id of the runner, so that they differ from those of any other provider.
    """

    def __init__(self, name):
        self.name = name
        self.account = f"{name}:account"
        self.me = f"{name}:ada"
        self.people = {}
        self.activities = {}  # The newest last
        self.likes = {}  # The ids of an activity's likers
        self.add_person("ada", "Ada", "Lind", "ada@example.org")
        self.add_person("ben", "Ben", "Okoro", "ben@example.org")
        self.add_person("cleo", "Cleo", "Marsh", "cleo@example.org", "cleo@example.net")
        start = datetime(2026, 1, 5, 9, tzinfo=timezone.utc)
        self.publish(f"{name}:ben", STATUS, "Good morning", start)
        self.publish(f"{name}:ada", COMMENT, "And to you", start + timedelta(minutes=5), f"{name}:1")
        self.publish(f"{name}:cleo", STATUS, "Look at this", start + timedelta(hours=1))
        self.activities[f"{name}:3"]["Attachment"] = Attachment(
            "A lighthouse", "Pictures", "Seen from the sea", "https://example.org/lighthouse",
            [Media(1, "https://example.org/lighthouse.jpg", None, "A white tower on a rock")])
        self.likes[f"{name}:1"].append(f"{name}:cleo")

    def add_person(self, name, first_name, last_name, *addresses):
        person_id = f"{self.name}:{name}"
        self.people[person_id] = {
            "Id": person_id, "ParentAccount": self.account, "ScreenName": name,
            "FirstName": first_name, "LastName": last_name, "EmailAddresses": TextList(addresses)}

    def publish(self, owner, activity_type, text, when, parent=None):
        activity_id = f"{self.name}:{len(self.activities) + 1}"
        self.activities[activity_id] = {
            "Id": activity_id, "ParentAccount": self.account, "OwnerPersonId": owner,
            "ActivityType": activity_type, "Description": text, "StartTime": when}
        if parent:
            self.activities[activity_id]["ParentActivityId"] = parent
        self.likes[activity_id] = []
        return activity_id

    # Records

    def person(self, person_id):
        return Record("SocialNetworkPerson", self.people[person_id])

    def activity(self, activity_id):
        comments = [activity for activity in self.activities.values()
                    if activity.get("ParentActivityId") == activity_id]
        return Record("SocialActivity", {
            **self.activities[activity_id], "CommentCount": len(comments),
            "LikeCount": len(self.likes[activity_id]),
            "IsLikedByMe": self.me in self.likes[activity_id]})

    # Answers: each takes the fields of its request, and gives records and errors.

    def answer(self, request):
        unknown = [account for account in request.accounts if account != self.account]
        if unknown:
            return [], invalid("account", unknown)
        answers = {
            Kind.SERVICES: self.services, Kind.ACCOUNTS: self.accounts,
            Kind.PERSONS: self.find_persons, Kind.ACTIVITIES: self.find_activities,
            Kind.POST: self.post, Kind.LIKE: self.set_like, Kind.LIKERS: self.find_likers}
        return answers[request.kind](**request.fields)

    def services(self):
        return [Record("SocialService", {
            "Id": self.name, "ProviderName": "Example", "Website": "https://example.org",
            "CanDataBeCached": True, "SocialActions": 1 | 2 | 4})], []

    def accounts(self):
        return [Record("SocialServiceAccount", {
            "Id": self.account, "SocialServiceId": self.name, "ProfileId": self.me,
            "AccountName": "Ada's example account", "UserName": "ada"})], []

    def find_persons(self, property_filter, among=None):
        try:
            patterns = {key: compiled(pattern) for key, pattern in property_filter.items()}
        except re.error as error:
            return [], [Error(ErrorType.INVALID_REQUEST, f"Not a regular expression: {error}")]
        persons = map(self.person, self.people if among is None else among)
        return [person for person in persons
                if all(matches(pattern, person.properties.get(key))
                       for key, pattern in patterns.items())], []

    def find_activities(self, persons_filter, limit, after, before, activity_ids_filter,
                        parent_activity_id, activity_type, timeline, force_refresh):
        def wanted(activity):
            return ((not persons_filter or activity["OwnerPersonId"] in persons_filter)
                    and (after is None or activity["StartTime"] > after.astimezone())
                    and (before is None or activity["StartTime"] < before.astimezone())
                    and (not activity_ids_filter or activity["Id"] in activity_ids_filter)
                    and (not parent_activity_id
                         or activity.get("ParentActivityId") == parent_activity_id)
                    and activity_type in (ANY_TYPE, activity["ActivityType"])
                    and self.stands_in(activity, timeline))

        errors = (invalid("person", [person for person in persons_filter
                                     if person not in self.people])
                  + invalid("activity", [activity for activity
                                         in [*activity_ids_filter, parent_activity_id]
                                         if activity and activity not in self.activities]))
        found = [activity["Id"] for activity in reversed(self.activities.values())
                 if wanted(activity)]
        if limit > 0:
            found = found[:limit]
        return [self.activity(activity_id) for activity_id in found], errors

    def stands_in(self, activity, timeline):
        if timeline == PERSONAL:
            return activity["OwnerPersonId"] == self.me
        if timeline == FAVORITES:
            return self.me in self.likes[activity["Id"]]
        return timeline in (ANY_TIMELINE, HOMEPAGE, PROFILE)

    def post(self, activity_type, text, post_id):
        if activity_type not in (STATUS, COMMENT):
            return [], [Error(ErrorType.POST_FAILED, "Only statuses and comments can be posted")]
        if not text:
            return [], [Error(ErrorType.INVALID_REQUEST, "The text is empty")]
        if activity_type == COMMENT and post_id not in self.activities:
            return [], invalid("activity", [post_id])
        now = datetime.now(timezone.utc)
        parent = post_id if activity_type == COMMENT else None
        return [self.activity(self.publish(self.me, activity_type, text, now, parent))], []

    def set_like(self, activity_id, like):
        if activity_id not in self.activities:
            return [], invalid("activity", [activity_id])
        likers = [liker for liker in self.likes[activity_id] if liker != self.me]
        self.likes[activity_id] = likers + [self.me] if like else likers
        return [self.activity(activity_id)], []

    def find_likers(self, property_filter, activity_id):
        if activity_id not in self.activities:
            return [], invalid("activity", [activity_id])
        return self.find_persons(property_filter, self.likes[activity_id])


def invalid(what, ids):
    return [Error(ErrorType.INVALID_REQUEST, f"No such {what}: {an_id}") for an_id in ids]


def compiled(pattern):
    # Whether a pattern is minimal changes how much of a text it finds, not whether it is found.
    text = pattern.text or ""
    if pattern.syntax in (Syntax.WILDCARD, Syntax.WILDCARD_UNIX):
        text = r"\A" + fnmatch.translate(text)
    elif pattern.syntax == Syntax.FIXED_STRING:
        text = re.escape(text)
    return re.compile(text, 0 if pattern.case_sensitive else re.IGNORECASE)


def matches(pattern, value):
    """Whether the pattern is found in the value, or in one of its texts."""
    texts = value if isinstance(value, list) else [value]
    return any(text is not None and pattern.search(str(text)) for text in texts)


class Runner(dbus.service.Object):
    """The object on the bus. Its methods and signals are named as the interface names them."""

    def __init__(self, bus, name):
        super().__init__(bus, f"/{name}")
        self.name = name
        self.network = Network(name)

    @dbus.service.method(INTERFACE, in_signature="isay", out_signature="", byte_arrays=True)
    def performRequest(self, requestType, requestId, request):
        try:
            decoded = REQUEST.decode(request)
            if decoded.kind != requestType:
                raise StreamError(f"kind {decoded.kind} in a request of kind {requestType}")
        except StreamError as error:
            raise dbus.DBusException(
                str(error), name="org.freedesktop.DBus.Error.InvalidArgs") from error
        # The reply goes out when this method returns; the answer follows it.
        GLib.idle_add(self.serve, requestId, decoded)

    @dbus.service.method(INTERFACE, in_signature="", out_signature="a{sv}")
    def metaData(self):
        return {"name": self.name, "version": "1.0"}

    @dbus.service.signal(INTERFACE, signature="avas")
    def dataUpdate(self, data, updatedProperties):
        pass

    @dbus.service.signal(INTERFACE, signature="avas")
    def personsUpdate(self, data, updatedProperties):
        pass

    @dbus.service.signal(INTERFACE, signature="isayay")
    def requestFinished(self, requestType, requestId, request, error):
        pass

    def serve(self, request_id, request):
        try:
            request.results, errors = self.network.answer(request)
        except Exception as error:  # A request that was taken is owed an answer, whatever happens.
            request.results, errors = [], [Error(ErrorType.UNKNOWN_ERROR, repr(error))]
        request.status = Status.FINISHED
        self.requestFinished(request.kind, request_id, REQUEST.write(request), ERRORS.write(errors))
        if request.kind == Kind.POST:
            for record in request.results:
                self.dataUpdate([dbus.ByteArray(RECORD.write(record))], list(record.properties))
        return GLib.SOURCE_REMOVE


def main():
    name = sys.argv[1] if len(sys.argv) > 1 else "example"
    DBusGMainLoop(set_as_default=True)
    loop = GLib.MainLoop()
    for number in (signal.SIGTERM, signal.SIGINT):
        GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, number, loop.quit)
    try:
        bus = dbus.SessionBus()
        # The object first: whoever sees the name may call at once.
        runner = Runner(bus, name)
        bus_name = dbus.service.BusName(PREFIX + name, bus, do_not_queue=True)
    except (dbus.DBusException, ValueError) as error:
        sys.exit(f"{sys.argv[0]}: {error}")
    loop.run()
    # Leaves the bus in order: no further calls arrive, then the name is free.
    runner.remove_from_connection()
    bus.release_name(bus_name.get_name())


if __name__ == "__main__":
    main()
