#pragma once

#include <string>

#include "files/ma/units.h"
#include "graph/scene.h"

namespace torvel {

/// Writes what stands inside one node's block of a file: uid, addAttr, kept statements and set
/// values, each statement on a line of its own behind a tab. What a connection hides is written,
/// too: the value that the plug falls back to without it.
class BlockWriter {
  public:
    BlockWriter(const Scene& scene, const FileUnits& units, std::string& out)
        : m_scene(scene), m_units(units), m_out(out) {}

    void write(const Node& node, bool withUid);

  private:
    void attribute(const Node& node, AttrIndex attr);
    void value(const Plug& plug, const std::string& path);
    void array(const Plug& plug, const std::string& path);
    void compound(const Plug& plug, const std::string& path, const std::string& flags);
    void single(const Plug& plug, const std::string& path, const std::string& flags, bool hasValue);
    void run(const std::string& path, const Plug& first, const std::vector<std::int32_t>& run);
    void line(const std::string& flags, const std::string& path, const std::string& value);

    bool isPlain(const Plug& plug, bool& set) const;
    int leaves(const Plug& plug) const;
    void appendRow(std::string& text, const Plug& plug) const;
    std::string flagsOf(const Plug& plug) const;
    bool isDriven(const Plug& plug) const;

    const Scene& m_scene;
    const FileUnits& m_units;
    std::string& m_out;
};

}  // namespace torvel
