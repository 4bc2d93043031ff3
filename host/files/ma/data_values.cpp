#include "files/ma/data_values.h"

#include <limits>

#include "base/number_source.h"
#include "files/ma/statement.h"
#include "nodes/deform/dag_pose.h"

namespace torvel {
namespace {

Status damaged(std::string_view typeName, const char* what) {
    return Status::failure("damaged " + std::string(typeName) + " value: " + what);
}

PayloadPtr verbatim(std::string_view typeName, std::string_view text) {
    auto data = std::make_shared<TextData>();
    data->typeName = std::string(typeName);
    data->text = withoutReturns(text);
    return data;
}

// Numbers of a data value; infinities and NaNs among them are counted.
struct FileNumbers : NumberSource {
    FileNumbers(std::string_view text, std::size_t& total)
        : NumberSource(text, NonFinite::Counted), m_total(total) {}
    ~FileNumbers() { m_total += nonFinite(); }
    FileNumbers(const FileNumbers&) = delete;
    FileNumbers& operator=(const FileNumbers&) = delete;

  private:
    std::size_t& m_total;
};

// False for a number too large for a double, too.
bool readDouble(NumberSource& source, double& value) {
    value = std::numeric_limits<double>::quiet_NaN();
    return source.number(value);
}

Status readText(std::string_view text, PayloadPtr& value) {
    TokenCursor cursor(text);
    std::string out;
    if (!cursor.text(out) || !cursor.next().isEnd())
        return damaged("string", "a quoted text was expected");
    value = std::make_shared<StringData>(std::move(out));
    return Status::ok();
}

Status readMatrix(std::string_view text, PayloadPtr& value, std::size_t& nonFinite) {
    FileNumbers source(text, nonFinite);
    auto data = std::make_shared<MatrixData>();
    for (int i = 0; i < 16; ++i)
        if (!readDouble(source, data->matrix[i / 4][i % 4]))
            return damaged("matrix", "16 numbers were expected");
    if (!source.atEnd())
        return damaged("matrix", "more than 16 numbers");
    value = data;
    return Status::ok();
}

// "xform" and 37 values; any other word in place of numbers is kept as it stands.
Status readXform(std::string_view text, PayloadPtr& value, std::size_t& nonFinite) {
    FileNumbers source(text, nonFinite);
    if (source.word() != "xform") {
        value = verbatim("matrix", text);
        return Status::ok();
    }
    value = parseXform(source);
    return value && source.atEnd() ? Status::ok()
                                   : damaged("matrix", "37 values were expected behind \"xform\"");
}

// A count that the text can hold: each entry takes `least` characters or more.
bool readCount(NumberSource& source, std::size_t least, std::size_t& count) {
    long long number = 0;
    if (!source.integer(number) || number < 0)
        return false;
    count = static_cast<std::size_t>(number);
    return count <= source.rest().size() / least + 1;
}

Status readNumbers(std::string_view typeName, std::string_view text, std::size_t each,
                   PayloadPtr& value, std::size_t& nonFinite) {
    FileNumbers source(text, nonFinite);
    std::size_t count = 0;
    if (!readCount(source, each, count))
        return damaged(typeName, "its count is missing or larger than the text");
    auto data = std::make_shared<DoubleArrayData>();
    data->items.resize(count * each);
    for (double& item : data->items)
        if (!readDouble(source, item))
            return damaged(typeName, "a number was expected");
    value = data;
    return source.atEnd() ? Status::ok() : damaged(typeName, "more values than its count");
}

Status readIntegers(std::string_view typeName, std::string_view text, PayloadPtr& value) {
    NumberSource source(text);
    std::size_t count = 0;
    if (!readCount(source, 1, count))
        return damaged(typeName, "its count is missing or larger than the text");
    auto data = std::make_shared<IntArrayData>();
    data->items.resize(count);
    for (std::int32_t& item : data->items) {
        long long number = 0;
        if (!source.integer(number) || number != static_cast<std::int32_t>(number))
            return damaged(typeName, "a whole number was expected");
        item = static_cast<std::int32_t>(number);
    }
    value = data;
    return source.atEnd() ? Status::ok() : damaged(typeName, "more values than its count");
}

template <class Data>
Status readTexts(std::string_view typeName, std::string_view text, PayloadPtr& value) {
    auto data = std::make_shared<Data>();
    if (text.empty()) {  // an empty list of components has no count
        value = data;
        return Status::ok();
    }
    NumberSource source(text);
    std::size_t count = 0;
    if (!readCount(source, 2, count))
        return damaged(typeName, "its count is missing or larger than the text");
    TokenCursor cursor(source.rest());
    data->items.resize(count);
    for (std::string& item : data->items)
        if (!cursor.text(item))
            return damaged(typeName, "a quoted text was expected");
    value = data;
    return cursor.next().isEnd() ? Status::ok() : damaged(typeName, "more texts than its count");
}

bool readFlag(NumberSource& source, bool& on) {
    const std::string_view word = source.word();
    on = word == "yes" || word == "on" || word == "true" || word == "1";
    return on || word == "no" || word == "off" || word == "false" || word == "0";
}

bool readCurveHead(NumberSource& source, NurbsCurveData& curve) {
    long long degree = 0, spans = 0, form = 0, dimension = 0;
    if (!source.integer(degree) || !source.integer(spans) || !source.integer(form))
        return false;
    if (!readFlag(source, curve.rational) || !source.integer(dimension))
        return false;
    curve.degree = static_cast<int>(degree);
    curve.spans = static_cast<int>(spans);
    curve.form = static_cast<int>(form);
    curve.dimension = static_cast<int>(dimension);
    return degree >= 1 && degree <= 64 && spans >= 0 && spans <= 100000000 && form >= 0 &&
           form <= 2 && (dimension == 2 || dimension == 3);
}

Status readCurve(std::string_view text, PayloadPtr& value, std::size_t& nonFinite) {
    FileNumbers source(text, nonFinite);
    if (source.atEnd()) {
        value = nullptr;
        return Status::ok();
    }
    auto curve = std::make_shared<NurbsCurveData>();
    std::size_t knots = 0, cvs = 0;
    if (!readCurveHead(source, *curve))
        return damaged("nurbsCurve", "degree, spans, form, rational and dimension were expected");
    if (!readCount(source, 1, knots))
        return damaged("nurbsCurve", "its knot count is missing or larger than the text");
    curve->knots.resize(knots);
    for (double& knot : curve->knots)
        if (!readDouble(source, knot))
            return damaged("nurbsCurve", "a knot was expected");
    if (!readCount(source, 2, cvs))
        return damaged("nurbsCurve", "its point count is missing or larger than the text");
    curve->cvs.resize(cvs);
    curve->weights.resize(curve->rational ? cvs : 0);
    for (std::size_t i = 0; i < cvs; ++i) {
        for (int axis = 0; axis < curve->dimension; ++axis)
            if (!readDouble(source, curve->cvs[i][axis]))
                return damaged("nurbsCurve", "a coordinate was expected");
        if (curve->rational && !readDouble(source, curve->weights[i]))
            return damaged("nurbsCurve", "a weight was expected");
    }
    if (!source.atEnd())
        return damaged("nurbsCurve", "more values than its counts");
    value = curve;
    return Status::ok();
}

void appendDoubles(std::string& out, const std::vector<double>& items, std::size_t each) {
    out += std::to_string(items.size() / each);
    for (double item : items) {
        out += ' ';
        appendDouble(out, item);
    }
}

void appendTexts(std::string& out, const std::vector<std::string>& items) {
    out += std::to_string(items.size());
    for (const std::string& item : items)
        out += ' ' + inQuotes(item);
}

void appendCurve(std::string& out, const NurbsCurveData& curve) {
    out += "\n\t\t" + std::to_string(curve.degree) + ' ' + std::to_string(curve.spans) + ' ' +
           std::to_string(curve.form) + (curve.rational ? " yes " : " no ") +
           std::to_string(curve.dimension) + "\n\t\t";
    appendDoubles(out, curve.knots, 1);
    out += "\n\t\t" + std::to_string(curve.cvs.size());
    for (std::size_t i = 0; i < curve.cvs.size(); ++i) {
        out += "\n\t\t";
        for (int axis = 0; axis < curve.dimension; ++axis) {
            out += axis ? " " : "";
            appendDouble(out, curve.cvs[i][axis]);
        }
        if (curve.rational) {
            out += ' ';
            appendDouble(out, curve.weights[i]);
        }
    }
    out += "\n\t\t";
}

void appendMatrix(std::string& out, const M44d& matrix) {
    for (int i = 0; i < 16; ++i) {
        out += i ? " " : "";
        appendDouble(out, matrix[i / 4][i % 4]);
    }
}

void appendIntegers(std::string& out, const std::vector<std::int32_t>& items) {
    out += std::to_string(items.size());
    for (std::int32_t item : items)
        out += ' ' + std::to_string(item);
}

}  // namespace

Status readDataValue(std::string_view typeName, AttrType wanted, std::string_view text,
                     PayloadPtr& value, std::size_t& nonFinite) {
    const std::string_view trimmed = TokenCursor(text).rest();
    AttrType named = AttrType::Text;
    if (!attrTypeFromName(typeName, named) || named != wanted) {
        value = verbatim(typeName, trimmed);
        return Status::ok();
    }
    switch (wanted) {
        case AttrType::String: return readText(trimmed, value);
        case AttrType::Matrix:
            return !trimmed.empty() && trimmed.front() == '"'
                       ? readXform(trimmed, value, nonFinite)
                       : readMatrix(trimmed, value, nonFinite);
        case AttrType::IntArray: return readIntegers(typeName, trimmed, value);
        case AttrType::DoubleArray: return readNumbers(typeName, trimmed, 1, value, nonFinite);
        case AttrType::VectorArray: return readNumbers(typeName, trimmed, 3, value, nonFinite);
        case AttrType::PointArray: return readNumbers(typeName, trimmed, 4, value, nonFinite);
        case AttrType::StringArray: return readTexts<StringArrayData>(typeName, trimmed, value);
        case AttrType::ComponentList: return readTexts<ComponentListData>(typeName, trimmed, value);
        case AttrType::NurbsCurve: return readCurve(trimmed, value, nonFinite);
        default: break;
    }
    value = verbatim(typeName, trimmed);
    return Status::ok();
}

bool appendDataValue(std::string& out, AttrType type, const Payload& value) {
    if (const auto* kept = dynamic_cast<const TextData*>(&value)) {
        out += " -type " + inQuotes(kept->typeName) + (kept->text.empty() ? "" : " " + kept->text);
        return true;
    }
    std::string text;
    if (const auto* string = dynamic_cast<const StringData*>(&value))
        text = inQuotes(string->text);
    else if (const auto* xform = dynamic_cast<const XformData*>(&value))
        text = "\"xform\" " + formatXform(*xform);
    else if (const auto* matrix = dynamic_cast<const MatrixData*>(&value))
        appendMatrix(text, matrix->matrix);
    else if (const auto* integers = dynamic_cast<const IntArrayData*>(&value))
        appendIntegers(text, integers->items);
    else if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(&value))
        appendDoubles(text, doubles->items,
                      type == AttrType::PointArray    ? 4
                      : type == AttrType::VectorArray ? 3
                                                      : 1);
    else if (const auto* texts = dynamic_cast<const StringArrayData*>(&value))
        appendTexts(text, texts->items);
    else if (const auto* components = dynamic_cast<const ComponentListData*>(&value))
        components->items.empty() ? void() : appendTexts(text, components->items);
    else if (const auto* curve = dynamic_cast<const NurbsCurveData*>(&value))
        appendCurve(text, *curve);
    else
        return false;
    out += std::string(" -type \"") + attrTypeName(type) + "\" " + text;
    return true;
}

}  // namespace torvel
