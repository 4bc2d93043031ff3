#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "script/session.h"
#include "files/scene_files.h"
#include "files/ma/reader.h"
#include "files/ma/writer.h"

namespace torvel::test {

/// A session and a folder of its own for the files of one test.
class FileTest : public ::testing::Test {
  protected:
    FileTest() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(info->test_suite_name()) + "_" + info->name();
        for (char& c : name)
            c = c == '/' ? '_' : c;
        folder = std::filesystem::path(::testing::TempDir()) / name;
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        session.log().addSink([this](const LogLine& line) { told += line.text + "\n"; });
    }
    ~FileTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

    static std::string read(const std::string& file) {
        std::ostringstream out;
        out << std::ifstream(file, std::ios::binary).rdbuf();
        return out.str();
    }

    /// Opens a text as a scene; "" when it went well, else the error.
    std::string open(const std::string& text) {
        const Status status = openScene(session, write("in.ma", text));
        return status ? "" : status.text();
    }

    /// The same with the line that every scene begins with.
    std::string openBody(const std::string& body) {
        return open("//Maya ASCII 2024 scene\n" + body + "// End of in.ma\n");
    }

    Scene& scene() { return session.scene(); }
    NodeHandle node(const std::string& name) { return scene().names().lookUp(name); }
    Plug plug(const std::string& name) {
        const std::size_t dot = name.find('.');
        const Plug found = scene().findPlug(node(name.substr(0, dot)), name.substr(dot + 1));
        EXPECT_FALSE(found.isNull()) << name;
        return found;
    }
    double number(const std::string& name) { return scene().number(plug(name)); }
    std::string saved() { return sceneToText(scene()); }

    /// Saves, opens that, saves again: both texts must be the same.
    void expectStable(const std::string& what = {}) {
        const std::string second = saved();
        const Status status = openScene(session, write("second.ma", second));
        ASSERT_TRUE(status) << what << ": " << status.text();
        EXPECT_TRUE(saved() == second) << what << ": " << firstDifference(second, saved());
    }

    static std::string firstDifference(const std::string& a, const std::string& b) {
        std::istringstream left(a), right(b);
        std::string one, two;
        for (int line = 1;; ++line) {
            const bool more = static_cast<bool>(std::getline(left, one));
            const bool moreToo = static_cast<bool>(std::getline(right, two));
            if (!more && !moreToo)
                return "none";
            if (more != moreToo || one != two)
                return "line " + std::to_string(line) + "\n  " + one + "\n  " + two;
        }
    }

    std::filesystem::path folder;
    std::string told;  // outlives the session, whose log writes to it
    Session session;
};

}  // namespace torvel::test
