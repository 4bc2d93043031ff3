#include "ui/tools/skin_paint_window.h"

#include <algorithm>
#include <numeric>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "graph/journal.h"
#include "edit/components.h"
#include "commands/skin/binding.h"
#include "nodes/deform/skin_weights.h"

namespace torvel {

namespace {

constexpr std::size_t kMostRows = 2000;  ///< the table shows the first ones of more points

}  // namespace

SkinPaintWindow::SkinPaintWindow(Session& session, QWidget* parent)
    : SkinToolWindow(session, parent),
      m_influences(new QListWidget(this)),
      m_held(new QCheckBox(tr("Hold the weights of this influence"), this)),
      m_mode(new QComboBox(this)),
      m_value(new QDoubleSpinBox(this)),
      m_target(new QButtonGroup(this)),
      m_summary(new QLabel(this)),
      m_table(new QTableWidget(0, 2, this)),
      m_paint(new QPushButton(tr("Paint"), this)) {
    setObjectName(QStringLiteral("paintSkinWeights"));
    setWindowTitle(tr("Tool Settings - Paint Skin Weights"));
    resize(560, 460);
    auto* halves = new QHBoxLayout;
    halves->addWidget(influencePage(), 1);
    halves->addWidget(brushPage(), 1);
    box()->addLayout(halves, 1);
    connect(m_influences, &QListWidget::currentRowChanged, this, [this](int row) {
        if (m_busy)
            return;
        const auto at = static_cast<std::size_t>(row);
        m_chosen = row >= 0 && at < m_nodes.size() ? m_nodes[at] : NodeHandle();
        showWeights();
    });
    connect(m_held, &QCheckBox::clicked, this, &SkinPaintWindow::hold);
    connect(m_paint, &QPushButton::clicked, this, &SkinPaintWindow::paint);
    connect(m_table, &QTableWidget::cellChanged, this, &SkinPaintWindow::typed);
}

QWidget* SkinPaintWindow::influencePage() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_influences->setObjectName(QStringLiteral("influences"));
    m_held->setObjectName(QStringLiteral("hold"));
    column->addWidget(new QLabel(tr("Influences"), page));
    column->addWidget(m_influences, 1);
    column->addWidget(m_held);
    return page;
}

QWidget* SkinPaintWindow::brushPage() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    m_mode->addItems({tr("Replace"), tr("Add"), tr("Scale"), tr("Smooth")});
    m_mode->setObjectName(QStringLiteral("operation"));
    m_value->setObjectName(QStringLiteral("value"));
    m_value->setRange(-10.0, 10.0);
    m_value->setDecimals(4);
    m_value->setSingleStep(0.05);
    m_value->setValue(1.0);
    auto* form = new QFormLayout;
    form->addRow(tr("Operation"), m_mode);
    form->addRow(tr("Value"), m_value);
    column->addLayout(form);
    const QString names[] = {tr("Selected vertices"), tr("All vertices")};
    for (int i = 0; i < 2; ++i) {
        auto* button = new QRadioButton(names[i], page);
        button->setChecked(i == 0);
        button->setObjectName(i == 0 ? QStringLiteral("selectedPoints")
                                     : QStringLiteral("allPoints"));
        m_target->addButton(button, i);
        column->addWidget(button);
        connect(button, &QRadioButton::clicked, this, [this] { showWeights(); });
    }
    m_paint->setObjectName(QStringLiteral("paint"));
    m_summary->setObjectName(QStringLiteral("summary"));
    m_summary->setWordWrap(true);
    m_table->setHorizontalHeaderLabels({tr("Vertex"), tr("Weight")});
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(20);
    m_table->horizontalHeader()->setStretchLastSection(true);
    column->addWidget(m_paint);
    column->addWidget(m_summary);
    column->addWidget(m_table, 1);
    return page;
}

NodeHandle SkinPaintWindow::influence() const {
    return logical() >= 0 ? m_chosen : NodeHandle();
}

std::int32_t SkinPaintWindow::logical() const {
    return skin().isNull() || !scene().node(m_chosen) ? -1
                                                      : influenceIndex(scene(), skin(), m_chosen);
}

void SkinPaintWindow::refresh() {
    readInfluences();
    showWeights();
}

void SkinPaintWindow::readInfluences() {
    m_busy = true;
    m_influences->clear();
    m_nodes.clear();
    int chosen = 0;
    const std::vector<Influence> all =
        skin().isNull() ? std::vector<Influence>() : influencesOf(scene(), skin());
    for (const Influence& each : all) {
        const bool held = isInfluenceLocked(scene(), skin(), each.logical);
        chosen = each.node == m_chosen ? static_cast<int>(m_nodes.size()) : chosen;
        m_nodes.push_back(each.node);
        m_influences->addItem(QString::fromStdString(scene().names().shortest(each.node)) +
                              (held ? tr("  (held)") : QString()));
    }
    m_chosen = m_nodes.empty() ? NodeHandle() : m_nodes[static_cast<std::size_t>(chosen)];
    m_influences->setCurrentRow(m_nodes.empty() ? -1 : chosen);
    m_busy = false;
}

std::vector<int> SkinPaintWindow::points() const {
    if (skin().isNull())
        return {};
    const NodeHandle shape = outputShapes(scene(), skin()).front();
    if (m_target->checkedId() == 1)
        return allPoints(scene(), shape).points;
    std::vector<int> chosen;
    for (const SelectionItem& item : scene().selection().items()) {
        PointSet set;
        if (bindableShape(scene(), item.node) == shape && pointsOfItem(scene(), item, set))
            chosen.insert(chosen.end(), set.points.begin(), set.points.end());
    }
    std::sort(chosen.begin(), chosen.end());
    chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
    return chosen;
}

void SkinPaintWindow::showWeights() {
    m_busy = true;
    const std::int32_t column = logical();
    const bool held = column >= 0 && isInfluenceLocked(scene(), skin(), column);
    const std::vector<int> all = column >= 0 ? points() : std::vector<int>();
    const WeightList* weights = column >= 0 ? weightsOf(scene(), skin()) : nullptr;
    m_rows.assign(all.begin(),
                  all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), kMostRows)));
    m_table->setRowCount(static_cast<int>(m_rows.size()));
    double sum = 0.0, least = 1.0, most = 0.0;
    for (int point : all) {
        const double weight = weights->weight(static_cast<std::size_t>(point), column);
        sum += weight;
        least = std::min(least, weight);
        most = std::max(most, weight);
    }
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        const double weight = weights->weight(static_cast<std::size_t>(m_rows[row]), column);
        auto* name = new QTableWidgetItem(QStringLiteral("vtx[%1]").arg(m_rows[row]));
        name->setFlags(Qt::ItemIsEnabled);
        m_table->setItem(static_cast<int>(row), 0, name);
        m_table->setItem(static_cast<int>(row), 1,
                         new QTableWidgetItem(QString::number(weight, 'f', 4)));
    }
    m_held->setEnabled(column >= 0);
    m_held->setChecked(held);
    m_paint->setEnabled(!all.empty() && !held);
    m_table->setEnabled(!held);
    if (skin().isNull())
        m_summary->setText(tr("The scene has no skin of a mesh."));
    else if (all.empty())
        m_summary->setText(tr("No vertices of the skin are selected."));
    else
        m_summary->setText(tr("%1 vertices, weights %2 to %3, mean %4")
                               .arg(all.size())
                               .arg(least, 0, 'f', 3)
                               .arg(most, 0, 'f', 3)
                               .arg(sum / static_cast<double>(all.size()), 0, 'f', 3));
    m_busy = false;
}

void SkinPaintWindow::typed(int row, int column) {
    if (m_busy || column != 1 || row < 0 || row >= static_cast<int>(m_rows.size()))
        return;
    bool good = false;
    const double value = m_table->item(row, column)->text().toDouble(&good);
    if (good)
        apply(PaintMode::Replace, value, {m_rows[static_cast<std::size_t>(row)]});
    showWeights();
}

void SkinPaintWindow::hold(bool on) {
    if (influence().isNull())
        return;
    const std::string name = scene().names().shortest(influence());
    run("setAttr", {}, {Value(name + ".lockInfluenceWeights"), Value(on)});
    refresh();
}

void SkinPaintWindow::paint() {
    const PaintMode modes[] = {PaintMode::Replace, PaintMode::Add, PaintMode::Scale,
                               PaintMode::Smooth};
    apply(modes[std::max(0, m_mode->currentIndex())], m_value->value(), points());
    showWeights();
}

void SkinPaintWindow::apply(PaintMode mode, double value, const std::vector<int>& points) {
    PaintResult result;
    const std::string name = scene().names().shortest(m_chosen);
    const EditScope scope(scene(), "Paint weights");
    const Status done = paintWeights(scene(), skin(), logical(), mode, value, points, result);
    if (!done)
        session().log().write(Channel::Error, done.text());
    else if (result.refused > 0)
        session().log().write(
            Channel::Warning,
            std::to_string(result.refused) +
                " vertices keep their weights: no other influence can make up for the change");
    if (done && result.changed > 0)
        tell("Painted " + name + " on " + std::to_string(result.changed) + " vertices.");
}

}  // namespace torvel
