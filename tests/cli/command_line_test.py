"""The program as its users call it: exit status, output, and what happens to their files."""

import json
import os
import select
import shutil
import signal
import subprocess
import time

import ezdxf

import calling
import independent_reader
from calling import DRAWINGS, NOT_READ, NOT_WRITTEN, PROGRAM_FAILED, SOURCE, SUCCESS, WRONG_USAGE


class CommandLine(calling.ProgramTest):

    def setUp(self):
        super().setUp()
        self.plan = self.folder / "plan.dxf"
        shutil.copy(DRAWINGS / "r2013_ansi936_utf8.dxf", self.plan)
        self.before = self.plan.read_bytes()

    def script(self, text, name="script.lsp"):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def assert_untouched(self):
        self.assertEqual(self.plan.read_bytes(), self.before)
        self.assertEqual([p.name for p in self.folder.iterdir() if p.suffix != ".lsp"],
                         ["plan.dxf"])


class Run(CommandLine):

    def test_values_of_expressions_are_printed_line_by_line(self):
        out = self.call("run", self.plan, "-e", "(+ 1 2)", "-e", '(strcat "管" "a")')
        self.assertEqual(out, '3\n"管a"\n')

    def test_the_blank_value_prints_nothing(self):
        self.assertEqual(self.call("run", self.plan, "-e", "(princ)"), "")

    def test_a_value_starts_on_a_line_of_its_own(self):
        self.assertEqual(self.call("run", self.plan, "-e", '(princ "x")'), 'x\n"x"\n')

    def test_scripts_print_what_they_print_and_no_values(self):
        out = self.call("run", self.plan, self.script('(princ "said\\n") 5'))
        self.assertEqual(out, "said\n")

    def test_scripts_and_expressions_run_in_the_order_given(self):
        first = self.script('(setq x (cons "first" x))', "first.lsp")
        second = self.script('(setq x (cons "second" x))', "second.lsp")
        out = self.call("run", self.plan, "-e", '(setq x (list "start"))', first, "-e",
                        '(setq x (cons "between" x))', second, "-e", "x")
        self.assertEqual(out.splitlines()[-1], '("second" "between" "first" "start")')

    def test_nothing_is_written_unless_asked(self):
        self.call("run", self.plan, "-e", "(entdel (entlast))")
        self.assert_untouched()

    def test_output_goes_to_another_file(self):
        out = self.folder / "out.dxf"
        self.call("run", self.plan, "-e", "(entdel (ssname (ssget \"X\" '((0 . \"INSERT\"))) 0))",
                  "-o", out)
        self.assertEqual(self.plan.read_bytes(), self.before)
        self.assertNotEqual(out.read_bytes(), self.before)
        self.assertEqual(independent_reader.complaints(independent_reader.read(out)), [])

    def test_output_of_an_unchanged_drawing_is_identical(self):
        out = self.folder / "out.dxf"
        self.call("run", self.plan, "-o", out)
        self.assertEqual(out.read_bytes(), self.before)

    def test_in_place_keeps_the_previous_drawing(self):
        self.call("run", self.plan, "-e", "(entdel (entlast))", "--in-place")
        self.assertEqual((self.folder / "plan.dxf.bak").read_bytes(), self.before)
        self.assertNotEqual(self.plan.read_bytes(), self.before)

    def test_in_place_leaves_an_unchanged_drawing_alone(self):
        self.call("run", self.plan, "-e", "1", "--in-place")
        self.assert_untouched()

    def test_a_lisp_error_ends_the_run_and_writes_nothing(self):
        script = self.script('(entdel (entlast))\n\n(car 1)\n')
        out = self.call("run", self.plan, script, "-e", '(princ "never")', "--in-place",
                        status=PROGRAM_FAILED)
        self.assertNotIn("never", out)
        self.assert_one_line("script.lsp:3", "bad argument type", "was not written")
        self.assert_untouched()

    def test_a_refused_call_of_the_module_is_a_lisp_error(self):
        self.call("run", self.plan, "-e", '(dimRec (entlast))', "-o", self.folder / "out.dxf",
                  status=PROGRAM_FAILED)
        self.assertIn("参数格式不对!", self.result.stdout)
        self.assert_one_line("DIMREC")
        self.assert_untouched()

    def test_a_missing_script_is_an_error(self):
        self.call("run", self.plan, self.folder / "none.lsp", "--in-place", status=PROGRAM_FAILED)
        self.assert_one_line("none.lsp")
        self.assert_untouched()

    def test_a_missing_drawing_is_not_read(self):
        self.call("run", self.folder / "none.dxf", "-e", "1", status=NOT_READ)
        self.assert_one_line("none.dxf")
        self.call("run", self.folder / "none.dxf", "--in-place", status=NOT_READ)

    def test_a_damaged_drawing_is_not_read(self):
        self.plan.write_bytes(self.before[:len(self.before) // 2])
        self.before = self.plan.read_bytes()
        self.call("run", self.plan, "--in-place", status=NOT_READ)
        self.assert_one_line("plan.dxf")
        self.assert_untouched()

    def test_a_folder_is_not_read(self):
        self.call("run", self.folder, status=NOT_READ)

    def test_an_output_that_cannot_be_made_is_not_written(self):
        self.call("run", self.plan, "-o", self.folder / "none" / "out.dxf", status=NOT_WRITTEN)
        self.assert_one_line("out.dxf")
        self.assert_untouched()

    def test_a_full_disk_leaves_every_file_as_it_was(self):
        few = len(self.before) // 2
        limited = f"ulimit -f {few // 1024}; exec \"$0\" run \"$1\" -e \"$2\" --in-place"
        done = subprocess.run(["bash", "-c", limited, self.program, self.plan, "(entdel (entnext))"],
                              capture_output=True, text=True, timeout=120, check=False)
        self.assertEqual(done.returncode, NOT_WRITTEN, done.stderr)
        self.assertIn("cannot write", done.stderr)
        self.assert_untouched()

    def test_a_drawing_in_use_is_not_written(self):
        import fcntl
        with open(self.plan, "rb") as held:
            fcntl.flock(held, fcntl.LOCK_EX)
            self.call("run", self.plan, "-e", "(entdel (entlast))", "--in-place",
                      status=NOT_WRITTEN)
            self.assert_one_line("in use by another program")
            self.assertEqual(self.call("run", self.plan, "-e", "1"), "1\n")
        self.assert_untouched()

    def test_wrong_usage(self):
        for arguments in ([], ["run"], ["nosuch"], ["run", self.plan, "--nosuch"],
                          ["run", self.plan, "-e"],
                          ["run", self.plan, "--in-place", "-o", "x.dxf"],
                          ["run", self.plan, "--step-limit", "many"],
                          ["run", self.plan, "--install-dir", self.folder / "none"],
                          ["run", self.plan, "--load", "nowhere.arx"],
                          ["run", self.plan, "--select", "FFFFF"]):
            with self.subTest(arguments=arguments):
                self.call(*arguments, status=WRONG_USAGE)
                self.assert_one_line()

    def test_the_selection_is_given_beforehand(self):
        handle = self.call("run", self.plan, "-e", "(progn (princ (cdr (assoc 5 (entget (entlast)))))"
                           " (princ))")
        out = self.call("run", self.plan, "--select", handle.strip(), "-e", "(sslength (ssget))")
        self.assertEqual(out, "1\n")
        # It answers once; the next selection is a prompt like any other.
        out = self.call("run", self.plan, "--select", handle.strip(), "-e", "(sslength (ssget))",
                        "-e", "(ssget)", status=PROGRAM_FAILED)
        self.assertIn('no answer left for "Select objects: "', out)

    def test_an_endless_program_ends_at_the_step_limit(self):
        self.call("run", self.plan, "--step-limit", 10000, "-e", "(while T)", "--in-place",
                  status=PROGRAM_FAILED)
        self.assert_one_line()
        self.assert_untouched()

    def test_the_calls_that_led_to_an_error_are_printed_on_request(self):
        program = ["-e", "(defun half (n) (/ n 2))", "-e", "(defun twice (s) (half s))",
                   "-e", '(twice "a")']
        plain = self.call("run", self.plan, *program, status=PROGRAM_FAILED)
        traced = self.call("run", self.plan, "--lisp-trace", *program, status=PROGRAM_FAILED)
        self.assertTrue(traced.startswith(plain.rstrip("\n")), traced)
        self.assertNotIn("(HALF ", plain)
        self.assertLess(traced.index('(HALF "a")'), traced.index('(TWICE "a")'))

    def test_ctrl_c_ends_the_program_being_run(self):
        run = subprocess.Popen([self.program, "run", self.plan, "-e", '(progn (princ "go\\n") (while T))',
                                "--in-place"], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               text=True)
        time.sleep(1)
        run.send_signal(signal.SIGINT)
        out, err = run.communicate(timeout=60)
        self.assertEqual(run.returncode, PROGRAM_FAILED, out + err)
        self.assertIn("Function cancelled", err)
        self.assert_untouched()

    def test_programs_read_standard_input(self):
        script = self.script('(princ (read-line)) (princ "|") (princ (read-line)) (princ)')
        self.assertEqual(self.call("run", self.plan, script, stdin="一\nb\n"), "一|b")

    def test_prompts_take_their_answers_from_a_file(self):
        answers = self.folder / "answers.lsp"
        answers.write_bytes("10,20\r\n标注 文字\r\n\r\n".encode("gbk"))
        out = self.call("run", self.plan, "--answers", answers, "-e", '(getpoint "First: ")',
                        "-e", '(getstring T "Text: ")', "-e", '(getint "Number: ")')
        self.assertEqual(out, 'First: 10,20\n(10.0 20.0 0.0)\nText: 标注 文字\n"标注 文字"\n'
                              'Number: \nnil\n')

    def test_a_prompt_without_an_answer_ends_the_run(self):
        self.call("run", self.plan, "-e", '(entdel (entlast))', "-e", '(getpoint "First: ")',
                  "--in-place", status=PROGRAM_FAILED, stdin="1,2\n")
        self.assertIn('no answer left for "First: " (give the answers with --answers FILE)',
                      self.result.stdout)
        self.assert_untouched()

    def test_a_command_left_waiting_is_told(self):
        self.call("run", self.plan, "-e", '(command "LINE" "0,0" "1,1")')
        self.assert_one_line('LINE waited for "Specify next point or [Undo]: "')

    def test_an_r12_drawing_says_once_that_it_holds_no_records(self):
        out = self.folder / "out.dxf"
        line = '(vl-catch-all-apply (quote dimGeRec) (list (list (entlast) "pcgb") (entlast)))'
        self.call("run", DRAWINGS / "r12_sample.dxf", "-e", line, "-e", line, "-o", out)
        self.assert_one_line("R12")

    def test_the_module_is_loaded(self):
        self.assertEqual(self.call("run", self.plan, "-e", "(arx)"), '("pipenote.arx")\n')


class Example(CommandLine):

    def test_labels_are_recorded_with_the_nearest_curve(self):
        drawing = ezdxf.new("R2013")
        space = drawing.modelspace()
        pipes = [space.add_line((0, y), (100, y)) for y in (0, 50)]
        pipes.append(space.add_lwpolyline([(0, 100), (50, 100), (50, 150)]))
        labels = [space.add_text("DN300", dxfattribs={"insert": (50, 2)}),
                  space.add_text("管径 400.5mm", dxfattribs={"insert": (50, 48)}),
                  space.add_mtext("DN200 PE", dxfattribs={"insert": (52, 140)})]
        space.add_text("no number", dxfattribs={"insert": (0, 0)})
        drawing.saveas(self.plan)

        said = self.call("run", self.plan, SOURCE / "examples" / "record-labels.lsp", "-e",
                         "(record-labels)", "--in-place")
        self.assertIn("3 labels recorded\n", said)
        self.assertEqual(self.call("check", self.plan).count("\n"), 1)
        saved = independent_reader.read(self.plan)
        self.assertEqual(independent_reader.complaints(saved), [])
        pieces = [("", "DN", "300"), ("mm", "管径 ", "400.5"), (" PE", "DN", "200")]
        for pipe, label, (suffix, prefix, value) in zip(pipes, labels, pieces):
            items = independent_reader.record_items(saved.entitydb[pipe.dxf.handle], "pcgb")
            self.assertEqual(items, [("pipe_dia", label.dxf.handle, prefix, value, suffix, "", "",
                                      "")])
        info = json.loads(self.call("info", "--json", self.plan))
        self.assertEqual(info["records"], {"entities": 3, "records": 3})
        self.assertEqual(len(json.loads(self.call("records", "--json", self.plan))), 3)


class Info(CommandLine):

    def test_tells_release_code_page_and_kinds(self):
        out = self.call("info", self.plan)
        for part in ("R2013 (AC1027)", "ANSI_936", "134 objects", "0 on 0 entities"):
            self.assertIn(part, out)

    def test_prints_json(self):
        info = json.loads(self.call("info", "--json", DRAWINGS / "r12_binary.dxf"))
        self.assertEqual((info["version"], info["encoding"]), ("AC1009", "binary"))
        self.assertEqual(sum(info["kinds"].values()), info["objects"])

    def test_counts_agree_with_an_independent_reader(self):
        for name in ("r2013_sample.dxf", "r2018_sample.dxf", "r2004_sample.dxf"):
            info = json.loads(self.call("info", "--json", DRAWINGS / name))
            drawing = independent_reader.read(DRAWINGS / name)
            lines = sum(1 for e in drawing.entitydb.values() if e.dxftype() == "LINE")
            self.assertEqual(info["kinds"].get("LINE", 0), lines, name)

    def test_what_cannot_be_read_is_said(self):
        self.call("info", self.folder / "none.dxf", status=NOT_READ)
        self.assert_one_line("none.dxf")


class Help(CommandLine):

    def test_every_command_shows_an_example(self):
        for command in ("run", "repl", "info", "records", "check"):
            with self.subTest(command=command):
                self.assertIn(f"pipenote {command} ", self.call(command, "--help"))

    def test_the_program_lists_its_commands(self):
        out = self.call("--help")
        for command in ("run", "repl", "info", "records", "check"):
            self.assertIn(command, out)


class Prompt(CommandLine):

    def test_lines_are_collected_until_parentheses_balance(self):
        out = self.call("repl", self.plan, stdin='(+ 1\n 2)\n(strcat "a\nb" "c")\n(princ)\n')
        self.assertEqual(out, '3\n"a\\nbc"\n')

    def test_an_error_does_not_end_the_session(self):
        out = self.call("repl", self.plan, stdin="(car 1)\n(+ 1 1)\n", status=PROGRAM_FAILED)
        self.assertEqual(out.splitlines()[-1], "2")

    def test_prompts_take_the_next_line(self):
        out = self.call("repl", self.plan, stdin='(getstring "Name: ")\nW7\n(+ 1 2)\n')
        self.assertEqual(out, 'Name: W7\n"W7"\n3\n')

    def test_saving_is_a_command_of_the_prompt(self):
        self.call("repl", self.plan, stdin="(entdel (entlast))\n:save\n:quit\n(car 1)\n")
        self.assertEqual((self.folder / "plan.dxf.bak").read_bytes(), self.before)
        self.assertNotEqual(self.plan.read_bytes(), self.before)

    def test_without_saving_nothing_is_written(self):
        self.call("repl", self.plan, stdin="(entdel (entlast))\n")
        self.assert_untouched()

    def test_an_unfinished_form_is_an_error(self):
        self.call("repl", self.plan, stdin="(+ 1", status=PROGRAM_FAILED)

    def talk(self, keys):
        """Types keys at a terminal, each after the program has gone quiet; what it showed."""
        self.environment["LC_ALL"] = "C.UTF-8"
        child, terminal = self.start_at_terminal("repl", self.plan)
        shown = b""
        for key in keys:
            while select.select([terminal], [], [], 1.0)[0]:
                shown += os.read(terminal, 4096)
            os.write(terminal, key)
        return shown.decode(errors="replace") + self.shown_until_end(child, terminal)

    def test_a_terminal_completes_names_and_stops_programs(self):
        shown = self.talk([b"(handen\t \"FFFFF\")\n", b"(while T)\n", b"\x03", b"(+ 40 2)\n",
                           b"(+ 1\x03", b"(* 6 7 10)\n", b":quit\n"])
        self.assertNotIn("no function definition", shown)
        self.assertIn("Function cancelled", shown)
        self.assertIn("42", shown)
        self.assertIn("420", shown)


if __name__ == "__main__":
    calling.main()
