#pragma once

#include "platform/XmlCursor.h"

#include <QString>
#include <QStringView>

#include <array>
#include <vector>

/// Reads an XML text piece by piece in one pass: for files of which no tree is needed, and as the
/// check before a tree is made. Strict: what it takes to the end is well formed (XML 1.0; prefixes
/// need not be declared), has no DOCTYPE and is nested at most 64 deep.
class XmlTokens final
{
public:
    enum class Kind { StartElement, EndElement, Text, End };

    /// `text` outlives the reader. It holds no character that XML forbids and no lone surrogate,
    /// as `readXmlText` gives it; its lines may end in LF, CRLF or CR.
    explicit XmlTokens(QStringView text);

    /// The next piece. Comments and instructions are passed over (text on both sides comes as two
    /// pieces); CDATA is Text; an empty element starts and ends. Raises 75 with the plain reason
    /// and the line ("line 12: ...") when the text is not well formed: nothing that was read may
    /// be used before End was reached.
    Kind next();

    [[nodiscard]] QStringView name() const { return m_name; } ///< of StartElement and EndElement
    /// Of Text: references resolved, line ends LF. Valid until the next call of it or of `next`.
    [[nodiscard]] QStringView text() const;
    /// Of the element just started or ended, 1 for the root; of Text, of the element around it.
    [[nodiscard]] int depth() const { return m_depth; }
    /// Of StartElement: the value, references resolved and every blank a space; null when the
    /// element has no such attribute, "" when it is empty.
    [[nodiscard]] QString attribute(QStringView name) const;

    /// True when an instruction other than the declaration was passed over.
    [[nodiscard]] bool sawInstruction() const { return m_sawInstruction; }

private:
    struct Attribute
    {
        QStringView name, raw;
    };
    static constexpr int maximumDepth = 64;

    Kind readStartTag();
    void readAttributes();
    void readAttribute();
    void checkAttributeNames();
    Kind readEndTag();
    Kind endElement();
    Kind readText();
    Kind readCdata();
    void passComment();
    void passInstruction();
    void passDeclaration();
    QStringView readDeclared(QLatin1StringView name);
    [[nodiscard]] Kind finish() const;

    XmlCursor m_at;
    QStringView m_name;
    QStringView m_raw;
    Xml::Source m_source = Xml::Source::Text;
    bool m_isEncoded = false;      ///< m_raw is not yet what it means
    bool m_isEmptyElement = false; ///< its end is still to be told
    bool m_sawRoot = false;
    bool m_sawInstruction = false;
    int m_depth = 0;
    int m_open = 0; ///< elements that have started and not ended
    std::array<QStringView, maximumDepth> m_openNames;
    std::vector<Attribute> m_attributes;
    mutable QString m_decoded;
};
