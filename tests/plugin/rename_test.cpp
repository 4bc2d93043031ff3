// The rename window: its rows, its four buttons, and the Python functions behind them.

#include <algorithm>
#include <sstream>

#include <fmt/format.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

#include "plugin/fixtures/plugin_scene.h"
#include "support/test_scene.h"

namespace torvel::test {

namespace {

std::string separatorRow(const char* style, int height) {
    return fmt::format("cmds.separator(style='{}', width=300, height={})", style, height);
}

Lines fieldRow(const char* label, const char* name) {
    return {"cmds.rowColumnLayout(numberOfColumns=2, columnWidth=[(1, 50), (2, 250)])",
            fmt::format("cmds.text(label='{}', align='right')", label),
            fmt::format("cmds.textField('{}')", name), "cmds.setParent('..')"};
}

Lines numberRow(const char* label, const char* name, int value) {
    return {"cmds.rowColumnLayout(numberOfColumns=2, columnWidth=[(1, 50), (2, 60)])",
            fmt::format("cmds.text(label='{}', align='right')", label),
            fmt::format("cmds.intField('{}', width=60, value={}, minValue=0)", name, value),
            "cmds.setParent('..')"};
}

std::string buttonRow(const char* label, int mode, const char* annotation) {
    return fmt::format(
        "cmds.button(label='{}', align='center', width=300, command='do_rename({})', "
        "annotation='{}')",
        label, mode, annotation);
}

Lines expectedRows() {
    Lines rows{
        "cmds.window('torvelRenameWin', widthHeight=(310, 360), title='Rename', "
        "iconName='torvelRename', sizeable=True, topLeftCorner=(200, 200))",
        "cmds.columnLayout('cr_mainCol', adjustableColumn=True)",
    };
    const auto add = [&rows](const Lines& more) {
        rows.insert(rows.end(), more.begin(), more.end());
    };
    add({separatorRow("in", 8)});
    add(fieldRow("Search:", "tfSearch"));
    add(fieldRow("Replace:", "tfReplace"));
    add({separatorRow("none", 4),
         buttonRow("Search And Replace", 0,
                   "Searches for Search text and replaces with Replace text. Replace CAN be blank "
                   "to remove text, or CAN be a part of or contain search string in it."),
         separatorRow("none", 10), separatorRow("in", 8)});
    add(fieldRow("Prefix:", "tfPrefix"));
    add({separatorRow("none", 4),
         buttonRow("Add Prefix", 1, "Adds prefix text before current name of each object"),
         separatorRow("none", 10), separatorRow("in", 8)});
    add(fieldRow("Suffix:", "tfSuffix"));
    add({separatorRow("none", 4),
         buttonRow("Add Suffix", 2, "Adds suffix text after current name of each object"),
         separatorRow("none", 10), separatorRow("in", 8)});
    add(fieldRow("Rename:", "tfRename"));
    add(numberRow("Start #:", "ifNumber", 1));
    add(numberRow("Padding:", "ifPadding", 0));
    add({separatorRow("none", 4),
         "cmds.button(label='Rename And Number', align='center', command='do_rename(3)')",
         separatorRow("in", 8), "cmds.showWindow('torvelRenameWin')"});
    return rows;
}

}  // namespace

class RenameTest : public PluginScene {
  public:
    std::vector<QWidget*> renameWindows() {
        std::vector<QWidget*> found;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == "Rename")
                found.push_back(window);
        }
        return found;
    }

    void open() {
        python("cmds.torvel_renameUI()");
        ASSERT_EQ(renameWindows().size(), 1u);
    }

    void fill(const std::string& field, const std::string& text) {
        python(fmt::format("cmds.textField('{}', edit=True, text='{}')", field, text));
    }

    void number(const std::string& field, int value) {
        python(fmt::format("cmds.intField('{}', edit=True, value={})", field, value));
    }

    QPushButton* button(const std::string& label) {
        if (renameWindows().empty())
            return nullptr;
        for (QPushButton* each : renameWindows()[0]->findChildren<QPushButton*>()) {
            if (each->text().toStdString() == label)
                return each;
        }
        return nullptr;
    }

    void click(const std::string& label) {
        ASSERT_NE(button(label), nullptr) << label;
        forget();
        button(label)->click();
    }

    /// Empty transforms by full path, parents first.
    void makeNodes(const Lines& paths) {
        for (const std::string& path : paths) {
            const std::size_t bar = path.rfind('|');
            const std::string under =
                bar == 0 ? "" : fmt::format(", parent='{}'", path.substr(0, bar));
            python(fmt::format("cmds.createNode('transform', name='{}'{}, skipSelect=True)",
                               path.substr(bar + 1), under));
        }
    }

    /// The lines that the languages printed.
    bool printed(const std::string& text) {
        const std::vector<RecordEntry>& entries = session().record().entries();
        return std::any_of(entries.begin(), entries.end(), [&](const RecordEntry& entry) {
            return !entry.isScript && entry.text.find(text) != std::string::npos;
        });
    }
};

TEST_F(RenameTest, OneScriptBuildsTheWindowRowByRow) {
    python("cmds.torvel_renameUI()");
    ASSERT_EQ(scripts().size(), 1u);
    const std::string head = "python plain: ";
    ASSERT_EQ(scripts()[0].compare(0, head.size(), head), 0) << scripts()[0];
    std::istringstream text(scripts()[0].substr(head.size()));
    Lines functions, rows;
    bool building = false;
    for (std::string line; std::getline(text, line);) {
        EXPECT_EQ(line.find("import"), std::string::npos) << line;
        if (line.compare(0, 4, "def ") == 0)
            functions.push_back(line);
        if (building)
            rows.push_back(line.substr(line.find_first_not_of(' ')));
        building = building || line == "else:";
        if (line == "def do_rename(mode):")
            building = false;
    }
    EXPECT_EQ(functions,
              (Lines{"def string_replace(input_str, search_str, replace_str):",
                     "def get_short_name(obj):", "def chop(input_str):", "def do_rename(mode):"}));
    const Lines expected = expectedRows();
    ASSERT_GE(rows.size(), expected.size());
    EXPECT_EQ(Lines(rows.end() - static_cast<std::ptrdiff_t>(expected.size()), rows.end()),
              expected);
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(RenameTest, TheWindowHasItsFieldsAndButtons) {
    open();
    for (const char* field : {"tfSearch", "tfReplace", "tfPrefix", "tfSuffix", "tfRename"})
        EXPECT_EQ(pythonText(fmt::format("cmds.textField('{}', query=True, text=True)", field)),
                  "");
    EXPECT_EQ(python("cmds.intField('ifNumber', query=True, value=True)").number(), 1);
    EXPECT_EQ(python("cmds.intField('ifPadding', query=True, value=True)").number(), 0);
    for (const char* label :
         {"Search And Replace", "Add Prefix", "Add Suffix", "Rename And Number"})
        EXPECT_NE(button(label), nullptr) << label;
    EXPECT_EQ(button("Add Suffix")->toolTip(),
              "Adds suffix text after current name of each object");
    EXPECT_TRUE(renameWindows()[0]->isVisible());
}

TEST_F(RenameTest, TheFunctions) {
    open();
    const std::pair<const char*, const char*> cases[] = {
        {"string_replace('aaa', 'aa', 'b')", "ba"},
        {"string_replace('ab', 'ab', '')", ""},
        {"string_replace('abab', 'ab', 'xabx')", "xabxxabx"},
        {"string_replace('abc', '', 'x')", "abc"},
        {"string_replace('', 'a', 'x')", ""},
        {"string_replace('abc', 'abcd', 'x')", "abc"},
        {"string_replace('xab', 'ab', 'c')", "xc"},
        {"string_replace('a.b', '.', '_')", "a_b"},
        {"get_short_name('|a|b|c')", "c"},
        {"get_short_name('c')", "c"},
        {"get_short_name('')", ""},
        {"chop('')", ""},
        {"chop('a')", ""},
        {"chop('abc')", "ab"},
    };
    for (const auto& [call, expected] : cases)
        EXPECT_EQ(pythonText(call), expected) << call;
}

TEST_F(RenameTest, SearchAndReplace) {
    open();
    makeNodes({"|L_arm", "|L_leg_L_", "|spine"});
    select({"|L_arm", "|L_leg_L_", "|spine"});
    fill("tfSearch", "L_");
    fill("tfReplace", "R_");
    click("Search And Replace");
    EXPECT_EQ(selected(), (Lines{"|R_arm", "|R_leg_R_", "|spine"}));
    EXPECT_EQ(languageErrors(), 0);
    fill("tfSearch", "R_");
    fill("tfReplace", "xR_x");
    click("Search And Replace");
    EXPECT_EQ(selected(), (Lines{"|xR_xarm", "|xR_xleg_xR_x", "|spine"}));
    fill("tfReplace", "");
    click("Search And Replace");
    EXPECT_EQ(selected(), (Lines{"|xxarm", "|xxleg_xx", "|spine"}));
}

TEST_F(RenameTest, TheSearchIsNeverInTheParentsName) {
    open();
    makeNodes({"|leg", "|leg|leg_jnt"});
    select({"|leg|leg_jnt"});
    fill("tfSearch", "leg");
    fill("tfReplace", "arm");
    click("Search And Replace");
    EXPECT_EQ(selected(), Lines{"|leg|arm_jnt"});
}

TEST_F(RenameTest, PrefixAndSuffixWithParentsAndChildren) {
    open();
    makeNodes({"|a", "|a|b", "|a|b|c", "|d"});
    select({"|a", "|a|b", "|a|b|c", "|d"});
    fill("tfPrefix", "p_");
    click("Add Prefix");
    EXPECT_EQ(selected(), (Lines{"|p_a", "|p_a|p_b", "|p_a|p_b|p_c", "|p_d"}));
    fill("tfSuffix", "_s");
    select({"|p_a|p_b|p_c", "|p_a"});
    click("Add Suffix");
    EXPECT_EQ(selected(), (Lines{"|p_a_s|p_b|p_c_s", "|p_a_s"}));
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(RenameTest, DuplicateLeafNames) {
    open();
    makeNodes({"|x", "|x|leaf", "|y", "|y|leaf"});
    select({"|x|leaf", "|y|leaf"});
    fill("tfSuffix", "_s");
    click("Add Suffix");
    EXPECT_EQ(selected(), (Lines{"|x|leaf_s", "|y|leaf_s"}));
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(RenameTest, NumbersAndPadding) {
    struct Case {
        int start, padding;
        const char* first;
        const char* last;  // of three
    };
    const Case cases[] = {
        {1, 0, "j1", "j3"},       {0, 0, "j0", "j2"},        {0, 1, "j0", "j2"},
        {8, 2, "j08", "j10"},     {9, 3, "j009", "j011"},    {98, 3, "j098", "j100"},
        {5, 4, "j0005", "j0007"}, {999, 3, "j999", "j1001"},
    };
    open();
    fill("tfRename", "j");
    for (const Case& row : cases) {
        python("cmds.file(new=True, force=True)");
        makeNodes({"|p", "|q", "|r"});
        select({"|p", "|q", "|r"});
        number("ifNumber", row.start);
        number("ifPadding", row.padding);
        click("Rename And Number");
        ASSERT_EQ(selected().size(), 3u);
        EXPECT_EQ(selected()[0], std::string("|") + row.first);
        EXPECT_EQ(selected()[2], std::string("|") + row.last);
    }
}

TEST_F(RenameTest, NumbersFollowTheSelection) {
    open();
    makeNodes({"|a", "|a|b", "|c"});
    select({"|c", "|a|b", "|a"});
    fill("tfRename", "n");
    click("Rename And Number");
    EXPECT_EQ(selected(), (Lines{"|n1", "|n3|n2", "|n3"}));
}

TEST_F(RenameTest, BlankFieldsWarnAndRenameNothing) {
    const std::pair<const char*, const char*> cases[] = {
        {"Search And Replace", "Can't search and replace, search entry field is blank!"},
        {"Add Prefix", "Can't add prefix, prefix entry field is blank!"},
        {"Add Suffix", "Can't add suffix, suffix entry field is blank!"},
        {"Rename And Number", "Can't rename and number, rename entry field is blank!"},
    };
    open();
    fill("tfReplace", "x");
    makeNodes({"|a", "|b"});
    for (const auto& [label, warning] : cases) {
        select({"|a", "|b"});
        click(label);
        EXPECT_TRUE(printed(warning)) << label;
        EXPECT_EQ(session().record().entries().size(), 1u) << "once, not per object";
        EXPECT_EQ(selected(), (Lines{"|a", "|b"})) << label;
    }
}

TEST_F(RenameTest, NothingSelectedNothingSaid) {
    open();
    makeNodes({"|a"});
    select({});
    for (const char* label :
         {"Search And Replace", "Add Prefix", "Add Suffix", "Rename And Number"}) {
        click(label);
        EXPECT_FALSE(printed("blank")) << label;
    }
    EXPECT_TRUE(exists("|a"));
    EXPECT_EQ(selected(), Lines{});
}

TEST_F(RenameTest, AnEmptyNameIsRefusedAndStopsThere) {
    open();
    makeNodes({"|xab", "|ab", "|abx"});
    select({"|xab", "|ab", "|abx"});
    fill("tfSearch", "ab");
    click("Search And Replace");
    EXPECT_TRUE(printed("New name has no legal characters."));
    EXPECT_TRUE(exists("|x")) << "what came before stays renamed";
    EXPECT_TRUE(exists("|ab"));
    EXPECT_TRUE(exists("|abx")) << "what comes after is not reached";
}

TEST_F(RenameTest, IllegalCharactersBecomeLegal) {
    open();
    makeNodes({"|a"});
    select({"|a"});
    fill("tfSuffix", " (2)");
    click("Add Suffix");
    EXPECT_EQ(selected(), Lines{"|a__2_"});
}

TEST_F(RenameTest, ALockedNodeStopsThere) {
    open();
    makeNodes({"|a", "|b", "|c"});
    python("cmds.lockNode('b')");
    select({"|a", "|b", "|c"});
    fill("tfPrefix", "p_");
    click("Add Prefix");
    EXPECT_EQ(languageErrors(), 1);
    EXPECT_TRUE(exists("|p_a"));
    EXPECT_TRUE(exists("|b"));
    EXPECT_TRUE(exists("|c"));
}

// Two bars at the head of the updated names are part of the operation.
TEST_F(RenameTest, TheUpdatedNamesBeginWithTwoBars) {
    open();
    makeNodes({"|a", "|a|b", "|c"});
    select({"|a", "|a|b", "|c"});
    python(
        "seen = []\n"
        "real = cmds.select\n"
        "def spy(*names, **flags):\n"
        "    seen.append(names[0])\n"
        "    return real(*names, **flags)\n"
        "cmds.select = spy\n");
    fill("tfPrefix", "p_");
    click("Add Prefix");
    python("cmds.select = real");
    EXPECT_EQ(pythonText("[str(s) for s in seen]"), "p_a p_b p_c ['||p_a', '||p_a|p_b', '||p_c']");
}

// The update replaces "|a|" wherever it stands in a long name, so another "a" further down a path
// is hit as well and its descendants are lost to the rest of the run.
TEST_F(RenameTest, ANamesakeInsideALongerPathIsHitToo) {
    open();
    makeNodes({"|a", "|b", "|b|a", "|b|a|c"});
    select({"|a", "|b|a|c"});
    fill("tfPrefix", "p_");
    click("Add Prefix");
    EXPECT_TRUE(exists("|p_a"));
    EXPECT_TRUE(exists("|b|a|c")) << "not renamed";
    EXPECT_EQ(languageErrors(), 1);
}

TEST_F(RenameTest, ASecondOpeningRaisesTheOneWindow) {
    open();
    fill("tfSearch", "kept");
    QWidget* const window = renameWindows()[0];
    open();
    EXPECT_EQ(renameWindows()[0], window);
    EXPECT_EQ(pythonText("cmds.textField('tfSearch', query=True, text=True)"), "kept");
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(RenameTest, AClosedWindowIsBuiltAnew) {
    open();
    fill("tfSearch", "gone");
    renameWindows()[0]->close();
    finishDeletion();
    EXPECT_FALSE(python("cmds.window('torvelRenameWin', exists=True)").truth());
    open();
    EXPECT_EQ(pythonText("cmds.textField('tfSearch', query=True, text=True)"), "");
    EXPECT_EQ(languageErrors(), 0);
}

// The built library, loaded and unloaded: window and functions stay in the application.
TEST_F(RenameTest, UnloadingLeavesTheWindowWorking) {
    for (const char* name : {"torvel_skeleton", "torvel_renameUI", "torvel_twist", "checkUpdates"})
        session().removePluginCommand(name);
    python("del cmds; import maya.cmds; maya.cmds.loadPlugin('" TORVEL_PLUGIN_PATH "')");
    open();
    makeNodes({"|a"});
    fill("tfPrefix", "p_");
    python("cmds.unloadPlugin('torvel')");
    EXPECT_FALSE(python("hasattr(cmds, 'torvel_renameUI')").truth());
    select({"|a"});
    click("Add Prefix");
    EXPECT_EQ(selected(), Lines{"|p_a"});
}

// The person's own way: typing and clicking.
TEST_F(RenameTest, TypedTextIsRead) {
    open();
    makeNodes({"|a"});
    select({"|a"});
    const QList<QLineEdit*> fields = renameWindows()[0]->findChildren<QLineEdit*>();
    ASSERT_GE(fields.size(), 5);
    for (QLineEdit* field : fields) {
        if (!field->validator() && field->text().isEmpty())
            field->setText("z");
    }
    click("Search And Replace");
    EXPECT_EQ(selected(), Lines{"|a"}) << "no z in it";
    click("Add Prefix");
    EXPECT_EQ(selected(), Lines{"|za"});
    click("Rename And Number");
    EXPECT_EQ(selected(), Lines{"|z1"});
}

TEST_F(RenameTest, WithoutTheMenusBindingTheTextFails) {
    python("del cmds");
    Value result;
    EXPECT_TRUE(session().python->run("import maya.cmds as c; c.torvel_renameUI()", result).isOk())
        << "the command succeeds whatever happens";
    EXPECT_TRUE(renameWindows().empty());
    EXPECT_TRUE(printed("cmds"));
    python("import maya.cmds as cmds");
}

}  // namespace torvel::test
