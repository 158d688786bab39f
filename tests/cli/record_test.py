"""--record, --record-state and --mask: a case becomes a scenario, and what cannot be kept is told."""

import json
import os
import shutil
import tempfile

import case
from case import ASSEMBLY_BILL, FAILED, PASSED, REFUSED, Case, tavcc

AUDIT = ["cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7"]
HEAD = f"Select FStatus,FVoucherID From T_CC_ZZCX where FID={ASSEMBLY_BILL}"
STATUS = f"select FStatus from T_CC_ZZCX where FID={ASSEMBLY_BILL}"
# The master data that nothing writes.
EVERYTHING = """select FID, FStatus, FCheckerID from T_CC_StockBill select FQty from T_CC_Inventory"""


class Recording(Case):
    def setUp(self):
        super().setUp()
        self.tape = self.path("tape.json")
        self.state = self.path("state.json")
        for file in (self.tape, self.state):
            if os.path.exists(file):
                os.remove(file)

    def recorded(self, file=None):
        with open(file or self.tape, encoding="utf-8") as source:
            return json.load(source)

    def text(self, file=None):
        with open(file or self.tape, encoding="utf-8") as source:
            return source.read()

    def assert_passes(self, file):
        answer = tavcc("run", file)
        self.assertEqual((answer.returncode, answer.stdout), (PASSED, "1 scenario passed\n"),
                         answer.stderr)

    def change_tape(self, before, after):
        text = self.text()
        self.assertIn(before, text)
        with open(self.tape, "w", encoding="utf-8") as target:
            target.write(text.replace(before, after))


class Tape(Recording):
    def test_a_call(self):
        answer = self.call(*AUDIT, "--record", self.tape)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, f"recorded {self.tape}\n"))
        self.assertEqual(self.rows(STATUS), [[1]], "and it was kept")
        self.assertEqual(self.recorded(), {
            "name": f"cls_CX.AuditBill lngFID={ASSEMBLY_BILL} lngUserID=7",
            "user": 16394,
            "profile": {},
            "steps": [{
                "call": "cls_CX.AuditBill",
                "args": {"lngFID": ASSEMBLY_BILL, "lngUserID": 7},
                "expect": {"result": True, "strReturnMsg": ""},
                "tape": [
                    {"sql": HEAD, "columns": ["FStatus", "FVoucherID"], "rows": [[0, 0]]},
                    {"sql": "Update T_CC_ZZCX set FCheckerID=7,FCheckDate=GetDate(),FStatus=1"
                            f"  where FID={ASSEMBLY_BILL}"}]}]})
        self.assert_passes(self.tape)

    def test_a_refused_and_a_failed_call(self):
        self.assertEqual(self.call("cls_CX.UnAuditBill", f"lngFID={ASSEMBLY_BILL}", "--record",
                                   self.tape).returncode, REFUSED)
        self.assert_passes(self.tape)
        failing = self.path("failing.json")
        self.change("drop table T_CC_ZZCX")
        answer = self.call(*AUDIT, "--record", failing)
        self.assertEqual(answer.returncode, FAILED)
        statement = self.recorded(failing)["steps"][0]["tape"][0]
        self.assertEqual((statement["error"]["number"], statement["error"]["description"]),
                         (208, "Invalid object name 'T_CC_ZZCX'."))
        self.assert_passes(failing)
        os.remove(failing)

    def test_several_calls_of_one_object(self):
        answer = self.call(*AUDIT, "--then", "UnAuditBill", f"lngFID={ASSEMBLY_BILL}", "--rollback",
                           "--record", self.tape)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual([step["call"] for step in self.recorded()["steps"]],
                         ["cls_CX.AuditBill", "cls_CX.UnAuditBill"])
        self.assert_passes(self.tape)

    def test_a_batch(self):
        """Bills of every kind; some pass, some are refused."""
        answer = tavcc("audit", "--all", "--db", self.db, "--dry-run", "--record", self.tape)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assert_passes(self.tape)
        each = self.path("each.json")
        tavcc("audit", "CD260301", "XS260305", "--each", "--db", self.db, "--record", each)
        self.assertEqual(len(self.recorded(each)["steps"]), 2)
        self.assert_passes(each)
        os.remove(each)

    def test_explain(self):
        before = self.rows(EVERYTHING)
        answer = tavcc("explain", "XS260305", "--db", self.db, "--record", self.tape)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertEqual(self.recorded()["name"], "audit of XS260305")
        self.assertIn("审核出现负库存商品！", self.recorded()["steps"][0]["expect"]["dct"]["BillInfo"])
        self.assert_passes(self.tape)
        self.assertEqual(self.rows(EVERYTHING), before)

    def test_a_changed_tape_is_told(self):
        self.call(*AUDIT, "--record", self.tape)
        self.change_tape("Select FStatus,FVoucherID From", "Select FStatus From")
        answer = tavcc("run", self.tape)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("statement 1 is not on the tape\n      "
                      "Select FStatus{+,FVoucherID+} From", answer.stderr)
        update = tavcc("run", "--update", self.tape)
        self.assertEqual(update.returncode, FAILED)
        self.assertIn("the tape does not fit any more; record the case again", update.stderr)

    def test_another_answer_is_taken_over(self):
        """A tape's expectations are accepted as any scenario's are."""
        self.call(*AUDIT, "--record", self.tape)
        before = self.text()
        self.change_tape('"strReturnMsg": ""', '"strReturnMsg": "other"')
        self.assertEqual(tavcc("run", "--update", self.tape).returncode, PASSED)
        self.assertEqual(self.text(), before)

    def test_beside_scenarios(self):
        """In a folder, several at a time; whatever server there is."""
        folder = self.path("cases")
        os.makedirs(folder, exist_ok=True)
        for name in ("a", "b", "c"):
            file = os.path.join(folder, name + ".json")
            if not os.path.exists(file):
                self.call(*AUDIT, "--rollback", "--record", file)
        self.assertEqual(tavcc("run", "-j", 2, folder).stdout, "3 scenarios passed\n")


class Files(Recording):
    def test_nothing_is_written_over(self):
        notes = self.write("notes.json", "notes")
        for option in ("--record", "--record-state"):
            answer = self.call(*AUDIT, option, notes)
            self.assert_error(answer, f"{notes} is there already, and is left as it is")
            self.assertEqual(self.rows(STATUS), [[0]], "before any call")
            self.assertEqual(self.text(notes), "notes")

    def test_what_cannot_be_written_undoes_the_call(self):
        missing = self.path("nowhere/tape.json")
        for file, reason in ((missing, "No such file or directory"),
                             ("/dev/full", "No space left on device")):
            answer = self.call(*AUDIT, "--record", file)
            self.assertEqual(answer.returncode, FAILED)
            self.assertEqual(answer.stderr,
                             f"tavcc: {file} cannot be written: {reason}; what the call did was "
                             "undone\n")
            self.assertEqual(self.rows(STATUS), [[0]])
        answer = tavcc("audit", "CD260301", "--db", self.db, "--record", missing)
        self.assertIn("cannot be written: No such file or directory; what the batch did was undone",
                      answer.stderr)
        answer = tavcc("audit", "CD260301", "--each", "--db", self.db, "--record", missing)
        self.assertIn("; 1 of 1 bills were sent before, and what they did is kept", answer.stderr)
        answer = tavcc("explain", "XS260305", "--db", self.db, "--record", missing)
        self.assert_error(answer, "cannot be written: No such file or directory")
        self.assertTrue(os.path.exists("/dev/full"))

    def test_a_tape_on_standard_output(self):
        answer = self.call(*AUDIT, "--rollback", "--record", "/dev/stdout", "--json")
        self.assertIn('"tape": [', answer.stdout)

    def test_options_that_do_not_go_together(self):
        self.assert_error(self.call(*AUDIT, "--mask", "FName"),
                          "--mask goes with --record or --record-state")
        self.assert_error(self.call(*AUDIT, "--record", self.tape, "--record-state", self.tape),
                          "--record and --record-state name the same file")


class State(Recording):
    def test_a_call(self):
        answer = self.call(*AUDIT, "--record-state", self.state)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, f"recorded {self.state}\n"))
        recorded = self.recorded(self.state)
        self.assertEqual(len(recorded["sql"]), 1, "the bill's head and nothing else")
        self.assertTrue(recorded["sql"][0].startswith("insert into T_CC_ZZCX(FID,"))
        self.assertNotIn("tape", recorded["steps"][0])
        self.assertEqual(recorded["steps"][0]["statements"][0], HEAD)
        self.assert_passes(self.state)

    def test_it_can_be_changed(self):
        """The bill that lacked stock gets it, and is audited."""
        tavcc("explain", "XS260305", "--db", self.db, "--record-state", self.state)
        self.assert_passes(self.state)
        recorded = self.recorded(self.state)
        bill = recorded["steps"][0]["expect"]["dct"]["BillInfo"]
        self.assertIn("审核出现负库存商品！", bill)
        recorded["sql"].append("update T_CC_Inventory set FQty = 9999 where FQty = 200")
        self.write("state.json", json.dumps(recorded))
        answer = tavcc("run", self.state)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("单据审核成功！", answer.stderr)

    def test_what_the_calls_change_is_in_it(self):
        """The stock that a bill moves is not read, but written: it is touched all the same."""
        tavcc("audit", "CG260302", "--db", self.db, "--record-state", self.state, "--record",
              self.tape)
        self.assert_passes(self.state)
        self.assert_passes(self.tape)
        inserts = [line for line in self.recorded(self.state)["sql"] if "T_CC_Inventory" in line]
        self.assertGreater(len(inserts), 0)


class LargeTables(Recording):
    """Of a table of more than 2000 rows those are read to which the case leads, 5000 at most."""

    # Many rows of a table: SELECT … FROM Numbers WHERE i < …
    NUMBERS = """
        create table Numbers(i int not null primary key)
        insert Numbers values(0)
        declare @count int
        set @count = 1
        while @count < 8000 begin
          insert Numbers select i + @count from Numbers
          set @count = @count * 2
        end """
    HEADS = """
        insert T_CC_ZZCX(FID, FClassTypeID, FCheckerID)
        select 50000 + i, 1040005, {checker} from Numbers where i < {count} """

    def audit(self):
        return self.call(*AUDIT, "--rollback", "--record-state", self.state)

    def test_rows_of_others_are_not_read(self):
        self.change(self.NUMBERS + self.HEADS.format(checker=9, count=8000))
        self.assertEqual(self.audit().returncode, PASSED)
        self.assertEqual(len(self.recorded(self.state)["sql"]), 1)
        self.assert_passes(self.state)

    def test_a_bill_among_thousands_of_its_class(self):
        """Bills, lines and stock: the class, the partner and the stock that they share lead nowhere."""
        self.change(self.NUMBERS + """
            insert T_CC_StockBill(FID, FClassTypeID, FBillTypeID, FBillNo, FCustID, FBillerID)
            select 50000 + i, 1030002, 3001, 'MANY' + convert(varchar(9), i), 5001, 16390
            from Numbers where i < 6000
            insert T_CC_StockBillEntry(FID, FEntryID, FIndex, FItemID, FSCStockID, FQty)
            select 50000 + i, 1, 1, 1004, 2002, 1 from Numbers where i < 6000
            insert T_CC_Inventory(FItemID, FStockID, FBatchNo, FKFDate, FPeriodDate, FQty, FBal)
            select 50000 + i, 2001, '', '19000101', '19000101', 1, 1 from Numbers where i < 6000""")
        answer = tavcc("audit", "XS260305", "CG260302", "--db", self.db, "--dry-run",
                       "--record-state", self.state)
        self.assertEqual((answer.returncode, answer.stderr), (REFUSED, f"recorded {self.state}\n"))
        self.assertNotIn("MANY", self.text(self.state))
        self.assertLess(len(self.recorded(self.state)["sql"]), 60)
        self.assert_passes(self.state)

    def test_a_sale_that_passes(self):
        """Its items stand in its lines alone, which only a join reads: they lead to their stock."""
        stock = """
            insert T_CC_Inventory(FItemID, FStockID, FBatchNo, FKFDate, FPeriodDate, FQty, FBal)
            select 50000 + a.i * 13 + b.i, 2001, '', '19000101', '19000101', 1, 1
            from Numbers a cross join Numbers b where a.i < 8000 and b.i < 13"""
        bills = """
            insert T_CC_StockBill(FID, FClassTypeID, FBillTypeID, FBillNo, FCustID, FBillerID)
            select 50000 + i, 1030002, 3001, 'MANY' + convert(varchar(9), i), 5001, 16390
            from Numbers where i < 6000
            insert T_CC_StockBillEntry(FID, FEntryID, FIndex, FItemID, FSCStockID, FQty)
            select 50000 + i, 1, 1, 50000 + i, 2001, 1 from Numbers where i < 6000"""
        for rows in (stock, stock + bills):
            with self.subTest(bills=rows is not stock):
                self.setUp()
                self.change(self.NUMBERS + rows)
                answer = tavcc("audit", "XS260301", "--db", self.db, "--record-state", self.state)
                self.assertEqual((answer.returncode, answer.stderr),
                                 (PASSED, f"recorded {self.state}\n"))
                self.assertNotIn("MANY", self.text(self.state))
                self.assertLess(len(self.recorded(self.state)["sql"]), 60)
                self.assert_passes(self.state)

    def test_what_leads_to_too_many_rows_leads_nowhere(self):
        """The auditor has 2000 heads, which are read; with more of them they are not."""
        for count in (2000, 2001):
            self.setUp()
            self.change(self.NUMBERS + self.HEADS.format(checker=7, count=count))
            answer = self.audit()
            self.assertEqual((answer.returncode, answer.stderr), (PASSED, f"recorded {self.state}\n"))
            self.assert_passes(self.state)

    def test_more_rows_than_are_read(self):
        """Three numbers of the case lead to 2000 rows each."""
        self.change(self.NUMBERS + self.HEADS.format(checker=7, count=2000) + """
            insert T_CC_ZZCX(FID, FClassTypeID) select 60000 + i, 121 from Numbers where i < 2000
            insert T_CC_ZZCX(FID, FBillerID) select 70000 + i, 1 from Numbers where i < 2000""")
        answer = self.call(*AUDIT, "--record-state", self.state)
        self.assertEqual(answer.returncode, FAILED)
        self.assertEqual(answer.stderr, "tavcc: --record-state: more than 5000 rows of T_CC_ZZCX may "
                                        "matter to the case; --record has no such limit; what the "
                                        "call did was undone\n")
        self.assertFalse(os.path.exists(self.state))
        self.assertEqual(self.rows(STATUS), [[0]])
        self.assertEqual(self.call(*AUDIT, "--rollback", "--record", self.tape).returncode, PASSED)
        self.assert_passes(self.tape)

    def test_what_no_id_leads_to(self):
        """Periods are found by their year, of which nothing is known."""
        self.change(self.NUMBERS + """
            insert t_PeriodDate(FYear, FPeriod, FStartDate, FEndDate)
            select 3000 + i, 1, '20260101', '20260131' from Numbers where i < 2000""")
        answer = tavcc("audit", "XS260301", "--db", self.db, "--record-state", self.state)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("the rows that were read do not tell the whole case: step 1: ", answer.stderr)
        self.assertIn("; what the batch did was undone\n", answer.stderr)
        self.assertFalse(os.path.exists(self.state))


class Masks(Recording):
    NAMES = "select FName from t_ICItem union select FName from t_Organization"

    def test_a_column(self):
        numbers = [row[0] for row in self.rows("select FBillNo from T_CC_StockBill")]
        words = ["audit", "XS260305", "--db", self.db, "--dry-run", "--mask", "FBillNo"]
        answer = tavcc(*words, "--record", self.tape, "--record-state", self.state)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        for file in (self.tape, self.state):
            self.assert_passes(file)
            for number in numbers:
                self.assertNotIn(number, self.text(file))

    def test_the_same_value_has_the_same_mask(self):
        tavcc("audit", "XS260305", "--db", self.db, "--dry-run", "--mask", "billno", "--record",
              self.tape)
        recorded = self.recorded()
        mask = recorded["steps"][0]["args"]["billVect"][0]["BillNo"]
        self.assertEqual(len(mask), len("XS260305"))
        self.assertIn(mask, recorded["steps"][0]["expect"]["dct"]["BillInfo"])

    def test_an_unknown_column(self):
        answer = self.call(*AUDIT, "--record", self.tape, "--mask", "FStatus2")
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("--mask FStatus2: nothing that was recorded has this column; did you mean "
                      "FStatus?; what the call did was undone", answer.stderr)
        self.assertFalse(os.path.exists(self.tape))
        self.assertEqual(self.rows(STATUS), [[0]])

    def test_a_number(self):
        answer = self.call(*AUDIT, "--record", self.tape, "--mask", "FStatus")
        self.assertIn("--mask FStatus: holds 0, and only texts can be masked: rules calculate with "
                      "numbers and dates", answer.stderr)


class FromTraces(Recording):
    """tavcc record --from TRACE: what the automation server wrote."""

    BEGIN = {"call": "cls_CX.AuditBill", "started": "2026-03-15 10:00:00.123", "process": 7,
             "thread": 8, "arguments": {"lngFID": 121, "lngUserID": 7, "strReturnMsg": "",
                                        "sDsn": "PWD=***;Server=erp"}}
    USER = {"host": "user", "value": {"integer": 42}}
    SENT = {"statement": 1, "sql": HEAD, "from": "src/billtypes/bill_gates.cpp:21", "rows": 1,
            "milliseconds": 0.4}
    UPDATE = {"statement": 2, "sql": "Update T_CC_ZZCX set FCheckerID=7,FCheckDate=GetDate(),"
                                     "FStatus=1  where FID=121",
              "from": "src/billtypes/bill_actions.cpp:30", "rows": None, "milliseconds": 2}
    ROWS = {"rows_of": 1, "columns": ["FStatus", "FVoucherID"], "rows": [[0, 0]], "count": 1,
            "to_the_end": False}
    END = {"result": True, "arguments": {"strReturnMsg": ""}, "milliseconds": 3}
    WHOLE = [BEGIN, USER, SENT, UPDATE, ROWS, END]

    def record(self, *lines):
        trace = self.write("trace.jsonl", "".join(json.dumps(line) + "\n" for line in lines))
        return tavcc("record", self.tape, "--from", trace)

    def test_a_whole_trace(self):
        answer = self.record(*self.WHOLE)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, f"recorded {self.tape}\n"))
        recorded = self.recorded()
        self.assertEqual((recorded["name"], recorded["user"]),
                         ("cls_CX.AuditBill of 2026-03-15 10:00:00.123", 42))
        self.assertEqual(recorded["steps"][0]["tape"][0]["rows"], [[0, 0]])
        self.assertNotIn("sDsn", recorded["steps"][0]["args"])
        self.assert_passes(self.tape)

    def test_what_the_server_wrote(self):
        """A file of its own; tests/automation takes those of a whole script."""
        answer = tavcc("record", self.tape, "--from", case.TRACE)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, f"recorded {self.tape}\n"))
        self.assertEqual(self.recorded(), {
            "name": "cls_CX.AuditBill of 2026-11-22 08:39:13.520",
            "user": 16394,
            "profile": {},
            "steps": [{
                "call": "cls_CX.AuditBill",
                "args": {"lngFID": 121, "lngUserID": 16394, "strReturnMsg": ""},
                "expect": {"result": False, "strReturnMsg": "该单据已被审核，不能再审核！"},
                "tape": [{"sql": HEAD, "columns": ["FStatus", "FVoucherID"], "rows": [[1, 0]]}]}]})
        self.assert_passes(self.tape)

    def test_what_a_trace_lacks(self):
        more = dict(self.ROWS, count=2)
        for lines, text in (
                (self.WHOLE[:-1], "the process ended before the call did"),
                ([*self.WHOLE[:-1], {"left_out": 3}, self.END],
                 "3 lines were too many for it and are missing"),
                ([self.BEGIN, self.SENT, self.UPDATE, more, self.END],
                 "statement 1: it keeps 1 of the 2 rows that were seen")):
            answer = self.record(*lines)
            self.assert_error(answer, text)
            self.assertFalse(os.path.exists(self.tape))

    def test_a_trace_that_does_not_replay(self):
        answer = self.record(self.BEGIN, self.SENT, self.ROWS, self.END)
        self.assert_error(answer, "is not written, since it would not replay: step 1, call "
                                  "cls_CX.AuditBill: statement 2 is not on the tape")


class Document(Case):
    """docs/recording.md shows what its commands print."""

    def test_its_examples(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(case.TRACE, folder)
            examples = list(case.follow("recording.md", folder))
        self.assertGreater(len(examples), 4)
        for shown, came in examples:
            self.assertEqual(shown, came)


class OverOdbc(case.Served, Recording):
    """From a server to a replay without it."""

    def test_what_the_server_answered_is_what_the_tape_answers(self):
        for number in ("XS260305", "XS260306", "CG260302", "DB260301"):
            tape, on_the_file = self.path(number + ".odbc"), self.path(number + ".file")
            self.over_odbc("audit", number, "--dry-run", "--record", tape)
            tavcc("audit", number, "--dry-run", "--db", self.db, "--record", on_the_file)
            self.assert_passes(tape)
            self.assertNotIn("PWD", self.text(tape))
            served, filed = self.recorded(tape)["steps"], self.recorded(on_the_file)["steps"]
            self.assertEqual([entry.get("sql") for entry in served[0]["tape"]],
                             [entry.get("sql") for entry in filed[0]["tape"]])
            self.assertEqual(served[0]["expect"], filed[0]["expect"])

    def test_a_state_that_runs_on_the_embedded_database(self):
        answer = self.over_odbc("call", *AUDIT, "--rollback", "--record-state", self.state)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assert_passes(self.state)

    def test_a_folder_of_tapes_needs_no_server(self):
        self.call(*AUDIT, "--rollback", "--record", self.tape)
        self.assertEqual(self.over_odbc("run", self.tape).stdout, "1 scenario passed\n")
        compared = self.over_odbc("run", "--compare", self.tape)
        self.assertIn("a tape has the answers of one database: there is nothing to compare",
                      compared.stdout)


if __name__ == "__main__":
    case.main(served=True)
