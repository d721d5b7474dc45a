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

/// Goes from one first byte to the next, of which most pages have few.
bool holds(QByteArrayView page, const QByteArray &letter)
{
    for (qsizetype at = page.indexOf(letter.front()); at >= 0;
         at = page.indexOf(letter.front(), at + 1)) {
        if (page.sliced(at).startsWith(letter))
            return true;
    }
    return false;
}

/// The first letter beyond ASCII in its upper and lower case. Nothing where case means more than
/// these two, or plain ASCII letters.
QList<QByteArray> otherLetter(const FindOptions &find)
{
    const auto letter = std::find_if(find.text.begin(), find.text.end(),
                                     [](QChar c) { return c.unicode() > 0x7F; });
    constexpr char16_t endOfLatin1 = 0xFF; // beyond it several letters may share one folded form
    if (letter == find.text.end())
        return {};
    if (find.matchCase && !letter->isSurrogate())
        return {QString(*letter).toUtf8()};
    if (letter->unicode() < 0xC0 || letter->unicode() >= endOfLatin1 || *letter == QChar(0xDF)
        || *letter == QChar(0xE5) || *letter == QChar(0xC5))
        return {};
    return {QString(letter->toLower()).toUtf8(), QString(letter->toUpper()).toUtf8()};
}

} // namespace

ByteSieve::ByteSieve(const FindOptions &find)
    : m_any(find.isPattern || find.text.isEmpty())
    , m_needle(find.text, find.matchCase)
    , m_letter(otherLetter(find))
    , m_hasOddLetters(!find.matchCase
                      && (m_needle.text().contains('k') || m_needle.text().contains('s')))
{
}

bool ByteSieve::mayHold(QByteArrayView page) const
{
    if (m_any || isOddlyWritten(page))
        return true;
    if (!m_letter.isEmpty())
        return mayHoldLetter(page);
    if (!m_needle.isValid())
        return holdsMoreThanAscii(page);
    return m_needle.indexIn(page) >= 0 || (m_hasOddLetters && holdsMoreThanAscii(page));
}

// Other sets than UTF-8 write the letter otherwise; which one it is shows only when it is decoded.
bool ByteSieve::mayHoldLetter(QByteArrayView page) const
{
    return std::any_of(m_letter.begin(), m_letter.end(),
                       [&](const QByteArray &letter) { return holds(page, letter); })
           || !page.isValidUtf8();
}
