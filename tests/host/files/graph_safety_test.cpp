#include "graph/slot_walk.h"
#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

class GraphSafety : public FileTest {
  protected:
    int countOf(const std::string& part) const {
        int count = 0;
        for (std::size_t at = told.find(part); at != std::string::npos;
             at = told.find(part, at + part.size()))
            ++count;
        return count;
    }

    void readEverything() {
        for (const NodeHandle handle : scene().allNodes())
            for (AttrIndex a = 0; a < scene().node(handle)->attrCount(); ++a) {
                scene().number(Plug(handle, a));
                scene().matrix(Plug(handle, a));
            }
    }
};

struct Stray {
    const char* type;
    const char* attr;
    const char* value;
    bool told = true;
};

const Stray kStrays[] = {{"transposeMatrix", "omat", "-type \"nurbsCurve\" \"AAAA\""},
                         {"transposeMatrix", "inputMatrix", "-type \"mesh\" \"AAAA\""},
                         {"transform", "opm", "-type \"mesh\" \"AAA\""},
                         {"transform", "offsetParentMatrix", "-type \"matrix\" \"what\" 1 2"},
                         {"joint", "bindPose", "-type \"string\" \"text\""},
                         {"dagPose", "xformMatrix[2]", "-type \"doubleArray\" 1 5"},
                         {"multMatrix", "matrixIn[0]", "-type \"componentList\" 1 \"vtx[0]\""},
                         {"animCurveTL", "keyCache", "-type \"mesh\" \"A\"", false},
                         {"mesh", "vrts", "-type \"matrix\" 1 2 3", false}};

TEST_F(GraphSafety, ValuesOfAnotherTypeAreKeptBesideTheAttribute) {
    for (const Stray& row : kStrays) {
        const std::string type = row.type, statement = std::string("\tsetAttr \".") + row.attr +
                                                       "\" " + row.value + ";\n";
        told.clear();
        const std::string error =
            openBody("createNode transform -n \"p\";\ncreateNode " + type + " -n \"n\"" +
                     (type == "mesh" ? " -p \"p\"" : "") + ";\n" + statement);
        ASSERT_EQ(error, "") << statement;
        readEverything();
        EXPECT_NE(saved().find(row.value), std::string::npos) << statement << saved();
        expectStable(statement);
        EXPECT_EQ(countOf("\n  line 4: "), row.told ? 1 : 0) << statement << told;
    }
}

struct Ring {
    const char* nodes;  // type and name, in turn
    const char* connections;
    const char* moved;  // set between two readings
};

const Ring kRings[] = {
    {"transform a transform b", "a.t b.t b.ty a.tx", "a.ty"},
    {"transform a transform b transform c", "a.t b.t b.t c.t c.tz a.tx", "a.tx"},
    {"transform a plusMinusAverage p", "a.t p.input3D[0] p.input3D[0].input3Dy a.tx", "a.ty"},
    {"transform a plusMinusAverage p", "a.t p.input3D[0] p.output3Dx a.tx", "a.ty"},
    {"transform a condition c", "a.t c.colorIfTrue c.colorIfTrueR a.tz", "a.tx"},
    {"transform a condition c", "a.t c.colorIfTrue c.outColorR a.tz", "a.tx"},
    {"transform a strange u", "a.t u.in u.in a.tx", "a.ty"},
    {"strange u strange v transform a", "u.og v.ip v.og u.ip u.x a.tx a.ty v.y", "a.ty"},
    {"remapValue r", "r.cl[0] r.cl[0].clc", "r.inputValue"},
    {"multiplyDivide m multiplyDivide n", "m.o n.i1 n.o m.i1", "m.input2X"},
    {"multiplyDivide m multiplyDivide n multiplyDivide k",
     "m.o n.i1 n.ox k.i1x n.oy k.i1y k.o m.i1", "k.input2X"},
};

TEST_F(GraphSafety, RingsEndAndAreToldOnce) {
    for (const Ring& row : kRings) {
        std::string body, one, two;
        for (std::istringstream nodes(row.nodes); nodes >> one >> two;)
            body += "createNode " + one + " -n \"" + two + "\";\n";
        for (std::istringstream pairs(row.connections); pairs >> one >> two;)
            body += "connectAttr \"" + one + "\" \"" + two + "\";\n";
        told.clear();
        ASSERT_EQ(openBody(body), "") << row.connections;
        readEverything();
        scene().setNumber(plug(row.moved), 3.0);
        readEverything();
        EXPECT_EQ(countOf("Cycle on"), 1) << row.connections << "\n" << told;
    }
}

// Each link hands three children on and takes the whole again: two to the power of its length ways.
TEST_F(GraphSafety, WaysThatMeetAgainAndLongRingsCostLinearTime) {
    NodeHandle first, last;
    for (int i = 0; i < 3000; ++i) {
        NodeHandle made;
        ASSERT_TRUE(scene().createNode("transform", "n", {}, made));
        if (i == 0)
            first = made;
        for (const char* attr : {"tx", "ty", "tz", "t"}) {
            const bool whole = attr == std::string("t");
            if (i > 0 && whole == (i % 2 == 0))
                ignore(scene().connect(scene().findPlug(last, attr), scene().findPlug(made, attr)));
        }
        last = made;
    }
    scene().setNumber(scene().findPlug(first, "ty"), 4.0);
    EXPECT_EQ(scene().number(scene().findPlug(last, "ty")), 4.0);
    told.clear();
    ASSERT_TRUE(scene().connect(scene().findPlug(last, "ty"), scene().findPlug(first, "tx")));
    scene().setNumber(scene().findPlug(first, "ty"), 5.0);
    EXPECT_EQ(scene().number(scene().findPlug(last, "tx")), 5.0);
    EXPECT_EQ(countOf("Cycle on"), 1) << told;
}

}  // namespace
}  // namespace torvel::test
