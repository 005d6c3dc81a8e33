"""Tries seeded mutants of the sources: how many of them do the tests notice? See scripts/mutants.sh."""

import argparse
import concurrent.futures
import difflib
import fnmatch
import itertools
import queue
import random
import re
import sys
from collections import Counter
from pathlib import Path

from sites import KINDS, mutants_of
from trial import MIRROR, Build, Worker

ROOT = Path(__file__).resolve().parents[2]
PLATFORM = "templates/common-templates/kova/templates/platform"
JOBS = {
    "directories": ["Runtime/zulrt/src/library_director*.cpp", "Runtime/zulrt/src/cache_trust.cpp",
                    "Runtime/zulrt/src/cached_libraries.cpp", "Runtime/zulrt/src/open_directory.h",
                    "Runtime/zulrt/src/applet_location.cpp", "Runtime/zulrt/src/installation_directory.cpp",
                    "Runtime/zulrt/src/board_directories.cpp"],
    "saving": ["Common/zullib/zul_save.cpp", "Common/zullib/src/unfinished_file.*", "Common/zullib/src/mapped_file.*",
               "Common/zullib/src/ZUL_dll.cpp", "Runtime/zulrt/src/design_strip.cpp",
               f"{PLATFORM}/file_replacement.cpp", f"{PLATFORM}/map_file.cpp", f"{PLATFORM}/descriptor.h"],
    # Left out: headers that nearly every source includes; and numbers of a hash, of which nobody sees anything.
    "loading": ["Common/zullib/zul_load.cpp", "Common/zullib/src/tag_*.*", "Common/zullib/src/ZUL_*.cpp",
                "Common/zullib/src/zul_private.*", "Common/zullib/src/register_names.*",
                "Common/zullib/src/hash_slots.h", "Common/zullib/src/key_table.h",
                "Common/zullib/src/number_table.h", "Common/zullib/src/stable_array.h",
                "Common/zullib/src/first_with_key.h", "Common/zullib/src/laid_out_tag.cpp",
                "Common/zullib/src/little_endian.h", "Common/zullib/src/inflate_stream.cpp",
                "Common/zullib/src/event_queues.*", "Runtime/zulrt/src/fpga_design.cpp",
                "Runtime/zulrt/src/design_modules.cpp", "Runtime/zulrt/src/design_tags.*",
                f"{PLATFORM}/memory_blocks.*", f"{PLATFORM}/large_memory.cpp"],
}
# What is run for the sources of each layer, in this order.
PROGRAMS = {"templates": ["platform_tests", "zullib_tests", "allocation_tests", "zulrt_tests"],
            "Common": ["zullib_tests", "allocation_tests"],
            "Runtime": ["zulrt_tests", "runtime_allocation_tests"]}
EQUIVALENT = ROOT / "scripts/mutants/equivalent.txt"
LEAST_KILLED = 95  # percent


def sources(patterns):
    return sorted({path.relative_to(ROOT).as_posix() for pattern in patterns for path in ROOT.glob(pattern)})


def equivalents():
    """What the list of equivalent mutants names: path, line, mutated line."""
    blocks = EQUIVALENT.read_text().strip().split("\n\n") if EQUIVALENT.exists() else []
    known = set()
    for block in blocks:
        path, old, new, reason = block.split("\n", 3)
        if not (old.startswith("- ") and new.startswith("+ ") and reason.strip()):
            sys.exit(f"{EQUIVALENT}: not a path, a line, a mutated line and a reason:\n{block}")
        known.add((path, old[2:], new[2:]))
    return known


def candidates(texts, seed):
    """Mutants in the order in which they are tried: jobs and kinds take turns, as long as they have any."""
    order = random.Random(seed)
    turns = []
    chosen = set()
    for job, patterns in JOBS.items():
        paths = [path for path in sources(patterns) if path not in chosen]
        chosen.update(paths)
        texts.update((path, (ROOT / path).read_text()) for path in paths)
        for kind in KINDS:
            found = [mutant for path in paths for mutant in mutants_of(path, texts[path]) if mutant.kind == kind]
            order.shuffle(found)
            turns.append([(job, mutant) for mutant in found])
    while any(turns):
        for turn in turns:
            if turn:
                yield turn.pop()


def mirrors(path):
    """The files with the tests that mirror a source."""
    return sorted(ROOT.glob(f"tests/**/{Path(path).stem}_*test.cpp"))


def suites_in(tests):
    """The tests in some files, as a filter."""
    names = set()
    for test in tests:
        names.update(re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+),", test.read_text(), re.MULTILINE))
    return ":".join(f"{name}.*:*/{name}.*:{name}/*" for name in sorted(names))


def programs_for(path):
    return PROGRAMS[path.split("/")[0]]


def trials(path):
    """Test programs and filters in the order in which they are run: what is about the source comes first."""
    programs = programs_for(path)
    related = suites_in(mirrors(path))
    if related:
        yield programs[0], related
    for program in programs:
        yield program, "*"


def try_mutant(worker, mutant):
    """How a mutant fares: what kills it, "survived" or "does not compile"."""
    if not worker.make_library(mutant):
        return "does not compile"
    if mutant.path.endswith(".h") and (tests := mirrors(mutant.path)):
        # What a header defines is part of its users, the tests among them.
        if not worker.make_mirror(mutant, programs_for(mutant.path)[0], tests) or worker.fails(MIRROR):
            return "killed by the tests of the header"
    for program, tests in trials(mutant.path):
        if worker.fails(program, tests):
            return "killed by " + program + ("" if tests == "*" else ", tests of the file")
    return "survived"


def show(mutant, text):
    texts = text.splitlines(), mutant.apply(text).splitlines()
    lines = difflib.unified_diff(*texts, mutant.path, mutant.path, n=2, lineterm="")
    print("\n".join("    " + line for line in lines), flush=True)


class Tally:
    """Counts, and shows, what becomes of each mutant."""

    def __init__(self):
        self.counted = Counter()
        self.killed = Counter()
        self.uncompiled = 0
        self.survivors = []

    def add(self, job, mutant, fate, text):
        if fate == "does not compile":
            self.uncompiled += 1
            return
        print(f"{self.count() + 1:4} {mutant.path}:{mutant.line} ({mutant.kind}): {fate}", flush=True)
        self.counted[job, mutant.kind] += 1
        if fate == "survived":
            self.survivors.append(mutant)
            show(mutant, text)
        else:
            self.killed[job, mutant.kind] += 1

    def count(self):
        return sum(self.counted.values())

    def report(self, equivalent):
        print(f"\n{'':14}" + "".join(f"{kind:>18}" for kind in KINDS))
        for job in JOBS:
            ratios = (f"{self.killed[job, kind]:>12} of {self.counted[job, kind]:<3}" for kind in KINDS)
            print(f"{job:14}" + "".join(ratios))
        counted, killed = self.count(), sum(self.killed.values())
        percent = 100 * killed / max(counted, 1)
        print(f"\n{killed} of {counted} killed: {percent:.1f} %; passed over: {self.uncompiled} that do not compile;"
              f" left out: {equivalent} known to be equivalent")
        return counted > 0 and percent >= LEAST_KILLED


def prepare(build_directory, jobs, programs):
    """Workers with an unchanged library each, which pass all tests."""
    build = Build(ROOT, build_directory)
    workers = [Worker(build, number) for number in range(jobs)]
    for worker in workers:
        worker.make_library()
    for program in programs:
        build.link(program, workers[0], program)
    for worker in workers[1:]:
        worker.share_programs(workers[0])
    for program in programs:
        if workers[0].fails(program):
            sys.exit(f"{program} fails without any mutant")
    return workers


def options_of_command_line():
    parser = argparse.ArgumentParser(prog="scripts/mutants.sh",
                                     description="Counts the seeded mutants that the tests notice.")
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--only", default="*", metavar="PATTERN",
                        help="of all mutants, those whose place matches, e.g. 'saving */zul_save.cpp:*'")
    parser.add_argument("--build", type=Path, help=argparse.SUPPRESS)
    parser.add_argument("--check-list", action="store_true", help=argparse.SUPPRESS)
    return parser.parse_args()


def try_all(drawn, texts, count, workers, tally):
    """Tries mutants until so many of them compile."""
    idle = queue.SimpleQueue()
    for worker in workers:
        idle.put(worker)

    def run(choice):
        worker = idle.get()
        try:
            return (*choice, try_mutant(worker, choice[1]))
        finally:
            idle.put(worker)

    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        while (missing := count - tally.count()) > 0 and (batch := list(itertools.islice(drawn, missing))):
            for job, mutant, fate in pool.map(run, batch):
                tally.add(job, mutant, fate, texts[mutant.path])


def main():
    options = options_of_command_line()
    texts, known, tally = {}, equivalents(), Tally()
    every = [(job, mutant, (mutant.path, *mutant.changed_lines(texts[mutant.path])))
             for job, mutant in candidates(texts, options.seed)]
    if gone := known - {lines for _, _, lines in every}:
        sys.exit("\n".join([f"{EQUIVALENT}: there are no such mutants by now:",
                            *(f"\n{path}\n- {old}\n+ {new}" for path, old, new in sorted(gone))]))
    if options.check_list:
        return 0
    drawn = [(job, mutant, lines) for job, mutant, lines in every
             if fnmatch.fnmatch(f"{job} {mutant.path}:{mutant.line}", options.only)]
    changing = [(job, mutant) for job, mutant, lines in drawn if lines not in known]
    programs = sorted({program for _, mutant in changing for program in programs_for(mutant.path)})
    workers = prepare(options.build, options.jobs, programs)
    try_all(iter(changing), texts, options.count, workers, tally)
    return 0 if tally.report(len(drawn) - len(changing)) else 1


if __name__ == "__main__":
    sys.exit(main())
