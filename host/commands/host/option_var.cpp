// optionVar: values that scripts keep from one run of the program to the next, in
// ~/.config/torvel/option_vars.json (XDG_CONFIG_HOME in place of ~/.config where it is set).
#include <map>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include "base/number_text.h"
#include "script/session.h"

namespace torvel {
namespace {

enum Kind { kInt, kFloat, kText };
constexpr const char* kKindNames[] = {"int", "float", "string"};

struct Variable {
    Kind kind = kInt;
    bool isArray = false;
    std::vector<Value> items;  ///< one of a plain variable
};

struct OptionVars {
    std::map<std::string, Variable> byName;
    bool isRead = false;
};

// What a flag that writes makes of its variable.
enum class Act { Set, Append, Empty };
struct Writer {
    FlagRow row;
    Kind kind;
    Act act;
};
constexpr Writer kWriters[] = {
    {{"intValue", "iv", "si", kCreate, true}, kInt, Act::Set},
    {{"floatValue", "fv", "sd", kCreate, true}, kFloat, Act::Set},
    {{"stringValue", "sv", "ss", kCreate, true}, kText, Act::Set},
    {{"intValueAppend", "iva", "si", kCreate, true}, kInt, Act::Append},
    {{"floatValueAppend", "fva", "sd", kCreate, true}, kFloat, Act::Append},
    {{"stringValueAppend", "sva", "ss", kCreate, true}, kText, Act::Append},
    {{"intArray", "ia", "s", kCreate, true}, kInt, Act::Empty},
    {{"floatArray", "fa", "s", kCreate, true}, kFloat, Act::Empty},
    {{"stringArray", "sa", "s", kCreate, true}, kText, Act::Empty},
};

constexpr FlagRow kFlags[] = {
    kWriters[0].row,
    kWriters[1].row,
    kWriters[2].row,
    kWriters[3].row,
    kWriters[4].row,
    kWriters[5].row,
    kWriters[6].row,
    kWriters[7].row,
    kWriters[8].row,
    {"arraySize", "as", "s", kCreate},
    {"clearArray", "ca", "s", kCreate, true},
    {"exists", "ex", "s", kCreate},
    {"list", "l", "", kCreate},
    {"query", "q", "s", kCreate},  // takes the name and is no mode
    {"remove", "rm", "s", kCreate, true},
    {"removeFromArray", "rfa", "si", kCreate, true},
};

QString filePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/torvel/option_vars.json");
}

// --- the file ----------------------------------------------------------------------------------

std::string textOfItem(const Value& item, Kind kind) {
    if (kind == kText)
        return item.string();
    return kind == kInt ? std::to_string(item.integer()) : numberText(item.number(), 17);
}

Value itemOfText(const std::string& text, Kind kind) {
    double number = 0.0;
    if (kind == kText)
        return Value(text);
    if (kind == kInt)
        return Value(static_cast<std::int64_t>(std::strtoll(text.c_str(), nullptr, 10)));
    readNumber(text.c_str(), number);
    return Value(number);
}

QJsonObject written(const std::string& name, const Variable& variable) {
    QJsonArray items;
    for (const Value& item : variable.items)
        items.append(QString::fromStdString(textOfItem(item, variable.kind)));
    return {{QStringLiteral("name"), QString::fromStdString(name)},
            {QStringLiteral("type"), QString::fromLatin1(kKindNames[variable.kind])},
            {QStringLiteral("array"), variable.isArray},
            {QStringLiteral("values"), items}};
}

bool readVariable(const QJsonObject& object, std::map<std::string, Variable>& out) {
    Variable variable;
    const std::string type = object.value(QStringLiteral("type")).toString().toStdString();
    int kind = 0;
    while (kind < 3 && type != kKindNames[kind])
        ++kind;
    if (kind == 3 || !object.value(QStringLiteral("name")).isString())
        return false;
    variable.kind = static_cast<Kind>(kind);
    variable.isArray = object.value(QStringLiteral("array")).toBool();
    const QJsonArray items = object.value(QStringLiteral("values")).toArray();
    for (const QJsonValue& item : items)
        variable.items.push_back(itemOfText(item.toString().toStdString(), variable.kind));
    if (!variable.isArray && variable.items.size() != 1)
        return false;
    out[object.value(QStringLiteral("name")).toString().toStdString()] = std::move(variable);
    return true;
}

// A file that cannot be read is never written over.
Status read(const CommandCall& call, OptionVars& vars) {
    QFile file(filePath());
    if (vars.isRead || !file.exists()) {
        vars.isRead = true;
        return Status::ok();
    }
    const std::string name = filePath().toStdString();
    if (!file.open(QIODevice::ReadOnly))
        return call.fail("The file " + name +
                         " cannot be read: " + file.errorString().toStdString() + ".");
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    std::map<std::string, Variable> found;
    bool good = document.isArray();
    const QJsonArray entries = document.array();
    for (const QJsonValue& entry : entries)
        good = good && readVariable(entry.toObject(), found);
    if (!good)
        return call.fail("The file " + name + " is damaged; mend or remove it.");
    vars.byName = std::move(found);
    vars.isRead = true;
    return Status::ok();
}

Status write(const CommandCall& call, const OptionVars& vars) {
    QJsonArray entries;
    for (const auto& [name, variable] : vars.byName)
        entries.append(written(name, variable));
    QDir().mkpath(QFileInfo(filePath()).path());
    QSaveFile file(filePath());
    if (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(entries).toJson()) >= 0 &&
        file.commit())
        return Status::ok();
    return call.fail("The file " + filePath().toStdString() +
                     " cannot be written: " + file.errorString().toStdString() + ".");
}

// --- the command ---------------------------------------------------------------------------------

void act(const Writer& writer, const FlagUse& use, Variable& variable) {
    const bool keeps = writer.act == Act::Append && variable.kind == writer.kind;
    if (!keeps)
        variable.items.clear();
    variable.kind = writer.kind;
    variable.isArray = writer.act != Act::Set;
    if (writer.act != Act::Empty)
        variable.items.push_back(use.values[1]);
}

Status removeItem(const CommandCall& call, const FlagUse& use, OptionVars& vars) {
    const std::string& name = use.values[0].string();
    const auto found = vars.byName.find(name);
    const std::int64_t at = use.values[1].integer();
    if (found == vars.byName.end() || !found->second.isArray || at < 0 ||
        at >= static_cast<std::int64_t>(found->second.items.size()))
        return call.fail("The variable '" + name + "' has no element " + std::to_string(at) + ".");
    found->second.items.erase(found->second.items.begin() + at);
    return Status::ok();
}

// The flags act in the order given.
Status change(const CommandCall& call, OptionVars& vars) {
    for (const FlagUse& use : call.m_flags) {
        const std::string_view flag = use.row->longName;
        const std::string& name = use.values[0].string();
        for (const Writer& writer : kWriters)
            if (flag == writer.row.longName)
                act(writer, use, vars.byName[name]);
        if (flag == "remove")
            vars.byName.erase(name);
        if (const auto found = vars.byName.find(name); flag == "clearArray")
            if (found != vars.byName.end() && found->second.isArray)
                found->second.items.clear();
        if (flag == "removeFromArray")
            if (Status done = removeItem(call, use, vars); !done)
                return done;
    }
    return Status::ok();
}

Value valueOf(const OptionVars& vars, const std::string& name) {
    const auto found = vars.byName.find(name);
    if (found == vars.byName.end())
        return Value(0);
    return found->second.isArray ? Value(Value::List(found->second.items))
                                 : found->second.items.front();
}

Status optionVar(const CommandCall& call, Value& result) {
    OptionVars& vars = call.session().kept<OptionVars>();
    if (Status done = read(call, vars); !done)
        return done;
    if (call.m_flags.empty())
        return call.fail("Needs a flag that tells what to do.");
    if (call.has("query")) {
        result = valueOf(vars, call.text("query"));
    } else if (call.has("exists")) {
        result = Value(vars.byName.count(call.text("exists")) != 0);
    } else if (call.has("arraySize")) {
        const auto found = vars.byName.find(call.text("arraySize"));
        const bool array = found != vars.byName.end() && found->second.isArray;
        result = Value(array ? static_cast<std::int64_t>(found->second.items.size()) : 0);
    } else if (call.has("list")) {
        std::vector<std::string> names;
        for (const auto& [name, variable] : vars.byName)
            names.push_back(name);
        result = Value::strings(names);
    } else {
        OptionVars changed = vars;
        Status done = change(call, changed);
        if (done)
            done = write(call, changed);
        if (done)
            vars = std::move(changed);
        return done;
    }
    return Status::ok();
}

const Command kOptionVarCommands[] = {
    {"optionVar", kFlags, countOf(kFlags), optionVar, "Keeps values from one run to the next."}};

}  // namespace

CommandTable optionVarCommands() {
    return {kOptionVarCommands, std::size(kOptionVarCommands)};
}

}  // namespace torvel
