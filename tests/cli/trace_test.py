"""--trace: what a call sends, with the rows that its rule saw and the lines that sent it."""

import json
import os
import re

import case
from case import ASSEMBLY_BILL, FAILED, REFUSED, Case

PROJECT = os.path.join(os.path.dirname(__file__), "../..")
HEAD = f"Select FStatus,FVoucherID From T_CC_ZZCX where FID={ASSEMBLY_BILL}"
AUDIT = ["cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7"]


class Trace(Case):
    def trace(self, *words):
        return self.call(*words, "--trace").stderr

    def statements(self, *words):
        return json.loads(self.call(*words, "--json", "--trace").stdout)["statements"]

    def test_a_statement_has_its_rows_its_time_and_its_line(self):
        self.assertRegex(self.trace(*AUDIT), "".join([
            "^> ", re.escape(HEAD), r"\n",
            r"  1 row, \d+\.\d{3} ms, src/billtypes/bill_gates\.cpp:\d+, gate \"head: exists\"\n",
            r"    FStatus  FVoucherID\n",
            r"    -------  ----------\n",
            r"          0           0\n",
            r"> Update T_CC_ZZCX set "]))

    def test_the_line_is_that_of_the_statement(self):
        """The place is a line of the project on which something is sent."""
        for statement in self.statements(*AUDIT):
            with self.subTest(statement["sql"]):
                file, line = statement["from"].split(":")
                with open(os.path.join(PROJECT, file), encoding="utf-8") as source:
                    sender = source.read().split("\n")[int(line) - 1]
                self.assertIn("Execute(", sender)

    def test_json_has_columns_and_rows(self):
        head, update = self.statements(*AUDIT)
        self.assertEqual(head["seen"], {"columns": ["FStatus", "FVoucherID"], "rows": [[0, 0]],
                                        "count": 1, "to_the_end": False})
        self.assertEqual(head["rows"], 1)
        self.assertEqual(head["gate"], "head: exists")
        self.assertNotIn("gate", update)
        self.assertIsNone(update["rows"])
        self.assertNotIn("seen", update)

    def test_without_a_trace_nothing_is_told_of_statements(self):
        answer = self.call(*AUDIT, "--json")
        self.assertNotIn("statements", json.loads(answer.stdout))
        self.assertEqual(answer.stderr, "")

    def test_how_many_rows_are_shown(self):
        """25 items without a cost, each of which the rule looks at."""
        self.change("""
            declare @i int, @stock int
            select @stock = min(FItemID) from t_Stock where FTypeID <> 502
            insert into T_CC_StockBill(FID, FClassTypeID, FBillTypeID) values (900, 1030002, 3001)
            set @i = 1
            while @i <= 25 begin
              insert into t_ICItem(FItemID, FNumber, FName, FTrack)
              values (7000 + @i, 'N', 'free of charge', 76)
              insert into T_CC_StockBillEntry(FID, FEntryID, FItemID, FSCStockID)
              values (900, @i, 7000 + @i, @stock)
              set @i = @i + 1
            end""")
        bill = [{"ClassTypeID": 1030002, "BillType": 3001, "BillInterID": 900}]
        for words, shown, more in (([], 20, 5), (["--rows", 3], 3, 22), (["--rows", 0], 0, 0),
                                   (["--rows", 25], 25, 0)):
            with self.subTest(words=words):
                answer = self.call("PublicSysInfo.CheckNegPrice", "vctBill=" + json.dumps(bill),
                                   "--trace", *words)
                self.assertEqual(answer.returncode, REFUSED, answer.stdout)
                rows = re.findall(r"^    +70\d\d .*free of charge", answer.stderr, re.M)
                self.assertEqual(len(rows), shown, answer.stderr)
                self.assertEqual(f"… and {more} more" in answer.stderr, more > 0, answer.stderr)
        answer = self.call("PublicSysInfo.CheckNegPrice", "vctBill=" + json.dumps(bill), "--trace",
                           "--json")
        seen = json.loads(answer.stdout)["statements"][-1]["seen"]
        self.assertEqual([row[0] for row in seen["rows"]], list(range(7001, 7026)))
        self.assertEqual((seen["count"], seen["to_the_end"]), (25, True))

    def test_a_failing_call_names_its_statement(self):
        self.change("drop table T_CC_ZZCX")
        answer = self.call(*AUDIT)
        self.assertEqual(answer.returncode, FAILED)
        self.assertRegex(answer.stdout, r"\n  at +" + re.escape(HEAD) + r"\n")
        self.assertRegex(answer.stdout, r"\n  from +src/billtypes/\w+\.cpp:\d+\n")
        failure = json.loads(self.call(*AUDIT, "--json").stdout)["failure"]
        self.assertEqual(failure["at"], HEAD)
        self.assertRegex(failure["from"], r"^src/billtypes/\w+\.cpp:\d+$")

    def test_an_error_behind_a_statement_names_the_statement(self):
        """The bill's row is missing: no statement fails, but reading its answer does."""
        answer = self.call("cls_DB.BeforeDel", "nClassID=1040007", "nInterID=999")
        self.assertEqual(answer.returncode, FAILED)
        self.assertRegex(answer.stdout, r"\n  after +Declare @Same int")

    def test_rows_that_are_no_number_are_refused(self):
        for rows in ("-1", "many"):
            answer = self.call(*AUDIT, "--trace", "--rows", rows)
            self.assert_error(answer, "--rows")


if __name__ == "__main__":
    case.main()
