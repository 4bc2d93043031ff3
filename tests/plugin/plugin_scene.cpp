#include "plugin/plugin_scene.h"

#include <maya/MArgList.h>
#include <maya/MFnDagNode.h>
#include <maya/MSelectionList.h>
#include <maya/MString.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDate>
#include <QDir>
#include <QFileInfo>

#include "app/host_setup.h"
#include "rename/rename_command.h"
#include "skeleton/skeleton_command.h"
#include "support/test_scene.h"
#include "twist/twist_command.h"
#include "ui/main_window.h"
#include "update/checker_command.h"

namespace torvel::test {

namespace {

// Never deleted: the interpreter may hold what hangs on it until the process ends.
void needApplication() {
    if (QApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "plugin_tests";
    static char* arguments[] = {name, nullptr};
    new QApplication(count, arguments);
}

template <class Command>
Status runCommand(const std::vector<Value>&, Value&) {
    const std::unique_ptr<MPxCommand> command(static_cast<Command*>(Command::creator()));
    return command->doIt(MArgList()) ? Status::ok() : Status::failure("the command failed");
}

const char* channelName(Channel channel) {
    switch (channel) {
        case Channel::Warning: return "warning: ";
        case Channel::Error: return "error: ";
        default: return "info: ";
    }
}

std::string lineOf(const RecordEntry& entry) {
    if (!entry.isScript)
        return channelName(entry.channel) + entry.text;
    return entry.language + " " + entry.form + ": " + entry.text + (entry.ok ? "" : " (failed)");
}

}  // namespace

PluginScene::PluginScene() {
    needApplication();
    qputenv("HOME", m_home.path().toLocal8Bit());
    setUpSession(m_session);
    m_window = std::make_unique<MainWindow>(m_session);
    m_session.addPluginCommand("torvel_skeleton", runCommand<torvel_skeleton>);
    m_session.addPluginCommand("torvel_renameUI", runCommand<torvel_renameUI>);
    m_session.addPluginCommand("torvel_twist", runCommand<TorvelTwist>);
    m_session.addPluginCommand("checkUpdates", runCommand<CheckerWindow>);
    python("import maya.cmds as cmds");
}

PluginScene::~PluginScene() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != m_window.get() && !window->parent())
            window->close();
    }
    m_window.reset();
    finishDeletion();
}

Value PluginScene::python(const std::string& text) {
    Value result;
    const Status status = m_session.python->run(text, result);
    EXPECT_TRUE(status.isOk()) << text << "\n" << status.text();
    return result;
}

std::string PluginScene::pythonText(const std::string& text) {
    const Value value = python(text);
    std::string joined;
    for (const std::string& item : textsOf(value))
        joined += (joined.empty() ? "" : " ") + item;
    return joined;
}

NodeHandle PluginScene::node(const std::string& name) {
    NodeHandle found;
    const Status status = scene().names().findOne(name, found);
    EXPECT_TRUE(status.isOk()) << status.text();
    return found;
}

Plug PluginScene::plug(const std::string& path, const std::string& attribute) {
    const Plug found = scene().findPlug(node(path), attribute);
    EXPECT_FALSE(found.isNull()) << path << "." << attribute;
    return found;
}

MObject PluginScene::object(const std::string& name) {
    MSelectionList list;
    MObject found;
    list.add(MString(name.c_str()));
    EXPECT_EQ(list.length(), 1u) << name;
    list.getDependNode(0, found);
    return found;
}

MObjectArray PluginScene::objects(const std::vector<std::string>& names) {
    MObjectArray all;
    for (const std::string& name : names)
        all.append(object(name));
    return all;
}

bool PluginScene::exists(const std::string& name) {
    return !scene().names().find(name).empty();
}

void PluginScene::select(const std::vector<std::string>& names) {
    std::vector<NodeHandle> nodes;
    for (const std::string& name : names)
        nodes.push_back(node(name));
    scene().selection().replaceNodes(nodes);
}

std::vector<std::string> PluginScene::selected() {
    std::vector<std::string> paths;
    for (NodeHandle handle : scene().selection().nodes())
        paths.push_back(scene().names().fullPath(handle));
    return paths;
}

std::vector<std::string> PluginScene::transcript() {
    std::vector<std::string> lines;
    for (const RecordEntry& entry : m_session.record().entries()) {
        if (entry.isScript || !entry.fromScript)
            lines.push_back(lineOf(entry));
    }
    return lines;
}

std::vector<std::string> PluginScene::messages() {
    std::vector<std::string> lines;
    for (const RecordEntry& entry : m_session.record().entries()) {
        if (!entry.isScript && !entry.fromScript)
            lines.push_back(lineOf(entry));
    }
    return lines;
}

std::vector<std::string> PluginScene::scripts() {
    std::vector<std::string> lines;
    for (const RecordEntry& entry : m_session.record().entries()) {
        if (entry.isScript)
            lines.push_back(lineOf(entry));
    }
    return lines;
}

int PluginScene::languageErrors() {
    int count = 0;
    for (const RecordEntry& entry : m_session.record().entries())
        count += !entry.isScript && entry.fromScript && entry.channel == Channel::Error;
    return count;
}

std::vector<QWidget*> PluginScene::windowsNamed(const char* objectName) {
    std::vector<QWidget*> windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == objectName)
            windows.push_back(window);
    }
    return windows;
}

std::vector<QWidget*> PluginScene::toolWindows() {
    return windowsNamed("SkeletonWindow");
}

QWidget* PluginScene::openTool() {
    passDailyStep();
    return openWindow("torvel_skeleton", "SkeletonWindow");
}

QWidget* PluginScene::openTwist() {
    return openWindow("torvel_twist", "TwistWindow");
}

QWidget* PluginScene::openWindow(const std::string& command, const char* objectName) {
    const std::vector<QWidget*> before = windowsNamed(objectName);
    python("cmds." + command + "()");
    for (QWidget* window : windowsNamed(objectName)) {
        if (std::find(before.begin(), before.end(), window) == before.end())
            return window;
    }
    ADD_FAILURE() << "no window came up";
    return nullptr;
}

void PluginScene::press(QWidget* window, const char* button) {
    auto* widget = window ? window->findChild<QAbstractButton*>(button) : nullptr;
    ASSERT_NE(widget, nullptr) << button;
    widget->click();
}

void PluginScene::check(QWidget* window, const char* box, bool on) {
    auto* widget = window ? window->findChild<QCheckBox*>(box) : nullptr;
    ASSERT_NE(widget, nullptr) << box;
    widget->setChecked(on);
}

void PluginScene::freeze(const std::vector<std::string>& selection, bool allHierarchy) {
    QWidget* window = openTool();
    check(window, "cBox_allHierarchy", allHierarchy);
    select(selection);
    forget();
    press(window, "btn_freezeRot");
    window->close();
}

void PluginScene::passDailyStep() {
    QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
    QFile file(settingsPath());
    const QString today = QDate::currentDate().toString("yyyy-MM-dd");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(("{\"last_version_check\": \"" + today + "\"}").toUtf8());
}

QString PluginScene::settingsPath() {
    return QDir::homePath() + "/AppData/Roaming/Autodesk/torvelToolsToken.json";
}

std::vector<std::string> pathsOf(const MObjectArray& nodes) {
    std::vector<std::string> paths;
    for (unsigned int i = 0; i < nodes.length(); ++i) {
        if (nodes[i].isNull())
            paths.push_back("(null)");
        else
            paths.push_back(MFnDagNode(nodes[i]).fullPathName().asChar());
    }
    return paths;
}

void finishDeletion() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace torvel::test
