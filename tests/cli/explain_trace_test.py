"""tavcc explain --trace FILE: a call that the automation server traced."""

import json
import os
import subprocess

import case
from case import FAILED, PASSED, REFUSED, Case, tavcc
from page import Page, shown

HEAD = "Select FStatus,FVoucherID From T_CC_ZZCX where FID=121"
BEGIN = {"call": "cls_CX.AuditBill", "started": "2026-03-15 10:00:00.123", "process": 7,
         "thread": 8, "arguments": {"lngFID": {"integer": 121}, "lngUserID": 7,
                                    "sDsn": "PWD=***;Server=erp", "strReturnMsg": ""}}
LADDER = {"ladder": 1}
SENT = {"statement": 1, "sql": HEAD, "from": "src/billtypes/bill_gates.cpp:21",
        "gate": "head: exists", "rows": 1, "milliseconds": 0.4}
ROWS = {"rows_of": 1, "columns": ["FStatus", "FVoucherID"], "rows": [[1, {"decimal": "0.50"}]],
        "count": 1, "to_the_end": False}
EXISTS = {"gate": "head: exists", "answer": "passed"}
REFUSED_GATE = {"gate": "head: state", "answer": "refused", "message": "该单据已被审核，不能再审核！",
                "rule": "src/billtypes/bill_gates.cpp:65"}
REFUSAL = {"result": False, "arguments": {"strReturnMsg": "该单据已被审核，不能再审核！"},
           "milliseconds": 1.5}
UPDATE = {"statement": 2, "sql": "Update T_CC_ZZCX set FStatus=1", "rows": None,
          "from": "src/billtypes/bill_actions.cpp:30", "milliseconds": 2}
PASSED_END = {"result": True, "arguments": {"strReturnMsg": ""}, "milliseconds": 3}

# Two bills of a batch: the first is refused for lack of stock.
BATCH = [
    {"call": "PublicSysInfo.AuditBill", "started": "2026-03-15 10:00:00.123", "process": 7,
     "thread": 8, "arguments": {"billVect": [
         {"ClassTypeID": 1030002, "BillInterID": 134, "BillNo": "XS260305"},
         {"ClassTypeID": 1040005, "BillInterID": 121, "BillNo": "ZZ260301"}], "CheckType": 1}},
    {"host": "setting", "category": "IC", "key": "CalculateType", "value": "0"},
    {"ladder": 1},
    {"host": "right", "key": "1030002", "value": True, "gate": "right"},
    {"gate": "right", "answer": "passed"},
    {"gate": "auditor", "answer": "not asked"},
    {"host": "published", "key": "IndustryType", "value": {"empty": True}, "gate": "limit prices"},
    {"gate": "limit prices", "answer": "passed"},
    {"host": "setting", "category": "IC", "key": "UnderStock", "value": None,
     "gate": "negative stock"},
    {"statement": 1, "sql": "Select Short", "from": "src/checks/x.cpp:7", "gate": "negative stock",
     "rows": -1, "milliseconds": 1},
    {"gate": "negative stock", "answer": "refused", "message": "审核出现负库存商品！",
     "rule": "src/audit/batch_audit.cpp:160"},
    {"rows_of": 1, "columns": ["DIFFQTY"], "rows": [[{"decimal": "-799"}]], "count": 1,
     "to_the_end": True},
    {"ladder": 2},
    {"gate": "right", "answer": "passed"},
    {"statement": 2, "procedure": "sp_Post", "parameters": {"@FID": 121}, "outputs": {"@m": ""},
     "from": "src/audit/y.cpp:8", "rows": None, "milliseconds": 1},
    {"result": {"integer": 0}, "milliseconds": 3, "arguments": {"dct": {
        "BillInfo": "编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！|"
                    "编号为：ZZ260301的组装单单据审核成功！|",
        "ErrorMsg": "", "SuccessCount": 1, "FailCount": 1, "NegItemID": "7"}}},
]


class ExplainTrace(Case):
    def trace(self, *lines, tail=""):
        text = "".join(json.dumps(line, ensure_ascii=False) + "\n" for line in lines)
        return self.write("trace.jsonl", text + tail)

    def explain(self, *lines, words=(), tail=""):
        return tavcc("explain", "--trace", self.trace(*lines, tail=tail), *words)

    def test_a_refusal_is_told_with_the_rows_that_decided(self):
        answer = self.explain(BEGIN, LADDER, SENT, EXISTS, REFUSED_GATE, ROWS, REFUSAL)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertEqual(answer.stdout, """\
cls_CX.AuditBill refused, 2026-03-15 10:00:00.123, 1.5 ms
  lngFID = 121
  lngUserID = 7
  sDsn = PWD=***;Server=erp
  strReturnMsg =

Gates:

  passed    head: exists
  refused   head: state   该单据已被审核，不能再审核！  [bill.audited]
            cause     The bill is audited already.
            remedy    Nothing is left to do; to audit it again, un-audit it first.
            rule      src/billtypes/bill_gates.cpp:65
            statement Select FStatus,FVoucherID From T_CC_ZZCX where FID=121
            sent by   src/billtypes/bill_gates.cpp:21
            rows      FStatus  FVoucherID
                      -------  ----------
                            1        0.50

该单据已被审核，不能再审核！
  [bill.audited]
  cause   The bill is audited already.
  remedy  Nothing is left to do; to audit it again, un-audit it first.
""")

    def test_what_a_gate_loads_after_its_rows_does_not_decide(self):
        load = {**SENT, "statement": 2, "sql": "Insert Into #t Select 1", "rows": None}
        answer = self.explain(BEGIN, LADDER, SENT, load,
                              {**REFUSED_GATE, "gate": "head: exists"}, ROWS, REFUSAL)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertIn(f"            statement {HEAD}\n", answer.stdout)
        self.assertIn("            rows      FStatus  FVoucherID\n", answer.stdout)
        self.assertNotIn("            statement Insert", answer.stdout)

    def test_a_call_that_passed(self):
        answer = self.explain(BEGIN, LADDER, SENT, EXISTS, ROWS, UPDATE, PASSED_END)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertTrue(answer.stdout.endswith(
            "  passed    head: exists\n\n1 statement beside the gates (--full shows them)\n"),
            answer.stdout)

    def test_full_shows_every_statement(self):
        answer = self.explain(BEGIN, LADDER, SENT, EXISTS, ROWS, UPDATE, PASSED_END,
                              words=["--full"])
        self.assertIn(f"            statement {HEAD}\n", answer.stdout)
        self.assertIn("\nStatements beside the gates:\n\n> Update T_CC_ZZCX set FStatus=1\n"
                      "  done, 2.000 ms, src/billtypes/bill_actions.cpp:30\n", answer.stdout)

    def test_a_call_without_gates_shows_its_statements(self):
        begin = dict(BEGIN, call="PublicSysInfo.GetLowPrice", arguments={"lItemID": 7})
        sent = {key: SENT[key] for key in SENT if key != "gate"}
        answer = self.explain(begin, sent, ROWS, {"result": 1.5, "arguments": {},
                                                  "milliseconds": 1})
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertIn(f"\nStatements:\n\n> {HEAD}\n  1 row, 0.400 ms, "
                      "src/billtypes/bill_gates.cpp:21\n    FStatus  FVoucherID\n", answer.stdout)

    def test_a_statement_that_failed(self):
        failed = dict(SENT, rows=None,
                      error={"number": 208, "source": "db", "description": "no such table"})
        answer = self.explain(BEGIN, LADDER, failed, {"gate": "head: exists", "answer": "failed"},
                              dict(REFUSAL, failure=failed["error"]))
        self.assertEqual(answer.returncode, FAILED, answer.stderr)
        self.assertRegex(answer.stdout, r"\n  failed    head: exists  no such table\n")
        self.assertIn("\nerror 208: no such table\n", answer.stdout)

    def test_an_error_that_the_call_raised(self):
        end = {"error": {"number": -5, "source": "x", "description": "单据已经审核,不允许删除。"},
               "arguments": {}, "milliseconds": 1}
        begin = dict(BEGIN, call="cls_DB.BeforeDel", arguments={"nInterID": 7})
        answer = self.explain(begin, SENT, ROWS, end)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertIn("error -5: 单据已经审核,不允许删除。", answer.stdout)

    def test_a_batch_has_a_ladder_per_bill(self):
        answer = self.explain(*BATCH)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertIn("\nGates of 销售单 XS260305:\n\n  passed    right\n"
                      "  passed    limit prices    published/IndustryType is not set\n"
                      "  refused   negative stock  审核出现负库存商品！  [stock.negative]\n",
                      answer.stdout)
        self.assertIn("settings  IC/UnderStock = NULL\n", answer.stdout)
        self.assertRegex(answer.stdout, r"rows +DIFFQTY\n +-+\n +-799\n")
        self.assertIn("\nGates of 组装单 ZZ260301:\n\n  passed    right\n\n"
                      "1 statement beside the gates (--full shows them)\n", answer.stdout)
        self.assertIn("\n编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！\n"
                      "编号为：ZZ260301的组装单单据审核成功！\n", answer.stdout)

    def test_as_json(self):
        record = json.loads(self.explain(*BATCH, words=["--json"]).stdout)
        self.assertEqual((record["call"], record["verdict"]),
                         ("PublicSysInfo.AuditBill", "refused"))
        first, second = record["ladders"]
        self.assertEqual((first["bill"], second["bill"]), ("销售单 XS260305", "组装单 ZZ260301"))
        self.assertEqual([(gate["gate"], gate["answer"]) for gate in first["gates"]],
                         [("right", "passed"), ("auditor", "not asked"), ("limit prices", "passed"),
                          ("negative stock", "refused")])
        self.assertEqual(first["gates"][-1]["refusal"]["name"], "stock.negative")
        self.assertEqual(first["gates"][-1]["answer_rows"]["rows"], [[-799]])
        short, post = record["statements"]
        self.assertEqual(short["seen"]["rows"], [[-799]])
        self.assertEqual(post["parameters"], {"@FID": 121})

    def test_decimals_have_all_their_digits_in_json(self):
        rows = dict(ROWS, rows=[[1, {"decimal": "0.50"}]])
        end = dict(REFUSAL, result={"decimal": "-7.000"})
        begin = dict(BEGIN, arguments=dict(BEGIN["arguments"], lngFID={"decimal": "121.0"}))
        shown = self.explain(begin, SENT, rows, end, words=["--json"]).stdout
        for digits in ("0.50\n", '"lngFID": 121.0', '"result": -7.000'):
            self.assertIn(digits, shown)
        self.assertNotIn('"decimal"', shown)

    def test_an_answer_without_rows_says_so(self):
        none = {"rows_of": 1, "columns": [], "rows": [], "count": 0, "to_the_end": True}
        gate = {"gate": "head: exists", "answer": "refused", "message": "该单据不存在！",
                "rule": "x:1"}
        answer = self.explain(BEGIN, LADDER, SENT, gate, none, REFUSAL)
        self.assertIn("            rows      (no rows)\n", answer.stdout)

    def test_a_process_that_ended_in_the_middle(self):
        answer = self.explain(BEGIN, SENT, tail='{"rows_of":1,"col')
        self.assertEqual(answer.returncode, FAILED, answer.stderr)
        self.assertIn("the trace ends before the call did", answer.stdout)

    def test_lines_that_were_left_out_are_told(self):
        answer = self.explain(BEGIN, SENT, {"left_out": 12}, REFUSAL)
        self.assertIn("\n12 lines were left out: the file was full\n", answer.stdout)

    def test_what_is_no_trace_is_told(self):
        for lines, tail, text in (
                ([], "hello\n", "line 1: "), ([], "", "is empty, no trace of a call"),
                ([{"name": "a scenario"}], "", "line 1: is not the first line of a trace"),
                ([BEGIN, {"other": 1}], "", "line 2: is of no kind that a trace has"),
                ([BEGIN, BEGIN], "", "line 2: is not the first line"),
                ([BEGIN], "broken\n{}\n", "line 2: "), ([BEGIN, {"statement": "x"}], "", "line 2"),
                ([BEGIN, 7], "", "line 2: is of no kind"),
                ([dict(BEGIN, call="cls_CX.Frob")], "", "line 1: cls_CX has no method"),
                ([dict(BEGIN, call=7)], "", "line 1"),
                ([{"call": "cls_CX.AuditBill"}], "", "line 1")):
            with self.subTest(text):
                self.assert_error(self.explain(*lines, tail=tail), text)
        self.assert_error(tavcc("explain", "--trace", self.path("none.jsonl")), "none.jsonl")
        self.assert_error(tavcc("explain", "--trace"), "--trace")

    def page(self, *lines, status):
        """The page of the trace, and its words as standard output has them."""
        file = self.path("page.html")
        answer = self.explain(*lines, words=["--html", file])
        self.assertEqual((answer.returncode, answer.stderr), (status, ""))
        page = Page(file)
        page.check(self)
        self.assertEqual(answer.stdout, self.explain(*lines).stdout)
        return page

    def test_a_page_of_a_refusal(self):
        page = self.page(BEGIN, LADDER, SENT, EXISTS, REFUSED_GATE, ROWS, UPDATE, REFUSAL,
                         status=REFUSED)
        main = page.root.find(".//main")
        self.assertEqual([shown(part) for part in main[:3]],
                         ["cls_CX.AuditBill", "refused , 2026-03-15 10:00:00.123, 1.5 ms",
                          "该单据已被审核，不能再审核！"])
        self.assertEqual([shown(part) for part in main.find("dl[@class='arguments']")],
                         ["lngFID", "121", "lngUserID", "7", "sDsn", "PWD=***;Server=erp",
                          "strReturnMsg", ""])
        why, exists, refused = main.find("article/div"), *main.findall("article/ol[1]/li/details")
        self.assertEqual(shown(why[0]), "该单据已被审核，不能再审核！")
        self.assertIn("bill.audited", shown(why))
        self.assertEqual([shown(part) for part in exists[0]], ["passed", "head: exists", ""])
        self.assertEqual([shown(part) for part in refused[0]],
                         ["refused", "head: state", "该单据已被审核，不能再审核！"])
        self.assertEqual([fold.get("open") for fold in (exists, refused)], [None, "open"])
        self.assertEqual([shown(cell) for cell in refused.iter("td")], ["1", "0.50"])
        self.assertIn(HEAD, shown(refused))
        self.assertEqual(shown(main.find("article/h3")), "Statements beside the gates")
        beside = main.findall("article/ol[2]/li/details")
        self.assertEqual([[shown(part) for part in fold[0]] for fold in beside],
                         [["2.0 ms", "", "Update T_CC_ZZCX set FStatus=1"]])

    def test_a_page_of_a_batch(self):
        page = self.page(*BATCH, status=REFUSED)
        self.assertEqual([shown(link) for link in page.root.iter("a")],
                         ["Gates of 销售单 XS260305", "Gates of 组装单 ZZ260301"])
        self.assertEqual([shown(item) for item in page.root.findall(".//nav/ul/li/span")],
                         ["refused", "passed"])
        first, second = page.root.findall(".//article")
        self.assertIn("审核出现负库存商品！", shown(first))
        self.assertIn("-799", [shown(cell) for cell in first.iter("td")])
        self.assertIn("sp_Post", shown(second))
        told = [p.text for p in page.root.findall(".//main/p")[1:]]
        self.assertEqual(told, ["编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！",
                                "编号为：ZZ260301的组装单单据审核成功！"])

    def test_a_page_of_a_call_without_gates(self):
        begin = dict(BEGIN, call="PublicSysInfo.GetLowPrice", arguments={"lItemID": 7})
        failed = dict(UPDATE, error={"number": 208, "source": "db", "description": "no <table>"})
        page = self.page(begin, SENT, ROWS, failed,
                         {"error": failed["error"], "arguments": {}, "milliseconds": 1},
                         status=FAILED)
        self.assertEqual(shown(page.root.find(".//div[@class='why']")), "error 208: no <table>")
        read, wrote = page.root.findall(".//ol/li/details")
        self.assertEqual([shown(part) for part in read[0]], ["0.4 ms", "1 row", HEAD])
        self.assertEqual([shown(cell) for cell in read.iter("td")], ["1", "0.50"])
        self.assertEqual(shown(wrote[0][1]), "error 208: no <table>")
        self.assertEqual([fold.get("open") for fold in (read, wrote)], [None, "open"])

    def test_a_page_of_a_trace_that_is_not_whole(self):
        page = self.page(BEGIN, SENT, {"left_out": 12}, status=FAILED)
        self.assertIn("the trace ends before the call did", shown(page.body))
        self.assertIn("12 lines were left out: the file was full", shown(page.body))

    def test_a_page_that_cannot_be_written(self):
        trace = self.trace(*BATCH)
        self.assert_error(tavcc("explain", "--trace", trace, "--html", trace),
                          "is used by this command already")
        self.assert_error(tavcc("explain", "--trace", trace, "--html", self.path("no/page.html")),
                          "page.html")

    def test_an_output_that_cannot_be_written_is_told(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            answer = subprocess.run([case.TAVCC, "explain", "--trace", self.trace(*BATCH)],
                                    stdout=full, stderr=subprocess.PIPE, text=True, timeout=60,
                                    check=False)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("the output cannot be written", answer.stderr)

    @case.unix_only("Windows has words of its own for it")
    def test_a_reader_that_has_gone_is_told(self):
        read, write = os.pipe()
        os.close(read)
        answer = subprocess.run([case.TAVCC, "explain", "--trace", self.trace(*BATCH)],
                                stdout=write, stderr=subprocess.PIPE, text=True, timeout=60,
                                check=False)
        os.close(write)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("Broken pipe", answer.stderr)


if __name__ == "__main__":
    case.main()
