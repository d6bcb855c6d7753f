"""Drawing files inserted as blocks, read back and audited by an independent reader: every release and form
of file into every other."""

import re

import calling
import independent_reader
from calling import DRAWINGS

SAMPLES = sorted(path.stem for path in DRAWINGS.glob("*.dxf"))
# R12 in both forms, the last release with code pages, and UTF-8 in both forms.
RECEIVERS = ("r12_sample", "r12_binary", "r14_binary", "r2000_sample_xrecords", "r2004_sample",
             "r2013_ansi936_utf8", "r2018_sample_binary")


def faults(document):
    """What the audit complains about, without the handles, which the reader gives to R12 entities. Of
    POLYLINEs in R12 files, the samples' own included, it complains that a SEQEND names no owner."""
    found = {re.sub(r"#[0-9A-F]+", "#", complaint)
             for complaint in independent_reader.complaints(document)}
    if document.dxfversion == "AC1009":
        found.discard("None: Deleted SEQEND(#) entity with invalid owner handle #None.")
    return found


def kinds(entities):
    """Sorted kinds; a light polyline is the old one in R12."""
    return sorted(entity.dxftype().replace("LWPOLYLINE", "POLYLINE") for entity in entities)


class Inserting(calling.ProgramTest):

    def run_on(self, drawing, expression):
        out = self.folder / "out.dxf"
        out.unlink(missing_ok=True)
        return out, self.call("run", drawing, "-e", expression, "-o", out)

    def inserted(self, source, receiver):
        expression = '(command "_.-INSERT" "SYMBOL=%s" "0,0" 1 1 0)' % (DRAWINGS / f"{source}.dxf")
        return self.run_on(DRAWINGS / f"{receiver}.dxf", expression)

    def test_every_sample_goes_into_every_release(self):
        own = {name: faults(independent_reader.read(DRAWINGS / f"{name}.dxf")) for name in SAMPLES}
        refused = []
        for receiver in RECEIVERS:
            for source in SAMPLES:
                with self.subTest(source=source, receiver=receiver):
                    out, printed = self.inserted(source, receiver)
                    if "needs a drawing of release" in printed:
                        refused.append((source, receiver))
                        self.assertIn(receiver, ("r12_sample", "r12_binary", "r14_binary"))
                        continue
                    if "cannot be a name" in printed:
                        self.assertTrue(receiver.startswith(("r12", "r14")))
                        continue
                    document = independent_reader.read(out)
                    from_file = independent_reader.read(DRAWINGS / f"{source}.dxf")
                    self.assertEqual(kinds(document.blocks.get("SYMBOL")),
                                     [kind for kind in kinds(from_file.modelspace())
                                      if kind != "VIEWPORT"], printed)
                    # Faults of the samples themselves come along; inserting adds none.
                    self.assertEqual(faults(document) - own[receiver] - own[source], set())
        self.assertTrue(refused)

    def test_a_copy_inserted_into_itself_keeps_one_definition_of_each_name(self):
        out, _ = self.inserted("r2018_sample", "r2018_sample")
        document = independent_reader.read(out)
        before = independent_reader.read(DRAWINGS / "r2018_sample.dxf")
        for table in ("layers", "styles", "linetypes", "dimstyles", "appids"):
            self.assertEqual(len(getattr(document, table)), len(getattr(before, table)), table)

    def test_taking_it_back_leaves_the_file_as_it_was(self):
        for receiver in ("r12_sample", "r2000_sample_xrecords", "r2018_sample_binary"):
            expression = ('(command "_.-INSERT" "SYMBOL=%s" "0,0" 1 1 0) (command "_.UNDO" 1)'
                          % (DRAWINGS / "r12_sample.dxf"))
            out, _ = self.run_on(DRAWINGS / f"{receiver}.dxf", expression)
            self.assertEqual(out.read_bytes(), (DRAWINGS / f"{receiver}.dxf").read_bytes())


if __name__ == "__main__":
    calling.main()
