"""Small plans for the tests, written by hand."""
from xml.sax.saxutils import escape

NAMESPACE = "http://schemas.microsoft.com/project"


def element(name, value):
    return "" if value is None else f"<{name}>{escape(str(value))}</{name}>"


def task(uid, name, start=None, end=None, level=1, hours=8, **further):
    """A task; `links` are (uid, type) pairs, other keywords elements of its own."""
    links = "".join(f"<PredecessorLink><PredecessorUID>{before}</PredecessorUID><Type>{kind}</Type></PredecessorLink>"
                    for before, kind in further.pop("links", ()))
    fields = "".join(f"<ExtendedAttribute><FieldID>{number}</FieldID>{element('Value', value)}</ExtendedAttribute>"
                     for number, value in further.pop("fields", ()))
    baselines = "".join(
        f"<Baseline><Number>{number}</Number><Start>{begin}</Start><Finish>{finish}</Finish></Baseline>"
        for number, begin, finish in further.pop("baselines", ()))
    return (f"<Task><UID>{uid}</UID>{element('Name', name)}<OutlineLevel>{level}</OutlineLevel>"
            + element("Duration", f"PT{hours}H0M0S") + element("Start", start) + element("Finish", end)
            + "".join(element(key, value) for key, value in further.items()) + fields + links + baselines + "</Task>")


def resource(uid, name, **further):
    fields = "".join(f"<ExtendedAttribute><FieldID>{number}</FieldID>{element('Value', value)}</ExtendedAttribute>"
                     for number, value in further.pop("fields", ()))
    return (f"<Resource><UID>{uid}</UID>{element('Name', name)}"
            + "".join(element(key, value) for key, value in further.items()) + fields + "</Resource>")


def plan(tasks, resources=(), assignments=(), fields=(), title="Plan", start="2026-05-04T08:00:00", version=14):
    assigned = "".join(f"<Assignment><UID>{number}</UID><TaskUID>{of}</TaskUID><ResourceUID>{who}</ResourceUID></Assignment>"
                       for number, (of, who) in enumerate(assignments, 1))
    definitions = "".join(f"<ExtendedAttribute><FieldID>{number}</FieldID>{element('FieldName', name)}</ExtendedAttribute>"
                          for number, name in fields)
    return (f'<?xml version="1.0" encoding="UTF-8"?><Project xmlns="{NAMESPACE}"><SaveVersion>{version}</SaveVersion>'
            f"{element('Title', title)}<StartDate>{start}</StartDate>"
            f"<ExtendedAttributes>{definitions}</ExtendedAttributes><Calendars><Calendar><UID>1</UID>"
            "<Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>"
            f"<Tasks>{''.join(tasks)}</Tasks><Resources>{''.join(resources)}</Resources>"
            f"<Assignments>{assigned}</Assignments></Project>")
