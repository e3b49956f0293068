#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Mutation testing: plants bugs in src/, one at a time, and checks that a test finds each of them.

    scripts/mutate.py                          20 mutations in each directory of src/
    scripts/mutate.py xml console --count 60   60 mutations in each of these two directories
    scripts/mutate.py --survivors left.txt     also lists the survivors in a file
    scripts/mutate.py --only left.txt          tries the mutations in that file again

Works on a copy under build/mutate and changes no other files. A mutation is killed if a test fails, crashes
or hangs. Other mutations are tried again with AddressSanitizer, UndefinedBehaviorSanitizer and, in directories
with threads, ThreadSanitizer. Mutations that do not compile, or do not change the object code, are not counted.
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
TIME_LIMIT = 20  # seconds for a test program without a sanitizer
PROCESSOR_LIMIT = 300  # seconds of processor time, for child processes that the time limit does not end
MEMORY_LIMIT = 8 << 30

# The test programs that check a directory most thoroughly. They run before the others.
FIRST_TESTS = {
    "foundation": "StringUtilTest MathTest FileTest LogTest ThreadTest DesktopTest ConfigurationTest",
    "xml": "XMLParserTest XMLTreeTest XMLWriterTest XMLValidatorTest ChecksumTest ConfigurationTest",
    "configuration": "ConfigurationTest",
    "console": "ConsoleTest",
    "imaging": "ImageTest TGATest VectorMathTest",
    "checksum": "ChecksumTest",
    "statemachine": "StateMachineTest",
    "platform": "FileTest LogTest ThreadTest DesktopTest DiskFaultTest PosixTest PosixLogTest",
}
WITH_THREADS = {"foundation": ["LogTest", "ThreadTest"], "platform": ["LogTest", "ThreadTest"]}
TOO_SLOW = "DeepTreeTest.OnlyMemoryLimitsDepth"

# Lines that affect only the speed or the compilation, so that no test can find a bug in them.
UNTESTABLE = re.compile("|".join([
    r"\breserve\(",                     # allocation in advance
    r"prefetch|CACHE_LINE",             # hints to the processor
    r"\b(yieldThread|sched_yield)\(",   # hints to the scheduler
    r"\bstatic_assert\b",               # checked by the compiler
]))

COMMENTS_AND_TEXTS = re.compile(
    r"""//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'""",
    re.S | re.M)
SWAPS = [  # kind, pattern, replacements
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

Mutation = collections.namedtuple("Mutation", "file start end kind new name")


def mask_texts(text):
    """Returns a text of equal length with blanks for comments and preprocessor lines, and ~ for quoted characters."""
    def blank(match):
        piece = match.group()
        if piece[0] in "\"'":
            return piece[0] + "~" * (len(piece) - 2) + piece[0]
        return re.sub(r"[^\n]", " ", piece)
    return COMMENTS_AND_TEXTS.sub(blank, text)


def find_closing(code, position):
    """Returns the position of the parenthesis that closes the one at a position."""
    depth = 0
    while True:
        depth += {"(": 1, ")": -1}.get(code[position], 0)
        if depth == 0:
            return position
        position += 1


def find_changes(text):
    """Yields the kind, start, end and new text of each possible change."""
    code = mask_texts(text)
    for kind, pattern, new in SWAPS:
        for match in re.finditer(pattern, code):
            if match.group() in new:
                yield kind, match.start(), match.end(), new[match.group()]
    for match in NUMBER.finditer(code):
        number = match.group()
        yield "number", match.start(), match.end(), str(float(number) + 1 if "." in number else int(number, 0) + 1)
    for match in CONDITION.finditer(code):
        begin, end = match.end(), find_closing(code, match.end() - 1)
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


def find_mutations(file):
    """Yields all mutations of a file."""
    text = (TREE / file).read_text()
    for kind, start, end, new in find_changes(text):
        line_start = text.rfind("\n", 0, start) + 1
        piece = text[line_start:text.find("\n", end)]
        if UNTESTABLE.search(piece):
            continue
        old = text[start:end] if kind != "text" else text[text.rfind('"', 0, start):end + 1]
        name = "%s:%d:%d: %s: %s -> %s" % (file, text.count("\n", 0, start) + 1, start - line_start + 1,
                                           kind, " ".join(old.split()), " ".join(new.split()))
        yield Mutation(file, start, end, kind, new, name)


def choose(mutations, generator):
    """Yields mutations in random order, with the kinds in turn, so that a sample has all kinds."""
    kinds = collections.defaultdict(list)
    for mutation in mutations:
        kinds[mutation.kind].append(mutation)
    for members in kinds.values():
        generator.shuffle(members)
    while kinds:
        for kind in sorted(kinds):
            yield kinds[kind].pop()
            if not kinds[kind]:
                del kinds[kind]


def copy_tree():
    """Copies the sources. Files keep their times, so that only changed files are compiled again."""
    shutil.rmtree(TREE, ignore_errors=True)
    for name in ["cmake", "include", "src", "examples", "tests"]:
        shutil.copytree(ROOT / name, TREE / name)
    shutil.copy2(ROOT / "CMakeLists.txt", TREE)


def run(command, seconds=None, memory=None, **options):
    """Runs a command in a new session and kills it after a time limit.

    Returns the exit status, or "time", and the output.
    """
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
        # Does not read the rest of the output: a child process in another session may keep the pipe open.
        process.wait()
        process.stdout.close()
        return "time", ""


def read_environment(test):
    """Returns the environment variables of a test that ctest lists."""
    values = {entry["name"]: entry["value"] for entry in test["properties"]}
    return dict(variable.split("=", 1) for variable in values.get("ENVIRONMENT", []))


class Build:
    """A build of the copy with or without sanitizers, and of the library with one mutation."""

    def __init__(self, directories, sanitizer=""):
        self.sanitizer = sanitizer
        self.directory = WORK / (sanitizer.replace(",", "-") or "plain")
        lists = (TREE / "tests" / "CMakeLists.txt").read_text()
        self.tests = re.findall(r"^ *add_subject\((?!windows/)(?:posix/)?(\w+)", lists, re.M)
        if sanitizer:
            self.tests = sorted({test for directory in directories for test in self.select_tests(directory)})
        replays = re.findall(r"^ *add_fuzz_target\((\w+)", (TREE / "tests/fuzz/CMakeLists.txt").read_text(), re.M)
        targets = self.tests + [name + "Replay" for name in replays] + ["qorhost"]
        configure = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DQORTK_SANITIZE=" + sanitizer,
                     "-DBUILD_SHARED_LIBS=ON", "-DQORTK_INSTALL=OFF", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]
        for command in [["cmake", "-Wno-dev", "-S", TREE, "-B", self.directory] + configure,
                        ["cmake", "--build", self.directory, "--parallel", str(os.cpu_count()), "--target"] + targets]:
            status, output = run(command)
            if status != 0:
                sys.exit(output)
        self.compiling = {}
        for entry in json.loads((self.directory / "compile_commands.json").read_text()):
            file = os.path.relpath(entry["file"], TREE)
            if file.startswith("src/"):
                self.compiling[file] = entry
        status, listed = run(["ctest", "--show-only=json-v1"], cwd=self.directory)
        self.scripts = [(test["name"], test["command"], read_environment(test))
                        for test in json.loads(listed)["tests"] if re.match("Host|.*Replay$", test["name"])]

    def select_tests(self, directory):
        """Returns the test programs for a directory, the most thorough ones first."""
        if self.sanitizer == "thread":
            return WITH_THREADS.get(directory, [])
        first = FIRST_TESTS[directory].split()
        if self.sanitizer:
            return first
        return first + [test for test in self.tests
                        if test not in first and (test != "DeepTreeTest" or directory == "xml")]

    def find_units(self, file):
        """Returns the translation units that contain a file of src/."""
        if file in self.compiling:
            return [file]
        users = [str(f.relative_to(TREE)) for f in (TREE / "src").rglob("*.*")
                 if '"%s"' % file[len("src/"):] in f.read_text()]
        return sorted({unit for user in users for unit in self.find_units(user)})

    def build_mutant(self, mutation, worker):
        """Builds the library with a mutation in the worker's directory. Returns whether the library has changed."""
        text = (TREE / mutation.file).read_text()
        copy = worker / mutation.file
        copy.write_text(text[:mutation.start] + mutation.new + text[mutation.end:])
        try:
            return self.compile(self.find_units(mutation.file), worker)
        finally:
            copy.write_text(text)

    def compile(self, units, worker):
        """Compiles and links the worker's sources. Returns false on failure or if the object code is unchanged."""
        link = shlex.split((self.directory / "src/CMakeFiles/qortk.dir/link.txt").read_text())
        has_changed = False
        for unit in units:
            entry = self.compiling[unit]
            command = shlex.split(entry["command"].replace(str(TREE / "src"), str(worker / "src")))
            index = command.index("-o") + 1
            original, command[index] = command[index], str(worker / (unit.replace("/", "-") + ".o"))
            link[link.index(original)] = command[index]
            if run(command, 60, cwd=entry["directory"])[0] != 0:
                return False
            original = pathlib.Path(entry["directory"], original)
            has_changed = has_changed or original.read_bytes() != pathlib.Path(command[index]).read_bytes()
        if not has_changed:
            return False
        soname = next(part for part in link if part.startswith("-Wl,-soname,")).split(",")[-1]
        link[link.index("-o") + 1] = str(worker / soname)
        return run(link + ["-Wl,-z,defs"], 60, cwd=self.directory / "src")[0] == 0

    def find_failure(self, tests, worker):
        """Returns the name of the first test that fails with the worker's library; None if all pass."""
        temporary = worker / "tmp"
        environment = dict(os.environ, LD_LIBRARY_PATH=str(worker), TMPDIR=str(temporary),
                           TZ="Pacific/Chatham", ASAN_OPTIONS="hard_rss_limit_mb=8192")
        commands = [(test, [self.directory / "tests" / test, "--gtest_brief=1", "--gtest_fail_fast",
                            "--gtest_filter=-" + TOO_SLOW], {}) for test in tests]
        for name, script, variables in self.scripts:
            command = [re.sub("^-DFOLDER=.*", "-DFOLDER=%s/host" % temporary, part) for part in script]
            commands.append((name, command, variables))
        for name, command, variables in commands:
            shutil.rmtree(temporary, ignore_errors=True)
            temporary.mkdir()
            status, output = run(command, TIME_LIMIT * (3 if self.sanitizer else 1),
                                 0 if self.sanitizer else MEMORY_LIMIT, cwd=temporary,
                                 env={**environment, **variables})
            # The exit status is not sufficient: a forked child process may report the failure, and a mutation may
            # end the program before all tests have run.
            is_incomplete = name in tests and "  PASSED  " not in output
            if status != 0 or "  FAILED  " in output or is_incomplete:
                test = re.search(r"\[  FAILED  \] ([\w.]+)", output)
                return test.group(1) if test else "%s (%s)" % (name, status)
        return None


def try_mutation(mutation, builds, workers):
    """Returns the test that kills a mutation; None if it survives, "" if it is not counted."""
    worker = workers.get()
    try:
        directory = mutation.file.split("/")[1]
        for build in builds:
            tests = build.select_tests(directory)
            if not tests:
                continue
            if not build.build_mutant(mutation, worker):
                return ""
            killer = build.find_failure(tests, worker)
            if killer:
                return killer
        return None
    finally:
        workers.put(worker)


def try_mutations(mutations, count, builds, workers, jobs):
    """Tries mutations until a number of them are counted, and prints the result of each.

    Returns the number of counted mutations, the number of others, and the names of the survivors.
    """
    counted, survivors, uncounted = 0, [], 0
    mutations = iter(mutations)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        running = {}
        while True:
            free = min(jobs, count - counted) - len(running)
            for mutation in itertools.islice(mutations, max(free, 0)):
                running[pool.submit(try_mutation, mutation, builds, workers)] = mutation
            if not running:
                return counted, uncounted, survivors
            done = next(concurrent.futures.as_completed(running))
            mutation, killer = running.pop(done), done.result()
            if killer == "":
                uncounted += 1
                continue
            counted += 1
            if killer is None:
                survivors.append(mutation.name)
            print("%-9s %s%s" % ("killed" if killer else "SURVIVED", mutation.name, " | " + killer if killer else ""),
                  flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("directories", nargs="*", metavar="DIRECTORY",
                        help="directory of src/: " + ", ".join(FIRST_TESTS))
    parser.add_argument("--count", type=int, default=20, help="number of mutations in each directory")
    parser.add_argument("--seed", type=int, default=1, help="seed of the random sample")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="number of parallel jobs")
    parser.add_argument("--plain", action="store_true", help="do not use sanitizers")
    parser.add_argument("--survivors", metavar="FILE", help="write the list of survivors to this file")
    parser.add_argument("--only", metavar="FILE", help="try only the mutations listed in this file")
    options = parser.parse_args()

    copy_tree()
    directories = options.directories or list(FIRST_TESTS)
    files = sorted(str(f.relative_to(TREE)) for f in (TREE / "src").rglob("*.*") if f.suffix in (".h", ".cpp"))
    mutations = {directory: [mutation for file in files if file.split("/")[1] == directory
                             for mutation in find_mutations(file)] for directory in directories}
    if options.only:
        wanted = set(pathlib.Path(options.only).read_text().splitlines())
        mutations = {directory: [mutation for mutation in candidates if mutation.name in wanted]
                     for directory, candidates in mutations.items()}
    directories = [directory for directory in directories if mutations[directory]]
    builds = [Build(directories)]
    if not options.plain:
        builds += [Build(directories, "address,undefined"), Build(directories, "thread")]
    workers = queue.Queue()
    for number in range(options.jobs):
        worker = WORK / ("worker%d" % number)
        shutil.rmtree(worker, ignore_errors=True)
        shutil.copytree(TREE / "src", worker / "src")
        workers.put(worker)
        for build in builds:
            failure = build.find_failure(build.tests, worker)
            if failure:
                sys.exit("This test fails without a mutation: " + failure)

    table, survivors = [], []
    for directory, candidates in mutations.items():
        sample = candidates if options.only else choose(candidates, random.Random("%s %d" % (directory, options.seed)))
        counted, uncounted, left = try_mutations(sample, len(candidates) if options.only else options.count, builds,
                                                 workers, options.jobs)
        survivors += left
        share = "%.0f %%" % (100 * (counted - len(left)) / counted) if counted else ""
        table.append((directory, counted, counted - len(left), len(left), uncounted, share))
    print("\n%-14s%9s%9s%10s%14s%8s" % ("", "counted", "killed", "survived", "not counted", "killed"))
    for row in table:
        print("%-14s%9d%9d%10d%14d%8s" % row)
    print("\nSurvivors:\n" + "\n".join(survivors))
    if options.survivors:
        pathlib.Path(options.survivors).write_text("".join(name + "\n" for name in survivors))


if __name__ == "__main__":
    main()
