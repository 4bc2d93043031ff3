#pragma once

#include <deque>
#include <string>

#include <QPointer>
#include <QProgressDialog>

#include "script/command.h"

namespace torvel {

/// The answer that is ready for the next dialog.
struct DialogAnswer {
    std::string button;
    std::string text;  ///< for promptDialog
};

/// What the dialog commands keep between calls.
struct DialogState {
    std::deque<DialogAnswer> answers;  ///< the next dialog takes the first
    std::string promptText;            ///< what the last promptDialog was given

    bool progressOpen = false;
    bool progressCancelled = false;
    int progress = 0, minimum = 0, maximum = 100;
    std::string title, status;
    QPointer<QProgressDialog> progressDialog;  ///< null in batch
};

/// confirmDialog, promptDialog, progressWindow, dialogAnswer.
///
/// confirmDialog and promptDialog wait for a person and return the text of the button pressed. An
/// answer that stands ready is taken instead, in batch and with a screen: `--answer BUTTON` or
/// `--answer BUTTON=TEXT` puts it there from the command line, `dialogAnswer -button "OK" -text
/// "arm"` from a script, several for as many dialogs. A button that the dialog does not have is an
/// error. In batch without an answer the dialog counts as dismissed and says so in a warning.
CommandTable dialogCommands();

/// "OK=arm" as an answer: what stands behind the first "=" is the text.
DialogAnswer answerOf(const std::string& text);

}  // namespace torvel
