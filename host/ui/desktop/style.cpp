#include "ui/desktop/style.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

namespace torvel {

namespace {

QPalette darkPalette() {
    const QColor text(220, 220, 220), faint(128, 128, 128);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(68, 68, 68));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(43, 43, 43));
    palette.setColor(QPalette::AlternateBase, QColor(54, 54, 54));
    palette.setColor(QPalette::ToolTipBase, QColor(43, 43, 43));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(93, 93, 93));
    palette.setColor(QPalette::ButtonText, text);
    // Lines and bevels, from light to dark.
    palette.setColor(QPalette::Light, QColor(98, 98, 98));
    palette.setColor(QPalette::Midlight, QColor(84, 84, 84));
    palette.setColor(QPalette::Mid, QColor(56, 56, 56));
    palette.setColor(QPalette::Dark, QColor(43, 43, 43));
    palette.setColor(QPalette::Shadow, QColor(24, 24, 24));
    palette.setColor(QPalette::BrightText, Qt::red);
    palette.setColor(QPalette::Link, QColor(82, 133, 166));
    palette.setColor(QPalette::Highlight, QColor(82, 133, 166));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

}  // namespace

void applyDesktopStyle(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(darkPalette());
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    application.setFont(font);
}

}  // namespace torvel
