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

/// The log of the session in colours, with what scripts print (not in batch, where that is on
/// standard output), and one line to type Python or MEL into. Listens to the log
/// from its construction to its end; keeps the last 10,000 lines.
class ScriptEditor : public QWidget {
    Q_OBJECT

  public:
    explicit ScriptEditor(Session& session, QWidget* parent = nullptr);
    ~ScriptEditor() override;

    void show(const LogLine& line);
    /// What a script printed, in its place among the lines; a text without a line end is continued
    /// by the next one. May be called from any thread.
    void print(const std::string& text, bool isError);

  private:
    void runInput();
    void append(const QString& text, const QColor& color);
    void insert(const QString& text, const QColor& color, bool newLine);
    void printHere(const QString& text, const QColor& color);

    Session& m_session;
    QPlainTextEdit* m_text = nullptr;
    QComboBox* m_language = nullptr;
    QLineEdit* m_input = nullptr;
    int m_sink = 0;
    bool m_listens = false;
    bool m_lineOpen = false;  ///< the last line was printed and has not ended
};

/// The result of a typed text as one line; empty for nothing.
std::string resultText(const Value& value);

}  // namespace torvel
