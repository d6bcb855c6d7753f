"""Networks that are changed at random: one `pipenote update` puts every label in order, moves none that is
not concerned, and leaves alone what somebody has written by hand."""

import json
import random

import calling
from calling import PROGRAM_FAILED, SAMPLE_NETWORKS, SOURCE
from labelled import (LabellingTest, handles_of_labels, is_pipe, label_entities, length_of, objects,
                      recorded, texts_of, values_of)

SEED = 20
CHANGE_NETWORK = SOURCE / "examples" / "change-network.lsp"
BY_HAND = "as built"


def types_of(sample):
    """Wells of sewers show the pipes that meet them."""
    return ["--types", "xzgj,bzjg" if sample.startswith("sewer") else "xzgj,bjbh"]


class Network:
    """The labelled drawing before it is changed, and what is going to be changed in it."""

    def __init__(self, document, chosen):
        self.document = document
        self.values = {entity.dxf.handle: values_of(entity) for entity in document.modelspace()
                       if values_of(entity)}
        self.labels = label_entities(document)
        labelled = [handle for handle in self.values if handle in self.labels]
        pipes = [handle for handle in labelled if is_pipe(self.values[handle])]
        nodes = [handle for handle in labelled if not is_pipe(self.values[handle])]
        chosen.shuffle(pipes)
        chosen.shuffle(nodes)
        few = max(1, min(10, len(pipes) // 12))
        self.deleted, self.lettered, self.bared = (pipes[few * i:few * (i + 1)] for i in range(3))
        self.resized = [pipe for pipe in pipes[few * 3:] if "diameter" in self.values[pipe]][:few]
        self.moved = nodes[:few // 2 + 1]
        self.lettered += nodes[-1:]
        self.diameters = {pipe: float(chosen.choice((100, 150, 225, 450, 800))) for pipe in self.resized}
        self.chosen = chosen

    def texts(self, owner):
        return [entity.dxf.handle for entity in self.labels[owner] if entity.dxftype() == "TEXT"]

    def ends_of(self, pipes):
        return {self.values[pipe][end] for pipe in pipes for end in ("start_node", "end_node")
                if end in self.values[pipe]}

    def program(self):
        """What a LISP program does, a call each."""
        for pipe, diameter in self.diameters.items():
            yield f'(change-diameter "{self.values[pipe]["code"]}" {diameter})'
        for node in self.moved:
            x, y = (self.chosen.randint(-60, 60) for _ in "xy")
            yield f'(move-well "{self.values[node]["number"]}" {x}.5 {y}.5)'
        for pipe in self.deleted:
            yield f'(entdel (handent "{pipe}"))'
        for owner in self.bared:
            yield from (f'(entdel (handent "{entity.dxf.handle}"))' for entity in self.labels[owner])
        for owner in self.lettered:
            yield f'(set-group "{self.texts(owner)[0]}" 1 "{BY_HAND}")'


class RandomEdits(LabellingTest):

    def test_texts_are_what_the_formatter_prints(self):
        chosen = random.Random(SEED)
        for sample in SAMPLE_NETWORKS:
            document = self.labelled_document(sample, *types_of(sample))
            texts = texts_of(document)
            pipes = {handle: values for handle, values in self.pipes(document).items()
                     if recorded(document.entitydb[handle], "xzgj")}
            for handle in chosen.sample(sorted(pipes), 12):
                with self.subTest(sample, pipe=handle):
                    printed = self.formatted(pipes[handle], document.entitydb[handle])
                    self.assertEqual("".join(texts[handle]), printed)

    def formatted(self, values, pipe):
        length = values.get("length") or length_of(pipe)
        shown, items = ["--length", length, "--pipes", values.get("parallel", 1)], ["管长"]
        if "width" in values:
            shown += ["--rect", f"{values['width']}x{values['height']}"]
        if "diameter" in values:
            shown += ["--diameter", values["diameter"]]
        if "width" in values or "diameter" in values:
            items.insert(0, "管径")
        if "start_invert" in values and "end_invert" in values:
            shown += [f"--slope={(values['start_invert'] - values['end_invert']) / length!r}"]
            items.append("坡度")
        return self.call("format", "composite", *shown, "--items", ",".join(items)).strip()

    def test_one_update_puts_everything_in_order(self):
        for sample in SAMPLE_NETWORKS:
            with self.subTest(sample, seed=SEED):
                self.check_update_of(sample)

    def check_update_of(self, sample):
        plan = self.labelled(sample, *types_of(sample))
        network = Network(self.labelled_document(sample, *types_of(sample)), random.Random(SEED))
        told = self.edit(plan, network).split()
        changed = objects(plan)
        concerned = {*told, *network.deleted, *network.bared}
        concerned |= network.ends_of(handle for handle in concerned if
                                     is_pipe(network.values[handle]))

        rows = self.update(plan, "--in-place")
        self.assertEqual({row["action"] for row in rows} - {"updated", "redrawn", "followed"}, {"kept"})
        kept = [row for row in rows if row["action"] == "kept"]
        self.assertEqual({row["owner"] for row in kept if row["reason"] == "edited by hand"},
                         set(network.lettered))
        orphans = {entity.dxf.handle for pipe in network.deleted for entity in network.labels[pipe]}
        self.assertEqual({row["owner"] for row in kept if row["reason"] == "owner gone"}, orphans)

        updated = self.read(plan)
        after = objects(plan)
        different = {handle for handle in changed.keys() | after.keys()
                     if changed.get(handle) != after.get(handle)}
        self.assertLessEqual(different, concerned | handles_of_labels(network.document, concerned) |
                             handles_of_labels(updated, concerned - set(network.deleted)))
        self.check_labels(plan, network, updated)
        self.assertEqual(self.update(plan, "--dry-run", status=PROGRAM_FAILED),
                         [{**row, "action": "stale"} for row in kept])
        before = plan.read_bytes()
        self.assertEqual(self.update(plan, "--in-place"), kept)
        self.assertEqual(plan.read_bytes(), before)

        rows = self.update(plan, "--in-place", "--overwrite-edited")
        self.assertEqual({row["owner"] for row in rows if row["action"] == "updated"},
                         set(network.lettered))
        self.assertNotIn(BY_HAND, plan.read_text(encoding="utf-8"))

    def edit(self, plan, network):
        """The handles of pipes and wells that have other data or another place now."""
        program = self.folder / "edits.lsp"
        program.write_text("\n".join([*network.program(), "(princ)"]))
        told = self.call("run", plan, self.folder / "editing.lsp", CHANGE_NETWORK, program, "--in-place")
        return "\n".join(line for line in told.splitlines() if line in network.values)

    def update(self, plan, *options, **status):
        return json.loads(self.call("update", plan, *options, "--json", **status))[0]["findings"]

    def check_labels(self, plan, network, document):
        """Every label shows what is recorded, those of other diameters the new ones."""
        texts = texts_of(document)
        for owner in network.values.keys() - {*network.deleted, *network.bared, *network.lettered}:
            entity = document.entitydb[owner]
            for kind in ("xzgj", "bjbh"):
                if recorded(entity, kind):
                    self.assertEqual("".join(texts[owner]), recorded(entity, kind))
        for pipe, diameter in network.diameters.items():
            self.assertIn(f"DN{diameter:.0f}", "".join(texts[pipe]))
        for owner in network.lettered:
            self.assertIn(BY_HAND, texts[owner])
        self.call("check", plan, status=PROGRAM_FAILED)  # the records of erased labels
        for line in self.result.stdout.splitlines()[:-1]:
            self.assertIn(line.split()[0], network.bared)


if __name__ == "__main__":
    calling.main()
