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
        .words = "Search sessions, on their page",
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
};

/// What lists do with keys by themselves.
struct KeyOfList {
    const char* words;
    const char* keys;
};

constexpr std::array keysOfLists{
    KeyOfList{"Edit the session", "Enter"},
    KeyOfList{"Delete the session", "Delete"},
    KeyOfList{"Menu of the session", "Shift+F10"},
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
    return rows;
}

} // namespace

QVariantList WindowKeys::commands()
{
    QVariantList commands;
    for (const KeyOfWindow& key : keysOfWindow) {
        if (key.command == KeyCommand::Search) {
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
    for (const std::string_view title : {sessionGroup, windowGroup}) {
        groups << QVariantMap{{"title", textOfKey(title)}, {"rows", rowsOf(title)}};
    }
    QVariantList listRows;
    for (const KeyOfList& key : keysOfLists) {
        listRows << QVariantMap{{"words", key.words}, {"keys", key.keys}};
    }
    groups << QVariantMap{{"title", "List of sessions"}, {"rows", listRows}};
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
