#pragma once

#include <QString>
#include <QStringView>

#include <array>

// The words and marks of which XML is made, read from a text that holds only characters XML allows.

namespace Xml {

enum CharacterClass : unsigned char {
    Blank = 1,
    NameStart = 2,
    NamePart = 4,
    EndsPlainText = 8,
};

constexpr std::array<unsigned char, 128> makeClasses()
{
    std::array<unsigned char, 128> classes{};
    for (const char blank : {' ', '\t', '\n', '\r'})
        classes[size_t(blank)] = Blank;
    for (size_t letter = 'a'; letter <= 'z'; ++letter)
        classes[letter] = classes[letter - 'a' + 'A'] = NameStart | NamePart;
    for (const char mark : {':', '_'})
        classes[size_t(mark)] = NameStart | NamePart;
    for (size_t digit = '0'; digit <= '9'; ++digit)
        classes[digit] = NamePart;
    for (const char mark : {'-', '.'})
        classes[size_t(mark)] = NamePart;
    for (const char mark : {'<', '&', ']', '\r'})
        classes[size_t(mark)] |= EndsPlainText;
    return classes;
}

inline constexpr std::array<unsigned char, 128> classes = makeClasses();

/// True for an ASCII character of a class.
constexpr bool is(char16_t unit, CharacterClass wanted)
{
    return (classes[unit & 127] & wanted) != 0 && unit < 128;
}

enum class Source { Text, Cdata, Attribute };

/// The character of the reference ("&amp;", "&#228;") at `at`, which moves behind it; 0 when it is
/// none that XML knows without a DOCTYPE.
char32_t readReference(const char16_t *&at, const char16_t *end);

/// Sets `meaning` to what `raw` means: line ends are LF, in attributes every blank is a space;
/// references, which have been checked, are resolved except in CDATA.
void decode(QStringView raw, Source source, QString &meaning);

} // namespace Xml

/// A place in an XML text that moves on.
class XmlCursor final
{
public:
    explicit XmlCursor(QStringView text)
        : m_begin(text.utf16())
        , m_at(m_begin)
        , m_end(m_begin + text.size())
    {
    }

    /// Raises 75: "line 12: <reason>"; where the text ends, the reason is that it ends too early.
    [[noreturn]] void refuse(const QString &reason) const;

    [[nodiscard]] bool atStart() const { return m_at == m_begin; }
    [[nodiscard]] bool atEnd() const { return m_at == m_end; }
    /// The unit some places on; NUL behind the end.
    [[nodiscard]] char16_t peek(qsizetype ahead = 0) const
    {
        return ahead < m_end - m_at ? m_at[ahead] : u'\0';
    }
    [[nodiscard]] bool startsWith(QLatin1StringView piece,
                                  Qt::CaseSensitivity sensitivity = Qt::CaseSensitive) const
    {
        return QStringView(m_at, m_end).startsWith(piece, sensitivity);
    }

    void advance(qsizetype units) { m_at += units; }
    bool skip(char16_t unit)
    {
        const bool found = m_at != m_end && *m_at == unit;
        m_at += found;
        return found;
    }
    bool skip(QLatin1StringView piece);
    /// False when there is none.
    bool skipBlanks()
    {
        const char16_t *const from = m_at;
        while (m_at != m_end && Xml::is(*m_at, Xml::Blank))
            ++m_at;
        return m_at != from;
    }
    /// Moves to the next unit that is more than plain text: "<", "&", "]" or a carriage return.
    void skipPlainText()
    {
        while (m_at != m_end && !Xml::is(*m_at, Xml::EndsPlainText))
            ++m_at;
    }
    /// What lies before `end`, which is passed too; `what` is named when it never comes.
    QStringView readUntil(QLatin1StringView end, const QString &what);
    /// What lies between the quotation marks that begin here.
    QStringView readQuoted();
    QStringView readName()
    {
        const char16_t *const from = m_at;
        if (m_at != m_end && Xml::is(*m_at, Xml::NameStart)) {
            do
                ++m_at;
            while (m_at != m_end && Xml::is(*m_at, Xml::NamePart));
        }
        if (m_at == from || (m_at != m_end && *m_at >= 128))
            readForeignName(from);
        return {from, m_at};
    }
    /// True, and behind it, when exactly this name stands here.
    bool skipName(QStringView name);
    void checkReference(); ///< and behind it

    /// What was passed since `earlier`.
    [[nodiscard]] QStringView since(const XmlCursor &earlier) const { return {earlier.m_at, m_at}; }

private:
    void readForeignName(const char16_t *from);
    [[nodiscard]] bool isNameUnit(bool first) const;

    const char16_t *m_begin;
    const char16_t *m_at;
    const char16_t *m_end;
};
