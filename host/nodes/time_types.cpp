// time and unitConversion.
#include "graph/evaluation.h"
#include "nodes/fn_numbers.h"
#include "nodes/node_table.h"
#include "nodes/node_types.h"
#include "nodes/rows.h"

namespace torvel {
namespace {

constexpr AttrRow kTimeAttrs[] = {
    attrRow("outTime", "o", AttrType::Time),
    attrRow("unwarpedTime", "unw", AttrType::Time),
    attrRow("enableTimewarp", "etw", AttrType::Bool),
    attrRow("timecodeProductionStart", "tps", AttrType::Time),
    attrRow("timecodeMayaStart", "tms", AttrType::Time),
};

constexpr AttrRow kConversionAttrs[] = {
    attrRow("input", "i", AttrType::Double, 0.0, 0, "output"),
    attrRow("conversionFactor", "cf", AttrType::Double, 1.0, 0, "output"),
    attrRow("output", "o", AttrType::Double, 0.0, kOutput | kNotStored),
};

void convert(Evaluation& e)
{
    static const NodeType& type = *nodeTypes().find("unitConversion");
    static const AttrIndex input = type.byName.at("input"), factor = type.byName.at("conversionFactor");
    e.set(e.output(), e.number(input) * e.number(factor));
}

}  // namespace

const NodeTypeRow kTimeNode = typeRow("time", "dependNode", fn::kTime, "kTime", kTimeAttrs, kUniqueType);
const NodeTypeRow kUnitConversion = typeRow("unitConversion", "dependNode", fn::kUnitConversion, "kUnitConversion",
                                            kConversionAttrs, 0, convert);

}  // namespace torvel
