#pragma once

#include <QUrl>

/// The address that answers a GET with the newest version, a constant of the build. It stands in a
/// unit of its own, which the tests replace by one that names their server.
QUrl updateInfoAddress();
