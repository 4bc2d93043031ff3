#include "ui/desktop/main_window.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

#include "script/session.h"
#include "script/callbacks.h"
#include "ui/desktop/log_text.h"
#include "ui/desktop/outliner.h"
#include "ui/view/scene_view.h"
#include "ui/desktop/script_editor.h"

namespace torvel {

namespace {

RawFlag flagOf(const char* name, Value value) {
    return RawFlag{name, {std::move(value)}, true};
}

// "%1" in a Python text and "#1" in a MEL text stand for the control's value.
std::string withValue(const UiCommand& command, const Value& value) {
    const std::string shown = value.isString()   ? value.string()
                              : value.isDouble() ? textOfDouble(value.number())
                                                 : std::to_string(value.integer());
    return QString::fromStdString(command.text)
        .replace(command.python ? "%1" : "#1", QString::fromStdString(shown))
        .toStdString();
}

QDockWidget* docked(QMainWindow* window, const QString& title, QWidget* content,
                    Qt::DockWidgetArea area) {
    auto* dock = new QDockWidget(title, window);
    dock->setWidget(content);
    window->addDockWidget(area, dock);
    return dock;
}

}  // namespace

MainWindow::MainWindow(Session& session) : m_session(session) {
    setObjectName(QStringLiteral("MayaWindow"));
    resize(1100, 760);
    UiElement self;
    self.name = "MayaWindow";
    self.object = this;
    int id = UiTree::kNone;
    ignore(m_tree.add(self, {}, id));

    m_view = new SceneView(session.scene(), this);
    setCentralWidget(m_view);
    m_outliner = new Outliner(session.scene(), this);
    m_editor = new ScriptEditor(session, this);
    docked(this, tr("Outliner"), m_outliner, Qt::LeftDockWidgetArea);
    docked(this, tr("Script Editor"), m_editor, Qt::BottomDockWidgetArea);
    resizeDocks(findChildren<QDockWidget*>(), {240, 220}, Qt::Horizontal);

    buildFileMenu();
    buildEditMenu();
    buildWindowsMenu();
    statusBar()->showMessage(tr("Ready"));
    m_sink = session.log().addSink([this](const LogLine& line) {
        statusBar()->showMessage(QString::fromStdString(shownLine(line)).section('\n', 0, 0));
    });
    session.mainWindow = this;
    refreshTitle();
}

MainWindow::~MainWindow() {
    m_session.log().removeSink(m_sink);
    if (m_session.mainWindow == this)
        m_session.mainWindow = nullptr;
}

QMenu* MainWindow::addMenu(const QString& label, const char* name) {
    QMenu* menu = menuBar()->addMenu(label);
    UiElement one;
    one.name = name;
    one.kind = UiKind::Menu;
    one.object = menu;
    one.parent = m_tree.lookUp("MayaWindow");
    one.label = QString(label).remove('&').toStdString();
    int id = UiTree::kNone;
    ignore(m_tree.add(one, {}, id));
    return menu;
}

void MainWindow::buildFileMenu() {
    QMenu* menu = addMenu(tr("&File"), "mainFileMenu");
    menu->addAction(tr("&Open Scene..."), this, &MainWindow::open, QKeySequence::Open);
    menu->addAction(tr("&Save Scene"), this, &MainWindow::save, QKeySequence::Save);
    menu->addAction(tr("Save Scene &As..."), this, &MainWindow::saveAs, QKeySequence::SaveAs);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &MainWindow::close, QKeySequence::Quit);
}

void MainWindow::buildEditMenu() {
    QMenu* menu = addMenu(tr("&Edit"), "mainEditMenu");
    menu->addAction(tr("&Delete"), this, &MainWindow::deleteSelected, QKeySequence::Delete);
    menu->addAction(tr("Select &Nothing"), this, [this] { m_session.scene().selection().clear(); });
}

void MainWindow::buildWindowsMenu() {
    QMenu* menu = addMenu(tr("&Windows"), "mainWindowMenu");
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        menu->addAction(dock->toggleViewAction());
    menu->addSeparator();
    menu->addAction(tr("&Frame All"), this, [this] { m_view->frameAll(); });
}

void MainWindow::runItem(int id) {
    const UiElement* one = m_tree.element(id);
    if (!one || one->command.empty())
        return;
    // Copies: the command may delete its own item.
    const std::string command = one->command;
    const bool python = one->sourceType != "mel";
    const auto* action = qobject_cast<QAction*>(one->object.data());
    // A failure is printed by the language.
    ignore(runControlCommand(m_session, command, {Value(action && action->isChecked())}, python));
}

void MainWindow::runEvent(int id, const std::string& event, const std::vector<Value>& values) {
    const UiElement* one = m_tree.element(id);
    const auto found = one ? one->commands.find(event) : decltype(one->commands.end())();
    if (!one || found == one->commands.end() || found->second.text.empty())
        return;
    // A copy: the command may delete its own control.
    UiCommand command = found->second;
    // What a button runs is taken as it stands.
    if (!values.empty() && !isCallback(m_session, command.text) && event != "command")
        command.text = withValue(command, values.front());
    ignore(runControlCommand(m_session, command.text, values, command.python));
}

bool MainWindow::openScene(const QString& path) {
    Value result;
    const Status opened = m_session.call("file", {flagOf("open", true), flagOf("force", true)},
                                         {Value(path.toStdString())}, result);
    if (!opened)
        m_session.log().write(Channel::Error, opened.text());
    refreshTitle();
    return opened.isOk();
}

void MainWindow::refreshTitle() {
    const QString file = QString::fromStdString(m_session.scene().document().fileName);
    setWindowTitle(
        tr("Torvel host - %1").arg(file.isEmpty() ? tr("untitled") : QFileInfo(file).fileName()));
}

void MainWindow::open() {
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open Scene"), {}, tr("Maya ASCII (*.ma)"));
    if (!path.isEmpty() && mayDiscard())
        openScene(path);
}

void MainWindow::save() {
    const QString file = QString::fromStdString(m_session.scene().document().fileName);
    file.isEmpty() ? saveAs() : static_cast<void>(saveTo(file));
}

void MainWindow::saveAs() {
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Save Scene As"), QString::fromStdString(m_session.scene().document().fileName),
        tr("Maya ASCII (*.ma)"));
    if (!path.isEmpty())
        saveTo(path);
}

bool MainWindow::saveTo(const QString& path) {
    Value result;
    Status saved = m_session.call("file", {flagOf("rename", path.toStdString())}, {}, result);
    if (saved)
        saved =
            m_session.call("file", {flagOf("save", true), flagOf("type", "mayaAscii")}, {}, result);
    if (!saved)
        m_session.log().write(Channel::Error, saved.text());
    refreshTitle();
    return saved.isOk();
}

bool MainWindow::mayDiscard() {
    if (!m_session.scene().document().modified)
        return true;
    return QMessageBox::question(
               this, tr("Torvel host"), tr("The scene has changes that are not saved. Drop them?"),
               QMessageBox::Discard | QMessageBox::Cancel) == QMessageBox::Discard;
}

void MainWindow::deleteSelected() {
    Value result;
    if (m_session.scene().selection().items().empty())
        return;
    if (const Status done = m_session.call("delete", {}, {}, result); !done)
        m_session.log().write(Channel::Error, done.text());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // In batch nobody could answer.
    event->setAccepted(m_session.batch || mayDiscard());
}

MainWindow* mainWindowOf(const Session& session) {
    return static_cast<MainWindow*>(session.mainWindow);
}

}  // namespace torvel
