#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "graph/scene.h"

namespace torvel::test {

/// Builds, changes and asks a scene by short texts. Statements are parted by ';' or line ends:
///
///     transform a p           a node of a type, its name, its parent if any
///     a.t -> b.t              connects;  a.t -x b.t  disconnects
///     a.t 1 2 3               sets a number, a triple or the 16 numbers of a matrix
///     a.rz 30d                d: degrees, kept as radians
///     b.t == 1 2 3            expects these numbers within 1e-12
///     b.t == 1 2 3 ~ 1e-9     expects them within 1e-9
///     b == 1 2 3              expects a node's world position
///     # text                  says why
///
/// Three numbers expected of a matrix are its translation. `time1` is there from the start. A
/// statement that fails adds a test failure that repeats it.
class SceneScript {
  public:
    explicit SceneScript(Scene& scene);
    void run(std::string_view text);
    NodeHandle node(const std::string& name) const;

  private:
    using Words = std::vector<std::string>;
    void make(const Words& words);
    void wire(const Words& words);
    void set(const Words& words);
    void expect(const Words& words) const;
    Plug plug(const std::string& path) const;
    std::vector<double> numbers(const std::string& path, std::size_t count) const;

    Scene& m_scene;
    std::map<std::string, NodeHandle> m_nodes;
};

}  // namespace torvel::test
