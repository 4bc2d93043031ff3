#pragma once

#include <string>

#include <QWidget>

#include "base/log.h"
#include "base/value.h"

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace torvel {

class Session;

/// The log of the session in colours, and one line to type Python or MEL into. Listens to the log
/// from its construction to its end; keeps the last 10,000 lines.
class ScriptEditor : public QWidget {
    Q_OBJECT

  public:
    explicit ScriptEditor(Session& session, QWidget* parent = nullptr);
    ~ScriptEditor() override;

    void show(const LogLine& line);

  private:
    void runInput();
    void append(const QString& text, const QColor& color);

    Session& m_session;
    QPlainTextEdit* m_text = nullptr;
    QComboBox* m_language = nullptr;
    QLineEdit* m_input = nullptr;
    int m_sink = 0;
};

/// The result of a typed text as one line; empty for nothing.
std::string resultText(const Value& value);

}  // namespace torvel
