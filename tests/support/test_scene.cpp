#include "support/test_scene.h"

#include <utility>

#include <gtest/gtest.h>

#include "commands/tables.h"

namespace torvel::test {

RawFlag flag(std::string name, std::vector<Value> values) {
    RawFlag raw;
    raw.name = std::move(name);
    raw.values = std::move(values);
    return raw;
}

TestScene::TestScene() {
    if (!m_session.findCommand("createNode"))
        addSceneCommands(m_session);
    m_session.log().addSink([this](const LogLine& line) { m_lines.push_back(line); });
}

TestScene::~TestScene() = default;

Status TestScene::run(const std::string& command, const Args& args, const Flags& flags) {
    m_result = Value();
    return m_session.call(command, flags, args, m_result);
}

Value TestScene::call(const std::string& command, const Args& args, const Flags& flags) {
    const Status status = run(command, args, flags);
    EXPECT_TRUE(status.isOk()) << command << ": " << status.text();
    return m_result;
}

std::string TestScene::text(const std::string& command, const Args& args, const Flags& flags) {
    const Value value = call(command, args, flags);
    if (value.isString())
        return value.string();
    std::string joined;
    for (const std::string& item : textsOf(value))
        joined += (joined.empty() ? "" : " ") + item;
    return joined;
}

std::string TestScene::error(const std::string& command, const Args& args, const Flags& flags) {
    const Status status = run(command, args, flags);
    return status.isOk() ? "ok" : status.text();
}

std::string TestScene::make(const std::string& type, const std::string& name,
                            const std::string& parent) {
    Flags flags{flag("name", {name}), flag("skipSelect")};
    if (!parent.empty())
        flags.push_back(flag("parent", {parent}));
    return text("createNode", {type}, flags);
}

NodeHandle TestScene::node(const std::string& name) {
    NodeHandle found;
    const Status status = scene().names().findOne(name, found);
    EXPECT_TRUE(status.isOk()) << status.text();
    return found;
}

Plug TestScene::plug(const std::string& name) {
    const std::size_t dot = name.find('.');
    const Plug found = scene().findPlug(node(name.substr(0, dot)), name.substr(dot + 1));
    EXPECT_FALSE(found.isNull()) << "no plug " << name;
    return found;
}

double TestScene::number(const std::string& plugName) {
    return call("getAttr", {plugName}).number();
}

std::vector<double> TestScene::numbers(const std::string& plugName) {
    return numbersOf(call("getAttr", {plugName}));
}

void TestScene::set(const std::string& plugName, double value) {
    call("setAttr", {plugName, value});
}

void TestScene::set(const std::string& plugName, double x, double y, double z) {
    call("setAttr", {plugName, x, y, z});
}

bool TestScene::exists(const std::string& name) {
    return !scene().names().find(name).empty();
}

std::vector<double> TestScene::worldPosition(const std::string& name) {
    return numbersOf(
        call("xform", {name}, {flag("query"), flag("worldSpace"), flag("translation")}));
}

std::vector<double> TestScene::worldMatrix(const std::string& name) {
    return numbersOf(call("xform", {name}, {flag("query"), flag("worldSpace"), flag("matrix")}));
}

std::vector<double> numbersOf(const Value& value) {
    if (value.isTuple())
        return value.tuple().items;
    if (!value.isList())
        return value.isNumber() ? std::vector<double>{value.number()} : std::vector<double>{};
    std::vector<double> all;
    for (const Value& item : value.list())
        for (double number : numbersOf(item))
            all.push_back(number);
    return all;
}

std::vector<std::string> textsOf(const Value& value) {
    std::vector<std::string> all;
    if (value.isString())
        all.push_back(value.string());
    else if (value.isList())
        for (const Value& item : value.list())
            if (item.isString())
                all.push_back(item.string());
    return all;
}

void expectNear(const std::vector<double>& actual, const std::vector<double>& expected,
                double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "entry " << i;
}

}  // namespace torvel::test
