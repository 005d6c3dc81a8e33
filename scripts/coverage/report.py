"""Prints what of each source was run, and compares it with what has to be. See scripts/coverage.sh."""

import json
import re
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

MEASURED = ("Common", "Runtime", "templates")
LEAST_BRANCHES = 98  # percent; lines and functions have to be complete
SIDES = ("true", "false")


class Report:
    """The counts of all sources: a template, or a function that several programs have, counts as one."""

    def __init__(self, root, exported, tracefile):
        self.root = root
        self.texts = {}
        self.lines = defaultdict(dict)  # path -> line -> count
        self.functions = defaultdict(lambda: defaultdict(int))  # path -> place -> count
        self.branches = defaultdict(lambda: defaultdict(lambda: [0, 0]))  # path -> (place, function) -> both sides
        self._read_lines(tracefile)
        functions = json.loads(exported.read_text())["data"][0]["functions"]
        names = self._demangled([function["name"] for function in functions])
        for function, name in zip(functions, names):
            self._add_function(function, name)

    def _measured(self, path):
        """The path of a measured source from the root, None for any other file."""
        path = Path(path).resolve()
        relative = path.relative_to(self.root) if path.is_relative_to(self.root) else Path("elsewhere")
        return relative.as_posix() if relative.parts[0] in MEASURED else None

    def _read_lines(self, tracefile):
        path = None
        for entry in tracefile.read_text().splitlines():
            key, _, value = entry.partition(":")
            if key == "SF":
                path = self._measured(value)
            elif key == "DA" and path is not None:
                line, count = value.split(",")[:2]
                self.lines[path][int(line)] = int(count)

    @staticmethod
    def _demangled(names):
        """Names without the templates' and functions' arguments."""
        plain = [name.rsplit(":", 1)[-1] for name in names]  # of functions with internal linkage: file:name
        listing = subprocess.run(["c++filt", "-p"], input="\n".join(plain), stdout=subprocess.PIPE, text=True,
                                 check=True).stdout
        return [re.sub(r"\(anonymous namespace\)::|\[abi:\w+\]", "", name) for name in listing.splitlines()]

    def _add_function(self, function, name):
        paths = [self._measured(path) for path in function["filenames"]]
        if paths[0] is None:
            return
        start = tuple(function["regions"][0][:2])
        self.functions[paths[0]][start] += function["count"]
        for *place, taken, passed, file, _, _ in function["branches"]:
            sides = self.branches[paths[file]][*place, short(name)]
            sides[0] += taken
            sides[1] += passed

    def condition(self, path, place):
        """The text of a condition."""
        lines = self.texts.setdefault(path, (self.root / path).read_text().splitlines())
        begin_line, begin, end_line, end = place[:4]
        if begin_line == end_line:
            return lines[begin_line - 1][begin - 1 : end - 1]
        last = lines[end_line - 1][: end - 1]
        pieces = [lines[begin_line - 1][begin - 1 :], *lines[begin_line : end_line - 1], last]
        return " ".join(piece.strip() for piece in pieces)

    def uncovered(self):
        """Sides of conditions that were never taken: (path, function, condition, side) with the line."""
        for path in sorted(self.branches):
            for place, counts in sorted(self.branches[path].items()):
                for side, count in zip(SIDES, counts):
                    if count == 0:
                        yield (path, place[4], self.condition(path, place), side), place[0]


def short(name):
    """A function's name without its template arguments; that of an operator with an angle bracket keeps them."""
    while (bare := re.sub(r"<[^<>]*>", "", name)) != name and not re.search(r"operator *[-<>]", name):
        name = bare
    return name


def reasons(path):
    """The branches that are known to be taken never or rarely: path, function, condition and side, reason; a blank line.

    @return which are known, and which of them are never taken"""
    known, never = set(), set()
    for block in filter(None, re.split(r"\n\s*\n", path.read_text().strip() if path.exists() else "")):
        source, function, condition, reason = block.split("\n", 3)
        text, often, side = re.fullmatch(r"`(.*)` is (never|rarely) (true|false)", condition).groups()
        if not reason.strip():
            sys.exit(f"{path}: no reason:\n{block}")
        known.add((source, function, text, side))
        if often == "never":
            never.add((source, function, text, side))
    return known, never


def ratio(covered, count):
    return f"{covered:>6} of {count:<5}" + ("      " if covered == count else f"{100 * covered / count:5.1f}%")


def print_table(report):
    """@return the totals: lines, functions, branches, each as covered and count"""
    totals = [[0, 0] for _ in range(3)]
    width = max(len(path) for path in report.lines)
    print(f"{'':{width}} {'lines':>15}    {'functions':>19} {'branches':>19}")
    for path in sorted(report.lines):
        counts = (report.lines[path].values(), report.functions[path].values(),
                  [side for sides in report.branches[path].values() for side in sides])
        for total, values in zip(totals, counts):
            total[0] += sum(map(bool, values))
            total[1] += len(values)
        print(f"{path:{width}} " + " ".join(ratio(sum(map(bool, values)), len(values)) for values in counts))
    print(f"{'all':{width}} " + " ".join(ratio(*total) for total in totals))
    return totals


def complaints(report, totals, known, never):
    for path, lines in sorted(report.lines.items()):
        yield from (f"{path}:{line}: never run" for line, count in sorted(lines.items()) if count == 0)
        uncalled = (place for place, count in sorted(report.functions[path].items()) if count == 0)
        yield from (f"{path}:{line}: a function that nobody calls" for line, _ in uncalled)
    found = dict(report.uncovered())
    for branch, line in found.items():
        if branch not in known:
            path, function, condition, side = branch
            yield f"{path}:{line}: {function}: `{condition}` is never {side}, and there is no reason for it"
    for path, function, condition, side in sorted(never - found.keys()):
        yield f"{path}: {function}: `{condition}` is {side} by now, or gone: its reason is in vain"
    covered, count = totals[2]
    if 100 * covered < LEAST_BRANCHES * count:
        yield f"branches: {100 * covered / count:.1f} %, less than {LEAST_BRANCHES} %"


def main():
    root, exported, tracefile = map(Path, sys.argv[1:])
    report = Report(root, exported, tracefile)
    totals = print_table(report)
    failed = False
    for complaint in complaints(report, totals, *reasons(root / "scripts/coverage/uncovered.txt")):
        print(complaint)
        failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
