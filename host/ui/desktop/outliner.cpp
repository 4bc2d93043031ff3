#include "ui/desktop/outliner.h"

#include <algorithm>

#include <QHeaderView>
#include <QPainter>
#include <QTimer>

namespace torvel {

namespace {

constexpr int kOpenedAtFirst = 300;  ///< nodes shown opened in a scene that is not larger

std::uint64_t keyOf(NodeHandle handle) {
    return (std::uint64_t(handle.index) << 32) | handle.generation;
}

QColor colorOf(const Scene& scene, const Node& node) {
    if (scene.isType(node.self, "joint"))
        return QColor(200, 170, 90);
    if (node.type->is(kConstraintType))
        return QColor(150, 120, 180);
    return node.type->is(kShapeType) ? QColor(110, 160, 110) : QColor(120, 150, 190);
}

bool isIntermediate(const Scene& scene, NodeHandle handle) {
    const Plug plug = scene.findPlug(handle, "intermediateObject");
    return !plug.isNull() && scene.number(plug) != 0.0;
}

QIcon dot(const QColor& color) {
    QPixmap picture(12, 12);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(2, 2, 8, 8);
    return QIcon(picture);
}

}  // namespace

Outliner::Outliner(Scene& scene, QWidget* parent) : QTreeWidget(parent), m_scene(scene) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &Outliner::update);
    connect(this, &QTreeWidget::itemExpanded, this, &Outliner::fill);
    connect(this, &QTreeWidget::itemSelectionChanged, this, &Outliner::takeSelection);
    m_scene.addListener(this);
}

Outliner::~Outliner() {
    m_scene.removeListener(this);
}

void Outliner::showEvent(QShowEvent* event) {
    QTreeWidget::showEvent(event);
    update();
}

void Outliner::touch() {
    m_stale = true;
    if (isVisible() && !m_timer->isActive())
        m_timer->start(0);
}

void Outliner::selectionChanged() {
    m_selectionStale = true;
    if (!m_busy && isVisible() && !m_timer->isActive())
        m_timer->start(0);
}

void Outliner::update() {
    if (!isVisible())
        return;
    if (m_stale)
        refresh();
    if (m_selectionStale)
        showSelection();
}

void Outliner::refresh() {
    m_busy = true;
    rememberOpen(invisibleRootItem());
    clear();
    m_stale = false;
    m_selectionStale = true;
    if (const Node* world = m_scene.node(m_scene.world())) {
        const std::vector<NodeHandle> tops = world->children;
        for (NodeHandle handle : tops)
            if (QTreeWidgetItem* item = makeItem(handle)) {
                addTopLevelItem(item);
                const bool small = m_scene.nodeCount() <= kOpenedAtFirst;
                item->setExpanded(small || m_open.count(keyOf(handle)) > 0);
            }
    }
    m_busy = false;
}

// Cameras and the like that every scene has are left out, as are construction leftovers.
QTreeWidgetItem* Outliner::makeItem(NodeHandle handle) {
    const Node* node = m_scene.node(handle);
    if (!node || node->isDefault || isIntermediate(m_scene, handle))
        return nullptr;
    auto* item = new QTreeWidgetItem({QString::fromStdString(node->name)});
    item->setData(0, Qt::UserRole, QVariant::fromValue<qulonglong>(keyOf(handle)));
    item->setIcon(0, dot(colorOf(m_scene, *node)));
    item->setToolTip(0, QString::fromStdString(m_scene.typeName(handle)));
    if (!node->children.empty())
        item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

void Outliner::fill(QTreeWidgetItem* item) {
    const Node* node = m_scene.node(handleOf(item));
    if (!node || item->childCount() > 0)
        return;
    const std::vector<NodeHandle> children = node->children;
    for (NodeHandle handle : children)
        if (QTreeWidgetItem* below = makeItem(handle)) {
            item->addChild(below);
            const bool small = m_scene.nodeCount() <= kOpenedAtFirst;
            below->setExpanded(small || m_open.count(keyOf(handle)) > 0);
        }
    if (item->childCount() == 0)
        item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

void Outliner::rememberOpen(QTreeWidgetItem* item) {
    if (item == invisibleRootItem())
        m_open.clear();
    for (int i = 0; i < item->childCount(); ++i) {
        QTreeWidgetItem* below = item->child(i);
        if (!below->isExpanded())
            continue;
        m_open.insert(keyOf(handleOf(below)));
        rememberOpen(below);
    }
}

void Outliner::showSelection() {
    m_busy = true;
    m_selectionStale = false;
    const std::vector<NodeHandle> chosen = m_scene.selection().nodes();
    std::unordered_set<std::uint64_t> keys;
    for (NodeHandle handle : chosen)
        keys.insert(keyOf(handle));
    clearSelection();
    for (QTreeWidgetItemIterator it(this); *it; ++it)
        (*it)->setSelected(keys.count(keyOf(handleOf(*it))) > 0);
    m_busy = false;
}

void Outliner::takeSelection() {
    if (m_busy)
        return;
    m_busy = true;
    std::vector<NodeHandle> chosen;
    for (QTreeWidgetItem* item : selectedItems())
        if (m_scene.isValid(handleOf(item)))
            chosen.push_back(handleOf(item));
    m_scene.selection().replaceNodes(chosen);
    m_selectionStale = false;
    m_busy = false;
}

NodeHandle Outliner::handleOf(const QTreeWidgetItem* item) const {
    const qulonglong key = item->data(0, Qt::UserRole).toULongLong();
    return {static_cast<std::uint32_t>(key >> 32), static_cast<std::uint32_t>(key & 0xffffffffu)};
}

}  // namespace torvel
