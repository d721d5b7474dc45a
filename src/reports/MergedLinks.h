#pragma once

#include "components/LinkIDMerger.h"
#include "components/XmlCharacters.h"

#include <QHash>
#include <QSet>

#include <pugixml.hpp>

/// A project folder at the beginning of a stored path, "Plant" in "Plant\Book_A\p.htm#top".
/// Empty when the path has no folder.
QStringView leadingFolder(QStringView path);

/// The link file of a merged project, while the files of its sources are taken into it.
class MergedLinks final
{
public:
    /// `document` is the file as it stands, its root LINKS; what it holds is never dropped. Paths
    /// are rewritten to `project`; to none when that is "".
    MergedLinks(const XmlCharacters &characters, pugi::xml_document document, QString project);

    /// Adds the entries of a source's file that are not there yet.
    void add(const LinkSource &source, const pugi::xml_document &document);

    [[nodiscard]] const pugi::xml_document &document() const { return m_document; }
    [[nodiscard]] bool isChanged() const { return m_changed; }
    /// One line for each identifier with more than one target, in the order in which they were met.
    [[nodiscard]] QStringList conflicts() const;

private:
    /// A section of the file: IBD with ID / LinkIDSourceFile, or IBS with USER / FilePath.
    struct Section
    {
        const char *name;
        const char *entry;
        const char *path;
        pugi::xml_node node;
        QSet<QString> known;
    };
    struct Target
    {
        QString path;
        QString project;
    };
    struct Entry;

    void joinSections(Section &section);
    void addEntries(Section &section, const LinkSource &source, const pugi::xml_node &links);
    bool remember(Section &section, const pugi::xml_node &node, const QString &project);
    void noteTarget(const Entry &entry, const QString &project);
    [[nodiscard]] Entry read(const Section &section, const pugi::xml_node &node) const;

    const XmlCharacters &m_characters;
    pugi::xml_document m_document;
    QString m_project;
    Section m_destinations{"IBD", "ID", "LinkIDSourceFile", {}, {}};
    Section m_references{"IBS", "USER", "FilePath", {}, {}};
    QHash<QString, QList<Target>> m_targets; ///< by identifier
    QStringList m_doubled;                   ///< identifiers that have more than one
    bool m_changed = false;
};
