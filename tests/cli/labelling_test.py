"""`pipenote label` and `pipenote update`: from a model to a labelled drawing that stays right."""

import json
import math
import pathlib

import ezdxf

import calling
import independent_reader
from calling import (DRAWINGS, NETWORKS, NOT_READ, NOT_WRITTEN, PROGRAM_FAILED, SAMPLE_NETWORKS,
                     SUCCESS, WRONG_USAGE)
from labelled import (LabellingTest, handles_of_labels, is_pipe, label_entities, objects,
                      recorded, texts_of, values_of)

WITHOUT_NETWORK = DRAWINGS / "r2013_ansi936_utf8.dxf"


class Label(LabellingTest):

    def test_every_pipe_and_node_of_the_sample_networks_shows_what_is_recorded(self):
        for sample in SAMPLE_NETWORKS:
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


class Update(LabellingTest):

    def setUp(self):
        super().setUp()
        self.plan = self.labelled()
        self.document = self.labelled_document()  # not to be changed

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
        touched = handles_of_labels(self.document, owners)
        rows = self.findings(self.plan, "--in-place")
        self.assertEqual({row["owner"] for row in rows}, set(owners))
        for row in rows:
            if row["owner"] == well:
                self.assertEqual((row["reason"], row["action"]), ("moved", "redrawn"))
            else:
                self.assertEqual((row["item"], row["now"], row["action"]),
                                 ("pipe_dia", "DN975", "updated"))
        document, after = self.read(self.plan), objects(self.plan)
        touched |= handles_of_labels(document, owners)
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
        for sample in SAMPLE_NETWORKS:
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
        document = self.read(self.plan)
        document.modelspace().delete_entity(document.entitydb[pipe])
        document.saveas(self.plan)
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
        for sample in SAMPLE_NETWORKS[:2]:
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


if __name__ == "__main__":
    calling.main()
