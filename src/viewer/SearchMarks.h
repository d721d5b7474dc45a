#pragma once

#include <QList>
#include <QString>

/// A piece of a text, in characters.
struct TextPiece
{
    int start = 0;
    int length = 0;
};

/// Where a page says what was searched for: words of the same stem; of scripts without blanks, the
/// same characters, or each two of them where they do not stand together. At most `most` of them.
QList<TextPiece> searchMarks(const QString &text, const QString &question, const QString &language,
                             qsizetype most = 2000);
