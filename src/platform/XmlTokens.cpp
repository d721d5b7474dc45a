#include "platform/XmlTokens.h"

#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isEncodingName(QStringView name)
{
    const auto isPart = [](QChar part) {
        return Xml::is(part.unicode(), Xml::NamePart) && part != u':';
    };
    return !name.isEmpty() && Xml::is(name.front().unicode(), Xml::NameStart)
           && name.front() != u'_' && std::all_of(name.begin(), name.end(), isPart);
}

/// For messages; a damaged file may hold names of any length.
QString quoted(QStringView name)
{
    return u"\"%1\""_s.arg(name.left(60));
}

} // namespace

XmlTokens::XmlTokens(QStringView text)
    : m_at(text)
{
}

XmlTokens::Kind XmlTokens::next()
{
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        return endElement();
    }
    for (;;) {
        if (m_open == 0)
            m_at.skipBlanks();
        if (m_at.atEnd())
            return finish();
        if (m_at.peek() != u'<')
            return readText();
        switch (m_at.peek(1)) {
        case u'/':
            return readEndTag();
        case u'?':
            passInstruction();
            break;
        case u'!':
            if (m_at.startsWith("<![CDATA["_L1))
                return readCdata();
            passComment();
            break;
        default:
            return readStartTag();
        }
    }
}

QStringView XmlTokens::text() const
{
    if (!m_isEncoded)
        return m_raw;
    Xml::decode(m_raw, m_source, m_decoded);
    return m_decoded;
}

QString XmlTokens::attribute(QStringView name) const
{
    for (const Attribute &attribute : m_attributes) {
        if (attribute.name == name) {
            QString value = u""_s;
            Xml::decode(attribute.raw, Xml::Source::Attribute, value);
            return value;
        }
    }
    return {};
}

XmlTokens::Kind XmlTokens::readStartTag()
{
    m_at.advance(1);
    m_name = m_at.readName();
    if (m_open == 0 && m_sawRoot)
        m_at.refuse(u"a second root element begins"_s);
    if (m_open == maximumDepth)
        m_at.refuse(u"its elements are nested more than %1 deep"_s.arg(maximumDepth));
    m_attributes.clear();
    if (m_at.peek() != u'>')
        readAttributes();
    m_isEmptyElement = m_at.skip(u'/');
    if (!m_at.skip(u'>'))
        m_at.refuse(u"the tag %1 is not closed"_s.arg(quoted(m_name)));
    m_sawRoot = true;
    m_openNames[size_t(m_open)] = m_name;
    m_depth = ++m_open;
    return Kind::StartElement;
}

void XmlTokens::readAttributes()
{
    for (;;) {
        const bool apart = m_at.skipBlanks();
        if (m_at.peek() == u'>' || m_at.peek() == u'/')
            break;
        if (!apart)
            m_at.refuse(u"the tag %1 goes on without a blank"_s.arg(quoted(m_name)));
        readAttribute();
    }
    checkAttributeNames();
}

void XmlTokens::readAttribute()
{
    const QStringView name = m_at.readName();
    m_at.skipBlanks();
    if (!m_at.skip(u'='))
        m_at.refuse(u"the attribute %1 has no value"_s.arg(quoted(name)));
    m_at.skipBlanks();
    m_attributes.push_back({name, m_at.readQuoted()});
}

void XmlTokens::checkAttributeNames()
{
    const auto byLength = [](const Attribute &one, const Attribute &other) {
        const bool sameLength = one.name.size() == other.name.size();
        return sameLength ? one.name < other.name : one.name.size() < other.name.size();
    };
    const auto sameName = [](const Attribute &one, const Attribute &other) {
        return one.name == other.name;
    };
    std::sort(m_attributes.begin(), m_attributes.end(), byLength);
    const auto twice = std::adjacent_find(m_attributes.begin(), m_attributes.end(), sameName);
    if (twice != m_attributes.end())
        m_at.refuse(u"the attribute %1 stands twice in one tag"_s.arg(quoted(twice->name)));
}

XmlTokens::Kind XmlTokens::readEndTag()
{
    m_at.advance(2);
    if (m_open == 0)
        m_at.refuse(u"an element ends that never began"_s);
    m_name = m_openNames[size_t(m_open - 1)];
    if (!m_at.skipName(m_name))
        m_at.refuse(u"%1 should end here, not %2"_s.arg(quoted(m_name), quoted(m_at.readName())));
    m_at.skipBlanks();
    if (!m_at.skip(u'>'))
        m_at.refuse(u"the end of %1 is not closed"_s.arg(quoted(m_name)));
    return endElement();
}

XmlTokens::Kind XmlTokens::endElement()
{
    m_depth = m_open--;
    m_name = m_openNames[size_t(m_open)];
    return Kind::EndElement;
}

XmlTokens::Kind XmlTokens::readText()
{
    if (m_open == 0)
        m_at.refuse(u"text stands outside of the root element"_s);
    const XmlCursor from = m_at;
    m_isEncoded = false;
    for (m_at.skipPlainText(); !m_at.atEnd() && m_at.peek() != u'<'; m_at.skipPlainText()) {
        const char16_t unit = m_at.peek();
        if (unit == u']' && m_at.startsWith("]]>"_L1))
            m_at.refuse(u"\"]]>\" stands in a text"_s);
        m_isEncoded |= unit != u']';
        if (unit == u'&')
            m_at.checkReference();
        else
            m_at.advance(1);
    }
    m_raw = m_at.since(from);
    m_source = Xml::Source::Text;
    m_depth = m_open;
    return Kind::Text;
}

XmlTokens::Kind XmlTokens::readCdata()
{
    if (m_open == 0)
        m_at.refuse(u"text stands outside of the root element"_s);
    m_at.skip("<![CDATA["_L1);
    m_raw = m_at.readUntil("]]>"_L1, u"a CDATA section"_s);
    m_isEncoded = m_raw.contains(u'\r');
    m_source = Xml::Source::Cdata;
    m_depth = m_open;
    return Kind::Text;
}

void XmlTokens::passComment()
{
    if (m_at.startsWith("<!DOCTYPE"_L1, Qt::CaseInsensitive))
        m_at.refuse(u"it has a DOCTYPE, which none of our files has"_s);
    if (!m_at.skip("<!--"_L1))
        m_at.refuse(u"a \"<!\" begins neither a comment nor CDATA"_s);
    m_at.readUntil("--"_L1, u"a comment"_s);
    if (!m_at.skip(u'>'))
        m_at.refuse(u"\"--\" stands in a comment"_s);
}

void XmlTokens::passInstruction()
{
    const bool atStart = m_at.atStart();
    m_at.advance(2);
    const QStringView target = m_at.readName();
    if (atStart && target == "xml"_L1)
        return passDeclaration();
    if (target.compare("xml"_L1, Qt::CaseInsensitive) == 0)
        m_at.refuse(u"a declaration stands elsewhere than at the start"_s);
    if (!m_at.startsWith("?>"_L1) && !m_at.skipBlanks())
        m_at.refuse(u"the instruction %1 goes on without a blank"_s.arg(quoted(target)));
    m_at.readUntil("?>"_L1, u"an instruction"_s);
    m_sawInstruction = true;
}

void XmlTokens::passDeclaration()
{
    const QStringView version = readDeclared("version"_L1);
    const QStringView encoding = readDeclared("encoding"_L1);
    const QStringView standalone = readDeclared("standalone"_L1);
    m_at.skipBlanks();
    const bool isKnown =
        version == "1.0"_L1 && (encoding.isNull() || isEncodingName(encoding))
        && (standalone.isNull() || standalone == "yes"_L1 || standalone == "no"_L1);
    if (!isKnown || !m_at.skip("?>"_L1))
        m_at.refuse(u"its declaration is not one of XML 1.0"_s);
}

/// A value of the declaration; null when it does not come next.
QStringView XmlTokens::readDeclared(QLatin1StringView name)
{
    const XmlCursor before = m_at;
    if (!m_at.skipBlanks() || !m_at.skip(name)) {
        m_at = before;
        return {};
    }
    m_at.skipBlanks();
    if (!m_at.skip(u'='))
        m_at.refuse(u"its declaration is not one of XML 1.0"_s);
    m_at.skipBlanks();
    return m_at.readQuoted();
}

XmlTokens::Kind XmlTokens::finish() const
{
    if (m_open > 0 || !m_sawRoot)
        m_at.refuse({});
    return Kind::End;
}
