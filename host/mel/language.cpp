#include "mel/language.h"

#include <exception>
#include <fstream>
#include <sstream>

#include "mel/interpreter.h"

namespace torvel {

namespace {

class MelLanguage : public Language {
  public:
    explicit MelLanguage(Session& session) : m_interpreter(session) {}

    Status run(const std::string& text, Value& result) override {
        return runText(text, {}, result);
    }

    Status runFile(const std::string& path) override {
        std::ifstream file(path, std::ios::binary);
        if (!file)
            return report({"Cannot find file \"" + path + "\".", 1, 0, {}});
        std::ostringstream text;
        text << file.rdbuf();
        Value ignored;
        return runText(text.str(), path, ignored);
    }

  private:
    Status runText(const std::string& text, const std::string& path, Value& result) {
        const ScriptDepth depth(m_interpreter.session().deferred());
        try {
            result = m_interpreter.run(text, path);
            return Status::ok();
        } catch (const mel::Fault& fault) {
            return report(fault);
        } catch (const std::exception& failure) {
            return report({failure.what(), 1, 0, {}});
        }
    }

    Status report(const mel::Fault& fault) {
        m_interpreter.printFault(fault);
        return Status::failure(mel::Interpreter::describe(fault));
    }

    mel::Interpreter m_interpreter;
};

struct KeptMel {
    std::unique_ptr<Language> language;
};

}  // namespace

std::unique_ptr<Language> makeMelLanguage(Session& session) {
    auto language = std::make_unique<MelLanguage>(session);
    session.mel = language.get();
    session.addCommands(melCommands());
    return language;
}

void setUpMel(Session& session) {
    session.kept<KeptMel>().language = makeMelLanguage(session);
}

}  // namespace torvel
