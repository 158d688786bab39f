#!/usr/bin/env python3
"""tavcc demo, audit, unaudit, explain and run --html FILE: the pages hold what the commands say.

page.py has what every page is held to.

usage: html_test.py TAVCC SERVED_DATABASE [unittest options]
"""

import json
import os
import re
import subprocess
import unittest
from decimal import Decimal

import case
from case import FAILED, PASSED, REFUSED, Case, Served, fingerprint, tavcc
from page import DARK, LIGHT, Page, colours, contrast

# The sample company's bills that a batch of all refuses: the refusal, what is said, and what the
# rows say, which the bills before it may have changed: 200 of item 01.005 are in stock at first;
# CF260301 and PY260301 bring 12 and 3, QC260301 takes 10, and then XS260305 asks for 999.
TEN_REFUSED = {
    "XS260303": ("bill.rejected", "该单据为驳回状态!", ["rejected 1"]),
    "XD260302": ("bill.rejected", "该单据为驳回状态!", ["rejected 1"]),
    "XS260304": ("serial.missing", "该单据存在未设置SN号的商品!", ["line 1, item 02.002 电助力车"]),
    "XS260305": ("stock.negative", "审核出现负库存商品！",
                 ["line 1, item 01.005 内胎, stock 主仓库, in stock 205, wanted 999, short by 794"]),
    "XS260306": ("stock.negative_batch", "分批认定法计价的商品,不允许负库存出库！",
                 ["line 1, item 01.004 进口钛合金管, stock 主仓库, batch TC4-001, in stock 25.5,"
                  " wanted 100, short by 74.5"]),
    "CG260201": ("period.closed", "不能审核以前期间的单据！",
                 ["the bill's date 2026-02-20, the period's first day 2026-03-01"]),
    "CG260305": ("user.own_bill", "审核人与制单人不能为同一人！", ["maker 16394, user 16394"]),
    "XS260307": ("credit.exceeded", "当前客户的信用额度为：20000，截止到本次往来余额已经超出。",
                 ["customer 城东车行, credit line 20000, balance 18500, this bill 2550, over by 1050"]),
    "XS260308": ("price.below_limit", "出现销售价格低于限价的商品",
                 ["line 1, item 03.001 头盔, price 50, limit 90"]),
    "QR260302": ("price.zero", "第2行商品单价为零,审核不成功！", ["line 2, item 01.005 内胎, price 0"]),
}

STOCK = """
SELECT i.FNumber, i.FName, s.FName, v.FBatchNo, ISNULL(a.FName, ''), SUM(v.FQty), SUM(v.FBal)
FROM T_CC_Inventory v INNER JOIN t_ICItem i ON v.FItemID = i.FItemID
INNER JOIN t_Stock s ON v.FStockID = s.FItemID LEFT JOIN t_AuxItem a ON v.FAuxPropID = a.FItemID
GROUP BY i.FNumber, i.FName, s.FName, v.FBatchNo, a.FName"""

HOSTILE = "<script>alert('x')</script>&amp;\"'><b>"


def lines_of(bill_info):
    return [line for line in bill_info.split("|") if line]


def plain(value):
    """A value of JSON as a page shows it: a number without zeros behind its point."""
    return value if isinstance(value, str) else format(Decimal(str(value)).normalize(), "f")


class HtmlCase(Case):
    def setUp(self):
        super().setUp()
        self.file = self.path("page.html")
        if os.path.exists(self.file):
            os.remove(self.file)

    def page(self, command, *words, status=PASSED):
        """The page that the command writes, held to what every page is held to, and its answer."""
        answer = tavcc(command, "--html", self.file, *words)
        self.assertEqual((answer.returncode, answer.stderr), (status, ""))
        page = Page(self.file)
        page.check(self)
        return page, answer

    def on_the_database(self, command, *words, status=PASSED):
        page, answer = self.page(command, "--db", self.db, *words, status=status)
        return page, answer

    def assert_changes(self, shown, before, after):
        """What the page shows of amounts is what differs between two snapshots of rows by key, each
        a list of amounts; and the bars are as long as the numbers say."""
        moved = {}
        for key in before.keys() | after.keys():
            old, new = before.get(key), after.get(key)
            if old != new:
                moved[key] = (old, new)
        moved = {tuple(part for part in key if part): rows for key, rows in moved.items()}
        self.assertEqual(set(shown), set(moved))
        self.assertTrue(shown)
        for key, values in shown.items():
            for i, (name, cells) in enumerate(values.items()):
                old, new = ([None if row is None else Decimal(row[i])][0] for row in moved[key])
                self.assert_amounts(name, cells, old, new)

    def assert_amounts(self, name, cells, old, new):
        text_before, text_after, change, bars, label = cells
        for text, number in ((text_before, old), (text_after, new)):
            self.assertEqual(text if number is None else Decimal(text),
                             "none" if number is None else number)
        before, after = old or Decimal(0), new or Decimal(0)
        self.assertEqual(Decimal(change), after - before)
        self.assertTrue(label.endswith(f"{name}: before {text_before}, after {text_after}"), label)
        low, high = min(before, after, 0), max(before, after, 0)
        for (begin, length), number in zip(bars, (before, after)):
            whole = high - low or 1
            self.assertAlmostEqual(begin, float(100 * (min(number, 0) - low) / whole), places=1)
            self.assertAlmostEqual(length, float(100 * abs(number) / whole), places=1)

    def stock(self):
        return {tuple(row[:5]): row[5:] for row in self.rows(STOCK)}

    def assert_times(self, part):
        """The statements follow each other, and each is where its numbers say. Returns them."""
        statements = []
        for table in part.findall(".//table[@class='statements']"):
            length = re.search(r"on a line of ([\d.]+) (ms|s)$", table.find("caption").text)
            whole = float(length[1]) * (1000 if length[2] == "s" else 1)
            clock = 0
            for statement in Page.statements(table_in(table)):
                self.assertGreaterEqual(statement.at, clock - 0.011)  # both are rounded
                clock = statement.at + statement.took
                self.assertLessEqual(statement.at + statement.took, whole + 6)
                self.assertRegex(statement.label, r"^from [\d.]+ to [\d.]+ ms$")
                # A bar that would be too short to be seen is longer.
                begin, width = statement.bar
                self.assertLessEqual(begin + width, 1000.1)
                if 20 < whole < 1000 and statement.took / whole > 0.01:
                    self.assertAlmostEqual(begin, 1000 * statement.at / whole, delta=4)
                    self.assertAlmostEqual(width, 1000 * statement.took / whole, delta=4)
                statements.append(statement)
        return statements


def cell_of(value):
    """A value of JSON as a table has it."""
    if isinstance(value, dict):
        return value["date"]
    return "NULL" if value is None else str(value)


def table_in(table):
    """An element with the table in it, for what searches below one."""
    holder = table.makeelement("div", {})
    holder.append(table)
    return holder


class Demo(HtmlCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        file = os.path.join(cls.folder.name, "demo.html")
        cls.answer = tavcc("demo", "--json", "--trace", "--rows", "0", "--html", file)
        assert cls.answer.returncode == PASSED, cls.answer.stderr
        cls.demo = Page(file)
        cls.batch, *cls.scenes = json.loads(cls.answer.stdout)

    def test_it_is_a_page_as_it_should_be(self):
        self.demo.check(self)

    def test_the_outcomes_of_both_batches(self):
        for anchor, batch in (("audit", self.batch["audit"]), ("un-audit", self.batch["un_audit"])):
            bills = Page.outcomes(self.demo.part(anchor), "bills")
            self.assertEqual([bill.line[-1] for bill in bills], lines_of(batch["BillInfo"]))
            passed = [bill for bill in bills if bill.mark == "passed"]
            refused = [bill for bill in bills if bill.mark == "refused"]
            self.assertEqual((len(passed), len(refused)),
                             (batch["SuccessCount"], batch["FailCount"]))
            self.assertEqual(len(bills), len(passed) + len(refused))
            figures = Page.figures(self.demo.part(anchor))
            self.assertEqual([figures[label] for label in ("bills", "passed", "refused", "failed")],
                             [str(len(bills)), str(len(passed)), str(len(refused)), "0"])
            for bill in bills:
                self.assertIn(f"编号为：{bill.name}的", bill.line[-1])
                # What there is to tell of is open.
                self.assertEqual(bill.open, bill.mark == "refused")

    def test_the_refusals_with_their_reasons(self):
        bills = Page.outcomes(self.demo.part("audit"), "bills")
        self.assertEqual(len(bills), 32)
        refused = {bill.name: bill for bill in bills if bill.mark == "refused"}
        self.assertEqual(set(refused), set(TEN_REFUSED))
        for number, (refusal, message, reasons) in TEN_REFUSED.items():
            with self.subTest(number):
                bill = refused[number]
                self.assertEqual((bill.refusal, bill.message, bill.reasons),
                                 (refusal, message, reasons))
        links = [link.text for link in self.demo.part("audit").find(".//nav").iter("a")]
        self.assertEqual(set(links), set(TEN_REFUSED))
        self.assertIn("Lower the quantity, receive goods first, or set IC/UnderStock to 1. "
                      "减少数量，先入库，或将 IC/UnderStock 设为1。", refused["XS260305"].text)

    def test_the_gates_of_a_bill(self):
        bills = {bill.name: bill for bill in Page.outcomes(self.demo.part("audit"), "bills")}
        gates = bills["XS260305"].item.findall(".//ol[@class='ladder']/li/details/summary")
        self.assertEqual([(gate[0].text, gate[1].text) for gate in gates][-1],
                         ("refused", "negative stock"))
        self.assertEqual({gate[0].text for gate in gates[:-1]}, {"passed"})
        self.assertIn(("passed", "credit"), [(gate[0].text, gate[1].text) for gate in gates])

    def test_the_stock_before_and_after(self):
        tables = Page.changes(self.demo.part("audit"))
        self.assertEqual(list(tables), ["Stock on hand"])
        shown = {key[1:]: values for key, values in tables["Stock on hand"].items()}
        before, after = ({tuple(row[:4]): row[4:] for row in self.batch[name]}
                         for name in ("stock_before", "stock_after"))
        self.assert_changes(shown, before, after)
        self.assertEqual([shown["车架", "主仓库"]["quantity"][:3],
                          shown["车架", "主仓库"]["value"][:3]],
                         [["40", "57", "+17"], ["12000", "16810", "+4810"]])
        back = Page.changes(self.demo.part("un-audit"))["Stock on hand"]
        self.assert_changes({key[1:]: values for key, values in back.items()}, after, before)

    def test_the_statements_and_their_times(self):
        statements = self.assert_times(self.demo.root)
        traced = re.findall(r"^> (.*)$", self.answer.stderr, re.M)
        self.assertEqual(len(statements), len(traced))
        self.assertGreater(len(statements), 500)
        for statement, line in zip(statements, traced):
            self.assertEqual(statement.sql.split("\n")[0], line)
        took = re.findall(r"^  .*?([\d.]+) ms", self.answer.stderr, re.M)
        self.assertEqual([f"{statement.took:.3f}" for statement in statements], took)
        counted = sum(int(Page.figures(self.demo.part(anchor))["statements"])
                      for anchor in ("audit", "un-audit"))
        self.assertEqual(counted, len(Page.statements(self.demo.part("audit"))) +
                         len(Page.statements(self.demo.part("un-audit"))))

    def test_a_line_of_time_for_each_bill(self):
        parts = self.demo.part("audit").findall(".//ol[@class='timeline']/li/details/summary")
        self.assertEqual([part[1].text for part in parts],
                         ["before the bills"] + [re.match("编号为：(.*?)的", line)[1]
                                                 for line in lines_of(self.batch["audit"]["BillInfo"])])
        end = 0
        for part in parts:
            begin, width = (float(part.find("svg/rect").get(name)) for name in ("x", "width"))
            self.assertGreaterEqual(begin, end - 2.2)  # the least width of a bar
            end = begin + width
        self.assertAlmostEqual(end, 1000, delta=0.2)

    def test_the_scenes(self):
        scenes = Page.outcomes(self.demo.root, "scenes")
        self.assertEqual(len(scenes), len(self.scenes))
        for shown, told in zip(scenes, self.scenes):
            self.assertEqual(shown.mark, told["verdict"])
            self.assertEqual(shown.name, " ".join(told["title"].split()))
            self.assertEqual(shown.line[0], f"{told['method']}(lngFID={told['bill']})")
            if told["verdict"] == "passed":
                self.assertIsNone(shown.message)
            else:
                self.assertEqual(shown.message, told["message"])
            table = shown.fold.find("div/table")
            rows = {} if table is None else {
                row[0].text: [cell.text for cell in row[1:]] for row in table.findall("tbody/tr")}
            told_rows = {name: [cell_of(value) for row in told[name] for value in row.values()]
                         for name in ("before", "after") if told[name]}
            if told_rows and told_rows["before"] == told_rows["after"]:
                told_rows = {"unchanged": told_rows["before"]}
            self.assertEqual(rows, told_rows)

    def test_the_command_says_what_it_says_without_a_page(self):
        self.assertEqual(tavcc("demo", "--html", self.file).stdout, tavcc("demo").stdout)


class Audit(HtmlCase):
    def test_what_became_of_each_bill(self):
        before = self.stock()
        page, answer = self.on_the_database("audit", "--all", "--json", "--trace", status=REFUSED)
        told = json.loads(answer.stdout)
        bills = Page.outcomes(page.root, "bills")
        self.assertEqual([(bill.name, bill.mark, bill.line[-1], bill.refusal) for bill in bills],
                         [(bill["bill"], bill["verdict"], bill["message"], bill.get("refusal"))
                          for bill in told["bills"]])
        self.assertEqual(len(bills), 32)
        figures = Page.figures(page.root)
        self.assertEqual([int(figures[name]) for name in ("passed", "refused", "failed")],
                         [told["passed"], told["refused"], told["failed"]])
        self.assert_changes(Page.changes(page.root)["Stock on hand"], before, self.stock())
        statements = self.assert_times(page.root)
        self.assertEqual([(shown.number, shown.sql, shown.gate, shown.place, f"{shown.took:.3f}",
                           shown.rows) for shown in statements],
                         [(number, as_shown(sent), sent.get("gate", ""), sent["from"],
                           f"{sent['milliseconds']:.3f}",
                           None if (sent["rows"] or 0) < 0 else sent["rows"])
                          for number, sent in enumerate(told["statements"], 1)])

    def test_a_few_bills_and_back(self):
        before = self.stock()
        page, _ = self.on_the_database("audit", "CG260302", "DB260301")
        self.assertEqual(page.root.find(".//h1").text, "Audit of CG260302, DB260301")
        after = self.stock()
        self.assert_changes(Page.changes(page.root)["Stock on hand"], before, after)
        page, _ = self.on_the_database("unaudit", "DB260301", "CG260302", "--each")
        self.assertEqual(page.root.find(".//h1").text, "Un-audit of DB260301, CG260302")
        self.assert_changes(Page.changes(page.root)["Stock on hand"], after, before)
        self.assertEqual(self.stock(), before)

    def test_each_in_a_transaction_of_its_own(self):
        page, _ = self.on_the_database("audit", "XS260305", "ZZ260301", "--each", status=REFUSED)
        self.assertEqual([(bill.name, bill.mark) for bill in Page.outcomes(page.root, "bills")],
                         [("XS260305", "refused"), ("ZZ260301", "passed")])
        names = [part[1].text
                 for part in page.root.findall(".//ol[@class='timeline']/li/details/summary")]
        self.assertEqual([name for name in names if name != "before the bills"],
                         ["XS260305", "ZZ260301"])

    def test_a_trial(self):
        before = fingerprint(self.db)
        page, _ = self.on_the_database("audit", "CG260302", "--dry-run")
        self.assertEqual(fingerprint(self.db), before)
        self.assertEqual(page.root.find(".//p[@class='verdict']").text, "Nothing was kept.")
        self.assertIn(("01.001", "车架", "主仓库"), Page.changes(page.root)["Stock on hand"])

    def test_stock_below_zero(self):
        self.change("UPDATE t_SystemProfile SET FValue='1' WHERE FKey='UnderStock'")
        page, _ = self.on_the_database("audit", "XS260305")
        row = Page.changes(page.root)["Stock on hand"]["01.005", "内胎", "主仓库"]
        self.assert_amounts("quantity", row["quantity"], Decimal(200), Decimal(-799))
        self.assertEqual(row["quantity"][2], "-999")

    def test_a_batch_that_fails(self):
        self.change("DROP TABLE t_LatestPrice")
        before = self.stock()
        page, _ = self.on_the_database("audit", "CG260302", "XS260305", status=FAILED)
        self.assertEqual(self.stock(), before)
        self.assertEqual(page.root.find(".//p[@class='verdict']").text,
                         "What the batch did was undone.")
        self.assertEqual(Page.outcomes(page.root, "bills")[0].mark, "failed")
        self.assertIn("Invalid object name 't_LatestPrice'", page.root.find(".//pre/code").text)

    def test_no_bill_at_all(self):
        self.on_the_database("audit", "--all", status=REFUSED)
        self.on_the_database("unaudit", "--all")
        self.change("UPDATE T_CC_StockBill SET FStatus=0 UPDATE T_CC_ZZCX SET FStatus=0"
                    " UPDATE t_CG_Order SET FStatus=0 UPDATE t_XS_Order SET FStatus=0")
        page, _ = self.on_the_database("unaudit", "--all")
        self.assertEqual(Page.figures(page.root)["bills"], "0")


def as_shown(statement):
    """A statement's text as a page has it: with line feeds alone, and a procedure with its
    parameters."""
    if "sql" in statement:
        return statement["sql"].replace("\r\n", "\n")
    parameters = ", ".join(f"{name} = {json.dumps(value, ensure_ascii=False)}"
                           for name, value in statement["parameters"].items())
    return f"procedure {statement['procedure']}({parameters})"


class Explain(HtmlCase):
    def test_gates_changes_and_statements(self):
        page, answer = self.on_the_database("explain", "XS260305", "CG260302", "CD260301", "--json",
                                            status=REFUSED)
        for told in json.loads(answer.stdout):
            bill = told["bill"]
            part = page.part(f"b{bill['class']}-{bill['id']}")
            gates = part.findall("ol[@class='ladder']/li/details")
            shown = [(gate.find("summary")[0].text, gate.find("summary")[1].text) for gate in gates]
            every = told["gates"] + told["host_gates"] + told["own_gates"]
            self.assertEqual(shown, [(gate["answer"], gate["gate"]) for gate in every
                                     if gate["answer"] != "not asked" or gate["settings"]])
            self.assertEqual([gate.get("open") is not None for gate in gates],
                             [mark in ("refused", "failed") for mark, _ in shown])
            tables = Page.changes(part)
            changes = {table["what"]: table for table in told["audit"]["changes"]}
            self.assertEqual(set(tables), set(changes))
            for what, table in changes.items():
                self.assert_table(tables[what], table["rows"])
            self.assertEqual(bool(self.assert_times(part)), True)

    def assert_table(self, shown, told):
        self.assertEqual(len(shown), len(told))
        for row in told:
            key = tuple(plain(value) for value in row["key"].values() if value)
            for name, values in shown[key].items():
                old = row["before"] and plain(row["before"][name])
                new = row["after"] and plain(row["after"][name])
                self.assertEqual(values[:2], [old or "none", new or "none"])
                if values[3] is not None:
                    self.assert_amounts(name, values, old and Decimal(old), new and Decimal(new))

    def test_what_stops_a_bill_stands_first(self):
        page, _ = self.on_the_database("explain", "XS260307", status=REFUSED)
        why = page.root.find(".//article/div[@class='why']")
        self.assertEqual([p.text for p in why.findall("p")],
                         [TEN_REFUSED["XS260307"][1], *TEN_REFUSED["XS260307"][2]])
        self.assertEqual(page.root.find(".//h1").text, "May it be audited? XS260307")
        self.assertEqual(page.root.find(".//h2").text, "销售单 XS260307 (class 1030002, id 138)")

    def test_states_are_no_amounts(self):
        page, _ = self.on_the_database("explain", "DB260301")
        states = Page.changes(page.root)["State of the bill"]
        self.assertEqual(states["DB260301",]["state"][:2], ["0", "1"])
        self.assertIsNone(states["DB260301",]["state"][3])

    def test_an_un_audit(self):
        self.call("PublicSysInfo.DateInCurrentPeriod")
        self.assertEqual(tavcc("audit", "DB260301", "--db", self.db).returncode, PASSED)
        page, _ = self.on_the_database("explain", "DB260301", "--un-audit")
        self.assertEqual(page.root.find(".//h1").text, "May it be un-audited? DB260301")


PASSING = """{"name": "a line that is exceeded",
  "profile": {"IC.ControlPoint": "1"},
  "sql": ["insert into t_Organization(FItemID,FCreditAmount,FCurComeGoBalance) values(7,1000,900)"],
  "steps": [{"call": "PublicSysInfo.CheckCredit", "note": "one cent more",
             "args": {"oDict": {"ClassTypeID": 1030002, "CustOrSupplyID": 7, "AllAmount": 100.01,
                                "BillTypeID": 3001}, "intCheckType": 1},
             "expect": {"result": 1}}]}"""

# Two stocks of one item, of which a bill takes.
MOVING = """{"name": "stock that a step moves",
  "sql": ["insert into t_ICItem(FItemID,FNumber,FName) values(5,N'05',N'<五>')",
          "insert into t_Stock(FItemID,FName) values(6,N'A'),(7,N'B')",
          "insert into T_CC_Inventory(FItemID,FStockID,FBatchNo,FQty,FBal) values(5,6,'',10,20)"],
  "steps": [{"query": "update T_CC_Inventory set FQty=7.5, FBal=15"},
            {"query": "insert into T_CC_Inventory(FItemID,FStockID,FBatchNo,FQty,FBal) values(5,7,'',2.5,5)"}]}"""


class Run(HtmlCase):
    def test_outcomes_failures_and_skips(self):
        folder = self.path("scenarios")
        os.makedirs(os.path.join(folder, "more"), exist_ok=True)
        self.write("scenarios/passing.json", PASSING)
        self.write("scenarios/failing.json",
                   PASSING.replace('"result": 1}', '"result": 0}').replace("exceeded", "not"))
        self.write("scenarios/more/none.json", '{"name": ')
        self.write("scenarios/more/hostile.json",
                   PASSING.replace("a line that is exceeded", HOSTILE.replace('"', '\\"')))
        for words in ([], ["-j", "2"]):
            page, answer = self.page("run", folder, "--json", *words, status=FAILED)
            told = json.loads(answer.stdout)
            self.assertEqual(len(told), 4)
            shown = Page.outcomes(page.root, "scenarios")
            self.assertEqual([scenario.mark for scenario in shown],
                             ["passed" if scenario["passed"] else "failed" for scenario in told])
            for scenario, outcome in zip(shown, told):
                file = scenario.fold.find("p[@class='faint file']").text
                self.assertEqual(file, outcome["file"])
                failure = scenario.fold.find("pre")
                self.assertEqual(None if failure is None else failure.find("code").text,
                                 outcome.get("failure"))
                self.assertEqual(scenario.open, not outcome["passed"])
            names = [scenario.name for scenario in shown]
            self.assertIn("a line that is exceeded", names)
            self.assertIn(" ".join(HOSTILE.split()), names)
            figures = Page.figures(page.root)
            self.assertEqual([figures[name] for name in ("scenarios", "passed", "failed", "calls")],
                             ["4", "2", "2", "3"])
            self.assertEqual(page.root.find(".//h1").text, "2 of 4 scenarios failed")
            self.assertEqual([link.text for link in page.root.iter("a")],
                             [scenario["file"] for scenario in told if not scenario["passed"]])

    def test_a_step(self):
        page, _ = self.page("run", self.write("passing.json", PASSING))
        self.assertEqual(page.root.find(".//h1").text, "1 scenario passed")
        step = page.root.find(".//ol[@class='ladder steps']/li/details")
        self.assertEqual([child.text for child in step.find("summary")][:2],
                         ["refused", "1 PublicSysInfo.CheckCredit"])
        message = "当前客户的信用额度为：1000，截止到本次往来余额已经超出。"
        self.assertEqual([each.text for each in step.find("summary")[2]], ["one cent more", message])
        self.assertEqual(step.find("div/p").text, message)
        self.assertEqual(step.find("div/dl/dd/code").text, "credit.exceeded")
        statements = self.assert_times(page.root)
        self.assertIn("t_Organization", statements[-1].sql)
        self.assertTrue(statements[-1].place.startswith("src/checks/credit.cpp:"))

    def test_what_a_sweep_repeats_is_no_step(self):
        sweeping = PASSING.replace('"expect": {"result": 1}}', """"expect": {"result": 1},
            "sweep": {"expect": {"result": -1}}}""")
        page, _ = self.page("run", self.write("sweeping.json", sweeping))
        self.assertEqual(Page.figures(page.root)["calls"], "1")
        self.assertEqual(len(page.root.findall(".//ol[@class='ladder steps']/li")), 1)
        plain, _ = self.page("run", self.write("passing.json", PASSING))
        self.assertEqual([sent.sql for sent in Page.statements(page.root)],
                         [sent.sql for sent in Page.statements(plain.root)])

    def test_stock_before_and_after(self):
        page, _ = self.page("run", self.write("moving.json", MOVING))
        changes = Page.changes(page.root)["Stock on hand"]
        self.assertEqual(set(changes), {("05", "<五>", "A"), ("05", "<五>", "B")})
        self.assert_amounts("quantity", changes["05", "<五>", "A"]["quantity"], Decimal(10),
                            Decimal("7.5"))
        self.assert_amounts("value", changes["05", "<五>", "B"]["value"], None, Decimal(5))

    def test_a_folder_of_scenarios(self):
        scenarios = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../scenarios")
        for folder in ("tapes", "transfer"):
            page, answer = self.page("run", os.path.join(scenarios, folder), "--json")
            self.assertEqual(len(Page.outcomes(page.root, "scenarios")),
                             len(json.loads(answer.stdout)))
            self.assert_times(page.root)
            self.assertTrue(page.root.findall(".//ol[@class='ladder steps']/li"))

    def test_a_run_without_a_page_says_the_same(self):
        file = self.write("moving.json", MOVING)
        _, answer = self.page("run", file)
        self.assertEqual(answer.stdout, tavcc("run", file).stdout)


class Hostile(HtmlCase):
    """Whatever a database or a file holds is text on a page."""

    def test_names_that_look_like_html(self):
        literal = HOSTILE.replace("'", "''")
        self.change(f"UPDATE T_CC_StockBill SET FBillNo=N'{literal}' WHERE FID=134"
                    f" UPDATE t_ICItem SET FName=N'{literal}' WHERE FItemID=1009"
                    f" UPDATE t_Stock SET FName=N'--></style><svg onload=x>'"
                    f" UPDATE T_CC_StockBill SET FBillNo=N'x--></style>' WHERE FBillNo='CG260302'")
        for command in (["explain"], ["audit", "--dry-run"]):
            page, _ = self.on_the_database(*command, HOSTILE, "x--></style>", status=REFUSED)
            self.assertNotIn("<script", page.text)
            self.assertNotIn("</style><svg", page.text)
            self.assertEqual(page.text.count("<style>"), 1)
            self.assertIn(HOSTILE, [link.text for link in page.root.iter("a")])
            self.assertIn(f"line 1, item 01.005 {HOSTILE}, stock --></style><svg onload=x>,"
                          " in stock 200, wanted 999, short by 799",
                          [p.text for p in page.root.iter("p")])

    def test_control_characters_and_characters_of_every_plane(self):
        self.change("UPDATE t_ICItem SET FName=N'a' + NCHAR(1) + NCHAR(27) + NCHAR(127) + N'𠮷😀\u202e'"
                    " WHERE FItemID=1009")
        page, _ = self.on_the_database("explain", "XS260305", status=REFUSED)
        self.assertIn("a␁␛␡𠮷😀\u202e", page.text)


class Files(HtmlCase):
    """A page that cannot be written is one clear line and status 2, and nothing is kept."""

    COMMANDS = (["audit", "ZZ260301"], ["audit", "--all"], ["audit", "ZZ260301", "--json"],
                ["explain", "XS260305"], ["explain", "XS260305", "--json"])

    def assert_line(self, answer, text):
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertEqual(answer.stderr.count("\n"), 1, answer.stderr)
        self.assertTrue(answer.stderr.startswith("tavcc: "), answer.stderr)
        self.assertIn(text, answer.stderr)

    def test_nothing_is_kept(self):
        before = fingerprint(self.db)
        os.makedirs(self.path("a_folder"), exist_ok=True)
        for words in self.COMMANDS:
            for file, problem in ((self.path("none/page.html"), "No such file or directory"),
                                  ("/dev/full", "No space left on device"),
                                  (self.path("a_folder"), "Is a directory")):
                with self.subTest(words=words, file=file):
                    answer = tavcc(*words, "--db", self.db, "--html", file)
                    self.assert_line(answer, f"{file} cannot be written: {problem}")
                    self.assertEqual(fingerprint(self.db), before)
                    if words[0] == "audit":
                        self.assertIn("what the batch did was undone", answer.stderr)
        self.assertEqual(os.listdir(self.path("a_folder")), [])
        self.assertEqual([name for name in os.listdir(self.folder.name) if "unfinished" in name], [])

    def test_a_folder_that_cannot_be_written(self):
        """Root may write everywhere; nobody may not."""
        folder = self.path("read_only")
        os.makedirs(folder, exist_ok=True)
        os.chmod(folder, 0o555)
        os.chmod(self.folder.name, 0o777)
        os.chmod(self.db, 0o666)
        before = fingerprint(self.db)
        nobody = {"user": 65534} if os.geteuid() == 0 else {}
        try:
            answer = subprocess.run(
                [case.TAVCC, "audit", "ZZ260301", "--db", self.db, "--html", f"{folder}/page.html"],
                capture_output=True, text=True, timeout=120, **nobody)
        except PermissionError:
            self.skipTest("nobody may not run the program where it was built")
        self.assert_line(answer, "page.html cannot be written: Permission denied")
        self.assertEqual(fingerprint(self.db), before)

    def test_demo_and_run(self):
        scenario = self.write("moving.json", MOVING)
        for words in (["demo"], ["demo", "--json"], ["run", scenario], ["run", scenario, "--json"]):
            answer = tavcc(*words, "--html", "/dev/full")
            self.assert_line(answer, "/dev/full cannot be written: No space left on device")

    def test_bills_sent_one_by_one_stay(self):
        """As with any other output: they were kept before, and the line says so."""
        answer = tavcc("audit", "ZZ260301", "--each", "--db", self.db, "--html", "/dev/full")
        self.assert_line(answer, "1 of 1 bills were sent before, and what they did is kept")
        self.assertEqual(self.rows("SELECT FStatus FROM T_CC_ZZCX WHERE FBillNo='ZZ260301'"), [[1]])

    def test_a_file_that_is_used_already(self):
        before = fingerprint(self.db)
        scenario = self.write("moving.json", MOVING)
        other = os.path.join(self.folder.name, ".", "erp.db")
        link = self.path("link.html")
        if not os.path.islink(link):
            os.symlink(self.db, link)
        for file in (self.db, other, link):
            for words in (["audit", "ZZ260301"], ["explain", "ZZ260301"]):
                answer = tavcc(*words, "--db", self.db, "--html", file)
                self.assert_error(answer, f"{file} is used by this command already")
        self.assertEqual(fingerprint(self.db), before)
        tape = self.path("tape.json")
        self.assert_error(tavcc("explain", "ZZ260301", "--db", self.db, "--record", tape, "--html",
                                tape), "is used by this command already")
        self.assert_error(tavcc("demo", "--db", self.path("new.db"), "--html", self.path("new.db")),
                          "is used by this command already")
        self.assert_error(tavcc("run", scenario, "--html", scenario),
                          "is used by this command already")
        self.assert_error(tavcc("run", scenario, "--junit", tape, "--html", tape),
                          "is used by this command already")
        with open(scenario, encoding="utf-8") as file:
            self.assertEqual(file.read(), MOVING)
        for command in (["demo"], ["audit", "--all"], ["explain", "ZZ260301"], ["run", scenario]):
            self.assert_error(tavcc(*command, "--html", ""),
                              "--html: the name of the file to write is empty")

    def test_a_page_takes_the_place_of_the_one_before(self):
        with open(self.file, "w", encoding="utf-8") as file:
            file.write("old " * 100000)
        page, _ = self.on_the_database("explain", "ZZ260301")
        self.assertNotIn("old old", page.text)

    def test_what_is_no_file_is_written_in_place(self):
        """A page may go into a pipe."""
        pipe = self.path("pipe")
        os.mkfifo(pipe)
        with subprocess.Popen(["cat", pipe], stdout=subprocess.PIPE, text=True) as reader:
            answer = tavcc("explain", "XS260305", "--db", self.db, "--html", pipe)
            self.assertEqual(answer.returncode, REFUSED, answer.stderr)
            self.assertIn("审核出现负库存商品！", reader.communicate(timeout=60)[0])

    def test_help(self):
        for command in ("demo", "audit", "unaudit", "explain", "run"):
            self.assertIn("--html FILE", tavcc(command, "--help").stdout)


class Chinese(HtmlCase):
    """Where tavcc speaks Chinese, its pages do."""

    # Of a page's own words: what a database, a rule's source or a file calls something is left.
    OWN = ("h1", "h2", "h3", "caption", "dt", "summary/span[@class='faint']", "p[@class='verdict']")

    def page_in_chinese(self, command, *words, status):
        answer = tavcc(command, "--lang", "zh", "--html", self.file, *words)
        self.assertEqual((answer.returncode, answer.stderr), (status, ""))
        page = Page(self.file)
        page.check(self, "zh-CN")
        return page

    def assert_chinese(self, page):
        texts = {shown for path in self.OWN
                 for shown in ("".join(each.itertext()) for each in page.root.findall(f".//{path}"))}
        texts |= {each.text for each in page.root.iter("th") if each.get("scope") != "row"}
        texts |= {each.text for each in page.root.iter("span")
                  if (each.get("class") or "").startswith("mark")}
        texts |= {nav.get("aria-label") for nav in page.root.iter("nav")}
        texts |= {picture.get("aria-label") for picture in page.root.iter("svg")}
        self.assertGreater(len(texts), 15)
        for text in texts - self.known(page):
            self.assertRegex(text, r"[\u4e00-\u9fff]", text)

    @staticmethod
    def known(page):
        """Numbers of bills, names of columns, and what a scenario's file calls itself."""
        columns = {each.text for table in page.root.iter("table") if table.get("class") is None
                   for each in table.iter("th")}
        names = {entry.name for kind in ("bills", "scenarios") for entry in Page.outcomes(page.root, kind)}
        return columns | names | {page.root.find(".//h1").text}

    def test_an_audit(self):
        page = self.page_in_chinese("audit", "XS260305", "DB260301", "--db", self.db, status=REFUSED)
        self.assert_chinese(page)
        self.assertEqual(page.root.find(".//h1").text, "审核 XS260305, DB260301")
        marks = [item.find("details/summary/span") for item in
                 page.root.findall(".//ol[@class='outcomes bills']/li")]
        # The colour is of what it means, not of the word.
        self.assertEqual([(mark.text, mark.get("class")) for mark in marks],
                         [("被拒", "mark refused"), ("通过", "mark passed")])
        self.assertIn("商品 01.005 内胎", Page.outcomes(page.root, "bills")[0].reasons[0])

    def test_an_explanation_a_demonstration_and_a_run(self):
        self.assert_chinese(self.page_in_chinese("explain", "XS260305", "CG260302", "--db", self.db,
                                                 status=REFUSED))
        page = self.page_in_chinese("demo", status=PASSED)
        self.assert_chinese(page)
        self.assertEqual(page.root.find(".//h1").text, "示例公司的单据")
        page = self.page_in_chinese("run", self.write("moving.json", MOVING), status=PASSED)
        self.assertEqual(page.root.find(".//h1").text, "1 个场景通过")


class TraceBeside(HtmlCase):
    def test_a_page_changes_nothing_of_the_trace(self):
        """A page keeps more rows of a statement than --rows shows."""
        words = ["audit", "XS260305", "--db", self.db, "--dry-run", "--trace", "--rows", "0"]
        times = re.compile(r"\d+\.\d+ ms")
        plain, beside = tavcc(*words), tavcc(*words, "--html", self.file)
        self.assertEqual(times.sub("ms", plain.stderr), times.sub("ms", beside.stderr))
        self.assertEqual(plain.stdout, beside.stdout)
        self.assertEqual(Page.outcomes(Page(self.file).root, "bills")[0].reasons,
                         ["line 1, item 01.005 内胎, stock 主仓库, in stock 200, wanted 999,"
                          " short by 799"])


class OverOdbc(Served, HtmlCase):
    def test_an_audit_on_a_server(self):
        before = self.stock()
        answer = self.over_odbc("audit", "CG260302", "XS260305", "--html", self.file)
        self.assertEqual((answer.returncode, answer.stderr), (REFUSED, ""))
        page = Page(self.file)
        page.check(self)
        self.assertEqual([bill.mark for bill in Page.outcomes(page.root, "bills")],
                         ["passed", "refused"])
        self.assert_changes(Page.changes(page.root)["Stock on hand"], before, self.stock())


class Colours(unittest.TestCase):
    def test_contrast(self):
        """Texts stand out from what is behind them, and bars from the paper."""
        for scheme in (LIGHT, DARK):
            names = colours(scheme)
            self.assertEqual(set(names), {"paper", "ink", "faint", "line", "box", "passed", "refused",
                                          "failed", "stop", "before", "after", "time"})
            for text in ("ink", "faint", "passed", "refused", "failed"):
                for behind in ("paper", "box") + (("stop",) if text in ("ink", "faint") else ()):
                    self.assertGreaterEqual(contrast(names[text], names[behind]), 4.5,
                                            (scheme, text, behind))
            for bar in ("before", "after", "time"):
                self.assertGreaterEqual(contrast(names[bar], names["paper"]), 3, (scheme, bar))

    def test_the_count_of_contrast(self):
        self.assertAlmostEqual(contrast((0, 0, 0), (255, 255, 255)), 21)
        self.assertAlmostEqual(contrast((118, 118, 118), (255, 255, 255)), 4.54, places=2)


if __name__ == "__main__":
    case.main(served=True)
