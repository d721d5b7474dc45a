#include "tools/links/LinkFileUpdate.h"

#include "platform/Xml.h"
#include "tools/links/LinkIdentifiers.h"

#include <QSet>

#include <algorithm>
#include <map>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

/// IBD with ID / LinkIDSourceFile, or IBS with USER / FilePath.
struct SectionNames
{
    const char *section, *entry, *path;
};

constexpr SectionNames targetNames{"IBD", "ID", "LinkIDSourceFile"};
constexpr SectionNames referenceNames{"IBS", "USER", "FilePath"};
constexpr auto identifierName = "LinkID";

bool isOneOf(const pugi::xml_node &node, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), std::string_view(node.name())) != names.end();
}

/// Pages and folders whose content is not known.
class UnreadPlaces final
{
public:
    explicit UnreadPlaces(const QStringList &places)
    {
        for (const QString &place : places) {
            if (place.endsWith(u'\\'))
                m_folders.append(place);
            else
                note(place.toCaseFolded());
        }
    }

    /// `path` may name a place in a page: "Plant\\Book_A\\start.htm#top".
    [[nodiscard]] bool hold(const QString &path) const
    {
        const QString folded = path.toCaseFolded();
        qsizetype end = folded.indexOf(u'#');
        for (; end >= 0 && end <= m_longest; end = folded.indexOf(u'#', end + 1)) {
            if (m_pages.contains(folded.first(end)))
                return true;
        }
        return m_pages.contains(folded)
               || std::any_of(m_folders.cbegin(), m_folders.cend(), [&](const QString &folder) {
                      return path.startsWith(folder, Qt::CaseInsensitive);
                  });
    }

private:
    void note(const QString &page)
    {
        m_pages.insert(page);
        m_longest = std::max(m_longest, page.size());
    }

    QSet<QString> m_pages; ///< folded
    qsizetype m_longest = 0;
    QStringList m_folders;
};

/// "Plant\\Book_A\\start.htm#top": the whole may be a file's name, or what stands before a "#".
bool isPlaceThere(const QString &path, const ProjectLinks &links)
{
    bool isThere = links.isThere(path);
    for (qsizetype end = path.indexOf(u'#'); !isThere && end >= 0;
         end = path.indexOf(u'#', end + 1))
        isThere = links.isThere(path.first(end));
    return isThere;
}

/// Makes one section of the new file.
class Section final
{
public:
    Section(const SectionNames &names, const QList<LinkEntry> &entries, const ProjectLinks &links,
            const UnreadPlaces &unread)
        : m_names(names)
        , m_links(links)
        , m_unread(unread)
    {
        for (const LinkEntry &entry : entries)
            m_entries.try_emplace({entry.identifier, entry.path});
    }

    /// Finds what the file said of the entries; how many entries are none any more.
    int takeOld(const pugi::xml_node &root)
    {
        int gone = 0;
        for (const pugi::xml_node &section : root.children(m_names.section)) {
            for (const pugi::xml_node &entry : section.children(m_names.entry))
                gone += stays(entry) ? 0 : 1;
        }
        return gone;
    }

    void write(pugi::xml_node root) const
    {
        pugi::xml_node section = root.append_child(m_names.section);
        for (const auto &[values, old] : m_entries) {
            pugi::xml_node entry = section.append_child(m_names.entry);
            // Readers expect the identifier before its path.
            appendText(entry, identifierName, values.first);
            appendText(entry, m_names.path, values.second);
            for (const pugi::xml_node &other : old.children()) {
                if (other.type() == pugi::node_element
                    && !isOneOf(other, {identifierName, m_names.path}))
                    entry.append_copy(other);
            }
        }
    }

private:
    bool stays(const pugi::xml_node &entry)
    {
        const QString identifier = linkIdentifier(textOf(entry.child(identifierName)));
        const bool isMigrated = textOf(entry.child("Origin")) == "Migrated"_L1;
        const QString written = textOf(entry.child(m_names.path)).trimmed();
        const QString path = isMigrated ? ownPath(written) : written;
        const auto known = m_entries.find({identifier, path});
        if (known == m_entries.end() && !m_unread.hold(path)
            && !(isMigrated && isPlaceThere(path, m_links)))
            return false;
        pugi::xml_node &old =
            known == m_entries.end() ? m_entries[{identifier, path}] : known->second;
        if (!old)
            old = entry;
        return true;
    }

    // That of a copied project still begins with the project it was copied from.
    [[nodiscard]] QString ownPath(const QString &path) const
    {
        return m_links.project + path.sliced(std::max<qsizetype>(0, path.indexOf(u'\\')));
    }

    const SectionNames &m_names;
    const ProjectLinks &m_links;
    const UnreadPlaces &m_unread;
    std::map<std::pair<QString, QString>, pugi::xml_node> m_entries; ///< with the old element
};

} // namespace

LinkFileUpdate updatedLinkFile(const pugi::xml_document &old, const ProjectLinks &links)
{
    const pugi::xml_node oldRoot = old.child("LINKS");
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("LINKS");
    LinkFileUpdate update;
    const UnreadPlaces unread(links.unread);
    Section targets(targetNames, links.targets, links, unread);
    update.gone += targets.takeOld(oldRoot);
    targets.write(root);
    Section references(referenceNames, links.references, links, unread);
    update.gone += references.takeOld(oldRoot);
    references.write(root);
    for (const pugi::xml_node &other : oldRoot.children()) {
        if (other.type() == pugi::node_element
            && !isOneOf(other, {targetNames.section, referenceNames.section}))
            root.append_copy(other);
    }
    update.bytes = xmlBytes(document);
    return update;
}
