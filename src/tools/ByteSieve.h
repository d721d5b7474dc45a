#pragma once

#include "tools/AsciiNeedle.h"
#include "tools/TextFinder.h"

#include <QByteArray>
#include <QList>

/// Tells from the bytes of a page, much faster than they can be decoded, that a text is not in it.
class ByteSieve final
{
public:
    explicit ByteSieve(const FindOptions &find);

    /// False only when the text is not there, in whatever encoding the page is.
    [[nodiscard]] bool mayHold(QByteArrayView page) const;

private:
    [[nodiscard]] bool mayHoldLetter(QByteArrayView page) const;

    bool m_any = false; ///< nothing can be told from bytes
    AsciiNeedle m_needle;
    /// Of a text with other letters than ASCII: the first of them in UTF-8, in either case.
    QList<QByteArray> m_letter;
    bool m_hasOddLetters = false; ///< k or s, which other characters match in either case
};
