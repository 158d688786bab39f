#!/usr/bin/env python3
"""Holds the project's style where a compiler cannot: see CONTRIBUTING.md, "Style".

usage: check_style.py SOURCE_DIR BUILD_DIR

Prints one line for each finding, "file:line: what to do", and ends with status 1 if there is any.
"""

import json
import os
import re
import subprocess
import sys

MAX_COLUMNS = 100

RULE_FOLDERS = {"audit", "checks", "pricing", "balances", "billtypes"}
CORE = {"foundation"} | RULE_FOLDERS | {"registry"}

# Which folders of src/ a folder may include: the arrows of docs/architecture.md.
MAY_INCLUDE = {
    "foundation": {"foundation"},
    "balances": {"foundation", "balances"},
    "checks": {"foundation", "balances", "checks"},
    "pricing": {"foundation", "pricing"},
    "audit": {"foundation", "balances", "checks", "pricing", "audit"},
    "billtypes": {"foundation", "balances", "billtypes"},
    "registry": CORE,
    "embedded": {"foundation", "embedded"},
    "odbc": {"foundation", "odbc"},
    "host": {"foundation", "embedded", "odbc", "host"},
    "automation": CORE | {"host", "embedded", "automation"},
    # The reference host as automation objects shares the border with the server.
    "host/automation": {"foundation", "embedded", "host", "automation"},
}

# The stages of the embedded database: a folder includes those before it, and itself.
STAGES = ["types", "functions", "syntax", "catalog", "bind", "rewrite", "emit", "plan", "session"]
EMBEDDED = "src/embedded/"

# System headers that one folder of src/ keeps to itself.
KEPT_TO = {
    "automation": re.compile(
        r"^(windows|windowsx|ole2|oleauto|oaidl|objbase|objidl|unknwn|ocidl|olectl|combaseapi|"
        r"comdef|comutil|atl\w*|winreg|winuser|tchar|initguid|guiddef|shlwapi|dispex)\.h$",
        re.IGNORECASE),
    "embedded": re.compile(r"^sqlite3(ext)?\.h$"),
    "odbc": re.compile(r"^(sql|sqlext|sqltypes|sqlucode|odbcinst\w*)\.h$"),
}

# Folders that know the standard library and nothing else.
STANDARD_ONLY = {"foundation", "registry"} | RULE_FOLDERS
STANDARD_HEADER = re.compile(r"^[a-z0-9_]+$")  # <vector>, <cstdint>: no dot, no folder

TEXT_SUFFIXES = (".h", ".cpp", ".c", ".py", ".sh", ".md", ".sql", ".cmake", ".txt", ".json", ".idl",
                 ".yml", ".vbs", ".rc", ".def")
LONG_LINES_ALLOWED = (".md", ".json", ".sql", ".txt")

UNFINISHED = re.compile(r"\b(FIXME|TODO|XXX|HACK)\b")
# A reader has this repository and nothing else.
FOREIGN = (
    (re.compile(r"\bPart\s\d\.\d\b"), "a section of a paper that the reader does not have"),
    (re.compile(r"\bthe\s+specification\b|\bspec\.md\b", re.IGNORECASE),
     "a paper that the reader does not have: say the rule itself"),
    (re.compile(r"(?<![\w./:-])/(home|root|work)/"), "a path of one machine"),
    (re.compile(r"\bissue\s+[A-H]\b|\bhelper session\b", re.IGNORECASE),
     "how the work was organised"),
)

LITERAL = re.compile(r'"(?:[^"\\]|\\.)*"')
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
RAW_STRING = re.compile(r'\bR"')
RAW_STRING_BEGIN = re.compile(r'\bR"(\w*)\(')


class Findings:
    def __init__(self):
        self.lines = []

    def add(self, path, number, text):
        self.lines.append(f"{path}:{number}: {text}")


def tracked_files(root):
    """The files of the repository, without what a build or an editor left behind."""
    try:
        listed = subprocess.run(
            ["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=root,
            capture_output=True, check=True, text=True).stdout.splitlines()
        return sorted(path for path in listed if os.path.isfile(os.path.join(root, path)))
    except (OSError, subprocess.CalledProcessError):
        found = []
        for folder, folders, names in os.walk(root):
            folders[:] = [name for name in folders if name not in (".git", "build")]
            found += [os.path.relpath(os.path.join(folder, name), root) for name in names]
        return sorted(found)


def is_text(path):
    name = os.path.basename(path)
    return path.endswith(TEXT_SUFFIXES) or "." not in name


def folder_of(path):
    """"checks" of "src/checks/stock.cpp"; nothing outside src/."""
    parts = path.split("/")
    if path.startswith("src/host/automation/"):
        return "host/automation"
    return parts[1] if parts[0] == "src" and len(parts) > 2 else None


def check_include(path, number, line, findings):
    match = INCLUDE.match(line)
    folder = folder_of(path)
    if not match:
        return
    quote, header = match.groups()
    system_name = header.split("/")[-1]
    for owner, pattern in KEPT_TO.items():
        if quote == "<" and pattern.match(system_name) and folder != owner:
            # Tests look underneath, and benchmarks measure against what is underneath.
            if path.startswith((f"tests/{owner}/", "bench/")) or folder == f"host/{owner}":
                continue
            if path == "src/odbc/api.h":  # the driver manager's headers need it on Windows
                continue
            if path.startswith("tools/tavcc/platform/windows/"):
                continue
            if path == "bench/dialect_bench.cpp":  # measures the layer beside what lies under it
                continue
            findings.add(path, number, f"<{header}> belongs to src/{owner}/ alone; go through its port")
    if folder is None:
        return
    if quote == '"':
        target = header.split("/")[0]
        if "/" in header and target not in MAY_INCLUDE.get(folder, set()):
            findings.add(path, number, f"{folder}/ must not include {target}/ (docs/architecture.md)")
    elif folder in STANDARD_ONLY and not STANDARD_HEADER.match(header):
        findings.add(path, number, f"{folder}/ knows the standard library alone, not <{header}>")


def stage_of(path):
    """The place among the stages of "embedded/bind/bound.h"; None for what stands above them all."""
    parts = path.split("/")
    return STAGES.index(parts[1]) if len(parts) > 2 and parts[1] in STAGES else None


def check_stages(texts, findings):
    """In the embedded database no include leads to a later stage, and none closes a circle. A
    header and the source of its name count as one."""
    includes = {}
    for path, lines in texts.items():
        if not path.startswith(EMBEDDED) or not path.endswith((".h", ".cpp")):
            continue
        unit = os.path.splitext(path[len("src/"):])[0]
        stage = stage_of(unit)
        for number, line in enumerate(lines, 1):
            match = INCLUDE.match(line)
            if not match or not match.group(2).startswith("embedded/"):
                continue
            other = os.path.splitext(match.group(2))[0]
            if other != unit:
                includes.setdefault(unit, {})[other] = (path, number)
            later = stage_of(other)
            if stage is not None and (later is None and other != "embedded/error" and
                                      other != "embedded/open_options" or
                                      later is not None and later > stage):
                findings.add(path, number, f"{other} belongs to a later stage than {unit}"
                             " (docs/architecture.md)")
    done = set()

    def visit(unit, way):
        if unit in way:
            circle = way[way.index(unit):] + [unit]
            path, number = includes[circle[-2]][circle[-1]]
            findings.add(path, number, "this include closes a circle: " + " > ".join(circle))
            return
        if unit in done:
            return
        for other in includes.get(unit, {}):
            visit(other, way + [unit])
        done.add(unit)

    for unit in sorted(includes):
        visit(unit, [])


def check_line(path, number, line, is_by_hand, findings):
    code = path.endswith((".h", ".cpp"))
    if code:
        check_include(path, number, line, findings)
        if folder_of(path) in RULE_FOLDERS and RAW_STRING.search(line):
            findings.add(path, number, "no raw strings in the rules: their line ends depend on the"
                         " checkout; write \\r\\n in ordinary literals")
    if len(line) > MAX_COLUMNS and not is_by_hand and not path.endswith(LONG_LINES_ALLOWED):
        without_literals = LITERAL.sub('""', re.sub(r'R"\(.*?\)"', '""', line))
        if len(without_literals) > MAX_COLUMNS or without_literals == line:
            findings.add(path, number, f"{len(line)} columns; break the line at {MAX_COLUMNS}")
    if line != line.rstrip(" \t\r") and not path.endswith((".md", ".sql")):
        findings.add(path, number, "remove the blanks at the end of the line")
    if path != "tests/style/check_style.py":
        if UNFINISHED.search(line):
            findings.add(path, number, "finish it, or say in a sentence what is so and why")
        for pattern, what in FOREIGN:
            if pattern.search(line):
                findings.add(path, number, f"refers to {what}")


def laid_out_by_hand(lines):
    """The numbers of the lines inside a raw string of several lines, or where clang-format is off."""
    inside, end, by_hand = set(), None, False
    for number, line in enumerate(lines, 1):
        rest = line
        by_hand = (by_hand or "clang-format off" in line) and "clang-format on" not in line
        if by_hand:
            inside.add(number)
        if end is not None:
            inside.add(number)
            if end not in rest:
                continue
            rest, end = rest.split(end, 1)[1], None
        for match in RAW_STRING_BEGIN.finditer(rest):
            closing = ")" + match.group(1) + '"'
            if closing not in rest[match.end():]:
                inside.add(number)
                end = closing
    return inside


def headers_of(path):
    """What a source may carry out; the folders of a system stand below their headers'."""
    header = path[:-4] + ".h"
    return {header, re.sub("/platform/(unix|windows)/", "/platform/", header)}


def check_head(path, lines, findings):
    if path.endswith((".h", ".cpp")) and path.startswith(("src/", "tools/", "tests/", "bench/")):
        own_headers = headers_of(path) if path.endswith(".cpp") else set()
        if not lines or not lines[0].startswith("//"):
            # A source that carries out its own header, or tests the header it begins with, needs no
            # second head.
            tests_header = path.endswith("_test.cpp") and lines and INCLUDE.match(lines[0])
            if not tests_header and not any(
                    f'"{header.split("/", 1)[1]}"' in line
                    for line in lines[:3] for header in own_headers):
                findings.add(path, 1, "begin with a comment: what the file is for, and its place")


def compiled_sources(root, build):
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    sources = {os.path.join(entry["directory"], entry["file"]) for entry in entries}
    # Compiled a folder at a time, a source is included by a file of the build's own.
    for source in sorted(sources):
        if "/Unity/unity_" in source:
            with open(source, encoding="utf-8") as file:
                sources.update(re.findall(r'^#include "(.*)"$', file.read(), re.MULTILINE))
    return {os.path.relpath(source, root) for source in sources}


def check_dead_sources(root, build, files, texts, findings):
    """Every source is compiled, every header included, every document linked, every script run."""
    compiled = compiled_sources(root, build)
    included = set()
    for path, lines in texts.items():
        if path.endswith((".h", ".cpp", ".c")):
            included.update(match.group(2) for match in map(INCLUDE.match, lines) if match)
    build_files = "\n".join("\n".join(texts[path]) for path in files
                            if path.endswith(("CMakeLists.txt", ".cmake")) or path in
                            ("demo", "test", ".ci/run", "CMakePresets.json"))
    documents = {path: "\n".join(texts[path]) for path in files if path.endswith(".md")}
    for path in files:
        name = os.path.basename(path)
        if path.endswith(".cpp") and path not in compiled and not is_compiled_elsewhere(path):
            findings.add(path, 1, "is in no target: add it to one, or delete it")
        elif path.endswith(".h") and not any(path.endswith("/" + header) or path == header
                                             for header in included):
            findings.add(path, 1, "nobody includes it: use it, or delete it")
        elif path.endswith(".md") and not is_linked(path, documents):
            findings.add(path, 1, "no document links to it: link it, or delete it")
        elif path.endswith((".py", ".sh", ".cmake")) and name not in build_files and not any(
                name in "\n".join(texts[other]) for other in texts
                if other != path and other.endswith((".py", ".sh", ".cpp"))):
            findings.add(path, 1, "nothing runs it: add it to a test or a script, or delete it")


def is_compiled_elsewhere(path):
    """For Windows alone, or by a project of its own on an installed copy."""
    return path.startswith(("examples/", "tests/packaging/consumer/",
                            "src/automation/", "src/host/automation/", "tests/automation/",
                            "bench/automation/", "tools/tavcc/platform/windows/"))


def is_linked(path, documents):
    if path in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md"):
        return True
    for other, text in documents.items():
        for target in re.findall(r"\]\(([^)#]+)", text):
            if other != path and os.path.normpath(
                    os.path.join(os.path.dirname(other), target)) == path:
                return True
    return False


def without_code(lines):
    """(number, line) of what stands outside of fences."""
    fenced = False
    for number, line in enumerate(lines, 1):
        fenced ^= line.startswith("```")
        if not fenced:
            yield number, line


def anchors(lines):
    """What a document's headings are called as targets of links; a second one gets a number."""
    found = {}
    for _, line in without_code(lines):
        heading = re.match(r"#+ (.*)", line)
        if not heading:
            continue
        text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading.group(1)).strip().lower()
        name = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        times = found[name] = found.get(name, -1) + 1
        if times:
            found[f"{name}-{times}"] = 0
    return set(found)


def check_links(root, documents, findings):
    """A relative link leads to a file that exists, and to a heading that is in it. What stands
    between fences or in backquotes is code."""
    targets = {path: anchors(lines) for path, lines in documents.items()}
    for path, lines in documents.items():
        for number, line in without_code(lines):
            for link in re.findall(r"\]\(([^)]+)\)", re.sub(r"`[^`]*`", "", line)):
                target, _, heading = link.partition("#")
                if "://" in target:
                    continue
                beside = os.path.join(os.path.dirname(path), target)
                to = os.path.normpath(beside) if target else path
                if not os.path.exists(os.path.join(root, to)):
                    findings.add(path, number, f"the link leads nowhere: {target}")
                elif heading and heading not in targets.get(to, ()):
                    findings.add(path, number, f"{to} has no heading for the link: #{heading}")


def main():
    root, build = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    findings = Findings()
    files = tracked_files(root)
    texts = {}
    for path in files:
        if not is_text(path):
            continue
        with open(os.path.join(root, path), encoding="utf-8", errors="replace", newline="") as file:
            texts[path] = file.read().split("\n")
        check_head(path, texts[path], findings)
        by_hand = laid_out_by_hand(texts[path]) if path.endswith((".h", ".cpp")) else ()
        for number, line in enumerate(texts[path], 1):
            check_line(path, number, line, number in by_hand, findings)
    check_dead_sources(root, build, files, texts, findings)
    check_stages(texts, findings)
    check_links(root, {path: texts[path] for path in texts if path.endswith(".md")}, findings)
    print("\n".join(findings.lines))
    print(f"{len(files)} files, {len(findings.lines)} findings")
    return 1 if findings.lines else 0


if __name__ == "__main__":
    sys.exit(main())
