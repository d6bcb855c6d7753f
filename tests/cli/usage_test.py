"""What somebody meets who does not know the program yet: its help, its examples, and what it says to mistakes."""

import itertools
import json
import os
import re
import shlex
import shutil
import subprocess

import calling
from calling import (DRAWINGS, NETWORKS, NOT_READ, PROGRAM_FAILED, SOURCE, SUCCESS, WRONG_USAGE)
from labelled import LabellingTest

COMMANDS = ("run", "repl", "info", "records", "check", "network", "format", "settings", "import",
            "label", "update", "render", "batch")
LABELS = ("length", "slope", "cover", "elevation", "depth", "diameter", "stake", "composite", "well")
PAGES = [SOURCE / "README.md", SOURCE / "examples" / "README.md", *sorted((SOURCE / "docs").glob("*.md"))]

# Commands that read a file, with what they need besides.
READERS = {"run": [], "repl": [], "info": [], "records": [], "check": [], "network": [],
           "import": ["-o", "out.dxf"], "label": ["-o", "out.dxf"], "update": ["--dry-run"],
           "render": ["-o", "out.svg"]}
WRITERS = {"run": [], "label": [], "update": [], "import": [], "render": []}


class Usage(LabellingTest):

    def setUp(self):
        super().setUp()
        self.plan = self.labelled("Net1.inp")
        (self.folder / "plain.dxf").unlink(missing_ok=True)

    def told(self, *arguments, status=WRONG_USAGE, **options):
        out = self.call(*arguments, status=status, cwd=self.folder, **options)
        self.assertEqual(out, "")
        self.assert_one_line()
        return self.result.stderr.removeprefix("pipenote: ").removesuffix("\n")


class Help(Usage):

    def test_every_command_has_help_with_an_example(self):
        for command in COMMANDS:
            text = self.call(command, "--help")
            self.assertIn(f"Usage: pipenote {command} ", text)
            self.assertRegex(text, r"Examples?:\n  pipenote " + command)
            self.assertIn(f"  {command} ", self.call("--help"))
            self.assertEqual(self.call("help", command), text)
        self.assertEqual(self.call("help"), self.call("--help"))

    def test_help_fits_the_terminal(self):
        for columns, command in itertools.product((60, 80, 200), COMMANDS):
            self.environment["COLUMNS"] = str(columns)
            text = self.call(command, "--help")
            rows = text[text.index("Options:"):].split("\n\n")[0]
            self.assertLessEqual(max(map(len, rows.splitlines())), min(columns, 100), rows)
            if command == "render":  # what was wrapped is whole
                self.assertIn("draw these layers only; wildcards as in wcmatch; may be repeated",
                              " ".join(text.split()))

    def test_help_shows_nothing_of_how_options_are_checked(self):
        for words in [[command] for command in COMMANDS] + [["format", label] for label in LABELS]:
            self.assertNotRegex(self.call(*words, "--help"), r"Excludes|Needs|REQUIRED|:DIR|:FILE|:INT|\{")

    def test_the_documentation_names_every_option(self):
        page = (SOURCE / "docs" / "command-line.md").read_text(encoding="utf-8")
        sections = dict(part.split("\n", 1) for part in page.split("\n## ")[1:])
        sections["render"] = (SOURCE / "docs" / "pictures.md").read_text(encoding="utf-8")
        of_run = set(re.findall(r"--[a-z-]+", sections["run"]))
        for command in COMMANDS:
            text = next(text for title, text in sections.items() if command in title.split(", "))
            options = set(re.findall(r"^  (?:-\w,)?(--[a-z-]+)", self.call(command, "--help"), re.MULTILINE))
            options -= {"--help", "--output", "--eval"} | (of_run - {"--in-place", "--select", "--answers"})
            self.assertLessEqual(options, set(re.findall(r"--[a-z-]+", text)), command)

    def test_the_version_is_told(self):
        self.assertRegex(self.call("--version"), r"\Apipenote \d+\.\d+\.\d+\n\Z")


class Examples(Usage):
    """Every example of the help and the documentation, typed as it stands."""

    def setUp(self):
        super().setUp()
        self.environment["PATH"] = os.path.dirname(self.program) + os.pathsep + os.environ["PATH"]
        os.symlink(SOURCE / "examples", self.folder / "examples")
        os.makedirs(self.folder / "tests" / "fixtures")
        os.symlink(NETWORKS, self.folder / "tests" / "fixtures" / "networks")
        shutil.copy(DRAWINGS / "r2000_sample_xrecords.dxf", self.folder / "pipes.dxf")
        net = self.labelled("Net3.inp").read_bytes()
        for name in ("plan", "net", "north", "south", "sewer", "labelled", "plans/one", "plans/two"):
            path = self.folder / (name + ".dxf")
            path.parent.mkdir(exist_ok=True)
            path.write_bytes(net)
        (self.folder / "models").mkdir()
        for name in ("Net3.inp", "sewer.inp", "models/Net3.inp"):
            model = "Net3.inp" if "Net3" in name else "sewer_user2.inp"
            shutil.copy(NETWORKS / model, self.folder / name)
        for name in ("label.lsp", "tools.lsp", "mark.lsp", "fix.lsp"):
            (self.folder / name).write_text("(defun record-labels () 1) (defun t1 () (ssget)) (defun fix () 1)")
        (self.folder / "mark.txt").write_text("\n")
        (self.folder / "plans.txt").write_text("plans/one.dxf\n")
        os.makedirs(self.folder / "srv" / "pipe-labels")
        os.makedirs(self.folder / "srv" / "projects" / "east-road")

    def run_as_typed(self, line):
        """But for handles, folders and modules, which are others in every drawing and on every machine."""
        pipes = iter(self.pipes(self.labelled_document("Net3.inp")))
        typed = re.sub(r"\b(2F3|2F4|31A)\b", lambda _: next(pipes), line)
        typed = typed.replace("/srv/", "srv/").replace("falls.arx.so", "labeler.arx")
        done = subprocess.run(["bash", "-c", typed], cwd=self.folder, env=self.environment, text=True,
                              capture_output=True, check=False, stdin=subprocess.DEVNULL,
                              timeout=calling.TIMEOUT)
        self.assertIn(done.returncode, (SUCCESS, PROGRAM_FAILED), line + "\n" + done.stderr)
        if done.returncode == PROGRAM_FAILED:  # something is wrong with the drawing, not with the line
            self.assertNotRegex(done.stderr, "error|cannot|--help", line)
        return done

    def test_examples_of_the_help_work(self):
        count = 0
        for command in COMMANDS:
            text = self.call(command, "--help")
            for line in re.findall(r"^  (pipenote .*)$", text[text.index("Example"):], re.MULTILINE):
                self.run_as_typed(re.sub(r" \| jq .*", "", line))
                count += 1
        self.assertGreater(count, 35)

    def test_examples_of_the_documentation_work(self):
        count = 0
        for page in PAGES:
            for line in re.findall(r"^    (?:\$ )?(pipenote .*)$", page.read_text(encoding="utf-8"),
                                   re.MULTILINE):
                if re.search(r"\[|\.\.\.|\b[A-Z]{5,}\b|\bOUT\b|pipes\.dxf", line.split("#")[0]):
                    continue  # how a command is called, or lines that go with others
                self.run_as_typed(line)
                count += 1
        self.assertGreater(count, 12)

    def test_the_quick_start_works(self):
        readme = (SOURCE / "README.md").read_text(encoding="utf-8")
        block = readme[readme.index("After that:"):].split("\n\n")[1]
        lines = [line.split(" # ")[0].strip() for line in block.splitlines() if "PATH=" not in line]
        self.assertEqual([line.split()[0] for line in lines],
                         ["pipenote"] * 3 + ["generate_drawing", "pipenote", "pipenote", "diff"])
        for line in lines[:-1]:
            done = self.run_as_typed(line)
        self.assertIn("DN400", self.run_as_typed(lines[-1]).stdout)

    def test_answers_shown_in_the_documentation_are_those_given(self):
        for page in PAGES:
            for line, answer in re.findall(r"^    \$ (pipenote format .*)\n    (.*)$",
                                           page.read_text(encoding="utf-8"), re.MULTILINE):
                self.assertEqual(self.call(*shlex.split(line)[1:]).strip(), answer, page)


class Mistakes(Usage):

    def test_a_command_that_is_none_is_named(self):
        self.assertEqual(self.told(), "name a command; see pipenote --help")
        self.assertEqual(self.told("frob"), 'there is no command "frob"; see pipenote --help')
        self.assertEqual(self.told("frob", "plan.dxf"), 'there is no command "frob"; see pipenote --help')
        self.assertEqual(self.told("--frob"), "there is no option --frob; see pipenote --help")
        self.assertEqual(self.told("format"), "name a command; see pipenote format --help")
        self.assertEqual(self.told("format", "weight", "1"),
                         'there is no command "weight"; see pipenote format --help')

    def test_what_is_missing_or_too_much_is_named(self):
        for arguments, what in (
                (["info"], "DRAWING is required; see pipenote info --help"),
                (["info", "plan.dxf", "--jsn"], "there is no option --jsn; see pipenote info --help"),
                (["info", "plan.dxf", "b.dxf"],
                 '"b.dxf" is one argument too many; see pipenote info --help'),
                (["render", "plan.dxf"], "--output is required; see pipenote render --help"),
                (["run", "plan.dxf", "-e"], "--eval wants a value; see pipenote run --help"),
                (["format", "length"], "METRES is required; see pipenote format length --help"),
                (["format", "diameter"],
                 "DIAMETER or --rect is required; see pipenote format diameter --help"),
                (["format", "elevation", "--type", "3", "12"],
                 '--type: there is no kind of elevation "3"; see pipenote format elevation --help'),
                (["run", "plan.dxf", "--in-place", "-o", "x.dxf"],
                 "--output excludes --in-place; see pipenote run --help")):
            self.assertEqual(self.told(*arguments), what)

    def test_what_is_no_file_to_read_is_named(self):
        (self.folder / "empty.dxf").touch()
        (self.folder / "folder.dxf").mkdir()
        for command, options in READERS.items():
            for name in ("none.dxf", "empty.dxf", "folder.dxf", "/dev/null"):
                with self.subTest(command, name=name):
                    self.call(command, name, *options, status=NOT_READ, cwd=self.folder)
                    self.assert_one_line(f"pipenote: {name}: ")
            with self.subTest(command, name="-"):
                self.assertIn(": files are read, not standard input",
                              self.told(command, "-", *options, stdin="0\nEOF\n"))
        self.assertEqual(sorted(os.listdir(self.folder)),
                         ["editing.lsp", "empty.dxf", "folder.dxf", "plan.dxf"])

    def test_what_is_no_file_to_write_is_named(self):
        before = self.plan.read_bytes()
        (self.folder / "folder.svg").mkdir()
        for command, options in WRITERS.items():
            source = NETWORKS / "Net1.inp" if command == "import" else "plan.dxf"
            for output, status, what in (("-", WRONG_USAGE, "not standard output"),
                                         ("none/out.svg", 4, "none/out.svg: cannot write"),
                                         ("folder.svg", 4, "folder.svg: ")):
                with self.subTest(command, output=output):
                    if (command, output) == ("render", "-"):
                        what = "ends in .svg"
                    self.call(command, source, *options, "-o", output, status=status, cwd=self.folder)
                    self.assert_one_line(what)
        self.assertEqual(self.plan.read_bytes(), before)

    def test_a_file_is_not_written_over_the_one_that_is_read(self):
        shutil.copy(NETWORKS / "Net1.inp", self.folder / "Net1.inp")
        shutil.copy(self.plan, self.folder / "plan.svg")
        os.symlink("plan.dxf", self.folder / "link.dxf")
        for command, source, output, what in (
                ("run", "plan.dxf", "./plan.dxf", "is the drawing itself; --in-place writes over it"),
                ("label", "plan.dxf", "link.dxf", "is the drawing itself; --in-place writes over it"),
                ("update", "plan.dxf", "plan.dxf", "is the drawing itself; --in-place writes over it"),
                ("import", "Net1.inp", "Net1.inp", "is the file that is read, and would be lost"),
                ("render", "plan.svg", "plan.svg", "is the file that is read, and would be lost")):
            with self.subTest(command):
                before = (self.folder / source).read_bytes()
                self.assertIn(what, self.told(command, source, "-o", output))
                self.assertEqual((self.folder / source).read_bytes(), before)

    def test_a_module_that_is_none_is_named_by_those_who_read_records(self):
        for command in ("records", "check"):
            self.assertIn("nowhere.arx", self.told(command, "plan.dxf", "--load", "nowhere.arx"))
            self.call(command, "plan.dxf", "--load", "labeler.arx", cwd=self.folder)


    def test_an_empty_value_is_named(self):
        for arguments, option in ((["records", "plan.dxf", "--owner", ""], "--owner"),
                                  (["records", "plan.dxf", "--type", ""], "--type"),
                                  (["label", "plan.dxf", "-o", ""], "--output"),
                                  (["import", "model.inp", "-o", ""], "--output"),
                                  (["render", "plan.dxf", "-o", ""], "--output"),
                                  (["info", ""], "DRAWING")):
            self.assertRegex(self.told(*arguments), f"^{option}: the value is empty; see pipenote ")
        self.assertIn("--step-limit", self.told("run", "plan.dxf", "--step-limit", "-1"))

    def test_a_batch_that_would_write_nothing_is_told_before_it_runs(self):
        for command in ("label", "update"):
            self.assertEqual(self.told("batch", command, "plan.dxf"),
                             f"{command} writes each drawing: say where, --out-dir DIR or --in-place")
        self.call("batch", "update", "plan.dxf", "--", "--dry-run", cwd=self.folder)

    def test_output_into_a_full_disk_is_a_failure(self):
        for arguments in (["info"], ["records", "--json"], ["check"]):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([self.program, *arguments, self.plan], stdout=full, check=False,
                                      stderr=subprocess.PIPE, text=True, timeout=calling.TIMEOUT)
            self.assertEqual((done.returncode, done.stderr),
                             (4, "pipenote: standard output: cannot write: No space left on device\n"))


class Names(Usage):

    def test_files_have_any_name(self):
        for name in ("管线 图.dxf".encode(), b"bad\xff.dxf", b"-plan.dxf", b"a'b\"c$d.dxf"):
            shutil.copy(self.plan, os.fsencode(self.folder) + b"/" + name)
            given = b"./" + name if name.startswith(b"-") else name
            for command, options in READERS.items():
                if command in ("import", "repl"):
                    continue
                with self.subTest(command, name=name):
                    self.call(command, given, *options, status=None, cwd=self.folder, errors="replace")
                    self.assertIn(self.result.returncode, (SUCCESS, PROGRAM_FAILED))
            self.call("label", given, "--in-place", cwd=self.folder)
            self.call("run", given, "-o", b"out-" + name, cwd=self.folder)
            self.assertTrue(os.path.exists(os.fsencode(self.folder) + b"/out-" + name))

    def test_json_is_json_whatever_the_name(self):
        bad = b"bad\xff.dxf"
        shutil.copy(self.plan, os.fsencode(self.folder) + b"/" + bad)
        for command in (["info"], ["records"], ["network"], ["update", "--dry-run"],
                        ["label", "-o", "out.dxf"]):
            with self.subTest(command):
                json.loads(self.call(*command, bad, "--json", status=None, cwd=self.folder))
        json.loads(self.call("settings", "--json"))
        json.loads(self.call("import", NETWORKS / "Net1.inp", "--json", "-o", self.folder / "o.dxf"))


if __name__ == "__main__":
    calling.main()
