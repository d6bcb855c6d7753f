"""The program works from where it is installed, and modules are built against what is there."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import ezdxf

CMAKE = BUILD = ""
ROOT = pathlib.Path(__file__).resolve().parents[2]
DRAWING = ROOT / "tests" / "fixtures" / "dxf" / "r2018_sample.dxf"
MODEL = ROOT / "tests" / "fixtures" / "networks" / "sewer_state_plane.inp"

LABEL_ONE = """
(setq pipe (entnext))
(while (and pipe (not (labelfall pipe))) (setq pipe (entnext pipe)))
(princ (cdr (assoc 1 (entget (entlast)))))
(princ)
"""
CHANGE_IT = """
(foreach owner (owners) (if (assoc 102 (entget owner)) (setq pipe owner)))
(set-value pipe "start_invert" 12.5)
(set-value pipe "end_invert" 10.25)
(updatedim "fall" pipe)
(princ (cdr (assoc 1 (entget (entlast)))))
(princ)
"""


class Installed(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.holder.cleanup)
        cls.folder = pathlib.Path(cls.holder.name)
        cls.prefix = cls.folder / "installed"
        cls.call(CMAKE, "--install", BUILD, "--prefix", cls.prefix)

    @classmethod
    def call(cls, *command):
        done = subprocess.run(command, capture_output=True, text=True, check=False, cwd=cls.folder)
        if done.returncode:
            raise AssertionError(f"{command}\n{done.stdout}\n{done.stderr}")
        return done.stdout

    def pipenote(self, *arguments):
        return subprocess.run([self.prefix / "bin" / "pipenote", *arguments], cwd=self.folder,
                              capture_output=True, text=True, check=False)

    def recorded(self, drawing):
        """The texts in the records of the module's type, as another program reads them."""
        texts = []
        for entity in ezdxf.readfile(self.folder / drawing).modelspace():
            if entity.has_extension_dict and "fall" in entity.get_extension_dict().dictionary:
                record = entity.get_extension_dict().dictionary["fall"]
                texts += [tag.value for tag in record.tags if tag.code == 1]
        return texts

    def test_the_module_is_found_and_loaded(self):
        done = self.pipenote("run", DRAWING,
                             "-e", "(dimUserRec (list (entnext) \"pcgb\") \"a\" \"b\")",
                             "-e", "(type dimRec)")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "EXRXSUBR\n", ""))

    def test_a_module_is_built_with_the_package_and_keeps_its_labels_right(self):
        # From a copy, so that no header of the tree is found by chance.
        source, build = self.folder / "module", self.folder / "build"
        source.mkdir()
        for name in os.listdir(ROOT / "examples" / "module"):
            (source / name).write_bytes((ROOT / "examples" / "module" / name).read_bytes())
        self.call(CMAKE, "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}",
                  "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror")
        self.call(CMAKE, "--build", build)
        module = build / "falls.arx.so"

        (self.folder / "label.lsp").write_text(LABEL_ONE)
        (self.folder / "change.lsp").write_text(CHANGE_IT)
        self.assertEqual(self.pipenote("import", MODEL, "-o", "net.dxf").returncode, 0)
        done = self.pipenote("run", "net.dxf", "--load", module, "label.lsp", "-o", "fall.dxf")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertRegex(done.stdout, r"^h=\d+\.\d\dm$")
        self.assertIn(done.stdout[2:-1], self.recorded("fall.dxf"))

        # Its records are known where it is loaded.
        self.assertEqual(self.pipenote("records", "fall.dxf").stdout, "")
        self.assertIn("its type is not registered", self.pipenote("check", "fall.dxf").stdout)
        listed = self.pipenote("records", "fall.dxf", "--load", module, "--type", "fall").stdout
        self.assertIn(f'"fall" = "{done.stdout.strip()}" in ', listed)
        self.assertEqual(self.pipenote("check", "fall.dxf", "--load", module).stdout,
                         "1 record is sound\n")

        changed = self.pipenote("run", "fall.dxf", "--load", module,
                                ROOT / "examples" / "change-network.lsp", "change.lsp",
                                "-o", "new.dxf")
        self.assertEqual((changed.returncode, changed.stdout, changed.stderr), (0, "h=2.25m", ""))
        self.assertNotIn(done.stdout.encode(), (self.folder / "new.dxf").read_bytes())
        self.assertIn("2.25", self.recorded("new.dxf"))


if __name__ == "__main__":
    CMAKE, BUILD = sys.argv[1:3]
    del sys.argv[1:3]
    unittest.main()
