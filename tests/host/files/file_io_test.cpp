#include "files/file_io.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

class FileIo : public FileTest {
  protected:
    Status replace(const std::string& file, const std::string& text) {
        return replaceFile(file, text, loss);
    }
    std::string loss;
};

int entries(const std::filesystem::path& folder) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        count += entry.path().empty() ? 0 : 1;
    return count;
}

TEST_F(FileIo, ReplacesTheWholeFileAndKeepsItsMode) {
    const std::string file = write("a.ma", "a long old text");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_TRUE(replace(file, "new"));
    EXPECT_EQ(read(file), "new");
    struct stat info {};
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(entries(folder), 1);
}

TEST_F(FileIo, ALinkKeepsStanding) {
    const std::string file = write("a.ma", "old");
    std::filesystem::create_symlink(file, path("link.ma"));
    ASSERT_TRUE(replace(path("link.ma"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.ma")));
    EXPECT_EQ(read(file), "new");
}

TEST_F(FileIo, AFullDiskLeavesTheOldFile) {
    const std::string file = write("a.ma", "old");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const Status status = replace(file, std::string(100000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(status);
    EXPECT_NE(status.text().find("File too large"), std::string::npos) << status.text();
    EXPECT_EQ(read(file), "old");
    EXPECT_EQ(entries(folder), 1);
}

TEST_F(FileIo, SaysWhyAPlaceCannotBeWritten) {
    const std::string plain = write("plain", "x");
    const Status below = replace(plain + "/b.ma", "text");
    EXPECT_NE(below.text().find("Not a directory"), std::string::npos) << below.text();
    const Status missing = replace(path("no/such/c.ma"), "text");
    EXPECT_NE(missing.text().find("No such file or directory"), std::string::npos)
        << missing.text();
    const Status directory = replace(folder.string(), "text");
    EXPECT_NE(directory.text().find("it is a folder"), std::string::npos) << directory.text();
    EXPECT_EQ(read(plain), "x");
}

TEST_F(FileIo, OnlyRegularFilesAreReplaced) {
    ASSERT_EQ(::mkfifo(path("pipe.ma").c_str(), 0600), 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string socketName = path("s.ma");
    ASSERT_LT(socketName.size(), sizeof address.sun_path);
    socketName.copy(address.sun_path, socketName.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    std::filesystem::create_symlink("/dev/null", path("device.ma"));
    std::filesystem::create_symlink("nowhere", path("dangling.ma"));
    std::filesystem::create_symlink("ring.ma", path("ring.ma"));
    const std::pair<const char*, const char*> refused[] = {{"pipe.ma", "no plain file"},
                                                           {"s.ma", "no plain file"},
                                                           {"device.ma", "no plain file"},
                                                           {"dangling.ma", "leads nowhere"},
                                                           {"ring.ma", "leads nowhere"}};
    const int before = entries(folder);
    for (const auto& [name, why] : refused) {
        const Status status = replace(path(name), "text");
        EXPECT_NE(status.text().find(why), std::string::npos) << name << ": " << status.text();
    }
    ::close(socket);
    EXPECT_EQ(entries(folder), before);
    std::string text;
    EXPECT_NE(loadFile(path("pipe.ma"), text).text().find("no plain file"), std::string::npos);
}

TEST_F(FileIo, OtherHardLinksAreTold) {
    const std::string file = write("a.ma", "old");
    std::filesystem::create_hard_link(file, path("b.ma"));
    ASSERT_TRUE(replace(file, "new"));
    EXPECT_NE(loss.find("hard links"), std::string::npos) << loss;
    EXPECT_EQ(read(path("b.ma")), "old");
    ASSERT_TRUE(replace(file, "newer"));
    EXPECT_EQ(loss, "");
}

TEST_F(FileIo, WhatAKilledSaveLeftIsRemoved) {
    const pid_t gone = ::fork();
    if (gone == 0)
        ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const std::string dead = std::to_string(gone), alive = std::to_string(::getppid());
    const std::pair<std::string, bool> files[] = {
        {"a.ma.save-" + dead + "-abcdef", false}, {"a.ma.save-" + alive + "-abcdef", true},
        {"a.ma.save-" + dead + "-abcdefg", true}, {"a.ma.save-x-abcdef", true},
        {"b.ma.save-" + dead + "-abcdef", true},  {"a.ma.save-" + dead, true}};
    for (const auto& [name, stays] : files)
        write(name, "part");
    ASSERT_TRUE(replace(path("a.ma"), "new"));
    for (const auto& [name, stays] : files)
        EXPECT_EQ(std::filesystem::exists(path(name)), stays) << name;
}

TEST_F(FileIo, ALongNameIsSavedToo) {
    const std::string name(255, 'n');
    ASSERT_TRUE(replace(path(name), "new"));
    EXPECT_EQ(read(path(name)), "new");
    EXPECT_EQ(entries(folder), 1);
}

// Killed at any moment: the old text or the new one, whole; the next save leaves one file.
TEST_F(FileIo, AKilledSaveLeavesAWholeFile) {
    using Clock = std::chrono::steady_clock;
    const std::string texts[] = {std::string(20'000'000, 'a'), std::string(20'500'000, 'b')};
    const std::string file = path("big.ma");
    const Clock::time_point start = Clock::now();
    ASSERT_TRUE(replace(file, texts[0]));
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    std::mt19937 random(20);
    std::uniform_int_distribution<useconds_t> moment(
        0, static_cast<useconds_t>(std::min<long long>(whole.count() * 5 / 4, 120'000)));
    int saved = 0;
    for (int kill = 0; kill < 100; ++kill) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            std::string ignored;
            ::_exit(replaceFile(file, texts[(kill + 1) % 2], ignored) ? 0 : 1);
        }
        ::usleep(moment(random));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::string now = read(file);
        ASSERT_TRUE(now == texts[0] || now == texts[1]) << "kill " << kill << ": " << now.size();
        saved += now == texts[(kill + 1) % 2] ? 1 : 0;
    }
    RecordProperty("saved", saved);
    ASSERT_TRUE(replace(file, "end"));
    EXPECT_EQ(entries(folder), 1);
}

TEST_F(FileIo, SaysWhyAFileCannotBeRead) {
    std::string text;
    EXPECT_NE(loadFile(path("none.ma"), text).text().find("No such file"), std::string::npos);
    EXPECT_NE(loadFile(folder.string(), text).text().find("folder"), std::string::npos);
    EXPECT_FALSE(loadFile("/dev/zero", text));
}

}  // namespace
}  // namespace torvel::test
