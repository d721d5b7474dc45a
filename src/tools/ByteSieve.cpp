#include "tools/ByteSieve.h"

#include <algorithm>

namespace {

bool isAscii(char16_t c)
{
    return c < 0x80;
}

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
    , m_folds(!find.matchCase)
{
    const QStringView text(find.text);
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](QChar c) { return isAscii(c.unicode()); });
    if (m_any || !ascii)
        return;
    m_needle = m_folds ? find.text.toLatin1().toLower() : find.text.toLatin1();
    m_hasOddLetters = m_folds && (m_needle.contains('k') || m_needle.contains('s'));
    for (size_t byte = 0; byte < m_small.size(); ++byte) {
        const bool capital = m_folds && byte >= 'A' && byte <= 'Z';
        m_small[byte] = static_cast<uchar>(capital ? byte + 32 : byte);
    }
    // By how much the needle can be moved when this byte stands under its last one.
    std::array<qsizetype, 256> skip{};
    skip.fill(m_needle.size());
    for (qsizetype at = 0; at + 1 < m_needle.size(); ++at)
        skip[uchar(m_needle[at])] = m_needle.size() - 1 - at;
    for (size_t byte = 0; byte < m_skip.size(); ++byte)
        m_skip[byte] = skip[m_small[byte]];
}

bool ByteSieve::mayHold(QByteArrayView page) const
{
    if (m_any || isOddlyWritten(page))
        return true;
    if (m_needle.isEmpty())
        return holdsMoreThanAscii(page);
    return holdsNeedle(page) || (m_hasOddLetters && holdsMoreThanAscii(page));
}

bool ByteSieve::holdsNeedle(QByteArrayView page) const
{
    const auto *bytes = reinterpret_cast<const uchar *>(page.data());
    const auto *needle = reinterpret_cast<const uchar *>(m_needle.constData());
    const qsizetype last = m_needle.size() - 1;
    for (qsizetype at = 0; at + last < page.size();) {
        const uchar end = bytes[at + last];
        qsizetype matched = m_small[end] == needle[last] ? last : -1;
        while (matched > 0 && m_small[bytes[at + matched - 1]] == needle[matched - 1])
            --matched;
        if (matched == 0)
            return true;
        at += m_skip[end];
    }
    return false;
}
