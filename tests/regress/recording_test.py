"""The main job on real drawings: a LISP script records labels on a drawing's own entities, the
drawing is saved and opened again, and two readers find the same items; whatever nobody touched
keeps its bytes."""

import json
import re
import struct

import calling
import independent_reader
from calling import DRAWINGS

BINARY_SENTINEL = b"AutoCAD Binary DXF\r\n\x1a\x00"

# Texts that a file spells in its own way: Chinese, carets, escapes, blanks, quotes, control codes.
VALUES = ["300", "管径 DN300", "a^Jb^ c", "  blanks  ", "C:\\Users", "tab\tline\nend", "\"quoted\"",
          "%%c300", "𠀀𝄞", "ΔÄß"]


def lisp_text(text):
    escapes = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\t": "\\t"}
    return '"' + "".join(escapes.get(c, c) for c in text) + '"'


# Every other entity of the drawing is annotated by the one behind it; what stands on a locked layer
# cannot be written to and is passed over.
SCRIPT = """
(defun writable (name / groups)
  (setq groups (entget name))
  (and (assoc 5 groups)
       (zerop (logand 4 (cdr (assoc 70 (tblsearch "LAYER" (cdr (assoc 8 groups)))))))))
(setq values (list %s)
      owner  (entnext)
      count  0)
(while (and owner (< count 12))
  (setq label (entnext owner))
  (if (and label (writable owner) (writable label))
    (progn
      (setq value (nth (rem count (length values)) values))
      (dimRec (list owner "pcgb") label "pipe_dia" value "DN" " mm" "-")
      (dimRec (list owner "pcgb") label "pipe_len" (strcat "L" value) "" "" "")
      (dimGeRec (list owner "bzjg") label)
      (dimUserRec (list owner "xzgj") "xfdh" value)
      (princ (strcat (cdr (assoc 5 (entget owner))) " " (cdr (assoc 5 (entget label))) "\\n"))
      (setq count (1+ count))))
  (setq owner (if label (entnext label))))
""" % " ".join(lisp_text(value) for value in VALUES)


def in_order(path):
    """The records of a drawing: from one group 0 to the next, each with its handle, in file order."""
    data = path.read_bytes()
    return list(binary_records(data) if data.startswith(BINARY_SENTINEL) else text_records(data))


def text_records(data):
    lines = data.splitlines(keepends=True)
    starts = [i for i in range(0, len(lines) - 1, 2) if lines[i].strip() == b"0"]
    for start, end in zip(starts, starts[1:] + [len(lines)]):
        handle = None
        for i in range(start, end - 1, 2):
            if lines[i].strip() in (b"5", b"105") and lines[start + 1].strip() != b"SECTION":
                handle = lines[i + 1].strip()
                break
        yield handle, b"".join(lines[start:end])


SIZES = [(10, 59, 8), (60, 79, 2), (90, 99, 4), (110, 149, 8), (160, 169, 8), (170, 179, 2),
         (210, 239, 8), (270, 289, 2), (290, 299, 1), (310, 319, -1), (370, 389, 2), (400, 409, 2),
         (420, 429, 4), (440, 459, 4), (460, 469, 8), (1004, 1004, -1), (1010, 1059, 8),
         (1060, 1070, 2), (1071, 1071, 4)]


def binary_records(data):
    tags = []
    at = len(BINARY_SENTINEL)
    while at < len(data):
        begin = at
        code, = struct.unpack_from("<h", data, at)
        at += 2
        size = next((size for first, last, size in SIZES if first <= code <= last), 0)
        if size == 0:
            end = data.index(b"\0", at)
            value, at = data[at:end], end + 1
        else:
            if size < 0:
                size = data[at] + 1
            value, at = data[at:at + size], at + size
        tags.append((code, value, begin, at))
    starts = [i for i, tag in enumerate(tags) if tag[0] == 0]
    for start, end in zip(starts, starts[1:] + [len(tags)]):
        section = tags[start][1] == b"SECTION"
        handles = [tag[1] for tag in tags[start:end] if tag[0] in (5, 105)]
        yield (handles[0] if handles and not section else None,
               data[tags[start][2]:tags[end - 1][3]])


class Recording(calling.ProgramTest):

    def setUp(self):
        super().setUp()
        self.script = self.folder / "label.lsp"
        self.script.write_text(SCRIPT, encoding="utf-8")

    def record_in(self, drawing):
        """The drawing with labels recorded, and the (owner, label) handles that were used."""
        out = self.folder / drawing.name
        pairs = [tuple(line.split()) for line in
                 self.call("run", drawing, self.script, "-o", out).splitlines()]
        return out, pairs

    @staticmethod
    def expected(pairs):
        """(owner, type) -> items as the script recorded them."""
        records = {}
        for count, (owner, label) in enumerate(pairs):
            value = VALUES[count % len(VALUES)]
            records[owner, "pcgb"] = [
                ("pipe_dia", label, "DN", value, " mm", "-", "", ""),
                ("pipe_len", label, "", "L" + value, "", "", "", "")]
            records[owner, "bzjg"] = [(label, label, "", "", "", "", "", "")]
            records[owner, "xzgj"] = [("xfdh", "", "", value, "", "", "非实体性记录信息!", "")]
        return records

    def drawings(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            if not drawing.name.startswith("r12"):
                yield drawing

    def test_records_read_back_as_they_were_written(self):
        for drawing in self.drawings():
            with self.subTest(drawing=drawing.name):
                out, pairs = self.record_in(drawing)
                names = ("name", "handle", "prefix", "value", "suffix", "separator", "recordKind",
                         "extra")
                found = {(record["owner"], record["type"]):
                         [tuple(item[name] for name in names) for item in record["items"]]
                         for record in json.loads(self.call("records", out, "--json"))}
                self.assertEqual(found, self.expected(pairs))
                self.call("check", out)

    def test_an_independent_reader_finds_the_same_items(self):
        for drawing in self.drawings():
            with self.subTest(drawing=drawing.name):
                out, pairs = self.record_in(drawing)
                document = independent_reader.read(out)
                self.assertEqual(
                    len(independent_reader.complaints(document)),
                    len(independent_reader.complaints(independent_reader.read(drawing))))
                for (owner, kind), items in self.expected(pairs).items():
                    entity = document.entitydb[owner]
                    found = independent_reader.record_items(entity, kind)
                    self.assertEqual([tuple(map(independent_reader.plain_text, item))
                                      for item in found], items)

    def test_what_nobody_touched_keeps_its_bytes_and_its_place(self):
        for drawing in self.drawings():
            with self.subTest(drawing=drawing.name):
                out, pairs = self.record_in(drawing)
                before, after = in_order(drawing), in_order(out)
                known = {handle for handle, _ in before if handle}
                kept = [(handle, data) for handle, data in after
                        if handle is None or handle in known]
                owners = {owner.encode() for owner, _ in pairs}
                self.assertEqual(len(kept), len(before))
                for (old_handle, old), (new_handle, new) in zip(before, kept):
                    self.assertEqual(new_handle, old_handle)
                    if old_handle in owners:
                        continue
                    if b"$HANDSEED" in old:  # the header, whose next handle has moved on
                        old, new = (re.sub(rb"(\$HANDSEED(?:\x00\x05\x00|\s+5\s+))[0-9A-F]+", rb"\1", part)
                                    for part in (old, new))
                    self.assertEqual(new, old)

    def test_an_unchanged_drawing_is_saved_byte_for_byte(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing=drawing.name):
                out = self.folder / drawing.name
                self.call("run", drawing, "-e", "(ssget \"X\")", "-o", out)
                self.assertEqual(out.read_bytes(), drawing.read_bytes())

    def test_a_second_run_over_the_result_changes_nothing(self):
        for drawing in self.drawings():
            with self.subTest(drawing=drawing.name):
                out, _ = self.record_in(drawing)
                again = self.folder / ("again-" + drawing.name)
                self.call("run", out, self.script, "-o", again)
                self.assertEqual(again.read_bytes(), out.read_bytes())


if __name__ == "__main__":
    calling.main()
