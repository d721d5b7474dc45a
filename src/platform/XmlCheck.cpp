#include "platform/XmlCheck.h"

#include "platform/CharacterSet.h"
#include "platform/QvError.h"
#include "platform/XmlTokens.h"

#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void refuse(const QString &reason)
{
    throw QvError(PathFileAccess, {}, reason);
}

/// What a stretch of text holds; counted without a branch, so that the compiler looks at many
/// characters at once.
struct Findings
{
    bool forbidden, surrogate;
};

Findings lookThrough(const char16_t *at, const char16_t *end)
{
    quint16 forbidden = 0;
    quint16 surrogate = 0;
    for (; at != end; ++at) {
        const quint16 unit = *at;
        const bool isControl = (unit < 0x20) & (unit != u'\t') & (unit != u'\n') & (unit != u'\r');
        forbidden |= quint16(isControl | (unit >= 0xFFFE));
        surrogate |= quint16((unit & 0xF800) == 0xD800);
    }
    return {forbidden != 0, surrogate != 0};
}

/// The name in the declaration of a text whose ASCII characters are single bytes; "" without one.
QByteArray declaredEncoding(const QByteArray &bytes)
{
    if (!bytes.startsWith("<?xml"))
        return {};
    const QByteArray declaration = bytes.left(std::min(bytes.indexOf("?>"), qsizetype(1000)));
    const qsizetype word = declaration.indexOf("encoding");
    const qsizetype open = word < 0 ? -1 : declaration.indexOf('=', word) + 1;
    if (open <= 0)
        return {};
    const QByteArray value = declaration.mid(open).trimmed();
    return value.mid(1, value.indexOf(value.left(1), 1) - 1).toLower();
}

/// Without a mark; whether the surrogates come in pairs is seen to later, as for all text.
QString decodeUtf16(QByteArrayView bytes, void convert(const void *, qsizetype, void *))
{
    if (bytes.size() % 2 != 0)
        refuse(u"it is UTF-16 text with half a character at its end"_s);
    QString text(bytes.size() / 2, Qt::Uninitialized);
    convert(bytes.data(), text.size(), text.data());
    return text;
}

QString decodeDeclared(const QByteArray &bytes, const QByteArray &encoding)
{
    if (encoding == "us-ascii" || encoding == "ascii") {
        if (std::any_of(bytes.begin(), bytes.end(), [](char byte) { return byte & '\x80'; }))
            refuse(u"it says us-ascii but has other characters"_s);
        return QString::fromLatin1(bytes);
    }
    // Only a mark or the bytes themselves make wide encodings; saying so does not.
    for (const auto *wide : {"utf-16", "utf16", "utf-32", "utf32", "iso-10646", "ucs", "unicode"}) {
        if (encoding.startsWith(wide))
            refuse(u"it says %1 but its bytes are not"_s.arg(QLatin1StringView(encoding)));
    }
    const CharacterSet set(encoding);
    if (!set.isKnown())
        refuse(u"its encoding \"%1\" is not known"_s.arg(QString::fromLatin1(encoding)));
    const CharacterSet::Decoded decoded = set.decode(bytes);
    if (decoded.hasError)
        refuse(u"its bytes are not valid %1 text"_s.arg(QString::fromLatin1(encoding.toUpper())));
    const bool isMarked = decoded.text.startsWith(QChar::ByteOrderMark);
    return isMarked ? decoded.text.sliced(1) : decoded.text;
}

QString decoded(const QByteArray &bytes)
{
    using namespace std::string_view_literals;
    const auto starts = [&bytes](std::string_view with) {
        return bytes.startsWith(QByteArrayView(with.data(), qsizetype(with.size())));
    };
    if (bytes.isEmpty())
        refuse(u"it is empty"_s);
    const QByteArrayView behindMark =
        QByteArrayView(bytes).sliced(starts("\xFF\xFE"sv) || starts("\xFE\xFF"sv) ? 2 : 0);
    if (starts("\xFF\xFE\0\0"sv) || starts("\0\0\xFE\xFF"sv))
        refuse(u"it is UTF-32 text"_s);
    if (starts("\xFF\xFE"sv) || starts("<\0"sv))
        return decodeUtf16(behindMark, qFromLittleEndian<char16_t>);
    if (starts("\xFE\xFF"sv) || starts("\0<"sv))
        return decodeUtf16(behindMark, qFromBigEndian<char16_t>);
    const bool marked = starts("\xEF\xBB\xBF"sv);
    const QByteArray encoding = declaredEncoding(marked ? bytes.mid(3, 1000) : bytes.left(1000));
    if (marked || encoding.isEmpty())
        return decodeDeclared(bytes, encoding.startsWith("utf-16") ? encoding : "utf-8");
    return decodeDeclared(bytes, encoding);
}

/// In one pass: the replacing functions of QString move the rest of the text again and again.
void unifyLineEnds(QString &text)
{
    qsizetype to = 0;
    for (qsizetype from = 0; from < text.size(); ++from) {
        if (text.at(from) != u'\r')
            text[to++] = text.at(from);
        else if (from + 1 == text.size() || text.at(from + 1) != u'\n')
            text[to++] = u'\n';
    }
    text.truncate(to);
}

} // namespace

bool isXmlText(QStringView text)
{
    const Findings found = lookThrough(text.utf16(), text.utf16() + text.size());
    return !found.forbidden && (!found.surrogate || text.isValidUtf16());
}

QString decodeXml(const QByteArray &bytes)
{
    const QString text = decoded(bytes);
    if (text.startsWith(QChar::ByteOrderMark))
        refuse(u"it has two byte-order marks"_s);
    if (!isXmlText(text))
        refuse(u"it holds characters that no XML text may hold; it may be damaged"_s);
    return text;
}

void checkWellFormed(QString &text)
{
    XmlTokens tokens(text);
    while (tokens.next() != XmlTokens::Kind::End) {
    }
    if (tokens.sawInstruction())
        unifyLineEnds(text);
}

void appendFileLines(QString &target, QStringView text)
{
    for (const QChar character : text) {
        if (character == u'\n')
            target += "\r\n"_L1;
        else if (character == u'\r')
            target += "&#13;"_L1;
        else
            target += character;
    }
}
