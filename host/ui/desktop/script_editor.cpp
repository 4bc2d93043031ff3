#include "ui/desktop/script_editor.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QThread>
#include <QVBoxLayout>

#include "script/session.h"
#include "ui/desktop/log_text.h"

namespace torvel {

namespace {

QColor colorOf(Channel channel) {
    switch (channel) {
        case Channel::Warning: return QColor(220, 206, 120);
        case Channel::Error: return QColor(255, 110, 100);
        case Channel::Result: return QColor(150, 200, 150);
        case Channel::Info: break;
    }
    return QColor(220, 220, 220);
}

std::string joined(const Value::List& items) {
    std::string text = "[";
    for (const Value& item : items)
        text += (text.size() > 1 ? ", " : "") + resultText(item);
    return text + "]";
}

}  // namespace

std::string resultText(const Value& value) {
    if (value.isNone())
        return {};
    if (value.isString())
        return value.string();
    if (value.isBool())
        return value.truth() ? "True" : "False";
    if (value.isInt())
        return std::to_string(value.integer());
    if (value.isDouble())
        return textOfDouble(value.number());
    if (value.isTuple())
        return joined(Value::List(value.tuple().items.begin(), value.tuple().items.end()));
    return joined(value.list());
}

ScriptEditor::ScriptEditor(Session& session, QWidget* parent)
    : QWidget(parent), m_session(session) {
    m_text = new QPlainTextEdit(this);
    m_text->setReadOnly(true);
    m_text->setMaximumBlockCount(10000);
    QFont fixed(QStringLiteral("DejaVu Sans Mono"));
    fixed.setPixelSize(12);
    m_text->setFont(fixed);
    m_language = new QComboBox(this);
    m_language->addItems({tr("Python"), tr("MEL")});
    m_input = new QLineEdit(this);
    m_input->setObjectName(QStringLiteral("commandLine"));
    m_input->setFont(fixed);
    m_input->setPlaceholderText(tr("Type a command, Enter runs it"));

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_language);
    bottom->addWidget(m_input, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(m_text, 1);
    layout->addLayout(bottom);

    connect(m_input, &QLineEdit::returnPressed, this, &ScriptEditor::runInput);
    m_sink = m_session.log().addSink([this](const LogLine& line) { show(line); });
    m_listens = !m_session.batch;
    if (m_listens)
        m_session.output().listen(
            [this](const std::string& text, bool isError) { print(text, isError); });
}

ScriptEditor::~ScriptEditor() {
    m_session.log().removeSink(m_sink);
    if (m_listens)
        m_session.output().listen({});
}

void ScriptEditor::show(const LogLine& line) {
    append(QString::fromStdString(shownLine(line)), colorOf(line.channel));
}

void ScriptEditor::print(const std::string& text, bool isError) {
    const QString shown = QString::fromStdString(text);
    const QColor color = isError ? QColor(255, 170, 120) : QColor(220, 220, 220);
    if (QThread::currentThread() == thread())
        printHere(shown, color);
    else
        QMetaObject::invokeMethod(
            this, [this, shown, color] { printHere(shown, color); }, Qt::QueuedConnection);
}

void ScriptEditor::printHere(const QString& text, const QColor& color) {
    const QStringList pieces = text.split(QLatin1Char('\n'));
    for (int i = 0; i < pieces.size(); ++i) {
        const bool ends = i + 1 < pieces.size();
        if (!pieces[i].isEmpty() || (ends && !m_lineOpen))
            insert(pieces[i], color, !m_lineOpen);
        m_lineOpen = !ends && (m_lineOpen || !pieces[i].isEmpty());
    }
}

void ScriptEditor::append(const QString& text, const QColor& color) {
    m_lineOpen = false;
    insert(text, color, true);
}

void ScriptEditor::insert(const QString& text, const QColor& color, bool newLine) {
    QTextCharFormat format;
    format.setForeground(color);
    QTextCursor cursor(m_text->document());
    cursor.movePosition(QTextCursor::End);
    if (newLine && !m_text->document()->isEmpty())
        cursor.insertBlock();
    cursor.insertText(text, format);
    m_text->setTextCursor(cursor);
    m_text->ensureCursorVisible();
}

void ScriptEditor::runInput() {
    const QString text = m_input->text();
    const bool mel = m_language->currentIndex() == 1;
    Language* language = mel ? m_session.mel : m_session.python;
    if (text.trimmed().isEmpty() || !language)
        return;
    m_input->clear();
    append(text, QColor(140, 170, 200));
    Value result;
    // A failed text has printed its error line already.
    if (language->run(text.toStdString(), result) && !result.isNone())
        append((mel ? "// Result: " : "# Result: ") + QString::fromStdString(resultText(result)),
               colorOf(Channel::Result));
}

}  // namespace torvel
