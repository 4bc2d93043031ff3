#include "base/temporary_files.h"

#include <filesystem>

#include <gtest/gtest.h>

#include <unistd.h>

namespace torvel {
namespace {

// Removing closes the register for the rest of the process: a process of its own.
TEST(TemporaryFilesDeathTest, WhatIsNotForgottenGoesWithTheProcess) {
    const std::string folder = testing::TempDir();
    std::string stays = folder + "stays.XXXXXX", goes = folder + "goes.XXXXXX";
    EXPECT_EXIT(
        {
            for (std::string* path : {&stays, &goes})
                ::close(makeTemporaryFile(*path));
            forgetTemporaryFile(stays);
            removeTemporaryFiles();
            std::string late = folder + "late.XXXXXX";
            const bool right = std::filesystem::remove(stays) && !std::filesystem::exists(goes) &&
                               makeTemporaryFile(late) == -1;
            std::_Exit(right ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace torvel
