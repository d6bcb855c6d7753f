"""Labelled networks from the sample models, and what an independent reader finds in them."""

import math

import calling
import independent_reader
from calling import NETWORKS

OWNER_LINK = "PIPENOTE_LABEL"

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


def handles_of_labels(document, owners):
    """What the labels of these owners are made of: entities, dictionaries and the records in them."""
    labels, handles = label_entities(document), set()
    for owner in owners:
        entity = document.entitydb[owner]
        handles.update(part.dxf.handle for part in labels.get(owner, []))
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


class LabellingTest(calling.ProgramTest):

    made = {}  # sample and options -> the labelled drawing
    documents = {}  # the same -> as the reader has it

    def setUp(self):
        super().setUp()
        (self.folder / "editing.lsp").write_text(EDITING)

    def imported(self, model="Net3.inp"):
        path = self.folder / "plain.dxf"
        self.call("import", NETWORKS / model, "-o", path, status=None)  # 1: lines not used
        return path

    def labelled(self, sample="Net3.inp", *options):
        """A drawing of the test's own; each is made once."""
        path = self.folder / "plan.dxf"
        if (sample, options) not in self.made:
            self.call("label", self.imported(sample), "-o", path, *options)
            self.made[sample, options] = path.read_bytes()
        path.write_bytes(self.made[sample, options])
        return path

    def labelled_document(self, sample="Net3.inp", *options):
        """What the reader makes of the labelled drawing; shared, not to be changed."""
        if (sample, options) not in self.documents:
            self.documents[sample, options] = self.read(self.labelled(sample, *options))
        return self.documents[sample, options]

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
