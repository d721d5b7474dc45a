#include "platform/widgets/SystemLook.h"

#include "platform/widgets/MarksStyle.h"

#include <QApplication>

#ifdef Q_OS_WIN
#include <QPalette>
#include <QSettings>
#include <QStyleFactory>

using namespace Qt::StringLiterals;

namespace {

bool wantsDarkWindows()
{
    const QSettings personal(uR"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion)"
                             uR"(\Themes\Personalize)"_s,
                             QSettings::NativeFormat);
    return personal.value(u"AppsUseLightTheme"_s, 1).toInt() == 0;
}

QPalette darkPalette()
{
    QPalette dark(QColor(0x2b, 0x2e, 0x33));
    dark.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x26));
    dark.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2e));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xbf));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(0x6f, 0xb1, 0xf0));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(0x85, 0x8a, 0x91));
    return dark;
}

} // namespace

void setSystemLook()
{
    if (!wantsDarkWindows()) {
        QApplication::setStyle(new MarksStyle);
        return;
    }
    QApplication::setStyle(new MarksStyle(QStyleFactory::create(u"Fusion"_s)));
    QApplication::setPalette(darkPalette());
}

#else

void setSystemLook()
{
    QApplication::setStyle(new MarksStyle);
}

#endif
