#pragma once

#include <string>
#include <string_view>

#include "base/number_source.h"
#include "files/ma/attr_path.h"
#include "files/ma/statement.h"
#include "files/ma/units.h"

namespace torvel {

/// Reads setAttr statements into a scene. Keeps the text of statements that name what the host does
/// not know, so that saving gives them back.
class AttrSetter {
  public:
    explicit AttrSetter(Scene& scene) : m_scene(scene) {}

    FileUnits units;
    std::size_t nonFinite = 0;  ///< infinities and NaNs read so far

    /// `statement` from its first word on; `current` is the node of plugs without one (".tx").
    /// A failure means that the statement is damaged; `warning` tells what was left out of a good
    /// one.
    Status read(std::string_view statement, NodeHandle current, std::string& warning);

  private:
    struct Flags {
        int lock = -1, keyable = -1, channelBox = -1;  ///< -1: not given
        std::string_view type;
    };

    Status readHead(TokenCursor& cursor, Flags& flags, std::string_view& plug,
                    std::string& warning);
    Status readFlag(TokenCursor& cursor, const Token& name, Flags& flags, std::string& warning);
    Status setValues(Node& node, const PathTarget& target, const Flags& flags,
                     std::string_view values, bool& known, std::string& warning);
    Status setBulk(const PathTarget& target, std::string_view values, bool& known);
    Status setNumbers(const Plug& plug, NumberSource& source);
    void setFlags(const PathTarget& target, const Flags& flags);
    bool fits(const Plug& plug, std::string_view type, std::string_view values) const;

    Scene& m_scene;
};

/// True for yes/on/true/1, false for no/off/false/0; fails on anything else.
bool wordToFlag(std::string_view word, bool& on);

}  // namespace torvel
