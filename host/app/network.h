#pragma once

namespace torvel {

/// From now on Qt's connections in this process end at once with a network error, because a proxy
/// refuses them: every request of a QNetworkAccessManager on the main thread, this machine's own
/// addresses included, and other sockets to anywhere else. Nothing is looked up and nothing is
/// sent. Needs the application; not undone; a second call does nothing.
void closeNetwork();

}  // namespace torvel
