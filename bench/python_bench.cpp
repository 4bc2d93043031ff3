// What a one-line script costs beside Python's own compile and exec, and what one command call
// costs.
#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "app/host_setup.h"
#include "script/session.h"

namespace {

using namespace torvel;

constexpr int kNodes = 10000;

// One scene with 10,000 transforms n0..n9999 for every measurement.
Session& session() {
    static Session* made = [] {
        auto* fresh = new Session;
        setUpSession(*fresh);
        Value result;
        ignore(
            fresh->python->run("from maya import cmds\n"
                               "names = ['n%d' % i for i in range(10000)]\n"
                               "for name in names:\n"
                               "    cmds.createNode('transform', n=name, ss=True)\n"
                               "plugs = [name + '.tx' for name in names]\n"
                               "def getAll():\n"
                               "    get = cmds.getAttr\n"
                               "    for plug in plugs: get(plug)\n"
                               "def setAll():\n"
                               "    put = cmds.setAttr\n"
                               "    for plug in plugs: put(plug, 1.5)\n"
                               "def flagAll():\n"
                               "    get = cmds.getAttr\n"
                               "    for plug in plugs: get(plug, lock=True)\n",
                               result));
        return fresh;
    }();
    return *made;
}

const char* const kLines[] = {"a = 1", "cmds.getAttr('n5.tx')",
                              "import maya.cmds as cmds; cmds.getAttr('n5.tx')",
                              "x = cmds.ls('n77'); x"};

void scriptText(benchmark::State& state) {
    Language& python = *session().python;
    const std::string text = kLines[state.range(0)];
    Value result;
    for (auto _ : state)
        benchmark::DoNotOptimize(python.run(text, result).isOk());
    state.SetLabel(text);
}
BENCHMARK(scriptText)->DenseRange(0, 3);

// The reference: what the interpreter alone does with the same line.
void compileAndExec(benchmark::State& state) {
    session();
    const char* text = kLines[state.range(0)];
    for (auto _ : state) {
        const PyGILState_STATE lock = PyGILState_Ensure();
        PyObject* scope = PyModule_GetDict(PyImport_AddModule("__main__"));
        PyObject* code = Py_CompileString(text, "<text>", Py_file_input);
        PyObject* value = code ? PyEval_EvalCode(code, scope, scope) : nullptr;
        Py_XDECREF(value);
        Py_XDECREF(code);
        PyGILState_Release(lock);
    }
    state.SetLabel(text);
}
BENCHMARK(compileAndExec)->DenseRange(0, 3);

void commandLoop(benchmark::State& state, const char* text) {
    Language& python = *session().python;
    Value result;
    for (auto _ : state)
        benchmark::DoNotOptimize(python.run(text, result).isOk());
    state.SetItemsProcessed(state.iterations() * kNodes);
}
BENCHMARK_CAPTURE(commandLoop, getAttr, "getAll()");
BENCHMARK_CAPTURE(commandLoop, setAttr, "setAll()");
BENCHMARK_CAPTURE(commandLoop, getAttrLock, "flagAll()");

}  // namespace
