#include "commands/host/render.h"

#include <charconv>
#include <cstdlib>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QString>

#include "edit/bounds.h"
#include "script/session.h"
#include "draw/painter.h"

namespace torvel {

namespace {

constexpr int kLongestSide = 16384;

bool isSide(int value) {
    return value >= 1 && value <= kLongestSide;
}

bool wholeNumber(const std::string& text, int& value) {
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    return !text.empty() && read.ec == std::errc() && read.ptr == end;
}

std::string numbered(const std::string& file, int frame) {
    std::string digits = std::to_string(std::abs(frame));
    if (digits.size() < 4)
        digits.insert(0, 4 - digits.size(), '0');
    return file.substr(0, file.size() - 4) + "." + (frame < 0 ? "-" : "") + digits + ".png";
}

Status goTo(Session& session, double frame) {
    Value ignored;
    return session.call("currentTime", {}, {Value(frame)}, ignored);
}

Status check(const RenderJob& job, ViewFrame& frame) {
    const std::size_t length = job.file.size();
    if (length < 5 || job.file.compare(length - 4, 4, ".png") != 0)
        return Status::failure("A picture's name ends in .png, not as in '" + job.file + "'.");
    if (!ViewFrame::named(job.view, frame))
        return Status::failure("There is no view '" + job.view +
                               "': the views are persp, front, side and top.");
    if (!isSide(job.size.width()) || !isSide(job.size.height()))
        return Status::failure("A picture is 1 to 16384 pixels wide and high.");
    if (job.sequence && job.last < job.first)
        return Status::failure("The frames run from a lower to a higher number.");
    if (job.sequence && tooManyFrames(job.first, job.last))
        return Status::failure("A sequence has at most " + std::to_string(kMostFrames) +
                               " frames.");
    return Status::ok();
}

PaintOptions optionsOf(const RenderJob& job) {
    PaintOptions options;
    options.wire = job.wire;
    options.grid = job.grid;
    options.mostFaces = 20000000;
    return options;
}

// What the picture has to show at the present time.
void addPoints(const Scene& scene, const RenderJob& job, const ScenePainter& painter,
               std::vector<V3d>& points) {
    if (job.around.empty())
        points.insert(points.end(), painter.points().begin(), painter.points().end());
    for (const NodeHandle node : job.around) {
        if (!scene.isValid(node) || !scene.node(node)->isDag())
            continue;
        const Box3d box = worldBounds(scene, node);
        for (int corner = 0; corner < 8; ++corner)
            points.emplace_back(corner & 1 ? box.min.x : box.max.x,
                                corner & 2 ? box.min.y : box.max.y,
                                corner & 4 ? box.min.z : box.max.z);
    }
}

Status writePicture(const QImage& picture, const std::string& file,
                    std::vector<std::string>& written) {
    // Through memory: the writer would not tell that the last bytes did not reach the disk.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QFile out(QString::fromStdString(file));
    if (!picture.save(&buffer, "PNG") || !out.open(QIODevice::WriteOnly) ||
        out.write(bytes) != bytes.size() || !out.flush())
        return Status::failure("Cannot write the picture " + file + ".");
    written.push_back(file);
    return Status::ok();
}

Status renderNow(Session& session, const RenderJob& job, ViewFrame frame,
                 std::vector<std::string>& written) {
    const ScenePainter painter(session.scene(), optionsOf(job));
    std::vector<V3d> points;
    addPoints(session.scene(), job, painter, points);
    frame.fit(points, job.size);
    return writePicture(painter.image(job.size, frame), job.file, written);
}

Status renderFrames(Session& session, const RenderJob& job, ViewFrame frame,
                    std::vector<std::string>& written) {
    std::vector<V3d> points;
    for (int at = job.first; at <= job.last; ++at) {
        if (Status moved = goTo(session, at); !moved)
            return moved;
        std::vector<V3d> here;
        addPoints(session.scene(), job, ScenePainter(session.scene(), optionsOf(job)), here);
        Imath::Box3d box;  // the corners of each frame's box in view space keep the list short
        for (const V3d& point : here)
            box.extendBy(frame.toView(point));
        for (int corner = 0; corner < 8 && !box.isEmpty(); ++corner)
            points.push_back(frame.toWorld({corner & 1 ? box.min.x : box.max.x,
                                            corner & 2 ? box.min.y : box.max.y,
                                            corner & 4 ? box.min.z : box.max.z}));
    }
    frame.fit(points, job.size);
    for (int at = job.first; at <= job.last; ++at) {
        if (Status moved = goTo(session, at); !moved)
            return moved;
        const ScenePainter painter(session.scene(), optionsOf(job));
        const Status done =
            writePicture(painter.image(job.size, frame), numbered(job.file, at), written);
        if (!done)
            return done;
    }
    return Status::ok();
}

const FlagRow kRenderFlags[] = {
    {"file", "f", "s", kCreate},   {"frames", "fr", "ii", kCreate}, {"grid", "g", "b", kCreate},
    {"size", "sz", "ii", kCreate}, {"view", "v", "s", kCreate},     {"wire", "w", "b", kCreate},
};

int wholeAt(const FlagUse& use, std::size_t at) {
    return static_cast<int>(use.values[at].integer());
}

Status hostRender(const CommandCall& call, Value& result) {
    RenderJob job;
    job.file = call.text("file");
    job.view = call.text("view", job.view);
    job.wire = call.flag("wire");
    job.grid = call.flag("grid", true);
    if (const FlagUse* size = call.use("size"))
        job.size = {wholeAt(*size, 0), wholeAt(*size, 1)};
    if (const FlagUse* frames = call.use("frames")) {
        job.sequence = true;
        job.first = wholeAt(*frames, 0);
        job.last = wholeAt(*frames, 1);
    }
    if (Status found = call.objects(job.around); !found)
        return found;
    std::vector<std::string> written;
    if (Status done = render(call.session(), job, written); !done)
        return call.fail(done.text());
    result = Value::strings(written);
    return Status::ok();
}

const Command kRenderCommands[] = {
    {"hostRender", kRenderFlags, countOf(kRenderFlags), hostRender, "Draws the scene into files."}};

}  // namespace

Status render(Session& session, const RenderJob& job, std::vector<std::string>& written) {
    ViewFrame frame;
    if (Status sound = check(job, frame); !sound)
        return sound;
    if (!job.sequence)
        return renderNow(session, job, frame, written);
    Scene& scene = session.scene();
    const double time = scene.number(scene.findPlug(scene.timeNode(), "outTime"));
    const Status done = renderFrames(session, job, frame, written);
    ignore(goTo(session, time));
    return done;
}

bool tooManyFrames(int first, int last) {
    return static_cast<std::int64_t>(last) - first >= kMostFrames;
}

bool pictureSize(const std::string& text, QSize& size) {
    const std::size_t x = text.find('x');
    int width = 0, height = 0;
    if (x == std::string::npos || !wholeNumber(text.substr(0, x), width) ||
        !wholeNumber(text.substr(x + 1), height) || !isSide(width) || !isSide(height))
        return false;
    size = {width, height};
    return true;
}

bool frameRange(const std::string& text, int& first, int& last) {
    const std::size_t colon = text.find(':');
    if (!wholeNumber(text.substr(0, colon), first))
        return false;
    last = first;
    return colon == std::string::npos ||
           (wholeNumber(text.substr(colon + 1), last) && last >= first);
}

CommandTable renderCommands() {
    return {kRenderCommands, std::size(kRenderCommands)};
}

}  // namespace torvel
