#include "edit/sets.h"

#include <algorithm>

namespace torvel {
namespace {

bool isMemberPlug(const Scene& scene, const Plug& plug) {
    const std::string& name = scene.info(plug).longName;
    return name == "dagSetMembers" || name == "dnSetMembers";
}

// The plug through which a node joins sets: DAG nodes by their instance, others by their message.
Plug memberSource(const Scene& scene, NodeHandle member) {
    if (!scene.node(member)->isDag())
        return scene.findPlug(member, "message");
    return scene.findPlug(member, "instObjGroups[0]");
}

std::vector<Scene::Connection> memberships(const Scene& scene, NodeHandle set) {
    std::vector<Scene::Connection> found;
    for (const Scene::Connection& c : scene.incoming(set))
        if (isMemberPlug(scene, c.target))
            found.push_back(c);
    return found;
}

}  // namespace

std::vector<SelectionItem> setMembers(const Scene& scene, NodeHandle set) {
    std::vector<SelectionItem> members;
    for (const Scene::Connection& c : memberships(scene, set)) {
        SelectionItem item;
        item.node = c.source.node;
        if (std::find(members.begin(), members.end(), item) == members.end())
            members.push_back(item);
    }
    return members;
}

Status addToSet(Scene& scene, NodeHandle set, NodeHandle member) {
    for (const SelectionItem& item : setMembers(scene, set))
        if (item.node == member)
            return Status::ok();
    const Plug array =
        scene.findPlug(set, scene.node(member)->isDag() ? "dagSetMembers" : "dnSetMembers");
    if (array.isNull())
        return Status::failure("sets: '" + scene.node(set)->name + "' takes no members");
    return scene.connect(memberSource(scene, member),
                         scene.element(array, scene.nextAvailable(array)));
}

void removeFromSet(Scene& scene, NodeHandle set, NodeHandle member) {
    for (const Scene::Connection& c : memberships(scene, set)) {
        if (c.source.node != member)
            continue;
        ignore(scene.disconnect(c.source, c.target));
        scene.removeElement(c.target);
    }
}

}  // namespace torvel
