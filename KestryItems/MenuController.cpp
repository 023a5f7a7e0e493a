#include "MenuController.h"

#include <QFontMetricsF>

#include <algorithm>
#include <utility>

namespace Kestry {
namespace {

constexpr double typingPauseSeconds = 1.0;
constexpr int none = -1;

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

double widest(const Menu& menu, const QFontMetricsF& metrics, std::string MenuEntry::*words)
{
    double width = 0.0;
    for (const MenuEntry& entry : menu) {
        width = std::max({width, metrics.horizontalAdvance(text(entry.*words)),
            widest(entry.entries, metrics, words)});
    }
    return width;
}

MenuController::Kind kindOf(const MenuEntry& entry)
{
    switch (entry.kind) {
    case MenuEntry::Kind::separator:
        return MenuController::Separator;
    case MenuEntry::Kind::heading:
        return MenuController::Heading;
    case MenuEntry::Kind::command:
        break;
    }
    return MenuController::Command;
}

} // namespace

MenuController::MenuController(KestryCore::Scheduler& scheduler) : scheduler_(scheduler) { }

void MenuController::open(Menu menu, const QString& name, Look look)
{
    look_ = look;
    show({Level{std::move(menu), name}});
}

void MenuController::show(std::vector<Level> levels)
{
    typed_.clear();
    beginResetModel();
    levels_ = std::move(levels);
    endResetModel();
    emit shown();
    emit currentChanged();
}

const MenuEntry* MenuController::entry(int row) const
{
    const bool isRow = row >= 0 && row < rowCount();
    return isRow ? &entries()[static_cast<std::size_t>(row)] : nullptr;
}

bool MenuController::canBeChosen(int row) const
{
    const MenuEntry* found = entry(row);
    return found && found->kind == MenuEntry::Kind::command && found->isEnabled;
}

void MenuController::setCurrent(int row)
{
    if (row != current()) {
        levels_.back().current = row;
        emit currentChanged();
    }
}

void MenuController::move(int from, int step)
{
    const int count = rowCount();
    for (int distance = 1; distance <= count; ++distance) {
        const int row = (from + step * distance + 2 * count) % count;
        if (canBeChosen(row)) {
            setCurrent(row);
            return;
        }
    }
}

void MenuController::press(int key, const QString& text)
{
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_Tab:
        move(current(), 1);
        return;
    case Qt::Key_Up:
    case Qt::Key_Backtab:
        move(current() == none ? 0 : current(), -1);
        return;
    case Qt::Key_Home:
        move(none, 1);
        return;
    case Qt::Key_End:
        move(0, -1);
        return;
    case Qt::Key_Right:
        openSubmenu();
        return;
    case Qt::Key_Left:
        leaveSubmenu();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(current());
        return;
    case Qt::Key_Escape:
        dismissOrLeaveSubmenu();
        return;
    default:
        break;
    }
    if (key == Qt::Key_Space && typed_.isEmpty()) {
        choose(current());
    } else if (!text.isEmpty() && text.front().isPrint()) {
        typeAhead(text);
    }
}

void MenuController::point(int row)
{
    setCurrent(canBeChosen(row) ? row : none);
}

void MenuController::choose(int row)
{
    if (!canBeChosen(row)) {
        return;
    }
    setCurrent(row);
    if (entry(row)->entries.empty()) {
        emit chosen(entry(row)->action);
    } else {
        openSubmenu();
    }
}

void MenuController::openSubmenu()
{
    if (!canBeChosen(current()) || entry(current())->entries.empty()) {
        return;
    }
    std::vector<Level> levels = levels_;
    const MenuEntry& opened = *entry(current());
    levels.push_back({opened.entries, text(opened.text)});
    show(std::move(levels));
    move(none, 1);
}

void MenuController::leaveSubmenu()
{
    if (isSubmenu()) {
        show({levels_.begin(), levels_.end() - 1});
    }
}

void MenuController::dismissOrLeaveSubmenu()
{
    if (isSubmenu()) {
        leaveSubmenu();
    } else {
        emit dismissed();
    }
}

void MenuController::typeAhead(const QString& text)
{
    typing_ = scheduler_.after(typingPauseSeconds, [this] { typed_.clear(); });
    // More of a word may be of the same entry; a first letter goes on to the next one.
    int found = typed_.isEmpty() ? none : findRow(typed_ + text, current());
    typed_ = found == none ? text : typed_ + text;
    if (found == none) {
        found = findRow(text, current() + 1);
    }
    if (found != none) {
        setCurrent(found);
    }
}

int MenuController::findRow(const QString& prefix, int from) const
{
    const int count = rowCount();
    for (int distance = 0; distance < count; ++distance) {
        const int row = (std::max(from, 0) + distance) % count;
        if (canBeChosen(row) && text(entry(row)->text).startsWith(prefix, Qt::CaseInsensitive)) {
            return row;
        }
    }
    return none;
}

double MenuController::widestText(const QFont& font) const
{
    return widest(levels_.front().entries, QFontMetricsF(font), &MenuEntry::text);
}

double MenuController::widestShortcut(const QFont& font) const
{
    return widest(levels_.front().entries, QFontMetricsF(font), &MenuEntry::shortcut);
}

bool MenuController::hasMarks() const
{
    return std::ranges::any_of(
        entries(), [](const MenuEntry& each) { return each.isChosen.has_value(); });
}

bool MenuController::hasSymbols() const
{
    return std::ranges::any_of(entries(),
        [](const MenuEntry& each) { return !each.symbol.empty() || !each.colorHex.empty(); });
}

int MenuController::separatorCount() const
{
    return static_cast<int>(
        std::ranges::count(entries(), MenuEntry::Kind::separator, &MenuEntry::kind));
}

int MenuController::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries().size());
}

QVariant MenuController::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const MenuEntry& found = *entry(index.row());
    switch (role) {
    case KindRole:
        return kindOf(found);
    case Qt::DisplayRole:
    case TextRole:
        return text(found.text);
    case SymbolRole:
        return text(found.symbol);
    case ColorRole:
        return found.colorHex.empty() ? QString() : "#" + text(found.colorHex);
    case ShortcutRole:
        return text(found.shortcut);
    case IsEnabledRole:
        return found.isEnabled;
    case IsCheckableRole:
        return found.isChosen.has_value();
    case IsCheckedRole:
        return found.isChosen.value_or(false);
    case HasSubmenuRole:
        return !found.entries.empty();
    default:
        return {};
    }
}

QHash<int, QByteArray> MenuController::roleNames() const
{
    return {{KindRole, "kind"}, {TextRole, "text"}, {SymbolRole, "symbol"}, {ColorRole, "color"},
        {ShortcutRole, "shortcut"}, {IsEnabledRole, "isEnabled"}, {IsCheckableRole, "isCheckable"},
        {IsCheckedRole, "isChecked"}, {HasSubmenuRole, "hasSubmenu"}};
}

} // namespace Kestry
