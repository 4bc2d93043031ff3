#include "files/file_io.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

using FileIo = FileTest;

int entries(const std::filesystem::path& folder) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        count += entry.exists() ? 1 : 1;
    return count;
}

TEST_F(FileIo, ReplacesTheWholeFileAndKeepsItsMode) {
    const std::string file = write("a.ma", "a long old text");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_TRUE(replaceFile(file, "new"));
    EXPECT_EQ(read(file), "new");
    struct stat info {};
    ASSERT_EQ(::stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(entries(folder), 1);
}

TEST_F(FileIo, ALinkKeepsStanding) {
    const std::string file = write("a.ma", "old");
    std::filesystem::create_symlink(file, path("link.ma"));
    ASSERT_TRUE(replaceFile(path("link.ma"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.ma")));
    EXPECT_EQ(read(file), "new");
}

TEST_F(FileIo, AFullDiskLeavesTheOldFile) {
    const std::string file = write("a.ma", "old");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const Status status = replaceFile(file, std::string(100000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(status);
    EXPECT_NE(status.text().find("File too large"), std::string::npos) << status.text();
    EXPECT_EQ(read(file), "old");
    EXPECT_EQ(entries(folder), 1);
}

TEST_F(FileIo, SaysWhyAPlaceCannotBeWritten) {
    const std::string plain = write("plain", "x");
    const Status below = replaceFile(plain + "/b.ma", "text");
    EXPECT_NE(below.text().find("Not a directory"), std::string::npos) << below.text();
    const Status missing = replaceFile(path("no/such/c.ma"), "text");
    EXPECT_NE(missing.text().find("No such file or directory"), std::string::npos)
        << missing.text();
    const Status directory = replaceFile(folder.string(), "text");
    EXPECT_NE(directory.text().find("it is a folder"), std::string::npos) << directory.text();
    EXPECT_EQ(read(plain), "x");
}

TEST_F(FileIo, SaysWhyAFileCannotBeRead) {
    std::string text;
    EXPECT_NE(loadFile(path("none.ma"), text).text().find("No such file"), std::string::npos);
    EXPECT_NE(loadFile(folder.string(), text).text().find("folder"), std::string::npos);
    EXPECT_FALSE(loadFile("/dev/zero", text));
}

}  // namespace
}  // namespace torvel::test
