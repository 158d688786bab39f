"""The languages of tavcc's own words: every English text has a Chinese one that takes the same
values, and the program says them as --lang and the environment ask."""

import glob
import json
import os
import re
import string
import subprocess
import unittest

import case
from case import FAILED, PASSED, REFUSED, Case, tavcc

TOOLS = os.path.abspath(os.path.join(os.path.dirname(__file__), "../../tools"))
WORDS = os.path.join(TOOLS, "language/zh.json")

LITERALS = r'(?:"(?:[^"\\]|\\.)*"\s*)+'
SAID = re.compile(r"\b(?:Say|Translated|Translatable)\(\s*(" + LITERALS + r")[,)]")
# What ends a command or is printed is said in the language of the process.
UNSAID = re.compile(r'\b(?:CommandError|Print|PrintAside)\((?:fmt::format\()?\s*(' + LITERALS + ")")
CHINESE = re.compile(r"[\u3000-\u303f\u4e00-\u9fff\uff00-\uffef]")


def sources():
    for path in sorted(glob.glob(TOOLS + "/*/**/*", recursive=True)):
        if path.endswith((".h", ".cpp")):
            with open(path, encoding="utf-8") as file:
                yield os.path.relpath(path, TOOLS), file.read()


def joined(literals):
    """The text of adjacent literals."""
    parts = re.findall(r'"((?:[^"\\]|\\.)*)"', literals)
    return re.sub(r"\\(.)", lambda match: {"n": "\n", "t": "\t"}.get(match[1], match[1]),
                  "".join(parts))


def words():
    with open(WORDS, encoding="utf-8") as file:
        return json.load(file)


OF_THE_PARSER = ("Usage", "OPTIONS", "Options", "Positionals", "SUBCOMMAND", "Subcommands", "REQUIRED",
                 "Print this help message and exit",
                 "Display program version information and exit")


def labels():
    """What explain calls the values of a reason and the columns of a change: names of its queries,
    too."""
    for name in ("explain_reasons.cpp", "explain_changes.cpp", "changes.cpp"):
        with open(os.path.join(TOOLS, "tavcc", name), encoding="utf-8") as file:
            text = file.read()
        yield from re.findall(r'emplace_back\("([a-z ]+)"', text)
        yield from re.findall(r'{"([a-z ]+)", (?:LinesWith|row)', text)
        yield from re.findall(r"AS \[?((?:[a-z' ,]+(?=\]))|[a-z]+)", text)
        for columns in re.findall(r'\{("[a-z][^{}]*)\},', text):
            yield from re.findall(r'"([a-z][a-z ()]*)"', columns)


def gates():
    """The names of the gates, as the rules have them."""
    for path in glob.glob(os.path.join(TOOLS, "../src/*/*.cpp")):
        with open(path, encoding="utf-8") as file:
            yield from re.findall(r'(?:\{|PlainGate\()"([a-z][a-z: -]*)",\s*(?:&\w+::|"\w+\.)',
                                  file.read())


def placeholders(text):
    """What fmt puts values into, in the order of the values: [("", "{}"), …] of "{}" and "{0}"."""
    found, automatic = [], 0
    for _, name, form, _ in string.Formatter().parse(text):
        if name is None:
            continue
        if name == "":
            name, automatic = str(automatic), automatic + 1
        found.append((int(name), form))
    return sorted(found)


def descriptions(help_text):
    """What the help says of the command, of each option and of each command below it."""
    lines = help_text.splitlines()
    yield lines[0]
    for before, line in zip(lines, lines[1:]):
        if line.startswith("  "):  # behind the name, or on the next line where the name is long
            yield line[30:] if line[:30].strip() and line[28:30] == "  " else (
                line.strip() if not line[:30].strip() else "")


def speak(language, *arguments, **environment):
    """The program with an environment that names a language, or none."""
    variables = {name: value for name, value in os.environ.items()
                 if name not in ("LC_ALL", "LC_MESSAGES", "LANG")}
    variables.update(environment)
    chosen = ["--lang", language] if language else []
    return subprocess.run([case.TAVCC, *arguments, *chosen], capture_output=True, text=True,
                          env=variables, timeout=120)


class Words(unittest.TestCase):
    def test_every_text_has_words(self):
        known = words()
        for path, text in sources():
            for literals in SAID.findall(text):
                with self.subTest(path, text=joined(literals)):
                    self.assertTrue(joined(literals) in known, "no Chinese in tools/language/zh.json")

    def test_nothing_is_said_past_the_words(self):
        for path, text in sources():
            for literals in UNSAID.findall(text):
                with self.subTest(path):
                    unsaid = re.search("[a-z]{2} [a-z]{2}", joined(literals))
                    self.assertFalse(unsaid, f"say it with Say: {joined(literals)}")

    def test_names_of_gates_and_reasons_have_words(self):
        self.assertGreater(len(set(gates())), 25)
        self.assertGreater(len(set(labels())), 25)
        self.assertEqual({*gates(), *labels()} - set(words()), set())

    def test_no_words_are_left_over(self):
        said = {joined(found) for _, text in sources() for found in re.findall(LITERALS, text)}
        known = said | {*OF_THE_PARSER, *labels(), *gates()}
        self.assertEqual(set(words()) - known, set())

    def test_the_values_are_the_same(self):
        for english, chinese in words().items():
            with self.subTest(english):
                self.assertEqual(placeholders(chinese), placeholders(english))
                self.assertEqual(english.endswith("\n"), chinese.endswith("\n"))
                self.assertRegex(chinese, CHINESE)


class Help(unittest.TestCase):
    def test_all_of_it_is_chinese(self):
        commands = re.findall(r"^  ([a-z]+) ", speak("en", "help").stdout.split("Subcommands:")[1],
                              re.MULTILINE)
        self.assertGreater(len(commands), 12)
        for command in ([], *([command] for command in commands)):
            shown = speak("zh", "help", *command).stdout
            said = [text for text in descriptions(shown) if text]
            self.assertGreater(len(said), 2, shown)
            for text in said:
                with self.subTest(command, text=text):
                    self.assertRegex(text, CHINESE)
            self.assertIn("用法: tavcc", shown)

    def test_the_manual_page(self):
        page = speak("zh", "man").stdout
        for line in page.splitlines():
            prose = re.sub(r"\\\\f[BIR]|\\\\-", "", line)
            if not line.startswith(".") and re.search("[a-z]{3} [a-z]{3}", prose):
                self.assertRegex(line, CHINESE)
        self.assertIn(".SH 退出状态\n0 通过，1 被规则拒绝，2 失败。\n", page)

    def test_completion(self):
        script = speak("zh", "completion", "fish").stdout
        self.assertIn("-a audit -d '批量审核单据，与宿主程序的做法相同'", script)


class Choice(Case):
    def said(self, language, **environment):
        answer = speak(language, "call", "--db", self.db, "cls_CX.AuditBill", **environment)
        self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
        return answer.stderr

    ENGLISH = "tavcc: argument lngFID (I4) is missing\n"
    CHINESE = "tavcc: 缺少参数 lngFID（I4）\n"

    def test_the_option(self):
        self.assertEqual(self.said("zh"), self.CHINESE)
        self.assertEqual(self.said("en"), self.ENGLISH)
        self.assertEqual(self.said(""), self.ENGLISH)
        self.assertEqual(self.said("en", LANG="zh_CN.UTF-8"), self.ENGLISH)

    def test_its_place(self):
        for arguments in (["--lang", "zh", "check"], ["--lang=zh", "check"], ["check", "--lang=zh"]):
            with self.subTest(arguments):
                answer = speak("", *arguments)
                self.assertEqual(answer.stderr, "tavcc: 哪个数据库？请给出 --db FILE 或 --dsn STRING\n")

    def test_the_environment(self):
        for chinese in ({"LANG": "zh_CN.UTF-8"}, {"LC_MESSAGES": "zh_CN", "LANG": "en_US.UTF-8"},
                        {"LC_ALL": "zh_TW.UTF-8", "LC_MESSAGES": "C"}, {"LC_ALL": "", "LANG": "zh"}):
            with self.subTest(chinese):
                self.assertEqual(self.said("", **chinese), self.CHINESE)
        for english in ({"LANG": "C.UTF-8"}, {"LANG": "fr_FR.UTF-8"}, {"LC_ALL": "C", "LANG": "zh_CN"},
                        {"LANG": "zhuang"}):
            with self.subTest(english):
                self.assertEqual(self.said("", **english), self.ENGLISH)

    def test_a_language_that_is_none(self):
        for language in ("fr", "EN", "zhuang"):
            answer = speak("", "check", f"--lang={language}")
            self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
            self.assertEqual(answer.stderr,
                             f"tavcc: --lang: {language} not in {{en,zh}} (see tavcc --help)\n")

    def test_what_the_parser_says(self):
        for arguments, text in (
                ([], "需要一个命令"), (["call"], "缺少 CLASS.METHOD"),
                (["sql", "--mode", "x"], "--mode：x 不是 {table,box,csv,line,json} 之一"),
                (["run", "x", "-j", "0"], "--jobs：值 0 不在 1 到 256 之间"),
                (["demo", "--trace", "--rows", "-1"], "--rows：值 -1 不在 0 到 1000000 之间"),
                (["demo", "--db"], "--db：缺少一个 FILE"), (["demo", "--foo"], "不认识的参数：--foo"),
                (["demo", "--db", "a", "--db", "b"], "--db：最多 1 个，却给了 2 个"),
                (["audit", "--class", "a"], "无法转换：--class = a"),
                (["check", "--foo", "bar"], "不认识的参数：bar --foo")):
            with self.subTest(arguments):
                answer = speak("", *arguments, LANG="zh_CN.UTF-8")
                self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
                self.assertEqual(answer.stderr, f"tavcc: {text}（见 tavcc --help）\n")

    def test_a_call(self):
        answer = speak("zh", "call", "--db", self.db, "cls_CX.AuditBill", "lngFID=999",
                       "lngUserID=7")
        self.assertEqual((answer.returncode, answer.stderr), (REFUSED, ""))
        self.assertEqual(answer.stdout, "cls_CX.AuditBill 被拒\n  结果            False\n"
                         "  strReturnMsg    该单据不存在，不能审核！\n")

    def test_a_batch(self):
        answer = speak("zh", "audit", "--db", self.db, "--all", "--dry-run")
        self.assertEqual(answer.returncode, REFUSED)
        self.assertTrue(answer.stdout.endswith("\n通过：22，被拒：10\n未保留任何改动。\n"), answer.stdout)

    def test_an_explanation(self):
        shown = speak("zh", "explain", "--db", self.db, "XS260305").stdout
        for line in ("销售单 XS260305（类型 1030002，内码 134）", "审核被拒。", "批量审核的检查项：",
                     "缘由      行 1, 商品 01.005 内胎, 仓库 主仓库, 现存量 200, 需要量 999, 缺少 799",
                     "处理      减少数量，先入库"):
            self.assertIn(line, shown)
        # No label, gate or title is left in English; statements and columns are what they are.
        for line in shown.splitlines():
            self.assertNotRegex(line, r"^( {2}| {12})?[a-z]")

    def test_files_that_are_none(self):
        broken = self.write("broken.json", '{"name": "x", "steps": [{"call": "cls_CX.AuditBil"}]}')
        for path, said in (("/no/such", "/no/such：没有这个文件或文件夹"),
                           (broken, f"{broken}：第 1 步，键“call”：cls_CX 没有方法“AuditBil”；是不是 AuditBill？")):
            answer = speak("zh", "run", path)
            self.assertEqual(answer.returncode, FAILED)
            self.assertIn(said, answer.stderr)

    def test_json_is_the_same_in_all_languages(self):
        numbers = [row[0] for row in self.rows("select FBillNo from T_CC_StockBill")]
        for arguments in (["demo"], ["classes"], ["refusals"], ["check", "--db", self.db],
                          ["explain", "--db", self.db, *numbers],
                          ["explain", "--un-audit", "--db", self.db, *numbers],
                          ["audit", "--all", "--dry-run", "--db", self.db],
                          ["sql", "--db", self.db, "select 1 as a"],
                          ["call", "--db", self.db, "cls_CX.AuditBill", "lngFID=999", "lngUserID=7"]):
            with self.subTest(arguments):
                english = speak("en", *arguments, "--json")
                chinese = speak("zh", *arguments, "--json")
                self.assertTrue(english.stdout)
                mask = re.compile(r'"milliseconds": [0-9.e-]+')
                self.assertEqual(mask.sub("", chinese.stdout), mask.sub("", english.stdout))
                self.assertEqual(chinese.returncode, english.returncode)


if __name__ == "__main__":
    case.main()
