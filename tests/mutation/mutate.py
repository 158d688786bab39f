#!/usr/bin/env python3
"""Changes the rules at random, one change at a time, and tells whether the tests notice.

usage: tests/mutation/mutate.py [--seed N] [--count N] [--only FILE…] [--jobs N] [--faults]
                                [--matching REGEX] [--prepare]

Works on a copy of the project in build/mutation/; the project itself stays as it is. What counts
as a change stands in changes.py. Each change touches one source: that source is compiled and
linked in front of the libraries, and the tests run until the first that fails: the scenarios of
the rule's area, the tables of decisions and of host calls, the C++ tests of its folder, all other
scenarios, and with --faults every statement of every scenario failing, which takes long. A change
that no compiler takes is drawn again. One that survives is looked up in equivalents.json, the list
of changes that change nothing, each with its reason; a change that leaves the optimised machine
code as it was is told by itself.

The same seed, count and sources give the same changes; with --matching, each change of a place
whose text matches is tried once, e.g. "Ready[A-Z]" for the calls that ready the host. Ends with
status 1 when fewer than 98 % of them were noticed.
"""

import argparse
import collections
import concurrent.futures
import itertools
import json
import os
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

import changes

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
WORK = os.path.join(TOP, "build", "mutation")
COPY = os.path.join(WORK, "source")
BUILD = os.path.join(COPY, "build", "dev")
EQUIVALENTS = os.path.join(TOP, "tests", "mutation", "equivalents.json")

RULE_FOLDERS = ("audit", "checks", "pricing", "balances", "billtypes")
HOST_SERVICES = ("foundation/host_services.cpp", "foundation/localized_text.cpp",
                 "foundation/plug_in.cpp")

# How often each kind of change is drawn.
WEIGHTS = {"operator": 3, "condition": 4, "row": 4, "call": 3, "text": 4, "number": 2}

# The scenario folders that speak of a source first; the others follow when these notice nothing.
AREAS = (
    (r"audit/", ["batch_audit", "inventory_posting", "stock_quantity"]),
    (r"checks/credit|checks/partner_bill", ["credit", "overdue", "batch_audit"]),
    (r"checks/overdue", ["overdue"]),
    (r"checks/related_bills", ["related_bills", "verification"]),
    (r"checks/stock_", ["stock_quantity", "batch_audit"]),
    (r"checks/verification", ["verification", "batch_audit"]),
    (r"pricing/limit_price", ["limit_price", "steel_limit_price"]),
    (r"pricing/general", ["limit_price"]),
    (r"pricing/steel", ["steel_limit_price"]),
    (r"pricing/negative_price", ["negative_price"]),
    (r"pricing/price_lookup", ["price_lookup"]),
    (r"balances/balance_update", ["balance_update"]),
    (r"balances/bill_deletion", ["bill_deletion", "assembly_disassembly", "transfer"]),
    (r"balances/periods", ["periods", "verification", "assembly"]),
    (r"billtypes/serial_numbers|billtypes/saved_bill",
     ["serial_numbers", "transfer", "assembly", "other_in_out"]),
    (r"billtypes/stock_check_bill", ["stock_check_bills"]),
    (r"billtypes/cls_other", ["other_in_out"]),
    (r"billtypes/cls_template", ["template"]),
    (r"billtypes/", ["transfer", "assembly", "assembly_disassembly", "template",
                     "stock_check_bills", "other_in_out"]),
    (r"foundation/localized_text", ["stock_check_bills"]),
    (r"foundation/", ["related_bills", "periods", "transfer", "batch_audit"]),
)

SLOWEST = 600  # seconds of a processor that a test program may take,
SLOWEST_SCENARIOS = 60  # and a few scenarios; a change may make a loop that never ends


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors="replace", **options)


def must(command, **options):
    done = run(command, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{done.stdout[-2000:]}{done.stderr[-2000:]}")
    return done.stdout


def prepare(faults):
    """Brings the copy up to date and builds it."""
    listed = must(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=TOP)
    wanted = {path for path in listed.splitlines() if os.path.isfile(os.path.join(TOP, path))}
    for path in sorted(wanted):
        source, target = os.path.join(TOP, path), os.path.join(COPY, path)
        if os.path.isfile(target) and open(source, "rb").read() == open(target, "rb").read():
            continue
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copy(source, target)
    for folder, folders, names in os.walk(COPY):
        folders[:] = [name for name in folders if name != "build"]
        for name in names:
            path = os.path.join(folder, name)
            if os.path.relpath(path, COPY) not in wanted:
                os.remove(path)
    must(["cmake", "--preset", "dev", "-DTAVCC_BY_FOLDER=OFF"], cwd=COPY)
    must(["cmake", "--build", "--preset", "dev", "-j", "2", "--target", "tavcc",
          *sorted(programs() - (set() if faults else {"faults_tests"}))], cwd=COPY)


def programs():
    """The test programs that speak of the rules."""
    folders = ["decisions", "host_calls", "faults", "foundation", "registry", *RULE_FOLDERS]
    return {folder + "_tests" for folder in folders
            if os.path.isdir(os.path.join(TOP, "tests", folder)) and any(
                name.endswith(".cpp") for name in os.listdir(os.path.join(TOP, "tests", folder)))}


def sources():
    found = list(HOST_SERVICES)
    for folder in RULE_FOLDERS:
        names = os.listdir(os.path.join(COPY, "src", folder))
        found += [f"{folder}/{name}" for name in names if name.endswith(".cpp")]
    return sorted(found)


class Compiler:
    """How the copy's build compiles a source and links a program."""

    def __init__(self):
        self.compile = {}
        for entry in json.load(open(os.path.join(BUILD, "compile_commands.json"))):
            name = os.path.relpath(entry["file"], os.path.join(COPY, "src"))
            self.compile[name] = shlex.split(entry["command"])
        self.link = {}

    def object_of(self, name, source, target, optimised=False):
        """Compiles a source's text in place of the source `name`; false when it does not."""
        command = [word for word in self.compile[name] if "ccache" not in word and word != "-Werror"]
        command = command[:command.index("-o")]
        command += ["-w", "-I" + os.path.join(COPY, "src", os.path.dirname(name))]
        command += ["-O2" if optimised else "-O0", "-g0", "-x", "c++", "-", "-c", "-o", target]
        return run(command, input=source, cwd=BUILD).returncode == 0

    def program(self, name, object_file, target):
        """Links a program with an object in front of its libraries; false where it lacks those that
        the source stands on, and so the source."""
        if name not in self.link:
            commands = must(["ninja", "-C", BUILD, "-t", "commands", "bin/" + name]).splitlines()
            self.link[name] = next(shlex.split(part) for line in reversed(commands)
                                   for part in line.split(" && ") if f"-o bin/{name}" in part)
        words = list(self.link[name])
        words[words.index("-o") + 1] = target
        words.insert(next(i for i, word in enumerate(words) if word.endswith(".a")), object_file)
        if shutil.which("ld.lld"):
            words += ["-fuse-ld=lld", "-Wl,--strip-debug"]
        done = run(words, cwd=BUILD)
        if done.returncode != 0 and "undefined" not in done.stderr:
            sys.exit(f"{name} does not link:\n{done.stderr[-2000:]}")
        return done.returncode == 0


def scenario_stages(name):
    """Scenario folders, those of the source's area first."""
    scenarios = os.path.join(COPY, "tests", "scenarios")
    folders = sorted(entry for entry in os.listdir(scenarios)
                     if os.path.isdir(os.path.join(scenarios, entry)))
    first = next(areas for pattern, areas in AREAS if re.match(pattern, name))
    return first, [folder for folder in folders if folder not in first]


def words_of(source, change):
    """What scenarios that reach a changed place are likely to hold: its texts, its ids."""
    ids = dict(re.findall(r"(k\w+) = (\d{7})", open(
        os.path.join(COPY, "src", "foundation", "bill_kinds.h"), encoding="utf-8").read()))
    words = []
    for token in changes.tokens_of(source):
        near = token.begin < change.end + 200 and token.end > change.begin - 200
        inside = token.begin < change.end + 1 and token.end > change.begin - 1
        if token.kind == "text" and inside:
            at = change.begin - token.begin
            words.append(token.text[max(1, at - 15):at + 15].strip('"'))
        elif token.kind == "number" and len(token.text) >= 4 and inside:
            words.append(token.text)
        elif token.text in ids and near:
            words.append(ids[token.text])
    return words


class Trial:
    """One changed source, and the tests on it."""

    def __init__(self, compiler, name, source, words=(), faults=False):
        self.compiler, self.name, self.source = compiler, name, source
        self.words, self.faults = words, faults

    def noticed_by(self):
        """The first test that fails, None when all pass; False when the change does not compile."""
        with tempfile.TemporaryDirectory(dir=WORK) as folder:
            self.folder = folder
            self.object = os.path.join(folder, "changed.o")
            if not self.compiler.object_of(self.name, self.source, self.object):
                return False
            for what, passes in self.stages():
                if not passes():
                    return what
            return None

    def stages(self):
        near, far = scenario_stages(self.name)
        for folder in near:
            yield "scenarios." + folder, lambda f=folder: self.scenarios(f)
        yield "decisions", lambda: self.program("decisions_tests")
        yield "host_calls", lambda: self.program("host_calls_tests")
        own = self.name.split("/")[0] + "_tests"
        if own in programs():
            yield own[:-6], lambda: self.program(own)
        for folder in far:
            yield "scenarios." + folder, lambda f=folder: self.scenarios(f)
        for other in sorted(programs() - {own, "decisions_tests", "host_calls_tests",
                                          "faults_tests"}):
            yield other[:-6], lambda o=other: self.program(o)
        if self.faults:
            yield "faults", lambda: self.program("faults_tests")

    def binary(self, program):
        """The path of a program with the changed source; None where it has no use for it."""
        path = os.path.join(self.folder, program)
        if not os.path.exists(path) and not self.compiler.program(program, self.object, path):
            return None
        return path

    def passes(self, command, limit=SLOWEST):
        def bounded():  # what hangs is told by the processor's time, however busy the machine is
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))
        done = subprocess.run(command, cwd=WORK, preexec_fn=bounded, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, env={**os.environ, "TAVCC_DSN": ""})
        return done.returncode == 0

    def scenarios(self, folder):
        """The files that speak of what was changed come first, the shortest of them before all."""
        folder = os.path.join(COPY, "tests", "scenarios", folder)
        files = {}
        for name in os.listdir(folder):
            with open(os.path.join(folder, name), encoding="utf-8") as file:
                files[os.path.join(folder, name)] = file.read()
        order = sorted(files, key=lambda path: (
            -sum(word in files[path] for word in self.words), len(files[path])))
        few = 1
        while order:
            if not self.passes([self.binary("tavcc"), "run", *order[:few]], SLOWEST_SCENARIOS):
                return False
            order = order[few:]
            few *= 2
        return True

    def program(self, program):
        binary = self.binary(program)
        return binary is None or self.passes([binary, "--gtest_brief=1", "--gtest_fail_fast"])


def same_code(compiler, name, before, after):
    """Whether an optimising compiler makes the same of both."""
    with tempfile.TemporaryDirectory(dir=WORK) as folder:
        target = os.path.join(folder, "changed.o")
        code = []
        for text in (before, after):
            if not compiler.object_of(name, text, target, optimised=True):
                return False
            code.append(must(["objdump", "-d", "-r", "-s", target]))
        return code[0] == code[1]


def known_equivalent(name, before, after):
    for entry in json.load(open(EQUIVALENTS, encoding="utf-8")):
        if (entry["file"], entry["from"], entry["to"]) == (name, before, after):
            return entry["why"]
    return None


def refuse_if_red(compiler, faults):
    """Ends the run when a test fails with nothing changed: every change would seem noticed."""
    name = "audit/batch_audit.cpp"
    text = open(os.path.join(COPY, "src", name), encoding="utf-8").read()
    failing = Trial(compiler, name, text, faults=faults).noticed_by()
    if failing is False:
        sys.exit(f"{name} does not compile, unchanged")
    if failing is not None:
        sys.exit(f"{failing} fails with nothing changed: mend that first")


def draw(seed, files):
    """Changes without end, the same for the same seed and sources."""
    randomness = random.Random(seed)
    places = {kind: [] for kind in WEIGHTS}
    texts = {}
    for name in files:
        texts[name] = open(os.path.join(COPY, "src", name), encoding="utf-8").read()
        for kind, found in changes.changes_of(texts[name]).items():
            places[kind] += [(name, change) for change in found]
    kinds = [kind for kind in WEIGHTS if places[kind]]
    seen = set()
    while True:
        kind = randomness.choices(kinds, [WEIGHTS[kind] for kind in kinds])[0]
        name, change = randomness.choice(places[kind])
        if (name, change) not in seen:
            seen.add((name, change))
            yield name, texts[name], change


def all_matching(pattern, files):
    """Every change of a place whose text matches, in the order of the sources."""
    for name in files:
        text = open(os.path.join(COPY, "src", name), encoding="utf-8").read()
        for found in changes.changes_of(text).values():
            for change in found:
                if re.search(pattern, text[change.begin:change.end]):
                    yield name, text, change


def attempt(compiler, faults, name, text, change):
    changed = changes.apply(text, change)
    started = time.monotonic()
    verdict = Trial(compiler, name, changed, words_of(text, change), faults).noticed_by()
    before, after = changes.before_and_after(text, change)
    why = None
    if verdict is None:
        why = known_equivalent(name, before, after)
        if why is None and same_code(compiler, name, text, changed):
            why = "the optimised machine code is the same"
    line = text.count("\n", 0, change.begin) + 1
    return {"file": name, "line": line, "kind": change.kind, "from": before, "to": after,
            "noticed_by": verdict, "equivalent": why,
            "seconds": round(time.monotonic() - started, 1)}


def show(number, result):
    if result["noticed_by"]:
        told = "noticed by " + result["noticed_by"]
    elif result["equivalent"]:
        told = "changes nothing: " + result["equivalent"]
    else:
        told = "SURVIVED"
    print(f"{number:4} {result['seconds']:6.1f}s {result['file']}:{result['line']} "
          f"{result['kind']}: {told}")
    if not result["noticed_by"]:
        print(f"       - {result['from']}\n       + {result['to']}")
    sys.stdout.flush()


def tried(attempt_one, drawn, jobs):
    """The results of the changes in the order in which they were drawn, several at work at once."""
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        ahead = collections.deque()
        try:
            while True:
                for one in itertools.islice(drawn, 20 * jobs - len(ahead)):
                    ahead.append(pool.submit(attempt_one, one))
                if not ahead:
                    return
                yield ahead.popleft().result()
        finally:
            pool.shutdown(cancel_futures=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--only", nargs="*", default=[], help="sources, e.g. checks/credit.cpp")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--matching", metavar="REGEX",
                        help="every change of a text that matches, in place of random ones")
    parser.add_argument("--faults", action="store_true", help="let every statement fail, too")
    parser.add_argument("--prepare", action="store_true", help="build the copy and stop")
    options = parser.parse_args()
    os.makedirs(COPY, exist_ok=True)
    prepare(options.faults)
    if options.prepare:
        return 0
    compiler = Compiler()
    refuse_if_red(compiler, options.faults)
    files = options.only or sources()
    if options.matching:
        drawn = all_matching(options.matching, files)
    else:
        drawn = itertools.islice(draw(options.seed, files), 100 * options.count)
    results = []
    for result in tried(lambda one: attempt(compiler, options.faults, *one), drawn, options.jobs):
        if result["noticed_by"] is False:
            continue  # no compiler takes it
        results.append(result)
        show(len(results), result)
        if len(results) == options.count and not options.matching:
            break
    noticed = sum(bool(result["noticed_by"]) for result in results)
    nothing = sum(bool(result["equivalent"]) for result in results)
    survived = len(results) - noticed - nothing
    share = 100 * noticed / max(1, noticed + survived)
    print(f"{len(results)} changes: {noticed} noticed, {survived} survived, {nothing} changed "
          f"nothing; {share:.1f} % of those that changed something were noticed")
    with open(os.path.join(WORK, "results.json"), "w", encoding="utf-8") as out:
        json.dump(results, out, ensure_ascii=False, indent=1)
    return 0 if share >= 98 else 1


if __name__ == "__main__":
    sys.exit(main())
