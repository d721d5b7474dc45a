#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A piece of a text, in characters.
struct TextPiece
{
    int start = 0;
    int length = 0;
};

/// Where a page says what was searched for: words of the same stem; of scripts without blanks, the
/// same characters, or each two of them where they do not stand together. At most `most` of each
/// kind. `asked` is the question, and then other names of what it asks for, of which those are
/// marked that stand in the page with all their words. A word at the very end of the question marks
/// words that begin so where it does not stand whole.
QList<TextPiece> searchMarks(const QString &text, const QStringList &asked, const QString &language,
                             qsizetype most = 2000);
