// The pages of the control window. Beside the steps that all pages know they may call:
//   property NAME PROPERTY    of a widget or layout of the window ("enabled" of both)
//   disabled                  the parts of the right panel that are
//   pick COLOUR [BUTTON]      presses the swatch and answers its dialog, "none" cancels; gives the
//                             colour that the dialog starts with
//   knots CURVE              of the shape of that transform
//   pole START MIDDLE END CONTROL    computePoleVectorPosition, "-" for an empty name

#include <fmt/format.h>

#include <QLayout>
#include <QVariant>

#include "plugin/fixtures/control_scene.h"
#include "plugin/fixtures/page_runner.h"
#include "toolkit/pole_vector.h"

namespace torvel::test {

namespace {

bool isEnabled(const QObject* part) {
    const auto* layout = qobject_cast<const QLayout*>(part);
    return layout ? layout->isEnabled() : part->property("enabled").toBool();
}

PageTools controlTools(ControlScene& scene) {
    PageTools tools;
    tools.window = scene.window;
    tools.calls["property"] = [&scene](const Lines& words) {
        const QVariant value =
            scene.widget<QWidget>(words.at(0).c_str())->property(words.at(1).c_str());
        return value.toString().toStdString();
    };
    tools.calls["disabled"] = [&scene](const Lines&) {
        std::string names;
        for (const char* name : {"frame_rotShp", "frame_scalar", "scrollArea_content",
                                 "frame_color", "label_colorPicked", "btn_FKsystem"})
            names += isEnabled(scene.widget<QObject>(name)) ? "" : std::string(name) + " ";
        return names.substr(0, names.rfind(' '));
    };
    tools.calls["pick"] = [&scene](const Lines& words) {
        const Qt::MouseButton button = words.size() < 2      ? Qt::LeftButton
                                       : words[1] == "right" ? Qt::RightButton
                                                             : Qt::MiddleButton;
        const QColor answer = words[0] == "none" ? QColor() : QColor(words[0].c_str());
        const QColor start = scene.pickColor(answer, button);
        return start.isValid() ? start.name().toStdString() : "no dialog";
    };
    tools.calls["knots"] = [&scene](const Lines& words) {
        std::string all;
        for (double knot : scene.knots(scene.shapesOf(words.at(0)).at(0)))
            all += fmt::format("{} ", knot);
        return all.substr(0, all.rfind(' '));
    };
    tools.calls["pole"] = [](Lines words) {
        for (std::string& word : words)
            word = word == "-" ? "" : word;
        computePoleVectorPosition(words.at(0).c_str(), words.at(1).c_str(), words.at(2).c_str(),
                                  words.at(3).c_str());
        return std::string();
    };
    return tools;
}

const bool registered = registerPages<ControlScene>("tests/plugin/control/cases", controlTools);

}  // namespace

}  // namespace torvel::test
