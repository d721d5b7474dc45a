#include "tools/ByteSieve.h"

#include <algorithm>

namespace {

// UTF-16, and sets that write other characters with the codes of letters behind an escape.
bool isOddlyWritten(QByteArrayView page)
{
    return page.startsWith("\xFF\xFE") || page.startsWith("\xFE\xFF") || page.contains('\x1b');
}

bool holdsMoreThanAscii(QByteArrayView page)
{
    return std::any_of(page.begin(), page.end(), [](char c) { return (uchar(c) & 0x80) != 0; });
}

} // namespace

ByteSieve::ByteSieve(const FindOptions &find)
    : m_any(find.isPattern || find.text.isEmpty())
    , m_needle(find.text, find.matchCase)
    , m_hasOddLetters(!find.matchCase
                      && (m_needle.text().contains('k') || m_needle.text().contains('s')))
{
}

bool ByteSieve::mayHold(QByteArrayView page) const
{
    if (m_any || isOddlyWritten(page))
        return true;
    if (!m_needle.isValid())
        return holdsMoreThanAscii(page);
    return m_needle.indexIn(page) >= 0 || (m_hasOddLetters && holdsMoreThanAscii(page));
}
