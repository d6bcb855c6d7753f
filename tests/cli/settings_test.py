"""What `format` and `settings` answer to those who ask how labels look and why."""

import json

import calling
from calling import SUCCESS, WRONG_USAGE


def record(name, value):
    return name.encode("gbk").ljust(32, b"\0") + value.encode("gbk").ljust(128, b"\0")


class SettingsCommands(calling.ProgramTest):
    """An installation of its own, with a line of lengths, one of slopes, and nothing else."""

    def setUp(self):
        super().setUp()
        self.install = self.folder / "install"
        self.project = self.folder / "project"
        self.project.mkdir()
        self.given("Is/gdcdpdbz.dat", '; labels\n"L=" mm 0 mm 0\n"i=" ‰ 2 ‰ 0\n')

    def given(self, name, text):
        path = self.install / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def call(self, *arguments, status=SUCCESS, own=True):
        folders = ["--install-dir", self.install, "--project-dir", self.project] if own else []
        return super().call(*arguments, *folders, status=status)

    def label(self, *arguments, **options):
        return self.call("format", *arguments, **options)


class Format(SettingsCommands):

    def test_length_and_slope_follow_the_settings(self):
        self.assertEqual(self.label("length", "35.2"), "L=35200mm\n")
        self.assertEqual(self.label("slope", "-0.0035"), "i=3.50‰\n")

    def test_the_settings_installed_with_the_program_are_the_default(self):
        self.assertEqual(self.label("length", "35.25", own=False), "L=35.3m\n")
        self.assertEqual(self.result.stderr, "")

    def test_elevations_are_those_of_the_profile_unless_a_kind_is_given(self):
        self.given("Is/bgbzfsk.dat", "GROUND x 1 a.dwg\n")
        self.given("User/zdm_bzsz.dat", "标高 ((小数位 0))\n")
        self.assertEqual(self.label("elevation", "12.3456"), "12\n")
        self.assertEqual(self.label("elevation", "--type", "GROUND", "12.3456"), "12.3\n")
        self.assertEqual(self.label("elevation", "--type", "pipetop", "-12.3456"), "-12.346\n")

    def test_depths(self):
        self.assertEqual(self.label("depth", "1.125"), "1.13\n")
        self.assertEqual(self.label("cover", "1.125"), "1.13\n")
        self.given("sys/QrmvPz.ini", "[Swjcj]\nUnit_Jcjsd=mm\n")
        self.assertEqual(self.label("depth", "--well", "1.2345"), "1234.500\n")
        self.assertEqual(self.label("depth", "--well", "--cut", "1.2345"), "1234\n")

    def test_diameters(self):
        self.given("Is/gdbzfsk.dat", "DN STD\nde OUT × WALL\n")
        self.given("using/PipeMaterials.dat", '管材 7 PE 1 ""\n规格 7 110 96.8 6.6\n')
        self.assertEqual(self.label("diameter", "300"), "DN300\n")
        self.assertEqual(self.label("diameter", "110", "--material", "7"), "de110×6.6\n")
        self.assertEqual(self.label("diameter", "--rect", "2000x1500"), "BxH=2000x1500\n")
        self.assertEqual(self.label("diameter", "--rect", "2000x1500", "--ratio", "2.5"),
                         "BxH=2000x1500(1:2.5)\n")
        self.assertEqual(self.label("diameter", "--rect", "2000x1500", "--twin"),
                         "2xBxH=2000x1500\n")
        self.assertEqual(self.label("diameter", "1500", "--width", "2000"), "BxH=2000x1500\n")

    def test_stakes_have_no_decimals_unless_the_drawing_says_so(self):
        self.assertEqual(self.label("stake", "1234.5"), "K1+235.00\n")
        self.assertEqual(self.label("stake", "1234.5", "--set", "useri4=3"), "K1+234.5\n")
        (self.project / "ktsysvar.ksv").write_bytes(
            record("PLN_STK_SET", "100 50 0 0 1 0 1 1 桩 1"))
        self.assertEqual(self.label("stake", "1234.5", "--set", "useri4=1", "--name", "12345W"),
                         "W 桩12+34.5\n")

    def test_composite_labels(self):
        self.given("Is/gdbzfsk.dat", "DN STD\n")
        pipe = ["composite", "--diameter", "300", "--length", "35.2", "--slope", "0.0025"]
        self.assertEqual(self.label(*pipe), "DN300-L=35200mm-i=2.50‰\n")
        self.assertEqual(self.label(*pipe, "--apart"), "DN300\nL=35200mm\ni=2.50‰\n")
        self.assertEqual(self.label(*pipe, "--items", "管径,坡度", "--pipes", "2"),
                         "2xDN300-i=2.50‰\n")
        self.assertEqual(self.label(*pipe, "--items", "x"), "\n")
        self.given("sys/DimStyle.ini", "[GxBz]\nJ_SwBzGd=((管长 Y))\n")
        self.assertEqual(self.label(*pipe, "--kind", "j"), "L=35200mm\n")

    def test_composite_labels_of_standard_ly(self):
        self.given("Is/gdbzfsk.dat", "DN STD\n")
        self.given("Is/gdcdpdbz.dat", "L= m 1 m 0\ni= ‰ 1 ‰ 0\nx\n0 / DH DN LL PD GCDN V\n")
        self.given("sys/DimStyle.ini", "[GxBz]\nLocalStyle=LY\n")
        self.assertEqual(self.label("composite", "--diameter", "300", "--items", "管代号,公称直径",
                                    "--code", "W,-,1"), "W-1/300\n")

    def test_well_numbers(self):
        self.assertEqual(self.label("well", "w", "12"), "W-12\n")
        self.assertEqual(self.label("well", "w", "12", "--hydrant"), "XH-12\n")

    def test_what_is_no_number_is_wrong_usage(self):
        for arguments in (["length", "35,2"], ["slope", "nan"], ["stake", "0x10"],
                          ["diameter", "--rect", "2000"], ["diameter", "--rect", "axb"],
                          ["elevation", "--type", "ROOF", "1"], ["length"], ["weight", "1"],
                          ["diameter", "300", "--material", "PE"],
                          ["depth", "1", "--cut"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.label(*arguments, status=WRONG_USAGE), "")
                self.assertEqual(self.result.stderr.count("\n"), 1)
        self.label("length", "35,2", status=WRONG_USAGE)
        self.assertIn('"35,2" is not a number', self.result.stderr)

    def test_a_variable_that_cannot_be_set_is_wrong_usage(self):
        for variable in ("useri4", "useri4=x", "=3", "no such=3", "nosuchvariable=3"):
            with self.subTest(variable=variable):
                self.assertEqual(self.label("stake", "1", "--set", variable, status=WRONG_USAGE),
                                 "")
                self.assertIn("--set", self.result.stderr)

    def test_explain_tells_file_line_and_token(self):
        out = self.label("length", "35.2", "--explain").splitlines()
        self.assertEqual(out[0], "L=35200mm")
        at = out.index('  length unit = "1"')
        self.assertEqual(out[at + 1].strip(), f"{self.install}/Is/gdcdpdbz.dat:2, token 3")
        self.assertFalse(any("slope" in line for line in out))

    def test_explain_tells_where_the_decimals_of_stakes_come_from(self):
        out = self.label("stake", "1234.5", "--explain", "--set", "useri4=3").splitlines()
        self.assertIn("variable of the drawing", out[out.index('  useri4 = "3"') + 1])
        self.assertIn("built in", out[out.index('  stake letter = "K"') + 1])

    def test_faults_of_files_go_to_standard_error(self):
        self.given("Is/gdbzfsk.dat", "")
        self.assertEqual(self.label("length", "1"), "L=1000mm\n")
        self.assertIn("pipenote: 读管径标注设置文件:", self.result.stderr)
        self.assertIn("pipenote: 管线标注设置文件:", self.result.stderr)

    def test_help_tells_units(self):
        self.assertIn("metres", self.call("format", "length", "--help", own=False))
        self.assertIn("millimetres", self.call("format", "diameter", "--help", own=False))
        self.assertIn("ratio", self.call("format", "slope", "--help", own=False))


class Settings(SettingsCommands):

    def test_each_setting_is_printed_with_value_and_origin(self):
        out = self.call("settings").splitlines()
        at = out.index('  slope suffix = "‰"')
        self.assertEqual(out[at + 1].strip(), f"{self.install}/Is/gdcdpdbz.dat:3, token 1")
        for name in ("LocalStyle", "SwBzTxtLineSpace", "SwBzGxLayer", "SwBzGd", "J_SwBzGd",
                     "Unit_Jcjsd", "GgDimPre", "profile depth decimals", "stake unit", "useri4",
                     "elevation GROUND decimals", "composite slot 1", "well number separator"):
            self.assertTrue(any(line.startswith(f"  {name} = ") for line in out), name)

    def test_json_holds_the_same(self):
        out = json.loads(self.call("settings", "--json"))
        by_name = {each["name"]: each for each in out["settings"]}
        self.assertEqual(by_name["length suffix"]["value"], "mm")
        self.assertEqual(by_name["length suffix"]["line"], 2)
        self.assertEqual(by_name["length suffix"]["place"], "token 1")
        self.assertFalse(by_name["length suffix"]["builtIn"])
        self.assertEqual(by_name["LocalStyle"]["value"], "GB")
        self.assertTrue(by_name["LocalStyle"]["builtIn"])

    def test_missing_files_are_named(self):
        out = json.loads(self.call("settings", "--json"))
        problems = {each["path"].replace("\\", "/").rsplit("/", 1)[-1]: each["problem"]
                    for each in out["files"]}
        self.assertIsNone(problems["gdcdpdbz.dat"])
        for name in ("zdm_bzsz.dat", "gdbzfsk.dat", "bgbzfsk.dat", "DimStyle.ini", "QrmvPz.ini",
                     "ktsysvar.ksv"):
            self.assertEqual(problems[name], "no such file", name)

    def test_files_that_cannot_be_read_are_named(self):
        (self.install / "Is" / "bgbzfsk.dat").mkdir()
        out = self.call("settings")
        self.assertIn("not read, built-in values stand in", out)

    def test_the_installed_settings_have_no_problem_but_the_missing_project(self):
        out = json.loads(self.call("settings", "--json", own=False))
        self.assertEqual([each for each in out["files"] if each["problem"]], [])
        self.assertEqual(self.result.stderr, "")


if __name__ == "__main__":
    calling.main()
