#pragma once

namespace torvel {

class Session;

/// Adds the commands of this room, those of every family in tables.cpp, to a session; once.
void addSceneCommands(Session& session);

}  // namespace torvel
