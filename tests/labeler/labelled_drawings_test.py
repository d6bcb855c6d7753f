"""What LISP programs do with labels, with an independent reader looking on."""

import calling
import independent_reader
from calling import NETWORKS, SAMPLE_NETWORKS
from labelled import is_pipe, recorded, texts_of, values_of


def pipes_of(document):
    return [entity for entity in document.modelspace() if is_pipe(values_of(entity))]


def set_diameter(pipe, diameter):
    tags = [(tag.code, tag.value) for tag in pipe.get_xdata("PIPENOTE") if tag.code != 1001]
    tags[tags.index((1000, "diameter")) + 1] = (1040, diameter)
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
                texts, seen = texts_of(document), 0
                for pipe in pipes_of(document):
                    text = recorded(pipe, "xzgj")
                    if text is None:
                        continue  # a pipe without length in plan
                    seen += 1
                    self.assertEqual("".join(texts[pipe.dxf.handle]), text)
                self.assertGreater(seen, 10)

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
        texts, handles = texts_of(result), {pipe.dxf.handle for pipe in changed}
        for pipe in pipes_of(result):
            for text in texts[pipe.dxf.handle]:
                self.assertEqual("DN975" in text, pipe.dxf.handle in handles, text)

    def test_a_second_update_writes_the_same_bytes(self):
        drawing, again = self.labelled("sewer_user2.inp"), self.folder / "again.dxf"
        self.assertEqual(self.run_lisp("(labelupdate)", drawing, again).strip(), "nil")
        self.assertEqual(again.read_bytes(), drawing.read_bytes())


if __name__ == "__main__":
    calling.main()
