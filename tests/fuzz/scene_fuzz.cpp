// Reads bytes as a scene, evaluates all of it, saves it and reads that again.
#include "fuzz_scene.h"

using namespace torvel;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    fuzz::FreshScene fresh;
    const std::string text = "//Maya ASCII 2024 scene\n" +
                             std::string(reinterpret_cast<const char*>(data), size) +
                             "\n// End of fuzz.ma\n";
    OpenReport report;
    if (!readSceneText(fresh.scene, text, "fuzz.ma", report))
        return 0;
    fuzz::evaluateAll(fresh.scene);
    fuzz::expectStable(fresh.scene);
    return 0;
}
