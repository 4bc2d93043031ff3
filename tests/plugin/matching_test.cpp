#include "plugin/fixtures/rigs.h"
#include "toolkit/matching.h"

namespace torvel::test {

class MatchingTest : public PluginScene {};

TEST_F(MatchingTest, DifferentNamesPass) {
    makeChain(*this, {"a", "b"});
    EXPECT_TRUE(findDuplicateNames(objects({"|a", "|a|b"})));
    EXPECT_TRUE(findDuplicateNames(MObjectArray()));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(MatchingTest, OnlyTheFirstRepeatIsReported) {
    makeChain(*this, {"a", "b"});
    makeGroup(*this, "g");
    makeChain(*this, {"a", "b"}, "|g");
    EXPECT_FALSE(findDuplicateNames(objects({"|a", "|g|a", "|a|b", "|g|a|b"})));
    EXPECT_EQ(messages(),
              (Lines{"info: Hay dos elementos con el mismo nombre", "info: Nombre duplicado: a"}));
}

TEST_F(MatchingTest, UnreadableElementsDoNotFailTheCheck) {
    makeChain(*this, {"a"});
    MObjectArray nodes = objects({"|a"});
    nodes.append(MObject());
    EXPECT_TRUE(findDuplicateNames(nodes));
    EXPECT_EQ(messages(), Lines{"warning: No se pudo acceder al nombre del objeto en el índice 1"});
}

TEST_F(MatchingTest, TheLastNamesakeMatches) {
    makeChain(*this, {"a", "b"});
    makeGroup(*this, "g");
    makeChain(*this, {"b"}, "|g");
    EXPECT_EQ(matchJointsByName("b", objects({"|a|b", "|a", "|g|b"})), object("|g|b"));
    EXPECT_EQ(messages(), Lines{"info: Coincidencia encontrada: b"});
    forget();
    EXPECT_TRUE(matchJointsByName("B", objects({"|a|b"})).isNull());
    EXPECT_EQ(messages(), Lines{"info: No se encontró coincidencia para: B"});
}

TEST_F(MatchingTest, CandidatesOutsideTheDagAreSkipped) {
    EXPECT_TRUE(matchJointsByName("time1", objects({"time1"})).isNull());
    EXPECT_EQ(messages(), (Lines{"error: No se pudo obtener el nodo DAG.",
                                 "info: No se encontró coincidencia para: time1"}));
}

TEST_F(MatchingTest, SuffixesGoBelowTheRoot) {
    makeChain(*this, {"a", "b", "c"});
    makeGroup(*this, "pad", "|a");
    makeChain(*this, {"d"}, "|a|pad");
    forget();
    renameHierarchy(object("|a"), "_FK");
    EXPECT_EQ(transcript(),
              (Lines{"mel plain: rename \"|a|b\" b_FK;", "mel plain: rename \"|a|b_FK|c\" c_FK;",
                     "mel plain: rename \"|a|pad|d\" d_FK;"}));
    EXPECT_TRUE(exists("|a|b_FK|c_FK"));
    EXPECT_TRUE(exists("|a|pad|d_FK"));
}

TEST_F(MatchingTest, NothingToRename) {
    makeChain(*this, {"a"});
    forget();
    renameHierarchy(object("|a"), "_IK");
    EXPECT_EQ(transcript(), Lines{});
    renameHierarchy(MObject(), "_IK");
    EXPECT_EQ(transcript(), Lines{"error: No se pudo obtener el MDagPath del nodo raíz."});
}

}  // namespace torvel::test
