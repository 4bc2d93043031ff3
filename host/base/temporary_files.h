#pragma once

#include <string>

namespace torvel {

/// Makes a new, empty file: the last six letters of `pattern`, XXXXXX, are replaced, as by mkstemp.
/// Until it is forgotten, removeTemporaryFiles takes it away. Gives its open descriptor, readable
/// by its owner alone; -1 with errno for a failure.
int makeTemporaryFile(std::string& pattern);
/// The file is there to stay, or gone.
void forgetTemporaryFile(const std::string& path);
/// Removes what was made and not forgotten; nothing is made from then on. For a process that ends.
void removeTemporaryFiles();

}  // namespace torvel
