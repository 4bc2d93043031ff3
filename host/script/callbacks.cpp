#include "script/callbacks.h"

#include "script/session.h"

namespace torvel {

bool isCallback(const Session& session, const std::string& text) {
    return session.python && session.python->isCallback(text);
}

void dropCallback(const std::string& text) {
    if (const Session* session = Session::current(); session && session->python)
        session->python->dropCallback(text);
}

Status runControlCommand(Session& session, const std::string& command,
                         const std::vector<Value>& args, bool isPython) {
    if (isCallback(session, command))
        return session.python->runCallback(command, args);
    Language* language = isPython ? session.python : session.mel;
    if (!language)
        return Status::failure("The language of this command is not available.");
    Value ignored;
    return language->run(command, ignored);
}

}  // namespace torvel
