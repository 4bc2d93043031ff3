#include "support/scene_script.h"

#include <cmath>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "graph/math.h"

namespace torvel::test {
namespace {

double numberOf(const std::string& word) {
    char* end = nullptr;
    const double value = std::strtod(word.c_str(), &end);
    const bool degrees = std::string_view(end) == "d";
    EXPECT_TRUE(end != word.c_str() && (degrees || !*end)) << "no number: " << word;
    return degrees ? value * kDegToRad : value;
}

}  // namespace

SceneScript::SceneScript(Scene& scene) : m_scene(scene) {
    m_nodes["time1"] = scene.timeNode();
}

NodeHandle SceneScript::node(const std::string& name) const {
    const auto found = m_nodes.find(name);
    EXPECT_NE(found, m_nodes.end()) << "no node " << name;
    return found == m_nodes.end() ? NodeHandle() : found->second;
}

void SceneScript::run(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(";\n", at), text.size());
        const std::string_view statement = text.substr(at, end - at);
        at = end + 1;
        std::istringstream source(std::string(statement.substr(0, statement.find('#'))));
        const Words words{std::istream_iterator<std::string>(source), {}};
        if (words.empty())
            continue;
        SCOPED_TRACE(statement);
        if (words.size() > 1 && words[1] == "==")
            expect(words);
        else if (words.size() > 1 && words[1][0] == '-' && words[1].size() == 2 &&
                 !std::isdigit(words[1][1]))
            wire(words);
        else if (words[0].find('.') != std::string::npos)
            set(words);
        else
            make(words);
    }
}

void SceneScript::make(const Words& words) {
    ASSERT_GE(words.size(), 2u);
    const NodeHandle parent = words.size() > 2 ? node(words[2]) : NodeHandle();
    const Status status = m_scene.createNode(words[0], words[1], parent, m_nodes[words[1]]);
    EXPECT_TRUE(status) << status.text();
}

void SceneScript::wire(const Words& words) {
    ASSERT_EQ(words.size(), 3u);
    const Plug from = plug(words[0]), to = plug(words[2]);
    const Status status =
        words[1] == "->" ? m_scene.connect(from, to) : m_scene.disconnect(from, to);
    EXPECT_TRUE(status) << status.text();
}

void SceneScript::set(const Words& words) {
    const Plug target = plug(words[0]);
    std::vector<double> values;
    for (std::size_t i = 1; i < words.size(); ++i)
        values.push_back(numberOf(words[i]));
    if (values.size() == 1)
        return m_scene.setNumber(target, values[0]);
    if (values.size() == 3)
        return m_scene.setVec3(target, {values[0], values[1], values[2]});
    ASSERT_EQ(values.size(), 16u);
    M44d matrix;
    std::copy(values.begin(), values.end(), matrix.getValue());
    m_scene.setMatrix(target, matrix);
}

void SceneScript::expect(const Words& words) const {
    double tolerance = 1e-12;
    std::vector<double> wanted;
    for (std::size_t i = 2; i < words.size(); ++i)
        if (words[i] == "~")
            tolerance = numberOf(words.at(++i));
        else
            wanted.push_back(numberOf(words[i]));
    const std::vector<double> got = numbers(words[0], wanted.size());
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_NEAR(got[i], wanted[i], tolerance) << "number " << i;
}

Plug SceneScript::plug(const std::string& path) const {
    const std::size_t dot = path.find('.');
    const Plug found = m_scene.findPlug(node(path.substr(0, dot)), path.substr(dot + 1));
    EXPECT_FALSE(found.isNull()) << "no plug " << path;
    return found;
}

std::vector<double> SceneScript::numbers(const std::string& path, std::size_t count) const {
    const bool position = path.find('.') == std::string::npos;
    const Plug asked = plug(position ? path + ".worldMatrix[0]" : path);
    if (asked.isNull())
        return {};
    if (count == 1)
        return {m_scene.number(asked)};
    if (m_scene.info(asked).type != AttrType::Matrix) {
        const V3d triple = m_scene.vec3(asked);
        return {triple.x, triple.y, triple.z};
    }
    const M44d matrix = m_scene.matrix(asked);
    const double* const first = matrix.getValue();
    return count == 3 ? std::vector<double>(first + 12, first + 15)
                      : std::vector<double>(first, first + 16);
}

}  // namespace torvel::test
