// The recorded pages of cases/ as tests of this program, and what they may ask of a rig.

#include <fmt/format.h>

#include "plugin/fixtures/page_runner.h"
#include "plugin/fixtures/rig_compare.h"
#include "plugin/fixtures/toolkit_calls.h"

namespace torvel::test {

namespace {

// remember          takes the rig as it stands
// changed           what is no longer as remembered, by the words of differences()
// weights_kept CLUSTER
// turn PATH DEGREES turns a node about the world's z axis, at its place
// axis LETTER PATH  the world direction of an axis of the frame in which the channels turn
// expect_aimed PATH CHILD ORDER UP, expect_flipped LETTER LETTER PATH...   as in joint_frames.h
PageTools lendTools(PluginScene& scene) {
    PageTools tools;
    addToolkitCalls(scene, tools.calls);
    const auto remembered = std::make_shared<RigSnapshot>();
    tools.calls["remember"] = [&scene, remembered](const Lines&) {
        *remembered = snapshotOf(scene);
        return std::string();
    };
    tools.calls["changed"] = [&scene, remembered](const Lines&) {
        return differences(snapshotOf(scene), *remembered);
    };
    tools.calls["turn"] = [&scene](const Lines& words) {
        turnInWorld(scene, words.at(0), std::stod(words.at(1)));
        return std::string();
    };
    tools.calls["weights_kept"] = [&scene, remembered](const Lines& words) {
        const auto now = stateOf(scene).weights;
        return std::string(now.at(words.at(0)) == remembered->state.weights.at(words[0]) ? "yes"
                                                                                         : "no");
    };
    tools.calls["axis"] = [&scene](const Lines& words) {
        const V3d axis = rotationFrame(scene, words.at(1)).axes[words[0][0] - 'x'];
        return fmt::format("{:.6f} {:.6f} {:.6f}", axis.x + 0.0, axis.y + 0.0, axis.z + 0.0);
    };
    tools.calls["expect_aimed"] = [&scene](const Lines& words) {
        const Places places = placesOf(scene);
        expectAimed(rotationFrame(scene, words.at(0)), words.at(2), words.at(3),
                    places.at(words[1]) - places.at(words[0]));
        return std::string();
    };
    tools.calls["expect_flipped"] = [&scene, remembered](const Lines& words) {
        for (std::size_t i = 2; i < words.size(); ++i)
            expectFlipped(rotationFrame(scene, words[i]), remembered->frames.at(words[i]),
                          words[0][0], words[1][0], words[i]);
        return std::string();
    };
    return tools;
}

const bool kRegistered = registerPages<PluginScene>("tests/plugin/cases", lendTools);

}  // namespace

}  // namespace torvel::test
