#!/usr/bin/env python3
"""tavcc as its users meet it: answers, errors and exit statuses of the real program.

usage: tavcc_test.py TAVCC [unittest options]
"""

import json
import os
import signal
import socket
import subprocess
import time
import unittest
import xml.etree.ElementTree

import case
from case import ASSEMBLY_BILL, FAILED, PASSED, REFUSED, Case, fingerprint, tavcc

class WrongCalls(Case):
    def assert_refused(self, text, *arguments, stdin=""):
        before = fingerprint(self.db)
        self.assert_error(tavcc("call", *arguments, "--db", self.db, stdin=stdin), text)
        self.assertEqual(fingerprint(self.db), before, "the database was touched")

    def test_names(self):
        for method, text in (
                ("cls_CY.AuditBill", 'there is no class "cls_CY"; did you mean cls_CX?'),
                ("cls_CX.AuditBil", 'cls_CX has no method "AuditBil"; did you mean AuditBill?'),
                ("AuditBill", '"AuditBill" must have the form CLASS.METHOD'),
                (".", "there is no class"),
        ):
            self.assert_refused(text, method, "lngFID=1")

    def test_arguments(self):
        for words, text in (
                (["FID=1"], 'AuditBill has no argument "FID"; did you mean lngFID?'),
                (["lngFID"], '"lngFID" must have the form name=value'),
                (["lngFID=1", "lngFID=2", "lngUserID=1"], "argument lngFID: is given twice"),
                (["lngFID=x", "lngUserID=1"], 'argument lngFID: "x" is no whole number'),
                (["lngFID=", "lngUserID=1"], 'argument lngFID: "" is no whole number'),
                (["lngFID=1.5", "lngUserID=1"], 'argument lngFID: "1.5" is no whole number'),
                (["lngFID=2147483648", "lngUserID=1"],
                 'argument lngFID: "2147483648" is out of range for I4 (-2147483648 to 2147483647)'),
                (["lngFID=99999999999999999999", "lngUserID=1"], "is out of range for I4"),
                (["lngFID=1"], "argument lngUserID (I4) is missing"),
        ):
            self.assert_refused(text, "cls_CX.AuditBill", *words)

    def test_argument_types(self):
        for method, word, text in (
                ("PublicSysInfo.DateInCurrentPeriod", "dtDate=2026-02-30", "is no date"),
                ("PublicSysInfo.AuditBill", "CheckType=32768", "is out of range for I2"),
                ("PublicSysInfo.AuditBill", "BatchCheck=maybe", "is no Boolean"),
                ("PublicSysInfo.AuditBill", "billVect=[1,", "argument billVect: no JSON at line 1"),
                ("PublicSysInfo.AuditBill", "billVect={}", "is no JSON array"),
                ("PublicSysInfo.CheckCredit", "oDict=[]", "is no JSON object"),
                ("cls_CX.VerifyDataBeforeAudit", "cn=x", "cannot be given on the command line"),
        ):
            self.assert_refused(text, method, word)

    def test_json_files(self):
        for name, text, message in (
                ("bad.json", '{"lngFID": }', "bad.json: no JSON at line 1, column 12"),
                ("list.json", "[1]", "list.json: must be an object"),
                ("twice.json", '{"lngFID": 1, "lngFID": 2}', 'key "lngFID" stands twice'),
                ("unknown.json", '{"FID": 1}', 'has no argument "FID"'),
                ("wide.json", '{"lngFID": 3000000000}', "is out of range for I4"),
                ("text.json", '{"lngFID": "x"}', "is no whole number"),
                ("fraction.json", '{"lngFID": 1.5}', "is no whole number"),
                ("object.json", '{"lngFID": {"a": 1}}', "is no I4"),
        ):
            self.assert_refused(message, "cls_CX.AuditBill", "--json", self.write(name, text))
        self.assert_refused("cannot read", "cls_CX.AuditBill", "--json", self.path("missing.json"))
        self.assert_refused("cannot read", "cls_CX.AuditBill", "--json", self.folder.name)
        self.assert_refused("standard input: no JSON", "cls_CX.AuditBill", "--json", "-", stdin="{")


class WrongDatabases(Case):
    def test_a_file_that_is_no_database(self):
        text = self.write("notes.txt", "these are my notes, and no database\n" * 100)
        before = fingerprint(text)
        for arguments in (["sql", "select 1"], ["call", "cls_CX.DeleteBill", "lngFID=1"]):
            answer = tavcc(*arguments, "--db", text)
            self.assert_error(answer, "notes.txt")
            self.assertEqual(fingerprint(text), before)

    def test_a_file_that_does_not_exist(self):
        missing = self.path("missing.db")
        self.assert_error(tavcc("sql", "--db", missing, "select 1"), "missing.db")
        self.assertFalse(os.path.exists(missing))

    def test_a_folder(self):
        self.assert_error(tavcc("sql", "--db", self.folder.name, "select 1"), self.folder.name)

    def test_none_at_all(self):
        self.assert_error(tavcc("sql", "select 1"), "--db FILE")
        self.assert_error(tavcc("init"), "--db FILE")
        self.assert_error(tavcc("call", "cls_CX.DeleteBill", "lngFID=1"), "--db FILE")


class Servers(Case):
    """What can be said of --dsn without a server: its errors, and what they keep to themselves."""

    NO_DRIVER = "Driver=NoSuchDriver;Server=erp;UID=sa;PWD={se;cret}"

    def assert_no_driver(self, answer):
        self.assert_error(answer, "NoSuchDriver")
        self.assertIn("PWD=***", answer.stderr)
        self.assertNotIn("cret", answer.stderr)

    def test_each_command_says_why_it_cannot_connect(self):
        scenario = self.write("passing.json", PASSING)
        for arguments in (["init"], ["demo"], ["sql", "select 1"],
                          ["call", "cls_CX.DeleteBill", "lngFID=1"], ["check"]):
            self.assert_no_driver(tavcc(*arguments, "--dsn", self.NO_DRIVER))
        answer = tavcc("run", scenario, "--dsn", self.NO_DRIVER)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("NoSuchDriver", answer.stderr)
        self.assertNotIn("cret", answer.stdout + answer.stderr)

    def test_the_string_may_stand_in_a_file_or_in_the_environment(self):
        file = self.write("erp.dsn", self.NO_DRIVER + "\n")
        self.assert_no_driver(tavcc("sql", "select 1", "--dsn-file", file))
        os.environ["TAVCC_DSN"] = self.NO_DRIVER
        try:
            self.assert_no_driver(tavcc("sql", "select 1"))
            self.assertEqual(self.rows("select 1"), [[1]], "--db counts before the environment")
        finally:
            del os.environ["TAVCC_DSN"]

    def test_one_database_only(self):
        self.assert_error(tavcc("sql", "select 1", "--db", self.db, "--dsn", self.NO_DRIVER),
                          "give only one")

    def test_a_file_without_a_string(self):
        self.assert_error(tavcc("sql", "select 1", "--dsn-file", self.write("empty.dsn", "\n")),
                          "empty.dsn")
        self.assert_error(tavcc("sql", "select 1", "--dsn-file", self.path("none.dsn")), "none.dsn")

    def test_sql_over_a_driver(self):
        answer = tavcc("sql", "--json", "--dsn", "Driver=SQLite3;Database=" + self.path("x.db"),
                       "select '单😀' as A, 7 as B, null as C")
        case.skip_without_driver(self, answer)
        self.assertEqual(json.loads(answer.stdout),
                         {"results": [{"columns": ["A", "B", "C"], "rows": [["单😀", 7, None]],
                                       "rows_affected": 1}]})

    def test_a_login_that_is_never_answered_is_given_up(self):
        with socket.create_server(("127.0.0.1", 0)) as silent:
            target = (f"Driver=FreeTDS;Server=127.0.0.1;Port={silent.getsockname()[1]};"
                      "UID=sa;PWD={se;cret};TDS_Version=7.4")
            started = time.monotonic()
            answer = tavcc("sql", "select 1", "--dsn", target, "--login-timeout", 1)
            case.skip_without_driver(self, answer)
            self.assert_error(answer, "Timeout expired")
            self.assertLess(time.monotonic() - started, 10)
            self.assertNotIn("cret", answer.stderr)

    def test_a_timeout_is_a_number_of_seconds(self):
        for option in ("--login-timeout", "--query-timeout"):
            for value in ("-1", "x", "1.5"):
                self.assert_error(tavcc("sql", "select 1", "--db", self.db, option, value), option)

    def test_compare_wants_a_server(self):
        scenario = self.write("passing.json", PASSING)
        self.assert_error(tavcc("run", "--compare", scenario), "--dsn")
        self.assert_error(tavcc("run", "--known", scenario, scenario), "--compare")
        self.assert_error(tavcc("run", "--own-database", scenario), "--dsn")


class WrongCommandLines(unittest.TestCase):
    def test_each_is_one_line(self):
        for arguments in ([], ["frobnicate"], ["sql"], ["run"], ["classes", "--frob"],
                          ["classes", "cls_CY"], ["run", "/nowhere"]):
            answer = tavcc(*arguments)
            self.assertEqual(answer.returncode, FAILED, arguments)
            self.assertEqual(answer.stderr.count("\n"), 1, answer.stderr)

    def test_help_is_no_error(self):
        for arguments in (["--help"], ["call", "--help"]):
            answer = tavcc(*arguments)
            self.assertEqual(answer.returncode, PASSED)
            self.assertIn("--help", answer.stdout)


class Init(Case):
    def test_leaves_an_existing_file_alone(self):
        before = fingerprint(self.db)
        self.assert_error(tavcc("init", "--db", self.db), "exists already")
        self.assertEqual(fingerprint(self.db), before)

    def test_without_the_sample_there_are_no_bills(self):
        self.db = self.path("empty.db")
        self.assertEqual(tavcc("init", "--db", self.db).returncode, PASSED)
        self.assertEqual(self.rows("select count(*) from T_CC_ZZCX"), [[0]])
        self.assertEqual(self.rows("select FValue from t_SystemProfile where FKey='CurrentYear'"),
                         [["2026"]])

    def test_leaves_nothing_behind_where_it_cannot_write(self):
        answer = tavcc("init", "--db", self.path("no/such/folder.db"))
        self.assertEqual(answer.returncode, FAILED)
        self.assertFalse(os.path.exists(self.path("no")))


class Calls(Case):
    def status(self):
        return self.rows(f"select FStatus, FCheckerID from T_CC_ZZCX where FID={ASSEMBLY_BILL}")

    def test_passed_is_kept(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7")
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
        self.assertIn("cls_CX.AuditBill passed", answer.stdout)
        self.assertEqual(self.status(), [[1, 7]])

    def test_refused_tells_why(self):
        answer = self.call("cls_CX.UnAuditBill", f"lngFID={ASSEMBLY_BILL}")
        self.assertEqual(answer.returncode, REFUSED)
        self.assertIn("该单据未审核，不能反审核！", answer.stdout)
        self.assertEqual(self.status(), [[0, 0]])

    def test_names_without_regard_to_case(self):
        answer = self.call("CLS_cx.auditbill", f"LNGFID={ASSEMBLY_BILL}", "lnguserid=7")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def test_an_error_of_the_method_fails(self):
        # A bill without a head row: the read of its fields is an error, not a refusal.
        answer = self.call("cls_DB.BeforeDel", "nClassID=1040007", "nInterID=999")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("3021", answer.stdout)

    def test_json_output(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--json",
                           "--trace")
        record = json.loads(answer.stdout)
        self.assertEqual(record["verdict"], "passed")
        self.assertIs(record["result"], True)
        self.assertEqual(record["arguments"], {"strReturnMsg": ""})
        self.assertEqual([statement["sql"] for statement in record["statements"]], [
            f"Select FStatus,FVoucherID From T_CC_ZZCX where FID={ASSEMBLY_BILL}",
            "Update T_CC_ZZCX set FCheckerID=7,FCheckDate=GetDate(),FStatus=1  where FID="
            f"{ASSEMBLY_BILL}"])

    def test_json_arguments(self):
        file = self.write("arguments.json", json.dumps({"lngFID": ASSEMBLY_BILL, "lngUserID": 8}))
        answer = self.call("cls_CX.AuditBill", "--json", file)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual(json.loads(answer.stdout)["verdict"], "passed")
        self.assertEqual(self.status(), [[1, 8]])

    def test_json_arguments_from_standard_input(self):
        answer = tavcc("call", "cls_CX.AuditBill", "--args", "-", "lngUserID=9", "--db", self.db,
                       stdin=json.dumps({"lngFID": ASSEMBLY_BILL}))
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual(self.status(), [[1, 9]])

    def test_trace_goes_to_standard_error(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--trace")
        self.assertIn("> Select FStatus,FVoucherID From T_CC_ZZCX where FID=", answer.stderr)
        self.assertRegex(answer.stderr, r"1 row, \d+\.\d+ ms")
        self.assertNotIn("Select", answer.stdout)


class Classes(unittest.TestCase):
    def test_table(self):
        answer = tavcc("classes", "cls_CX")
        self.assertEqual(answer.returncode, PASSED)
        self.assertIn("TavM_CC_PlugIns.cls_CX  (TransMode 3)", answer.stdout)
        self.assertIn("I4 lngFID, I4 lngUserID, BSTR sDsn, in/out BSTR strReturnMsg", answer.stdout)

    def test_all_ten(self):
        names = [entry["name"] for entry in json.loads(tavcc("classes", "--json").stdout)]
        self.assertEqual(len(names), 10)
        self.assertIn("PublicSysInfo", names)


PASSING = """{"name": "audit", "sql": ["insert into T_CC_ZZCX(FID) values(1)"], "steps": [
  {"call": "cls_CX.AuditBill", "args": {"lngFID": 1, "lngUserID": 2},
   "expect": {"result": true, "strReturnMsg": ""},
   "sweep": {"expect": {"result": false, "strReturnMsg": "disk full"}}},
  {"query": "select FStatus,FCheckerID,FCheckDate from T_CC_ZZCX",
   "rows": [[1, 2, {"date": "2026-03-15 10:00:00"}]]}]}"""


class Run(Case):
    def test_passing(self):
        file = self.write("passing.json", PASSING)
        answer = tavcc("run", file)
        self.assertEqual((answer.returncode, answer.stdout, answer.stderr),
                         (PASSED, "1 scenario passed\n", ""))

    def test_failing_prints_the_difference_and_the_sql(self):
        file = self.write("failing.json", PASSING.replace('"result": true', '"result": false', 1))
        answer = tavcc("run", file)
        self.assertEqual((answer.returncode, answer.stdout), (FAILED, "1 of 1 scenarios failed\n"))
        self.assertIn("step 1: call cls_CX.AuditBill", answer.stderr)
        self.assertIn("result: expected false, got true", answer.stderr)
        self.assertIn("Select FStatus,FVoucherID From T_CC_ZZCX where FID=1", answer.stderr)

    def test_malformed_names_file_step_and_key(self):
        file = self.write("malformed.json", PASSING.replace('"rows"', '"row"'))
        answer = tavcc("run", file)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn('malformed.json: step 2, key "row": unknown key; did you mean rows?',
                      answer.stderr)

    def test_a_malformed_file_does_not_keep_the_others_from_running(self):
        answer = tavcc("run", self.write("m.json", "{"), self.write("p.json", PASSING))
        self.assertEqual((answer.returncode, answer.stdout), (FAILED, "1 of 2 scenarios failed\n"))

    def test_json(self):
        answer = tavcc("run", "--json", self.write("passing.json", PASSING))
        self.assertEqual([entry["passed"] for entry in json.loads(answer.stdout)], [True])

    def failing(self, name="failing.json"):
        return self.write(name, PASSING.replace('"result": true', '"result": false', 1)
                          .replace("[[1, 2, {", "[[1, 9, {"))

    def read(self, file):
        with open(file, encoding="utf-8") as opened:
            return opened.read()

    def test_every_failing_step_is_told(self):
        answer = tavcc("run", self.failing())
        self.assertIn("step 1: call cls_CX.AuditBill", answer.stderr)
        self.assertIn("rows row 1 FCheckerID: expected 9, got 2", answer.stderr)

    def test_update_takes_what_came(self):
        file = self.failing()
        answer = tavcc("run", "--update", file)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
        self.assertEqual(answer.stdout, f"changed {file}\n1 file changed\n1 scenario passed\n")
        self.assertEqual(self.read(file), PASSING, "and nothing else")
        self.assertEqual(tavcc("run", "--update", file).stdout,
                         "0 files changed\n1 scenario passed\n")

    def test_review_asks(self):
        file = self.failing()
        before = self.read(file)
        for said, status in (("", FAILED), ("q\n", FAILED), ("what\nn\n", FAILED)):
            answer = tavcc("run", "--review", file, stdin=said)
            self.assertEqual((answer.returncode, self.read(file)), (status, before), said)
            self.assertIn('\n-    "expect": {"result": false', answer.stdout)
            self.assertIn("Take this change?", answer.stdout)
        self.assertEqual(tavcc("run", "--review", file, stdin="y\n").returncode, PASSED)
        self.assertEqual(self.read(file), PASSING)

    def test_a_file_that_cannot_be_written_stays(self):
        # There is no room for another name beside one as long as names can be.
        file = self.failing("x" * 250 + ".json")
        before = self.read(file)
        answer = tavcc("run", "--update", file)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn(f"{file} cannot be written", answer.stderr)
        self.assertEqual(self.read(file), before)

    def test_some_of_them(self):
        passing, failing = self.write("passing.json", PASSING), self.failing()
        self.assertEqual(tavcc("run", passing, failing, "--filter", "PASSING").stdout,
                         "1 scenario passed\n")
        self.assertEqual(tavcc("run", passing, failing, "--list").stdout.count("\n"), 2)
        self.assert_error(tavcc("run", passing, "--filter", "nothing like it"), "--filter")

    def test_several_at_a_time(self):
        files = [self.write(f"p{i}.json", PASSING) for i in range(9)] + [self.failing()]
        answer = tavcc("run", "-j", 4, "--json", *files)
        self.assertEqual([(entry["file"], entry["passed"]) for entry in json.loads(answer.stdout)],
                         [(file, "failing" not in file) for file in files])
        self.assert_error(tavcc("run", "-j", "0", files[0]), "-j")
        self.assert_error(tavcc("run", "-j", 2, "--update", files[0]), "--update")

    def test_junit(self):
        report = self.path("report.xml")
        answer = tavcc("run", "--junit", report, self.write("passing.json", PASSING), self.failing())
        self.assertEqual(answer.returncode, FAILED)
        suite = xml.etree.ElementTree.parse(report).getroot()
        self.assertEqual((suite.get("tests"), suite.get("failures")), ("2", "1"))
        passing, failing = suite.findall("testcase")
        self.assertEqual((passing.get("name"), len(passing)), ("passing", 0))
        self.assertIn("result: expected false, got true", failing.find("failure").text)

    def test_no_progress_bar_in_a_pipe(self):
        answer = tavcc("run", self.write("passing.json", PASSING))
        self.assertNotIn("\x1b", answer.stdout + answer.stderr)


class Demo(unittest.TestCase):
    def test_tells_each_outcome(self):
        answer = tavcc("demo")
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
        for text in ("该单据已被审核，不能再审核！", "该单据被其他单据关联，不能反审核！",
                     "该单据已生成凭证，不能审核！", "该单据不存在，不能审核！",
                     "Invalid object name 'FromT_CC_ZZCX'."):
            self.assertIn(text, answer.stdout)

    def test_is_the_same_each_time(self):
        self.assertEqual(tavcc("demo").stdout, tavcc("demo").stdout)


    def test_a_batch_is_audited_and_taken_back(self):
        batch = json.loads(tavcc("demo", "--json").stdout)[0]
        self.assertEqual((batch["audit"]["SuccessCount"], batch["audit"]["FailCount"]), (22, 10))
        self.assertEqual((batch["un_audit"]["SuccessCount"], batch["un_audit"]["FailCount"]),
                         (22, 0))
        self.assertEqual(batch["audit"]["BillInfo"].count("|"), 32)
        self.assertNotEqual(batch["stock_before"], batch["stock_after"])


class Check(Case):
    def test_the_sample_company_holds(self):
        answer = tavcc("check", "--db", self.db)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual(json.loads(tavcc("check", "--db", self.db, "--json").stdout),
                         {"differences": [], "causes": []})

    def test_names_what_differs(self):
        changed = tavcc("sql", "--db", self.db,
                        "update T_CC_Inventory set FQty=FQty+0.5,FBal=FBal-2 where FItemID=1007")
        self.assertEqual(changed.returncode, PASSED, changed.stderr)
        answer = tavcc("check", "--db", self.db)
        self.assertEqual(answer.returncode, REFUSED)
        for word in ("02.002", "电助力车", "主仓库", "6.5", "12600", "12598"):
            self.assertIn(word, answer.stdout)
        [difference] = json.loads(tavcc("check", "--db", self.db, "--json").stdout)["differences"]
        self.assertEqual((difference["expected_quantity"], difference["actual_quantity"]),
                         (6, 6.5))

    def test_without_a_database(self):
        self.assertEqual(tavcc("check").returncode, FAILED)


class Kills(Case):
    """A process that is killed in the middle of a batch leaves whole transactions only."""

    ROWS = 7  # of each transaction
    BATCH = f"""
        set nocount on
        print 'begun'
        declare @n int
        declare @i int
        set @n = 0
        while @n < 1000000
        begin
          begin transaction
          set @i = 0
          while @i < {ROWS}
          begin
            insert into Ledger(FGroup, FRow) values(@n, @i)
            set @i = @i + 1
          end
          update Total set FCount = FCount + {ROWS}
          commit transaction
          set @n = @n + 1
        end"""

    def test_whole_transactions_only(self):
        self.change("create table Ledger(FGroup int, FRow int)")
        self.change("create table Total(FCount int)")
        self.change("insert into Total(FCount) values(0)")
        for wait in (0.15, 0.4, 0.73):
            total = self.killed_after(wait)
        # On a slow machine a transaction takes longer than that.
        while total == 0 and wait < 60:
            wait *= 2
            total = self.killed_after(wait)
        self.assertGreater(total, 0, "no transaction was finished before the kills")

    def killed_after(self, wait):
        process = subprocess.Popen([case.TAVCC, "sql", "--db", self.db, self.BATCH],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual(process.stdout.readline(), b"begun\n")
        time.sleep(wait)
        process.send_signal(signal.SIGKILL)
        _, errors = process.communicate(timeout=30)
        self.assertEqual(process.returncode, -signal.SIGKILL, errors)
        total = self.rows("select FCount from Total")[0][0]
        self.assertEqual(self.rows("select count(*) from Ledger"), [[total]])
        self.assertEqual(total % self.ROWS, 0)
        return total

    def test_a_killed_init_leaves_no_database(self):
        for wait in (0.005, 0.02, 0.05, 0.1):
            file = self.path(f"killed{wait}.db")
            process = subprocess.Popen([case.TAVCC, "init", "--db", file, "--sample"],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(wait)
            process.send_signal(signal.SIGKILL)
            process.communicate(timeout=30)
            if os.path.exists(file):
                self.db = file
                self.assertGreater(self.rows("select count(*) from T_CC_Templet")[0][0], 0)
            else:
                self.assertEqual(tavcc("init", "--db", file).returncode, PASSED)


if __name__ == "__main__":
    case.main()
