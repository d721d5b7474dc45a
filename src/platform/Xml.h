#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <pugixml.hpp>

#include <functional>

class QXmlStreamWriter;
class XmlTokens;

// Our XML files: UTF-16 with mark, CRLF, no DOCTYPE. One checked reader, one way of saving.

/// Reads an XML file of ours. Raises 53 when it is missing, and 75 with a description that names
/// the file and the reason when it is not well formed, badly encoded, has a DOCTYPE, is nested
/// more than 64 deep, is over 512 MB, or its root is not `root`.
/// Comments, declaration and unknown elements are kept for saving.
pugi::xml_document loadXml(FileSystem &files, const QString &path, const char *root);

/// The same for bytes already read; `name` stands for the file in messages.
pugi::xml_document parseXml(const QByteArray &bytes, const QString &name, const char *root);

/// The text of an XML file of ours, decoded, for `readXmlTokens`; costs a fraction of a tree.
/// Raises as `loadXml` does, but whether the text is well formed shows only while its tokens are
/// read.
QString readXmlText(FileSystem &files, const QString &path);

/// Hands `read` the tokens of `text` and passes over those that it leaves: when this returns, the
/// text was well formed to its end, and only then may anything that was read be used. An error of
/// the tokens, or a QvError of `read`, is raised as 75 "<path> cannot be read: <reason>".
void readXmlTokens(QStringView text, const QString &path,
                   const std::function<void(XmlTokens &)> &read);

/// Saves through `FileSystem::replaceFile`: UTF-16LE with mark, declaration line, tabs, CRLF.
void saveXml(FileSystem &files, const QString &path, const pugi::xml_document &document,
             ReplaceOptions options = {});

/// The bytes that `saveXml` writes.
QByteArray xmlBytes(const pugi::xml_document &document);

/// Text as our files hold it: UTF-16LE with mark. Lone surrogates raise 5.
QByteArray utf16Bytes(const QString &text);

QString textOf(const pugi::xml_node &node); ///< the element's text; "" for a null node
QString valueOf(const pugi::xml_attribute &attribute);
void setText(pugi::xml_node node, const QString &text); ///< null node: raises 91
pugi::xml_node appendText(pugi::xml_node parent, const char *name, const QString &text);
void setAttribute(pugi::xml_node node, const char *name, const QString &value);

/// Attributes for the next element of an XmlWriter.
using XmlAttributes = QList<std::pair<QString, QString>>;

/// Builds an XML text piece by piece: indented, CRLF, without a declaration of its own.
class XmlWriter
{
public:
    XmlWriter();
    ~XmlWriter();
    void startElement(const QString &name, const XmlAttributes &attributes = {});
    void characters(const QString &text);
    void endElement();
    /// All written so far, ending in CRLF. Raises 5 when a text held what XML forbids.
    [[nodiscard]] QString output() const;

private:
    QString m_text;
    std::unique_ptr<QXmlStreamWriter> m_writer;
};

/// "<?xml version="1.0" encoding="utf-16"?>"
inline constexpr QLatin1StringView xmlDeclaration{R"(<?xml version="1.0" encoding="utf-16"?>)"};
