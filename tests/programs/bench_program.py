"""The bench program as its tests run it: python3 TEST PROGRAM, from anywhere."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


class BenchTest(unittest.TestCase):
    """Each test works in a directory of its own, with the examples and a firmware file beside it."""

    program = ""

    def setUp(self):
        self.directory = self.make_directory()
        self.environment = dict(os.environ, PATH=f"{pathlib.Path(self.program).parent}:{os.environ['PATH']}")

    def make_directory(self):
        directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, directory)
        for link in ("examples", "tools"):
            os.symlink(ROOT / link, pathlib.Path(directory) / link)
        subprocess.run([ROOT / "tools" / "make_firmware.py", "firmware.bin"], cwd=directory, check=True)
        return directory

    def shell(self, command, text=None, directory=None):
        """Runs a command line as a user types it: exit code, output, complaints."""
        ended = subprocess.run(["bash", "-c", command], cwd=directory or self.directory, env=self.environment, input=text,
                               stdin=subprocess.DEVNULL if text is None else None, capture_output=True, text=True, timeout=100)
        return ended.returncode, ended.stdout, ended.stderr

    def shells(self, commands):
        """Runs command lines beside one another, since they mostly wait for the clock: each with what it gave."""
        return self.sequences([[command] for command in commands])

    def sequences(self, lists):
        """The same for lists of command lines that build on one another, each list in a directory of its own."""
        def run(commands):
            directory = self.make_directory()
            return [(command, self.shell(command, directory=directory)) for command in commands]

        with ThreadPoolExecutor(8) as pool:
            return [each for sequence in pool.map(run, lists) for each in sequence]


def main():
    BenchTest.program = os.path.abspath(sys.argv.pop(1))
    unittest.main()
