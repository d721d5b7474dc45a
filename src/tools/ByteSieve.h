#pragma once

#include "tools/TextFinder.h"

#include <array>

/// Tells from the bytes of a page, much faster than they can be decoded, that a text is not in it.
class ByteSieve final
{
public:
    explicit ByteSieve(const FindOptions &find);

    /// False only when the text is not there, in whatever encoding the page is.
    [[nodiscard]] bool mayHold(QByteArrayView page) const;

private:
    [[nodiscard]] bool holdsNeedle(QByteArrayView page) const;

    bool m_any = false;           ///< nothing can be told from bytes
    QByteArray m_needle;          ///< when it is ASCII; letters are small unless their case matters
    bool m_folds = false;         ///< letters match in either case
    bool m_hasOddLetters = false; ///< k or s, which other characters match in either case
    std::array<uchar, 256> m_small{};
    std::array<qsizetype, 256> m_skip{};
};
