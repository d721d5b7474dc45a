#include "tools/build/DerivedXml.h"

#include "platform/Xml.h"
#include "tools/build/Utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr qsizetype unitSize = sizeof(char16_t);

/// What stands in the file for a character that has a meaning of its own; "" for any other.
std::string_view escapedAs(char16_t unit)
{
    switch (unit) {
    case u'&':
        return "&amp;";
    case u'<':
        return "&lt;";
    case u'>':
        return "&gt;";
    case u'"':
        return "&quot;";
    default:
        return {};
    }
}

bool isForbidden(QStringView text, qsizetype at)
{
    const QChar unit = text[at];
    if (unit.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    if (unit.isLowSurrogate())
        return at == 0 || !text[at - 1].isHighSurrogate();
    return unit < u' ' || unit == QChar(0xFFFE) || unit == QChar(0xFFFF);
}

} // namespace

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the bytes are written as they lie in memory");

DerivedXml::DerivedXml(qsizetype expected)
    : m_bytes(expected * unitSize, Qt::Uninitialized)
{
    append(0xFEFF);
    markup(std::string_view(xmlDeclaration.data(), static_cast<size_t>(xmlDeclaration.size())));
    line();
}

void DerivedXml::markup(std::string_view ascii)
{
    char16_t *at = room(static_cast<qsizetype>(ascii.size()));
    for (const char byte : ascii)
        *at++ = static_cast<unsigned char>(byte);
    filledTo(at);
}

void DerivedXml::number(quint64 value)
{
    filledTo(writeNumber(room(20), value));
}

void DerivedXml::text(QStringView value)
{
    const auto isPlain = [](QChar unit) {
        return unit >= u' ' && unit < QChar(0xD800) && escapedAs(unit.unicode()).empty();
    };
    qsizetype i = 0;
    while (i < value.size()) {
        const qsizetype from = i;
        while (i < value.size() && isPlain(value[i]))
            ++i;
        filledTo(std::copy(value.utf16() + from, value.utf16() + i, room(i - from)));
        if (i == value.size())
            return;
        if (const std::string_view reference = escapedAs(value[i].unicode()); !reference.empty())
            markup(reference);
        else
            append(isForbidden(value, i) ? u' ' : value[i].unicode());
        ++i;
    }
}

void DerivedXml::word(std::string_view utf8)
{
    char16_t *to = room(static_cast<qsizetype>(utf8.size()));
    const char *const end = utf8.data() + utf8.size();
    for (const char *at = utf8.data(); at != end;) {
        const auto [code, length] = utf8At(at, end);
        at += length;
        for (const char16_t unit : QChar::fromUcs4(code))
            *to++ = unit;
    }
    filledTo(to);
}

char16_t *DerivedXml::room(qsizetype units)
{
    if ((m_size + units) * unitSize > m_bytes.size())
        m_bytes.resize((m_size + units) * unitSize * 2);
    return reinterpret_cast<char16_t *>(m_bytes.data()) + m_size;
}

void DerivedXml::filledTo(const char16_t *end)
{
    m_size = end - reinterpret_cast<const char16_t *>(m_bytes.constData());
}

QByteArray DerivedXml::bytes()
{
    m_bytes.truncate(m_size * unitSize);
    return std::exchange(m_bytes, {});
}

void DerivedXml::append(char16_t unit)
{
    char16_t *at = room(1);
    *at++ = unit;
    filledTo(at);
}

char16_t *writeNumber(char16_t *at, quint64 value)
{
    std::array<char16_t, 20> digits;
    size_t first = digits.size();
    do {
        digits[--first] = static_cast<char16_t>(u'0' + value % 10);
        value /= 10;
    } while (value != 0);
    return std::copy(digits.begin() + static_cast<qsizetype>(first), digits.end(), at);
}
