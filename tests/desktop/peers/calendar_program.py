"""calendar_program.py COMMAND CALENDAR...: another program that uses the calendars of an Evolution Data Server. "put" adds or
changes what the iCalendar text on the standard input describes, "receive" does so as with an invitation, "clear" removes
every event, "list" prints the events as "<start> <end> <title>"."""

import sys

import gi
gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
gi.require_version("ICalGLib", "3.0")
from gi.repository import ECal, EDataServer, GLib, ICalGLib  # noqa: E402

DO_NOT_WAIT = 0xFFFFFFFF
NO_FLAGS = ECal.OperationFlags.NONE


def connected(calendar):
    source = EDataServer.SourceRegistry.new_sync(None).ref_source(calendar)
    return ECal.Client.connect_sync(source, ECal.ClientSourceType.EVENTS, DO_NOT_WAIT, None)


def events(client):
    return client.get_object_list_sync("#t", None)[1]


def put(client):
    """Not by the call that takes an invitation: that one leaves out what the user has declined."""
    calendar = ICalGLib.Component.new_from_string(sys.stdin.read())
    kind = ICalGLib.ComponentKind.VEVENT_COMPONENT
    series, changes = [], []
    event = calendar.get_first_component(kind)
    while event:
        is_change = event.get_first_property(ICalGLib.PropertyKind.RECURRENCEID_PROPERTY)
        (changes if is_change else series).append(event)
        event = calendar.get_next_component(kind)
    try:
        client.create_objects_sync(series, NO_FLAGS, None)
    except GLib.Error:
        client.modify_objects_sync(series, ECal.ObjModType.ALL, NO_FLAGS, None)
    for event in changes:
        client.modify_object_sync(event, ECal.ObjModType.THIS, NO_FLAGS, None)


def receive(client):
    client.receive_objects_sync(ICalGLib.Component.new_from_string(sys.stdin.read()), NO_FLAGS, None)


def clear(client):
    for uid in {component.get_uid() for component in events(client)}:
        client.remove_object_sync(uid, None, ECal.ObjModType.ALL, NO_FLAGS, None)


def show(client):
    for event in events(client):
        print(event.get_dtstart().as_ical_string(), event.get_dtend().as_ical_string(), event.get_summary())


for calendar in sys.argv[2:]:
    {"put": put, "receive": receive, "clear": clear, "list": show}[sys.argv[1]](connected(calendar))
