// The bridge to the program's windows. Include Qt's own header of the widget before using one.
#pragma once

#include <maya/MApiNamespace.h>

class QWidget;

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MQtUtil {
  public:
    // Null when the program has no main window.
    static QWidget* mainWindow();
};

MAYA_API_NAMESPACE_CLOSE
