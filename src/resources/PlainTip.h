#pragma once

#include <QString>
#include <QTextDocument>

/// A tool tip that shows this text letter by letter: what looks like HTML would be drawn as such.
inline QString plainTip(const QString &text)
{
    using namespace Qt::StringLiterals;
    return Qt::mightBeRichText(text) ? u"<span>%1</span>"_s.arg(text.toHtmlEscaped()) : text;
}
