"""Pictures of the workspace window: every page and form in every state, in both themes.

Each theme is one start of the program, which is then driven as a person drives it. At the first
scale there are besides the smallest size of the window, larger text, and other languages.
"""

import os
import time

from desktop import wait_until, xdotool
from ledgers import identifier, now
from settings_portal import SettingsPortal

WHOLE = (0, 0, 1280, 800)
USUAL = (1200, 740)
SMALLEST = (760, 520)
THEMES = ("Dark", "Light")
CLIENTS = (("Aster Studio", "B7A5FF"), ("Northstar", "F0BB85"), ("مكتبة النيل", "48A7FF"),
           ("🌲 Waldkindergarten Unterschleißheim und Oberschleißheim", "19D8B4"))
PROJECTS = (("Website", 0, 15000, True), ("Brand direction", 0, 17500, True),
            ("Annual report", 0, 0, False), ("Northstar", 1, 12500, True),
            ("فهرس المكتبة", 2, 9000, True),
            ("Donaudampfschifffahrtsgesellschaftskapitänsmütze", 3, 1250, True))
KINDS = (("Design review", 0, 2.5, True), ("", 1, 0.75, True),
         ("Figures of all four quarters and the foreword of the board", 2, 11.2, True),
         ("Call", 0, 0.1, False), ("مراجعة التصميم", 4, 1, True), ("🎨 Colours", 0, 123.4, True),
         ("Kick-off", 3, 3, True), ("Übergabe", 5, 0.4, True))


def ledger(**members):
    """Clients, projects and sessions with all kinds of names, lengths and values."""
    clients = [{"id": identifier(), "name": name, "hourlyRateCents": 15000, "colorHex": color,
                "rateIsKnown": True, "projectsEnabled": name != "Northstar"}
               for name, color in CLIENTS]
    projects = [{"id": identifier(), "clientID": clients[client]["id"], "name": name,
                 "hourlyRateCents": rate, "rateIsKnown": known,
                 "isClientDefault": name == "Northstar"}
                for name, client, rate, known in PROJECTS]
    entries = []
    for number, (title, project, hours, billable) in enumerate(KINDS * 5):
        start = now() - 90000 * number - 3600 * hours - 1800
        entries.append(
            {"id": identifier(), "projectID": projects[project]["id"], "title": title,
             "hourlyRateCents": projects[project]["hourlyRateCents"], "isBillable": billable,
             "rateIsKnown": projects[project]["rateIsKnown"],
             "spans": [{"start": start, "end": start + 3600 * hours}]})
    return {"clients": clients, "projects": projects, "entries": entries, **members}


def interrupted(content):
    """The same with a session that ran when the program ended without a word."""
    began = now() - 3785
    content["active"] = {
        "id": identifier(), "projectID": content["projects"][0]["id"], "title": "Layout",
        "hourlyRateCents": 15000, "spans": [], "runningSince": began, "checkpointAt": now() - 60,
        "isBillable": True, "rateIsKnown": True}
    return content


class WindowShots:
    """The window of one start, and pictures of it under names that begin alike."""

    def __init__(self, shots, name, content, **launch):
        self.shots = shots
        self.desktop = shots.desktop
        self.name = name
        shots.launch(content, **launch)
        self.app = shots.app
        self.show_window()

    def show_window(self):
        self.app.press("Open Kestry")
        self.app.find("Overview")
        self.window = wait_until(lambda: xdotool("getactivewindow"), "an active window")
        self.resize(USUAL)

    def resize(self, size):
        width, height = (str(int(each * self.shots.scale)) for each in size)
        xdotool("windowsize", "--sync", self.window, width, height)

    def take(self, name):
        self.shots.take(f"{self.name}-{name}", WHOLE)

    def keys(self, *keys):
        self.desktop.type(*keys)
        time.sleep(0.15)

    def write(self, text):
        xdotool("type", "--delay", "10", text)

    def every_state(self):
        self.banner_and_overview()
        self.menus()
        self.client_form()
        self.project_form()
        self.sessions()
        self.entry_form()
        self.active_form()
        self.client_pages()
        self.settings()
        self.smallest()
        self.alert()

    def banner_and_overview(self):
        self.take("overview-recovered")
        self.app.press("Dismiss")
        self.take("overview")
        self.focus_on_first_day()
        self.take("overview-day")
        self.keys("shift+Tab")
        self.keys("End")
        self.take("overview-end")
        self.keys("Home")
        self.app.press("Previous month")
        time.sleep(1)  # the bars rise
        self.take("overview-month-before")
        for _ in range(14):
            self.app.press("Previous month")
        time.sleep(1)
        self.take("overview-far-back")

    def focus_on_first_day(self):
        """By keyboard, so that the day has its ring and its text."""
        self.app.find("View sessions for this month").get_component_iface().grab_focus()
        self.keys("Tab", "Home")
        wait_until(self.app.shows_tip, "the text of the day")

    def menus(self):
        self.keys("F10")
        self.app.find_menu()
        self.keys("Down")
        self.take("menu")
        self.keys("Escape")

    def client_form(self):
        self.keys("ctrl+n")
        self.app.find("Client name")
        self.take("client-new")
        self.keys("ctrl+Return")
        self.take("client-refused")
        self.write("Birch")
        self.keys("Escape")
        self.app.find("Discard changes?")
        self.take("client-discard")
        self.keys("shift+Tab", "Return")
        self.close_form()

    def project_form(self):
        self.keys("F10")
        self.app.choose("New project")
        self.app.find("Project name")
        self.take("project-new")
        self.close_form()

    def close_form(self):
        if self.app.shows("Save"):
            self.keys("Escape")
            time.sleep(0.3)

    def sessions(self):
        self.app.press("Sessions")
        self.app.find("Search sessions")
        self.keys("ctrl+t")
        self.take("sessions")
        self.keys("ctrl+f", "Down", "Down", "Down")
        self.take("sessions-row")
        self.keys("Menu")
        self.app.find_menu()
        self.keys("Down")
        self.take("sessions-row-menu")
        self.keys("Escape", "Delete")
        self.take("sessions-delete")
        self.keys("Escape", "ctrl+f")
        self.write("design")
        self.take("sessions-found")
        self.keys("ctrl+a")
        self.write("xyz")
        self.take("sessions-none")
        self.app.press("Export")
        self.take("sessions-export")
        self.keys("Escape", "ctrl+f", "Escape")

    def entry_form(self):
        self.app.press("Add time")
        self.app.find("Started")
        self.take("entry-new")
        self.app.press("Choose the day from a calendar")
        self.take("entry-calendar")
        self.app.press("Close calendar")
        self.keys("ctrl+Return")
        self.take("entry-refused")
        self.close_form()
        self.app.press_on(self.app.find_starting("Design review, Aster Studio"))
        self.app.find("Started")
        self.take("entry-edit")
        self.close_form()

    def active_form(self):
        self.app.press_on(self.app.find_starting("Layout, Aster Studio"))
        self.app.find_starting("Elapsed: ")
        self.take("active-edit")
        self.close_form()

    def client_pages(self):
        self.app.press("Aster Studio")
        self.app.find("Edit client")
        self.take("client")
        self.keys("Page_Down")
        self.take("client-end")
        self.app.press("Northstar")
        self.app.find("Search sessions")
        self.take("client-table")
        self.app.press("Edit client")
        self.app.find("Client name")
        self.take("client-edit")
        self.close_form()

    def settings(self):
        self.app.press("Settings")
        self.app.find("Appearance")
        self.take("settings")
        self.app.press("Custom accent color")
        self.app.find("Accent hex color")
        self.take("settings-accent")
        self.app.press("Close color editor")
        self.keys("Page_Down")
        self.take("settings-updates")
        self.keys("Page_Down")
        self.app.press("How tracking works")
        time.sleep(0.3)
        self.take("settings-end")
        self.keys("F1")
        self.app.find("Keyboard shortcuts")
        self.take("settings-keys")
        self.keys("Escape")

    def smallest(self):
        self.resize(SMALLEST)
        self.take("smallest-settings")
        self.app.press("Aster Studio")
        self.app.find("Edit client")
        self.take("smallest-client")
        self.app.press("Northstar")
        self.app.find("Search sessions")
        self.take("smallest-client-table")
        self.app.press("Sessions")
        self.app.find("Sort by Date")
        self.take("smallest-sessions")
        self.app.press("Add time")
        self.app.find("Started")
        self.take("smallest-entry-new")
        self.app.press("Choose the day from a calendar")
        self.take("smallest-entry-calendar")
        self.app.press("Close calendar")
        self.close_form()
        self.keys("ctrl+n")
        self.app.find("Client name")
        self.take("smallest-client-new")
        self.close_form()
        self.app.press("Overview")
        time.sleep(1)
        self.take("smallest-overview")
        self.app.find("View sessions for this month").get_component_iface().grab_focus()
        self.keys("Page_Down")
        self.take("smallest-overview-middle")
        self.keys("End")
        self.take("smallest-overview-end")
        self.resize(USUAL)

    def alert(self):
        with open(os.path.join(self.app.directory, "ledger.json"), "w", encoding="utf-8") as file:
            file.write("{ damaged")
        self.keys("ctrl+t")
        self.app.find_starting("Your time needs attention")
        self.take("alert")
        self.resize(SMALLEST)
        self.take("smallest-alert")


def empty_window(shots, name, **launch):
    """A first start: no clients, no sessions."""
    window = WindowShots(
        shots, name, {"clients": [], "projects": [], "entries": []}, **launch)
    window.take("no-clients")
    window.app.press("Sessions")
    window.take("no-sessions")


def take_window(shots, scale):
    """All pictures of the window at the scale of these shots."""
    for theme in THEMES:
        defaults = f"appearanceMode={theme}\n"
        name = f"window-{theme.lower()}"
        WindowShots(shots, name, interrupted(ledger()), defaults=defaults).every_state()
        empty_window(shots, name, defaults=defaults)
    if scale != 1:
        return
    for language, locale in (("german", "de_DE.UTF-8"), ("arabic", "ar_EG.UTF-8")):
        WindowShots(shots, f"window-{language}", interrupted(ledger()), locale=locale).every_state()
    for name, setting in (("large-text", ["org.gnome.desktop.interface", "text-scaling-factor", "d", 1.5]),
                          ("more-contrast", ["org.freedesktop.appearance", "contrast", "u", 1])):
        with SettingsPortal(others=[setting]):
            for theme in THEMES:
                WindowShots(shots, f"window-{theme.lower()}-{name}", interrupted(ledger()),
                            defaults=f"appearanceMode={theme}\n").every_state()
