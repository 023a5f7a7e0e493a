"""Ledgers full of awkward texts and numbers, and the rows that a reader of their export must see.

The rows are worked out here from the rules alone, so that they judge the program's.
"""

import datetime
import fractions
import json
import math
import random
import subprocess
import uuid

HEADER = [
    "Client", "Project", "Description", "Start", "End", "Hours", "Hourly rate", "Earned",
    "Billable", "Rate known", "Duration seconds", "Recorded duration seconds", "Source ID",
]

BLANKS = "\t\n\v\f\r \x85\xa0\u1680\u2028\u2029\u202f\u205f\u3000" + "".join(
    map(chr, range(0x2000, 0x200B)))

# What somebody might type, or a hostile import hold.
TEXTS = [
    "Design review", "", " ", "=1+1", "+1+1", "-1+1", "@SUM(1,1)", " =1+1", "\t=1+1", "\n=1+1",
    "\r=1+1", "\r\n=1+1", "\r\nplain", "\u00a0=1+1", "\u3000-1", "\u200b=1+1", "=\u0338 1", "\t",
    "\n", "\r\n", "=cmd|' /C calc'!A0", "=HYPERLINK(\"http://example.com\",\"more\")", "'=1+1",
    "\"=1+1\"", "\"", "\"\"", "say \"hi\"", "\",\"", "one, two", "a;b", "two\nlines",
    "two\r\nlines", "ends in a line end\n", "a\tb", "1e5", "007", "2026-03-14", "1/2", "TRUE",
    "{=1+1}", "=", "Über café", "\U0001f469\u200d\U0001f52c at work", "שלום", "\ufeffmarked",
    "\\", "x" * 5000,
]


def identifier(chance):
    return str(uuid.UUID(int=chance.getrandbits(128))).upper()


def text(chance):
    if chance.random() < 0.7:
        return chance.choice(TEXTS)
    return chance.choice(TEXTS) + chance.choice(TEXTS)


def spans(chance):
    start = chance.choice([
        chance.uniform(-9e8, 6e9), float(chance.randrange(10 ** 9)),
        chance.randrange(10 ** 9) + chance.randrange(1000) / 1000.0,
        chance.randrange(10 ** 9) + 0.9996, chance.randrange(10 ** 9) + 0.0625,
    ])
    result = []
    for _ in range(chance.randrange(1, 4)):
        end = start + chance.choice([0.0, 0.000001, 28.125, 1.0, 3600.0, 1234.5, 300000.0])
        result.append({"start": start, "end": end})
        start = end + chance.random() * 100
    return result


def ledger(seed, sessions):
    """A ledger as JSON text is read, with some clients and projects missing."""
    chance = random.Random(seed)
    clients = [{
        "id": identifier(chance), "name": text(chance), "hourlyRateCents": 0, "colorHex": "A2A5AA",
        "rateIsKnown": True, "projectsEnabled": True,
    } for _ in range(8)]
    projects = [{
        "id": identifier(chance), "clientID": chance.choice(clients)["id"], "name": text(chance),
        "hourlyRateCents": 0, "rateIsKnown": True, "isClientDefault": False,
    } for _ in range(20)]
    entries = []
    for _ in range(sessions):
        entry = {
            "id": identifier(chance), "projectID": chance.choice(projects)["id"],
            "title": text(chance), "spans": spans(chance),
            "hourlyRateCents": chance.choice([0, 1, 100, 300, 9500, chance.randrange(10 ** 8)]),
            "isBillable": chance.random() < 0.8, "rateIsKnown": chance.random() < 0.8,
        }
        if chance.random() < 0.3:
            entry["recordedDuration"] = chance.choice([5400.0, 0.1, 1e-05, chance.random() * 1e5])
        if chance.random() < 0.3:
            entry["sourceID"] = text(chance)
        entries.append(entry)
    return {"clients": clients[1:], "projects": projects[2:], "entries": entries}


def guarded(value):
    stripped = value.strip(BLANKS)
    unsafe = stripped[:1] in tuple("=+-@") or (
        value[:1] in tuple("\t\r\n") and value[:2] != "\r\n")
    return "'" + value if unsafe else value


def timestamp(seconds):
    milliseconds = math.floor(fractions.Fraction(seconds) * 1000 + fractions.Fraction(1, 2))
    moment = datetime.datetime(2001, 1, 1) + datetime.timedelta(milliseconds=milliseconds)
    return moment.strftime("%Y-%m-%dT%H:%M:%S.") + f"{moment.microsecond // 1000:03}Z"


def row(entry, clients, projects):
    project = projects.get(entry["projectID"])
    client = clients.get(project["clientID"]) if project else None
    recorded = entry.get("recordedDuration")
    duration = recorded
    if recorded is None:
        duration = 0.0
        for span in entry["spans"]:
            duration += span["end"] - span["start"]
    known, billable = entry["rateIsKnown"], entry["isBillable"]
    earned = duration / 3600.0 * entry["hourlyRateCents"] if known and billable else 0.0
    return [guarded(value) for value in [
        client["name"] if client else "", project["name"] if project else "", entry["title"],
        timestamp(entry["spans"][0]["start"]), timestamp(entry["spans"][-1]["end"]),
        "%.6f" % (duration / 3600.0),
        "%.2f" % (entry["hourlyRateCents"] / 100.0) if known else "",
        "" if billable and not known else "%.2f" % (earned / 100.0),
        "true" if billable else "false", "true" if known else "false", repr(duration),
        "" if recorded is None else repr(recorded), entry.get("sourceID", ""),
    ]]


def rows(content):
    """All rows of the export, with the header."""
    clients = {client["id"]: client for client in content["clients"]}
    projects = {project["id"]: project for project in content["projects"]}
    ordered = sorted(content["entries"], key=lambda entry: entry["spans"][0]["start"])
    return [HEADER] + [row(entry, clients, projects) for entry in ordered]


def export(program, content):
    """The bytes that the program makes of a ledger."""
    return subprocess.run(
        [program], input=json.dumps(content).encode(), stdout=subprocess.PIPE, check=True).stdout
