#include "script/deferred.h"

#include <utility>

#include <QCoreApplication>
#include <QTimer>

namespace torvel {

void DeferredTasks::add(std::function<void()> task) {
    if (QCoreApplication* application = QCoreApplication::instance())
        QTimer::singleShot(0, application, std::move(task));
    else
        m_waiting.push_back(std::move(task));
}

void DeferredTasks::run() {
    while (!m_waiting.empty()) {
        const std::function<void()> task = std::move(m_waiting.front());
        m_waiting.pop_front();
        task();
    }
}

ScriptDepth::ScriptDepth(std::shared_ptr<DeferredTasks> tasks) : m_tasks(std::move(tasks)) {
    ++m_tasks->m_depth;
}

ScriptDepth::~ScriptDepth() {
    if (m_tasks->m_depth == 1)
        m_tasks->run();
    --m_tasks->m_depth;
}

}  // namespace torvel
