"""Pictures of small ledgers that each show one state: the Overview and a client's page, in both
themes and at the smallest size.
"""

import calendar
import time

from ledgers import REFERENCE_DATE, identifier, now
from window_shots import SMALLEST, THEMES, USUAL, WindowShots

HOUR = 3600


def month_before(months_back):
    """Year and month, so many months ago."""
    today = time.localtime()
    count = today.tm_year * 12 + today.tm_mon - 1 - months_back
    return count // 12, count % 12 + 1


def moment(year, month, day, hour=0):
    return time.mktime((year, month, day, hour, 0, 0, 0, 0, -1)) - REFERENCE_DATE


class Books:
    """A ledger that is written client by client."""

    def __init__(self):
        self.content = {"clients": [], "projects": [], "entries": []}

    def client(self, name, color, *projects):
        """Projects are names with hourly rates in cents, None for an unknown one; a client has one
        of its own name when it has no others."""
        client = {"id": identifier(), "name": name, "colorHex": color, "hourlyRateCents": 15000,
                  "rateIsKnown": True, "projectsEnabled": bool(projects)}
        self.content["clients"].append(client)
        for project, cents in projects or [("Client sessions", 15000)]:
            self.content["projects"].append(
                {"id": identifier(), "clientID": client["id"], "name": project,
                 "hourlyRateCents": cents or 0, "rateIsKnown": cents is not None,
                 "isClientDefault": not projects})
        return self

    def session(self, project, title, start, hours):
        bills = self.content["projects"][project % len(self.content["projects"])]
        self.content["entries"].append(
            {"id": identifier(), "projectID": bills["id"], "title": title,
             "hourlyRateCents": bills["hourlyRateCents"], "rateIsKnown": bills["rateIsKnown"],
             "isBillable": True, "spans": [{"start": start, "end": start + hours * HOUR}]})
        return self

    def running(self, title, seconds):
        self.content["active"] = {
            "id": identifier(), "projectID": self.content["projects"][0]["id"], "title": title,
            "hourlyRateCents": self.content["projects"][0]["hourlyRateCents"],
            "spans": [{"start": now() - seconds - 60, "end": now() - 60}],
            "checkpointAt": now() - 60, "isBillable": True, "rateIsKnown": True}
        return self


WORK = (("Design exploration", 2.25), ("Client workshop", 1.5), ("Research & direction", 3.75),
        ("Homepage layout", 2), ("Copy review", 0.75), ("Type & color", 4), ("Kick-off call", 1))


def work_on(books, year, month, days, least=1):
    """Working days of a month, each with a session or more."""
    number = 0
    for day in days:
        if least == 1 and calendar.weekday(year, month, day) >= 5:
            continue
        hour = 9
        for _ in range(least + day % 2):
            title, hours = WORK[number % len(WORK)]
            books.session(number, title, moment(year, month, day, hour), hours)
            hour += 4
            number += 1


def studio():
    return (Books().client("Aster Studio", "B7A5FF", ("Website", 15000), ("Brand direction", 17500))
            .client("Northstar", "F0BB85").client("Linden & Co", "19D8B4", ("Annual report", 14000)))


def normal():
    """Everything has a price, and the month goes on."""
    books = studio()
    today = time.localtime()
    work_on(books, *month_before(1), range(1, 29))
    work_on(books, *month_before(0), range(1, today.tm_mday))
    return books.running("Homepage layout", 3785).content, 0


def one_client():
    return Books().client("Aster Studio", "B7A5FF").content, 0


def unpriced():
    books = Books().client("Aster Studio", "B7A5FF", ("Annual report", None))
    for number in range(4):
        books.session(0, WORK[number][0], now() - (number + 1) * 2 * HOUR, 1)
    return books.content, 0


def long_day():
    """Somebody worked from midnight to midnight."""
    books = studio()
    year, month = month_before(1)
    start = moment(year, month, 10)
    books.session(0, "Launch", start, (moment(year, month, 11) - start) / HOUR)
    work_on(books, year, month, (3, 4, 5, 12))
    return books.content, 1


def busy_month():
    """The latest month that is over and has 31 days, all of them busy."""
    months_back = next(back for back in (1, 2, 3)
                       if calendar.monthrange(*month_before(back))[1] == 31)
    books = studio()
    work_on(books, *month_before(months_back), range(1, 32), least=2)
    return books.content, months_back


STATES = {"one-client": one_client, "normal": normal, "unpriced": unpriced, "long-day": long_day,
          "busy-month": busy_month}


def wait_between_seconds(app):
    """A second later the digits of a running session stand still: each second rolls in."""
    active = app.ledger().get("active", {})
    if "runningSince" in active:
        elapsed = now() - active["runningSince"] + sum(
            span["end"] - span["start"] for span in active["spans"])
        time.sleep((0.3 - elapsed) % 1)


class StateShots(WindowShots):
    """The window over a small ledger."""

    def show_month(self, months_back):
        self.app.press("Overview")
        self.app.find("Previous month")
        for _ in range(months_back):
            self.app.press("Previous month")
        time.sleep(1)  # the bars rise

    def take_window_alone(self):
        """Without what is around it; the README shows one of these."""
        wait_between_seconds(self.app)
        self.shots.take_alone(f"{self.name}-window", self.window)

    def every_page(self, months_back):
        if "active" in self.app.ledger():
            self.keys("ctrl+t")  # the session goes on
        for size, name in ((USUAL, ""), (SMALLEST, "smallest-")):
            self.resize(size)
            self.show_month(months_back)
            self.take(name + "overview")
            if size == USUAL:
                self.take_window_alone()
            else:
                self.app.find("View sessions for this month").get_component_iface().grab_focus()
                self.keys("Page_Down")
                self.take(name + "overview-middle")
                self.keys("End")
                self.take(name + "overview-end")
            self.app.press("Aster Studio")
            self.app.find("Edit client")
            self.take(name + "client")
        self.resize(USUAL)


def take_states(shots):
    for theme in THEMES:
        for name, make in STATES.items():
            content, months_back = make()
            window = StateShots(shots, f"state-{theme.lower()}-{name}", content,
                                defaults=f"appearanceMode={theme}\n")
            window.every_page(months_back)
