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
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)
        for link in ("examples", "tools"):
            os.symlink(ROOT / link, pathlib.Path(self.directory) / link)
        subprocess.run([ROOT / "tools" / "make_firmware.py", "firmware.bin"], cwd=self.directory, check=True)
        self.environment = dict(os.environ, PATH=f"{pathlib.Path(self.program).parent}:{os.environ['PATH']}")

    def shell(self, command, text=None):
        """Runs a command line as a user types it: exit code, output, complaints."""
        ended = subprocess.run(["bash", "-c", command], cwd=self.directory, env=self.environment, input=text,
                               stdin=subprocess.DEVNULL if text is None else None, capture_output=True, text=True, timeout=100)
        return ended.returncode, ended.stdout, ended.stderr

    def shells(self, commands):
        """Runs command lines beside one another, since they mostly wait for the clock: each with what it gave."""
        with ThreadPoolExecutor(8) as pool:
            return list(zip(commands, pool.map(self.shell, commands)))


def main():
    BenchTest.program = os.path.abspath(sys.argv.pop(1))
    unittest.main()
