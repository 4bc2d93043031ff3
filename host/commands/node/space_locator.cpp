// The command spaceLocator: a transform with a locator shape below it.
#include "script/session.h"

namespace torvel {
namespace {

const FlagRow kLocatorFlags[] = {
    {"absolute", "a", "", kCreate},
    {"name", "n", "s", kCreate},
    {"position", "p", "lll", kCreate},
    {"relative", "r", "", kCreate},
};

// "hand" gives handShape, "hand1" gives handShape1.
std::string shapeNameFor(const std::string& transform) {
    const std::size_t digits = transform.find_last_not_of("0123456789") + 1;
    return transform.substr(0, digits) + "Shape" + transform.substr(digits);
}

// The position goes to the shape: the transform stays at the origin.
Status spaceLocator(const CommandCall& call, Value& result) {
    Scene& scene = call.scene();
    NodeHandle made, shape;
    const std::string name = call.text("name", scene.names().numbered("locator"));
    if (Status done = scene.createNode("transform", name, {}, made); !done)
        return done;
    if (Status done =
            scene.createNode("locator", shapeNameFor(scene.node(made)->name), made, shape);
        !done)
        return done;
    if (const FlagUse* at = call.use("position"); at && at->values.size() == 3)
        scene.setVec3(scene.findPlug(shape, "localPosition"),
                      {at->values[0].number(), at->values[1].number(), at->values[2].number()});
    scene.selection().replace(made);
    result = Value(Value::List{Value(scene.names().shortest(made))});
    return Status::ok();
}

const Command kLocatorCommands[] = {
    {"spaceLocator", kLocatorFlags, countOf(kLocatorFlags), spaceLocator, "Makes a locator."}};

}  // namespace

CommandTable locatorCommands() {
    return {kLocatorCommands, std::size(kLocatorCommands)};
}

}  // namespace torvel
