"""The shell of tavcc sql, at a terminal of the test's own."""

import fcntl
import os
import pty
import re
import select
import shutil
import signal
import struct
import termios
import time

import case
from case import Case, tavcc

ESCAPES = re.compile(r"\x1b\[[0-9;?]*[A-Za-z]|\x1b[=>]|[\x07\x0f\r]")
PATIENCE = 60


class NeverShown(AssertionError):
    pass


class Terminal:
    """A program at a terminal: what is typed to it, and what it shows."""

    def __init__(self, *arguments, **environment):
        self.shown = ""
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 80, 0, 0))
            os.environ.pop("LESS", None)
            os.environ.pop("MORE", None)
            os.environ.update({"TERM": "xterm", "PAGER": "", **environment})
            os.execv(case.TAVCC, [case.TAVCC, *arguments])

    def type(self, text):
        # A key that edits means something else to the terminal itself, until the editor has it.
        until = time.monotonic() + PATIENCE
        while any(key in text for key in "\x02\x04\t\x1b\x7f") and time.monotonic() < until:
            if not termios.tcgetattr(self.terminal)[3] & termios.ICANON:
                break
            time.sleep(0.01)
        os.write(self.terminal, text.encode())

    def type_until(self, key, text):
        """Presses the key again and again: what is typed when a signal comes is lost."""
        until = time.monotonic() + PATIENCE
        while time.monotonic() < until:
            self.type(key)
            try:
                return self.wait(text, patience=2)
            except NeverShown:
                continue
        raise AssertionError(f"never shown: {text!r}; but {self.shown!r}")

    def wait(self, text, patience=PATIENCE):
        """Reads until the text is shown, and returns all that was shown before and with it."""
        until = time.monotonic() + patience
        while text not in self.shown:
            if time.monotonic() > until:
                raise NeverShown(f"never shown: {text!r}; but {self.shown!r}")
            ready, _, _ = select.select([self.terminal], [], [], 1)
            if ready:
                try:
                    piece = os.read(self.terminal, 65536)
                except OSError:
                    piece = b""
                if not piece:
                    raise AssertionError(f"it ended before it showed {text!r}: {self.shown!r}")
                self.shown += ESCAPES.sub("", piece.decode(errors="replace"))
        end = self.shown.index(text) + len(text)
        before, self.shown = self.shown[:end], self.shown[end:]
        return before

    def end(self):
        """The exit status, when it has ended."""
        until = time.monotonic() + PATIENCE
        while True:
            if not select.select([self.terminal], [], [], max(0, until - time.monotonic()))[0]:
                os.kill(self.process, signal.SIGKILL)
                raise AssertionError(f"it does not end: {self.shown!r}")
            try:
                if not os.read(self.terminal, 65536):
                    break
            except OSError:
                break
        _, status = os.waitpid(self.process, 0)
        os.close(self.terminal)
        return os.waitstatus_to_exitcode(status)


class ShellCase(Case):
    def setUp(self):
        super().setUp()
        self.state = self.path("state")
        shutil.rmtree(self.state, ignore_errors=True)

    def database(self):
        return ["--db", self.db]

    def shell(self, *arguments, **environment):
        terminal = Terminal("sql", *self.database(), *arguments, XDG_STATE_HOME=self.state,
                            **environment)
        terminal.wait("1> ")
        return terminal

    def leave(self, terminal):
        terminal.type(".quit\n")
        self.assertEqual(terminal.end(), 0)


class Shell(ShellCase):
    def test_ctrl_d_leaves(self):
        terminal = self.shell()
        terminal.type("\x04")
        self.assertEqual(terminal.end(), 0)

    def test_a_batch_ends_at_a_semicolon_or_at_go(self):
        terminal = self.shell()
        terminal.type("select 7 as\n")
        terminal.wait("2> ")
        terminal.type("  Seven;\n")
        terminal.wait("Seven\n-----\n    7\n(1 row affected)\n")
        terminal.type("print 'a'\nGO 2\n")
        terminal.wait("\na\na\n1> ")
        self.leave(terminal)

    def test_a_declaration_waits_for_what_uses_it(self):
        terminal = self.shell()
        terminal.type("declare @n int = 41;\n")
        terminal.wait("2> ")
        terminal.type("select @n + 1 as N;\n")
        terminal.wait(" N\n--\n42\n")
        terminal.type("begin\nprint 'inside';\n")
        terminal.wait("3> ")
        terminal.type("end;\n")
        terminal.wait("\ninside\n")
        self.leave(terminal)

    def test_errors_leave_the_shell_open(self):
        terminal = self.shell()
        terminal.type("select * from NoTable;\n")
        terminal.wait("Msg 208, Level 16, State 1, Line 1\nInvalid object name 'NoTable'.\n"
                      "  line 1: select * from NoTable;\n                        ^\n")
        terminal.type(".mod box\n")
        terminal.wait('there is no command ".mod"; did you mean .mode?')
        self.leave(terminal)

    def test_commands(self):
        terminal = self.shell()
        terminal.type(".tables stockbill\n")
        self.assertIn("T_CC_StockBillEntry", terminal.wait("1> "))
        terminal.type(".schema t_stock\n")
        self.assertIn("CREATE TABLE", terminal.wait("1> "))
        terminal.type(".schema t_stok\n")
        terminal.wait("did you mean t_Stock?")
        terminal.type(".mode line\nselect 1 as A;\n")
        terminal.wait("\nA = 1\n")
        terminal.type(".mode\n")
        terminal.wait("\nline\n")
        terminal.type(".timer on\nselect 2 as B;\n")
        terminal.wait("Time: ")
        terminal.type(".timer off\n")
        script = self.write("script.sql", "print 'from a script'\nGO\nselect * from NoTable\n")
        terminal.type(f".read {script}\n")
        terminal.wait("\nfrom a script\n")
        terminal.wait(f"{script}:3: select * from NoTable")
        terminal.type(".help\n")
        terminal.wait(".schema")
        terminal.type(".quit\n")
        self.assertEqual(terminal.end(), 0)

    def test_completion(self):
        terminal = self.shell()
        terminal.type("sel\t")
        terminal.wait("select ")
        terminal.type("FItemID from t_Stoc\t")
        terminal.wait("t_Stock")
        terminal.type(" where t_Stock.FNam\t")
        terminal.wait("FName ")
        terminal.type("is null;\n")
        terminal.wait("(0 rows affected)")
        terminal.type(".mo\t")
        terminal.wait(".mode ")
        terminal.type("js\t\n")
        terminal.wait("json")
        self.leave(terminal)

    def test_chinese_is_edited_by_characters(self):
        terminal = self.shell(LANG="C", LC_ALL="")
        terminal.type("print N'单据x';\x02\x02\x02\x7f\n")  # three back, and one deleted
        terminal.wait("\n单x\n")
        self.leave(terminal)

    def test_history_stays(self):
        terminal = self.shell()
        terminal.type("print 'remembered';\n")
        terminal.wait("\nremembered\n")
        self.leave(terminal)
        file = os.path.join(self.state, "tavcc", "history")
        self.assertEqual(os.stat(file).st_mode & 0o077, 0)
        terminal = self.shell()
        terminal.type("\x1b[A\x1b[A\n")  # behind .quit
        terminal.wait("\nremembered\n")
        self.leave(terminal)

    def test_ctrl_c_ends_the_batch_that_is_typed(self):
        terminal = self.shell()
        terminal.type("select 1\n")
        terminal.wait("2> ")
        terminal.type("from nothing\x03")
        terminal.wait("^C")
        terminal.wait("1> ")
        terminal.type("print 'still here';\n")
        terminal.wait("\nstill here\n")
        self.leave(terminal)

    def test_ctrl_c_in_a_batch_rolls_back_and_says_so(self):
        terminal = self.shell()
        terminal.type("begin transaction insert into t_Stock(FItemID) values(-9) print 'begun' "
                      "while 1=1 update t_Stock set FName=FName where FItemID=-9;\n")
        terminal.wait("\nbegun\n")
        terminal.type("\x03")
        terminal.wait("Interrupted: what the batch had not committed is rolled back.")
        terminal.type("select count(*) as Left_ from t_Stock where FItemID=-9;\n")
        terminal.wait("Left_\n-----\n    0\n")
        self.leave(terminal)

class Pager(ShellCase):
    """Of a terminal of 24 lines."""

    SHORT = "select 7 as Seven;\n"
    LONG = ("select top 200 'row ' + convert(varchar(9), row_number() over(order by a.FItemID)) as R"
            " from t_ICItem a cross join t_ICItem b cross join t_ICItem c;\n")

    def shell_with(self, pager, program=None):
        if shutil.which(program or pager) is None:
            self.skipTest(f"{program or pager} is not installed")
        return self.shell(PAGER=pager)

    def still_works(self, terminal):
        terminal.wait("1> ")
        terminal.type("print 'still ' + 'here';\n")
        terminal.wait("\nstill here\n")
        terminal.wait("1> ")
        self.leave(terminal)

    def test_less_leaves_what_fits_on_the_screen(self):
        terminal = self.shell_with("less")
        terminal.type(self.SHORT)
        terminal.wait("Seven\n-----\n    7\n(1 row affected)\n")
        self.still_works(terminal)

    def test_less_shows_a_page_and_the_next_and_is_left(self):
        terminal = self.shell_with("less")
        terminal.type(self.LONG)
        first = terminal.wait("\n:")
        self.assertIn("row 15\n", first)
        self.assertNotIn("row 40\n", first)
        terminal.type(" ")
        second = terminal.wait("\n:")
        self.assertIn("row 40\n", second)
        self.assertNotIn("row 100\n", second)
        terminal.type("q")
        self.still_works(terminal)

    def test_less_shows_it_to_the_end(self):
        terminal = self.shell_with("less")
        terminal.type(self.LONG)
        terminal.wait("\n:")
        terminal.type("G")
        terminal.wait("row 200\n(200 rows affected)\n")
        terminal.type("q")
        self.still_works(terminal)

    def test_more_shows_a_page_and_is_left(self):
        terminal = self.shell_with("more")
        terminal.type(self.LONG)
        self.assertNotIn("row 40\n", terminal.wait("--More--"))
        terminal.type(" ")
        self.assertIn("row 40\n", terminal.wait("--More--"))
        terminal.type("q")
        terminal.wait("1> ")
        self.leave(terminal)

    def test_ctrl_c_is_the_pager_s(self):
        """less begins its prompt again; the shell waits for it as before."""
        terminal = self.shell_with("less")
        terminal.type(self.LONG)
        terminal.wait("\n:")
        terminal.type("\x03")
        terminal.type_until(" ", "row 40\n")
        terminal.type("q")
        self.still_works(terminal)

    def test_errors_stand_in_the_pager_behind_the_rows(self):
        terminal = self.shell_with("less")
        terminal.type("select 7 as Seven select * from NoTable;\n")
        terminal.wait("    7\n(1 row affected)\nMsg 208, Level 16, State 1, Line 1\n")
        self.still_works(terminal)

    def test_a_pager_with_options(self):
        terminal = self.shell_with("less -F -X -N", "less")
        terminal.type(self.SHORT)
        terminal.wait("      3     7\n")
        terminal.wait("1> ")
        self.leave(terminal)

    def test_one_that_is_not_there_is_done_without(self):
        terminal = self.shell(PAGER="no-such-pager")
        terminal.type(self.SHORT)
        terminal.wait("    7\n(1 row affected)\n")
        self.still_works(terminal)

    def test_long_output_goes_through_a_pager(self):
        pager = self.write("pager", "#!/bin/sh\necho paged\ncat >/dev/null\n")
        os.chmod(pager, 0o700)
        terminal = self.shell(PAGER=pager)
        terminal.type("select 1 as A;\n")
        self.assertNotIn("(1 row", terminal.wait("paged\n"))
        terminal.wait("1> ")
        self.leave(terminal)


class OverOdbc(case.Served, ShellCase):
    """What the shell asks of a server: which tables there are, and their columns."""

    def database(self):
        case.skip_without_driver(self, tavcc("sql", "--dsn", self.dsn, "select 1"))
        return ["--dsn", self.dsn]

    def test_tables(self):
        terminal = self.shell()
        terminal.type(".tables zzcx\n")
        terminal.wait("name              kind\n----------------  -----\nT_CC_ZZCX         table\n"
                      "T_CC_ZZCX_Entry   table\nT_CC_ZZCX_Entry2  table\n")
        terminal.type(".tables vw_cc_rec\n")
        terminal.wait("vw_cc_Receive  view\n")
        terminal.type(".tables nowhere\n")
        terminal.wait("There is none.\n")
        self.leave(terminal)

    def test_schema(self):
        terminal = self.shell()
        terminal.type(".schema T_CC_ZZCX\n")
        terminal.wait("CREATE TABLE T_CC_ZZCX (\n  FID int NOT NULL,\n  FClassTypeID int NOT NULL,\n"
                      "  FBillTypeID int NOT NULL,\n  FBillNo nvarchar(80) NOT NULL,\n"
                      "  FDate datetime NULL,\n")
        terminal.type(".schema T_CC_ZZCY\n")
        terminal.wait('there is no "T_CC_ZZCY"; did you mean T_CC_ZZCX?')
        self.leave(terminal)

    def test_completion(self):
        terminal = self.shell()
        terminal.type("select FNote from T_CC_StockB\t")
        terminal.wait("T_CC_StockBill")
        terminal.type("\x15select FID from T_CC_ZZCX where FVouch\t")
        terminal.wait("FVoucherID ")
        terminal.type("< 0;\n")
        terminal.wait("(0 rows affected)")
        terminal.type(".schema vw_cc_Rec\t")
        terminal.wait("vw_cc_Receive ")
        terminal.type("\n")
        terminal.wait("CREATE TABLE vw_cc_Receive (\n  FID int")
        self.leave(terminal)


if __name__ == "__main__":
    case.main(served=True)
