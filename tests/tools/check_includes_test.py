"""Small trees with one fault each: the checker must name it, and must pass the clean one."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "tools/build/check_includes.py"

CLEAN = {
    "host/base/text.h": "#include <string>\n",
    "host/graph/scene.h": '#include "base/text.h"\n#include <Imath/ImathMatrix.h>\n',
    "host/mel/run.h": '#include "graph/scene.h"\n',
    "host/script/run.h": '#include "graph/scene.h"\n',
    "host/python/run.h": '#include "script/run.h"\n',
    "host/api/MObject.cpp": '#include <maya/MObject.h>\n#include "graph/scene.h"\n',
    "host/include/maya/MObject.h": "#include <maya/MTypes.h>\n#include <iosfwd>\n",
    "host/include/maya/MTypes.h": "",
    "plugin/toolkit/names.h": "#include <maya/MObject.h>\n#include <QtCore/QString>\n",
    "plugin/shell/checks.h": "#include <vector>\n",
    "plugin/licence/gate.h": "",
    "plugin/twist/window.h": '#include "toolkit/names.h"\n#include <QtWidgets/QDialog>\n',
    "plugin/skeleton/window.cpp": '#include "../licence/gate.h"\n#include "ui_window.h"\n',
    "plugin/shell/entry.cpp": '#include "twist/window.h"\n#include <maya/MFnPlugin.h>\n',
}


def check(files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        run = subprocess.run(
            [sys.executable, str(PROGRAM), folder], capture_output=True, text=True, check=False
        )
        return run.returncode, run.stdout.splitlines()


class CheckIncludes(unittest.TestCase):
    def test_a_clean_tree_passes_without_a_word(self):
        self.assertEqual(check(CLEAN), (0, []))

    def refuse(self, name, text, fault):
        """The clean tree with this one file besides gives exactly this one fault."""
        with self.subTest(name=name, text=text):
            self.assertEqual(check({**CLEAN, name: text}), (1, [f"{name}:{fault}"]))

    def test_host_folders_do_not_look_up(self):
        self.refuse("host/base/a.cpp", '#include "graph/scene.h"\n',
                    "1: host/base must not include host/graph")
        self.refuse("host/mel/a.cpp", '\n#include "python/run.h"\n',
                    "2: host/mel must not include host/python")
        self.refuse("host/graph/a.cpp", '#include "../mel/run.h"\n',
                    "1: host/graph must not include host/mel")
        self.refuse("host/mel/a.cpp", "#include <maya/MObject.h>\n",
                    "1: host/mel must not include host/api")
        self.refuse("host/python/a.cpp", '#include "mel/run.h"\n',
                    "1: host/python must not include host/mel")

    def test_the_seam_holds_from_both_sides(self):
        self.refuse("host/api/a.cpp", '#include "plugin/toolkit/names.h"\n',
                    "1: the host includes the plug-in")
        self.refuse("plugin/toolkit/a.cpp", '#include "graph/scene.h"\n',
                    '1: "graph/scene.h" is no file of the plug-in')
        self.refuse("plugin/toolkit/a.cpp", "#include <Imath/ImathVec.h>\n",
                    "1: the plug-in sees only <maya/...>, Qt and std, not <Imath/ImathVec.h>")
        self.refuse("host/include/maya/MPlug.h", '#include "graph/scene.h"\n',
                    "1: a public header must not include graph/scene.h")

    def test_tools_of_the_plugin_stay_apart(self):
        self.refuse("plugin/twist/a.cpp", '#include "skeleton/window.cpp"\n',
                    "1: plugin/twist must not include plugin/skeleton")
        self.refuse("plugin/twist/a.cpp", '#include "licence/gate.h"\n',
                    "1: plugin/twist must not include plugin/licence")
        self.refuse("plugin/toolkit/a.cpp", '#include "shell/checks.h"\n',
                    "1: plugin/toolkit must not include plugin/shell")

    def test_no_qt_text_in_files_that_run_scripts(self):
        body = "void f() {{\n    {0}MGlobal::executePythonCommand(x);\n    use(text.{1}());\n}}\n"
        for word in ("toStdString", "toUtf8", "asUTF8", "toLocal8Bit"):
            self.refuse("plugin/twist/a.cpp", body.format("", word),
                        f"3: {word} in a file that runs scripts")
        self.assertEqual(check({**CLEAN, "plugin/twist/a.cpp": body.format("// ", "toUtf8")})[0], 0)

    def test_four_units_know_what_the_plugin_says_about_itself(self):
        include = '#include "shell/plugin_info.h"\n'
        units = {
            "plugin/licence/license_window.cpp": include,
            "plugin/shell/entry.cpp": '#include "plugin_info.h"\n',
            "plugin/skeleton/skeleton_command.cpp": include,
            "plugin/update/checker_command.cpp": include,
        }
        tree = {**CLEAN, **units, "plugin/shell/plugin_info.h": ""}
        self.assertEqual(check(tree), (0, []))
        fault = "plugin/twist/a.cpp:1: must not include shell/plugin_info.h"
        self.assertEqual(check({**tree, "plugin/twist/a.cpp": include}), (1, [fault]))
        fault = "plugin/update/checker_command.cpp:1: has to include shell/plugin_info.h"
        missing = {**tree, "plugin/update/checker_command.cpp": "// " + include}
        self.assertEqual(check(missing), (1, [fault]))


if __name__ == "__main__":
    unittest.main()
