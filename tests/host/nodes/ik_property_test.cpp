// What holds for every chain, target, pole and twist, whatever the numbers.
#include <algorithm>
#include <cmath>

#include "ik_scene.h"

namespace torvel::test {
namespace {

bool isFinite(const M44d& m) {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (!std::isfinite(m[i][j]))
                return false;
    return true;
}

class IkProperties : public IkScene {
  protected:
    struct Chain {
        std::vector<NodeHandle> joints;  // the end joint last
        NodeHandle handle;
        double length = 0.0;
        double shortest = 0.0;  // of the bones
        double longest = 0.0;
    };

    // Bones along x, bent to one side in one plane by joint orient, in a turned frame of any rotate
    // orders.
    Chain planar(Dice& dice, int bones) {
        Chain chain;
        const NodeHandle frame = make("transform", "frame");
        set(frame, "translate", dice.in(-5, 5), dice.in(-5, 5), dice.in(-5, 5));
        setDegrees(frame, "rotate", dice.in(-180, 180), dice.in(-80, 80), dice.in(-180, 180));
        NodeHandle at = frame;
        const double roll = dice.in(-180, 180);
        chain.shortest = 1e9;
        double before = 0.0;
        for (int k = 0; k <= bones; ++k) {
            const V3d offset = k == 0 ? dice.vector(3.0) : V3d(before, 0.0, 0.0);
            at = joint(("j" + std::to_string(k)).c_str(), at, offset);
            chain.joints.push_back(at);
            set(at, "rotateOrder", dice.below(6));
            if (k == 0)
                setDegrees(at, "jointOrient", roll, dice.in(-60, 60), dice.in(-180, 180));
            else if (k < bones)
                setDegrees(at, "jointOrient", 0, 0, bones == 2 ? dice.in(5, 120) : dice.in(25, 40));
            setDegrees(at, "rotateAxis", k == 0 ? dice.in(-30, 30) : 0.0, 0, 0);
            before = dice.in(0.5, 3.0);
            if (k < bones) {
                chain.length += before;
                chain.shortest = std::min(chain.shortest, before);
                chain.longest = std::max(chain.longest, before);
            }
        }
        chain.handle = handleOn(chain.joints.front(), chain.joints.back());
        return chain;
    }
    void aim(const Chain& chain, const V3d& target, const V3d& pole, double twist = 0.0) {
        set(chain.handle, "translate", target.x, target.y, target.z);
        set(chain.handle, "poleVector", pole.x, pole.y, pole.z);
        set(chain.handle, "twist", twist);
    }
    V3d end(const Chain& chain) const { return position(chain.joints.back()); }
    V3d root(const Chain& chain) const { return position(chain.joints.front()); }
    // The joint farthest from the line between the ends.
    V3d knee(const Chain& chain) const {
        const V3d line = (end(chain) - root(chain)).normalized();
        V3d found;
        double most = -1.0;
        for (NodeHandle j : chain.joints) {
            const V3d at = position(j) - root(chain);
            const double off = (at - line * at.dot(line)).length();
            if (off > most) {
                most = off;
                found = position(j);
            }
        }
        return found;
    }
    void expectFinite(const Chain& chain) {
        for (NodeHandle j : chain.joints)
            EXPECT_TRUE(isFinite(worldMatrix(scene, j))) << scene.node(j)->name;
    }
    void clear() { scene.clear(); }
};

TEST_F(IkProperties, ReachesWhatIsInRangeWithTheKneeOnThePoleSide) {
    Dice dice(11);
    for (int run = 0; run < 300; ++run) {
        const int bones = 2 + dice.below(run % 3 == 0 ? 5 : 1);
        const Chain chain = planar(dice, bones);
        const double nearest = bones == 2 ? chain.longest - chain.shortest : 0.8 * chain.length;
        const V3d way = dice.direction();
        const V3d target = root(chain) + way * dice.in(nearest + 0.02, chain.length * 0.995);
        V3d pole = dice.direction();
        while (pole.cross(way).length() < 0.1)
            pole = dice.direction();
        const double twist = run % 2 ? 0.0 : dice.in(-3.0, 3.0);
        aim(chain, target, pole, twist);
        EXPECT_LE((end(chain) - target).length(), 1e-9 * chain.length)
            << "run " << run << ", bones " << bones;
        M44d turn;
        turn.setAxisAngle(way, twist);
        EXPECT_LE(sideError(root(chain), knee(chain), end(chain), pole * turn), 1e-6)
            << "run " << run;
        clear();
    }
}

TEST_F(IkProperties, IsStraightTowardsWhatIsOutOfRange) {
    Dice dice(12);
    for (int run = 0; run < 100; ++run) {
        const Chain chain = planar(dice, 2 + dice.below(5));
        const V3d way = dice.direction();
        aim(chain, root(chain) + way * chain.length * dice.in(1.0, 4.0), dice.direction(),
            dice.in(-3.0, 3.0));
        expectNear(end(chain), root(chain) + way * chain.length, 1e-9 * chain.length);
        clear();
    }
}

TEST_F(IkProperties, IsFoldedTowardsWhatIsTooNear) {
    Dice dice(13);
    for (int run = 0; run < 50; ++run) {
        const Chain chain = planar(dice, 2);
        const double nearest = chain.longest - chain.shortest;
        const V3d way = dice.direction();
        aim(chain, root(chain) + way * nearest * dice.in(0.1, 0.9), dice.direction());
        expectNear(end(chain), root(chain) + way * nearest, 1e-9);
        clear();
    }
}

TEST_F(IkProperties, HasNoHolesAtTheDegeneratePoints) {
    Dice dice(14);
    for (int run = 0; run < 60; ++run) {
        const Chain chain = planar(dice, 2 + dice.below(4));
        const V3d pole = dice.direction();
        aim(chain, root(chain), pole);  // target at the root
        expectFinite(chain);
        aim(chain, root(chain) + pole * 0.9 * chain.length, pole, 0.3);  // pole along the line
        expectFinite(chain);
        EXPECT_LE((end(chain) - root(chain) - pole * 0.9 * chain.length).length(),
                  1e-9 * chain.length);
        aim(chain, root(chain) + dice.direction(), V3d(0.0));  // no pole at all
        expectFinite(chain);
        set(chain.joints[1], "translate", 0, 0, 0);  // a bone without length
        aim(chain, root(chain) + dice.direction() * 0.3, pole);
        expectFinite(chain);
        set(chain.joints[0], "scale", 0, 1, 1);
        expectFinite(chain);
        for (NodeHandle j : chain.joints)
            set(j, "translate", 0, 0, 0);
        expectFinite(chain);
        clear();
    }
}

TEST_F(IkProperties, AStraightRestPoseOnlyAims) {
    const NodeHandle a = joint("a", {}, V3d(1, 2, 3)), b = joint("b", a, V3d(2, 0, 0)),
                     c = joint("c", b, V3d(2, 0, 0));
    const NodeHandle handle = handleOn(a, c);
    for (const V3d& way : {V3d(1, 0, 0), V3d(-1, 0, 0), V3d(0, 1, 0), V3d(0.6, 0, -0.8)}) {
        const V3d target = V3d(1, 2, 3) + way * 2.5;
        set(handle, "translate", target.x, target.y, target.z);
        expectNear(position(c), V3d(1, 2, 3) + way * 4.0);
        expectNear(position(b), V3d(1, 2, 3) + way * 2.0);
    }
}

TEST_F(IkProperties, MovesWithoutJumpsAlongALine) {
    Dice dice(15);
    for (int run = 0; run < 20; ++run) {
        const Chain chain = planar(dice, 2 + dice.below(4));
        const V3d side = dice.direction(), from = root(chain) + side * chain.length * 0.7;
        V3d way = dice.direction();
        way = (way - side * way.dot(side)).normalized();
        const V3d pole = side.cross(way);  // never along the line to the target
        constexpr int kSteps = 1000;
        std::vector<M44d> last;
        for (int i = 0; i <= kSteps; ++i) {
            aim(chain, from + way * chain.length * (2.0 * i / kSteps - 1.0), pole);
            std::vector<M44d> now;
            for (NodeHandle j : chain.joints)
                now.push_back(worldMatrix(scene, j));
            // Near the full stretch a bend grows like a square root, so a small step may turn much;
            // a flip turns far more.
            for (std::size_t k = 0; k < last.size(); ++k)
                EXPECT_TRUE(nearlyEqual(now[k], last[k], 0.25))
                    << "run " << run << " step " << i << " joint " << k;
            last = now;
        }
        clear();
    }
}

}  // namespace
}  // namespace torvel::test
