# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""What Kinlet's records, requests and errors are as bytes on the bus.

Every form is a pair of functions: read() takes a value from a stream of bytes, write() turns a value
into bytes. Small forms are put together into larger ones, from numbers at the top of this file to
requests at its end. All numbers are big-endian. docs/wire-format.md has an example of each form.
"""

import io
import struct
from collections.abc import Callable
from dataclasses import dataclass, field
from datetime import date, datetime, time, timedelta, timezone
from enum import IntEnum
from typing import Any, NamedTuple
from zoneinfo import ZoneInfo


class StreamError(ValueError):
    """The bytes do not have the form that they should have."""


class Form(NamedTuple):
    read: Callable[[io.BytesIO], Any]
    write: Callable[[Any], bytes]

    def decode(self, data):
        """The value that all of these bytes stand for; StreamError if they are anything else."""
        stream = io.BytesIO(data)
        try:
            value = self.read(stream)
        except (ArithmeticError, LookupError, RecursionError, ValueError) as error:
            raise StreamError(f"not decodable: {error}") from error
        if stream.read(1):
            raise StreamError("there are bytes after the end")
        return value


def take(stream, size):
    data = stream.read(size)
    if len(data) < size:
        raise StreamError("the bytes end too early")
    return data


# Numbers

def number(code):
    packer = struct.Struct(">" + code)
    return Form(lambda stream: packer.unpack(take(stream, packer.size))[0], packer.pack)


INT8, UINT8, BOOL, UINT16 = number("b"), number("B"), number("?"), number("H")
INT32, UINT32, INT64, UINT64 = number("i"), number("I"), number("q"), number("Q")
DOUBLE = number("d")


# Texts and bytes: their size, then their bytes. A null one, None here, has this size instead.

NULL_SIZE = 0xFFFFFFFF


def sized(encode, decode):
    def read(stream):
        size = UINT32.read(stream)
        return None if size == NULL_SIZE else decode(take(stream, size))

    def write(value):
        data = None if value is None else encode(value)
        return UINT32.write(NULL_SIZE) if data is None else UINT32.write(len(data)) + data

    return Form(read, write)


BYTES = sized(bytes, bytes)
TEXT = sized(lambda text: text.encode("utf-16-be", "surrogatepass"),
             lambda data: data.decode("utf-16-be", "surrogatepass"))


# Lists, maps and structures

def list_of(form, make=list):
    def read(stream):
        return make(form.read(stream) for _ in range(UINT32.read(stream)))

    def write(values):
        return UINT32.write(len(values)) + b"".join(map(form.write, values))

    return Form(read, write)


def map_of(form):
    """Texts and their values. They may come in any order; Kinlet writes the last key first."""
    def read(stream):
        return {TEXT.read(stream): form.read(stream) for _ in range(UINT32.read(stream))}

    def write(values):
        keys = sorted(values, key=lambda key: key.encode("utf-16-be", "surrogatepass"), reverse=True)
        return UINT32.write(len(keys)) + b"".join(
            TEXT.write(key) + form.write(values[key]) for key in keys)

    return Form(read, write)


def structure(make, **members):
    """The members one after the other, in this order."""
    def read(stream):
        return make(**{name: form.read(stream) for name, form in members.items()})

    def write(value):
        return b"".join(form.write(getattr(value, name)) for name, form in members.items())

    return Form(read, write)


class TextList(list):
    """A list of texts. Any other list is a list of values, each with its own type."""


TEXTS = list_of(TEXT, TextList)


# Dates and times. None is a null one.

JULIAN_DAY_BEFORE_FIRST_ORDINAL = 1721425
NULL_DAY = -2**63
NULL_MILLISECONDS = 0xFFFFFFFF
LOCAL_TIME, UTC, OFFSET_FROM_UTC, TIME_ZONE = range(4)


def read_date(stream):
    day = INT64.read(stream)
    return None if day == NULL_DAY else date.fromordinal(day - JULIAN_DAY_BEFORE_FIRST_ORDINAL)


def write_date(value):
    return INT64.write(NULL_DAY if value is None
                       else value.toordinal() + JULIAN_DAY_BEFORE_FIRST_ORDINAL)


def read_time(stream):
    milliseconds = UINT32.read(stream)
    if milliseconds == NULL_MILLISECONDS:
        return None
    seconds, milliseconds = divmod(milliseconds, 1000)
    return time(seconds // 3600, seconds // 60 % 60, seconds % 60, milliseconds * 1000)


def write_time(value):
    return UINT32.write(NULL_MILLISECONDS if value is None else
                        ((value.hour * 60 + value.minute) * 60 + value.second) * 1000
                        + value.microsecond // 1000)


def read_zone(stream):
    name = TEXT.read(stream)
    if name != "OffsetFromUtc":
        return ZoneInfo(name or "")
    _id, seconds, _name, _abbreviation, _country, _comment = (
        form.read(stream) for form in (TEXT, INT32, TEXT, TEXT, INT32, TEXT))
    return timezone(timedelta(seconds=seconds))


def read_datetime(stream):
    day, clock, spec = read_date(stream), read_time(stream), UINT8.read(stream)
    if spec == LOCAL_TIME:
        zone = None
    elif spec == UTC:
        zone = timezone.utc
    elif spec == OFFSET_FROM_UTC:
        zone = timezone(timedelta(seconds=INT32.read(stream)))
    elif spec == TIME_ZONE:
        zone = read_zone(stream)
    else:
        raise StreamError(f"unknown kind of time {spec}")
    return None if day is None or clock is None else datetime.combine(day, clock, zone)


def write_datetime(value):
    if value is None:
        return write_date(None) + write_time(None) + UINT8.write(LOCAL_TIME)
    if value.tzinfo is None:
        zone = UINT8.write(LOCAL_TIME)
    elif value.tzinfo is timezone.utc:
        zone = UINT8.write(UTC)
    elif isinstance(value.tzinfo, ZoneInfo):
        zone = UINT8.write(TIME_ZONE) + TEXT.write(value.tzinfo.key)
    else:
        zone = UINT8.write(OFFSET_FROM_UTC) + INT32.write(int(value.utcoffset().total_seconds()))
    return write_date(value.date()) + write_time(value.time()) + zone


DATE = Form(read_date, write_date)
TIME = Form(read_time, write_time)
DATETIME = Form(read_datetime, write_datetime)


# Values with their types: what the properties of a record hold.

class Url(str):
    """A text that is a URL, in its encoded form."""


@dataclass
class Media:
    kind: int = 0
    first_text: str | None = None
    second_text: str | None = None
    third_text: str | None = None


class ActionIconTexts(Media):
    """The same members as Media, and another meaning."""


@dataclass
class Attachment:
    first_text: str | None = None
    second_text: str | None = None
    third_text: str | None = None
    fourth_text: str | None = None
    media: list[Media] = field(default_factory=list)


@dataclass
class ImportProgress:
    running: bool = False
    contacts_added: int = 0
    contacts_removed: int = 0
    contacts_merged: int = 0


FOUR = {"kind": INT32, "first_text": TEXT, "second_text": TEXT, "third_text": TEXT}
MEDIA = structure(Media, **FOUR)
CUSTOM_TYPES = {
    "Media": (Media, MEDIA),
    "SocialActionIconTexts": (ActionIconTexts, structure(ActionIconTexts, **FOUR)),
    "SocialActivityAttachment": (Attachment, structure(
        Attachment, first_text=TEXT, second_text=TEXT, third_text=TEXT, fourth_text=TEXT,
        media=list_of(MEDIA))),
    "SocialImportProgress": (ImportProgress, structure(
        ImportProgress, running=BOOL, contacts_added=INT32, contacts_removed=INT32,
        contacts_merged=INT32)),
}
CUSTOM_TYPE = 1024
INVALID = 0


def read_value(stream):
    type_number, _is_null = UINT32.read(stream), INT8.read(stream)
    if type_number == INVALID:
        return None
    if type_number == CUSTOM_TYPE:
        name = (BYTES.read(stream) or b"").rstrip(b"\0").decode()
        return CUSTOM_TYPES[name][1].read(stream)
    return TYPES[type_number].read(stream)


def type_of(value):
    for python_type, type_number in PYTHON_TYPES:
        if isinstance(value, python_type):
            return type_number
    raise TypeError(f"{value!r} cannot be written")


def write_value(value):
    if value is None:
        return UINT32.write(INVALID) + INT8.write(1)
    for name, (python_type, form) in CUSTOM_TYPES.items():
        if type(value) is python_type:
            return (UINT32.write(CUSTOM_TYPE) + INT8.write(0)
                    + BYTES.write(name.encode() + b"\0") + form.write(value))
    type_number = type_of(value)
    if type_number == 2 and not -2**31 <= value < 2**31:
        type_number = 4
    return UINT32.write(type_number) + INT8.write(0) + TYPES[type_number].write(value)


VALUE = Form(read_value, write_value)
MAP = map_of(VALUE)
TYPES = {
    1: BOOL, 2: INT32, 3: UINT32, 4: INT64, 5: UINT64, 6: DOUBLE, 38: DOUBLE,
    7: Form(lambda stream: chr(UINT16.read(stream)), lambda text: UINT16.write(ord(text))),
    8: MAP, 9: list_of(VALUE), 10: TEXT, 11: TEXTS, 12: BYTES,
    14: DATE, 15: TIME, 16: DATETIME,
    17: Form(lambda stream: Url((BYTES.read(stream) or b"").decode()),
             lambda url: BYTES.write(url.encode())),
    28: MAP,
}
# What a Python value becomes: the first that fits, so subclasses stand before their bases.
PYTHON_TYPES = ((bool, 1), (int, 2), (float, 6), (Url, 17), (str, 10), (bytes, 12),
                (TextList, 11), (list, 9), (dict, 8), (datetime, 16), (date, 14), (time, 15))


# Records

@dataclass
class Record:
    class_name: str | None = None
    properties: dict[str, Any] = field(default_factory=dict)


RECORD = structure(Record, class_name=TEXT, properties=MAP)


# Errors

class ErrorType(IntEnum):
    UNKNOWN_ERROR = 0
    UNSUPPORTED_REQUEST = 1
    POST_FAILED = 2
    AUTHENTICATION_FAILED = 3
    NETWORK_FAILED = 4
    INVALID_REQUEST = 5
    LIKE_FAILED = 8


@dataclass
class Error:
    type: int
    description: str | None = None


ERROR = structure(Error, description=TEXT, type=INT32)
ERRORS = list_of(ERROR)


# Requests

class Kind(IntEnum):
    SERVICES = 1
    ACCOUNTS = 3
    PERSONS = 5
    ACTIVITIES = 7
    POST = 9
    LIKE = 10
    LIKERS = 11


class Status(IntEnum):
    INACTIVE = 0
    STARTED = 1
    PROGRESSING = 2
    STOPPED = 3
    FINISHED = 4


class Syntax(IntEnum):
    """How the text of a pattern is meant."""
    REG_EXP = 0
    WILDCARD = 1
    FIXED_STRING = 2
    REG_EXP_2 = 3
    WILDCARD_UNIX = 4
    W3C_XML_SCHEMA_11 = 5


@dataclass
class Pattern:
    text: str | None
    case_sensitive: bool = True
    syntax: int = Syntax.REG_EXP
    minimal: bool = False


PATTERN = structure(Pattern, text=TEXT, case_sensitive=BOOL, syntax=UINT8, minimal=BOOL)

# What each kind of request has after the members that all have.
FIELDS = {
    Kind.SERVICES: {},
    Kind.ACCOUNTS: {},
    Kind.PERSONS: {"property_filter": map_of(PATTERN)},
    Kind.ACTIVITIES: {
        "persons_filter": TEXTS, "limit": INT32, "after": DATETIME, "before": DATETIME,
        "activity_ids_filter": TEXTS, "parent_activity_id": TEXT, "activity_type": UINT8,
        "timeline": UINT8, "force_refresh": BOOL},
    Kind.POST: {"activity_type": UINT8, "text": TEXT, "post_id": TEXT},
    Kind.LIKE: {"activity_id": TEXT, "like": BOOL},
    Kind.LIKERS: {"property_filter": map_of(PATTERN), "activity_id": TEXT},
}


@dataclass
class Request:
    kind: Kind
    status: int = Status.INACTIVE
    results: list[Record] = field(default_factory=list)
    accounts: list[str] = field(default_factory=TextList)
    fields: dict[str, Any] = field(default_factory=dict)


MEMBERS = {"status": INT32, "results": list_of(RECORD), "accounts": TEXTS}


def read_request(stream):
    kind = Kind(INT32.read(stream))
    members = {name: form.read(stream) for name, form in MEMBERS.items()}
    fields = {name: form.read(stream) for name, form in FIELDS[kind].items()}
    return Request(kind, **members, fields=fields)


def write_request(request):
    members = (form.write(getattr(request, name)) for name, form in MEMBERS.items())
    fields = (form.write(request.fields[name]) for name, form in FIELDS[request.kind].items())
    return INT32.write(request.kind) + b"".join(members) + b"".join(fields)


REQUEST = Form(read_request, write_request)
