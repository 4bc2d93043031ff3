#include <QAbstractButton>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "script/session.h"
#include "ui/controls/dialog_state.h"
#include "ui/desktop/main_window.h"
#include "ui/controls/lookup.h"

namespace torvel {

DialogAnswer answerOf(const std::string& text) {
    const std::size_t at = text.find('=');
    if (at == std::string::npos)
        return {text, {}};
    return {text.substr(0, at), text.substr(at + 1)};
}

namespace {

QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

// What both dialogs are given.
struct Question {
    QString title, message;
    std::vector<std::string> buttons;
    std::string defaultButton, cancelButton, dismissed;
    QWidget* parent = nullptr;
};

Status readQuestion(const CommandCall& call, MainWindow& window, Question& out) {
    for (const FlagUse* use : call.uses("button"))
        out.buttons.push_back(use->values[0].string());
    if (out.buttons.empty())
        out.buttons = {call.name() == "confirmDialog" ? "Confirm" : "OK"};
    out.title = shown(call.text("title", call.name() == "confirmDialog" ? "Confirm" : "Prompt"));
    out.message = shown(call.text("message"));
    out.defaultButton = call.text("defaultButton");
    out.cancelButton = call.text("cancelButton");
    // Leaving by Escape or the frame is pressing the cancel button when there is one.
    out.dismissed = call.text("dismissString",
                              out.cancelButton.empty() ? std::string("dismiss") : out.cancelButton);
    out.parent = &window;
    if (call.has("parent")) {
        int id = UiTree::kNone;
        if (Status found = window.tree().find(call.text("parent"), id); !found)
            return found;
        out.parent = qobject_cast<QWidget*>(window.tree().element(id)->object.data());
    }
    return Status::ok();
}

// Takes the answer that stands ready; `asked` is false when a person has to be asked.
Status readyAnswer(const CommandCall& call, MainWindow& window, const Question& question,
                   DialogAnswer& answer, bool& asked) {
    std::deque<DialogAnswer>& answers = window.dialogs().answers;
    asked = !answers.empty() || call.session().batch;
    if (answers.empty()) {
        answer = {question.dismissed, {}};
        if (asked)
            call.session().log().write(Channel::Warning, call.name() + ": nobody to ask \"" +
                                                             question.message.toStdString() +
                                                             "\", taken as dismissed");
        return Status::ok();
    }
    answer = answers.front();
    answers.pop_front();
    const auto& buttons = question.buttons;
    if (answer.button == question.dismissed ||
        std::find(buttons.begin(), buttons.end(), answer.button) != buttons.end())
        return Status::ok();
    return call.fail("the answer '" + answer.button + "' is none of the dialog's buttons");
}

QMessageBox::Icon iconOf(const std::string& name) {
    if (name == "question")
        return QMessageBox::Question;
    if (name == "information")
        return QMessageBox::Information;
    if (name == "warning")
        return QMessageBox::Warning;
    return name == "critical" ? QMessageBox::Critical : QMessageBox::NoIcon;
}

std::string askToConfirm(const Question& question, const std::string& icon) {
    QMessageBox box(iconOf(icon), question.title, question.message, QMessageBox::NoButton,
                    question.parent);
    std::map<QAbstractButton*, std::string> texts;
    for (const std::string& text : question.buttons) {
        QPushButton* button = box.addButton(shown(text), QMessageBox::ActionRole);
        texts[button] = text;
        if (text == question.defaultButton)
            box.setDefaultButton(button);
        if (text == question.cancelButton)
            box.setEscapeButton(button);
    }
    // Without a button for it Escape and the frame would do nothing.
    if (!box.escapeButton()) {
        QPushButton* hidden = box.addButton(QMessageBox::Cancel);
        hidden->hide();
        box.setEscapeButton(hidden);
    }
    box.exec();
    const auto pressed = texts.find(box.clickedButton());
    return pressed == texts.end() || box.clickedButton() == nullptr ? question.dismissed
                                                                    : pressed->second;
}

DialogAnswer askForText(const Question& question, const std::string& text) {
    QDialog dialog(question.parent);
    dialog.setWindowTitle(question.title);
    auto* field = new QLineEdit(shown(text), &dialog);
    field->setMinimumWidth(260);
    field->selectAll();
    auto* row = new QHBoxLayout;
    DialogAnswer answer{question.dismissed, {}};
    for (const std::string& each : question.buttons) {
        auto* button = new QPushButton(shown(each), &dialog);
        button->setDefault(each == question.defaultButton);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, &answer, each] {
            answer.button = each;
            dialog.accept();
        });
        row->addWidget(button);
    }
    auto* box = new QVBoxLayout(&dialog);
    box->addWidget(new QLabel(question.message, &dialog));
    box->addWidget(field);
    box->addLayout(row);
    dialog.exec();
    answer.text = field->text().toStdString();
    return answer;
}

Status runConfirmDialog(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    Question question;
    DialogAnswer answer;
    bool asked = false;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    auto& window = *mainWindowOf(call.session());
    if (Status read = readQuestion(call, window, question); !read)
        return read;
    if (Status taken = readyAnswer(call, window, question, answer, asked); !taken)
        return taken;
    result = asked ? answer.button : askToConfirm(question, call.text("icon"));
    return Status::ok();
}

// Texts for styles that want a number are checked as such.
Status checkStyle(const CommandCall& call, const std::string& text) {
    const std::string style = call.text("style", "text");
    bool good = style == "text";
    if (style == "integer")
        shown(text).toLongLong(&good);
    else if (style == "float")
        shown(text).toDouble(&good);
    else if (!good)
        return call.fail("there is no style '" + style + "' (text, integer, float)");
    return good ? Status::ok() : call.fail("'" + text + "' is no " + style);
}

Status runPromptDialog(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    Question question;
    DialogAnswer answer;
    bool asked = false;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    auto& window = *mainWindowOf(call.session());
    if (call.isQuery()) {
        result = window.dialogs().promptText;
        return Status::ok();
    }
    if (Status read = readQuestion(call, window, question); !read)
        return read;
    if (Status taken = readyAnswer(call, window, question, answer, asked); !taken)
        return taken;
    if (!asked)
        answer = askForText(question, call.text("text"));
    else if (answer.text.empty())
        answer.text = call.text("text");
    if (answer.button != question.dismissed)
        if (Status good = checkStyle(call, answer.text); !good)
            return good;
    window.dialogs().promptText = answer.text;
    result = answer.button;
    return Status::ok();
}

Status runDialogAnswer(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    DialogState& state = mainWindowOf(call.session())->dialogs();
    if (call.flag("clear"))
        state.answers.clear();
    if (call.has("button"))
        state.answers.push_back({call.text("button"), call.text("text")});
    if (call.isQuery())
        result = static_cast<int>(state.answers.size());
    return Status::ok();
}

// --- progressWindow ------------------------------------------------------------------------------

void showProgress(DialogState& state) {
    QProgressDialog* dialog = state.progressDialog;
    if (!dialog)
        return;
    dialog->setWindowTitle(shown(state.title));
    dialog->setLabelText(shown(state.status));
    dialog->setRange(state.minimum, state.maximum);
    dialog->setValue(state.progress);
}

void openProgress(const CommandCall& call, MainWindow& window) {
    DialogState& state = window.dialogs();
    state.progressOpen = true;
    state.progressCancelled = false;
    state.progress = state.minimum = 0;
    state.maximum = 100;
    state.title = state.status = {};
    if (call.session().batch)
        return;
    auto* dialog = new QProgressDialog(&window);
    dialog->setObjectName(QStringLiteral("progressWindow"));
    dialog->setMinimumDuration(0);
    dialog->setAutoReset(false);
    dialog->setAutoClose(false);
    if (!call.flag("isInterruptable"))
        dialog->setCancelButton(nullptr);
    QObject::connect(dialog, &QProgressDialog::canceled, &window,
                     [&state] { state.progressCancelled = true; });
    state.progressDialog = dialog;
    dialog->show();
}

void applyProgress(const CommandCall& call, DialogState& state) {
    state.title = call.text("title", state.title);
    state.status = call.text("status", state.status);
    state.minimum = call.integer("minValue", state.minimum);
    state.maximum = std::max(state.minimum, call.integer("maxValue", state.maximum));
    const int wanted = call.integer("progress", state.progress) + call.integer("step", 0);
    state.progress = std::min(state.maximum, std::max(state.minimum, wanted));
    showProgress(state);
}

void closeProgress(DialogState& state) {
    state.progressOpen = false;
    if (state.progressDialog)
        state.progressDialog->deleteLater();
    state.progressDialog = nullptr;
}

Status askProgress(const CommandCall& call, const DialogState& state, Value& result) {
    if (call.has("isCancelled"))
        result = state.progressCancelled;
    else if (call.has("progress"))
        result = state.progress;
    else if (call.has("minValue"))
        result = state.minimum;
    else if (call.has("maxValue"))
        result = state.maximum;
    else if (call.has("title"))
        result = state.title;
    else if (call.has("status"))
        result = state.status;
    else
        return call.fail("no flag to query");
    return Status::ok();
}

// One at a time: opening a second one answers false and changes nothing.
Status runProgressWindow(const CommandCall& call, Value& result) {
    UiTree* tree = nullptr;
    if (Status ready = uiTree(call, tree); !ready)
        return ready;
    auto& window = *mainWindowOf(call.session());
    DialogState& state = window.dialogs();
    if (call.isQuery())
        return askProgress(call, state, result);
    if (call.flag("endProgress")) {
        result = state.progressOpen;
        closeProgress(state);
        return Status::ok();
    }
    if (call.isCreate()) {
        result = !state.progressOpen;
        if (state.progressOpen)
            return Status::ok();
        openProgress(call, window);
    } else if (!state.progressOpen) {
        return call.fail("there is no progress window");
    }
    applyProgress(call, state);
    return Status::ok();
}

constexpr FlagRow kConfirmFlags[] = {
    {"title", "t", "s", kCreate},          {"message", "m", "s", kCreate},
    {"messageAlign", "ma", "s", kCreate},  {"button", "b", "s", kCreate, true},
    {"defaultButton", "db", "s", kCreate}, {"cancelButton", "cb", "s", kCreate},
    {"dismissString", "ds", "s", kCreate}, {"icon", "icn", "s", kCreate},
    {"parent", "p", "s", kCreate},         {"backgroundColor", "bgc", "ddd", kCreate},
};

constexpr FlagRow kPromptFlags[] = {
    {"title", "t", "s", kCreate},          {"message", "m", "s", kCreate},
    {"messageAlign", "ma", "s", kCreate},  {"button", "b", "s", kCreate, true},
    {"defaultButton", "db", "s", kCreate}, {"cancelButton", "cb", "s", kCreate},
    {"dismissString", "ds", "s", kCreate}, {"text", "tx", "s", kCreate | kQuery},
    {"style", "st", "s", kCreate},         {"parent", "p", "s", kCreate},
};

constexpr FlagRow kAnswerFlags[] = {
    {"button", "b", "s", kCreate},
    {"text", "tx", "s", kCreate},
    {"clear", "cl", "", kCreate},
};

constexpr FlagRow kProgressFlags[] = {
    {"title", "t", "s"},
    {"status", "st", "s"},
    {"progress", "pr", "i"},
    {"minValue", "min", "i"},
    {"maxValue", "max", "i"},
    {"step", "s", "i", kCreate | kEdit},
    {"isInterruptable", "ii", "b", kCreate},
    {"isCancelled", "ic", "", kQuery},
    {"endProgress", "ep", "", kCreate | kEdit},
};

const Command kRows[] = {
    {"confirmDialog", kConfirmFlags, countOf(kConfirmFlags), runConfirmDialog,
     "Asks a question and returns the text of the button pressed"},
    {"promptDialog", kPromptFlags, countOf(kPromptFlags), runPromptDialog,
     "Asks for a text; -query -text gives it"},
    {"dialogAnswer", kAnswerFlags, countOf(kAnswerFlags), runDialogAnswer,
     "Leaves an answer for the next dialog; in query mode the number of those left"},
    {"progressWindow", kProgressFlags, countOf(kProgressFlags), runProgressWindow,
     "Shows how far a long work has come"},
};

}  // namespace

CommandTable dialogCommands() {
    return {kRows, std::size(kRows)};
}

}  // namespace torvel
