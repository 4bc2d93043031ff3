#include "commands/selection/targets.h"

#include <cstdlib>

#include "edit/placing.h"
#include "script/session.h"

namespace torvel {
namespace {

struct Unit {
    const char* name;
    double factor;
};

constexpr Unit kUnits[] = {{"", 1.0},   {"deg", 1.0}, {"rad", kRadToDeg}, {"cm", 1.0},
                           {"mm", 0.1}, {"m", 100.0}, {"in", 2.54},       {"ft", 30.48}};

bool textNumber(const std::string& text, double& value) {
    if (text.empty() || std::string("+-.0123456789").find(text.front()) == std::string::npos)
        return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    for (const Unit& unit : kUnits)
        if (end != text.c_str() && std::string(end) == unit.name) {
            value *= unit.factor;
            return true;
        }
    return false;
}

Target targetOfNode(const Scene& scene, NodeHandle node) {
    Target target;
    const bool shape = scene.node(node)->type->is(kShapeType);
    target.node = shape ? parentOf(scene, node) : node;
    return target;
}

void addItem(const Scene& scene, const SelectionItem& item, std::vector<Target>& out) {
    Target target = targetOfNode(scene, item.node);
    target.isPoints = pointsOfItem(scene, item, target.points);
    out.push_back(std::move(target));
}

Status addText(const CommandCall& call, const std::string& text, std::vector<Target>& out) {
    std::vector<SelectionItem> items;
    if (componentItems(call.scene(), text, items)) {
        for (const SelectionItem& item : items)
            addItem(call.scene(), item, out);
        return items.empty() ? Status::notFound("No object matches name: " + text) : Status::ok();
    }
    NodeHandle node;
    if (Status found = call.resolve(text, node); !found)
        return found;
    out.push_back(targetOfNode(call.scene(), node));
    return Status::ok();
}

}  // namespace

Status targetsOf(const CommandCall& call, std::vector<Target>& out) {
    bool named = false;
    double number = 0.0;
    for (const Value& value : call.args()) {
        if (!value.isString() || textNumber(value.string(), number))
            continue;
        named = true;
        if (Status found = addText(call, value.string(), out); !found)
            return found;
    }
    if (!named)
        for (const SelectionItem& item : call.scene().selection().items())
            if (item.plug.isNull())
                addItem(call.scene(), item, out);
    for (const Target& target : out)
        if (!isTransform(call.scene(), target.node))
            return call.fail("'" +
                             (call.scene().isValid(target.node)
                                  ? call.scene().node(target.node)->name
                                  : std::string("?")) +
                             "' has no transformation.");
    return out.empty() ? call.fail("No objects were named and nothing is selected.") : Status::ok();
}

std::vector<double> numbersOfCall(const CommandCall& call) {
    std::vector<double> numbers;
    double number = 0.0;
    for (const Value& value : call.args()) {
        if (value.isNumber())
            numbers.push_back(value.number());
        else if (value.isString() && textNumber(value.string(), number))
            numbers.push_back(number);
    }
    return numbers;
}

}  // namespace torvel
