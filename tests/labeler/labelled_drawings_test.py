"""From a model to a labelled drawing that stays right, with an independent reader looking on."""


import calling
import independent_reader
from calling import NETWORKS, SAMPLE_NETWORKS

OWNER_LINK = "PIPENOTE_LABEL"


def data_of(entity, application):
    """The extended data behind the application's name."""
    if not entity.has_xdata(application):
        return []
    return [(tag.code, tag.value) for tag in entity.get_xdata(application) if tag.code != 1001]


def pipes_of(document):
    found = []
    for entity in document.modelspace():
        data = data_of(entity, "PIPENOTE")
        if data and data[data.index((1000, "kind")) + 1][1].endswith("-pipe"):
            found.append(entity)
    return found


def labels_of(document):
    """Owner's handle -> texts of the labels that name it as their owner."""
    labels = {}
    for text in document.modelspace().query("TEXT"):
        for _, owner in data_of(text, OWNER_LINK):
            labels.setdefault(owner, []).append(text.dxf.text)
    return labels


def set_diameter(pipe, diameter):
    tags = data_of(pipe, "PIPENOTE")
    at = tags.index((1000, "diameter")) + 1
    tags[at] = (1040, diameter)
    pipe.set_xdata("PIPENOTE", tags)


class LabelledDrawings(calling.ProgramTest):

    def run_lisp(self, program, drawing, output):
        return self.call("run", "--load", "labeler.arx", "-e", program, drawing, "-o", output)

    def labelled(self, sample):
        plain, drawing = self.folder / "plain.dxf", self.folder / "labelled.dxf"
        self.call("import", NETWORKS / sample, "-o", plain, status=None)  # 1: lines not used
        self.run_lisp("(labelnetwork)", plain, drawing)
        return drawing

    def test_labelled_networks_pass_the_audit_and_every_label_names_its_owner(self):
        for sample in SAMPLE_NETWORKS:
            with self.subTest(sample):
                document = independent_reader.read(self.labelled(sample))
                self.assertEqual(independent_reader.complaints(document), [])
                labels = labels_of(document)
                for pipe in pipes_of(document):
                    items = independent_reader.record_items(pipe, "xzgj")
                    if items is None:
                        continue  # a pipe without length in plan
                    pieces = "".join(prefix + value + suffix + separator
                                     for name, handle, prefix, value, suffix, separator, kind, _ in items
                                     if handle and value != name and not kind)
                    shown = [independent_reader.plain_text(text) for text in labels[pipe.dxf.handle]]
                    self.assertEqual("".join(shown), pieces)

    def test_labels_follow_data_that_another_program_changed(self):
        drawing, updated = self.labelled("Net3.inp"), self.folder / "updated.dxf"
        document = independent_reader.read(drawing)
        changed = pipes_of(document)[::7]
        for pipe in changed:
            set_diameter(pipe, 975.0)
        document.saveas(drawing)
        self.run_lisp("(labelupdate)", drawing, updated)
        result = independent_reader.read(updated)
        self.assertEqual(independent_reader.complaints(result), [])
        labels, handles = labels_of(result), {pipe.dxf.handle for pipe in changed}
        for pipe in pipes_of(result):
            for text in labels[pipe.dxf.handle]:
                self.assertEqual("DN975" in text, pipe.dxf.handle in handles, text)

    def test_a_second_update_writes_the_same_bytes(self):
        drawing, again = self.labelled("sewer_user2.inp"), self.folder / "again.dxf"
        self.assertEqual(self.run_lisp("(labelupdate)", drawing, again).strip(), "nil")
        self.assertEqual(again.read_bytes(), drawing.read_bytes())


if __name__ == "__main__":
    calling.main()
