#include "reports/LinkIdFile.h"

#include "platform/QvError.h"
#include "platform/Xml.h"
#include "platform/XmlTokens.h"

#include <QStringList>

#include <optional>

namespace {

constexpr QStringView rootName = u"LINKS";
constexpr QStringView targetsName = u"IBD";
constexpr QStringView targetName = u"ID";
constexpr QStringView targetPathName = u"LinkIDSourceFile";
constexpr QStringView referencesName = u"IBS";
constexpr QStringView referenceName = u"USER";
constexpr QStringView referencePathName = u"FilePath";
constexpr QStringView identifierName = u"LinkID";

constexpr int sectionDepth = 2;
constexpr int entryDepth = 3;
constexpr int valueDepth = 4;

void checkRoot(const XmlTokens &tokens)
{
    if (tokens.name() != rootName)
        throw QvError(
            PathFileAccess, {},
            QStringLiteral("its root is \"%1\" instead of \"%2\"").arg(tokens.name(), rootName));
    if (!tokens.attribute(u"xmlns").isNull())
        throw QvError(PathFileAccess, {},
                      QStringLiteral("its root \"%1\" is in a namespace").arg(rootName));
}

/// Hands the values of the entries to their visitors.
class EntryReader final
{
public:
    EntryReader(XmlTokens &tokens, const XmlCharacters &characters, const LinkVisitors &visitors)
        : m_tokens(tokens)
        , m_characters(characters)
        , m_visitors(visitors)
    {
    }

    void read(const std::stop_token &stop)
    {
        for (;;) {
            switch (m_tokens.next()) {
            case XmlTokens::Kind::StartElement:
                starts();
                break;
            case XmlTokens::Kind::Text:
                if (m_value != Value::None)
                    m_text.append(m_tokens.text());
                break;
            case XmlTokens::Kind::EndElement:
                ends();
                if (m_tokens.depth() == entryDepth && stop.stop_requested())
                    throw Unwinding{Unwinding::Reason::Stopped};
                break;
            case XmlTokens::Kind::End:
                return;
            }
        }
    }

    /// True when published targets have a path that belongs to no entry.
    [[nodiscard]] bool sawSectionPath() const { return m_sawSectionPath; }

private:
    enum class Value { None, Identifier, Path };

    void starts()
    {
        switch (m_tokens.depth()) {
        case 1:
            return checkRoot(m_tokens);
        case sectionDepth:
            return startSection();
        case entryDepth:
            m_inEntry = m_visitor && m_tokens.name() == m_entryName;
            m_sawSectionPath |= m_inTargets && m_tokens.name() == targetPathName;
            return;
        case valueDepth:
            return startValue();
        default:
            return;
        }
    }

    void startSection()
    {
        m_inTargets = m_tokens.name() == targetsName;
        m_visitor = m_inTargets                         ? m_visitors.targets
                    : m_tokens.name() == referencesName ? m_visitors.references
                                                        : nullptr;
        m_entryName = m_inTargets ? targetName : referenceName;
        m_pathName = m_inTargets ? targetPathName : referencePathName;
    }

    void startValue()
    {
        if (!m_inEntry)
            return;
        if (m_tokens.name() == identifierName)
            m_value = Value::Identifier;
        else if (m_tokens.name() == m_pathName)
            m_value = Value::Path;
        m_text.resize(0);
    }

    void ends()
    {
        if (m_tokens.depth() == valueDepth && m_value != Value::None)
            endValue();
        else if (m_tokens.depth() == entryDepth && m_inEntry)
            m_visitor->entryEnds();
    }

    void endValue()
    {
        const QStringView text = QStringView(m_text).trimmed();
        if (m_value == Value::Path)
            m_visitor->path(text);
        else // shown to the component where it is, which saves a copy of nearly all
            m_visitor->identifier(m_characters.mstrReplaceSpecialCharecters(
                QString::fromRawData(text.data(), text.size())));
        m_value = Value::None;
    }

    XmlTokens &m_tokens;
    const XmlCharacters &m_characters;
    const LinkVisitors &m_visitors;
    LinkVisitor *m_visitor = nullptr; ///< of the section at hand
    QStringView m_entryName;
    QStringView m_pathName;
    bool m_inTargets = false;
    bool m_inEntry = false;
    bool m_sawSectionPath = false;
    Value m_value = Value::None;
    QString m_text;
};

/// Reads what stands directly in the sections of published targets: the whole text of each entry,
/// and the first path.
class SectionReader final
{
public:
    SectionReader(XmlTokens &tokens, SectionVisitor &visitor)
        : m_tokens(tokens)
        , m_visitor(visitor)
    {
    }

    void read()
    {
        for (auto kind = m_tokens.next(); kind != XmlTokens::Kind::End; kind = m_tokens.next()) {
            if (kind == XmlTokens::Kind::StartElement)
                starts();
            else if (kind == XmlTokens::Kind::EndElement)
                ends();
            else if (m_inSection && m_tokens.depth() >= entryDepth)
                m_text.append(m_tokens.text());
        }
    }

private:
    void starts()
    {
        if (m_tokens.depth() == sectionDepth)
            m_inSection = m_tokens.name() == targetsName;
        if (m_tokens.depth() == entryDepth)
            m_text.resize(0);
    }

    void ends()
    {
        if (m_inSection && m_tokens.depth() == entryDepth)
            endChild();
        if (m_inSection && m_tokens.depth() == sectionDepth)
            endSection();
    }

    void endChild()
    {
        if (m_tokens.name() == targetName)
            m_entryTexts.append(m_text);
        else if (m_tokens.name() == targetPathName && !m_path)
            m_path = m_text.trimmed();
    }

    void endSection()
    {
        if (m_path) {
            for (const QString &text : std::as_const(m_entryTexts))
                m_visitor.sectionTarget(text, *m_path);
        }
        m_entryTexts.clear();
        m_path.reset();
    }

    XmlTokens &m_tokens;
    SectionVisitor &m_visitor;
    bool m_inSection = false;
    QString m_text;
    QStringList m_entryTexts;
    std::optional<QString> m_path;
};

} // namespace

void readLinkIdFile(FileSystem &files, const XmlCharacters &characters, const QString &path,
                    const LinkVisitors &visitors, const std::stop_token &stop)
{
    const QString text = readXmlText(files, path);
    bool sawSectionPath = false;
    readXmlTokens(text, path, [&](XmlTokens &tokens) {
        EntryReader reader(tokens, characters, visitors);
        reader.read(stop);
        sawSectionPath = reader.sawSectionPath();
    });
    // Hardly any file has one; all others are spared the collecting of texts.
    if (sawSectionPath && visitors.sections) {
        readXmlTokens(text, path,
                      [&](XmlTokens &tokens) { SectionReader(tokens, *visitors.sections).read(); });
    }
}
