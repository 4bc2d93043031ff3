#include "python/run.h"

#include <algorithm>
#include <frameobject.h>
#include <vector>

#include "script/session.h"
#include "python/values.h"

namespace torvel::py {

namespace {

Ref compile(const std::string& text, const char* fileName, int start) {
    return Ref(Py_CompileString(text.c_str(), fileName, start));
}

Ref evaluate(const Ref& code) {
    return code ? Ref(PyEval_EvalCode(code.get(), mainDictionary(), mainDictionary())) : Ref();
}

// Everything before the last expression, then that expression; the line numbers stay those of the
// whole text.
struct Parts {
    Ref head;
    Ref tail;
    bool usable = false;
};

Parts compileParts(const std::string& text, const char* fileName) {
    Parts parts;
    const TextRange last = lastExpression(text);
    if (last.isEmpty())
        return parts;
    const std::size_t at = last.begin;
    const auto lines = static_cast<std::size_t>(
        std::count(text.begin(), text.begin() + static_cast<long>(at), '\n'));
    parts.tail =
        compile(std::string(lines, '\n') + text.substr(at, last.end - at), fileName, Py_eval_input);
    if (parts.tail && text.find_first_not_of(" \t\r\n") < at)
        parts.head = compile(text.substr(0, at), fileName, Py_file_input);
    parts.usable = !PyErr_Occurred();
    PyErr_Clear();  // the whole text is compiled again and tells its own fault
    return parts;
}

std::string frameLine(PyTracebackObject* entry) {
    const Ref code(reinterpret_cast<PyObject*>(PyFrame_GetCode(entry->tb_frame)));
    const auto* object = reinterpret_cast<PyCodeObject*>(code.get());
    return "File \"" + textOf(object->co_filename) + "\", line " +
           std::to_string(entry->tb_lineno) + ", in " + textOf(object->co_name);
}

struct Trace {
    std::string file = "<maya console>";
    int line = 1;
    std::vector<std::string> frames;
};

Trace traceOf(PyObject* traceback) {
    Trace trace;
    for (auto* at = reinterpret_cast<PyTracebackObject*>(traceback); at; at = at->tb_next) {
        const Ref code(reinterpret_cast<PyObject*>(PyFrame_GetCode(at->tb_frame)));
        trace.file = textOf(reinterpret_cast<PyCodeObject*>(code.get())->co_filename);
        trace.line = at->tb_lineno;
        trace.frames.push_back(frameLine(at));
    }
    return trace;
}

int lineOfSyntaxError(PyObject* value) {
    const Ref number(PyObject_GetAttrString(value, "lineno"));
    const long line = number && PyLong_Check(number.get()) ? PyLong_AsLong(number.get()) : 1;
    PyErr_Clear();
    return static_cast<int>(line);
}

std::string syntaxText(PyObject* value) {
    const Ref text(PyObject_GetAttrString(value, "msg"));
    return textOf(text.get());
}

bool isCleanExit(PyObject* value) {
    const Ref code(value ? PyObject_GetAttrString(value, "code") : nullptr);
    PyErr_Clear();
    return !code || code.get() == Py_None ||
           (PyLong_Check(code.get()) && PyLong_AsLong(code.get()) == 0);
}

}  // namespace

PyObject* mainDictionary() {
    return PyModule_GetDict(PyImport_AddModule("__main__"));
}

Status runText(Session& session, const std::string& text, const char* fileName, bool wantResult,
               Value& result) {
    result = Value();
    if (text.find('\0') != std::string::npos) {
        PyErr_SetString(PyExc_ValueError, "source code string cannot contain null bytes");
        return reportError(session);
    }
    Parts parts;
    if (wantResult)
        parts = compileParts(text, fileName);
    if (!parts.usable) {
        const Ref done = evaluate(compile(text, fileName, Py_file_input));
        return done ? Status::ok() : reportError(session);
    }
    if (parts.head) {
        const Ref done = evaluate(parts.head);
        if (!done)
            return reportError(session);
    }
    const Ref value = evaluate(parts.tail);
    if (!value)
        return reportError(session);
    result = resultOf(value.get());
    return Status::ok();
}

Status reportError(Session& session) {
    PyObject *rawType = nullptr, *rawValue = nullptr, *rawTrace = nullptr;
    PyErr_Fetch(&rawType, &rawValue, &rawTrace);
    PyErr_NormalizeException(&rawType, &rawValue, &rawTrace);
    const Ref type(rawType), value(rawValue), traceback(rawTrace);
    if (!type)
        return Status::failure("RuntimeError: unknown error");
    if (PyErr_GivenExceptionMatches(type.get(), PyExc_SystemExit) && isCleanExit(value.get()))
        return Status::ok();
    Trace trace = traceOf(traceback.get());
    const std::string className = reinterpret_cast<PyTypeObject*>(type.get())->tp_name;
    const std::string name = className.substr(className.rfind('.') + 1);
    std::string text = textOf(value.get());
    if (!traceback && PyErr_GivenExceptionMatches(type.get(), PyExc_SyntaxError)) {
        trace.line = lineOfSyntaxError(value.get());
        text = syntaxText(value.get());
    }
    const std::string line =
        name + ": file " + trace.file + " line " + std::to_string(trace.line) + ": " + text;
    std::string shown = "# Error: " + line;
    if (trace.frames.size() > 1) {
        shown += "\n# Traceback (most recent call last):";
        for (const std::string& frame : trace.frames)
            shown += "\n#   " + frame;
        shown += "\n# " + name + ": " + text;
    }
    session.log().write(Channel::Error, shown, true);
    return Status::failure(line);
}

}  // namespace torvel::py
