"""`pipenote render` from outside: pictures that other programs read, what is told, bad input."""

import subprocess
import xml.etree.ElementTree as tree
import zlib

import ezdxf

import calling
from calling import DRAWINGS

SVG = "{http://www.w3.org/2000/svg}"


def png_size(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    return int.from_bytes(data[16:20], "big"), int.from_bytes(data[20:24], "big")


def png_rows(data):
    """Rows of bytes, and how many bytes a pixel has. For 8-bit pictures of RGB or RGBA."""
    width, height = png_size(data)
    size = {2: 3, 6: 4}[data[25]]
    packed, at = b"", 8
    while at < len(data):
        length = int.from_bytes(data[at:at + 4], "big")
        if data[at + 4:at + 8] == b"IDAT":
            packed += data[at + 8:at + 8 + length]
        at += length + 12
    raw, rows, above = zlib.decompress(packed), [], bytes(width * size)
    for y in range(height):
        start = y * (width * size + 1)
        kind, row = raw[start], bytearray(raw[start + 1:start + 1 + width * size])
        if kind:
            for i in range(len(row)):
                left = row[i - size] if i >= size else 0
                corner = above[i - size] if i >= size else 0
                guess = (0, left, above[i], (left + above[i]) // 2,
                         min((left, above[i], corner),
                             key=lambda value: abs(left + above[i] - corner - value)))[kind]
                row[i] = (row[i] + guess) & 255
        rows.append(row)
        above = row
    return rows, size


def darkness(data, cell=20):
    """Of each cell of a picture, 0 to 255."""
    rows, size = png_rows(data)
    cells = []
    for top in range(0, len(rows), cell):
        for left in range(0, len(rows[0]), cell * size):
            parts = [row[left:left + cell * size] for row in rows[top:top + cell]]
            light = sum(sum(part) - (sum(part[3::4]) if size == 4 else 0) for part in parts)
            cells.append(255 - light / (3 * cell * cell))
    return cells


class Render(calling.ProgramTest):

    def drawing(self, draw, name="plan.dxf"):
        """A drawing that `draw` fills: it gets the model space."""
        document = ezdxf.new("R2010", setup=True)
        document.layers.new("PIPE-1", dxfattribs={"color": 1})
        document.layers.new("PIPE-2", dxfattribs={"color": 5})
        document.layers.new("TEXT", dxfattribs={"color": 3})
        draw(document.modelspace())
        path = self.folder / name
        document.saveas(path)
        return path

    def plan(self):
        def draw(space):
            space.add_line((0, 0), (100, 0), dxfattribs={"layer": "PIPE-1"})
            space.add_line((0, 0), (0, 50), dxfattribs={"layer": "PIPE-2"})
            space.add_text("DN300 管道", dxfattribs={"layer": "TEXT", "height": 5, "insert": (10, 10)})
        return self.drawing(draw)

    def render(self, drawing, output, *options, status=0):
        self.call("render", drawing, "-o", self.folder / output, *options, status=status)
        return self.folder / output

    def svg(self, drawing, *options):
        return tree.parse(self.render(drawing, "out.svg", *options)).getroot()

    def strokes(self, root):
        """Colours of what is drawn, in order."""
        return [group.get("stroke") for group in root.iter(SVG + "g") if group.get("stroke")
                for _ in group.findall(SVG + "path")]

    def test_svg_is_read_by_another_program(self):
        picture = self.render(self.plan(), "plan.svg", "--size", "400x200")
        done = subprocess.run(["rsvg-convert", str(picture)], capture_output=True, check=True)
        self.assertEqual(png_size(done.stdout), (400, 200))

    def test_svg_says_what_its_texts_say(self):
        root = self.svg(self.plan())
        labels = [group.get("aria-label") for group in root.iter(SVG + "g")
                  if group.get("aria-label")]
        self.assertEqual(labels, ["DN300 管道"])

    def test_png_has_the_size_asked_for(self):
        self.assertEqual(png_size(self.render(self.plan(), "a.png", "--size", "320x240").read_bytes()),
                         (320, 240))

    def test_pdf_can_be_searched_and_drawn(self):
        picture = self.render(self.plan(), "plan.pdf", "--size", "800x400")
        text = subprocess.run(["pdftotext", str(picture), "-"], capture_output=True, text=True,
                              check=True).stdout
        self.assertIn("DN300", text)
        self.assertIn("管道", text)
        subprocess.run(["pdftoppm", "-r", "96", "-png", str(picture), str(self.folder / "page")],
                       check=True)
        page, = self.folder.glob("page*.png")
        self.assertEqual(png_size(page.read_bytes()), (800, 400))

    def test_pdf_holds_each_character_once_whatever_the_angle(self):
        def draw(space):
            for i in range(200):
                space.add_text("ABCABC", dxfattribs={"height": 5, "insert": (i, i), "rotation": i})
        picture = self.render(self.drawing(draw), "plan.pdf")
        fonts = subprocess.run(["pdffonts", str(picture)], capture_output=True, text=True,
                               check=True).stdout.splitlines()
        self.assertEqual(len(fonts), 3)

    def test_layers_are_chosen_by_wildcards_without_regard_to_case(self):
        plan = self.plan()
        self.assertEqual(self.strokes(self.svg(plan)), ["#f00", "#00f"])
        self.assertEqual(self.strokes(self.svg(plan, "--layer", "pipe-*")), ["#f00", "#00f"])
        self.assertEqual(self.strokes(self.svg(plan, "--layer", "*-1,x")), ["#f00"])
        self.assertEqual(self.strokes(self.svg(plan, "--layer", "TEXT", "--layer", "PIPE-2")), ["#00f"])

    def test_entities_cover_each_other_in_the_drawings_order(self):
        corners = [(0, 0), (10, 0), (0, 10), (10, 10)]
        for turned, colors in ((False, ["#f00", "#00f"]), (True, ["#00f", "#f00"])):
            def draw(space):
                below = space.add_solid(corners, dxfattribs={"layer": "PIPE-1"}).dxf.handle
                above = space.add_solid(corners, dxfattribs={"layer": "PIPE-2"}).dxf.handle
                if turned:
                    space.set_redraw_order([(below, above), (above, below)])
            root = self.svg(self.drawing(draw))
            self.assertEqual([group.get("fill") for group in root.iter(SVG + "g")
                              if group.find(SVG + "path") is not None], colors)

    def test_window_shows_a_part(self):
        self.assertEqual(self.strokes(self.svg(self.plan(), "--window", "20,10,40,-10")), ["#f00"])

    def test_highlight_marks_an_entity(self):
        handle = None

        def draw(space):
            nonlocal handle
            handle = space.add_line((0, 0), (100, 0), dxfattribs={"layer": "PIPE-1"}).dxf.handle
        drawing = self.drawing(draw)
        self.assertEqual(len(self.strokes(self.svg(drawing, "--highlight", handle))), 3)
        self.render(drawing, "out.svg", "--highlight", "FFFF", status=2)
        self.assertIn("no entity has the handle FFFF", self.result.stderr)
        self.render(drawing, "out.svg", "--highlight", "pipe", status=2)
        self.assertIn("is no handle", self.result.stderr)

    def test_report_counts_what_is_not_drawn(self):
        self.render(DRAWINGS / "r2013_sample.dxf", "out.svg")
        self.assertIn(": 3 TOLERANCE not drawn", self.result.stderr)
        self.assertRegex(self.result.stdout, r"out\.svg: 163 entities, \d+ x \d+ pixels\n")

    def test_a_layout_is_drawn_on_demand(self):
        self.render(DRAWINGS / "r2013_sample.dxf", "out.svg", "--layout", "layout1")
        self.render(DRAWINGS / "r2013_sample.dxf", "out.svg", "--layout", "nowhere", status=2)
        self.assertIn("there are: Model, Layout1", self.result.stderr)

    def test_every_sample_makes_every_format(self):
        for drawing in sorted(DRAWINGS.glob("*.dxf")):
            with self.subTest(drawing.name):
                tree.parse(self.render(drawing, "out.svg"))
                png_size(self.render(drawing, "out.png").read_bytes())
                pdf = self.render(drawing, "out.pdf")
                subprocess.run(["pdfinfo", str(pdf)], check=True, capture_output=True)

    def test_pictures_are_the_same_every_time(self):
        for name in ("a.svg", "a.png", "a.pdf"):
            first = self.render(DRAWINGS / "r2018_sample.dxf", name).read_bytes()
            self.assertEqual(self.render(DRAWINGS / "r2018_sample.dxf", name).read_bytes(), first)

    def test_svg_and_png_and_pdf_show_the_same(self):
        drawing = DRAWINGS / "r2018_sample.dxf"
        direct = self.render(drawing, "a.png", "--size", "800x500").read_bytes()
        svg = self.render(drawing, "a.svg", "--size", "800x500")
        by_svg = subprocess.run(["rsvg-convert", str(svg)], capture_output=True, check=True).stdout
        pdf = self.render(drawing, "a.pdf", "--size", "800x500")
        by_pdf = subprocess.run(["pdftoppm", "-r", "96", "-png", "-singlefile", str(pdf)],
                                capture_output=True, check=True).stdout
        expected = darkness(direct)
        for name, other in (("SVG", by_svg), ("PDF", by_pdf)):
            wrong = sum(abs(a - b) > 25 for a, b in zip(expected, darkness(other), strict=True))
            self.assertLess(wrong, len(expected) * 0.01, name)

    def test_wrong_usage_is_told(self):
        plan = self.plan()
        for options, told in ((["--size", "0x5"], "WIDTHxHEIGHT"), (["--size", "5"], "WIDTHxHEIGHT"),
                              (["--size", "99999x5"], "WIDTHxHEIGHT"),
                              (["--window", "1,2,3"], "X1,Y1,X2,Y2"),
                              (["--window", "1,2,1,5"], "X1,Y1,X2,Y2"),
                              (["--window", "a,2,1,5"], "X1,Y1,X2,Y2")):
            self.render(plan, "out.svg", *options, status=2)
            self.assertIn(told, self.result.stderr)
        self.render(plan, "out.gif", status=2)
        self.assertIn(".svg, .png or .pdf", self.result.stderr)

    def test_what_cannot_be_read_or_written_leaves_nothing_behind(self):
        self.render(self.folder / "none.dxf", "out.svg", status=3)
        self.assertFalse((self.folder / "out.svg").exists())
        self.render(self.plan(), "no/such/folder.svg", status=4)
        old = self.folder / "old.svg"
        old.write_text("old")
        broken = self.folder / "broken.dxf"
        broken.write_text("no drawing")
        self.render(broken, "old.svg", status=3)
        self.assertEqual(old.read_text(), "old")

    def test_hostile_drawings_end_in_a_picture(self):
        def draw(space):
            block = space.doc.blocks.new("LOOP")
            block.add_line((0, 0), (1, 1))
            block.add_blockref("LOOP", (1, 0))
            space.add_blockref("LOOP", (0, 0))
            space.add_line((0, 0), (1e300, 5))
            space.add_text("x", dxfattribs={"height": 7.125})  # ezdxf writes no other than sound ones
            for i in range(20):
                space.add_line((i, 0), (i, 30))
            space.add_line((1e12, 0), (1e12, 1))
        drawing = self.drawing(draw)
        drawing.write_text(drawing.read_text().replace("7.125", "0.0"))
        self.render(drawing, "out.svg")
        for told in ("a block would contain itself", "coordinates that are no places",
                     "without height", "far away"):
            self.assertIn(told, self.result.stderr)


if __name__ == "__main__":
    calling.main()
