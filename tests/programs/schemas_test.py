"""What the program says in JSON is as docs/schemas tells, with null for what has no value."""

import json
import warnings

import jsonschema

from bench_program import ROOT, BenchTest, main

REGULATE = "regulate --to 1 --min 0.1 --max 5 --json"
RUNS = [  # schema, command, exit code
    ("info", "info --json", 0),
    ("info", "--unit none info --json", 0),
    ("watch", "watch rms freq --json", 0),
    ("watch", "watch rms --json --dut silent --timeout 0.3", 1),
    ("watch", "watch rms --json --dut noise=0.5 --type normal --tolerance 0.1", 1),
    ("watch", "--unit none watch rms fft:2 --json --timeout 0.3", 1),
    ("regulate", REGULATE + " --dut noise=0.001 --tolerance 0.01", 0),
    ("regulate", REGULATE + " --dut silent --timeout 1", 1),
    ("regulate", REGULATE + " --in dBu --dut saturation=0.5", 1),
    ("regulate", "regulate --type max --source gen-freq --min 500 --max 10000 --dut resonance=3200:4 --json", 0),
    ("demo", "demo --json", 0),
    ("arrays", "arrays examples/switch-array.kvs --json", 0),
    ("network", "network --json", 0),
    ("adapter", "adapter --json", 0),
    ("adapter", "adapter --from-unit --json --peripherals keda@9:rate=96000 --address 9", 0),
    ("firmware", "firmware firmware.bin --json", 0),
    ("firmware", "firmware nowhere --json", 5),
    ("firmware", "firmware examples/peak.kvs --json", 5),
    ("download", "download firmware.bin --address 9 --peripherals loader@9 --json", 0),
    ("window", "window regulation --json", 0),
    ("window", "window settling --json", 0),
]
LINES = """HW_GetMainTemp
REG_Timeout = 20
REG_Timeout = 30000

nonsense here
HW_GetMainCalibDate(a, b, c, d, e, f)
HW_SetMainCalibByte(5, 300)
wait 10
read rms
read fft:1
source gen-ampl
expect 1 within 0 2
expect 3 within 0 2
print "a", 1
wait-regulation
SWITCHER_DefineArray("x")
IOSWITCHER_AddToArray 1, 0, 0, "x"
sweep "x", read rms
sweep "nowhere", read rms
window open settling
window show settling
window print settling
window close settling
help
help REG_Source
help HW_DSPGetMem
help nothing
names reg_t*
quit now
quit
"""


def schema(name):
    """With the schemas that it names put in their places, so that no file is looked for."""
    loaded = json.loads((ROOT / "docs" / "schemas" / f"{name}.json").read_text())

    def inline(part):
        if isinstance(part, dict):
            if part.get("$ref", "").endswith(".json"):
                return {key: value for key, value in schema(part["$ref"][:-5]).items() if not key.startswith("$")}
            return {key: inline(value) for key, value in part.items()}
        return [inline(each) for each in part] if isinstance(part, list) else part

    return inline(loaded)


class Schemas(BenchTest):
    def check(self, name, value):
        jsonschema.Draft202012Validator(schema(name)).validate(value)

    def test_every_output(self):
        ran = self.shells(["kalvio-bench " + command for _, command, _ in RUNS])
        for (name, command, expected), (_, (code, out, err)) in zip(RUNS, ran):
            with self.subTest(command):
                self.assertEqual(code, expected, out + err)
                self.check(name, json.loads(out))
        present = {path.stem for path in (ROOT / "docs" / "schemas").glob("*.json")}
        self.assertEqual(present, {name for name, _, _ in RUNS} | {"record"})

    def test_every_line_of_a_console_gives_one_record(self):
        code, out, err = self.shell("kalvio-bench console --json", LINES)
        records = [json.loads(line) for line in out.splitlines()]
        self.assertEqual(code, 0, err)
        self.assertEqual([(each["sequence"], each["line"]) for each in records],
                         [(i, i) for i in range(1, len(LINES.splitlines()) + 1)])
        for record in records:
            self.check("record", record)
        source = next(each["help"] for each in records if each.get("help", {}).get("name") == "REG_Source")
        self.assertIn({"value": 1, "text": "Generator amplitude", "constant": "REG_SOURCE_GENAMPL"}, source["choices"])
        self.assertEqual(records[1]["set"], 20)
        self.assertRegex(records[2]["error"], "1 to 3600. The value was 30000.$")


if __name__ == "__main__":
    warnings.simplefilter("ignore", DeprecationWarning)
    main()
