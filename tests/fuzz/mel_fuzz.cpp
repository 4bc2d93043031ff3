// Runs bytes as MEL. Only the language itself and `print` are there: no command that reaches the
// scene, a file or a program.
#include "mel/language.h"
#include "fuzz_scene.h"

using namespace torvel;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Session session;
    const auto mel = makeMelLanguage(session);
    Value result;
    ignore(mel->run(std::string(reinterpret_cast<const char*>(data), size), result));
    return 0;
}
