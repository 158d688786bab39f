"""tavcc sql: batches, scripts and what they show, on a database file and over ODBC."""

import json
import os
import re
import signal
import subprocess
import sys
import time
import unittest

import case
from case import FAILED, PASSED, Case, tavcc


class SqlCase(Case):
    def sql(self, *arguments, stdin=None):
        return tavcc("sql", "--db", self.db, *arguments, stdin=stdin)

    def shown(self, *arguments, stdin=None):
        """What a run shows that must pass."""
        answer = self.sql(*arguments, stdin=stdin)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
        return answer.stdout

    def results(self, *arguments):
        answer = self.sql("--json", *arguments)
        return json.loads(answer.stdout)["results"]

    def write_bytes(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)


class Results(SqlCase):
    def test_all_results_counts_and_messages_in_their_order(self):
        self.assertEqual(self.shown(
            "create table T(n int)\n"
            "insert T select 1 union all select 2 union all select 3\n"
            "print N'单据'\n"
            "select n from T where n > 2\n"
            "update T set n = n + 1 where n > 9\n"
            "select 1 as A, N'x' as B"),
            "(3 rows affected)\n单据\nn\n-\n3\n(1 row affected)\n(0 rows affected)\n"
            "A  B\n-  -\n1  x\n(1 row affected)\n")

    def test_nocount_silences_counts(self):
        self.assertEqual(self.shown("set nocount on select 1 as A declare @t table(n int) "
                                    "insert @t values(1)"), "A\n-\n1\n")

    def test_variables_and_declarations_count_nothing(self):
        self.assertEqual(self.shown("declare @n int set @n=1 select @n=2 if @n=2 print 'two'"),
                         "two\n")

    def test_counts_inside_a_procedure(self):
        self.shown("create procedure P as select 1 as A insert into t_Stock(FItemID) values(-1)")
        self.assertEqual(self.shown("exec P"),
                         "A\n-\n1\n(1 row affected)\n(1 row affected)\n")

    def test_insert_exec_counts_once(self):
        self.shown("create procedure P as select 1 as A union all select 2")
        self.assertEqual(self.shown("declare @t table(n int) insert @t exec P"),
                         "(2 rows affected)\n")

    def test_a_table_variable_that_is_read_once_counts_as_any(self):
        self.assertEqual(self.shown(
            "declare @u table(k int)\n"
            "insert @u select FItemID from t_Stock\n"
            "delete s from t_Stock s left join @u u on s.FItemID = u.k where u.k is null"),
            "(3 rows affected)\n(0 rows affected)\n")

    def test_rows_before_an_error_are_shown_and_those_behind_it(self):
        answer = self.sql("select 1 as A\nselect * from NoTable\nselect 2 as B")
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("A\n-\n1\n(1 row affected)\n", answer.stdout)
        self.assertEqual(answer.stderr, "Msg 208, Level 16, State 1, Line 2\n"
                                        "Invalid object name 'NoTable'.\n"
                                        "  line 2: select * from NoTable\n"
                                        "                        ^\n")

    def test_rows_of_the_statement_itself_before_its_error(self):
        answer = self.sql("select 1/(3-n) as A from (select 1 as n union all select 2 union all "
                          "select 3) t order by n")
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("Divide by zero", answer.stderr)

    def test_an_error_of_a_statement_goes_on_one_of_syntax_does_not(self):
        answer = self.sql("print 'a'\nselect 1/0\nprint 'b'")
        self.assertIn("a\n", answer.stdout)
        self.assertTrue(answer.stdout.endswith("b\n"), answer.stdout)
        self.assertIn("Msg 8134, Level 16, State 1, Line 2\nDivide by zero error encountered.\n"
                      "  line 2: select 1/0\n          ^\n", answer.stderr)
        answer = self.sql("print 'a'\nfrobnicate the stock")
        self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
        self.assertIn("Msg 102, Level 15", answer.stderr)

    def test_an_error_in_a_procedure_names_it(self):
        self.shown("create procedure P as\nselect 1/0")
        answer = self.sql("print 'x'\nexec P")
        self.assertIn("Msg 8134, Level 16, State 1, Procedure P, Line 2\n", answer.stderr)
        self.assertNotIn("^", answer.stderr)

    def pointed_at(self, errors):
        """What stands behind the caret's place in the line above it."""
        source, caret = errors.splitlines()[-2:]
        self.assertEqual(caret.strip(), "^", errors)
        at = len(caret) - 1
        # A wide character takes two columns.
        wide = sum(1 for c in source[:at] if ord(c) > 0x2E80)
        return source[at - wide:]

    def test_the_caret_stands_below_what_the_message_names(self):
        for batch, behind in (
                ("select FName as 一, NoColumn from t_Stock", "NoColumn from t_Stock"),
                ("select a.FItemID from t_Stock a\n join NoTable b on 1=1", "NoTable b on 1=1"),
                ("\tselect * from\n\tdbo.NoTable", "dbo.NoTable"),
                ("select [No Col] from t_Stock", "[No Col] from t_Stock"),
                ("select b.FName from t_Stock a", "b.FName from t_Stock a"),
                ("select * from t_Stock where FItemID in (select x from NoTable)", "NoTable)"),
                ("update t_Stock\nset NoColumn = 1", "NoColumn = 1"),
                ("print 'a'\nset @n = 1", "@n = 1"),
                ("select 1 frobnicate from where", "where"),
                # In a comment, a text or as another one's name it is not what is meant.
                ("select FName, 'NoColumn' as x, NoColumn from t_Stock", "NoColumn from t_Stock"),
                ("select /* NoTable */ 1 -- NoTable\nfrom NoTable", "NoTable"),
                ("select 1 as NoColumn, t_Stock.NoColumn from t_Stock", "NoColumn from t_Stock"),
                ("select NoTable.x from NoTable", "NoTable"),
                # The message names the column's table, which the batch does not.
                ("select sum(FItemID), FName from t_Stock", "FName from t_Stock"),
                # A value, which is in a text alone.
                ("select 1 as abc, cast('abc' as int)", "abc, cast('abc' as int)"),
                ("select cast('x y' as int)", "x y' as int)"),
                # Nothing that the batch has: the statement.
                ("print 'a'\n  insert t_Stock(FItemID) select min(FItemID) from t_Stock",
                 "t_Stock(FItemID) select min(FItemID) from t_Stock"),
                ("print 'a'\n  select 1/0", "select 1/0")):
            with self.subTest(batch):
                self.assertEqual(self.pointed_at(self.sql(batch).stderr), behind)

    EXECUTED = (
        # Where the text stands in the batch, it is shown there.
        ("print 'x'\nexec('select * from NoTable')", "line 2: exec('select * from NoTable')",
         "NoTable')"),
        ("exec('select 1\n select NoColumn from t_Stock')", "line 2:  select NoColumn from t_Stock')",
         "NoColumn from t_Stock')"),
        ("select 1 as NoTable\nexecute ( N'insert NoTable values(1)' )",
         "line 2: execute ( N'insert NoTable values(1)' )", "NoTable values(1)' )"))
    # What names nothing, and what is in no line of the batch.
    EXECUTED_ELSEWHERE = (
        ("print 'x'\nprint 'y'\nexec('select 1/0')", "line 1 of the executed text: select 1/0",
         "select 1/0"),
        ("declare @s nvarchar(99)\nset @s = 'select 1' + char(10) + ' from No' + 'Table'\nexec(@s)",
         "line 2 of the executed text:  from NoTable", "NoTable"),
        ("exec('exec(''select 1' + '/0'')')", "line 1 of the executed text: select 1/0",
         "select 1/0"))

    def test_an_error_in_a_text_that_is_executed_has_its_line(self):
        for batch, line, behind in self.EXECUTED + self.EXECUTED_ELSEWHERE:
            with self.subTest(batch):
                errors = self.sql(batch).stderr
                self.assertIn(f"\n  {line}\n", errors)
                self.assertEqual(self.pointed_at(errors), behind)
        error = self.results("print 'x' exec('print 1" + "\n" + "select 1/0')")[-1]["error"]
        self.assertEqual((error["line"], error["place"], error["source"], error["column"]),
                         (2, "line 2 of the executed text", "select 1/0", 1))

    def test_an_error_behind_a_text_that_is_executed_is_the_batch_s(self):
        errors = self.sql("exec('print 1')\nprint 2\nselect 1/0").stderr
        self.assertIn("Line 3\n", errors)
        self.assertTrue(errors.endswith("\n  line 3: select 1/0\n          ^\n"), errors)

    def test_raiserror(self):
        answer = self.sql("raiserror('quiet %d', 10, 1, 7)\nraiserror('warn', 5, 2)\n"
                          "raiserror('loud', 16, 3)\nprint 'on'")
        self.assertEqual(answer.stdout, "quiet 7\nMsg 50000, Level 5, State 2\nwarn\non\n")
        self.assertIn("Msg 50000, Level 16, State 3, Line 3\nloud\n", answer.stderr)
        self.assertEqual(answer.returncode, FAILED)


class Modes(SqlCase):
    BATCH = ("select 1 as A, N'单据' as B, cast(1.5 as decimal(10,4)) as C, null as D, N'NULL' as E,"
             " N'' as F, N'a,\"b' as G")

    def test_each(self):
        for mode, shown in (
                ("table", "A  B          C  D     E       F  G\n"
                          "-  ----  ------  ----  ------  -  ----\n"
                          "1  单据  1.5000  NULL  'NULL'     a,\"b\n(1 row affected)\n"),
                ("box", "┌───┬──────┬────────┬──────┬────────┬───┬──────┐\n"
                        "│ A │ B    │      C │ D    │ E      │ F │ G    │\n"
                        "├───┼──────┼────────┼──────┼────────┼───┼──────┤\n"
                        "│ 1 │ 单据 │ 1.5000 │ NULL │ 'NULL' │   │ a,\"b │\n"
                        "└───┴──────┴────────┴──────┴────────┴───┴──────┘\n(1 row affected)\n"),
                ("csv", 'A,B,C,D,E,F,G\n1,单据,1.5000,,NULL,"","a,""b"\n'),
                ("line", "A = 1\nB = 单据\nC = 1.5000\nD = NULL\nE = 'NULL'\nF = \nG = a,\"b\n"
                         "(1 row affected)\n")):
            with self.subTest(mode):
                self.assertEqual(self.shown("--mode", mode, self.BATCH), shown)

    def test_json(self):
        shown = self.shown("--mode", "json", self.BATCH)
        self.assertIn("1.5000", shown)
        self.assertEqual(json.loads(shown), {"results": [
            {"columns": ["A", "B", "C", "D", "E", "F", "G"],
             "rows": [[1, "单据", 1.5, None, "NULL", "", 'a,"b']], "rows_affected": 1}]})
        self.assertEqual(shown, self.shown("--json", self.BATCH))

    def test_json_has_all_in_its_order(self):
        self.assertEqual(self.results("print 'a' select 1 as A print 'b' select * from Nowhere"), [
            {"message": {"number": 0, "severity": 0, "state": 1, "line": 1, "text": "a"}},
            {"columns": ["A"], "rows": [[1]], "rows_affected": 1},
            {"message": {"number": 0, "severity": 0, "state": 1, "line": 1, "text": "b"}},
            {"error": {"number": 208, "severity": 16, "state": 1, "line": 1,
                       "text": "Invalid object name 'Nowhere'.", "place": "line 1",
                       "source": "print 'a' select 1 as A print 'b' select * from Nowhere",
                       "column": 49}}])

    def test_csv_keeps_messages_aside(self):
        answer = self.sql("--mode", "csv", "print 'a' select 1 as A select 2 as B")
        self.assertEqual((answer.stdout, answer.stderr), ("A\n1\n\nB\n2\n", "a\n"))

    def test_decimals_have_one_form(self):
        batch = "select cast(1.5 as decimal(10,4)) as A, cast(1e20 as decimal(38,2)) as B"
        self.assertIn("[1.5000,100000000000000000000.00]", self.shown("--json", batch))
        self.assertIn("1.5000  100000000000000000000.00\n", self.shown(batch))

    def test_a_text_is_one_line_of_a_table_and_sends_nothing_to_the_terminal(self):
        self.assertEqual(self.shown("select N'a' + char(10) + N'b' + char(27) + N'[31m' as A"),
                         "A\n--------\na␊b␛[31m\n(1 row affected)\n")

    def test_columns_are_aligned_by_unicode_s_widths(self):
        for text, width in (("单据", 4), ("e\u0301", 1), ("\u200b", 0), ("🙂", 2), ("Ａ", 2),
                            ("한", 2), ("ㄱ", 2), ("\u2764", 1)):
            with self.subTest(text):
                shown = self.shown(f"select N'{text}' as A, 1 as B")
                self.assertTrue(shown.splitlines()[1].startswith("-" * max(width, 1) + "  -"), shown)

    @unittest.skipUnless(os.path.exists("/usr/share/unicode/EastAsianWidth.txt"),
                         "Debian's package unicode-data is missing")
    def test_the_widths_are_those_of_the_data(self):
        root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
        made = subprocess.run([sys.executable, os.path.join(root, "scripts", "unicode-widths.py")],
                              capture_output=True, text=True, check=True).stdout
        with open(os.path.join(root, "tools", "tavcc", "unicode_widths.h"),
                  encoding="utf-8") as file:
            kept = file.read()
        if re.search("Unicode [0-9.]+", made).group() != re.search("Unicode [0-9.]+", kept).group():
            self.skipTest("the package has another version of the data")
        self.assertEqual(made, kept)

    def test_an_unknown_mode(self):
        self.assert_error(self.sql("--mode", "xml", "select 1"), "--mode")

    def test_rows_come_while_the_batch_runs(self):
        """The first rows are read while the batch still waits for a lock that nobody gives."""
        batch = ("select top 3000 a.FItemID from t_ICItem a cross join t_ICItem b cross join "
                 "t_ICItem c\ndeclare @i int set @i=0 while @i<100000000 set @i=@i+1")
        for mode in ("csv", "table"):
            with self.subTest(mode):
                process = subprocess.Popen(
                    [case.TAVCC, "sql", "--db", self.db, "--mode", mode, batch],
                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
                self.assertEqual(process.stdout.readline(), b"FItemID\n")
                self.assertIsNone(process.poll())
                process.kill()
                process.communicate()


class Scripts(SqlCase):
    def test_batches_end_at_go(self):
        self.assertEqual(self.shown(stdin="print 'a'\nGO\nprint 'b'\n  go 3  \n\nGO\nprint 'c'\n"),
                         "a\nb\nb\nb\nc\n")

    def test_go_in_a_text_or_a_comment_ends_nothing(self):
        self.assertEqual(self.shown(stdin="print 'a\nGO\nb'\n/* x\nGO\n*/\nprint 'c' -- '\nGO\n"),
                         "a\nGO\nb\nc\n")

    def test_encodings(self):
        text = "print N'单据'\nGO\n"
        for name, content in (("plain", text.encode()), ("mark", b"\xef\xbb\xbf" + text.encode()),
                              ("le", b"\xff\xfe" + text.encode("utf-16-le")),
                              ("be", b"\xfe\xff" + text.encode("utf-16-be")),
                              ("gb", text.encode("gb18030"))):
            with self.subTest(name):
                file = self.write_bytes(name + ".sql", content)
                self.assertEqual(self.shown("--file", file), "单据\n")
                with open(file, "rb") as script:
                    answer = subprocess.run([case.TAVCC, "sql", "--db", self.db], stdin=script,
                                            capture_output=True, timeout=60)
                self.assertEqual(answer.stdout.decode(), "单据\n")

    def test_what_is_none_of_them(self):
        file = self.write_bytes("bad.sql", b"select 1\nselect '\xff\xff'\n")
        self.assert_error(self.sql("--file", file), "bad.sql: line 2 is neither UTF-8 nor GB18030")
        file = self.write_bytes("wide.sql", "select 1\n".encode("utf-16-le"))
        self.assert_error(self.sql("--file", file), "zero character")

    def test_variables(self):
        script = self.write("v.sql", ":setvar Name world\n:setvar what \"two  words\"\n"
                            "print 'hello $(name), $(What) -- $(n)' -- $(nowhere)\n/* $(none) */\n"
                            ":setvar n\nGO\nprint '$(n)'\n")
        answer = self.sql("--file", script, "-v", "n=7")
        self.assertEqual(answer.stdout, "hello world, two  words -- 7\n")
        self.assertEqual((answer.returncode, answer.stderr), (
            FAILED, f"tavcc: {script}:7: the variable n is not set; give -v n=VALUE, or write"
            " :setvar\n"))

    def test_a_variable_of_the_environment(self):
        os.environ["TAVCC_TEST_WORD"] = "from outside"
        self.addCleanup(os.environ.pop, "TAVCC_TEST_WORD")
        self.assertEqual(self.shown(stdin="print '$(TAVCC_TEST_WORD)'"), "from outside\n")

    def test_files_that_read_files(self):
        inner = self.write("inner.sql", "print 'inner'\nselect * from NoTable\n")
        outer = self.write("outer.sql", f"print 'outer'\n:r {inner}\nGO\nprint 'not reached'\n")
        answer = self.sql("--file", outer)
        self.assertEqual((answer.returncode, answer.stdout.split("\n")[:2]),
                         (FAILED, ["outer", "inner"]))
        self.assertNotIn("not reached", answer.stdout)
        # The line of the batch, and the line of the file.
        self.assertIn("State 1, Line 3\n", answer.stderr)
        self.assertIn(f"  {inner}:2: select * from NoTable\n", answer.stderr)
        circle = self.write("circle.sql", f":r {self.path('circle.sql')}\n")
        self.assert_error(self.sql("--file", circle), "files read one another more than 32 deep")
        self.assert_error(self.sql(stdin=":r nowhere.sql\n"), "line 1: cannot read nowhere.sql")

    def test_stops_at_the_first_error_unless_told_otherwise(self):
        script = "print 'a'\nselect 1/0\nprint 'b'\nGO\nprint 'c'\n"
        for arguments, before, last in (([], "", "b"), (["--on-error", "ignore"], "", "c"),
                                        ([], ":on error ignore\n", "c"),
                                        (["--on-error", "ignore"], ":on error exit\n", "b")):
            with self.subTest(arguments=arguments, before=before):
                answer = self.sql(*arguments, stdin=before + script)
                self.assertEqual(answer.returncode, FAILED)
                self.assertEqual(answer.stdout.split()[-1], last)

    def test_exit(self):
        self.assertEqual(self.shown(stdin="print 'a'\nGO\nprint 'lost'\n:exit\nprint 'b'\n"), "a\n")

    def test_several_files(self):
        first, second = self.write("1.sql", "print 1"), self.write("2.sql", "print 2\n")
        self.assertEqual(self.shown("--file", first, "--file", second), "1\n2\n")

    def test_wrong_commands(self):
        for script, said in ((":rr x", 'line 1: there is no command ":rr"; did you mean :r?'),
                             ("print 1\nGO x", "line 2: GO takes a count from 1, or nothing"),
                             (":!! ls", "is a command of sqlcmd that tavcc does not have"),
                             (":setvar a b c", "stands in quotation marks"),
                             (":setvar a \"b", "is not closed"), (":on error maybe", ":on error exit"),
                             ("print '$(x'", '"$(" without its ")"')):
            with self.subTest(script):
                self.assertIn(said, self.sql(stdin=script).stderr)
        self.assert_error(self.sql("-v", "x", "select 1"), "must have the form NAME=VALUE")

    def test_tables_of_a_script_stay_until_its_end(self):
        self.assertEqual(self.shown(stdin="create table #t(n int)\nGO\ninsert #t values(1)\nGO\n"
                                    "select n from #t\n"),
                         "(1 row affected)\nn\n-\n1\n(1 row affected)\n")

    def test_the_batch_may_be_an_argument_with_go(self):
        self.assertEqual(self.shown("print 1\ngo\nprint 2"), "1\n2\n")


class Interrupts(SqlCase):
    def interrupted(self, batch):
        process = subprocess.Popen([case.TAVCC, "sql", "--db", self.db, batch],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.kill)
        self.assertEqual(process.stdout.readline(), "begun\n")
        time.sleep(0.3)
        process.send_signal(signal.SIGINT)
        out, errors = process.communicate(timeout=60)
        return process.returncode, out, errors

    def test_a_batch_is_ended_and_rolled_back(self):
        for loop in ("while @i<1000000000 set @i=@i+1",
                     "select @i=count(*) from t_ICItem a cross join t_ICItem b cross join t_ICItem c"
                     " cross join t_ICItem d cross join t_ICItem e cross join t_ICItem f"
                     " cross join t_ICItem g cross join t_ICItem h"):
            with self.subTest(loop):
                status, out, errors = self.interrupted(
                    "set nocount on begin transaction insert into t_Stock(FItemID) values(-7) print 'begun' "
                    "declare @i int set @i=0 " + loop + " print 'done' commit")
                self.assertEqual(status, FAILED)
                self.assertNotIn("done", out)
                self.assertEqual(errors, "Interrupted: what the batch had not committed is rolled"
                                         " back.\n")
                self.assertEqual(self.rows("select count(*) from t_Stock where FItemID=-7"), [[0]])


class OverOdbc(case.Served, SqlCase):
    """The same over ODBC, to a server that runs the same database."""

    BATCHES = (
        "select 1 as A print 'x' select 2 as B, null as C",
        "set nocount on select N'单' as A print 'y' set nocount off",
        "insert into t_Stock(FItemID) values(-1) update t_Stock set FName=N'z' where FItemID=-1 "
        "delete from t_Stock where FItemID=-1 delete from t_Stock where FItemID=-1",
        "select 1 as A\nselect * from NoTable\nselect 2 as B",
        "select * from NoTable\nselect 2 as B\nprint 'behind'",
        "print 'a'\nselect 1/0\nprint 'b'",
        "frobnicate",
    )

    def test_an_error_in_a_text_that_is_executed(self):
        """A server tells its line in the text, and not that it is one: what is shown is sure."""
        for batch, line, _ in Results.EXECUTED:
            with self.subTest(batch):
                answer = self.over_odbc("sql", batch)
                self.assertIn(f"\n  {line}\n", answer.stderr)
                self.assertEqual(answer.stderr, re.sub(r", State \d+", "", self.sql(batch).stderr))
        for batch, _, _ in Results.EXECUTED_ELSEWHERE:
            with self.subTest(batch):
                errors = self.over_odbc("sql", batch).stderr
                self.assertRegex(errors, r"^Msg \d+, Level 16, Line \d+\n.*\n$")
                self.assertNotIn("^\n", errors)

    def test_each_batch_shows_the_same(self):
        for batch in self.BATCHES:
            with self.subTest(batch):
                here, there = self.sql(batch), self.over_odbc("sql", batch)
                self.assertEqual(there.stdout, here.stdout)
                # This driver keeps the state to itself.
                self.assertEqual(there.stderr, re.sub(r", State \d+", "", here.stderr))
                self.assertEqual(there.returncode, here.returncode)


if __name__ == "__main__":
    case.main(served=True)
