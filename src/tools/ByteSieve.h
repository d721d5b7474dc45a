#pragma once

#include "tools/AsciiNeedle.h"
#include "tools/TextFinder.h"

/// Tells from the bytes of a page, much faster than they can be decoded, that a text is not in it.
class ByteSieve final
{
public:
    explicit ByteSieve(const FindOptions &find);

    /// False only when the text is not there, in whatever encoding the page is.
    [[nodiscard]] bool mayHold(QByteArrayView page) const;

private:
    bool m_any = false; ///< nothing can be told from bytes
    AsciiNeedle m_needle;
    bool m_hasOddLetters = false; ///< k or s, which other characters match in either case
};
