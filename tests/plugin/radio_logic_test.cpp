// The axis radios and the sign, by clicking, and read from what the two buttons then send.

#include <QAbstractButton>
#include <QComboBox>
#include <QWidget>

#include "plugin/fixtures/expected_scripts.h"
#include "plugin/fixtures/rigs.h"
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
    for (const AxisRow& row : kAxisRows) {
        if (row.primary == pair[0] && row.secondary == pair[1] && row.sign == sign)
            return row;
    }
    ADD_FAILURE() << pair;
    return kAxisRows[0];
}

}  // namespace

class RadioLogicTest : public PluginScene {
  public:
    /// Radios, combo box and the texts that both buttons send.
    void expectRow(QWidget* window, const AxisRow& row) {
        SCOPED_TRACE(nameOf(row));
        for (const char* name : kRadios) {
            const char axis = std::string(name).back();
            const bool wanted = axis == upperCase(name[4] == 'p' ? row.primary : row.secondary);
            EXPECT_EQ(window->findChild<QAbstractButton*>(name)->isChecked(), wanted) << name;
        }
        EXPECT_EQ(window->findChild<QComboBox*>("opt_revertAxis")->currentText(),
                  QString(QLatin1Char(row.sign)));
        forget();
        press(window, "btn_OrientJoints");
        EXPECT_EQ(transcript().back(), orientBareLine("bone", row.order, row.up, true));
        forget();
        press(window, "btn_flipOrient");
        const std::string sent =
            flipLine("|bone", upperCase(row.primary), upperCase(row.secondary));
        const Lines all = transcript();
        EXPECT_EQ(std::count(all.begin(), all.end(), sent), 1) << sent;
    }

    QWidget* start(const AxisRow& row) {
        QWidget* window = openTool();
        chooseAxes(*this, window, row);
        return window;
    }

    void makeBone() {
        makeChain(*this, {"bone", "tip"});
        select({"|bone"});
    }
};

TEST_F(RadioLogicTest, AFreshWindowSendsItsDefaults) {
    makeBone();
    expectRow(openTool(), rowOf("xy", '+'));
}

TEST_F(RadioLogicTest, EveryStateSendsItsRow) {
    makeBone();
    for (const AxisRow& row : kAxisRows)
        expectRow(start(row), row);
}

TEST_F(RadioLogicTest, EveryClickFromEveryState) {
    makeBone();
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
    makeBone();
    for (const AxisRow& row : kAxisRows) {
        QWidget* window = start(row);
        const char other = row.sign == '+' ? '-' : '+';
        chooseSign(window, other);
        expectRow(window, rowOf({row.primary, row.secondary}, other));
        chooseSign(window, row.sign);
        expectRow(window, row);
        window->close();
    }
}

// An index that is neither item changes no sign, but the radios are read again.
TEST_F(RadioLogicTest, NoItemChosenLeavesTheSign) {
    makeBone();
    QWidget* window = start(rowOf("yz", '-'));
    forget();
    window->findChild<QComboBox*>("opt_revertAxis")->setCurrentIndex(-1);
    EXPECT_EQ(messages(), Lines{});
    press(window, "btn_OrientJoints");
    EXPECT_EQ(transcript().back(), orientBareLine("bone", "yxz", "zup", true));
}

TEST_F(RadioLogicTest, WindowsKeepTheirAxesApart) {
    makeBone();
    QWidget* first = start(rowOf("zx", '-'));
    QWidget* second = openTool();
    expectRow(first, rowOf("zx", '-'));
    expectRow(second, rowOf("xy", '+'));
}

}  // namespace torvel::test
