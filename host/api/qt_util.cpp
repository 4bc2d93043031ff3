#include <maya/MQtUtil.h>

#include <QWidget>

#include "script/session.h"

MAYA_API_NAMESPACE_OPEN

QWidget* MQtUtil::mainWindow() {
    const torvel::Session* session = torvel::Session::current();
    return session ? dynamic_cast<QWidget*>(session->mainWindow) : nullptr;
}

MAYA_API_NAMESPACE_CLOSE
