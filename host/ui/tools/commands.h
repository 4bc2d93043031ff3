#pragma once

#include <string>

#include <QPointer>

#include "script/command.h"

class QWidget;

namespace torvel {

/// The tool that is at work, and the windows that belong to tools.
struct ToolState {
    std::string context = "selectSuperContext";
    QPointer<QWidget> paint, mirror, plain;
};

/// setToolTo, currentCtx, toolPropertyWindow, ArtPaintSkinWeightsTool, MirrorSkinWeights and the
/// forms of the two with options.
///
/// A tool is set by its name ("Move") or its context ("moveSuperContext"); any other text is an
/// error. toolPropertyWindow shows the settings of the tool at work: for Paint Skin Weights a
/// window that paints by typing, for others one that says there are none.
CommandTable toolCommands();

}  // namespace torvel
