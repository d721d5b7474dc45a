#include "platform/XmlCheck.h"

#include "platform/QvError.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int maximumDepth = 64;

[[noreturn]] void refuse(const QString &reason)
{
    throw QvError(PathFileAccess, {}, reason);
}

constexpr bool isForbidden(char16_t unit)
{
    return (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
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

QString decodeWith(QStringDecoder decoder, const QByteArray &bytes)
{
    if (!decoder.isValid())
        refuse(u"its encoding is not known here"_s);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        refuse(u"its bytes are not valid %1 text"_s.arg(QLatin1StringView(decoder.name())));
    return text;
}

QString decodeUtf16(const QByteArray &bytes, QStringConverter::Encoding encoding)
{
    if (bytes.size() % 2 != 0)
        refuse(u"it is UTF-16 text with half a character at its end"_s);
    return decodeWith(QStringDecoder(encoding, QStringConverter::Flag::Stateless), bytes);
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
    const QStringDecoder known(encoding.constData());
    if (!known.isValid())
        refuse(u"its encoding \"%1\" is not known"_s.arg(QString::fromLatin1(encoding)));
    return decodeWith(QStringDecoder(encoding.constData(), QStringConverter::Flag::Stateless),
                      bytes);
}

QString decoded(const QByteArray &bytes)
{
    using namespace std::string_view_literals;
    const auto starts = [&bytes](std::string_view with) {
        return bytes.startsWith(QByteArrayView(with.data(), qsizetype(with.size())));
    };
    if (bytes.isEmpty())
        refuse(u"it is empty"_s);
    if (starts("\xFF\xFE\0\0"sv) || starts("\0\0\xFE\xFF"sv))
        refuse(u"it is UTF-32 text"_s);
    if (starts("\xFF\xFE"sv) || starts("<\0"sv))
        return decodeUtf16(bytes, QStringConverter::Utf16LE);
    if (starts("\xFE\xFF"sv) || starts("\0<"sv))
        return decodeUtf16(bytes, QStringConverter::Utf16BE);
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

[[noreturn]] void refuseDoctype()
{
    refuse(u"it has a DOCTYPE, which none of our files has"_s);
}

/// Looks among the comments and instructions before the root, so that nothing in it is expanded.
bool hasDoctype(QStringView text)
{
    for (;;) {
        text = text.trimmed();
        const bool instruction = text.startsWith("<?"_L1);
        if (!instruction && !text.startsWith("<!--"_L1))
            return text.startsWith("<!DOCTYPE"_L1, Qt::CaseInsensitive);
        const qsizetype end = instruction ? text.indexOf("?>"_L1, 2) : text.indexOf("-->"_L1, 4);
        if (end < 0)
            return false;
        text = text.sliced(end + 2);
        if (!instruction)
            text = text.sliced(1);
    }
}

} // namespace

bool isXmlText(QStringView text)
{
    return std::none_of(text.utf16(), text.utf16() + text.size(), isForbidden)
           && text.isValidUtf16();
}

QString decodeXml(const QByteArray &bytes)
{
    QString text = decoded(bytes);
    if (text.startsWith(QChar::ByteOrderMark))
        refuse(u"it has two byte-order marks"_s);
    if (!isXmlText(text))
        refuse(u"it holds characters that no XML text may hold; it may be damaged"_s);
    unifyLineEnds(text);
    return text;
}

void checkWellFormed(const QString &text)
{
    if (hasDoctype(text))
        refuseDoctype();
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    for (int depth = 0; !reader.atEnd();) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::DTD) // behind the root
            refuseDoctype();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && ++depth > maximumDepth)
            refuse(u"line %1: its elements are nested more than %2 deep"_s.arg(reader.lineNumber())
                       .arg(maximumDepth));
    }
    if (reader.hasError())
        refuse(u"line %1: %2"_s.arg(reader.lineNumber()).arg(reader.errorString()));
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
