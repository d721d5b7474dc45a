#include "platform/QvError.h"
#include "platform/Xml.h"
#include "platform/XmlCheck.h"

#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

XmlWriter::XmlWriter()
    : m_writer(std::make_unique<QXmlStreamWriter>(&m_text))
{
    m_writer->setAutoFormatting(true);
    m_writer->setAutoFormattingIndent(-1); // one tab
}

XmlWriter::~XmlWriter() = default;

void XmlWriter::startElement(const QString &name, const XmlAttributes &attributes)
{
    m_writer->writeStartElement(name);
    for (const auto &[attribute, value] : attributes)
        m_writer->writeAttribute(attribute, value);
}

void XmlWriter::characters(const QString &text)
{
    if (!text.isEmpty())
        m_writer->writeCharacters(text);
}

void XmlWriter::endElement()
{
    m_writer->writeEndElement();
}

QString XmlWriter::output() const
{
    if (m_writer->hasError() || !isXmlText(m_text))
        throw QvError(InvalidCall, {}, u"A text holds characters that no XML file may hold"_s);
    // Formatted output begins with an empty line and ends without a line end.
    const QStringView body = QStringView(m_text).trimmed();
    QString text;
    appendFileLines(text, body);
    return text + "\r\n"_L1;
}
