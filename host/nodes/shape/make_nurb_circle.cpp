#include "nodes/shape/make_nurb_circle.h"

#include <algorithm>
#include <cmath>

#include "graph/evaluation.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/shape/nurbs_curve_math.h"
#include "nodes/core/base_attrs.h"

namespace torvel {
namespace {

constexpr double kTurn = 6.283185307179586;

class CirclePlane {
  public:
    explicit CirclePlane(const CircleForm& form) : m_center(form.center) {
        const double length = form.normal.length();
        if (length < 1e-12)
            return;
        const V3d n = form.normal / length;
        if (n.z < -1.0 + 1e-12) {  // the opposite way round: turned about the second axis
            m_u = {-1.0, 0.0, 0.0};
            return;
        }
        // The turn that takes +Z onto n about their common perpendicular, written out for both
        // axes.
        const double k = 1.0 / (1.0 + n.z);
        m_u = {1.0 - n.x * n.x * k, -n.x * n.y * k, -n.x};
        m_v = {-n.x * n.y * k, 1.0 - n.y * n.y * k, -n.y};
    }

    /// Angles count from the second axis.
    V3d at(double angle, double radius) const {
        return m_center + m_v * (radius * std::cos(angle)) - m_u * (radius * std::sin(angle));
    }
    V3d along(double angle, double speed) const {
        return m_v * (-speed * std::sin(angle)) - m_u * (speed * std::cos(angle));
    }

  private:
    V3d m_center, m_u{1.0, 0.0, 0.0}, m_v{0.0, 1.0, 0.0};
};

// A uniform cubic B-spline passes its knots at (p0 + 4 p1 + p2) / 6 (The NURBS Book, chapter 2):
// points on a ring of radius r 3 / (2 + cos step) put it on the circle there.
void addRing(NurbsCurveData& curve, const CirclePlane& plane, const CircleForm& form,
             int sections) {
    const double step = kTurn / sections;
    const double reach = form.degree == 3 ? 3.0 / (2.0 + std::cos(step)) : 1.0;
    const int before = form.degree == 3 ? 1 : 0;
    curve.form = 2;
    for (int i = 0; i < sections; ++i)
        curve.cvs.push_back(plane.at((i - before) * step, form.radius * reach));
    for (int i = 0; i < curve.degree; ++i)
        curve.cvs.push_back(curve.cvs[static_cast<std::size_t>(i)]);
    for (int i = 1 - curve.degree; i < sections + curve.degree; ++i)
        curve.knots.push_back(i);
}

// Parts of the three control points that shape a clamped curve at its inner knot number `at`.
void partsAt(int at, int sections, double (&parts)[3]) {
    const bool early = at == 1, late = at == sections - 1;
    parts[0] = early ? 1.0 / 4.0 : 1.0 / 6.0;
    parts[2] = late ? 1.0 / 4.0 : 1.0 / 6.0;
    parts[1] = 1.0 - parts[0] - parts[2];
}

// Cubic spline interpolation with given end derivatives, a tridiagonal system (The NURBS
// Book, 9.2.3; solved by the Thomas algorithm): the control points 2 .. sections of an arc whose
// points at the inner knots are known, with those before and after.
void solveInner(std::vector<V3d>& cvs, const std::vector<V3d>& through) {
    const int sections = static_cast<int>(through.size()) - 1;
    std::vector<double> above(cvs.size(), 0.0);
    for (int at = 1; at < sections; ++at) {
        double parts[3];
        partsAt(at, sections, parts);
        const auto i = static_cast<std::size_t>(at) + 1;
        V3d right = through[static_cast<std::size_t>(at)] - cvs[i - 1] * (at == 1 ? parts[0] : 0.0);
        double middle = parts[1];
        if (at > 1) {
            middle -= parts[0] * above[i - 1];
            right -= cvs[i - 1] * parts[0];
        }
        if (at == sections - 1)
            right -= cvs[i + 1] * parts[2];
        else
            above[i] = parts[2] / middle;
        cvs[i] = right / middle;
    }
    for (int at = sections - 2; at >= 1; --at) {
        const auto i = static_cast<std::size_t>(at) + 1;
        cvs[i] -= cvs[i + 1] * above[i];
    }
}

void addArc(NurbsCurveData& curve, const CirclePlane& plane, const CircleForm& form, int sections) {
    const double step = form.sweep / sections;
    std::vector<V3d> through;
    for (int i = 0; i <= sections; ++i)
        through.push_back(plane.at(i * step, form.radius));
    curve.form = 0;
    if (curve.degree == 1) {
        curve.cvs = through;
    } else {
        const auto last = static_cast<std::size_t>(sections) + 2;
        curve.cvs.resize(last + 1);
        curve.cvs[0] = through.front();
        curve.cvs[1] = through.front() + plane.along(0.0, form.radius * step) / 3.0;
        curve.cvs[last] = through.back();
        curve.cvs[last - 1] = through.back() - plane.along(form.sweep, form.radius * step) / 3.0;
        solveInner(curve.cvs, through);
    }
    curve.knots = clampedKnots(curve.cvs.size(), curve.degree);
}

constexpr const char* kResult = "outputCurve";

constexpr AttrRow kAttrs[] = {
    compoundRow("center", "c", AttrType::Double3, 0, kResult),
    under("center", attrRow("centerX", "cx", AttrType::Distance)),
    under("center", attrRow("centerY", "cy", AttrType::Distance)),
    under("center", attrRow("centerZ", "cz", AttrType::Distance)),
    compoundRow("first", "fp", AttrType::Double3),
    under("first", attrRow("firstPointX", "fpx", AttrType::Distance, 1.0)),
    under("first", attrRow("firstPointY", "fpy", AttrType::Distance)),
    under("first", attrRow("firstPointZ", "fpz", AttrType::Distance)),
    compoundRow("normal", "nr", AttrType::Double3, 0, kResult),
    under("normal", attrRow("normalX", "nrx", AttrType::Distance)),
    under("normal", attrRow("normalY", "nry", AttrType::Distance)),
    under("normal", attrRow("normalZ", "nrz", AttrType::Distance, 1.0)),
    attrRow("sweep", "sw", AttrType::Angle, kTurn, 0, kResult),
    attrRow("radius", "r", AttrType::Distance, 1.0, kKeyable, kResult),
    enumRow("degree", "d", "Linear=1:Cubic=3", 3.0, 0, kResult),
    attrRow("useTolerance", "ut", AttrType::Bool),
    within(attrRow("sections", "s", AttrType::Long, 8.0, 0, kResult), 1.0, kMostCircleSections),
    attrRow("tolerance", "tol", AttrType::Double, 0.01),
    attrRow("fixCenter", "fc", AttrType::Bool, 1.0),
    attrRow("outputCurve", "oc", AttrType::NurbsCurve, 0.0, kOutput | kNotStored | kGeometryOut),
};

constexpr TypeAttrs kCircle("makeNurbCircle", kDependNode, kAttrs);

void evaluateCircle(Evaluation& e) {
    constexpr AttrIndex kCenter = kCircle["center"], kNormal = kCircle["normal"],
                        kSweep = kCircle["sweep"], kRadius = kCircle["radius"],
                        kDegree = kCircle["degree"], kSections = kCircle["sections"],
                        kCurve = kCircle["outputCurve"];
    CircleForm form;
    form.center = e.vec3(kCenter);
    form.normal = e.vec3(kNormal);
    form.sweep = e.number(kSweep);
    form.radius = e.number(kRadius);
    form.degree = e.number(kDegree) == 1.0 ? 1 : 3;
    const double sections = e.number(kSections);
    form.sections = sections > 0.0 ? static_cast<int>(std::min(sections, kMostCircleSections)) : 0;
    e.set(kCurve, PayloadPtr(circleCurve(form)));
}

constexpr NodeTypeRow kTypes[] = {
    typeRow(kCircle, fn::kCircle, "kCircle", kHistoryMaker, evaluateCircle)};

}  // namespace

TypeRows circleTypes() {
    return family(kTypes);
}

std::shared_ptr<const NurbsCurveData> circleCurve(const CircleForm& form) {
    auto curve = std::make_shared<NurbsCurveData>();
    curve->degree = form.degree == 1 ? 1 : 3;
    const CirclePlane plane(form);
    if (std::abs(form.sweep) >= kTurn - 1e-9)
        addRing(*curve, plane, form, std::max(form.sections, 3));
    else
        addArc(*curve, plane, form, std::max(form.sections, 1));
    curve->spans = static_cast<int>(curve->cvs.size()) - curve->degree;
    return curve;
}

}  // namespace torvel
