"""Ledgers to start the program with."""

import time
import uuid

REFERENCE_DATE = 978307200  # 2001-01-01T00:00:00Z, from which dates are counted


def now():
    return time.time() - REFERENCE_DATE


def identifier():
    return str(uuid.uuid4()).upper()


def one_client(**members):
    client = {"id": identifier(), "name": "Aster Studio", "hourlyRateCents": 15000,
              "colorHex": "B7A5FF", "rateIsKnown": True, "projectsEnabled": False}
    return {"clients": [client], "projects": [], "entries": [], **members}


def with_session(ledger, title, start, end):
    """The ledger with some work at a hundred and fifty dollars an hour on its first client."""
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"],
               "name": "Client sessions", "hourlyRateCents": 15000, "rateIsKnown": True,
               "isClientDefault": True}
    entry = {"id": identifier(), "projectID": project["id"], "title": title,
             "hourlyRateCents": 15000, "isBillable": True, "rateIsKnown": True,
             "spans": [{"start": start, "end": end}]}
    return {**ledger, "projects": [project], "entries": [entry]}


def running_session(started_seconds_ago, checkpoint_seconds_ago):
    """A ledger as a program leaves it that was killed while a session ran."""
    ledger = one_client()
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"],
               "name": "Client sessions", "hourlyRateCents": 15000, "rateIsKnown": True,
               "isClientDefault": True}
    ledger["projects"] = [project]
    ledger["active"] = {
        "id": identifier(), "projectID": project["id"], "title": "Drawing",
        "hourlyRateCents": 15000, "spans": [], "runningSince": now() - started_seconds_ago,
        "checkpointAt": now() - checkpoint_seconds_ago, "isBillable": True, "rateIsKnown": True}
    return ledger


def session_elsewhere(device, running_for):
    """A ledger that knows of a session on another device, which ran when it was last synced."""
    ledger = one_client()
    project = {"id": identifier(), "clientID": ledger["clients"][0]["id"], "name": "Website",
               "hourlyRateCents": 15000, "rateIsKnown": True, "isClientDefault": False}
    ledger["projects"] = [project]
    session = {
        "id": identifier(), "projectID": project["id"], "title": "Drawing",
        "hourlyRateCents": 15000, "spans": [], "runningSince": now() - running_for,
        "checkpointAt": now(), "isBillable": True, "rateIsKnown": True}
    ledger["replication"] = {
        "deviceID": "desk", "deviceName": "Desk", "accountID": "account", "enabled": True,
        "remoteSessions": {"Session:" + session["id"]: {
            "ownerDeviceID": device, "ownerName": device, "active": session}}}
    return ledger
