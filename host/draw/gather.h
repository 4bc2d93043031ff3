#pragma once

#include <unordered_map>

#include "draw/painter.h"

namespace torvel {

/// Walks the DAG once and enters what shows into a ScenePainter.
class ScenePainter::Gatherer {
  public:
    Gatherer(const Scene& scene, ScenePainter& out);
    void run();

  private:
    /// What a node hands down to those below it.
    struct State {
        bool hasColor = false;
        QColor color;
        int displayType = 0;  ///< 0 normal, 1 template, 2 reference
        int chosen = 0;       ///< of the transform: 0 not, 1 selected, 2 selected last
        bool hilited = false;
    };
    struct Step {
        NodeHandle node;
        std::size_t depth;
        State state;
    };

    void collectChosen();
    int chosenOf(NodeHandle node) const;
    bool enter(NodeHandle node, State& state) const;
    void applyOverride(NodeHandle node, State& state) const;
    double number(NodeHandle node, const char* attr, double fallback = 0.0) const;
    Look look(const State& state, const QColor& plain) const;

    void addNode(NodeHandle node, const State& state, int instance);
    void addMesh(NodeHandle node, const State& state, const M44d& world);
    void addCurve(NodeHandle node, const State& state, const M44d& world);
    void addLocator(NodeHandle node, const State& state, const M44d& world);
    void addJoint(NodeHandle node, const State& state, const M44d& world);
    void addBone(const V3d& from, const V3d& to, double radius, const Look& look);
    void addBox(const M44d& world, double size, const Look& look);
    void addCross(const M44d& world, const V3d& center, const V3d& size, const Look& look);
    void addComponents();

    const Scene& m_scene;
    ScenePainter& m_out;
    std::unordered_map<std::uint32_t, int> m_chosen;  ///< looked up only, never walked
};

}  // namespace torvel
