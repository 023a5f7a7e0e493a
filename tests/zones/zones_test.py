"""The days and times of every time zone, from 1970 to 2199, in a second reading of the same zone
files: Python's.

Usage: zones_test.py PROGRAM-THAT-TELLS-TABLES
"""

import array
import bisect
import itertools
import operator
import os
import struct
import subprocess
import sys
import time
import zoneinfo
from datetime import date, datetime, timedelta, timezone

PROGRAM = sys.argv[1]
FOLDER = os.environ.get("TZDIR") or "/usr/share/zoneinfo"
EPOCH = date(1970, 1, 1).toordinal()
DAYS = date(2200, 1, 1).toordinal() - EPOCH
DAY = 86400
NEVER = -2**63
START = datetime(1970, 1, 1, tzinfo=timezone.utc)
LOCAL_START = datetime(1970, 1, 1)
MIDNIGHTS = array.array("q", range(0, DAYS * DAY, DAY))
NOONS = [LOCAL_START + timedelta(days=day, hours=12) for day in range(DAYS)]
SECOND = timedelta(seconds=1)
# Around each change of the clocks.
AROUND = [-DAY, -7200, -3600, -1800, -1, 0, 1, 1800, 3599, 3600, 7200, DAY - 1, DAY]


class Zone:
    """One zone as Python reads it, in seconds since 1970."""

    def __init__(self, name):
        self.zone = zoneinfo.ZoneInfo(name)
        # At noon of each day.
        offset = self.zone.utcoffset
        self.offsets = array.array("q", [each.days * DAY + each.seconds
                                         for each in map(offset, NOONS)])
        self.changes = sorted(set(self.found_changes()) | set(self.changes_in_file(name)))

    def local(self, moment):
        return moment + self.at(moment).utcoffset() // SECOND

    def at(self, moment):
        return (START + timedelta(seconds=moment)).astimezone(self.zone)

    def found_changes(self):
        """The first of those moments at which the clocks have been set since the noon before."""
        for day in range(1, DAYS):
            before, after = self.offsets[day - 1:day + 1]
            if before != after:
                noon = day * DAY - DAY // 2 - before
                yield noon + bisect.bisect_left(
                    range(noon, noon + 3 * DAY), True,
                    key=lambda moment: self.local(moment) - moment != before)

    def changes_in_file(self, name):
        """Those that the file lists one by one, of which two may lie between two noons."""
        with open(os.path.join(FOLDER, name), "rb") as file:
            content = file.read()
        changes, size = [], 4
        while True:
            counts = struct.unpack(">6l", content[20:44])
            content = content[44:]
            changes = struct.unpack(f">{counts[3]}{'l' if size == 4 else 'q'}",
                                    content[:counts[3] * size])
            content = content[counts[3] * (size + 1) + counts[4] * 6 + counts[5]
                              + counts[2] * (size + 4) + counts[1] + counts[0]:]
            if size == 8 or not content:
                return [change for change in changes if 0 <= change < DAYS * DAY]
            size = 8

    def moment(self, local):
        """The first moment at which the clocks show something; none when they skip it."""
        shown = LOCAL_START + timedelta(seconds=local)
        found = [local - shown.replace(tzinfo=self.zone, fold=fold).utcoffset() // SECOND
                 for fold in (0, 1)]
        return min((each for each in found if self.local(each) == local), default=None)

    def start_of_day(self, day):
        local = day * DAY
        start = self.moment(local)
        if start is None:
            # The clocks skip midnight: the first moment at which they show something later.
            earliest = local - 2 * DAY
            start = earliest + bisect.bisect_left(
                range(earliest, local + 2 * DAY), True,
                key=lambda moment: self.local(moment) >= local)
        return start

    def days(self):
        """The first moment of each day, what the clocks show then, and the moment of its noon."""
        starts, shown = array.array("q", map(operator.sub, MIDNIGHTS, self.offsets)), MIDNIGHTS[:]
        noons = array.array("q", (start + DAY // 2 for start in starts))
        unsteady = {change // DAY + near for change in self.changes for near in range(-2, 4)}
        for day in unsteady.intersection(range(DAYS)) | {0}:
            starts[day] = self.start_of_day(day)
            shown[day] = self.local(starts[day])
            noon = self.moment(day * DAY + DAY // 2)
            noons[day] = NEVER if noon is None else noon
        return starts, shown, noons


class Comparison:
    def __init__(self):
        self.program = subprocess.Popen([PROGRAM], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.changes = self.moments = self.listed = 0

    def ask(self, name, moments):
        request = f"{name} {len(moments)}\n".encode() + array.array("q", moments).tobytes()
        self.program.stdin.write(request)
        self.program.stdin.flush()
        return self.program.stdout.read(int(self.program.stdout.readline()))

    def compare(self, name):
        zone = Zone(name)
        moments = sorted({change + distance for change in zone.changes for distance in AROUND})
        answer = self.ask(name, moments)
        days, rest = array.array("q", answer[:3 * DAYS * 8]), answer[3 * DAYS * 8:]
        starts, shown, noons = zone.days()
        same(name, "the first moment of day", starts, days[0::3])
        same(name, "what clocks show at the first moment of day", shown, days[1::3])
        same(name, "noon of day", noons, days[2::3])
        count, = struct.unpack("q", rest[:8])
        starts.append(zone.start_of_day(DAYS))
        # A day that the clocks skip begins with the one after it.
        follow = array.array("q", (start for start, _ in itertools.groupby(starts)))
        same(name, "day of the list", follow, array.array("q", rest[8:8 + count * 8]))
        self.compare_moments(zone, name, moments, follow, rest[8 + count * 8:])
        self.changes += len(zone.changes)
        self.moments += len(moments)
        self.listed += count

    def compare_moments(self, zone, name, moments, starts, answer):
        numbers = array.array("q", answer[:len(moments) * 24])
        texts = answer[len(moments) * 24:].decode().split("\n")[:-1]
        expected = [f"{zone.at(moment):%Y-%m-%d %H:%M}" for moment in moments]
        same(name, "the text of a moment", expected, texts)
        for index, moment in enumerate(moments):
            place = bisect.bisect_right(starts, moment)
            if 0 < place < len(starts):
                shown = zone.moment(moment)
                expected = [starts[place - 1], starts[place], NEVER if shown is None else shown]
                same(name, f"start, end and time at {moment}", expected,
                     list(numbers[3 * index:3 * index + 3]))


def same(name, what, expected, found):
    if expected == found:
        return
    index = next((index for index, (left, right) in enumerate(zip(expected, found))
                  if left != right), min(len(expected), len(found)))
    sys.exit(f"{name}: {what} {index} is {found[index:index + 1]}, "
             f"where Python has {expected[index:index + 1]}.")


def main():
    began = time.monotonic()
    zoneinfo.reset_tzpath([FOLDER])
    names = sorted(zoneinfo.available_timezones() - {"localtime", "posixrules"})
    by_content = {}
    for name in names:
        with open(os.path.join(FOLDER, name), "rb") as file:
            by_content.setdefault(file.read(), []).append(name)
    comparison = Comparison()
    for same_zones in by_content.values():
        comparison.compare(same_zones[0])
        for name in same_zones[1:]:
            # The same file under another name: only that the name is known is left to see.
            comparison.ask(name, [])
    comparison.program.stdin.close()
    if comparison.program.wait() != 0:
        sys.exit("The program failed.")
    if len(by_content) < 300 or comparison.changes < 10000:
        sys.exit(f"Only {len(by_content)} zones with {comparison.changes} changes were found.")
    print(f"{len(names)} names of {len(by_content)} zones, 1970 to 2199: "
          f"{DAYS * len(by_content)} days, {comparison.listed} steps from day to day, "
          f"{comparison.changes} changes of clocks with {comparison.moments} moments around them, "
          f"all alike. {time.monotonic() - began:.1f} s.")


if __name__ == "__main__":
    main()
