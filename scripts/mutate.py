#!/usr/bin/env python3
"""Proves the tests: plants one fault after the other in src/ and looks whether the tests tell it.

    scripts/mutate.py                          20 faults in each folder of src/
    scripts/mutate.py xml console --count 60   60 in each of these two
    scripts/mutate.py --survivors left.txt     also writes those that no test told into a file
    scripts/mutate.py --only left.txt          tries these again, once the tests are sharper

Works on a copy under build/mutate, and changes nothing else. A fault is told if a test fails, crashes
or hangs. Those that pass are tried again under AddressSanitizer, UndefinedBehaviorSanitizer and, where
there are threads, ThreadSanitizer. Faults that do not compile, or compile to the same code as before,
do not count.
"""
import argparse
import collections
import concurrent.futures
import itertools
import json
import os
import pathlib
import queue
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutate"
TREE = WORK / "tree"
TIME_LIMIT = 20  # seconds for a test program; a sanitizer makes them slower
PROCESSOR_LIMIT = 300  # seconds, for what has escaped the one above
MEMORY_LIMIT = 8 << 30

# The test programs that look most closely at a folder. They are run before the others.
CLOSEST = {
    "foundation": "StringUtilTest MathTest FileTest LogTest ThreadTest DesktopTest ConfigurationTest",
    "xml": "XMLParserTest XMLTreeTest XMLWriterTest XMLValidatorTest ChecksumTest ConfigurationTest",
    "configuration": "ConfigurationTest",
    "console": "ConsoleTest",
    "imaging": "ImageTest TGATest VectorMathTest",
    "checksum": "ChecksumTest",
    "statemachine": "StateMachineTest",
    "platform": "FileTest LogTest ThreadTest DesktopTest",
}
WITH_THREADS = {"foundation": ["LogTest", "ThreadTest"], "platform": ["LogTest", "ThreadTest"]}
TOO_SLOW = "DeepTreeTest.OnlyMemoryLimitsDepth"

# What no test can tell, since it decides on speed only.
UNTELLABLE = re.compile("|".join([
    r"\breserve\(",                       # memory in one piece
    r"prefetch|CACHE_LINE",               # memory asked for ahead
    r"\b(yieldThread|sched_yield)\(",  # hints to the scheduler
    r"\bTYPICAL_TOKEN_COUNT\b",             # memory in one piece
    r"\bstatic_assert\b",                 # told by the compiler
]))

COMMENTS_AND_TEXTS = re.compile(
    r"""//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'""",
    re.S | re.M)
SWAPS = [  # kind, what to look for, what takes its place
    ("comparison", r"(?<= )(?:[<>=!]=|[<>])(?=\s)",
     {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}),
    ("arithmetic", r"(?<= )(?:<<|>>|[-+*/%&|^])=?(?=\s)",
     {"+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&", "^": "|", "<<": ">>",
      ">>": "<<", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|="}),
    ("step", r"\+\+|--", {"++": "--", "--": "++"}),
    ("logic", r"(?<= )(?:&&|\|\|)(?=\s)", {"&&": "||", "||": "&&"}),
    ("flag", r"\b(?:true|false)\b", {"true": "false", "false": "true"}),
    ("jump", r"\b(?:break|continue)(?=;)", {"break": "continue", "continue": "break"}),
    ("negation", r"!(?=[\w(*])", {"!": ""}),
]
NUMBER = re.compile(r"(?<![\w.])(?:0x[0-9a-fA-F]+|\d+\.\d+|0|[1-9]\d*)(?=[uUlLfF]*\b)")
CONDITION = re.compile(r"\b(?:if|while) \(")
RETURN = re.compile(r"\breturn ([^;]+);")
EMPTY_VALUES = {"0", "nullptr", "false", '""', "{}", "std::nullopt", "0.0f"}
STATEMENT = re.compile(r"(?<=[;{}:)])\s*([^;{}]*?[(=+-][^;{}]*);")
NO_STATEMENT = re.compile(
    r"(?:return|using|throw|case|for|if|while|else|constexpr|public|private)\b|.*= (?:default|delete)$"
    r"|[\w:<>,*& ]+[ *&]\w+ = ", re.S)

Fault = collections.namedtuple("Fault", "file start end kind new name")


def plain(text):
    """The text with blanks for comments and preprocessor lines, and ~ for what stands in quotes."""
    def blank(match):
        piece = match.group()
        if piece[0] in "\"'":
            return piece[0] + "~" * (len(piece) - 2) + piece[0]
        return re.sub(r"[^\n]", " ", piece)
    return COMMENTS_AND_TEXTS.sub(blank, text)


def closing(code, position):
    """Where the parenthesis that opens at the position is closed."""
    depth = 0
    while True:
        depth += {"(": 1, ")": -1}.get(code[position], 0)
        if depth == 0:
            return position
        position += 1


def changes(text):
    """Yields what can be changed, as kind, start, end, new text."""
    code = plain(text)
    for kind, pattern, new in SWAPS:
        for match in re.finditer(pattern, code):
            if match.group() in new:
                yield kind, match.start(), match.end(), new[match.group()]
    for match in NUMBER.finditer(code):
        number = match.group()
        yield "number", match.start(), match.end(), str(float(number) + 1 if "." in number else int(number, 0) + 1)
    for match in CONDITION.finditer(code):
        begin, end = match.end(), closing(code, match.end() - 1)
        yield "condition", begin, end, "!(" + text[begin:end] + ")"
    for match in RETURN.finditer(code):
        if match.group(1) not in EMPTY_VALUES:
            yield "return", match.start(1), match.end(1), "{}"
    for match in STATEMENT.finditer(code):
        if not NO_STATEMENT.match(match.group(1)):
            yield "statement", match.start(1), match.end(1), ""
    for match in COMMENTS_AND_TEXTS.finditer(text):
        start, end, piece = match.start(), match.end(), match.group()
        if piece[0] == '"' and code[start] == '"':
            yield "text", end - 1, end - 1, "x"
        elif piece[0] == "'" and code[start] == "'":
            yield "character", start, end, "'%s'" % ("y" if piece == "'x'" else "x")


def find_faults(file):
    text = (TREE / file).read_text()
    for kind, start, end, new in changes(text):
        line_start = text.rfind("\n", 0, start) + 1
        piece = text[line_start:text.find("\n", end)]
        if UNTELLABLE.search(piece):
            continue
        old = text[start:end] if kind != "text" else text[text.rfind('"', 0, start):end + 1]
        name = "%s:%d:%d: %s: %s -> %s" % (file, text.count("\n", 0, start) + 1, start - line_start + 1,
                                           kind, " ".join(old.split()), " ".join(new.split()))
        yield Fault(file, start, end, kind, new, name)


def choose(faults, generator):
    """Shuffles, and takes the kinds in turn, so that a sample has some of each."""
    kinds = collections.defaultdict(list)
    for fault in faults:
        kinds[fault.kind].append(fault)
    for members in kinds.values():
        generator.shuffle(members)
    while kinds:
        for kind in sorted(kinds):
            yield kinds[kind].pop()
            if not kinds[kind]:
                del kinds[kind]


def copy_tree():
    """Makes the copy anew. Files keep their times, so that only what has changed is built again."""
    shutil.rmtree(TREE, ignore_errors=True)
    for name in ["cmake", "include", "src", "examples", "tests"]:
        shutil.copytree(ROOT / name, TREE / name)
    shutil.copy2(ROOT / "CMakeLists.txt", TREE)


def run(command, seconds=None, memory=None, **options):
    """Runs a command in a process group of its own, which is ended when the time is up."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (PROCESSOR_LIMIT, PROCESSOR_LIMIT))
        if memory:
            resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=limit, **options)
    try:
        output, _ = process.communicate(timeout=seconds)
        return process.returncode, output.decode(errors="replace")
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        # Not to the end of the output: a child in a session of its own may hold it open.
        process.wait()
        process.stdout.close()
        return "time", ""


class Build:
    """The copy, built in one way, and with a fault in it where one is asked for."""

    def __init__(self, folders, sanitizer=""):
        self.sanitizer = sanitizer
        self.folder = WORK / (sanitizer.replace(",", "-") or "plain")
        lists = (TREE / "tests" / "CMakeLists.txt").read_text()
        self.subjects = re.findall(r"^ *add_subject\((?!windows/)(?:posix/)?(\w+)", lists, re.M)
        if sanitizer:
            self.subjects = sorted({s for folder in folders for s in self.closest(folder)})
        replays = re.findall(r"^ *add_fuzz_target\((\w+)", (TREE / "tests/fuzz/CMakeLists.txt").read_text(), re.M)
        targets = self.subjects + [name + "Replay" for name in replays] + ["qorhost"]
        configure = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DQORTK_SANITIZE=" + sanitizer,
                     "-DBUILD_SHARED_LIBS=ON", "-DQORTK_INSTALL=OFF", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]
        for command in [["cmake", "-Wno-dev", "-S", TREE, "-B", self.folder] + configure,
                        ["cmake", "--build", self.folder, "--parallel", str(os.cpu_count()), "--target"] + targets]:
            status, output = run(command)
            if status != 0:
                sys.exit(output)
        self.compiling = {}
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            file = os.path.relpath(entry["file"], TREE)
            if file.startswith("src/"):
                self.compiling[file] = entry
        status, listed = run(["ctest", "--show-only=json-v1"], cwd=self.folder)
        self.scripts = [test["command"] for test in json.loads(listed)["tests"]
                        if re.match("Host|.*Replay$", test["name"])]

    def closest(self, folder):
        """The test programs for a folder, those that look most closely first."""
        if self.sanitizer == "thread":
            return WITH_THREADS.get(folder, [])
        closest = CLOSEST[folder].split()
        if self.sanitizer:
            return closest
        return closest + [s for s in self.subjects
                          if s not in closest and (s != "DeepTreeTest" or folder == "xml")]

    def units_of(self, file):
        """The sources that a file of src/ is compiled with."""
        if file in self.compiling:
            return [file]
        users = [str(f.relative_to(TREE)) for f in (TREE / "src").rglob("*.*")
                 if '"%s"' % file[len("src/"):] in f.read_text()]
        return sorted({unit for user in users for unit in self.units_of(user)})

    def make(self, fault, worker):
        """Builds the library with the fault in the worker's folder. @return whether that changed it"""
        text = (TREE / fault.file).read_text()
        copy = worker / fault.file
        copy.write_text(text[:fault.start] + fault.new + text[fault.end:])
        try:
            return self.compile(self.units_of(fault.file), worker)
        finally:
            copy.write_text(text)

    def compile(self, units, worker):
        link = shlex.split((self.folder / "src/CMakeFiles/qortk.dir/link.txt").read_text())
        has_changed = False
        for unit in units:
            entry = self.compiling[unit]
            command = shlex.split(entry["command"].replace(str(TREE / "src"), str(worker / "src")))
            place = command.index("-o") + 1
            former, command[place] = command[place], str(worker / (unit.replace("/", "-") + ".o"))
            link[link.index(former)] = command[place]
            if run(command, 60, cwd=entry["directory"])[0] != 0:
                return False
            former = pathlib.Path(entry["directory"], former)
            has_changed = has_changed or former.read_bytes() != pathlib.Path(command[place]).read_bytes()
        if not has_changed:
            return False
        soname = next(part for part in link if part.startswith("-Wl,-soname,")).split(",")[-1]
        link[link.index("-o") + 1] = str(worker / soname)
        return run(link + ["-Wl,-z,defs"], 60, cwd=self.folder / "src")[0] == 0

    def failing(self, subjects, worker):
        """@return the first test program that tells a fault; None if all pass"""
        temporary = worker / "tmp"
        environment = dict(os.environ, LD_LIBRARY_PATH=str(worker), TMPDIR=str(temporary),
                           TZ="Pacific/Chatham", ASAN_OPTIONS="hard_rss_limit_mb=8192")
        commands = [(s, [self.folder / "tests" / s, "--gtest_brief=1", "--gtest_fail_fast",
                         "--gtest_filter=-" + TOO_SLOW]) for s in subjects]
        for script in self.scripts:
            own = [re.sub("^-DFOLDER=.*", "-DFOLDER=%s/host" % temporary, part) for part in script]
            commands.append((own[1].split("/")[-1], own))
        for name, command in commands:
            shutil.rmtree(temporary, ignore_errors=True)
            temporary.mkdir()
            status, output = run(command, TIME_LIMIT * (3 if self.sanitizer else 1),
                                 0 if self.sanitizer else MEMORY_LIMIT, cwd=temporary, env=environment)
            # A child that goes on in its parent's place may fail while that one ends well, and a fault
            # may end the program before its tests are done.
            is_cut_short = name in subjects and "  PASSED  " not in output
            if status != 0 or "  FAILED  " in output or is_cut_short:
                test = re.search(r"\[  FAILED  \] ([\w.]+)", output)
                return test.group(1) if test else "%s (%s)" % (name, status)
        return None


def try_fault(fault, builds, workers):
    """@return what told the fault; None if nothing did, and "" if it does not count"""
    worker = workers.get()
    try:
        folder = fault.file.split("/")[1]
        for build in builds:
            subjects = build.closest(folder)
            if not subjects:
                continue
            if not build.make(fault, worker):
                return ""
            told = build.failing(subjects, worker)
            if told:
                return told
        return None
    finally:
        workers.put(worker)


def try_some(faults, count, builds, workers, jobs):
    """Tries faults until so many count, and tells how each fared.
    @return how many counted, how many did not, and which survived
    """
    counted, survivors, voids = 0, [], 0
    faults = iter(faults)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        running = {}
        while True:
            room = min(jobs, count - counted) - len(running)
            for fault in itertools.islice(faults, max(room, 0)):
                running[pool.submit(try_fault, fault, builds, workers)] = fault
            if not running:
                return counted, voids, survivors
            done = next(concurrent.futures.as_completed(running))
            fault, told = running.pop(done), done.result()
            if told == "":
                voids += 1
                continue
            counted += 1
            if told is None:
                survivors.append(fault.name)
            print("%-9s %s%s" % ("told" if told else "SURVIVED", fault.name, " | " + told if told else ""),
                  flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folders", nargs="*", metavar="FOLDER", help="of src/: " + ", ".join(CLOSEST))
    parser.add_argument("--count", type=int, default=20, help="how many faults in each folder")
    parser.add_argument("--seed", type=int, default=1, help="chooses another sample")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at a time")
    parser.add_argument("--plain", action="store_true", help="leave the sanitizers out")
    parser.add_argument("--survivors", metavar="FILE", help="write those that no test told here")
    parser.add_argument("--only", metavar="FILE", help="try the faults listed there")
    options = parser.parse_args()

    copy_tree()
    folders = options.folders or list(CLOSEST)
    files = sorted(str(f.relative_to(TREE)) for f in (TREE / "src").rglob("*.*") if f.suffix in (".h", ".cpp"))
    faults = {folder: [fault for file in files if file.split("/")[1] == folder
                       for fault in find_faults(file)] for folder in folders}
    if options.only:
        wanted = set(pathlib.Path(options.only).read_text().splitlines())
        faults = {folder: [f for f in all_ if f.name in wanted] for folder, all_ in faults.items()}
    folders = [folder for folder in folders if faults[folder]]
    builds = [Build(folders)]
    if not options.plain:
        builds += [Build(folders, "address,undefined"), Build(folders, "thread")]
    workers = queue.Queue()
    for number in range(options.jobs):
        worker = WORK / ("worker%d" % number)
        shutil.rmtree(worker, ignore_errors=True)
        shutil.copytree(TREE / "src", worker / "src")
        workers.put(worker)
        for build in builds:
            failing = build.failing(build.subjects, worker)
            if failing:
                sys.exit("Without any fault, this fails: " + failing)

    table, survivors = [], []
    for folder, all_ in faults.items():
        sample = all_ if options.only else choose(all_, random.Random("%s %d" % (folder, options.seed)))
        counted, voids, left = try_some(sample, len(all_) if options.only else options.count, builds, workers,
                                        options.jobs)
        survivors += left
        share = "%.0f %%" % (100 * (counted - len(left)) / counted) if counted else ""
        table.append((folder, counted, counted - len(left), len(left), voids, share))
    print("\n%-14s%9s%9s%10s%14s%8s" % ("", "planted", "told", "survived", "did not count", "told"))
    for row in table:
        print("%-14s%9d%9d%10d%14d%8s" % row)
    print("\nSurvivors:\n" + "\n".join(survivors))
    if options.survivors:
        pathlib.Path(options.survivors).write_text("".join(name + "\n" for name in survivors))


if __name__ == "__main__":
    main()
