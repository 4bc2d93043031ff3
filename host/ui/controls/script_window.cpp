#include "ui/controls/script_window.h"

#include <QCloseEvent>
#include <QWindowStateChangeEvent>

#include "ui/desktop/main_window.h"

namespace torvel {

ScriptWindow::ScriptWindow(MainWindow& owner) : QMainWindow(&owner, Qt::Window), m_owner(owner) {
    setContextMenuPolicy(Qt::NoContextMenu);
    // Scripts measure their columns for small letters.
    QFont small = font();
    small.setPixelSize(11);
    setFont(small);
}

void ScriptWindow::setWantedSize(int width, int height) {
    m_width = width > 0 ? width : m_width;
    m_height = height > 0 ? height : m_height;
    resize(m_width > 0 ? m_width : this->width(), m_height > 0 ? m_height : this->height());
}

void ScriptWindow::present() {
    if (!m_shown) {
        const QSize wanted = sizeHint();
        resize(m_width > 0 ? m_width : wanted.width(), m_height > 0 ? m_height : wanted.height());
        m_shown = true;
    }
    if (!m_sizeable)
        setFixedSize(size());
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ScriptWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    const QPointer<ScriptWindow> alive(this);
    m_owner.runEvent(m_id, "closeCommand");
    if (alive && !m_retained)
        m_owner.tree().remove(m_id);
}

void ScriptWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    const bool was = static_cast<QWindowStateChangeEvent*>(event)->oldState() & Qt::WindowMinimized;
    if (was != isMinimized())
        m_owner.runEvent(m_id, was ? "restoreCommand" : "minimizeCommand");
}

}  // namespace torvel
