#include "WindowKeys.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Kestry {
namespace {

using KeyCommand = WindowKeys::Command;

struct KeyOfWindow {
    KeyCommand command;
    std::string_view group;
    std::string_view words;
    std::string_view key;
    std::string_view otherKey{}; ///< Empty mostly.
    bool isAlways = false;
};

constexpr std::string_view sessionGroup = "Session";
constexpr std::string_view windowGroup = "Window";
constexpr std::string_view formGroup = "Form or question";
constexpr std::string_view sessionsGroup = "List of sessions";
constexpr std::string_view moveGroup = "Lists, days and pages";
constexpr std::string_view titleGroup = "Session title";
constexpr std::string_view searchGroup = "Search";
constexpr std::string_view calendarGroup = "Calendar";
constexpr std::string_view choiceGroup = "Choices and colors";

constexpr std::array keysOfWindow{
    KeyOfWindow{.command = KeyCommand::ToggleSession,
        .group = sessionGroup,
        .words = "Start / pause / resume",
        .key = "Ctrl+T",
        .isAlways = true},
    KeyOfWindow{.command = KeyCommand::StopSession,
        .group = sessionGroup,
        .words = "Stop & save",
        .key = "Ctrl+Shift+S",
        .isAlways = true},
    KeyOfWindow{.command = KeyCommand::ShowNotch,
        .group = sessionGroup,
        .words = "Show notch controls",
        .key = "Ctrl+Alt+N",
        .isAlways = true},
    KeyOfWindow{.command = KeyCommand::NewClient,
        .group = windowGroup,
        .words = "New client",
        .key = "Ctrl+N"},
    KeyOfWindow{.command = KeyCommand::Search,
        .group = windowGroup,
        .words = "Search sessions",
        .key = "Ctrl+F"},
    KeyOfWindow{.command = KeyCommand::OpenSettings,
        .group = windowGroup,
        .words = "Settings",
        .key = "Ctrl+,"},
    KeyOfWindow{
        .command = KeyCommand::OpenMenu, .group = windowGroup, .words = "Main menu", .key = "F10"},
    KeyOfWindow{.command = KeyCommand::ShowKeys,
        .group = windowGroup,
        .words = "Keyboard shortcuts",
        .key = "F1",
        .otherKey = "Ctrl+?"},
    KeyOfWindow{.command = KeyCommand::CloseWindow,
        .group = windowGroup,
        .words = "Close the window",
        .key = "Ctrl+W",
        .isAlways = true},
    KeyOfWindow{.command = KeyCommand::Quit,
        .group = windowGroup,
        .words = "Quit Kestry",
        .key = "Ctrl+Q",
        .isAlways = true},
    KeyOfWindow{.command = KeyCommand::SaveForm,
        .group = formGroup,
        .words = "Save",
        .key = "Ctrl+Return",
        .otherKey = "Ctrl+Enter"},
};

/// What forms, lists and pages do with keys by themselves.
struct KeyOfView {
    std::string_view group;
    std::string_view words;
    std::string_view keys;
};

constexpr std::array keysOfViews{
    KeyOfView{formGroup, "Cancel", "Escape"},
    KeyOfView{formGroup, "More hours or minutes, fewer", "Up, Down"},
    KeyOfView{sessionsGroup, "Edit the session", "Enter"},
    KeyOfView{sessionsGroup, "Delete the session", "Delete"},
    KeyOfView{sessionsGroup, "Menu of the session", "Menu or Shift+F10"},
    KeyOfView{sessionsGroup, "Go to a session by its name", "Its first letters"},
    KeyOfView{moveGroup, "From row to row", "Up, Down"},
    KeyOfView{moveGroup, "From day to day", "Left, Right"},
    KeyOfView{moveGroup, "To the first, to the last", "Home, End"},
    KeyOfView{moveGroup, "A page up, a page down", "Page Up, Page Down"},
    KeyOfView{titleGroup, "Take the suggestion", "Right"},
    KeyOfView{titleGroup, "Leave the title as it was", "Escape"},
    KeyOfView{searchGroup, "Clear the search", "Escape"},
    KeyOfView{searchGroup, "Go on to what was found", "Down or Enter"},
    KeyOfView{calendarGroup, "A day back, a day on", "Left, Right"},
    KeyOfView{calendarGroup, "A week back, a week on", "Up, Down"},
    KeyOfView{calendarGroup, "First day of the week, last day", "Home, End"},
    KeyOfView{calendarGroup, "A month back, a month on", "Page Up, Page Down"},
    KeyOfView{calendarGroup, "A year back, a year on", "Shift+Page Up, Shift+Page Down"},
    KeyOfView{calendarGroup, "Choose the day", "Enter or Space"},
    KeyOfView{calendarGroup, "Close the calendar", "Escape"},
    KeyOfView{choiceGroup, "Open a menu", "Down"},
    KeyOfView{choiceGroup, "Choose what is beside it", "Left, Right"},
    KeyOfView{choiceGroup, "From color to color", "Left, Right"},
    KeyOfView{choiceGroup, "Paler color, stronger color", "Left, Right"},
    KeyOfView{choiceGroup, "Brighter color, darker color", "Up, Down"},
    KeyOfView{choiceGroup, "Another hue", "Arrow keys"},
};

QString textOfKey(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

const KeyOfWindow& keyOf(KeyCommand command)
{
    return *std::ranges::find(keysOfWindow, command, &KeyOfWindow::command);
}

QVariantList rowsOf(std::string_view group)
{
    QVariantList rows;
    for (const KeyOfWindow& key : keysOfWindow) {
        if (key.group == group) {
            rows << QVariantMap{{"words", textOfKey(key.words)},
                {"keys", WindowKeys::sequences(key.command).join(" or ")}};
        }
    }
    for (const KeyOfView& key : keysOfViews) {
        if (key.group == group) {
            rows << QVariantMap{{"words", textOfKey(key.words)}, {"keys", textOfKey(key.keys)}};
        }
    }
    return rows;
}

} // namespace

QVariantList WindowKeys::commands()
{
    QVariantList commands;
    for (const KeyOfWindow& key : keysOfWindow) {
        if (key.command == KeyCommand::SaveForm) {
            continue;
        }
        commands << QVariantMap{
            {"command", static_cast<int>(key.command)}, {"isAlways", key.isAlways}};
    }
    return commands;
}

QVariantList WindowKeys::groups()
{
    QVariantList groups;
    for (const std::string_view title : {sessionGroup, windowGroup, formGroup, sessionsGroup,
             moveGroup, titleGroup, searchGroup, calendarGroup, choiceGroup}) {
        groups << QVariantMap{{"title", textOfKey(title)}, {"rows", rowsOf(title)}};
    }
    return groups;
}

QStringList WindowKeys::sequences(Command command)
{
    const KeyOfWindow& key = keyOf(command);
    QStringList sequences{textOfKey(key.key)};
    if (!key.otherKey.empty()) {
        sequences << textOfKey(key.otherKey);
    }
    return sequences;
}

std::string WindowKeys::keyText(Command command)
{
    return std::string(keyOf(command).key);
}

} // namespace Kestry
