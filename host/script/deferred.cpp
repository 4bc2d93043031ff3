#include "script/deferred.h"

#include <deque>
#include <utility>

#include <QCoreApplication>
#include <QTimer>

namespace torvel {

namespace {

int g_depth = 0;

std::deque<std::function<void()>>& waiting() {
    static std::deque<std::function<void()>> tasks;
    return tasks;
}

}  // namespace

void runLater(std::function<void()> task) {
    if (QCoreApplication* application = QCoreApplication::instance())
        QTimer::singleShot(0, application, std::move(task));
    else
        waiting().push_back(std::move(task));
}

void runDeferred() {
    while (!waiting().empty()) {
        const std::function<void()> task = std::move(waiting().front());
        waiting().pop_front();
        task();
    }
}

ScriptDepth::ScriptDepth() {
    ++g_depth;
}

ScriptDepth::~ScriptDepth() {
    if (g_depth == 1)
        runDeferred();
    --g_depth;
}

}  // namespace torvel
