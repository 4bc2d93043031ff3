#include "ui/tools/commands.h"

#include <QLabel>
#include <QVBoxLayout>

#include "script/session.h"
#include "ui/desktop/main_window.h"
#include "ui/tools/skin_mirror_window.h"
#include "ui/tools/skin_paint_window.h"
#include "ui/controls/lookup.h"

namespace torvel {

namespace {

struct Tool {
    const char* name;
    const char* context;
    const char* title;
};

constexpr const char* kPaintContext = "artAttrSkinContext";

constexpr Tool kTools[] = {
    {"Select", "selectSuperContext", "Select Tool"},
    {"Lasso", "lassoSelectContext", "Lasso Tool"},
    {"Move", "moveSuperContext", "Move Tool"},
    {"Rotate", "RotateSuperContext", "Rotate Tool"},
    {"Scale", "scaleSuperContext", "Scale Tool"},
    {"ArtPaintSkinWeights", kPaintContext, "Paint Skin Weights Tool"},
};

const Tool* findTool(const std::string& name) {
    for (const Tool& tool : kTools)
        if (name == tool.name || name == tool.context)
            return &tool;
    return nullptr;
}

Status toolState(const CommandCall& call, ToolState*& state) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    state = &mainWindowOf(call.session())->tools();
    return Status::ok();
}

// The one window of its class, made at the first time.
template <class Window>
Window& toolWindow(const CommandCall& call, QPointer<QWidget>& place) {
    if (!place)
        place = new Window(call.session(), mainWindowOf(call.session()));
    return *static_cast<Window*>(place.data());
}

Status runSetToolTo(const CommandCall& call, Value&) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    const std::vector<std::string> names = call.texts();
    if (names.size() != 1)
        return call.fail("exactly one tool is needed");
    const Tool* tool = findTool(names.front());
    if (!tool)
        return call.fail("there is no tool '" + names.front() + "'");
    state->context = tool->context;
    return Status::ok();
}

Status runCurrentCtx(const CommandCall& call, Value& result) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    result = state->context;
    return Status::ok();
}

// For tools that have nothing to set.
void showPlain(const CommandCall& call, ToolState& state) {
    if (!state.plain) {
        auto* window = new QWidget(mainWindowOf(call.session()), Qt::Window);
        window->setObjectName(QStringLiteral("toolSettings"));
        window->setWindowTitle(QObject::tr("Tool Settings"));
        auto* box = new QVBoxLayout(window);
        box->addWidget(new QLabel(window));
        window->resize(320, 120);
        state.plain = window;
    }
    const Tool* tool = findTool(state.context);
    state.plain->findChild<QLabel*>()->setText(
        QObject::tr("%1\n\nThis tool has no settings.").arg(QString::fromLatin1(tool->title)));
    state.plain->show();
    state.plain->raise();
}

Status runToolPropertyWindow(const CommandCall& call, Value&) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    if (state->context == kPaintContext)
        toolWindow<SkinPaintWindow>(call, state->paint).present();
    else
        showPlain(call, *state);
    return Status::ok();
}

Status runPaintTool(const CommandCall& call, Value&) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    state->context = kPaintContext;
    return Status::ok();
}

Status runPaintOptions(const CommandCall& call, Value& result) {
    const Status chosen = runPaintTool(call, result);
    return chosen ? runToolPropertyWindow(call, result) : chosen;
}

Status runMirrorOptions(const CommandCall& call, Value&) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    toolWindow<SkinMirrorWindow>(call, state->mirror).present();
    return Status::ok();
}

// With what the options window was left at, or its defaults.
Status runMirror(const CommandCall& call, Value&) {
    ToolState* state = nullptr;
    if (Status ready = toolState(call, state); !ready)
        return ready;
    auto& window = toolWindow<SkinMirrorWindow>(call, state->mirror);
    window.followSelection();
    if (window.skin().isNull())
        return call.fail("the scene has no skin of a mesh");
    window.mirror();
    return Status::ok();
}

const Command kRows[] = {
    {"setToolTo", nullptr, 0, runSetToolTo, "Chooses the tool at work"},
    {"currentCtx", nullptr, 0, runCurrentCtx, "Context of the tool at work"},
    {"toolPropertyWindow", nullptr, 0, runToolPropertyWindow, "Settings of the tool at work"},
    {"ArtPaintSkinWeightsTool", nullptr, 0, runPaintTool, "Chooses the tool that paints weights"},
    {"ArtPaintSkinWeightsToolOptions", nullptr, 0, runPaintOptions,
     "Chooses the tool that paints weights and shows its settings"},
    {"MirrorSkinWeights", nullptr, 0, runMirror, "Mirrors the weights of the selected skin"},
    {"MirrorSkinWeightsOptions", nullptr, 0, runMirrorOptions,
     "Options of mirroring the weights of a skin"},
};

}  // namespace

CommandTable toolCommands() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
