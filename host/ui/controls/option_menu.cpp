#include "ui/controls/option_menu.h"

#include <QAction>
#include <QActionEvent>

namespace torvel {

void OptionMenu::actionEvent(QActionEvent* event) {
    QAction* action = event->action();
    const int at = findData(QVariant::fromValue<QObject*>(action));
    if (event->type() == QEvent::ActionAdded)
        addItem(action->text(), QVariant::fromValue<QObject*>(action));
    else if (event->type() == QEvent::ActionChanged && at >= 0)
        setItemText(at, action->text());
    else if (event->type() == QEvent::ActionRemoved && at >= 0)
        removeItem(at);
}

}  // namespace torvel
