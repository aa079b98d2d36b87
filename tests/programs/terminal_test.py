"""The console on a pseudo-terminal, signals, and readers that go away."""

import os
import pty
import re
import select
import signal
import subprocess
import time

from bench_program import BenchTest, main

PATIENCE = 60  # seconds; a loaded machine or a sanitizer is slow


class Typist:
    """A user at a terminal who types and reads."""

    def __init__(self, program, *arguments):
        self.seen = ""
        self.pid, self.screen = pty.fork()
        if self.pid == 0:
            os.environ["TERM"] = "xterm"
            os.execv(program, [program, *arguments])

    def type(self, keys):
        os.write(self.screen, keys.encode())

    def wait_for(self, pattern):
        """What came up to the pattern; the rest is kept."""
        deadline = time.monotonic() + PATIENCE
        while True:
            found = re.search(pattern, self.seen)
            if found:
                before, self.seen = self.seen[:found.end()], self.seen[found.end():]
                return before
            if not select.select([self.screen], [], [], max(0.0, deadline - time.monotonic()))[0]:
                raise AssertionError(f"{pattern!r} did not come, only {self.seen!r}")
            try:
                self.seen += re.sub("\x1b\\[[0-9;?]*[A-Za-z]", "", os.read(self.screen, 4096).decode())
            except OSError:
                raise AssertionError(f"the program ended before {pattern!r}: {self.seen!r}") from None

    def end(self):
        return os.waitstatus_to_exitcode(os.waitpid(self.pid, 0)[1])


class Terminal(BenchTest):
    def test_a_console_with_prompt_completion_history_and_interrupts(self):
        user = Typist(self.program, "console")
        user.wait_for("kalvio> ")
        user.type("reg_timeo\t\r")  # one name: completed, in its own letters
        user.wait_for("REG_Timeout = 10\r\n")
        user.wait_for("kalvio> ")
        user.type("print read fre\t\r")
        user.wait_for("1000.00 Hz\r\n")
        user.wait_for("kalvio> ")
        user.type("REG_RegulateT\t = 0.5\x01\x1b[C\x05\r")  # to the start of the line, and its end
        user.wait_for("kalvio> $")
        user.type("\x1b[A\x1b[A\x1b[A\r")  # the line before the one before the last
        user.wait_for("REG_Timeout = 10\r\n")
        user.wait_for("kalvio> ")
        user.type("REG_STATUS_\t\t")  # several: listed
        user.wait_for("REG_STATUS_FAILED +REG_STATUS_")
        user.type("\x03")  # gives the line up
        user.wait_for("\\^C\r\nkalvio> ")
        user.type("wait 600000\r")
        user.wait_for("wait 600000\r\n")
        user.type("\x03")  # ends the wait, not the console
        user.wait_for("kalvio> ")
        user.type("print \"alive\"\r")
        user.wait_for("\nalive\r\n")
        user.type("print \"µ\xE9\", read fft-\t1\r")  # letters of two bytes; a number goes on from its stem
        user.wait_for("\nµé[0-9.]+ V\r\n")
        user.type("\t\t")  # everything, up to a length
        user.wait_for("\\.\\.\\. and more: [0-9]+ in all")
        user.type("help REG_Timeout\r")
        user.wait_for("\n  1 to 3600\r\n")
        user.type("names HW_GetMainT*\r")
        user.wait_for("HW_GetMainTemp")
        user.type("quit\r")
        self.assertEqual(user.end(), 0)

    def test_the_end_of_input_ends_a_console_after_a_question(self):
        user = Typist(self.program, "console", "--unit", "absent", "--json")
        user.wait_for("continue without hardware\r\n")
        user.type("c\r")
        user.wait_for("kalvio> ")
        user.type("wait 600000\r")
        user.wait_for("wait 600000\r\n")
        user.type("\x03")
        user.wait_for('"sequence":1,"line":1,"wait":6e\\+05,"interrupted":true}')
        user.wait_for("kalvio> ")
        user.type("\x04")
        self.assertEqual(user.end(), 0)

    def test_what_is_typed_into_a_pipe_shows_no_prompt(self):
        ours, theirs = pty.openpty()
        with subprocess.Popen([self.program, "console"], stdin=theirs, stdout=subprocess.PIPE, text=True) as run:
            os.write(ours, b'print "42"\nquit\n')
            self.assertEqual(run.communicate(timeout=PATIENCE)[0], "42\n")

    def test_requests_to_terminate_never_cut_the_clean_up_short(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            run = subprocess.Popen([self.program, "watch", "rms", "--follow", "--trace", "trace"], cwd=self.directory,
                                   stdout=subprocess.PIPE, text=True)
            run.stdout.readline()  # the unit is up
            for _ in range(20):
                run.send_signal(number)
            run.communicate(timeout=PATIENCE)
            self.assertEqual(run.returncode, 130)
            with open(os.path.join(self.directory, "trace"), encoding="utf-8") as trace:
                self.assertIn("Terminate(parameter 0) -> ok", trace.read())

    def test_ends_are_told_by_the_exit_code(self):
        lines = "print 1\n" * 20000
        for command, text, code in (("watch rms --follow --timeout 0.3", None, 1),
                                    ("watch rms --follow --timeout 600 | head -n 1", None, 0),
                                    ("console | head -n 1", lines, 0),
                                    ("--help | head -n 1", None, 0)):
            with self.subTest(command):
                ended, _, err = self.shell(f"kalvio-bench {command}; exit ${{PIPESTATUS[0]}}", text)
                self.assertEqual((ended, err), (code, ""))


if __name__ == "__main__":
    main()
