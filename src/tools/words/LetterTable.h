#pragma once

#include <QtGlobal>

#include <array>

/// What a character is to search words.
enum class LetterKind : quint8 {
    Gap,       ///< parts words
    Part,      ///< letter, digit or mark of a word that blanks part
    Paired,    ///< of a script written without blanks: Han, Kana, Hangul, Thai, ...
    Composing, ///< the same, and makes one character with those beside it
    Ignored,   ///< leaves no trace: soft hyphen, joiners
};

/// Kind and folded form of every character: small letters, narrow Latin, wide Kana. Accents stay.
class LetterTable final
{
public:
    static const LetterTable &instance();

    [[nodiscard]] LetterKind kind(char32_t code) const
    {
        return code < plane ? m_kinds[code] : kindBeyond(code);
    }
    [[nodiscard]] char32_t folded(char32_t code) const
    {
        return code < plane ? m_folded[code] : foldedBeyond(code);
    }

private:
    LetterTable();
    static LetterKind kindBeyond(char32_t code);
    static char32_t foldedBeyond(char32_t code);

    static constexpr char32_t plane = 0x10000; // the rest is rare enough to be asked for each time
    std::array<LetterKind, plane> m_kinds;
    std::array<char16_t, plane> m_folded;
};

/// True for Han and Kana, which are written on in the next line without a blank.
bool isWrittenOn(char32_t code);
