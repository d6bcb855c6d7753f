"""pipenote network: what it finds in a drawing that holds every kind and every fault."""

import json

import calling
from calling import DRAWINGS, NOT_READ, PROGRAM_FAILED, SUCCESS, WRONG_USAGE

SAMPLE = DRAWINGS / "network_sample.dxf"


class Network(calling.ProgramTest):

    def surveyed(self, *arguments, status=SUCCESS):
        return self.call("network", *arguments, status=status)

    def sample(self):
        return json.loads(self.surveyed(SAMPLE, "--json", status=PROGRAM_FAILED))

    def test_kinds_are_counted_with_their_length(self):
        kinds = self.sample()["kinds"]
        self.assertEqual({kind: facts["count"] for kind, facts in kinds.items()},
                         {"water-pipe": 4, "drainage-pipe": 5, "storm-pipe": 3, "water-node": 2,
                          "hydrant": 1, "drainage-well": 7, "storm-well": 5, "unknown": 2})
        self.assertAlmostEqual(kinds["drainage-pipe"]["length"], 30 + 32.5 + 3 * 30, places=6)
        self.assertNotIn("length", kinds["drainage-well"])

    def test_every_fault_is_told_with_its_handle(self):
        found = [(p["handle"], p["problem"]) for p in self.sample()["problems"]]
        self.assertEqual(found, [
            ("59", "no-end"), ("59", "diameter"),
            ("5A", "data"), ("5A", "no-node"), ("5A", "no-node"), ("5A", "diameter"),
            ("5B", "bottom-above-ground"), ("5D", "duplicate-number"),
            ("5F", "invert-above-ground"), ("5F", "diameter"), ("5F", "flow-direction"),
            ("60", "isolated"), ("62", "isolated"),
            ("64", "ambiguous-end"), ("64", "other-network"), ("64", "section"),
            ("65", "length"), ("65", "same-node"), ("65", "flow-direction"),
            ("66", "no-centre-line"), ("66", "no-end"), ("66", "no-end"),
            ("67", "kind"), ("68", "kind"),
            ("69", "data"), ("69", "data"), ("69", "data"), ("69", "data"), ("69", "data"),
            ("69", "isolated"), ("6A", "no-position"), ("6A", "isolated"),
        ])

    def test_the_text_says_the_same_a_line_each(self):
        problems = self.sample()["problems"]
        lines = self.surveyed(SAMPLE, status=PROGRAM_FAILED).splitlines()
        told = lines[-1 - len(problems):-1]
        self.assertEqual(told, [f"{p['handle']} {p['kind']}: {p['text']}" for p in problems])
        self.assertEqual(lines[-1], "32 problems with 14 entities")
        self.assertIn("drainage-pipe         5         152.50 m", lines)

    def test_the_drawing_is_not_changed(self):
        before = SAMPLE.read_bytes()
        self.surveyed(SAMPLE, status=PROGRAM_FAILED)
        self.assertEqual(SAMPLE.read_bytes(), before)

    def test_a_drawing_without_a_network_has_nothing_wrong(self):
        drawing = DRAWINGS / "r2013_sample.dxf"
        self.assertEqual(self.surveyed(drawing), "no pipes and no nodes\nnothing is wrong\n")
        self.assertEqual(json.loads(self.surveyed(drawing, "--json")), {"kinds": {}, "problems": []})

    def test_a_drawing_that_cannot_be_read_says_so(self):
        self.assertEqual(self.surveyed(DRAWINGS / "missing.dxf", status=NOT_READ), "")
        self.assertIn("missing.dxf", self.result.stderr)

    def test_wrong_usage_is_told(self):
        self.surveyed(status=WRONG_USAGE)
        self.surveyed(SAMPLE, "--unknown", status=WRONG_USAGE)

    def test_the_help_has_an_example(self):
        self.assertIn("pipenote network plan.dxf", self.surveyed("--help"))


if __name__ == "__main__":
    calling.main()
