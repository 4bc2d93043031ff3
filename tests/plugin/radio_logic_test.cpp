// The axis radios and the sign, by clicking, and read from what the two buttons then send.

#include <algorithm>

#include <QAbstractButton>
#include <QComboBox>
#include <QWidget>

#include <fmt/format.h>

#include "plugin/fixtures/axis_choices.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

/// From one pair of axes, the pair after a click on primary x, y, z and on secondary x, y, z.
struct Transition {
    const char* from;
    const char* to[6];
};

constexpr Transition kTransitions[] = {
    {"xy", {"xy", "yz", "zy", "xy", "xy", "xz"}}, {"xz", {"xz", "yz", "zx", "xy", "xy", "xz"}},
    {"yx", {"xy", "yx", "zx", "yx", "yz", "yz"}}, {"yz", {"xz", "yz", "zx", "yx", "yz", "yz"}},
    {"zx", {"xy", "yx", "zx", "zx", "zy", "zx"}}, {"zy", {"xy", "yz", "zy", "zx", "zy", "zx"}},
};

constexpr const char* kRadios[] = {"rad_primX", "rad_primY", "rad_primZ",
                                   "rad_secX",  "rad_secY",  "rad_secZ"};

const AxisRow& rowOf(const std::string& pair, char sign) {
    return *std::find_if(std::begin(kAxisRows), std::end(kAxisRows), [&](const AxisRow& row) {
        return row.primary == pair[0] && row.secondary == pair[1] && row.sign == sign;
    });
}

}  // namespace

class RadioLogicTest : public PluginScene {
  public:
    void SetUp() override {
        python("rigs.chain('bone', 'tip')");
        select({"|bone"});
    }

    /// Presses the button and counts the scripts that hold the text.
    long sent(QWidget* window, const char* button, const std::string& text) {
        forget();
        press(window, button);
        const Lines ran = scripts();
        return std::count_if(ran.begin(), ran.end(), [&](const std::string& script) {
            return script.find(text) != std::string::npos;
        });
    }

    /// Radios, combo box and the options that both buttons send.
    void expectRow(QWidget* window, const AxisRow& row) {
        SCOPED_TRACE(nameOf(row));
        const char primary = upperCase(row.primary), secondary = upperCase(row.secondary);
        std::string checked;
        for (const char* name : kRadios) {
            if (window->findChild<QAbstractButton*>(name)->isChecked())
                checked += std::string(name).substr(4);
        }
        EXPECT_EQ(checked, fmt::format("prim{}sec{}", primary, secondary));
        EXPECT_EQ(window->findChild<QComboBox*>("opt_revertAxis")->currentText(),
                  QString(QLatin1Char(row.sign)));
        EXPECT_EQ(
            sent(window, "btn_OrientJoints", fmt::format("oj='{}',sao ='{}'", row.order, row.up)),
            1);
        EXPECT_EQ(sent(window, "btn_flipOrient",
                       fmt::format("primAxis = '{}'\nsecAxis = '{}'\n", primary, secondary)),
                  1);
    }

    QWidget* start(const AxisRow& row) {
        QWidget* window = openTool();
        chooseAxes(*this, window, row);
        return window;
    }
};

TEST_F(RadioLogicTest, EveryClickFromEveryState) {
    for (const Transition& transition : kTransitions) {
        for (char sign : {'+', '-'}) {
            for (int click = 0; click < 6; ++click) {
                SCOPED_TRACE(std::string(transition.from) + sign + " " + kRadios[click]);
                QWidget* window = start(rowOf(transition.from, sign));
                press(window, kRadios[click]);
                expectRow(window, rowOf(transition.to[click], sign));
                window->close();
            }
        }
    }
}

TEST_F(RadioLogicTest, TheSignTakesEffectAtOnceAndKeepsTheAxes) {
    for (const AxisRow& row : kAxisRows) {
        QWidget* window = start(row);
        expectRow(window, row);
        const char other = row.sign == '+' ? '-' : '+';
        chooseSign(window, other);
        expectRow(window, rowOf({row.primary, row.secondary}, other));
        window->close();
    }
}

// An index that is neither item changes no sign, but the radios are read again.
TEST_F(RadioLogicTest, NoItemChosenLeavesTheSign) {
    QWidget* window = start(rowOf("yz", '-'));
    window->findChild<QComboBox*>("opt_revertAxis")->setCurrentIndex(-1);
    EXPECT_EQ(sent(window, "btn_OrientJoints", "oj='yxz',sao ='zup'"), 1);
}

TEST_F(RadioLogicTest, WindowsKeepTheirAxesApart) {
    QWidget* first = start(rowOf("zx", '-'));
    QWidget* second = openTool();
    expectRow(first, rowOf("zx", '-'));
    expectRow(second, rowOf("xy", '+'));
}

}  // namespace torvel::test
