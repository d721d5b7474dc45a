#pragma once

#include <QStringList>

/// As many lines as a message box can show, and how many more there are.
inline QString firstOf(const QStringList &lines)
{
    constexpr qsizetype shown = 15;
    QString text = lines.first(qMin(shown, lines.size())).join(u'\n');
    if (lines.size() > shown)
        text += QStringLiteral("\nand %1 more").arg(lines.size() - shown);
    return text;
}
