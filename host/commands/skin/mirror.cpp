// The two sides of a character: names, places and points.
#include <cmath>

#include "commands/skin/binding.h"
#include "commands/skin/copy.h"
#include "commands/skin/surface.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

// Points nearer than this stand on the plane.
constexpr double kOnPlane = 1e-5;

struct Sides {
    const char* left;
    const char* right;
    bool wholePart;  ///< only between "_", ":" or the ends of the name
};

constexpr Sides kSides[] = {
    {"left", "right", false}, {"Left", "Right", false}, {"LEFT", "RIGHT", false},
    {"L", "R", true},         {"l", "r", true},         {"Lf", "Rt", true},
    {"lf", "rt", true},       {"LF", "RT", true},
};

bool standsAlone(const std::string& name, std::size_t at, std::size_t length) {
    const auto ends = [&](std::size_t i) {
        return i >= name.size() || name[i] == '_' || name[i] == ':';
    };
    return (at == 0 || ends(at - 1)) && ends(at + length);
}

// "right" in "leg_right" and "rightLeg", not in "upright".
bool startsWord(const std::string& name, std::size_t at) {
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    return at == 0 || !isLower(name[at]) || !isLower(name[at - 1]);
}

bool swapped(std::string& name, const std::string& from, const std::string& to, bool wholePart) {
    for (std::size_t at = name.find(from); at != std::string::npos; at = name.find(from, at + 1))
        if (wholePart ? standsAlone(name, at, from.size()) : startsWord(name, at)) {
            name.replace(at, from.size(), to);
            return true;
        }
    return false;
}

}  // namespace

std::string otherSideName(const std::string& name) {
    std::string other = name;
    for (const Sides& sides : kSides)
        if (swapped(other, sides.left, sides.right, sides.wholePart) ||
            swapped(other, sides.right, sides.left, sides.wholePart))
            return other;
    return name;
}

V3d mirrored(const V3d& point, MirrorPlane plane) {
    V3d out = point;
    if (plane != MirrorPlane::None)
        out[static_cast<int>(plane) - 1] *= -1.0;
    return out;
}

int mirrorSide(const V3d& point, const CopyOptions& options) {
    if (options.plane == MirrorPlane::None)
        return 1;
    const double across =
        point[static_cast<int>(options.plane) - 1] * (options.inverse ? 1.0 : -1.0);
    return across > kOnPlane ? 1 : across < -kOnPlane ? -1 : 0;
}

Status countMirror(const Scene& scene, NodeHandle target, const CopyOptions& options,
                   MirrorCount& out) {
    SkinSurface surface;
    if (const Status read = SkinSurface::read(scene, target, surface); !read)
        return read;
    out = {};
    for (const V3d& point : surface.points()) {
        const int side = mirrorSide(point, options);
        ++(side > 0 ? out.written : side < 0 ? out.kept : out.onPlane);
    }
    return Status::ok();
}

std::vector<InfluencePair> matchInfluences(const Scene& scene, NodeHandle source, NodeHandle target,
                                           const CopyOptions& options) {
    const std::vector<Influence> from = influencesOf(scene, source),
                                 to = influencesOf(scene, target);
    std::vector<V3d> places;
    for (const Influence& each : to)
        places.push_back(worldPosition(scene, each.node));
    const auto partner = [&](std::size_t i, InfluenceMatch match) {
        const V3d wanted = mirrored(worldPosition(scene, from[i].node), options.plane);
        const std::string& own = scene.node(from[i].node)->name;
        const std::string name = options.plane == MirrorPlane::None ? own : otherSideName(own);
        std::size_t found = to.size();
        double least = 1e300;
        for (std::size_t k = 0; k < to.size(); ++k) {
            const double distance =
                match == InfluenceMatch::ByClosest ? (wanted - places[k]).length2() : 0.0;
            const bool hit = match == InfluenceMatch::ByOrder ? i == k
                             : match == InfluenceMatch::ByName
                                 ? scene.node(to[k].node)->name == name
                                 : true;
            if (hit && distance < least) {
                least = distance;
                found = k;
            }
        }
        return found < to.size() ? to[found].logical : -1;
    };
    std::vector<InfluencePair> pairs;
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::int32_t found = -1;
        for (std::size_t m = 0; m < options.matches.size() && found < 0; ++m)
            found = partner(i, options.matches[m]);
        pairs.push_back({from[i].logical, found});
    }
    return pairs;
}

}  // namespace torvel
