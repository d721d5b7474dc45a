#include "reports/MergedLinks.h"

#include "platform/Xml.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto linkId = "LinkID";

/// Writes the stored paths of one source as those of the merged project.
class PathRewriter final
{
public:
    PathRewriter(const LinkSource &source, const QString &project)
        : m_source(source.project)
        , m_project(project)
    {
        for (auto folder = source.renamedFolders.cbegin(); folder != source.renamedFolders.cend();
             ++folder)
            m_renamed.insert(folder.key().toCaseFolded(), folder.value());
    }

    [[nodiscard]] QString rewritten(const QString &path) const
    {
        const QStringView folder = leadingFolder(path);
        if (m_project.isEmpty() || folder.compare(m_source, Qt::CaseInsensitive) != 0)
            return path;
        return m_project + path[folder.size()] + withNewFolder(path.sliced(folder.size() + 1));
    }

private:
    /// The deepest renamed folder counts; books may lie in folders of folders.
    [[nodiscard]] QString withNewFolder(const QString &path) const
    {
        const auto isSeparator = [](QChar c) { return c == u'\\' || c == u'/'; };
        for (qsizetype end = m_renamed.isEmpty() ? 0 : path.size() - 1; end > 0; --end) {
            if (!isSeparator(path[end]))
                continue;
            const QString folder = path.first(end).replace(u'/', u'\\').toCaseFolded();
            if (const auto now = m_renamed.constFind(folder); now != m_renamed.constEnd())
                return *now + path.sliced(end);
        }
        return path;
    }

    QString m_source;
    QString m_project;
    QHash<QString, QString> m_renamed;
};

void rewritePaths(const pugi::xml_node &entry, const char *name, const PathRewriter &rewriter)
{
    for (const pugi::xml_node &path : entry.children(name)) {
        const QString stored = textOf(path).trimmed();
        if (const QString now = rewriter.rewritten(stored); now != stored)
            setText(path, now);
    }
}

/// The whole element as text: two that are equal in it are equal in everything.
QString wholeText(const pugi::xml_node &node)
{
    struct Sink final : pugi::xml_writer
    {
        QByteArray text;
        void write(const void *data, size_t size) override
        {
            text.append(static_cast<const char *>(data), qsizetype(size));
        }
    } sink;
    node.print(sink, "", pugi::format_raw, pugi::encoding_utf8);
    return QString::fromUtf8(sink.text);
}

} // namespace

QStringView leadingFolder(QStringView path)
{
    const auto end =
        std::find_if(path.begin(), path.end(), [](QChar c) { return c == u'\\' || c == u'/'; });
    return end == path.end() ? QStringView() : path.first(end - path.begin());
}

/// What an entry says. It is plain when its identifier stands before its path, each once.
struct MergedLinks::Entry
{
    bool plain = false;
    QString identifier;
    QString path;
};

MergedLinks::MergedLinks(const XmlCharacters &characters, pugi::xml_document document,
                         QString project)
    : m_characters(characters)
    , m_document(std::move(document))
    , m_project(std::move(project))
{
    joinSections(m_destinations);
    joinSections(m_references);
}

/// Makes the section when it is missing, joins it when there are several.
void MergedLinks::joinSections(Section &section)
{
    pugi::xml_node links = m_document.document_element();
    section.node = links.child(section.name);
    if (!section.node) {
        section.node = links.append_child(section.name);
        m_changed = true;
    }
    while (pugi::xml_node other = section.node.next_sibling(section.name)) {
        while (const pugi::xml_node child = other.first_child())
            section.node.append_move(child);
        links.remove_child(other);
        m_changed = true;
    }
    for (const pugi::xml_node &node : section.node.children(section.entry))
        remember(section, node, m_project);
}

void MergedLinks::add(const LinkSource &source, const pugi::xml_document &document)
{
    addEntries(m_destinations, source, document.document_element());
    addEntries(m_references, source, document.document_element());
}

void MergedLinks::addEntries(Section &section, const LinkSource &source,
                             const pugi::xml_node &links)
{
    const PathRewriter rewriter(source, m_project);
    for (const pugi::xml_node &from : links.children(section.name)) {
        for (const pugi::xml_node &entry : from.children(section.entry)) {
            const pugi::xml_node copy = section.node.append_copy(entry);
            rewritePaths(copy, section.path, rewriter);
            if (remember(section, copy, source.project))
                m_changed = true;
            else
                section.node.remove_child(copy);
        }
    }
}

/// False when the section has such an entry already.
bool MergedLinks::remember(Section &section, const pugi::xml_node &node, const QString &project)
{
    const Entry entry = read(section, node);
    const QString key =
        entry.plain ? entry.identifier + QChar(u'\0') + entry.path : wholeText(node);
    const qsizetype before = section.known.size();
    section.known.insert(key);
    if (section.known.size() == before)
        return false;
    if (&section == &m_destinations && entry.plain)
        noteTarget(entry, project);
    return true;
}

void MergedLinks::noteTarget(const Entry &entry, const QString &project)
{
    QList<Target> &targets = m_targets[entry.identifier];
    targets.append({entry.path, project});
    if (targets.size() == 2)
        m_doubled.append(entry.identifier);
}

MergedLinks::Entry MergedLinks::read(const Section &section, const pugi::xml_node &node) const
{
    const pugi::xml_node id = node.child(linkId);
    const pugi::xml_node path = node.child(section.path);
    const bool idFirst = id && path.previous_sibling(linkId) == id;
    if (!idFirst || id.next_sibling(linkId) || path.next_sibling(section.path))
        return {};
    return {true, m_characters.mstrReplaceSpecialCharecters(textOf(id).trimmed()),
            textOf(path).trimmed()};
}

QStringList MergedLinks::conflicts() const
{
    QStringList lines;
    for (const QString &identifier : m_doubled) {
        QStringList targets;
        for (const Target &target : m_targets.value(identifier))
            targets.append(target.project.isEmpty()
                               ? target.path
                               : u"%1 (from %2)"_s.arg(target.path, target.project));
        lines.append(
            u"The link identifier %1 has more than one target, and all were kept: %2"_s.arg(
                identifier, targets.join(u", "_s)));
    }
    return lines;
}
