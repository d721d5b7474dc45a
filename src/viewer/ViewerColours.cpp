#include "viewer/ViewerColours.h"

#include <QApplication>
#include <QPalette>
#include <QSettings>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr auto darkKey = "Viewer/Dark"_L1;

QPalette darkPalette()
{
    QPalette palette(QColor(53, 56, 61), QColor(43, 46, 50));
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::AlternateBase, QColor(38, 41, 45));
    palette.setColor(QPalette::Highlight, QColor(58, 110, 165));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(128, 184, 255));
    palette.setColor(QPalette::LinkVisited, QColor(196, 164, 255));
    palette.setColor(QPalette::PlaceholderText, QColor(160, 164, 170));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, QColor(226, 228, 232));
        palette.setColor(QPalette::Disabled, role, QColor(130, 134, 140));
    }
    palette.setColor(QPalette::ToolTipBase, QColor(53, 56, 61));
    return palette;
}

void apply(bool dark)
{
    QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
}

} // namespace

bool ViewerColours::areDark()
{
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

void ViewerColours::useDark(bool dark)
{
    apply(dark);
    QSettings().setValue(darkKey, dark);
}

void ViewerColours::restore()
{
    const QVariant dark = QSettings().value(darkKey);
    if (dark.isValid() && dark.toBool() != areDark())
        apply(dark.toBool());
}
