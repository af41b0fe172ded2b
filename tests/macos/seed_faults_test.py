#!/usr/bin/python3
"""Which faults of a made-up table count as caught, and which complaints the others bring.

usage: seed_faults_test.py BUILD [arguments of unittest]

BUILD is where the tests that run over the stand-ins were built.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).with_name("seed_faults.py")


def fault(what, old, new, *caught_by):
    return {"what": what, "file": "platform/macos/windows/AppKitWindowPeer.mm", "old": old,
            "new": new, "caught_by": caught_by}


LEVEL = "  shown_.level = window_.level();\n"
TEST = "Mirror.ShowsAPanelThatFloatsAboveEverything"
CAUGHT = fault("another level", LEVEL, "  shown_.level = window_.level() + 1;\n", TEST)


class SeedFaultsTest(unittest.TestCase):
    def seed(self, *faults):
        """The exit status, and what is printed."""
        with tempfile.TemporaryDirectory() as folder:
            table = pathlib.Path(folder, "faults.json")
            table.write_text(json.dumps(faults), encoding="utf-8")
            ran = subprocess.run([sys.executable, "-B", SCRIPT, BUILD, table],
                                 stdout=subprocess.PIPE, text=True, check=False)
        return ran.returncode, ran.stdout

    def test_a_fault_that_a_test_notices_is_caught(self):
        self.assertEqual(self.seed(CAUGHT), (0, "1 faults, 0 complaints\n"))

    def test_a_change_that_nobody_notices_is_missed(self):
        harmless = fault("the level is set twice", LEVEL, LEVEL + LEVEL, TEST)
        self.assertEqual(self.seed(harmless),
                         (1, f"the level is set twice: missed by {TEST}\n"
                             "1 faults, 1 complaints\n"))

    def test_a_fault_that_cannot_be_seeded_is_not_caught(self):
        status, output = self.seed(fault("not there", "no such line", "", TEST),
                                   fault("unknown name", LEVEL, "  unknown();\n", TEST),
                                   {**CAUGHT, "what": "no source", "file": "CMakeLists.txt",
                                    "old": "cmake_minimum_required"})
        self.assertEqual(status, 1)
        self.assertIn("not there: what it changes occurs 0 times in", output)
        self.assertIn("unknown name: does not compile\n", output)
        self.assertIn("no source: CMakeLists.txt is no source of", output)
        self.assertIn("3 faults, 3 complaints\n", output)

    def test_a_test_that_does_not_exist_catches_nothing(self):
        self.assertEqual(self.seed({**CAUGHT, "caught_by": ["Mirror.DoesNotExist"]}),
                         (1, "Mirror.DoesNotExist: no such test\n"
                             "another level: missed by Mirror.DoesNotExist\n"
                             "1 faults, 2 complaints\n"))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BUILD = sys.argv.pop(1)
    unittest.main()
