#include <gtest/gtest.h>

#include "host/ui/desktop.h"
#include "ui/desktop/outliner.h"

namespace torvel {
namespace {

using test::Desktop;

QTreeWidgetItem* item(const QTreeWidget& tree, const QString& name) {
    const auto found = tree.findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

struct OutlinerTest : testing::Test {
    OutlinerTest() {
        host().make("joint", "hip");
        host().make("joint", "knee", "hip");
        tree = std::make_unique<Outliner>(host().scene());
        tree->show();
        QApplication::processEvents();
    }
    test::TestScene& host() { return desktop.host; }

    Desktop desktop;
    std::unique_ptr<Outliner> tree;
};

TEST_F(OutlinerTest, ShowsTheHierarchy) {
    ASSERT_EQ(tree->topLevelItemCount(), 1);
    ASSERT_NE(item(*tree, "knee"), nullptr);
    EXPECT_EQ(item(*tree, "knee")->parent(), item(*tree, "hip"));
}

TEST_F(OutlinerTest, FollowsEditsOnceTheSceneIsAtRest) {
    host().make("joint", "ankle", "knee");
    host().scene().rename(host().node("hip"), "thigh");
    EXPECT_EQ(item(*tree, "thigh"), nullptr);
    QApplication::processEvents();
    EXPECT_EQ(item(*tree, "hip"), nullptr);
    ASSERT_NE(item(*tree, "thigh"), nullptr);
    EXPECT_EQ(item(*tree, "ankle")->parent(), item(*tree, "knee"));
    host().scene().deleteNodes({host().node("thigh")});
    QApplication::processEvents();
    EXPECT_EQ(tree->topLevelItemCount(), 0);
}

TEST_F(OutlinerTest, AClickSelectsInTheScene) {
    tree->setCurrentItem(item(*tree, "knee"));
    EXPECT_EQ(host().scene().selection().nodes(), std::vector<NodeHandle>{host().node("knee")});
}

TEST_F(OutlinerTest, ShowsTheScenesSelection) {
    host().scene().selection().replaceNodes({host().node("hip"), host().node("knee")});
    QApplication::processEvents();
    EXPECT_TRUE(item(*tree, "hip")->isSelected());
    EXPECT_TRUE(item(*tree, "knee")->isSelected());
    host().scene().selection().clear();
    QApplication::processEvents();
    EXPECT_TRUE(tree->selectedItems().isEmpty());
}

}  // namespace
}  // namespace torvel
