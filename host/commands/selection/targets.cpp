#include "commands/selection/targets.h"

#include "base/units.h"
#include "edit/placing.h"
#include "script/session.h"

namespace torvel {
namespace {

// "inf" and "nan" are names, too.
bool textNumber(const std::string& text, double& value) {
    return !text.empty() &&
           std::string_view("+-.0123456789").find(text.front()) != std::string::npos &&
           readMeasure(text, Measure::Any, value);
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
