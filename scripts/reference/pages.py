"""The pages of the reference, as Markdown."""

import os
import re

from contracts import Contracts
from examples import Examples, Results
from project import Words
from schema import Columns, mentions, relations, rule_sources

COMMAND = "scripts/reference.py build/release/bin/tavcc"

def cell(text):
    return str(text).replace("|", "\\|").replace("\n", "<br>")


def table(header, rows):
    lines = [header, ["---"] * len(header), *rows]
    return "".join("| " + " | ".join(cell(text) for text in line) + " |\n" for line in lines) + "\n"


def code(text):
    return f"`{text}`" if text else ""


def anchor(heading):
    """The name that a heading has as a target of links."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


NOTE = f"<!-- Written by {COMMAND}; change what it is made of instead. -->\n\n"

KEY_USES = {"needed": "in", "optional": "in, optional", "out": "out"}


def signature(method):
    parts = []
    for parameter in method["parameters"]:
        text = ("in/out " if parameter["in_out"] else "") + f"{parameter['type']} {parameter['name']}"
        if "default" in parameter:
            text += f" = {default(parameter)}"
        parts.append(f"[{text}]" if parameter["optional"] else text)
    return f"{method['result']} {method['name']}({', '.join(parts)})"


def default(parameter):
    value = parameter["default"]
    return str(value) if parameter["type"] != "BOOL" else str(value != 0)


def key_rows(keys, prefix=""):
    for key in keys:
        use = KEY_USES[key["use"]]
        if "needed_by" in key:
            use += "; for " + ", ".join(map(str, key["needed_by"]))
        yield [code(prefix + key["key"]), key["type"], use, key["meaning"],
               key["meaning_zh"]]
        yield from key_rows(key.get("keys", []), f"{prefix}{key['key']}.")


class Reference:
    def __init__(self, program):
        self.words, self.contracts, self.columns = Words(), Contracts(), Columns()
        self.results, self.examples = Results(), Examples(program)
        self.classes = program.json("classes")
        self.refusals = program.json("refusals")

    def said(self, text, directions=("1 (audit)", "-1 (un-audit)")):
        """A contract's text as a page has it: names of headers are links, constants values."""
        text = text.replace("kAudit", directions[0]).replace("kUnAudit", directions[1])
        return re.sub(r"\b(\w+\.h)\b", lambda match: f"[{match[1]}](../../"
                      f"{self.contracts.headers[match[1]].path})" if match[1] in
                      self.contracts.headers else match[1], text)

    def said_in_chinese(self, text):
        return self.said(self.words[text], ("1（审核）", "-1（反审核）"))

    def both(self, paragraphs):
        """English beside Chinese, a row a paragraph."""
        return table(["English", "中文"], [[self.said(text), self.said_in_chinese(text)]
                                         for text in paragraphs]) if paragraphs else ""

    def pages(self):
        """{file name: text}."""
        pages = {f"{cls['name']}.md": self.class_page(cls) for cls in self.classes}
        pages |= {"refusals.md": self.refusals_page(), "schema.md": self.schema_page(),
                  "README.md": self.index()}
        for checked in (self.words, self.columns, self.results, self.examples):
            checked.check()
        return pages

    # -- Classes

    def class_page(self, cls):
        text = NOTE + f"# {cls['name']}\n\n"
        text += (f"ProgID `TavM_CC_PlugIns.{cls['name']}`, TransMode {cls['trans_mode']}. "
                 "[All classes · 全部类](README.md)\n\n")
        own, named = self.contracts.head(cls["name"])
        functions = self.contracts.functions[cls["name"]]
        if len(own) == 1:
            text += self.both([part for header in own + named for part in header.head])
        else:
            rows = []
            for header in own:
                methods = ", ".join(f"[{name}](#{anchor(name)})" for name, function in
                                    functions.items() if self.contracts.header(function) is header)
                rows += [[methods if part is header.head[0] else "", self.said(part),
                          self.said_in_chinese(part)] for part in header.head]
            text += table(["Methods · 方法", "English", "中文"], rows)
        return text + "".join(self.method(cls["name"], method) for method in cls["methods"])

    def method(self, cls, method):
        text = f"## {method['name']}\n\n"
        kind = "property, read only · 只读属性" if method["property"] else (
            "writes · 写数据库" if method["writes"] else "only reads · 只读")
        text += f"    {signature(method)}\n\nSlot {method['slot']}, dispatch id {method['id']}; {kind}.\n\n"
        if method["property"]:
            return text
        full = f"{cls}.{method['name']}"
        function = self.contracts.functions[cls][method["name"]]
        text += self.both(self.contracts.of(function))
        text += self.arguments(method) + self.keys(method) + self.outcome(full)
        text += self.messages(full)
        example = self.examples[full]
        self.results.check_example(full, example)
        return text + f"**Example · 示例**\n\n```\n{example}\n```\n\n"

    @staticmethod
    def arguments(method):
        rows = [[code(parameter["name"]), parameter["type"],
                 "in/out" if parameter["in_out"] else "in",
                 (default(parameter) if "default" in parameter else "yes · 是")
                 if parameter["optional"] else ""] for parameter in method["parameters"]]
        header = ["Argument · 参数", "Type · 类型", "Direction · 方向", "Optional, default · 可选，默认值"]
        return table(header, rows) if rows else ""

    @staticmethod
    def keys(method):
        text = ""
        for parameter in method["parameters"]:
            if "keys" not in parameter:
                continue
            each = "" if parameter["type"] == "Bzo.Dictionary" else ", each · 每一项"
            text += f"Keys of · 键：`{parameter['name']}`{each}\n\n"
            text += table(["Key · 键", "Type · 类型", "Use · 用途", "Meaning", "含义"],
                          key_rows(parameter["keys"]))
        return text

    def outcome(self, method):
        group = self.results[method]
        rows = [[code(value) if value not in ("", "*") else {"": "(empty)", "*": "other"}[value],
                 english, chinese] for value, english, chinese in group["results"]]
        rows.append(["**Errors · 错误**", *group["errors"]])
        return table(["Result · 返回值", "English", "中文"], rows)

    def messages(self, method):
        rows = [[text["text"], f"[{refusal['name']}](refusals.md#{anchor(refusal['name'])})"]
                for refusal in self.refusals for text in refusal["texts"]
                if method in text["methods"]]
        return table(["Refusal's message · 拒绝提示", "Name · 名称"], rows) if rows else ""

    # -- Refusals

    def refusals_page(self):
        text = NOTE + "# Refusals · 拒绝\n\n" + bilingual(
            ("Every message with which a rule refuses, why, and what to do. `tavcc refusals MESSAGE` finds "
             "one. `%1` and the like stand for what a rule puts there.",
             "规则拒绝单据时的每条提示、原因和处理办法。用 `tavcc refusals 提示` 可以查找。`%1` 等代表规则填入的内容。"))
        for refusal in self.refusals:
            text += f"## {refusal['name']}\n\n"
            text += table(["", "English", "中文"],
                          [["Cause · 原因", refusal["cause"], refusal["cause_zh"]],
                           ["Remedy · 处理", refusal["remedy"], refusal["remedy_zh"]]])
            text += table(["Message · 提示", "Methods · 方法"],
                          [[each["text"], ", ".join(map(self.method_link, each["methods"]))]
                           for each in refusal["texts"]])
        return text

    @staticmethod
    def method_link(method):
        cls, name = method.split(".")
        return f"[{method}]({cls}.md#{anchor(name)})"

    # -- Schema

    def schema_page(self):
        text = NOTE + "# Tables and columns · 表和列\n\n" + bilingual(
            ("The ERP database as far as the rules use it, from "
             "[schema.sql](../../src/host/schema.sql): each table with the sources that read or write it, "
             "and of its columns those that occur in them. Ids, flags and states are `int`, quantities, "
             "prices and amounts `decimal(28,10)`.",
             "规则所用到的 ERP 数据库部分，取自 [schema.sql](../../src/host/schema.sql)：每张表列出读写它的源码，"
             "以及其中出现的列。内码、标志和状态为 `int`，数量、价格和金额为 `decimal(28,10)`。"))
        sources = rule_sources()
        for relation in relations():
            using = [path for path, source in sources.items() if mentions(source, relation.name)]
            if using:
                text += self.relation(relation, using, sources)
        return text

    def relation(self, relation, using, sources):
        kinds = {"TABLE": "", "VIEW": " (view · 视图)", "PROCEDURE": " (procedure · 存储过程)"}
        text = f"## {relation.name}{kinds[relation.kind]}\n\n"
        text += self.both([relation.comment])
        used = [(name, kind) for name, kind in relation.columns
                if any(mentions(sources[path], name) for path in using)]
        if used:
            text += table(["Column · 列", "Type · 类型", "Meaning", "含义"],
                          [[code(name), kind, *self.columns.of(relation.name, name)]
                           for name, kind in used])
        others = [code(name) for name, _ in relation.columns if (name, _) not in used]
        if others:
            text += f"Used by no rule · 规则未用到：{', '.join(others)}\n\n"
        links = ", ".join(f"[{os.path.basename(path)}](../../{path})" for path in using)
        return text + f"Used in · 用于：{links}\n\n"

    # -- Index

    def index(self):
        text = NOTE + "# Reference · 参考\n\n" + bilingual(*INTRODUCTION)
        rows = []
        for cls in self.classes:
            own, _ = self.contracts.head(cls["name"])
            what = [own[0].head[0]] if len(own) == 1 else [
                "Checks and actions that the host asks for whatever the bill's class."]
            methods = [method["name"] for method in cls["methods"] if not method["property"]]
            rows.append([f"[{cls['name']}]({cls['name']}.md)", self.said(what[0]), self.said_in_chinese(what[0]),
                         ", ".join(f"[{name}]({cls['name']}.md#{anchor(name)})" for name in methods)])
        text += table(["Class · 类", "English", "中文", "Methods · 方法"], rows)
        text += ("- [Refusals · 拒绝](refusals.md)\n- [Tables and columns · 表和列](schema.md)\n\n"
                 "## Types · 类型\n\n")
        text += table(["Type · 类型", "English", "中文"], TYPES)
        text += "## Errors of every call · 每次调用都可能出现的错误\n\n" + bilingual(*CALLING)
        return text + table(["Number · 错误号", "English", "中文"], ERRORS)


def bilingual(*pairs):
    return table(["English", "中文"], pairs)


INTRODUCTION = (
    ("The ten automation classes, their methods, the keys of their dictionaries, their results, messages "
     "and errors. Each method has an example, run on the sample company (`tavcc init --db erp.db "
     "--sample`); its output is what the program printed.",
     "十个自动化类及其方法、字典的键、返回值、提示和错误。每个方法都有示例，在示例公司上运行"
     "（`tavcc init --db erp.db --sample`）；所列输出即程序的实际输出。"),
    ("A refusal is an answer, not an error: the result says no, and a message says why. The first line of "
     "an output says `passed`, `refused` or `failed`, as tavcc takes the answer.",
     "拒绝是正常的回答，不是错误：返回值表示不允许，提示说明原因。输出首行的 `passed`、`refused`、`failed`"
     "（通过、被拒、失败）是 tavcc 对回答的判断。"),
    ("`sDsn` and `strConString` are connection strings; tavcc supplies them, and connections and "
     "recordsets too. Directions (`intCheckType`, `CheckType`, `Check`) are 1 for an audit and -1 for an "
     "un-audit.",
     "`sDsn` 和 `strConString` 是连接字符串；它们和连接、记录集都由 tavcc 提供。方向（`intCheckType`、"
     "`CheckType`、`Check`）为 1 表示审核，-1 表示反审核。"))

TYPES = (
    ("`BOOL`", "True or False", "布尔值"), ("`I2`, `I4`", "integers of 16 and of 32 bits", "16 位和 32 位整数"),
    ("`R8`", "a number with 15 significant digits", "双精度数，15 位有效数字"), ("`DATE`", "date and time", "日期和时间"),
    ("`BSTR`", "text", "文本"), ("`VARIANT`", "any value; Empty where a method answers nothing", "任意值；方法没有回答时为 Empty"),
    ("`Bzo.Dictionary`, `Bzo.Vector`", "the host's dictionary and list", "宿主的字典和列表"),
    ("`ADODB.Connection`, `ADODB.Recordset`", "a connection with the ERP database, and its rows",
     "到 ERP 数据库的连接及其数据行"),
    ("`IDispatch`", "an object of the host", "宿主的对象"))

CALLING = (("Raised by the call itself, before the method begins.", "由调用本身抛出，方法尚未开始执行。"),)

ERRORS = (
    ("13, 6", "an argument is not of its type, or out of its range; the description names it",
     "参数类型不符或超出范围；说明中有参数名"),
    ("438", "the class has no such method", "该类没有此方法"),
    ("448", "the method has no argument of this name", "方法没有此名称的参数"),
    ("449", "an argument that is not optional is missing", "缺少必需的参数"),
    ("450", "there are too many arguments", "参数过多"),
    ("429", "the class cannot be created: the host's global object is missing",
     "无法创建类：缺少宿主的全局对象"))
