"""`pipenote batch` from outside: many drawings, order, failures, clashes, interruption."""

import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import time

import calling
from calling import DRAWINGS, NETWORKS, SOURCE

DRAWING = DRAWINGS / "r2000_sample_xrecords.dxf"
FOREVER = "(progn (close (open \"started\" \"w\")) (while T))"


def listen_to_signals():
    """As in a terminal, whatever this test was started by; a crash leaves no core file."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_DFL)
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def children_of(process):
    listed = pathlib.Path(f"/proc/{process}/task/{process}/children").read_text()
    return [int(child) for child in listed.split()]


class Batch(calling.ProgramTest):

    def drawing(self, name):
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        shutil.copyfile(DRAWING, path)
        return name

    def run_batch(self, *arguments, **options):
        self.call("batch", *arguments, status=None, cwd=self.folder, **options)
        return self.result

    def start_batch(self, *arguments):
        process = subprocess.Popen([self.program, "batch", *arguments], cwd=self.folder, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   preexec_fn=listen_to_signals)
        self.addCleanup(process.kill)
        for _ in range(2000):
            if (self.folder / "started").exists():
                return process
            if process.poll() is not None:
                break
            time.sleep(0.01)
        process.kill()
        self.fail("nothing was started: " + process.communicate()[1])

    def table(self, output):
        """Of each drawing, the words for how it ended."""
        rows = output[output.index("\nstatus"):].splitlines()[2:-1]
        return {m[3]: m[1] for m in (re.match(r"(.*?) +(\d+\.\d\d)  (.*)", row) for row in rows)}

    def test_output_comes_whole_and_in_the_order_of_the_drawings(self):
        names = [self.drawing(f"{i}.dxf") for i in range(6)]
        # The first are slower than the last.
        slow = '(progn (repeat (if (= (getvar "DWGNAME") "0.dxf") 300000 10) (+ 1 1)) ' \
               '(princ (getvar "DWGNAME")) (princ " says hello") (princ))'
        done = self.run_batch("run", *names, "--jobs", "3", "--", "-e", slow)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        told = done.stdout[:done.stdout.index("\nstatus")].split()
        self.assertEqual(told, " ".join(f"== {n} {n} says hello" for n in names).split())
        self.assertEqual(self.table(done.stdout), {name: "done" for name in names})
        self.assertRegex(done.stdout, r"6 of 6 done in \d+\.\d\d s\n$")

    def test_one_that_fails_leaves_the_others_alone(self):
        names = [self.drawing("a.dxf"), "missing.dxf", self.drawing("b.dxf")]
        done = self.run_batch("run", *names, "--out-dir", "out", "--", "-e",
                              '(if (= (getvar "DWGNAME") "b.dxf") (car 1))')
        self.assertEqual(done.returncode, 1)
        self.assertEqual(self.table(done.stdout),
                         {"a.dxf": "done", "missing.dxf": "not read", "b.dxf": "with errors"})
        self.assertIn("1 of 3 done, 2 failed", done.stdout)
        self.assertRegex(done.stderr, "missing.dxf.*(?s:.)*bad argument type")
        self.assertEqual(os.listdir(self.folder / "out"), ["a.dxf"])
        self.assertEqual((self.folder / "out" / "a.dxf").read_bytes(), DRAWING.read_bytes())

    def test_models_become_drawings_in_a_folder(self):
        models = [NETWORKS / "Net1.inp", NETWORKS / "sewer_user2.inp"]
        done = self.run_batch("import", *models, "--out-dir", "a/b")
        self.assertIn("== " + str(models[1]), done.stdout)
        self.assertEqual(sorted(os.listdir(self.folder / "a" / "b")),
                         ["Net1.dxf", "sewer_user2.dxf"])

    def test_pictures_get_their_own_ending(self):
        names = [self.drawing("a.dxf"), self.drawing("b.x.dxf")]
        self.run_batch("render", *names, "--out-dir", "p")
        self.run_batch("render", *names, "--out-dir", "p", "--ending", "png", "--",
                       "--size", "60x40")
        self.assertEqual(sorted(os.listdir(self.folder / "p")),
                         ["a.png", "a.svg", "b.x.png", "b.x.svg"])

    def test_drawings_are_written_over_themselves_when_asked(self):
        names = [self.drawing("a.dxf"), self.drawing("b.dxf")]
        entity = '(entmake (list (cons 0 "LINE") (list 10 0.0 0.0 0.0) (list 11 1.0 0.0 0.0)))'
        done = self.run_batch("run", *names, "--in-place", "--", "-e", entity)
        self.assertEqual(done.returncode, 0, done.stderr)
        for name in names:
            self.assertNotEqual((self.folder / name).read_bytes(), DRAWING.read_bytes())
            self.assertEqual((self.folder / (name + ".bak")).read_bytes(), DRAWING.read_bytes())

    def test_a_list_names_drawings(self):
        self.drawing("a.dxf")
        self.drawing("-e 图 1.dxf")
        (self.folder / "list.txt").write_bytes("\ufeffa.dxf\r\n\n-e 图 1.dxf\n".encode())
        done = self.run_batch("records", "--list", "list.txt")
        self.assertEqual(self.table(done.stdout), {"a.dxf": "done", "-e 图 1.dxf": "done"})
        again = self.run_batch("records", "--list", "-", stdin="a.dxf")
        self.assertEqual(self.table(again.stdout), {"a.dxf": "done"})
        self.assertEqual(self.run_batch("records", "--list", "none.txt").returncode, 2)

    def test_clashes_of_names_are_refused_before_anything_runs(self):
        names = [self.drawing("x/plan.dxf"), self.drawing("y/plan.dxf"), self.drawing("a.dxf")]
        os.symlink("a.dxf", self.folder / "link.dxf")
        for arguments, what in [
                ([*names, "--out-dir", "out"], "x/plan.dxf and y/plan.dxf would both be written"),
                (["x/plan.dxf", "a.dxf", "--out-dir", "x"], "x/plan.dxf would be overwritten"),
                (["a.dxf", "link.dxf", "--in-place"], "a.dxf and link.dxf would both be written"),
                (["a.dxf", "a.dxf", "--", "--in-place"], "a.dxf and a.dxf would both be written"),
                (["./a.dxf", "a.dxf", "--in-place"], "./a.dxf and a.dxf would both be written")]:
            passed_on = ["-e", '(close (open "ran" "w"))']
            done = self.run_batch("run", *arguments, *([] if "--" in arguments else ["--"]),
                                  *passed_on)
            self.assertEqual((done.returncode, done.stdout), (2, ""), arguments)
            self.assertIn(what, done.stderr)
        self.assertFalse((self.folder / "ran").exists())
        self.assertFalse((self.folder / "out").exists())

    def test_wrong_usage_is_told_in_one_line(self):
        self.drawing("a.dxf")
        for arguments in (["nothing", "a.dxf"], ["repl", "a.dxf"], ["batch", "a.dxf"],
                          ["format", "length"], ["info"], ["info", "a.dxf", "--out-dir", "out"],
                          ["info", "a.dxf", "--in-place"], ["render", "a.dxf"],
                          ["import", "a.inp", "--in-place"], ["info", "a.dxf", "--jobs", "0"],
                          ["run", "a.dxf", "--out-dir", "o", "--in-place"],
                          ["run", "a.dxf", "--ending", "x"],
                          ["run", "a.dxf", "--", "-o", "one.dxf"],
                          ["run", "a.dxf", "--", "--output=one.dxf"]):
            done = self.run_batch(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, ""), arguments)
            self.assertRegex(done.stderr, r"\Apipenote: .*\n\Z", arguments)

    def test_a_folder_that_cannot_be_made_is_told(self):
        self.drawing("a.dxf")
        done = self.run_batch("run", "a.dxf", "--out-dir", "a.dxf/out")
        self.assertEqual((done.returncode, done.stdout), (4, ""))

    def test_a_crash_is_a_failed_row(self):
        names = [self.drawing("a.dxf"), self.drawing("b.dxf")]
        process = self.start_batch("run", *names, "--jobs", "1", "--", "-e",
                                   f'(if (= (getvar "DWGNAME") "a.dxf") {FOREVER})')
        os.kill(children_of(process.pid)[0], signal.SIGABRT)
        output, _ = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1)
        self.assertEqual(self.table(output), {"a.dxf": "crashed: Aborted", "b.dxf": "done"})

    def test_an_interrupt_stops_all_and_tells_what_was_done(self):
        names = [self.drawing(name) for name in ("a.dxf", "b.dxf", "c.dxf", "d.dxf")]
        process = self.start_batch(
            "run", *names, "--jobs", "1", "--out-dir", "out", "--", "-e",
            f'(if (= (getvar "DWGNAME") "b.dxf") {FOREVER})')
        (child,) = children_of(process.pid)
        process.send_signal(signal.SIGINT)
        output, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 1)
        self.assertEqual(self.table(output), {"a.dxf": "done", "b.dxf": "stopped",
                                              "c.dxf": "not started", "d.dxf": "not started"})
        self.assertIn("1 of 4 done, 1 failed, 2 not started", output)
        self.assertIn("interrupted", errors)
        self.assertFalse(pathlib.Path(f"/proc/{child}").exists())
        self.assertEqual(os.listdir(self.folder / "out"), ["a.dxf"])

    def test_no_more_run_at_once_than_asked_for(self):
        names = [self.drawing(f"{i}.dxf") for i in range(5)]
        process = self.start_batch("run", *names, "--jobs", "2", "--", "-e", FOREVER)
        # The second one may come up a little after the first.
        for _ in range(500):
            if len(children_of(process.pid)) == 2:
                break
            time.sleep(0.01)
        time.sleep(0.2)
        self.assertEqual(len(children_of(process.pid)), 2)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=60)

    def test_many_drawings_need_few_files_at_once(self):
        names = [f"{i}.dxf" for i in range(300)]  # none of them is there
        done = self.run_batch("info", *names, "--jobs", "4", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_NOFILE, (32, 32)))
        self.assertEqual(self.table(done.stdout), {name: "not read" for name in names})

    def test_the_example_labels_a_folder(self):
        (self.folder / "in").mkdir()
        shutil.copyfile(NETWORKS / "Net1.inp", self.folder / "in" / "Net1.inp")
        sewer = NETWORKS / "sewer_state_plane.inp"
        self.call("import", sewer, "-o", self.folder / "in" / "plan.dxf")
        script = SOURCE / "examples" / "batch" / "label-all.sh"
        path = str(pathlib.Path(self.program).parent) + os.pathsep + os.environ["PATH"]
        done = subprocess.run([script, "in", "out"], cwd=self.folder, text=True, check=False,
                              capture_output=True, env={**os.environ, "PATH": path})
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(done.stdout, r"labels drawn +23\n")  # 12 pipes, 11 nodes
        self.assertIn("plan.dxf: nothing is stale", done.stdout)
        self.assertEqual(sorted(os.listdir(self.folder / "out" / "pictures")),
                         ["Net1.png", "plan.png"])
        self.assertEqual(sorted(os.listdir(self.folder / "in")), ["Net1.inp", "plan.dxf"])

    def test_what_has_no_output_file_writes_none(self):
        names = [self.drawing("a.dxf"), self.drawing("b.dxf")]
        self.run_batch("check", *names)
        self.assertEqual(sorted(os.listdir(self.folder)), names)


if __name__ == "__main__":
    calling.main()
