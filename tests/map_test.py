#!/usr/bin/env python3
"""Holds docs/map.md against the sources: where each file stands and what it may include.

    map_test.py

The checker takes the root of a tree, so that it is tested itself, on trees made up below.
"""

import pathlib
import re
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
MAP = "docs/map.md"
KINDS = (".h", ".cpp", ".qml")


class Folder:
    """One section of the map."""

    def __init__(self, name):
        self.name = name
        self.uses = {}    # Folder -> the groups of it that may be used; none stands for all.
        self.groups = []  # Names, from the ground up.
        self.names = {}   # As written -> the number of its group.

    def group_of(self, stem):
        """The number of a file's group; None when the map does not name it."""
        if stem in self.names:
            return self.names[stem]
        begins = [name for name in self.names
                  if name.endswith("…") and stem.startswith(name[:-1])]
        return self.names[max(begins, key=len)] if begins else None


def read_map(text, faults):
    folders = []
    for line in text.splitlines():
        heading = re.match(r"## `(\w+)/`", line)
        if heading:
            folders.append(Folder(heading[1]))
        elif folders and line.startswith("Uses: "):
            for name, groups in re.findall(r"`(\w+)`(?: \(([^)]*)\))?", line):
                folders[-1].uses[name] = [g.strip() for g in groups.split(",")] if groups else None
        elif folders and line.startswith("| ") and not line.startswith(("| Group", "| ---")):
            group, files = [cell.strip() for cell in line.strip("|").split("|")][:2]
            folders[-1].groups.append(group)
            for name in re.findall(r"`([^`]+)`", files):
                if name in folders[-1].names:
                    faults.append(f"The map names {name} of {folders[-1].name}/ twice.")
                folders[-1].names[name] = len(folders[-1].groups) - 1
    return folders


class Tree:
    """The sources below a root: which there are, and who includes whom."""

    def __init__(self, root, folders):
        self.root = root
        self.files = {}    # Folder name -> paths.
        self.stems = {}    # (folder name, stem) of each file.
        self.headers = {}  # "Name.h" -> folder name.
        self.types = {}    # What views call a type -> (folder name, stem).
        for folder in folders:
            paths = sorted(p for p in (root / folder.name).glob("*") if p.suffix in KINDS)
            self.files[folder.name] = paths
            for path in paths:
                if path.suffix == ".h":
                    self.headers[path.name] = folder.name
                self.note_type(folder.name, path)

    def note_type(self, folder, path):
        if path.suffix == ".qml":
            self.types[path.stem] = (folder, path.stem)
        elif path.suffix == ".h":
            text = path.read_text(encoding="utf-8")
            named = re.search(r"QML_NAMED_ELEMENT\((\w+)\)", text)
            if named or "QML_ELEMENT" in text:
                self.types[named[1] if named else path.stem] = (folder, path.stem)

    def uses(self, folder, path):
        """(folder, stem) of each file of the tree that a file includes or, a view, shows."""
        text = path.read_text(encoding="utf-8")
        if path.suffix == ".qml":
            code = re.sub(r"//.*|\"[^\"\n]*\"", "", text)
            words = set(re.findall(r"(?<![.\w])[A-Z]\w*", code))
            found = {self.types[word] for word in words if word in self.types}
        else:
            names = re.findall(r'^\s*#\s*include\s+"([^"]+)"', text, flags=re.M)
            found = {(self.headers[name], name[:-2]) for name in names if name in self.headers}
        return found - {(folder, path.stem)}


def faults_of(root):
    """Everything that breaks the map, a sentence each."""
    faults = []
    folders = read_map((root / MAP).read_text(encoding="utf-8"), faults)
    by_name = {folder.name: folder for folder in folders}
    for path in sorted(root.glob("Kestry*")):
        if path.is_dir() and path.name not in by_name:
            faults.append(f"The folder {path.name}/ is not on the map.")
    tree = Tree(root, folders)
    for number, folder in enumerate(folders):
        faults += misplaced(folder, tree)
        faults += wrong_order(folder, folders[:number])
        faults += wrong_links(folder, by_name, root)
    edges = {}
    for folder in folders:
        for path in tree.files[folder.name]:
            for other in sorted(tree.uses(folder.name, path)):
                edges.setdefault((folder.name, path.stem), set()).add(other)
                fault = forbidden(folder, path, by_name[other[0]], other[1])
                if fault:
                    faults.append(fault)
    return faults + [f"These include each other: {', '.join(sorted(circle))}."
                     for circle in circles(edges)]


def misplaced(folder, tree):
    """Files that are in no group, names without a file, folders in a folder."""
    faults = []
    stems = {path.stem for path in tree.files[folder.name]}
    for stem in sorted(stems):
        if folder.group_of(stem) is None:
            faults.append(f"{folder.name}/{stem} belongs to no group of the map.")
    for name in folder.names:
        if name.endswith("…"):
            if not any(stem.startswith(name[:-1]) for stem in stems):
                faults.append(f"The map names {name}, and {folder.name}/ has no such file.")
        elif name not in stems:
            faults.append(f"The map names {name}, and {folder.name}/ has no such file.")
    for path in (tree.root / folder.name).rglob("*"):
        if path.suffix in KINDS and path.parent.name != folder.name:
            faults.append(f"{path.relative_to(tree.root)} stands in a folder inside a folder.")
    return faults


def wrong_order(folder, above):
    known = {other.name: other for other in above}
    faults = []
    for name, groups in folder.uses.items():
        if name not in known:
            faults.append(f"{folder.name} is to use {name}, which does not stand above it.")
            continue
        for group in groups or []:
            if group not in known[name].groups:
                faults.append(f"{folder.name} is to use {group} of {name}, which has no such group.")
    return faults


def wrong_links(folder, by_name, root):
    """The folder's CMakeLists.txt links what the map says, so that the compiler holds it too."""
    lists = root / folder.name / "CMakeLists.txt"
    if not lists.exists():
        return [f"{folder.name}/ has no CMakeLists.txt."]
    text = re.sub(r"#.*", "", lists.read_text(encoding="utf-8"))
    library = re.search(r"add_library\(\s*(\w+)", text)
    linked = set()
    for words in re.findall(r"target_link_libraries\(([^)]*)\)", text):
        target, *rest = words.split()
        if library and target == library[1]:
            linked |= {word for word in rest if word in by_name}
    if linked == set(folder.uses):
        return []
    return [f"{folder.name}/CMakeLists.txt links {sorted(linked)}, "
            f"and the map says {sorted(folder.uses)}."]


def forbidden(folder, path, other, stem):
    """Why a file must not include another; None when it may."""
    here, there = folder.group_of(path.stem), other.group_of(stem)
    if here is None or there is None:
        return None
    sentence = f"{folder.name}/{path.name} includes {other.name}/{stem}"
    if folder is other:
        if there > here:
            return (f"{sentence}: upwards, from \"{folder.groups[here]}\" "
                    f"to \"{folder.groups[there]}\".")
        return None
    if other.name not in folder.uses:
        return f"{sentence}: {folder.name} does not use {other.name}."
    allowed = folder.uses[other.name]
    if allowed is not None and other.groups[there] not in allowed:
        return f"{sentence}: of {other.name}, \"{other.groups[there]}\" is not for {folder.name}."
    return None


def circles(edges):
    """The sets of names that reach each other, by Tarjan's method without recursion."""
    index, low, onStack, stack, found = {}, {}, set(), [], []
    for start in sorted(edges):
        if start in index:
            continue
        index[start] = low[start] = len(index)
        stack.append(start)
        onStack.add(start)
        work = [(start, iter(sorted(edges.get(start, ()))))]
        while work:
            node, rest = work[-1]
            for other in rest:
                if other not in index:
                    index[other] = low[other] = len(index)
                    stack.append(other)
                    onStack.add(other)
                    work.append((other, iter(sorted(edges.get(other, ())))))
                    break
                if other in onStack:
                    low[node] = min(low[node], index[other])
            else:
                work.pop()
                if work:
                    low[work[-1][0]] = min(low[work[-1][0]], low[node])
                if low[node] == index[node]:
                    circle = []
                    while not circle or circle[-1] != node:
                        circle.append(stack.pop())
                        onStack.discard(circle[-1])
                    if len(circle) > 1:
                        found.append({name for _, name in circle})
    return found


class TheTree(unittest.TestCase):
    def test_stands_as_the_map_says(self):
        faults = faults_of(ROOT)
        self.assertEqual(faults, [], "\n" + "\n".join(faults))


SMALL_MAP = """
## `KestryLow/`
Uses: nothing.
| Group | Files |
| --- | --- |
| ground | `Stone` |
| walls | `Wall`, `Wall…` (each side) |

## `KestryHigh/`
Uses: `KestryLow` (ground).
| Group | Files |
| --- | --- |
| roof | `Roof`, `Tile` |
"""


class TheChecker(unittest.TestCase):
    """On a small sound house, into which each test builds one fault."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name)
        self.write(MAP, SMALL_MAP)
        self.write("KestryLow/CMakeLists.txt", "add_library(KestryLow STATIC ${sources})\n")
        self.write("KestryHigh/CMakeLists.txt",
                   "add_library(Roofing STATIC)\ntarget_link_libraries(Roofing PUBLIC KestryLow)\n")
        self.write("KestryLow/Stone.h", "")
        self.write("KestryLow/Wall.h", '#include "Stone.h"\n')
        self.write("KestryLow/WallNorth.cpp", '#include "Wall.h"\n')
        self.write("KestryHigh/Roof.h", '#include <vector>\n#include "Stone.h"\n')
        self.write("KestryHigh/Roof.cpp", '#include "Roof.h"\n')
        self.write("KestryHigh/Tile.qml", "Item { }\n")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def assert_fault(self, *words):
        """Exactly one fault, in which all the words stand."""
        faults = faults_of(self.root)
        self.assertEqual(len(faults), 1, faults)
        for word in words:
            self.assertIn(word, faults[0])

    def test_a_sound_house_has_no_fault(self):
        self.assertEqual(faults_of(self.root), [])

    def test_an_include_that_points_upwards_in_a_folder_is_refused(self):
        self.write("KestryLow/Stone.cpp", '#include "Wall.h"\n')
        faults = faults_of(self.root)
        self.assertIn('KestryLow/Stone.cpp includes KestryLow/Wall: upwards, from "ground" to '
                      '"walls".', faults)

    def test_an_include_of_a_folder_above_is_refused(self):
        self.write("KestryLow/WallNorth.cpp", '#  include "Roof.h"\n')
        self.assert_fault("KestryLow/WallNorth.cpp", "KestryLow does not use KestryHigh")

    def test_an_include_of_a_group_that_is_not_for_a_folder_is_refused(self):
        self.write("KestryHigh/Roof.cpp", '#include "Wall.h"\n')
        self.assert_fault("KestryHigh/Roof.cpp", "of KestryLow", "walls")

    def test_a_file_in_no_group_is_refused(self):
        self.write("KestryHigh/Chimney.cpp", "")
        self.assert_fault("KestryHigh/Chimney belongs to no group")

    def test_a_view_in_no_group_is_refused(self):
        self.write("KestryHigh/Gable.qml", "")
        self.assert_fault("KestryHigh/Gable belongs to no group")

    def test_a_name_without_a_file_is_refused(self):
        (self.root / "KestryLow/WallNorth.cpp").unlink()
        (self.root / "KestryLow/Wall.h").unlink()
        self.assertIn("The map names Wall, and KestryLow/ has no such file.", faults_of(self.root))

    def test_a_beginning_without_a_file_is_refused(self):
        self.write(MAP, SMALL_MAP.replace("`Wall…`", "`Door…`"))
        self.assertIn("The map names Door…, and KestryLow/ has no such file.",
                      faults_of(self.root))

    def test_a_name_in_two_groups_is_refused(self):
        self.write(MAP, SMALL_MAP.replace("`Stone` |", "`Stone`, `Wall` |"))
        self.assert_fault("names Wall of KestryLow/ twice")

    def test_a_folder_that_is_not_on_the_map_is_refused(self):
        self.write("KestryGarden/Tree.h", "")
        self.assert_fault("The folder KestryGarden/ is not on the map")

    def test_a_folder_in_a_folder_is_refused(self):
        self.write("KestryHigh/attic/Box.h", "")
        self.assert_fault("KestryHigh/attic/Box.h", "inside a folder")

    def test_files_of_one_group_that_include_each_other_are_refused(self):
        self.write("KestryLow/Wall.h", '#include "WallNorth.h"\n')
        self.write("KestryLow/WallNorth.h", '#include "Wall.h"\n')
        self.assert_fault("include each other: Wall, WallNorth")

    def test_a_header_and_its_own_source_are_no_circle(self):
        self.write("KestryLow/Wall.cpp", '#include "Wall.h"\n')
        self.assertEqual(faults_of(self.root), [])

    def test_a_view_that_shows_one_of_a_group_above_is_refused(self):
        self.write("KestryLow/Stone.qml", "// Wall\nWallEast { }\n")
        self.write("KestryLow/WallEast.qml", 'Item { property string name: "Stone" }\n')
        self.assert_fault("KestryLow/Stone.qml includes KestryLow/WallEast: upwards")

    def test_a_type_that_views_know_by_another_name_is_found(self):
        self.write("KestryLow/Wall.h", "QML_NAMED_ELEMENT(Masonry)\n")
        self.write("KestryLow/Stone.qml", "Item { color: Masonry.color }\n")
        self.assert_fault("KestryLow/Stone.qml includes KestryLow/Wall: upwards")

    def test_a_folder_that_uses_one_below_it_on_the_map_is_refused(self):
        self.write(MAP, SMALL_MAP.replace("Uses: nothing.", "Uses: `KestryHigh`."))
        self.assertIn("KestryLow is to use KestryHigh, which does not stand above it.",
                      faults_of(self.root))

    def test_a_use_of_a_group_that_there_is_not_is_refused(self):
        self.write(MAP, SMALL_MAP.replace("(ground)", "(ground, cellar)"))
        self.assert_fault("cellar", "no such group")

    def test_links_other_than_those_of_the_map_are_refused(self):
        self.write("KestryHigh/CMakeLists.txt", "add_library(Roofing STATIC)\n")
        self.assert_fault("KestryHigh/CMakeLists.txt links []", "['KestryLow']")

    def test_a_folder_without_a_list_for_the_build_is_refused(self):
        (self.root / "KestryLow/CMakeLists.txt").unlink()
        self.assert_fault("KestryLow/ has no CMakeLists.txt")


if __name__ == "__main__":
    unittest.main()
