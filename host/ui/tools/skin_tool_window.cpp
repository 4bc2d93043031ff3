#include "ui/tools/skin_tool_window.h"

#include <algorithm>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QTimer>

#include "commands/skin/binding.h"

namespace torvel {

namespace {

bool isSkinOfMesh(const Scene& scene, NodeHandle node) {
    const std::vector<NodeHandle> shapes = outputShapes(scene, node);
    return !shapes.empty() && scene.isType(shapes.front(), "mesh");
}

std::vector<NodeHandle> skinsOfScene(const Scene& scene) {
    std::vector<NodeHandle> skins;
    for (NodeHandle node : scene.allNodes())
        if (scene.isType(node, "skinCluster") && isSkinOfMesh(scene, node))
            skins.push_back(node);
    return skins;
}

NodeHandle skinOfSelection(const Scene& scene) {
    for (const SelectionItem& item : scene.selection().items()) {
        if (scene.isType(item.node, "skinCluster"))
            return item.node;
        const std::vector<NodeHandle> found =
            findSkinClusters(scene, bindableShape(scene, item.node));
        if (!found.empty())
            return found.front();
    }
    return {};
}

}  // namespace

SkinToolWindow::SkinToolWindow(Session& session, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_session(session),
      m_box(new QVBoxLayout(this)),
      m_choice(new QComboBox(this)),
      m_timer(new QTimer(this)) {
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Skin"), this));
    row->addWidget(m_choice, 1);
    m_choice->setObjectName(QStringLiteral("skin"));
    m_box->addLayout(row);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, [this] {
        readSkins();
        refresh();
    });
    connect(m_choice, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        chooseSkin(index);
        refresh();
    });
    scene().addListener(this);
}

SkinToolWindow::~SkinToolWindow() {
    scene().removeListener(this);
}

void SkinToolWindow::present() {
    if (isVisible()) {
        readSkins();
        refresh();
    }
    show();
    raise();
    activateWindow();
}

void SkinToolWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    readSkins();
    refresh();
}

void SkinToolWindow::later() {
    if (isVisible() && !m_timer->isActive())
        m_timer->start(0);
}

// The skin of the selection, else the one chosen before, else the first.
void SkinToolWindow::readSkins() {
    m_skins = skinsOfScene(scene());
    const auto find = [this](NodeHandle skin) {
        return std::find(m_skins.begin(), m_skins.end(), skin);
    };
    auto at = find(skinOfSelection(scene()));
    if (at == m_skins.end())
        at = find(m_skin);
    if (at == m_skins.end())
        at = m_skins.begin();
    const QSignalBlocker quiet(m_choice);
    m_choice->clear();
    for (NodeHandle skin : m_skins)
        m_choice->addItem(QString::fromStdString(
            scene().names().shortest(skin) + "  (" +
            scene().names().shortest(outputShapes(scene(), skin).front()) + ")"));
    chooseSkin(static_cast<int>(at - m_skins.begin()));
    m_choice->setCurrentIndex(m_skins.empty() ? -1 : static_cast<int>(at - m_skins.begin()));
}

void SkinToolWindow::chooseSkin(int index) {
    const bool there = index >= 0 && index < static_cast<int>(m_skins.size());
    m_skin = there ? m_skins[static_cast<std::size_t>(index)] : NodeHandle();
}

bool SkinToolWindow::run(const std::string& command, const std::vector<RawFlag>& flags,
                         std::vector<Value> args) {
    Value result;
    const Status done = m_session.call(command, flags, std::move(args), result);
    if (!done)
        m_session.log().write(Channel::Error, done.text());
    return done.isOk();
}

void SkinToolWindow::tell(const std::string& text) {
    m_session.log().write(Channel::Info, text);
}

}  // namespace torvel
