#pragma once

class QApplication;

namespace torvel {

/// The host's look: Qt's Fusion style in dark greys, with a font that is there on every machine.
void applyDesktopStyle(QApplication& application);

}  // namespace torvel
