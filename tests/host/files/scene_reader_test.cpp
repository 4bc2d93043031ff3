#include <cmath>
#include <tuple>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

using SceneReader = FileTest;

TEST_F(SceneReader, ReadsNodesWithTheirPlacesAndIds) {
    ASSERT_EQ(
        openBody("createNode transform -n \"a\";\n\trename -uid \"11111111-2222\";\n"
                 "createNode joint -n \"b\" -p \"a\";\ncreateNode joint -n \"b2\" -p \"|a|b\";\n"),
        "");
    EXPECT_EQ(scene().names().fullPath(node("b2")), "|a|b|b2");
    EXPECT_EQ(scene().node(node("a"))->uuid, "11111111-2222");
    EXPECT_FALSE(scene().document().modified);
    EXPECT_EQ(scene().document().fileName, path("in.ma"));
    EXPECT_EQ(told, "");
}

TEST_F(SceneReader, AnglesArriveInRadians) {
    ASSERT_EQ(
        openBody(
            "createNode transform -n \"a\";\n\tsetAttr \".t\" -type \"double3\" 1 -2.5 3e-1 ;\n"
            "\tsetAttr \".r\" -type \"double3\" 90 0 -45 ;\n\tsetAttr \".ro\" 5;\n\tsetAttr \".v\" "
            "no;\n"),
        "");
    EXPECT_EQ(number("a.translateY"), -2.5);
    EXPECT_EQ(number("a.translateZ"), 0.3);
    EXPECT_DOUBLE_EQ(number("a.rotateX"), 1.5707963267948966);
    EXPECT_DOUBLE_EQ(number("a.rotateZ"), -0.78539816339744828);
    EXPECT_EQ(number("a.rotateOrder"), 5.0);
    EXPECT_EQ(number("a.visibility"), 0.0);
}

TEST_F(SceneReader, LengthsFollowTheUnitOfTheFile) {
    ASSERT_EQ(openBody("currentUnit -l meter -a radian -t film;\ncreateNode transform -n \"a\";\n"
                       "\tsetAttr \".t\" -type \"double3\" 1 0 0 ;\n\tsetAttr \".rx\" 2;\n"),
              "");
    EXPECT_EQ(number("a.translateX"), 100.0);
    EXPECT_EQ(number("a.rotateX"), 2.0);
    EXPECT_NE(saved().find("setAttr \".t\" -type \"double3\" 1 0 0 ;"), std::string::npos);
    expectStable();
}

TEST_F(SceneReader, WordsForInfinityAndNoNumberAreValues) {
    const std::pair<const char*, double> words[] = {
        {"inf", HUGE_VAL},          {"-inf", -HUGE_VAL},    {"nan", NAN},      {"-nan(ind)", -NAN},
        {"1.#INF", HUGE_VAL},       {"-1.#INF", -HUGE_VAL}, {"1.#QNAN", NAN},  {"-1.#IND", -NAN},
        {"1.#INF000000", HUGE_VAL}, {"Infinity", HUGE_VAL}, {"nan(snan)", NAN}};
    for (const auto& [word, value] : words) {
        told.clear();
        const std::string text(word);
        ASSERT_EQ(openBody("createNode transform -n \"a\";\n\tsetAttr \".tx\" " + text +
                           ";\n\tsetAttr \".s\" -type \"double3\" 1 " + text +
                           " 1 ;\n"
                           "\tsetAttr \".opm\" -type \"matrix\" 1 0 0 0 0 1 0 0 0 0 1 0 " +
                           text + " 0 0 1;\n\taddAttr -ln \"d\" -at \"double\" -dv " + text +
                           ";\n"
                           "createNode mesh -n \"m\" -p \"a\";\n\tsetAttr \".vt[0:1]\" 0 " +
                           text + " 0 1 1 1;\n"),
                  "")
            << word;
        for (const char* name : {"a.tx", "a.sy", "a.d", "m.vt[0].vy"}) {
            const double read = scene().storedNumber(plug(name));
            EXPECT_TRUE(std::isnan(value) ? std::isnan(read) : read == value)
                << word << " " << name;
            EXPECT_EQ(std::signbit(read), std::signbit(value)) << word << " " << name;
        }
        EXPECT_NE(told.find("4 numbers are infinite or undefined"), std::string::npos) << told;
        expectStable(word);
    }
}

TEST_F(SceneReader, SharedNodesStayShared) {
    ASSERT_EQ(
        openBody("createNode transform -s -n \"persp\";\ncreateNode camera -s -n \"perspShape\" "
                 "-p \"persp\";\ncreateNode aiOptions -s -n \"options\";\n"
                 "createNode transform -n \"a\";\ncreateNode transform -n \"persp\" -p \"a\";\n"
                 "createNode unknownTransform -n \"u\";\n"),
        "");
    const std::string text = saved();
    for (const char* line : {"createNode transform -s -n \"persp\";\n",
                             "createNode camera -s -n \"perspShape\" -p \"|persp\";\n",
                             "createNode aiOptions -s -n \"options\";\n",
                             "createNode transform -n \"persp\" -p \"a\";\n",
                             "createNode unknownTransform -n \"u\";\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line << text;
    expectStable();
}

TEST_F(SceneReader, TheCodePageOfTheHeadIsFollowed) {
    const std::tuple<const char*, const char*, const char*> pages[] = {
        {"1252",
         "lambert\xE8"
         "Eye",
         "lambertèEye"},
        {"1252",
         "lambert\xC3\xA8"
         "Eye",
         "lambertèEye"},
        {"UTF-8", "lambertèEye", "lambertèEye"},
        {"932", "\x83\x5c\x98\x72", "ソ腕"},  // its second byte is a backslash
        {"936", "\xB8\xEC\xB2\xB2", "胳膊"},
        {"949", "\xC6\xC8", "팔"},
        {"950", "\xA4\xE2", "手"},
        {"1251", "\xF0\xF3\xEA\xE0", "рука"},
        {"made-up", "\xE8", "è"}};
    for (const auto& [codes, bytes, name] : pages) {
        told.clear();
        const std::string text = bytes;
        ASSERT_EQ(open("//Maya ASCII 2014 scene\n//Codeset: " + std::string(codes) +
                       "\ncreateNode transform -n \"" + text +
                       "\";\n\taddAttr -ln \"n\" -dt \"string\";\n"
                       "\tsetAttr \".n\" -type \"string\" \"" +
                       text +
                       "\";\n"
                       "createNode transform -n \"a\" -p \"" +
                       text +
                       "\";\n"
                       "connectAttr \"" +
                       text + ".tx\" \"a.tx\";\n// End of x\n"),
                  "")
            << codes;
        ASSERT_FALSE(node(name).isNull()) << codes;
        EXPECT_EQ(scene().text(plug(std::string(name) + ".n")), name);
        EXPECT_EQ(scene().source(plug("a.tx")), plug(std::string(name) + ".tx")) << codes;
        EXPECT_EQ(told.find("code page") != told.npos, std::string(codes) == "made-up") << told;
        EXPECT_EQ(told.find("skipped"), told.npos) << told;
        EXPECT_NE(saved().find("//Codeset: UTF-8\n"), std::string::npos);
        expectStable(codes);
    }
}

TEST_F(SceneReader, AConnectionGivenTwiceIsOne) {
    ASSERT_EQ(
        openBody("createNode transform -n \"a\";\ncreateNode transform -n \"b\";\n"
                 "connectAttr \"a.tx\" \"b.tx\";\nconnectAttr \"a.tx\" \"b.tx\";\n"
                 "connectAttr \"a.odd\\\\\" \"b.even\";\nconnectAttr \"a.odd\\\\\" \"b.even\";\n"),
        "");
    EXPECT_EQ(told, "");
    EXPECT_EQ(scene().allConnections().size(), 2u);
    expectStable();
}

TEST_F(SceneReader, LongFlagNamesAreTheSame) {
    ASSERT_EQ(
        openBody(
            "currentUnit -linear centimeter -angle degree -time film;\n"
            "createNode transform -shared -name \"persp\";\n\trename -uuid \"AB\";\n"
            "createNode transform -name \"a\" -skipSelect;\n"
            "\taddAttr -cachedInternally true -keyable true -shortName \"w\" -longName \"weight\" "
            "-defaultValue 0.5 -minValue 0 -maxValue 1 -attributeType \"double\";\n"
            "\tsetAttr -lock on -keyable off \".translateX\" 4;\n\tsetAttr -alteredValue "
            "\".weight\" 0.25;\n"
            "createNode transform -name \"b\" -parent \"a\";\n"
            "connectAttr -force \"a.weight\" \"b.translateY\";\n"),
        "");
    EXPECT_EQ(scene().node(node("persp"))->uuid, "AB");
    EXPECT_TRUE(scene().isLocked(plug("a.tx")));
    EXPECT_FALSE(scene().isKeyable(plug("a.tx")));
    EXPECT_EQ(number("a.tx"), 4.0);
    EXPECT_EQ(number("b.ty"), 0.25);
    EXPECT_EQ(scene().info(plug("a.w")).maximum, 1.0);
    EXPECT_EQ(told, "");
}

TEST_F(SceneReader, AddAttrMakesCompoundsEnumsAndArrays) {
    ASSERT_EQ(
        openBody(
            "createNode transform -n \"a\";\n"
            "\taddAttr -ci true -sn \"up\" -ln \"upVector\" -at \"double3\" -nc 3;\n"
            "\taddAttr -ci true -sn \"upX\" -ln \"upVectorX\" -at \"double\" -p \"upVector\";\n"
            "\taddAttr -ci true -sn \"upY\" -ln \"upVectorY\" -at \"double\" -p \"up\";\n"
            "\taddAttr -ci true -sn \"upZ\" -ln \"upVectorZ\" -at \"double\" -p \"up\";\n"
            "\taddAttr -ci true -sn \"side\" -ln \"side\" -min 0 -max 2 -en \"Centre:Left:Right\" "
            "\n"
            "\t\t-at \"enum\";\n"
            "\taddAttr -ci true -m -sn \"d\" -ln \"data\" -at \"double\";\n"
            "\taddAttr -ci true -sn \"note\" -ln \"note\" -dt \"string\";\n"
            "\tsetAttr \".up\" -type \"double3\" 7 8 9 ;\n\tsetAttr -k on \".side\" 2;\n"
            "\tsetAttr -s 3 \".d[2:4]\" 1.5 2.5\n\t\t3.5;\n\tsetAttr \".d[9]\" 6;\n"
            "\tsetAttr \".note\" -type \"string\" (\"a \\\"b\\\"\\n\"\n\t\t+ \"c;\");\n"),
        "");
    EXPECT_EQ(number("a.upVectorZ"), 9.0);
    EXPECT_EQ(number("a.side"), 2.0);
    EXPECT_EQ(scene().info(plug("a.side")).enumNames,
              (std::vector<std::string>{"Centre", "Left", "Right"}));
    EXPECT_EQ(scene().elementIndices(plug("a.d")), (std::vector<std::int32_t>{2, 3, 4, 9}));
    EXPECT_EQ(number("a.data[3]"), 2.5);
    EXPECT_EQ(scene().text(plug("a.note")), "a \"b\"\nc;");
    const std::string text = saved();
    EXPECT_NE(text.find("setAttr -s 3 \".d[2:4]\" 1.5 2.5 3.5;"), std::string::npos) << text;
    EXPECT_NE(text.find("setAttr \".note\" -type \"string\" \"a \\\"b\\\"\\nc;\";"),
              std::string::npos)
        << text;
    expectStable();
}

TEST_F(SceneReader, UnknownAttributesAndNodesAreKeptWordForWord) {
    const std::string kept =
        "\tsetAttr \".someFutureThing[0:1].odd\" -type \"whoKnows\" {\"a\",\"b;\"} 1 2;\n";
    const std::string shape =
        "createNode lavaLamp -n \"lampShape\" -p \"a\";\n\tsetAttr \".heat\" 5;\n";
    ASSERT_EQ(openBody("createNode transform -n \"a\";\n" + kept + shape +
                       "createNode bubbler -n \"bub\";\n\tsetAttr -s 2 \".in\";\n"
                       "createNode lampGroup -n \"grp\" -p \"a\";\ncreateNode transform -n "
                       "\"below\" -p \"grp\";\n"
                       "connectAttr \"bub.out[3].x\" \"a.tx\";\nconnectAttr \"lampShape.heat\" "
                       "\"bub.in[0]\";\n"),
              "");
    const std::string text = saved();
    for (const std::string& part :
         {kept, shape, std::string("createNode bubbler -n \"bub\";\n\tsetAttr -s 2 \".in\";\n"),
          std::string("createNode lampGroup -n \"grp\" -p \"a\";\n"),
          std::string("connectAttr \"bub.out[3].x\" \"a.tx\";\n"),
          std::string("connectAttr \"lampShape.heat\" \"bub.in[0]\";\n")})
        EXPECT_NE(text.find(part), std::string::npos) << part << text;
    EXPECT_NE(told.find("3 nodes kept, not evaluated: bubbler, lampGroup, lavaLamp"),
              std::string::npos)
        << told;
    expectStable();
}

TEST_F(SceneReader, NextAvailableOfUnknownAttributesKeepsAllConnections) {
    const std::string lines =
        "connectAttr \"a.msg\" \":oddList.s\" -na;\nconnectAttr \"b.msg\" \":oddList.s\" -na;\n";
    ASSERT_EQ(
        openBody(
            "createNode transform -n \"a\";\ncreateNode transform -n \"b\";\nselect -ne :oddList;\n"
            "\tsetAttr -s 2 \".s\";\n" +
            lines),
        "");
    const std::string text = saved();
    EXPECT_NE(text.find(lines), std::string::npos) << text;
    EXPECT_NE(text.find("select -ne :oddList;\n\tsetAttr -s 2 \".s\";\n"), std::string::npos)
        << text;
    EXPECT_EQ(told, "");
    expectStable();
}

TEST_F(SceneReader, InstancesStandUnderBothParents) {
    ASSERT_EQ(openBody("createNode transform -n \"a\";\ncreateNode mesh -n \"s\" -p \"a\";\n"
                       "createNode transform -n \"b\";\nparent -s -nc -r -add \"|a|s\" \"b\" ;\n"),
              "");
    EXPECT_EQ(scene().instanceCount(node("s")), 2);
    EXPECT_NE(saved().find("parent -s -nc -r -add \"|a|s\" \"b\" ;\n"), std::string::npos);
    expectStable();
}

TEST_F(SceneReader, NodesOfOneNameInTwoPlacesAreToldApart) {
    ASSERT_EQ(openBody("createNode transform -n \"a\";\ncreateNode transform -n \"x\" -p \"a\";\n"
                       "createNode transform -n \"b\";\ncreateNode transform -n \"x\" -p \"b\";\n"
                       "connectAttr \"a|x.tx\" \"b|x.ty\";\n"),
              "");
    EXPECT_EQ(scene().source(plug("b|x.ty")), plug("a|x.tx"));
    EXPECT_NE(saved().find("connectAttr \"a|x.tx\" \"b|x.ty\";"), std::string::npos) << saved();
    expectStable();
}

TEST_F(SceneReader, CarriageReturnsAndMarkOfTheTextChangeNothing) {
    const std::string body =
        "//Maya ASCII 2024 scene\nrequires maya \"2024\";\ncreateNode transform -n \"a\";\n"
        "\tsetAttr \".t\" -type \"double3\" 1 2 \n\t\t3 ;\n\tsetAttr \".zzz\" 1\n\t\t2;\n// End of "
        "a.ma\n";
    ASSERT_EQ(open(body), "");
    const std::string text = saved();
    std::string dos = "\xEF\xBB\xBF";
    for (char c : body)
        dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    ASSERT_EQ(open(dos), "");
    EXPECT_EQ(saved(), text);
}

TEST_F(SceneReader, WhatCannotBeUsedIsSkippedWithItsLine) {
    ASSERT_EQ(openBody("createNode transform -n \"a\";\n\tsetAttr -zap \".tx\" 3;\n"
                       "connectAttr \"gone.tx\" \"a.ty\";\ncurrentTime 5;\n"),
              "");
    EXPECT_EQ(number("a.tx"), 3.0);
    EXPECT_NE(told.find("3 statements skipped"), std::string::npos) << told;
    EXPECT_NE(told.find("line 3: setAttr: unknown flag -zap"), std::string::npos) << told;
    EXPECT_NE(told.find("line 4: connectAttr: no attribute 'gone.tx'"), std::string::npos) << told;
    EXPECT_NE(saved().find("connectAttr \"gone.tx\" \"a.ty\";"), std::string::npos);
}

TEST_F(SceneReader, ReferencesAreKeptAndReported) {
    const std::string line =
        "file -r -ns \"n\" -dr 1 -rfn \"nRN\" -typ \"mayaAscii\" \"C:/gone/model.ma\";\n";
    ASSERT_EQ(
        openBody("file -rdi 1 -ns \"n\" -rfn \"nRN\" -typ \"mayaAscii\" \"C:/gone/model.ma\";\n" +
                 line + "createNode transform -n \"n:x\" -p \"n:gone\";\n"),
        "");
    EXPECT_NE(told.find("reference not read in: C:/gone/model.ma"), std::string::npos) << told;
    EXPECT_NE(saved().find(line), std::string::npos);
    EXPECT_EQ(scene().names().fullPath(node("n:x")), "|n:x");
}

TEST_F(SceneReader, LocksComeBackEvenOnConnectedPlugs) {
    const std::string line = "connectAttr \"a.ty\" \"a.tx\" -l on;\n";
    ASSERT_EQ(openBody("createNode transform -n \"a\";\n\tsetAttr -l on \".sx\" 2;\n" + line +
                       "lockNode -l 1 ;\n"),
              "");
    EXPECT_TRUE(scene().isLocked(plug("a.tx")));
    EXPECT_TRUE(scene().isLocked(plug("a.sx")));
    EXPECT_TRUE(scene().node(node("a"))->locked);
    const std::string text = saved();
    EXPECT_NE(text.find(line), std::string::npos) << text;
    EXPECT_NE(text.find("setAttr -l on \".sx\" 2;\n"), std::string::npos) << text;
    EXPECT_NE(text.find("lockNode -l 1;\n"), std::string::npos) << text;
    expectStable();
}

TEST_F(SceneReader, BothFormsOfWeightsGiveTheSame) {
    const std::string head = "createNode skinCluster -n \"s\";\n";
    ASSERT_EQ(
        openBody(
            head +
            "\tsetAttr -s 2 \".wl\";\n\tsetAttr \".wl[0:1].w\"\n\t\t2 0 0.25 2 0.75\n\t\t1 1 1;\n"),
        "");
    EXPECT_EQ(number("s.weightList[0].weights[2]"), 0.75);
    EXPECT_EQ(number("s.weightList[1].weights[1]"), 1.0);
    const std::string newer = saved();
    ASSERT_EQ(openBody(head + "\tsetAttr -s 2 \".wl[0].w\";\n\tsetAttr \".wl[0].w[0]\" 0.25;\n"
                              "\tsetAttr \".wl[0].w[2]\"  0.75;\n\tsetAttr \".wl[1].w[1:1]\" 1;\n"),
              "");
    EXPECT_EQ(saved(), newer);
    expectStable();
}

TEST_F(SceneReader, MeshPointsMayComeInSeveralStatements) {
    ASSERT_EQ(openBody("createNode transform -n \"a\";\ncreateNode mesh -n \"s\" -p \"a\";\n"
                       "\tsetAttr -s 4 \".vt\";\n\tsetAttr \".vt[0:1]\" 0 0 0 1 0 0;\n\tsetAttr "
                       "\".vt[2:3]\" 1 1 0 0 1 0;\n"
                       "\tsetAttr -s 4 \".ed[0:3]\" 0 1 0 1 2 0 2 3 0 3 0 0;\n"
                       "\tsetAttr -ch 4 \".fc[0]\" -type \"polyFaces\" f 4 0 1 2 3;\n"),
              "");
    EXPECT_EQ(number("s.vt[2].vx"), 1.0);
    EXPECT_EQ(number("s.vt[3].vy"), 1.0);
    expectStable();
}

}  // namespace
}  // namespace torvel::test
