#include "files/ma/attr_path.h"

#include <charconv>
#include <limits>

namespace torvel {
namespace {

AttrPath::Cut readIndex(std::string_view text, PathStep& step) {
    const char* end = text.data() + text.size();
    std::from_chars_result r = std::from_chars(text.data(), end, step.first);
    if (r.ec == std::errc::result_out_of_range)
        return AttrPath::Cut::HugeIndex;
    if (r.ec != std::errc() || step.first < 0)
        return AttrPath::Cut::Malformed;
    step.last = step.first;
    if (r.ptr != end && *r.ptr == ':')
        r = std::from_chars(r.ptr + 1, end, step.last);
    if (r.ec == std::errc::result_out_of_range)
        return AttrPath::Cut::HugeIndex;
    if (r.ec != std::errc() || r.ptr != end)
        return AttrPath::Cut::Malformed;
    const bool fits =
        step.last <= std::numeric_limits<std::int32_t>::max() && step.last >= step.first;
    return fits ? AttrPath::Cut::Good : AttrPath::Cut::HugeIndex;
}

// A child by name, also below children that are no arrays.
AttrIndex findBelow(const Node& node, AttrIndex parent, std::string_view name) {
    for (AttrIndex child : node.attr(parent).children) {
        const AttrInfo& info = node.attr(child);
        if (info.shortName == name || info.longName == name)
            return child;
        if (!info.children.empty() && !info.isArray())
            if (const AttrIndex deeper = findBelow(node, child, name); deeper != kNoAttr)
                return deeper;
    }
    return kNoAttr;
}

// Enters the indices of one step; false when the step and the attribute do not agree.
bool enterStep(const AttrInfo& info, const PathStep& step, bool isLast, PathTarget& target) {
    if (!info.isArray())
        return step.first < 0;
    if (step.first < 0) {
        const bool whole = target.rangeDepth >= 0 || target.bulkLevel == 0;
        target.bulkInner = isLast && info.bulkOwner != kNoAttr && whole;
        return isLast;
    }
    const int depth = info.arrayDepth - 1;
    target.plug.index[depth] = static_cast<std::int32_t>(step.first);
    if (info.bulkOwner != kNoAttr)
        target.bulkLevel = depth;
    if (target.rangeDepth >= 0)
        return false;  // one range in a path
    if (step.last > step.first || info.bulkOwner == kNoAttr)
        target.rangeDepth = step.last > step.first ? depth : -1;
    target.first = step.first;
    target.last = step.last;
    return true;
}

}  // namespace

AttrPath::Cut AttrPath::cut(std::string_view text) {
    count = 0;
    while (true) {
        if (count == kMaxSteps)
            return Cut::Malformed;
        PathStep& step = steps[count++];
        step = PathStep();
        const std::size_t end = text.find_first_of(".[");
        step.name = text.substr(0, end);
        if (step.name.empty())
            return Cut::Malformed;
        if (end == std::string_view::npos)
            return Cut::Good;
        if (text[end] == '[') {
            const std::size_t close = text.find(']', end);
            if (close == std::string_view::npos)
                return Cut::Malformed;
            const Cut index = readIndex(text.substr(end + 1, close - end - 1), step);
            if (index != Cut::Good)
                return index;
            text.remove_prefix(close + 1);
            if (text.empty())
                return Cut::Good;
            if (text.front() != '.')
                return Cut::Malformed;
            text.remove_prefix(1);
        } else {
            text.remove_prefix(end + 1);
        }
    }
}

bool resolvePath(const Node& node, const AttrPath& path, PathTarget& target) {
    target = PathTarget();
    target.plug.node = node.self;
    AttrIndex at = kNoAttr;
    for (int i = 0; i < path.count; ++i) {
        at = i == 0 ? node.findAttr(path.steps[0].name) : findBelow(node, at, path.steps[i].name);
        if (at == kNoAttr || node.attr(at).is(kOpaque))
            return false;
        const AttrInfo& info = node.attr(at);
        const int outer = info.arrayDepth - (info.isArray() ? 1 : 0);
        if (i == 0 && outer > 0)
            return false;  // lies in an array that the path does not name
        if (!enterStep(info, path.steps[i], i + 1 == path.count, target))
            return false;
    }
    target.plug.attr = at;
    return true;
}

}  // namespace torvel
