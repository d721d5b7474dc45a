#include "platform/Xml.h"

#include "platform/QvError.h"
#include "platform/XmlCheck.h"
#include "platform/XmlTokens.h"

#include <QStringEncoder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 512LL * 1024 * 1024;

[[noreturn]] void refuse(const QString &name, const QString &reason)
{
    throw QvError(PathFileAccess, {}, u"%1 cannot be read: %2"_s.arg(name, reason));
}

/// Raises what `body` raises as an error of the file `name`.
template <typename Body>
auto namingFile(const QString &name, Body &&body)
{
    try {
        return body();
    } catch (const QvError &error) {
        refuse(name, error.description());
    }
}

/// Collects what the parser prints.
class TextSink final : public pugi::xml_writer
{
public:
    QString text;

    void write(const void *data, size_t size) override
    {
        QStringView rest(static_cast<const QChar *>(data), qsizetype(size / sizeof(QChar)));
        while (!rest.isEmpty()) {
            const qsizetype plain = std::find_if(rest.begin(), rest.end(), endsLine) - rest.begin();
            text += rest.first(plain);
            rest = rest.sliced(plain);
            appendFileLines(text, rest.left(1));
            rest = rest.mid(1);
        }
    }

private:
    static bool endsLine(QChar character) { return character == u'\n' || character == u'\r'; }
};

QByteArray xmlUtf8(const QString &text)
{
    if (!isXmlText(text))
        throw QvError(InvalidCall, {}, u"A text holds characters that no XML file may hold"_s);
    return text.toUtf8();
}

bool isText(const pugi::xml_node &node)
{
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

void collectText(const pugi::xml_node &node, QString &text)
{
    if (isText(node))
        text += QString::fromUtf8(node.value());
    for (const pugi::xml_node &child : node)
        collectText(child, text);
}

/// The bytes of the file, as far as its kind and size allow.
QByteArray readBytes(FileSystem &files, const QString &path)
{
    const FileStatus status = files.status(path);
    if (status.kind == FileKind::Missing)
        throw QvError(FileNotFound, {}, u"File not found: "_s + path);
    if (status.kind != FileKind::File)
        refuse(path, u"it is not a regular file"_s);
    if (status.size > sizeLimit)
        refuse(path, u"it is larger than 512 MB"_s);
    return files.readFile(path, sizeLimit + 1);
}

/// With the line ends of the file.
QString decodedText(const QByteArray &bytes, const QString &name)
{
    if (bytes.size() > sizeLimit)
        refuse(name, u"it is larger than 512 MB"_s);
    return namingFile(name, [&] { return decodeXml(bytes); });
}

/// UTF-8, as the parser keeps it: left to itself it takes thrice as long for UTF-16. Each form of
/// the text goes as soon as the next is there.
QByteArray checkedUtf8(QString text, const QString &name)
{
    namingFile(name, [&] { checkWellFormed(text); });
    return text.toUtf8();
}

pugi::xml_document parseText(QString &&text, const QString &name, const char *root)
{
    const QByteArray utf8 = checkedUtf8(std::move(text), name);
    pugi::xml_document document;
    const auto result = document.load_buffer(utf8.constData(), size_t(utf8.size()),
                                             pugi::parse_default | pugi::parse_comments
                                                 | pugi::parse_pi | pugi::parse_ws_pcdata_single,
                                             pugi::encoding_utf8);
    if (!result)
        refuse(name, QString::fromUtf8(result.description()));
    const pugi::xml_node top = document.document_element();
    if (QByteArrayView(top.name()) != QByteArrayView(root))
        refuse(name, u"its root is \"%1\" instead of \"%2\""_s.arg(QString::fromUtf8(top.name()),
                                                                   QString::fromUtf8(root)));
    if (top.attribute("xmlns"))
        refuse(name, u"its root \"%1\" is in a namespace"_s.arg(QString::fromUtf8(root)));
    return document;
}

} // namespace

pugi::xml_document loadXml(FileSystem &files, const QString &path, const char *root)
{
    return parseText(readXmlText(files, path), path, root);
}

QString readXmlText(FileSystem &files, const QString &path)
{
    return decodedText(readBytes(files, path), path);
}

void readXmlTokens(QStringView text, const QString &path,
                   const std::function<void(XmlTokens &)> &read)
{
    namingFile(path, [&] {
        XmlTokens tokens(text);
        read(tokens);
        while (tokens.next() != XmlTokens::Kind::End) {
        }
    });
}

pugi::xml_document parseXml(const QByteArray &bytes, const QString &name, const char *root)
{
    return parseText(decodedText(bytes, name), name, root);
}

void saveXml(FileSystem &files, const QString &path, const pugi::xml_document &document,
             ReplaceOptions options)
{
    files.replaceFile(path, xmlBytes(document), options);
}

QByteArray xmlBytes(const pugi::xml_document &document)
{
    TextSink sink;
    sink.text = xmlDeclaration + "\r\n"_L1;
    for (const pugi::xml_node &node : document) {
        if (node.type() != pugi::node_declaration)
            node.print(sink, "\t", pugi::format_indent, pugi::encoding_utf16);
    }
    return utf16Bytes(sink.text);
}

QByteArray utf16Bytes(const QString &text)
{
    if (!text.isValidUtf16())
        throw QvError(InvalidCall, {}, u"A text ends or breaks in the middle of a character"_s);
    QStringEncoder encoder(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
    return encoder.encode(text);
}

QString textOf(const pugi::xml_node &node)
{
    const pugi::xml_node first = node.first_child();
    if (isText(first) && !first.next_sibling())
        return QString::fromUtf8(first.value());
    QString text;
    collectText(node, text);
    return text;
}

QString valueOf(const pugi::xml_attribute &attribute)
{
    return QString::fromUtf8(attribute.value());
}

void setText(pugi::xml_node node, const QString &text)
{
    if (!node)
        throw QvError(ObjectNotSet, {}, u"An element that should be there is missing"_s);
    const QByteArray value = xmlUtf8(text);
    node.remove_children();
    if (!value.isEmpty())
        node.append_child(pugi::node_pcdata).set_value(value.constData());
}

pugi::xml_node appendText(pugi::xml_node parent, const char *name, const QString &text)
{
    const QByteArray value = xmlUtf8(text);
    pugi::xml_node node = parent.append_child(name);
    if (!node)
        throw QvError(
            ObjectNotSet, {},
            u"The element that \"%1\" belongs into is missing"_s.arg(QString::fromUtf8(name)));
    if (!value.isEmpty())
        node.append_child(pugi::node_pcdata).set_value(value.constData());
    return node;
}

void setAttribute(pugi::xml_node node, const char *name, const QString &value)
{
    if (!node)
        throw QvError(ObjectNotSet, {}, u"An element that should be there is missing"_s);
    const QByteArray utf8 = xmlUtf8(value);
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute)
        attribute = node.append_attribute(name);
    attribute.set_value(utf8.constData());
}
