// Texts that a scene runs itself, where it is trusted (files/script_nodes.h).
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/core/rows.h"

namespace torvel {
namespace {

constexpr AttrRow kAttrs[] = {
    attrRow("after", "a", AttrType::String),
    attrRow("before", "b", AttrType::String),
    enumRow("scriptType", "st",
            "Demand:Open/Close:GUI Open/Close:UI Configuration:Software Render:Software Frame "
            "Render:Scene Configuration:Time Changed"),
    enumRow("sourceType", "stp", "MEL:Python"),
    attrRow("ignoreReferenceEdits", "ire", AttrType::Bool),
};

constexpr TypeAttrs kScript("script", kDependNode, kAttrs);
constexpr NodeTypeRow kTypes[] = {typeRow(kScript, fn::kDependencyNode, "kDependencyNode")};

}  // namespace

TypeRows scriptTypes() {
    return family(kTypes);
}

}  // namespace torvel
