#include "commands/host/verify.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <ostream>

#include <fmt/format.h>

#include <Imath/ImathBox.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace torvel {

namespace {

constexpr double kIncomparable = std::numeric_limits<double>::infinity();

void note(VerifyRow& row, double change, const std::string& where) {
    // A change that is no number is the largest of all.
    const double size = std::isnan(change) ? kIncomparable : change;
    if (size <= row.largest)
        return;
    row.largest = size;
    row.where = where;
}

template <class Map>
void noteKeys(VerifyRow& row, const Map& before, const Map& after) {
    for (const auto& [key, value] : before)
        if (!after.count(key))
            row.gone.push_back(key);
    for (const auto& [key, value] : after)
        if (!before.count(key))
            row.come.push_back(key);
}

VerifyRow finished(VerifyRow row) {
    row.ok = row.limit < 0.0 || (row.gone.empty() && row.largest <= row.limit);
    return row;
}

VerifyRow comparePoints(const SceneState& before, const SceneState& after, double limit) {
    VerifyRow row{"points", 0, 0, 0.0, limit, {}, {}, {}, 0.0, true};
    noteKeys(row, before.points, after.points);
    for (const auto& [path, points] : after.points)
        row.after += points.size();
    Imath::Box3d box;
    for (const auto& [path, points] : before.points) {
        row.before += points.size();
        for (const V3d& point : points)
            box.extendBy(point);
        const auto other = after.points.find(path);
        if (other == after.points.end())
            continue;
        if (other->second.size() != points.size()) {
            note(row, kIncomparable, path + " (other number of vertices)");
            continue;
        }
        for (std::size_t i = 0; i < points.size(); ++i)
            note(row, (points[i] - other->second[i]).length(),
                 path + ".vtx[" + std::to_string(i) + "]");
    }
    row.size = box.isEmpty() ? 0.0 : box.size().length();
    return finished(row);
}

using Influence = std::map<int, double>;

void compareInfluence(VerifyRow& row, const Influence& a, const Influence& b,
                      const std::string& where) {
    const auto weight = [](const Influence& from, int vertex) {
        const auto it = from.find(vertex);
        return it == from.end() ? 0.0 : it->second;
    };
    for (const Influence* each : {&a, &b})
        for (const auto& [vertex, value] : *each)
            note(row, std::abs(weight(a, vertex) - weight(b, vertex)),
                 where + " vtx[" + std::to_string(vertex) + "]");
}

VerifyRow compareWeights(const SceneState& before, const SceneState& after, double limit) {
    VerifyRow row{"weights", 0, 0, 0.0, limit, {}, {}, {}, 0.0, true};
    std::map<std::string, Influence> all[2];
    int side = 0;
    for (const SceneState* state : {&before, &after}) {
        for (const auto& [mesh, influences] : state->weights)
            for (const auto& [name, weights] : influences) {
                (side == 0 ? row.before : row.after) += weights.size();
                all[side][mesh + " " + name] = weights;
            }
        ++side;
    }
    noteKeys(row, all[0], all[1]);
    for (const auto& [key, weights] : all[0])
        if (const auto other = all[1].find(key); other != all[1].end())
            compareInfluence(row, weights, other->second, key);
    return finished(row);
}

VerifyRow compareMatrices(const SceneState& before, const SceneState& after, double limit) {
    VerifyRow row{"matrices", before.matrices.size(), after.matrices.size(), 0.0, limit, {}, {}, {},
                  true};
    noteKeys(row, before.matrices, after.matrices);
    for (const auto& [name, matrix] : before.matrices) {
        const auto other = after.matrices.find(name);
        if (other == after.matrices.end())
            continue;
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c)
                note(row, std::abs(matrix[r][c] - other->second[r][c]), name);
    }
    return finished(row);
}

VerifyRow compareLists(const char* what, const std::set<std::string>& before,
                       const std::set<std::string>& after, int limit) {
    VerifyRow row{what, before.size(), after.size(), 0.0, double(limit), {}, {}, {}, 0.0, true};
    std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                        std::back_inserter(row.gone));
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                        std::back_inserter(row.come));
    row.largest = static_cast<double>(row.gone.size() + row.come.size());
    row.ok = limit < 0 || row.largest <= limit;
    return row;
}

QJsonArray texts(const std::vector<std::string>& items) {
    QJsonArray array;
    for (const std::string& item : items)
        array.append(QString::fromStdString(item));
    return array;
}

}  // namespace

std::vector<VerifyRow> compareStates(const SceneState& before, const SceneState& after,
                                     const VerifyLimits& limits) {
    return {comparePoints(before, after, limits.points),
            compareWeights(before, after, limits.weights),
            compareMatrices(before, after, limits.matrices),
            compareLists("nodes", before.nodes, after.nodes, limits.nodes),
            compareLists("connections", before.connections, after.connections, limits.connections)};
}

bool allWithin(const std::vector<VerifyRow>& rows) {
    return std::all_of(rows.begin(), rows.end(), [](const VerifyRow& row) { return row.ok; });
}

void printTable(const std::vector<VerifyRow>& rows, std::ostream& out) {
    out << fmt::format("{:<12} {:>9} {:>9} {:>12} {:>10} {:>6} {:>6}  {:<8} {}\n", "verify",
                       "before", "after", "change", "limit", "gone", "come", "", "where");
    for (const VerifyRow& row : rows) {
        const std::string limit = row.limit < 0.0 ? "-" : fmt::format("{:g}", row.limit);
        const char* verdict = row.limit < 0.0 ? "told" : row.ok ? "ok" : "DIFFERS";
        out << fmt::format("{:<12} {:>9} {:>9} {:>12.4g} {:>10} {:>6} {:>6}  {:<8} {}\n", row.what,
                           row.before, row.after, row.largest, limit, row.gone.size(),
                           row.come.size(), verdict, row.where);
    }
}

std::string verifyJson(const std::vector<VerifyRow>& rows) {
    QJsonArray array;
    for (const VerifyRow& row : rows) {
        QJsonObject one;
        one["what"] = QString::fromStdString(row.what);
        one["before"] = static_cast<double>(row.before);
        one["after"] = static_cast<double>(row.after);
        // JSON knows no infinity: things that could not be compared have no number.
        one["largest"] = std::isfinite(row.largest) ? QJsonValue(row.largest) : QJsonValue();
        one["limit"] = row.limit < 0.0 ? QJsonValue() : QJsonValue(row.limit);
        if (row.what == "points")
            one["size"] = row.size;
        one["where"] = QString::fromStdString(row.where);
        one["gone"] = texts(row.gone);
        one["come"] = texts(row.come);
        one["ok"] = row.ok;
        array.append(one);
    }
    QJsonObject all;
    all["ok"] = allWithin(rows);
    all["rows"] = array;
    return QJsonDocument(all).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace torvel
