// The command shadingNode: a node that also stands in one of the scene's render lists.
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kShadingFlags[] = {
    {"asLight", "al"},   {"asPostProcess", "app"}, {"asRendering", "ar"}, {"asShader", "as"},
    {"asTexture", "at"}, {"asUtility", "au"},      {"name", "n", "s"},    {"parent", "p", "s"},
    {"shared", "s"},     {"skipSelect", "ss"},
};

struct RenderList {
    const char* flag;
    const char* node;
    const char* attr;
};
constexpr RenderList kLists[] = {
    {"asUtility", "defaultRenderUtilityList1", "utilities"},
    {"asShader", "defaultShaderList1", "shaders"},
    {"asTexture", "defaultTextureList1", "textures"},
    {"asLight", "lightList1", "lights"},
    {"asRendering", "defaultRenderingList1", "rendering"},
    {"asPostProcess", "postProcessList1", "postProcesses"},
};

const RenderList* listOf(const CommandCall& call) {
    for (const RenderList& list : kLists)
        if (call.has(list.flag))
            return &list;
    return nullptr;
}

std::vector<RawFlag> flagsForCreation(const CommandCall& call) {
    std::vector<RawFlag> flags;
    for (const char* name : {"name", "parent"})
        if (call.has(name))
            flags.push_back({name, {Value(call.text(name))}, false});
    for (const char* name : {"shared", "skipSelect"})
        if (call.has(name))
            flags.push_back({name, {}, false});
    return flags;
}

bool stands(const Scene& scene, const Plug& message, const Plug& array) {
    for (const Plug& target : scene.targets(message))
        if (target.node == array.node && target.attr == array.attr)
            return true;
    return false;
}

void enter(Scene& scene, NodeHandle made, const RenderList& list) {
    const NodeHandle holder = scene.names().lookUp(list.node);
    const Plug array = scene.findPlug(holder, list.attr), message = scene.findPlug(made, "message");
    if (!array.isNull() && !stands(scene, message, array))
        ignore(scene.connect(message, scene.element(array, scene.nextAvailable(array))));
}

Status shadingNode(const CommandCall& call, Value& result) {
    const std::vector<std::string> texts = call.texts();
    const RenderList* list = listOf(call);
    if (texts.size() != 1)
        return call.fail("Needs one type of node.");
    if (!list)
        return call.fail(
            "Needs one of the flags asLight, asPostProcess, asRendering, asShader, asTexture, "
            "asUtility.");
    Scene& scene = call.scene();
    const NodeType* type = scene.types().find(texts[0]);
    if (!type || type->is(kAbstractType))
        return call.fail("Unknown object type: " + texts[0]);
    if (Status done =
            call.session().call("createNode", flagsForCreation(call), {Value(texts[0])}, result);
        !done)
        return done;
    NodeHandle made;
    if (Status found = scene.names().findOne(result.string(), made); !found)
        return found;
    enter(scene, made, *list);
    return Status::ok();
}

const Command kShadingCommands[] = {{"shadingNode", kShadingFlags, countOf(kShadingFlags),
                                     shadingNode, "Makes a node of the render lists."}};

}  // namespace

CommandTable shadingCommands() {
    return {kShadingCommands, std::size(kShadingCommands)};
}

}  // namespace torvel
