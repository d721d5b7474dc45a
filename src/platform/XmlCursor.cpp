#include "platform/XmlCursor.h"

#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Range
{
    char16_t first, last;
};

// The characters beyond ASCII that may begin a name; D800 to DB7F lead the planes 1 to 14.
constexpr Range nameStarts[] = {{0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},
                                {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D},
                                {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xDB7F},
                                {0xDC00, 0xDFFF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}};
constexpr Range nameParts[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <size_t count>
bool isIn(const Range (&ranges)[count], char16_t unit)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [unit](Range range) { return unit >= range.first && unit <= range.last; });
}

/// Beyond ASCII: whether a name may begin with, or hold, the unit.
bool isForeignNameUnit(char16_t unit, bool first)
{
    return isIn(nameStarts, unit) || (!first && isIn(nameParts, unit));
}

struct Entity
{
    QLatin1StringView name;
    char32_t character;
};

constexpr Entity entities[] = {
    {"amp"_L1, U'&'}, {"lt"_L1, U'<'}, {"gt"_L1, U'>'}, {"quot"_L1, U'"'}, {"apos"_L1, U'\''}};

bool isXmlCharacter(char32_t character)
{
    if (character < 0x20)
        return character == U'\t' || character == U'\n' || character == U'\r';
    return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE)
           || (character > 0xFFFF && character <= 0x10FFFF);
}

/// -1 for anything but a digit of the base.
int digitValue(char16_t unit, int base)
{
    int value = -1;
    if (unit >= u'0' && unit <= u'9')
        value = unit - u'0';
    else if ((unit | 32) >= u'a' && (unit | 32) <= u'f')
        value = (unit | 32) - u'a' + 10;
    return value < base ? value : -1;
}

/// Behind "&#"; 0 when the number names no character of XML.
char32_t numbered(QStringView digits)
{
    const int base = digits.startsWith(u'x') ? 16 : 10;
    if (base == 16)
        digits = digits.sliced(1);
    char32_t character = 0;
    for (const QChar digit : digits) {
        const int value = digitValue(digit.unicode(), base);
        if (value < 0)
            return 0;
        character = std::min<char32_t>(character * char32_t(base) + char32_t(value), 0x110000);
    }
    return isXmlCharacter(character) ? character : 0;
}

/// LF, CR and CRLF are each one line end.
qsizetype lineBehind(QStringView text)
{
    return 1 + text.count(u'\n') + text.count(u'\r') - text.count(u"\r\n");
}

} // namespace

namespace Xml {

char32_t readReference(const char16_t *&at, const char16_t *end)
{
    const QStringView rest(at, end);
    const qsizetype close = rest.indexOf(u';');
    if (close < 2)
        return 0;
    at += close + 1;
    const QStringView name = rest.sliced(1, close - 1);
    if (name.startsWith(u'#'))
        return numbered(name.sliced(1));
    for (const Entity &entity : entities) {
        if (name == entity.name)
            return entity.character;
    }
    return 0;
}

void decode(QStringView raw, Source source, QString &meaning)
{
    meaning.resize(raw.size()); // it is never longer
    QChar *to = meaning.data();
    const char16_t *at = raw.utf16();
    const char16_t *const end = at + raw.size();
    while (at != end) {
        if (*at == u'&' && source != Source::Cdata) {
            for (const char16_t unit : QChar::fromUcs4(readReference(at, end)))
                *to++ = unit;
            continue;
        }
        const char16_t unit = *at++;
        if (unit == u'\r' && at != end && *at == u'\n')
            ++at;
        if (source == Source::Attribute)
            *to++ = is(unit, Blank) ? u' ' : unit;
        else
            *to++ = unit == u'\r' ? u'\n' : unit;
    }
    meaning.truncate(to - meaning.constData());
}

} // namespace Xml

void XmlCursor::refuse(const QString &reason) const
{
    throw QvError(PathFileAccess, {},
                  u"line %1: %2"_s.arg(lineBehind({m_begin, m_at}))
                      .arg(atEnd() ? u"the text ends too early"_s : reason));
}

bool XmlCursor::skip(QLatin1StringView piece)
{
    const bool found = startsWith(piece);
    if (found)
        m_at += piece.size();
    return found;
}

QStringView XmlCursor::readUntil(QLatin1StringView end, const QString &what)
{
    const QStringView rest(m_at, m_end);
    const qsizetype length = rest.indexOf(end);
    if (length < 0)
        refuse(what + u" has no end"_s);
    m_at += length + end.size();
    return rest.first(length);
}

QStringView XmlCursor::readQuoted()
{
    const char16_t quote = peek();
    if (quote != u'"' && quote != u'\'')
        refuse(u"a value stands without quotation marks"_s);
    const char16_t *const from = ++m_at;
    while (m_at != m_end && *m_at != quote) {
        if (*m_at == u'<')
            refuse(u"a value holds a \"<\""_s);
        if (*m_at == u'&')
            checkReference();
        else
            ++m_at;
    }
    if (atEnd())
        refuse(u"a value has no end"_s);
    return {from, m_at++};
}

bool XmlCursor::skipName(QStringView name)
{
    const char16_t *const behind = m_at + name.size();
    if (m_end - m_at < name.size() || !std::equal(m_at, behind, name.utf16()))
        return false;
    const XmlCursor from = *this;
    m_at = behind;
    if (m_at != m_end && isNameUnit(false))
        m_at = from.m_at;
    return m_at == behind;
}

void XmlCursor::checkReference()
{
    const XmlCursor here = *this;
    if (Xml::readReference(m_at, m_end) == 0)
        here.refuse(u"a \"&\" begins no reference that is known here"_s);
}

void XmlCursor::readForeignName(const char16_t *from)
{
    while (m_at != m_end && isNameUnit(m_at == from))
        ++m_at;
    if (m_at == from)
        refuse(u"a name is missing or begins with a wrong character"_s);
}

bool XmlCursor::isNameUnit(bool first) const
{
    const auto wanted = first ? Xml::NameStart : Xml::NamePart;
    return *m_at < 128 ? Xml::is(*m_at, wanted) : isForeignNameUnit(*m_at, first);
}
