#include "tools/migration/LegacyLinkFile.h"

#include "platform/Xml.h"
#include "tools/migration/LegacyRows.h"

#include <set>

using namespace Qt::StringLiterals;

namespace {

using Entries = std::set<std::pair<QString, QString>>; ///< identifier and path

void writeSection(pugi::xml_node root, const char *section, const char *entry, const char *path,
                  const Entries &entries)
{
    pugi::xml_node list = root.append_child(section);
    for (const auto &[identifier, place] : entries) {
        const pugi::xml_node element = list.append_child(entry);
        appendText(element, "LinkID", identifier);
        appendText(element, path, place);
        appendText(element, "Origin", u"Migrated"_s); // linking finds them in no page
    }
}

/// Why a row can become nothing; "" when it can.
QString problemOf(const LegacyLink &link, const MovedPlace *place)
{
    if (link.kind.compare("IBD"_L1, Qt::CaseInsensitive) != 0
        && link.kind.compare("IBS"_L1, Qt::CaseInsensitive) != 0)
        return u"Its kind is \"%1\", neither IBD nor IBS; the link %2 was left out."_s.arg(
            link.kind, link.identifier);
    if (link.identifier.trimmed().isEmpty())
        return u"It has no identifier; it was left out."_s;
    if (!place || place->kind == MovedPlace::Kind::Folder)
        return u"The link %1 is of \"%2\", which is no page; it was left out."_s.arg(
            link.identifier, link.file);
    return {};
}

} // namespace

LegacyLinkFile linkFileOf(const LegacyBookSet &set, const LegacyPlaces &places,
                          const QString &project, MigrationNotes &notes)
{
    LegacyLinkFile file;
    file.pageLinkIds.resize(set.pages.size());
    Entries targets, references;
    qsizetype lost = 0;
    for (const LegacyLink &link : set.links) {
        const MovedPlace *place = places.find(link.book, link.file);
        if (const QString problem = problemOf(link, place); !problem.isEmpty()) {
            notes.add(LegacyTable::links, nameOf(link), problem);
            ++lost;
            continue;
        }
        const QString identifier = link.identifier.trimmed();
        const QString path = project + u'\\' + place->now;
        if (link.kind.compare("IBS"_L1, Qt::CaseInsensitive) == 0) {
            references.insert({identifier, path});
            continue;
        }
        targets.insert({identifier, link.anchor.isEmpty() ? path : path + u'#' + link.anchor});
        const bool isOfPage = link.anchor.isEmpty() && place->kind == MovedPlace::Kind::Page;
        if (isOfPage && !file.pageLinkIds.at(place->at).contains(identifier))
            file.pageLinkIds[place->at].append(identifier);
    }
    notes.count(LegacyTable::links, set.links.size(), lost);
    if (targets.empty() && references.empty())
        return file;
    const pugi::xml_node root = file.document.append_child("LINKS");
    writeSection(root, "IBD", "ID", "LinkIDSourceFile", targets);
    writeSection(root, "IBS", "USER", "FilePath", references);
    return file;
}
