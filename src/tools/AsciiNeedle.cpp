#include "tools/AsciiNeedle.h"

#include <algorithm>

namespace {

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
    return find(bytes.size(), from, [=](qsizetype at) { return all[at]; });
}

qsizetype AsciiNeedle::indexIn(QStringView text, qsizetype from) const
{
    const char16_t *all = text.utf16();
    return find(text.size(), from, [=, this](qsizetype at) { return codeOf(all[at], m_folds); });
}
