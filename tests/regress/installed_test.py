"""The program works from where it is installed: it finds its libraries and its module."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CMAKE = BUILD = ""
DRAWING = pathlib.Path(__file__).resolve().parents[1] / "fixtures" / "dxf" / "r2018_sample.dxf"


class Installed(unittest.TestCase):

    def test_the_module_is_found_and_loaded(self):
        with tempfile.TemporaryDirectory() as prefix:
            subprocess.run([CMAKE, "--install", BUILD, "--prefix", prefix], check=True,
                           capture_output=True)
            done = subprocess.run([pathlib.Path(prefix) / "bin" / "pipenote", "run", DRAWING,
                                   "-e", "(dimUserRec (list (entnext) \"pcgb\") \"a\" \"b\")",
                                   "-e", "(type dimRec)"],
                                  capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "EXRXSUBR\n", ""))


if __name__ == "__main__":
    CMAKE, BUILD = sys.argv[1:3]
    del sys.argv[1:3]
    unittest.main()
