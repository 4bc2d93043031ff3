#pragma once

#include <QMap>
#include <QString>

/// What the plug-in says about itself: "name" and "version". One object for the whole library.
/// Its version is the one that the update check compares; the version handed to the plug-in
/// manager stands in the entry functions and is another number on purpose.
inline QMap<QString, QString> pluginInfo;

/// Every unit that includes this header fills the map before the entry functions can run, so the
/// content does not hang on the order in which units are initialised.
[[maybe_unused]] static const bool pluginInfoFilled = [] {
    pluginInfo["name"] = "Torvel Plugin";
    pluginInfo["version"] = "0.20";
    return true;
}();
