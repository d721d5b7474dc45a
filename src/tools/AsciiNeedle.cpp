#include "tools/AsciiNeedle.h"

#include <algorithm>

namespace {

constexpr qsizetype together = 64; // places that are looked at at once

bool isAscii(QChar c)
{
    return c.unicode() < 0x80;
}

/// The byte that stands for a character of a text; 0x80 is in no needle.
uchar codeOf(char16_t c, bool folds)
{
    if (c < 0x80)
        return static_cast<uchar>(c);
    if (folds && c == u'\u017F')
        return 's';
    return folds && c == u'\u212A' ? 'k' : 0x80;
}

} // namespace

AsciiNeedle::AsciiNeedle(QStringView text, bool matchCase)
    : m_folds(!matchCase)
{
    if (!std::all_of(text.begin(), text.end(), isAscii))
        return;
    m_needle = m_folds ? text.toLatin1().toLower() : text.toLatin1();
    for (size_t byte = 0; byte < m_small.size(); ++byte) {
        const bool capital = m_folds && byte >= 'A' && byte <= 'Z';
        m_small[byte] = static_cast<uchar>(capital ? byte + 32 : byte);
    }
    std::array<qsizetype, 256> skip{};
    skip.fill(m_needle.size());
    for (qsizetype at = 0; at + 1 < m_needle.size(); ++at)
        skip[uchar(m_needle[at])] = m_needle.size() - 1 - at;
    for (size_t byte = 0; byte < m_skip.size(); ++byte)
        m_skip[byte] = skip[m_small[byte]];
    makeBeginning();
}

// Characters that are a letter in other writing as well are not compared here.
void AsciiNeedle::makeBeginning()
{
    constexpr char16_t caseBit = 0x20, all = 0xFFFF;
    const auto count = std::min<size_t>(m_beginning.units.size(), size_t(m_needle.size()));
    m_beginning.units.fill(all);
    m_beginning.bits.fill(all);
    for (size_t at = 0; at < count; ++at) {
        const char letter = m_needle[qsizetype(at)];
        if (m_folds && (letter == 's' || letter == 'k'))
            continue;
        const bool hasCase = m_folds && letter >= 'a' && letter <= 'z';
        m_beginning.units[at] = uchar(letter);
        m_beginning.bits[at] = hasCase ? caseBit : char16_t(0);
    }
}

/// Goes on as long as the needle begins at none of the next places.
template <typename Unit>
qsizetype AsciiNeedle::passOver(const Unit *all, qsizetype size, qsizetype from) const
{
    const auto [units, bits] = m_beginning;
    for (; from + together + 2 <= size; from += together) {
        char16_t isThere = 0;
        for (qsizetype at = from; at < from + together; ++at) {
            const auto begins = [&](qsizetype n) {
                return char16_t((char16_t(all[at + n] | bits[size_t(n)])) == units[size_t(n)]);
            };
            isThere = char16_t(isThere | (begins(0) & begins(1) & begins(2)));
        }
        if (isThere != 0)
            break;
    }
    return from;
}

template <typename Unit, typename CodeAt>
qsizetype AsciiNeedle::findFar(const Unit *all, qsizetype size, qsizetype from, CodeAt codeAt) const
{
    if (m_needle.size() < qsizetype(m_beginning.units.size()))
        return find(size, from, codeAt);
    while (true) {
        from = passOver(all, size, from);
        const qsizetype end = std::min(size, from + together + m_needle.size() - 1);
        if (const qsizetype found = find(end, from, codeAt); found >= 0 || end == size)
            return found;
        from += together;
    }
}

template <typename CodeAt>
qsizetype AsciiNeedle::find(qsizetype size, qsizetype from, CodeAt codeAt) const
{
    const auto *needle = reinterpret_cast<const uchar *>(m_needle.constData());
    const qsizetype last = m_needle.size() - 1;
    for (qsizetype at = from; at + last < size;) {
        const uchar end = codeAt(at + last);
        qsizetype matched = m_small[end] == needle[last] ? last : -1;
        while (matched > 0 && m_small[codeAt(at + matched - 1)] == needle[matched - 1])
            --matched;
        if (matched == 0)
            return at;
        at += m_skip[end];
    }
    return -1;
}

qsizetype AsciiNeedle::indexIn(QByteArrayView bytes, qsizetype from) const
{
    const auto *all = reinterpret_cast<const uchar *>(bytes.data());
    return findFar(all, bytes.size(), from, [=](qsizetype at) { return all[at]; });
}

qsizetype AsciiNeedle::indexIn(QStringView text, qsizetype from) const
{
    const char16_t *all = text.utf16();
    return findFar(all, text.size(), from,
                   [=, this](qsizetype at) { return codeOf(all[at], m_folds); });
}
