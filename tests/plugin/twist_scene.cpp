#include "plugin/twist_scene.h"

#include <fmt/format.h>

#include "support/test_scene.h"

namespace torvel::test {

void TwistScene::twist(const Lines& selection, const std::string& axis) {
    QWidget* window = openTwist();
    press(window, ("rad_" + axis).c_str());
    select(selection);
    forget();
    press(window, "btn_createTwist");
}

V3d TwistScene::placeOf(const std::string& path) {
    return worldMatrixOf(*this, path).translation();
}

void TwistScene::expectPlace(const std::string& path, const V3d& expected) {
    EXPECT_LT((placeOf(path) - expected).length(), 1e-9) << path;
}

void TwistScene::expectFourFifths(const std::string& twist, const std::string& parent,
                                  const std::string& joint) {
    expectPlace(twist, (placeOf(parent) + placeOf(joint) * 4.0) / 5.0);
}

std::string TwistScene::feeding(const std::string& attribute) {
    return pythonText("cmds.listConnections('" + attribute +
                      "', source=True, destination=False, plugs=True) or []");
}

void TwistScene::expectOneChannel(const std::string& joint, const std::string& twist,
                                  const std::string& axis) {
    for (const char* each : {"X", "Y", "Z"})
        EXPECT_EQ(feeding(twist + ".rotate" + each), each == axis ? joint + ".rotate" + axis : "");
    for (const char* other : {".translate", ".scale", ".jointOrient"})
        EXPECT_EQ(feeding(twist + other), "");
}

Lines TwistScene::influences(const std::string& cluster) {
    return textsOf(python("cmds.skinCluster('" + cluster + "', query=True, influence=True)"));
}

bool TwistScene::printed(const std::string& text) {
    for (const RecordEntry& entry : session().record().entries()) {
        if (!entry.isScript && entry.text.find(text) != std::string::npos)
            return true;
    }
    return false;
}

}  // namespace torvel::test
