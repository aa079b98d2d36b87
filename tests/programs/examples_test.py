"""Every example of the help, the README and the scripts runs, and ends as the text beside it says."""

import re
import unittest

from bench_program import ROOT, BenchTest, main

SCRIPTS = {  # what the last line says; the others say nothing of their own
    "calibration": r"HW_GetMainCalibVersion = \d+",
    "peak": r"found the peak: [01]\.\d+ V at 3[12]\d\d\.\d\d Hz",
    "regulate-level": r"status 3, where 3 is OK",
    "stereo-array": r" +7  .* settled",
    "switch-array": r"all off: 0",
}


def shape(line):
    """A line without what differs from run to run: numbers, and the blanks that give way to them."""
    return re.sub(r"\s+", " ", re.sub(r"-?\d+(\.\d+)?", "#", line)).strip()


def join(text):
    return re.sub(r"\\\n\s*", "", text)


def commands_of_help(text):
    found = []
    for block in re.findall(r"\nExamples?:\n((?:  .*\n?)+)", join(text)):
        found += [line.strip() for line in block.splitlines()]
    return found


def blocks_of_readme():
    """Of each block its commands, each with the lines that follow it to the next one or the end."""
    text = join((ROOT / "README.md").read_text())
    for block in re.findall(r"```\n(.*?)```", text, re.DOTALL):
        parts = [part.partition("\n") for part in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]]
        yield [(command, output.splitlines()) for command, _, output in parts
               if re.match(r"(kalvio-bench|echo|printf|tools/make_firmware)\b", command)]


class Examples(BenchTest):
    def test_help(self):
        code, general, _ = self.shell("kalvio-bench --help")
        self.assertEqual(code, 0)
        names = re.findall(r"^  (\w+) {3,}", general[general.index("Subcommands:"):], re.MULTILINE)
        self.assertIn("console", names)
        helps = self.shells([f"kalvio-bench {name} --help" for name in names])
        lists = [commands_of_help(general)] + [commands_of_help(out) for _, (_, out, _) in helps]
        self.assertGreater(sum(map(len, lists)), len(names))
        for command, (code, out, err) in self.sequences(lists):
            with self.subTest(command):
                self.assertEqual(code, 0, out + err)

    def test_readme(self):
        blocks = [block for block in blocks_of_readme() if block]
        self.assertGreater(len(blocks), 2)
        ran = self.sequences([[command for command, _ in block] for block in blocks])
        told = [each for block in blocks for each in block]
        for (command, shown), (_, (code, out, err)) in zip(told, ran):
            with self.subTest(command):
                lines = [line for line in shown if line.strip()]
                self.assertEqual(code, 0, out + err)
                if lines and lines[-1].strip() not in ("...", "[...]"):
                    self.assertIn(shape(lines[-1]), [shape(line) for line in (out + err).splitlines()])

    def test_scripts(self):
        stems, codes = {}, {}
        for path in sorted((ROOT / "examples").glob("*.kvs")):
            told = re.findall(r"^#\s+(kalvio-bench .*)$", path.read_text(), re.MULTILINE)
            ends = re.search(r"ends with code (\d)", path.read_text(), re.IGNORECASE)
            for command in told or [f"kalvio-bench run {path}"]:
                stems[command] = path.stem
                codes[command] = int(ends.group(1)) if ends else 0
        for command, (code, out, err) in self.shells(list(stems)):
            with self.subTest(command):
                self.assertEqual(code, codes[command], out + err)
                self.assertRegex(out.rstrip().splitlines()[-1], SCRIPTS.get(stems[command], "."))


if __name__ == "__main__":
    main()
