// Whatever the FKIK system is run on, nothing of the skeleton and the skin is lost.

#include <algorithm>

#include "plugin/fixtures/system_scene.h"
#include "support/test_scene.h"

namespace torvel::test {

namespace {

struct KeptRig {
    const char* name;
    const char* scene;  // Python
    Lines joints;
    int clicks;
    const char* second;  // the line after the opening one
};

}  // namespace

class FKIKKeepsTest : public SystemScene, public ::testing::WithParamInterface<KeptRig> {
  public:
    std::vector<std::string> paths() { return textsOf(python("sorted(ctl.paths())")); }
};

TEST_P(FKIKKeepsTest, NothingIsLost) {
    const KeptRig& run = GetParam();
    python(std::string("SCENES = '" TORVEL_SCENES_DIR "'\n") + run.scene);
    const Lines before = paths(), joints = textsOf(python("cmds.ls(type='joint', long=True)"));
    const std::vector<V3d> rest = skinPoints();
    std::vector<M44d> worlds;
    for (const std::string& joint : joints)
        worlds.push_back(worldOf(joint));
    for (int click = 0; click < run.clicks; ++click) {
        clickOn(run.joints, "btn_FKIKSystem");
        EXPECT_EQ(messages().at(0), "info: Creando sistema FKIK...");
        EXPECT_EQ(messages().at(1), run.second);
        EXPECT_EQ(messages().back(), "info: Sistema FKIK creado exitosamente.");
        const Lines after = paths();
        EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
        for (std::size_t i = 0; i < joints.size(); ++i)
            expectSameFrame(worldOf(joints[i]), worlds[i], 1e-6);
        expectSamePoints(skinPoints(), rest, 1e-5);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rigs, FKIKKeepsTest,
    ::testing::Values(KeptRig{"ABoundArm",
                              "cmds.file(SCENES + '/arm.ma', open=True, force=True)",
                              {"|clavicle|shoulder", "|clavicle|shoulder|elbow|wrist"},
                              1,
                              "error: No se encontró el objeto: |clavicle|shoulder_FK"},
                      KeptRig{"ABoundArmAtTheTop",
                              "cmds.file(SCENES + '/arm.ma', open=True, force=True)\n"
                              "cmds.parent('shoulder', world=True)",
                              {"|shoulder", "|shoulder|elbow|wrist"},
                              1,
                              "error: No se encontró el objeto: |shoulder|elbow|wrist_FK"},
                      KeptRig{"OneJoint",
                              "ctl.arm()",
                              {"|shoulder"},
                              1,
                              "error: No se pudo obtener el nombre del objeto."},
                      KeptRig{"ThreeClicks",
                              "ctl.arm()",
                              {"|shoulder", "|shoulder|elbow|hand"},
                              3,
                              "error: No se encontró el objeto: |shoulder|elbow|hand_FK"}),
    [](const auto& info) { return info.param.name; });

}  // namespace torvel::test
