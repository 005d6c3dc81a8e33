"""Builds a mutant and runs tests on it."""

import functools
import json
import os
import re
import shutil
import subprocess
from pathlib import Path

PRODUCT = ("Common", "Runtime", "templates")
LIBRARIES = ("zullib", "zulrt_static")
LIBRARY = "libmutated.so"
MIRROR = "mirror"  # a test program of nothing but the tests that mirror a header
# The C library's own checks of the heap: a byte behind a block that is written to ends the program when the block is freed.
CHECKED_HEAP = {"LD_PRELOAD": "libc_malloc_debug.so.0", "GLIBC_TUNABLES": "glibc.malloc.check=3", "MALLOC_PERTURB_": "85"}
# Tests that need more memory than a mutant may have, and some that take as long as all others together.
LEFT_OUT = ("*HasToFitTheLengthField", "HostileContainer.*", "*.OfHalfAMillion*", "TagSort.NeedsFar*")
SECONDS = 30  # of processor time; the longest test program needs less than half of it

# A mutant may remove or overwrite whatever it likes: it sees a /tmp of its own and cannot write anything else.
CAGE = """
mount --bind "$1" /mnt && mount -t tmpfs -o size=2g tmpfs /tmp && mkdir -p "$1" && mount --bind /mnt "$1" && umount /mnt &&
mount -t tmpfs -o size=2g tmpfs /var/tmp && mount -o remount,bind,ro "$1" && mount -o remount,bind,ro / || exit 125
ulimit -t {seconds}; ulimit -v 12000000; ulimit -f 16000000; ulimit -c 0
cd /tmp; shift; exec "$@"
"""


def ninja(directory, *tool):
    """What one of ninja's tools prints about a build."""
    command = ["ninja", "-C", directory, "-t", *tool]
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout


def run(command, **options):
    """Runs a command without a word. @return its exit status"""
    quiet = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return subprocess.run(command, **quiet, **options, start_new_session=True, check=False).returncode


class Build:
    """The test programs, linked with a library that is made anew for every mutant."""

    def __init__(self, root, directory):
        self.root, self.directory = root, directory
        commands = json.loads((directory / "compile_commands.json").read_text())
        self.all = {re.search(r" -o (\S+) ", entry["command"]).group(1): entry["command"] for entry in commands}
        places = tuple(f"CMakeFiles/{library}.dir/" for library in LIBRARIES)
        self.compile = {output: command for output, command in self.all.items() if output.startswith(places)}
        self.users = self._users_of_headers()

    def _users_of_headers(self):
        """Which objects of the library are compiled from each source and each header."""
        listing = ninja(self.directory, "deps")
        users = {}
        for block in listing.split("\n\n"):
            lines = block.strip().split("\n")
            output = lines[0].split(":")[0]
            if output in self.compile:
                for line in lines[1:]:
                    path = os.path.relpath(os.path.join(self.directory, line.strip()), self.root)
                    users.setdefault(path, set()).add(output)
        return users

    @functools.cache
    def link_command(self, program):
        commands = ninja(self.directory, "commands", f"bin/{program}").splitlines()
        command = next(line for line in commands if f" -o bin/{program} " in line)
        return re.search(r"(?:: && )?(.*?-o bin/.*?)(?: && .*)?$", command).group(1)

    def link(self, program, worker, to, tests=None):
        """Links a test program with a worker's library instead of the static ones; of its tests, if so many are given,
        with these objects instead of all others."""
        command = self.link_command(program)
        if tests is not None:
            command = re.sub(r" \S+_test\.cpp\.o", "", command).replace(" -o ", f" {' '.join(map(str, tests))} -o ")
        command = command.replace(f"-o bin/{program} ", f"-o {worker.directory / 'bin' / to} ")
        command = command.replace("lib/libzulrt_static.a", "")
        command = command.replace("lib/libzullib.a", str(worker.library))
        subprocess.run(command, shell=True, cwd=self.directory, check=True)


class Worker:
    """A copy of the product's sources that is mutated, and the library that it gives."""

    def __init__(self, build, number):
        self.build = build
        self.directory = build.directory / f"worker{number}"
        self.tree = self.directory / "tree"
        self.library = self.directory / "lib" / LIBRARY
        shutil.rmtree(self.directory, ignore_errors=True)
        for part in ("bin", "lib"):
            (self.directory / part).mkdir(parents=True)
        for part in PRODUCT:
            shutil.copytree(build.root / part, self.tree / part)

    def share_programs(self, other):
        """Takes the test programs of another worker for its own."""
        for program in (other.directory / "bin").iterdir():
            os.link(program, self.directory / "bin" / program.name)

    def make_library(self, mutant=None):
        """Makes the library with a mutant. @return whether it compiles"""
        replaced = {}
        if mutant is not None:
            replaced = self._compiled_with(mutant, sorted(self.build.users[mutant.path]))
            if replaced is None:
                return False
        objects = [str(replaced.get(output, output)) for output in self.build.compile]
        linker = ["-fuse-ld=lld"] if shutil.which("ld.lld") else []
        command = ["c++", *linker, "-shared", "-Wl,-Bsymbolic-functions", f"-Wl,-soname,{LIBRARY}",
                   "-o", str(self.library), *objects, "-lz", "-ldl", "-pthread"]
        subprocess.run(command, cwd=self.build.directory, check=True)
        return True

    def make_mirror(self, mutant, program, tests):
        """Makes a program of some tests of another one, which see the mutated header themselves.

        @return whether they compile"""
        objects = [f"CMakeFiles/{program}.dir/{test.relative_to(self.build.root)}.o" for test in tests]
        replaced = self._compiled_with(mutant, objects)
        if replaced is None:
            return False
        self.build.link(program, self, MIRROR, replaced.values())
        return True

    def _compiled_with(self, mutant, outputs):
        """Where the objects are that some sources give with a mutant, in the place of those without; None when one does
        not compile."""
        source = self.tree / mutant.path
        text = source.read_text()
        source.write_text(mutant.apply(text))
        try:
            replaced = {}
            for number, output in enumerate(outputs):
                replaced[output] = self.directory / f"{number}.o"
                if not self._compiled(output, replaced[output]):
                    return None
            return replaced
        finally:
            source.write_text(text)

    def _compiled(self, output, to):
        command = self.build.all[output]
        for part in PRODUCT:
            command = command.replace(f"{self.build.root}/{part}", f"{self.tree}/{part}")
        command = re.sub(r" -o \S+ ", f" -w -o {to} ", command)
        environment = dict(os.environ, CCACHE_DISABLE="1")  # nobody compiles it again
        return run(command, shell=True, cwd=self.build.directory, env=environment) == 0

    def fails(self, program, tests="*"):
        """Whether one of the tests of a program fails, crashes or does not end."""
        test = [str(self.directory / "bin" / program), "--gtest_brief=1", "--gtest_fail_fast",
                f"--gtest_filter={tests}-{':'.join(LEFT_OUT)}"]
        cage = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "bash", "-c",
                CAGE.format(seconds=SECONDS), "cage", str(self.build.root), *test]
        environment = dict(os.environ, **CHECKED_HEAP, LD_LIBRARY_PATH=str(self.library.parent))
        try:
            result = run(cage, env=environment, timeout=10 * SECONDS)
        except subprocess.TimeoutExpired:
            return True
        if result == 125:
            raise RuntimeError("cannot shut the mutant in")
        return result != 0
