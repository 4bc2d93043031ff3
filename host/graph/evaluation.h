#pragma once

#include "graph/scene.h"

namespace torvel {

/// What an evaluate function sees: its node's inputs (already up to date, connections followed) and
/// its outputs. It reads any plug, of whatever depth, kind or node, and is the way to take unless a
/// node is visited so often that finding the places counts. Two readers stand above it for those:
/// - QuickNode (nodes/core): numbers, vectors and matrices of the node itself, at most one array
///   deep. Nothing is kept between two visits.
/// - ConstraintInputs (nodes/constraint): one array of structures and the node's own attributes.
///   Where each input stands is kept until the scene's structure changes.
class Evaluation {
  public:
    Evaluation(Scene& scene, Node& node, AttrIndex output)
        : m_scene(scene), m_node(node), m_output(output) {}

    AttrIndex output() const { return m_output; }  ///< root attribute asked for
    Scene& scene() const { return m_scene; }
    Node& node() const { return m_node; }
    NodeHandle handle() const { return m_node.self; }
    Plug plug(AttrIndex attr) const { return Plug(m_node.self, attr); }
    Plug plug(AttrIndex attr, std::int32_t element) const {
        return Plug(m_node.self, attr, element);
    }

    double number(AttrIndex attr) const { return number(plug(attr)); }
    bool flag(AttrIndex attr) const { return number(attr) != 0.0; }
    V3d vec3(AttrIndex attr) const { return vec3(plug(attr)); }
    const M44d& matrix(AttrIndex attr) const { return matrix(plug(attr)); }
    double number(const Plug& plug) const;
    V3d vec3(const Plug& plug) const;
    /// Valid until the next edit of the graph.
    const M44d& matrix(const Plug& plug) const;
    PayloadPtr data(const Plug& plug) const;
    template <class T>
    std::shared_ptr<const T> dataAs(const Plug& plug) const {
        return std::dynamic_pointer_cast<const T>(data(plug));
    }
    std::size_t elementCount(AttrIndex arrayAttr) const;
    std::int32_t logicalAt(AttrIndex arrayAttr, std::size_t physical) const;

    // Outputs: write the value, mark it clean. The asked-for root output is marked clean by the
    // evaluator itself.
    void set(AttrIndex attr, double value) { set(plug(attr), value); }
    void set(AttrIndex attr, const V3d& value) { set(plug(attr), value); }
    void set(AttrIndex attr, const M44d& value) { set(plug(attr), value); }
    void set(AttrIndex attr, PayloadPtr value) { set(plug(attr), std::move(value)); }
    void set(const Plug& plug, double value);
    void set(const Plug& plug, const V3d& value);
    void set(const Plug& plug, const M44d& value);
    void set(const Plug& plug, PayloadPtr value);

  private:
    Scene& m_scene;
    Node& m_node;
    AttrIndex m_output;
};

}  // namespace torvel
