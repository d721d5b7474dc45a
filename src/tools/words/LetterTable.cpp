#include "tools/words/LetterTable.h"

#include <QChar>
#include <QString>

#include <algorithm>
#include <span>

namespace {

struct Range
{
    char32_t first, last;
};

constexpr Range pairedRanges[] = {
    {0x0E00, 0x0EFF},   // Thai, Lao
    {0x1000, 0x109F},   // Burmese
    {0x1100, 0x11FF},   // Hangul letters
    {0x1780, 0x17FF},   // Khmer
    {0x2F00, 0x2FD5},   // radicals that stand for Han
    {0x3005, 0x3007},   // Han repetition marks, zero
    {0x3041, 0x318E},   // Kana, Bopomofo, Hangul letters
    {0x31A0, 0x31BF},   // Bopomofo
    {0x31F0, 0x31FF},   // Kana
    {0x3400, 0x4DBF},   // Han
    {0x4E00, 0x9FFF},   // Han
    {0xA960, 0xA97F},   // Hangul letters
    {0xAC00, 0xD7FF},   // Hangul
    {0xF900, 0xFAFF},   // Han
    {0xFF66, 0xFFDC},   // narrow Kana and Hangul
    {0x20000, 0x3FFFF}, // Han
};
constexpr Range composingRanges[] = {{0x1100, 0x11FF}, {0x3099, 0x309A}, {0xA960, 0xA97F},
                                     {0xD7B0, 0xD7FF}, {0xFF9E, 0xFF9F}, {0xFFA0, 0xFFDC}};
constexpr Range ignoredRanges[] = {
    {0x00AD, 0x00AD}, {0x200C, 0x200D}, {0x2060, 0x2060}, {0xFEFF, 0xFEFF}};

bool isIn(std::span<const Range> ranges, char32_t code)
{
    return std::any_of(ranges.begin(), ranges.end(), [&](const Range &range) {
        return code >= range.first && code <= range.last;
    });
}

LetterKind kindOf(char32_t code)
{
    if (isIn(ignoredRanges, code))
        return LetterKind::Ignored;
    const bool isRadical = code >= 0x2F00 && code <= 0x2FD5; // a symbol to Unicode
    if (!isRadical && !QChar::isLetterOrNumber(code) && !QChar::isMark(code))
        return LetterKind::Gap;
    if (isIn(composingRanges, code))
        return LetterKind::Composing;
    return isIn(pairedRanges, code) ? LetterKind::Paired : LetterKind::Part;
}

/// The one character that means the same without regard to width.
char32_t narrowed(char32_t code)
{
    const QString plain = QString::fromUcs4(&code, 1).normalized(QString::NormalizationForm_KC);
    return plain.size() == 1 ? plain.front().unicode() : code;
}

char32_t foldedOf(char32_t code)
{
    const bool isHyphen = code == 0x2010 || code == 0x2011;
    const bool hasWidth = code >= 0xF900 || (code >= 0x2F00 && code <= 0x2FD5);
    return isHyphen ? U'-' : QChar::toCaseFolded(hasWidth ? narrowed(code) : code);
}

} // namespace

const LetterTable &LetterTable::instance()
{
    static const LetterTable table;
    return table;
}

LetterTable::LetterTable()
{
    for (char32_t code = 0; code < plane; ++code) {
        m_kinds[code] = kindOf(code);
        m_folded[code] = static_cast<char16_t>(foldedOf(code));
    }
}

LetterKind LetterTable::kindBeyond(char32_t code)
{
    return code <= QChar::LastValidCodePoint ? kindOf(code) : LetterKind::Gap;
}

char32_t LetterTable::foldedBeyond(char32_t code)
{
    return QChar::toCaseFolded(code);
}

bool isWrittenOn(char32_t code)
{
    constexpr Range ranges[] = {{0x3005, 0x3007}, {0x3041, 0x30FF}, {0x31F0, 0x31FF},
                                {0x3400, 0x9FFF}, {0xF900, 0xFAFF}, {0x20000, 0x3FFFF}};
    return isIn(ranges, code);
}
