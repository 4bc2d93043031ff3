#include "ui/tools/skin_mirror_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "commands/skin/binding.h"

namespace torvel {

namespace {

const char* const kPlanes[] = {"YZ", "XZ", "XY"};
const char* const kAssociations[] = {"closestJoint", "oneToOne", "name"};

RawFlag textFlag(const char* name, const char* value) {
    return {name, {Value(value)}, true};
}

RawFlag onFlag(const char* name) {
    return {name, {Value(true)}, true};
}

}  // namespace

SkinMirrorWindow::SkinMirrorWindow(Session& session, QWidget* parent)
    : SkinToolWindow(session, parent),
      m_planes(new QButtonGroup(this)),
      m_direction(new QCheckBox(tr("Positive to negative"), this)),
      m_surface(new QComboBox(this)),
      m_preview(new QLabel(this)),
      m_pairs(new QTreeWidget(this)),
      m_buttons(new QWidget(this)) {
    setObjectName(QStringLiteral("mirrorSkinWeightsOptions"));
    setWindowTitle(tr("Mirror Skin Weights Options"));
    resize(430, 480);
    buildChoices();
    m_pairs->setHeaderLabels({tr("Influence"), tr("Gives its weights to")});
    m_pairs->setRootIsDecorated(false);
    m_pairs->setUniformRowHeights(true);
    m_pairs->setAlternatingRowColors(true);
    m_preview->setObjectName(QStringLiteral("preview"));
    m_preview->setWordWrap(true);
    box()->addWidget(m_preview);
    box()->addWidget(m_pairs, 1);
    buildButtons();
}

QComboBox* SkinMirrorWindow::association(const QString& none, const char* name) {
    auto* choice = new QComboBox(this);
    choice->setObjectName(QString::fromLatin1(name));
    choice->addItems({tr("Closest joint"), tr("One to one"), tr("Name (left and right)")});
    if (!none.isEmpty()) {
        choice->addItem(none);
        choice->setCurrentIndex(choice->count() - 1);
    }
    connect(choice, QOverload<int>::of(&QComboBox::activated), this, [this] { refresh(); });
    return choice;
}

void SkinMirrorWindow::buildChoices() {
    auto* planes = new QWidget(this);
    auto* row = new QHBoxLayout(planes);
    row->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        auto* button = new QRadioButton(QString::fromLatin1(kPlanes[i]), planes);
        button->setChecked(i == 0);
        button->setObjectName(QStringLiteral("plane") + QString::fromLatin1(kPlanes[i]));
        m_planes->addButton(button, i);
        row->addWidget(button);
        connect(button, &QRadioButton::clicked, this, [this] { refresh(); });
    }
    row->addStretch();
    m_direction->setChecked(true);
    m_direction->setObjectName(QStringLiteral("direction"));
    connect(m_direction, &QCheckBox::clicked, this, [this] { refresh(); });
    m_surface->addItems({tr("Closest point on surface"), tr("Closest component")});
    m_first = association({}, "association1");
    m_second = association(tr("None"), "association2");
    auto* form = new QFormLayout;
    form->addRow(tr("Mirror across"), planes);
    form->addRow(tr("Direction"), m_direction);
    form->addRow(tr("Surface association"), m_surface);
    form->addRow(tr("Influence association 1"), m_first);
    form->addRow(tr("Influence association 2"), m_second);
    box()->addLayout(form);
}

void SkinMirrorWindow::buildButtons() {
    auto* row = new QHBoxLayout(m_buttons);
    row->setContentsMargins(0, 0, 0, 0);
    auto* both = new QPushButton(tr("Mirror"), m_buttons);
    auto* apply = new QPushButton(tr("Apply"), m_buttons);
    auto* leave = new QPushButton(tr("Close"), this);
    both->setObjectName(QStringLiteral("mirror"));
    apply->setObjectName(QStringLiteral("apply"));
    leave->setObjectName(QStringLiteral("close"));
    row->addWidget(both);
    row->addWidget(apply);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_buttons, 2);
    bottom->addWidget(leave, 1);
    box()->addLayout(bottom);
    connect(both, &QPushButton::clicked, this, [this] {
        mirror();
        close();
    });
    connect(apply, &QPushButton::clicked, this, &SkinMirrorWindow::mirror);
    connect(leave, &QPushButton::clicked, this, &QWidget::close);
}

CopyOptions SkinMirrorWindow::options() const {
    const MirrorPlane planes[] = {MirrorPlane::YZ, MirrorPlane::XZ, MirrorPlane::XY};
    const InfluenceMatch matches[] = {InfluenceMatch::ByClosest, InfluenceMatch::ByOrder,
                                      InfluenceMatch::ByName};
    CopyOptions chosen;
    chosen.plane = planes[std::max(0, m_planes->checkedId())];
    chosen.inverse = !m_direction->isChecked();
    chosen.closestPoint = m_surface->currentIndex() == 0;
    chosen.matches = {matches[m_first->currentIndex()]};
    if (m_second->currentIndex() < 3)
        chosen.matches.push_back(matches[m_second->currentIndex()]);
    return chosen;
}

void SkinMirrorWindow::refresh() {
    m_pairs->clear();
    MirrorCount count;
    const bool good = !skin().isNull() && countMirror(scene(), skin(), options(), count);
    m_buttons->setEnabled(good && count.written > 0);
    if (!good) {
        m_preview->setText(tr("The scene has no skin of a mesh."));
        return;
    }
    m_preview->setText(tr("%1 points will be written, %2 stay, %3 lie on the plane.")
                           .arg(count.written)
                           .arg(count.kept)
                           .arg(count.onPlane));
    std::map<std::int32_t, std::string> names;
    for (const Influence& influence : influencesOf(scene(), skin()))
        names[influence.logical] = scene().names().shortest(influence.node);
    for (const InfluencePair& pair : matchInfluences(scene(), skin(), skin(), options())) {
        const auto partner = names.find(pair.to);
        auto* row = new QTreeWidgetItem(m_pairs);
        row->setText(0, QString::fromStdString(names[pair.from]));
        row->setText(1, partner == names.end() ? tr("nothing: its weights are lost")
                                               : QString::fromStdString(partner->second));
    }
    m_pairs->resizeColumnToContents(0);
}

void SkinMirrorWindow::mirror() {
    MirrorCount count;
    if (skin().isNull() || !countMirror(scene(), skin(), options(), count))
        return;
    const std::string name = scene().names().shortest(skin());
    std::vector<RawFlag> flags = {
        textFlag("sourceSkin", name.c_str()),
        textFlag("destinationSkin", name.c_str()),
        textFlag("mirrorMode", kPlanes[std::max(0, m_planes->checkedId())]),
        textFlag("surfaceAssociation",
                 m_surface->currentIndex() == 0 ? "closestPoint" : "closestComponent"),
    };
    Value::List kinds = {Value(kAssociations[m_first->currentIndex()])};
    if (m_second->currentIndex() < 3)
        kinds.push_back(Value(kAssociations[m_second->currentIndex()]));
    flags.push_back({"influenceAssociation", {Value(kinds)}, true});
    if (!m_direction->isChecked())
        flags.push_back(onFlag("mirrorInverse"));
    if (run("copySkinWeights", flags))
        tell("Mirrored the weights of " + std::to_string(count.written) + " points of " + name +
             ".");
    refresh();
}

}  // namespace torvel
