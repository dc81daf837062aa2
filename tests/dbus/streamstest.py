#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Usage: streamstest.py FOLDER_OF_STREAMS_PY DOCUMENT

Compares what streams.py writes and reads with the examples of the document.
"""

import sys
import unittest
from datetime import date, datetime, time, timedelta, timezone
from zoneinfo import ZoneInfo

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv[1])

from streams import *  # noqa: E402

WHEN = datetime(2026, 1, 5, 9, 5, 7, 250000)
UTC_WHEN = WHEN.replace(tzinfo=timezone.utc)
CAT = Media(1, "i.jpg", None, "A cat")
LIKE_TEXTS = ActionIconTexts(1, "star", "Like", "Unlike")
ATTACHMENT = Attachment("Title", "Site", None, "u", [Media(4, "l", None, None)])
PROGRESS = ImportProgress(False, 3, 2, 1)
FILTER = {"FirstName": Pattern("^A", case_sensitive=False)}
A1 = TextList(["a1"])
STARTED = Status.STARTED

EXAMPLES = {
    "number": (INT32, 10),
    "text": (TEXT, "Ada"),
    "text-outside-the-first-plane": (TEXT, "é😀"),
    "text-null": (TEXT, None),
    "text-empty": (TEXT, ""),
    "bytes": (BYTES, b"\1\2\3"),
    "text-list": (TEXTS, TextList(["a", "bc"])),
    "list-of-media": (list_of(MEDIA), [Media(1, "i", None, "A")]),
    "date": (DATE, WHEN.date()),
    "date-null": (DATE, None),
    "time": (TIME, WHEN.time()),
    "time-null": (TIME, None),
    "date-and-time-utc": (DATETIME, UTC_WHEN),
    "date-and-time-local": (DATETIME, WHEN),
    "date-and-time-offset": (DATETIME, WHEN.replace(tzinfo=timezone(timedelta(hours=1)))),
    "date-and-time-zone": (DATETIME, WHEN.replace(tzinfo=ZoneInfo("Europe/Berlin"))),
    "date-and-time-null": (DATETIME, None),
    "pattern": (PATTERN, Pattern("^A.*")),
    "pattern-hash": (map_of(PATTERN), FILTER),
    "value-invalid": (VALUE, None),
    "value-bool": (VALUE, True),
    "value-int": (VALUE, -2),
    "value-longlong": (VALUE, -5000000000),
    "value-double": (VALUE, 1.5),
    "value-text": (VALUE, "Ada"),
    "value-bytes": (VALUE, b"\x89P"),
    "value-text-list": (VALUE, TextList(["a"])),
    "value-list": (VALUE, [7, "a"]),
    "value-map": (VALUE, {"k": False}),
    "value-date": (VALUE, WHEN.date()),
    "value-time": (VALUE, WHEN.time()),
    "value-date-and-time": (VALUE, UTC_WHEN),
    "value-url": (VALUE, Url("https://example.org/")),
    "value-media": (VALUE, CAT),
    "value-icon-texts": (VALUE, LIKE_TEXTS),
    "value-attachment": (VALUE, ATTACHMENT),
    "value-import-progress": (VALUE, PROGRESS),
    "media": (MEDIA, CAT),
    "icon-texts": (CUSTOM_TYPES["SocialActionIconTexts"][1], LIKE_TEXTS),
    "attachment": (CUSTOM_TYPES["SocialActivityAttachment"][1], ATTACHMENT),
    "import-progress": (CUSTOM_TYPES["SocialImportProgress"][1], PROGRESS),
    "record": (RECORD, Record("SocialNetworkPerson", {"Id": "p1", "FirstName": "Ada"})),
    "error": (ERROR, Error(ErrorType.INVALID_REQUEST, "No")),
    "errors": (ERRORS, [Error(ErrorType.INVALID_REQUEST, "No")]),
    "services-request": (REQUEST, Request(Kind.SERVICES, STARTED)),
    "services-answer": (REQUEST, Request(Kind.SERVICES, Status.FINISHED,
                                         [Record("SocialService", {"Id": "s1"})])),
    "accounts-request": (REQUEST, Request(Kind.ACCOUNTS, STARTED)),
    "persons-request": (REQUEST, Request(Kind.PERSONS, STARTED, [], A1,
                                         {"property_filter": FILTER})),
    "activities-request": (REQUEST, Request(Kind.ACTIVITIES, STARTED, [], A1, {
        "persons_filter": TextList(["p1"]), "limit": 5, "after": UTC_WHEN, "before": None,
        "activity_ids_filter": TextList(), "parent_activity_id": None, "activity_type": 4,
        "timeline": 1, "force_refresh": False})),
    "post-request": (REQUEST, Request(Kind.POST, STARTED, [], A1, {
        "activity_type": 2, "text": "Hi", "post_id": "7"})),
    "like-request": (REQUEST, Request(Kind.LIKE, STARTED, [], A1, {
        "activity_id": "7", "like": True})),
    "likers-request": (REQUEST, Request(Kind.LIKERS, STARTED, [], A1, {
        "property_filter": {}, "activity_id": "7"})),
}

# Types that Python has no counterpart of: they are read, and never written.
READ_ONLY = {
    "value-uint": (VALUE, 3000000000),
    "value-ulonglong": (VALUE, 2**63),
    "value-float": (VALUE, 1.5),
    "value-char": (VALUE, "é"),
    "value-hash": (VALUE, {"k": 7}),
}


def documented():
    examples, name = {}, None
    with open(sys.argv[2], encoding="utf-8") as document:
        for line in map(str.rstrip, document):
            if line.startswith("```hex "):
                name = line[7:]
                examples[name] = b""
            elif line == "```":
                name = None
            elif name:
                examples[name] += bytes.fromhex(line.split("  ")[0])
    return examples


class StreamsTest(unittest.TestCase):
    def test_every_example_is_known(self):
        self.assertEqual(documented().keys(), EXAMPLES.keys() | READ_ONLY.keys())

    def test_examples_are_written(self):
        for name, (form, value) in EXAMPLES.items():
            with self.subTest(name):
                self.assertEqual(form.write(value).hex(" "), documented()[name].hex(" "))

    def test_examples_are_read(self):
        for name, (form, value) in {**EXAMPLES, **READ_ONLY}.items():
            with self.subTest(name):
                decoded = form.decode(documented()[name])
                self.assertEqual(decoded, value)
                self.assertIs(type(decoded), type(value))

    def test_examples_cut_short_or_followed_by_more_are_refused(self):
        for name, (form, _value) in {**EXAMPLES, **READ_ONLY}.items():
            data = documented()[name]
            for wrong in [data[:size] for size in range(len(data))] + [data + b"\0"]:
                with self.subTest(name, wrong=wrong.hex(" ")):
                    self.assertRaises(StreamError, form.decode, wrong)

    def test_hostile_bytes_are_refused(self):
        nested = bytes.fromhex("00000009 00 00000001") * 1_000_000
        for name, form, wrong in (
                ("count", TEXTS, bytes.fromhex("ffffffff 00000000")),
                ("size", TEXT, bytes.fromhex("fffffffe 0041")),
                ("odd size", TEXT, bytes.fromhex("00000003 004100")),
                ("nesting", VALUE, nested),
                ("type", VALUE, bytes.fromhex("0000007b 00 00000000")),
                ("type name", VALUE, bytes.fromhex("00000400 00 00000003 4e6f00")),
                ("kind", REQUEST, bytes.fromhex("00000002 00000001 00000000 00000000")),
                ("kind of time", DATETIME, DATE.write(WHEN.date()) + TIME.write(None) + b"\4"),
                ("zone", DATETIME, DATE.write(WHEN.date()) + TIME.write(WHEN.time()) + b"\3"
                 + TEXT.write("../../etc/passwd")),
                ("day", DATE, INT64.write(2**62)),
                ("time", TIME, UINT32.write(90_000_000))):
            with self.subTest(name):
                self.assertRaises(StreamError, form.decode, wrong)

    def test_zone_that_is_an_offset(self):
        data = (DATE.write(WHEN.date()) + TIME.write(WHEN.time()) + b"\3"
                + TEXT.write("OffsetFromUtc") + TEXT.write("UTC+01:00") + INT32.write(3600)
                + TEXT.write("UTC+01:00") + TEXT.write("UTC+01:00") + INT32.write(0) + TEXT.write(""))
        self.assertEqual(DATETIME.decode(data), WHEN.replace(tzinfo=timezone(timedelta(hours=1))))

    def test_keys_are_written_from_the_last_to_the_first(self):
        # In the order of UTF-16 code units the last two change places.
        keys = ["Id", "id", "\ufb01", "\U0001f600"]
        data = MAP.write({key: 1 for key in keys})
        self.assertEqual(list(MAP.decode(data)), ["\ufb01", "\U0001f600", "id", "Id"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
