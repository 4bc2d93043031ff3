#include "files/trusted_folders.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "files/file_io.h"

namespace torvel {

namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Empty when there is no home.
fs::path listFile() {
    const fs::path given(variable("XDG_CONFIG_HOME"));  // a relative one does not count
    const fs::path home(variable("HOME"));
    if (given.is_absolute())
        return given / "torvel" / "trusted_folders";
    return home.is_absolute() ? home / ".config" / "torvel" / "trusted_folders" : fs::path();
}

std::vector<std::string> listed() {
    std::vector<std::string> folders;
    std::ifstream list(listFile());
    for (std::string line; std::getline(list, line);)
        if (!line.empty() && line.front() == '/')
            folders.push_back(line);
    return folders;
}

fs::path real(const std::string& path) {
    std::error_code error;
    const fs::path found = fs::canonical(path, error);
    return error ? fs::path() : found;
}

bool isBelow(const fs::path& file, const fs::path& folder) {
    const fs::path way = file.lexically_relative(folder);
    return !folder.empty() && !way.empty() && *way.begin() != "..";
}

}  // namespace

bool isTrustedPlace(const std::string& file) {
    const fs::path whole = file.empty() ? fs::path() : real(file);
    if (whole.empty())
        return false;
    for (const std::string& folder : listed())
        if (isBelow(whole, real(folder)))
            return true;
    return false;
}

Status trustFolder(const std::string& folder) {
    const fs::path whole = real(folder), list = listFile();
    std::error_code error;
    if (whole.empty() || !fs::is_directory(whole, error))
        return Status::failure("Cannot trust " + folder + ": it is no folder");
    if (list.empty())
        return Status::failure("Cannot trust " + folder + ": there is no HOME to keep the list in");
    if (whole.string().find('\n') != std::string::npos)
        return Status::failure("Cannot trust " + folder + ": its name has a line break");
    std::string text;
    for (const std::string& line : listed()) {
        if (line == whole)
            return Status::ok();
        text += line + '\n';
    }
    fs::create_directories(list.parent_path(), error);
    std::string loss;  // nobody lists places through hard links
    return replaceFile(list.string(), text + whole.string() + '\n', loss);
}

}  // namespace torvel
