"""`pipenote label` and `pipenote update`: from a model to a labelled drawing that stays right."""

import json
import math
import os
import pathlib
import pty
import subprocess
import sys
import tempfile
import unittest

import ezdxf

import independent_reader

PROGRAM = ""
FIXTURES = pathlib.Path(__file__).resolve().parents[1] / "fixtures"
NETWORKS = FIXTURES / "networks"
SAMPLES = ("Net1.inp", "Net3.inp", "ky4.inp", "sewer_state_plane.inp", "sewer_user2.inp")
WITHOUT_NETWORK = FIXTURES / "dxf" / "r2013_ansi936_utf8.dxf"
OWNER_LINK = "PIPENOTE_LABEL"
SUCCESS, PROGRAM_FAILED, WRONG_USAGE, NOT_READ, NOT_WRITTEN = range(5)

EDITING = """
(defun with-value (data key value)
  (cond ((null data) nil)
        ((equal (car data) (cons 1000 key)) (cons (car data) (cons value (cddr data))))
        (T (cons (car data) (with-value (cdr data) key value)))))
(defun set-data (handle key value / entity data)
  (setq entity (entget (handent handle) '("PIPENOTE"))
        data (cadr (assoc -3 entity)))
  (entmod (subst (list -3 (cons (car data) (with-value (cdr data) key value)))
                 (assoc -3 entity) entity)))
(defun set-group (handle group value / entity)
  (setq entity (entget (handent handle)))
  (entmod (subst (cons group value) (assoc group entity) entity)))
"""


def values_of(entity):
    """What the entity's data say of a pipe or node; empty for others."""
    if not entity.has_xdata("PIPENOTE"):
        return {}
    values = [tag.value for tag in entity.get_xdata("PIPENOTE") if tag.code != 1001]
    return dict(zip(values[::2], values[1::2]))


def length_of(entity):
    if entity.dxftype() == "LINE":
        points = [entity.dxf.start, entity.dxf.end]
    else:
        points = list(entity.get_points("xy"))
    return sum(math.dist(tuple(a)[:2], tuple(b)[:2]) for a, b in zip(points, points[1:]))


def is_pipe(values):
    return values.get("kind", "").endswith("-pipe")


def label_entities(document):
    """Owner's handle -> the entities that name it as their owner."""
    labels = {}
    for entity in document.modelspace():
        if entity.has_xdata(OWNER_LINK):
            for tag in entity.get_xdata(OWNER_LINK):
                if tag.code == 1005:
                    labels.setdefault(tag.value, []).append(entity)
    return labels


def shown(entity):
    return independent_reader.plain_text(entity.dxf.text)


def texts_of(document):
    """Owner's handle -> the texts of its labels."""
    return {owner: [shown(entity) for entity in entities if entity.dxftype() == "TEXT"]
            for owner, entities in label_entities(document).items()}


def recorded(owner, annotation_type):
    """The text that the record's pieces make, or None."""
    items = independent_reader.record_items(owner, annotation_type)
    if items is None:
        return None
    return "".join(prefix + value + suffix + separator
                   for name, handle, prefix, value, suffix, separator, kind, _ in items
                   if handle and value != name and not kind)


def handles_of_label(document, owner):
    """The owner's labels, its dictionary and the records in it."""
    entity = document.entitydb[owner]
    handles = {entity.dxf.handle for entity in label_entities(document).get(owner, [])}
    if entity.has_extension_dict:
        dictionary = entity.get_extension_dict().dictionary
        handles.add(dictionary.dxf.handle)
        handles.update(record.dxf.handle for _, record in dictionary.items())
    return handles


def objects(path):
    """Handle -> the bytes of every entity and object of the file, its header left out."""
    lines = path.read_bytes().splitlines()
    found, start, handle = {}, None, None
    for at in range(0, len(lines) - 1, 2):
        group = lines[at].strip()
        if group == b"0":
            if handle:
                found[handle] = lines[start:at]
            start, handle = (None if lines[at + 1] == b"SECTION" else at), None
        elif group in (b"5", b"105") and start is not None and handle is None:
            handle = lines[at + 1].strip().decode()
    return found


class Labelling(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = dict(os.environ)
        (self.folder / "editing.lsp").write_text(EDITING)

    def call(self, *arguments, status=SUCCESS):
        self.result = subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True,
                                     text=True, timeout=120, env=self.environment)
        self.assertEqual(self.result.returncode, status, self.result.stdout + self.result.stderr)
        return self.result.stdout

    def imported(self, sample="Net3.inp"):
        path = self.folder / "plain.dxf"
        subprocess.run([PROGRAM, "import", str(NETWORKS / sample), "-o", str(path)],
                       capture_output=True, timeout=120)
        return path

    def labelled(self, sample="Net3.inp"):
        path = self.folder / "plan.dxf"
        self.call("label", self.imported(sample), "-o", path)
        return path

    def read(self, path):
        document = independent_reader.read(path)
        self.assertEqual(independent_reader.complaints(document), [])
        return document

    def edit(self, path, *calls):
        expressions = [part for call in calls for part in ("-e", call)]
        self.call("run", path, self.folder / "editing.lsp", *expressions, "--in-place")
        (self.folder / (path.name + ".bak")).unlink()

    def pipes(self, document):
        return {entity.dxf.handle: values_of(entity) for entity in document.modelspace()
                if is_pipe(values_of(entity))}

    def assert_one_line(self, *parts):
        self.assertEqual(self.result.stderr.count("\n"), 1, self.result.stderr)
        self.assertTrue(self.result.stderr.startswith("pipenote: "), self.result.stderr)
        for part in parts:
            self.assertIn(part, self.result.stderr)


class Label(Labelling):

    def test_every_pipe_and_node_of_the_sample_networks_shows_what_is_recorded(self):
        for sample in SAMPLES:
            with self.subTest(sample):
                report = json.loads(self.call("label", self.imported(sample), "--json", "-o",
                                              self.folder / "plan.dxf"))
                document = self.read(self.folder / "plan.dxf")
                texts = texts_of(document)
                drawn = 0
                for entity in document.modelspace():
                    values = values_of(entity)
                    if not values:
                        continue
                    text = recorded(entity, "xzgj" if is_pipe(values) else "bjbh")
                    if text is None:
                        continue
                    drawn += 1
                    self.assertEqual("".join(texts[entity.dxf.handle]), text)
                    if "number" in values:
                        self.assertIn(values["number"], text)
                self.assertEqual(report["drawn"], drawn)
                elements = sum(1 for entity in document.modelspace() if values_of(entity))
                self.assertEqual(drawn + report["skipped"], elements)
                self.assertEqual(len(texts), drawn)
                self.call("check", self.folder / "plan.dxf")

    def test_labels_of_pipes_are_what_the_formatter_prints(self):
        for sample in ("Net3.inp", "sewer_state_plane.inp"):
            with self.subTest(sample):
                document = self.read(self.labelled(sample))
                texts = texts_of(document)
                for handle, values in list(self.pipes(document).items())[::20]:
                    length = values.get("length") or length_of(document.entitydb[handle])
                    known = ["--diameter", values["diameter"], "--length", length]
                    items = "管径,管长"
                    if "start_invert" in values:
                        slope = (values["start_invert"] - values["end_invert"]) / length
                        known += [f"--slope={slope!r}"]
                        items += ",坡度"
                    printed = self.call("format", "composite", *known, "--items", items)
                    self.assertEqual("".join(texts[handle]), printed.strip())

    def test_a_second_run_changes_nothing(self):
        plan = self.labelled()
        before, date = plan.read_bytes(), plan.stat().st_mtime_ns
        report = json.loads(self.call("label", plan, "--in-place", "--json"))
        self.assertEqual((report["drawn"], report["written"]), (0, False))
        self.assertGreater(report["updated"], 200)
        self.assertEqual((plan.read_bytes(), plan.stat().st_mtime_ns), (before, date))
        self.call("label", plan, "-o", self.folder / "again.dxf")
        self.assertEqual((self.folder / "again.dxf").read_bytes(), before)

    def test_types_are_those_asked_for(self):
        out = self.folder / "out.dxf"
        self.call("label", self.imported("sewer_user2.inp"), "--types", "bzjg,XDBG_ST", "-o", out)
        types = {key for entity in self.read(out).modelspace() if values_of(entity) and
                 entity.has_extension_dict for key, _ in entity.get_extension_dict().dictionary.items()}
        self.assertEqual(types, {"bzjg", "xdbg_st"})

    def test_the_angle_says_from_which_side_labels_are_read(self):
        plain, out = self.imported(), self.folder / "out.dxf"
        turns = []
        for angle in ("0", "180"):
            self.call("label", plain, "--types", "xzgj", "--angle", angle, "-o", out)
            document = self.read(out)
            turns.append([entity.dxf.rotation for owner in self.pipes(document)
                          for entity in label_entities(document).get(owner, [])
                          if entity.dxftype() == "TEXT"])
        self.assertGreater(len(turns[0]), 100)
        for one, other in zip(*turns):
            self.assertAlmostEqual(math.cos(math.radians(one - other)), -1.0, places=6)

    def test_what_cannot_be_drawn_here_is_wrong_usage(self):
        plain, out = self.imported("Net1.inp"), self.folder / "out.dxf"
        self.call("label", plain, "--types", 'no"ne', "-o", out, status=WRONG_USAGE)
        self.assert_one_line('no"ne')
        self.call("label", plain, status=WRONG_USAGE)
        self.assert_one_line("-o OUT")
        self.call("label", plain, "-o", self.folder / "out.dwg", status=WRONG_USAGE)
        self.call("label", plain, "--angle", "up", "-o", out, status=WRONG_USAGE)
        self.assertFalse(out.exists())

    def test_a_drawing_without_pipes_and_nodes_is_told_and_not_written(self):
        out = self.folder / "out.dxf"
        self.call("label", WITHOUT_NETWORK, "-o", out, status=PROGRAM_FAILED)
        self.assert_one_line(WITHOUT_NETWORK.name, "no pipes and no nodes")
        self.assertFalse(out.exists())

    def test_a_drawing_in_which_nothing_can_be_labelled_is_told_and_not_written(self):
        early, out = self.folder / "early.dxf", self.folder / "out.dxf"
        document = ezdxf.new("R12")
        document.appids.new("PIPENOTE")
        pipe = document.modelspace().add_line((0, 0), (50, 0))
        pipe.set_xdata("PIPENOTE", [(1000, "kind"), (1000, "storm-pipe"),
                                    (1000, "diameter"), (1040, 300.0)])
        document.saveas(early)
        self.call("label", early, "-o", out, status=PROGRAM_FAILED)
        lines = self.result.stderr.splitlines()
        self.assertEqual(len(lines), 2, lines)
        self.assertRegex(lines[0], f"early.dxf: .*{pipe.dxf.handle}.*cannot be labelled, "
                                   "the drawing can hold no records; save it in a later release")
        self.assertIn("no pipe and no node could be labelled", lines[1])
        self.assertFalse(out.exists())

    def test_pipes_without_wells_are_labelled(self):
        plain, out = self.imported("Net1.inp"), self.folder / "out.dxf"
        document = independent_reader.read(plain)
        for entity in list(document.modelspace()):
            if values_of(entity) and not is_pipe(values_of(entity)):
                document.modelspace().delete_entity(entity)
        document.saveas(plain)
        report = json.loads(self.call("label", plain, "-o", out, "--json"))
        self.assertEqual(report["drawn"], len(self.pipes(self.read(out))))

    def test_what_gets_no_label_is_named_by_its_handle(self):
        plain = self.imported("Net1.inp")
        document = independent_reader.read(plain)
        handle = next(iter(self.pipes(document)))
        pipe = document.entitydb[handle]
        pipe.dxf.end = pipe.dxf.start
        pipe.set_xdata("PIPENOTE", [(1000, "kind"), (1000, "water-pipe")])
        document.saveas(plain)
        report = json.loads(self.call("label", plain, "-o", self.folder / "out.dxf", "--json"))
        self.assertEqual(report["skipped"], 1)
        self.assertEqual(len(report["told"]), 1)
        self.assertIn(handle, report["told"][0])

    def test_a_drawing_that_cannot_be_read_or_written_is_told(self):
        self.call("label", self.folder / "none.dxf", "-o", self.folder / "o.dxf", status=NOT_READ)
        self.assert_one_line("none.dxf")
        self.call("label", self.imported("Net1.inp"), "-o", self.folder / "none" / "o.dxf",
                  status=NOT_WRITTEN)
        self.assert_one_line("o.dxf")


class Update(Labelling):

    def setUp(self):
        super().setUp()
        self.plan = self.labelled()
        self.document = self.read(self.plan)

    def findings(self, *options, status=SUCCESS):
        return json.loads(self.call("update", *options, "--json", status=status))[0]["findings"]

    def node(self):
        return next(entity for entity in self.document.modelspace()
                    if "number" in values_of(entity) and recorded(entity, "bjbh"))

    def changed(self):
        """Some pipes with a diameter of their own, and a well that has moved."""
        pipes, well = list(self.pipes(self.document))[::23], self.node()
        x, y, _ = well.dxf.insert
        self.edit(self.plan, *[f'(set-data "{pipe}" "diameter" (cons 1040 975.0))' for pipe in pipes],
                  f'(set-group "{well.dxf.handle}" 10 (list {x + 40.0} {y + 30.0} 0.0))')
        return pipes, well.dxf.handle

    def test_only_the_labels_of_what_has_changed_are_written(self):
        pipes, well = self.changed()
        before, owners = objects(self.plan), [*pipes, well]
        touched = set().union(*(handles_of_label(self.document, owner) for owner in owners))
        rows = self.findings(self.plan, "--in-place")
        self.assertEqual({row["owner"] for row in rows}, set(owners))
        for row in rows:
            if row["owner"] == well:
                self.assertEqual((row["reason"], row["action"]), ("moved", "redrawn"))
            else:
                self.assertEqual((row["item"], row["now"], row["action"]),
                                 ("pipe_dia", "DN975", "updated"))
        document, after = self.read(self.plan), objects(self.plan)
        touched |= set().union(*(handles_of_label(document, owner) for owner in owners))
        touched.add(well)  # may name its dictionary
        different = {handle for handle in before.keys() | after.keys()
                     if before.get(handle) != after.get(handle)}
        self.assertLessEqual(different, touched)
        texts = texts_of(document)
        for handle in self.pipes(document):
            self.assertEqual("DN975" in "".join(texts[handle]), handle in pipes)
        was, now = (label_entities(d)[well][0].dxf.insert for d in (self.document, document))
        self.assertLess(abs(math.dist(tuple(was), tuple(now)) - 50.0), 25.0)

    def test_every_sample_network_is_in_order_after_edits_and_one_update(self):
        for sample in SAMPLES:
            with self.subTest(sample):
                self.plan = self.labelled(sample)
                self.document = self.read(self.plan)
                self.changed()
                self.call("update", self.plan, "--dry-run", status=PROGRAM_FAILED)
                self.call("update", self.plan, "--in-place")
                self.assertIn("nothing is stale", self.call("update", self.plan, "--dry-run"))
                self.read(self.plan)

    def test_a_second_update_changes_no_byte(self):
        self.changed()
        self.call("update", self.plan, "--in-place")
        (self.folder / "plan.dxf.bak").unlink()
        before, date = self.plan.read_bytes(), self.plan.stat().st_mtime_ns
        self.assertEqual(self.call("update", self.plan, "--in-place"),
                         f"{self.plan}: nothing is stale\n")
        self.assertEqual((self.plan.read_bytes(), self.plan.stat().st_mtime_ns), (before, date))
        self.assertFalse((self.folder / "plan.dxf.bak").exists())
        self.call("update", self.plan, "-o", self.folder / "again.dxf")
        self.assertEqual((self.folder / "again.dxf").read_bytes(), before)

    def test_a_dry_run_reports_and_writes_nothing(self):
        pipes, well = self.changed()
        before, date = self.plan.read_bytes(), self.plan.stat().st_mtime_ns
        for options in ((), ("--in-place",), ("-o", self.folder / "none.dxf")):
            out = self.call("update", self.plan, "--dry-run", *options, status=PROGRAM_FAILED)
            self.assertRegex(out, rf'{pipes[0]} xzgj pipe_dia: data changed, "DN\d+" -> "DN975": stale')
            self.assertRegex(out, rf"{well} bjbh: moved, .* -> .*: stale")
            self.assertIn(f"{len(pipes) + 1} labels are not in order", out)
        self.assertEqual((self.plan.read_bytes(), self.plan.stat().st_mtime_ns), (before, date))
        self.assertFalse((self.folder / "none.dxf").exists())

    def test_a_label_edited_by_hand_is_kept_unless_told_otherwise(self):
        pipe = next(iter(self.pipes(self.document)))
        text = next(entity for entity in label_entities(self.document)[pipe]
                    if entity.dxftype() == "TEXT")
        self.edit(self.plan, f'(set-group "{text.dxf.handle}" 1 "as built")',
                  f'(set-data "{pipe}" "diameter" (cons 1040 975.0))')
        before = self.plan.read_bytes()
        rows = self.findings(self.plan, "--in-place")
        self.assertEqual({(row["owner"], row["action"]) for row in rows}, {(pipe, "kept")})
        self.assertIn(("as built", "edited by hand"), {(row["was"], row["reason"]) for row in rows})
        self.assertEqual(self.plan.read_bytes(), before)
        self.call("update", self.plan, "--in-place", "--overwrite-edited")
        document = self.read(self.plan)
        self.assertTrue(texts_of(document)[pipe][0].startswith("DN975"))
        self.assertEqual(texts_of(document)[pipe][0], recorded(document.entitydb[pipe], "xzgj"))

    def test_owners_named_are_the_only_ones(self):
        pipes, well = self.changed()
        rows = self.findings(self.plan, "--in-place", "--owner", f"{pipes[1]},{well}")
        self.assertEqual({row["owner"] for row in rows}, {pipes[1], well})
        rest = self.findings(self.plan, "--dry-run", status=PROGRAM_FAILED)
        self.assertEqual({row["owner"] for row in rest}, set(pipes) - {pipes[1]})
        before = self.plan.read_bytes()
        for wrong in ("FFFFFF", "pipe", '") (quit'):
            self.call("update", self.plan, "--in-place", "--owner", wrong, status=PROGRAM_FAILED)
            self.assert_one_line(wrong)
        self.assertEqual(self.plan.read_bytes(), before)

    def test_a_label_on_a_locked_layer_is_named_and_left_whole(self):
        pipe = next(iter(self.pipes(self.document)))
        layer = label_entities(self.document)[pipe][0].dxf.layer
        self.edit(self.plan, f'(set-data "{pipe}" "diameter" (cons 1040 975.0))',
                  f'(command "LAYER" "LOCK" "{layer}" "")')
        before = self.plan.read_bytes()
        out = self.call("update", self.plan, "--in-place", status=PROGRAM_FAILED)
        self.assertIn(f"{pipe} xzgj pipe_dia: data changed", out)
        self.assertIn("failed, its layer is locked", out)
        self.assertIn("0 brought up to date, 0 kept, 1 failed", out)
        self.assert_one_line(pipe, "its layer is locked")
        self.assertEqual(self.plan.read_bytes(), before)

    def test_labels_on_frozen_layers_are_updated(self):
        pipe = next(iter(self.pipes(self.document)))
        layer = label_entities(self.document)[pipe][0].dxf.layer
        self.edit(self.plan, f'(set-data "{pipe}" "diameter" (cons 1040 975.0))',
                  f'(command "LAYER" "FREEZE" "{layer}" "")')
        self.call("update", self.plan, "--in-place")
        document = self.read(self.plan)
        self.assertTrue(document.layers.get(layer).is_frozen())
        self.assertTrue(texts_of(document)[pipe][0].startswith("DN975"))

    def test_a_label_without_owner_is_named_and_kept(self):
        pipe = next(iter(self.pipes(self.document)))
        label = label_entities(self.document)[pipe][0].dxf.handle
        self.document.modelspace().delete_entity(self.document.entitydb[pipe])
        self.document.saveas(self.plan)
        before = self.plan.read_bytes()
        out = self.call("update", self.plan, "--in-place")
        self.assertIn(f"{label}: owner gone (its owner {pipe} is gone): kept", out)
        self.assertEqual(self.plan.read_bytes(), before)

    def test_several_drawings_are_updated_and_the_bad_ones_told(self):
        self.changed()
        other, bad = self.folder / "other.dxf", self.folder / "bad.dxf"
        other.write_bytes(self.plan.read_bytes())
        bad.write_bytes(self.plan.read_bytes()[:5000])
        out = self.call("update", self.plan, bad, other, "--in-place", status=NOT_READ)
        self.assert_one_line("bad.dxf")
        for path in (self.plan, other):
            self.assertRegex(out, f"{path}: [0-9]+ brought up to date, 0 kept, 0 failed")
        self.assertEqual(self.plan.read_bytes(), other.read_bytes())
        self.assertEqual(bad.stat().st_size, 5000)

    def test_a_batch_labels_and_updates(self):
        names = []
        for sample in SAMPLES[:2]:
            names.append(self.folder / (pathlib.Path(sample).stem + ".dxf"))
            names[-1].write_bytes(self.imported(sample).read_bytes())
        self.assertIn("2 of 2 done", self.call("batch", "label", *names, "--in-place"))
        self.assertEqual(self.call("batch", "update", *names, "--", "--dry-run")
                         .count("nothing is stale"), 2)
        self.assertIn("2 of 2 done", self.call("batch", "update", *names, "--out-dir",
                                               self.folder / "out"))
        for path in names:
            self.assertEqual((self.folder / "out" / path.name).read_bytes(), path.read_bytes())

    def test_wrong_usage_is_told(self):
        self.call("update", self.plan, status=WRONG_USAGE)
        self.assert_one_line("--in-place", "--dry-run")
        self.call("update", self.plan, self.plan, "-o", self.folder / "o.dxf", status=WRONG_USAGE)
        self.assert_one_line("--in-place")
        self.call("update", self.plan, "-o", self.folder / "o.dwg", status=WRONG_USAGE)
        self.call("update", self.plan, "--in-place", "-o", self.folder / "o.dxf", status=WRONG_USAGE)
        self.assertFalse((self.folder / "o.dxf").exists())

    def test_a_drawing_without_labels_has_nothing_stale(self):
        out = self.folder / "out.dxf"
        self.call("update", WITHOUT_NETWORK, "-o", out)
        self.assertEqual(out.read_bytes(), WITHOUT_NETWORK.read_bytes())


class SlowDrawings(Labelling):
    """A converter of our own stands in for a slow one."""

    def setUp(self):
        super().setUp()
        plain = self.labelled("Net1.inp")
        self.drawing = self.folder / "plan.dwg"
        self.drawing.write_bytes(b"AC1027 not really")
        programs = self.folder / "bin"
        programs.mkdir()
        self.environment["PATH"] = str(programs)
        converter = programs / "dwg2dxf"
        converter.write_text(f'#!/bin/sh\n/bin/sleep 1.3\n/bin/cp "{plain}" "$3"\n')
        converter.chmod(0o755)

    def at_terminal(self, *arguments):
        child, terminal = pty.fork()
        if child == 0:
            os.execve(PROGRAM, [PROGRAM, *map(str, arguments)], self.environment)
        output = b""
        while True:
            try:
                piece = os.read(terminal, 4096)
            except OSError:
                piece = b""
            if not piece:
                break
            output += piece
        os.close(terminal)
        _, status = os.waitpid(child, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), SUCCESS)
        return output.decode()

    def test_a_terminal_shows_what_takes_longer_than_a_second(self):
        output = self.at_terminal("label", self.drawing, "-o", self.folder / "out.dxf")
        erase = "\r\x1b[K"
        self.assertIn(erase + "plan.dwg: reading, 1 s", output)
        self.assertNotIn("reading, 0 s", output)
        self.assertRegex(output.split(erase)[-1], r"^labels drawn")

    def test_the_bar_is_that_of_the_drawings(self):
        output = self.at_terminal("update", self.drawing, self.drawing, "--dry-run")
        self.assertIn("[----------] 1/2 plan.dwg: reading, 1 s", output)
        self.assertIn("[#####-----] 2/2 plan.dwg: reading, ", output)

    def test_what_is_quick_shows_nothing(self):
        output = self.at_terminal("update", self.folder / "plan.dxf", "--dry-run")
        self.assertNotIn("\r\x1b", output)

    def test_a_pipe_is_shown_nothing(self):
        self.call("label", self.drawing, "-o", self.folder / "out.dxf")
        self.assertEqual(self.result.stderr, "")

    def test_no_dwg_file_is_written(self):
        before = self.drawing.read_bytes()
        for command in ("label", "update"):
            self.call(command, self.drawing, "--in-place", status=WRONG_USAGE)
            self.assert_one_line("plan.dwg")
        self.assertEqual(self.drawing.read_bytes(), before)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
