#pragma once

namespace torvel {

// The version of the program and of the plug-in, such as "0.1.0".
const char* versionText();

}  // namespace torvel
