#pragma once

namespace torvel {

class Session;

/// Gives a new session every command of the host and its two languages. Once a session, before
/// anything else.
void setUpSession(Session& session);

}  // namespace torvel
