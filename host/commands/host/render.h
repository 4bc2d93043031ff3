#pragma once

#include <string>
#include <vector>

#include <QSize>

#include "script/command.h"

namespace torvel {

class Session;

/// Pictures of a scene, made without a graphics card.
struct RenderJob {
    std::string file;            ///< ending .png
    std::string view = "persp";  ///< persp, front, side or top
    QSize size{960, 540};
    bool wire = false;
    bool grid = true;
    bool sequence = false;  ///< one picture for each frame from `first` to `last`
    int first = 1, last = 1;
    std::vector<NodeHandle> around;  ///< what fills the picture; empty: all that is visible
};

/// Draws and writes the pictures; `written` are the files. The pictures of a sequence are
/// "name.0001.png" and so on, all with the same framing, which fits every one of them; the time is
/// what it was afterwards. Failures name the wrong value or the file that cannot be written.
Status render(Session& session, const RenderJob& job, std::vector<std::string>& written);

/// Pictures of one sequence at the most.
constexpr int kMostFrames = 100000;
bool tooManyFrames(int first, int last);

/// "640x480"; false for other texts and for sides that are not 1..16384.
bool pictureSize(const std::string& text, QSize& size);
/// "10:20" or "7"; false for other texts and for a range that runs backwards.
bool frameRange(const std::string& text, int& first, int& last);

/// hostRender(file=..., view=..., size=(w, h), wire=..., grid=..., frames=(a, b)) with objects that
/// fill the picture; gives the files written.
CommandTable renderCommands();

}  // namespace torvel
