#include "catalogue/ProjectCatalogue.h"

#include "catalogue/CatalogueFile.h"
#include "catalogue/CatalogueLock.h"
#include "platform/Paths.h"
#include "platform/Xml.h"
#include "resources/Texts.h"
#include "startup/Errors.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool holdsProject(const pugi::xml_document &catalogue, const QString &name,
                  Qt::CaseSensitivity sensitivity)
{
    const auto isIt = [&](const pugi::xml_node &listed) {
        return textOf(listed).compare(name, sensitivity) == 0;
    };
    const QList<pugi::xml_node> projects = allProjects(catalogue);
    return std::any_of(projects.begin(), projects.end(), [&](const pugi::xml_node &project) {
        const auto names = project.children("QV_Name");
        return std::any_of(names.begin(), names.end(), isIt);
    });
}

void appendFavourites(pugi::xml_node projects)
{
    pugi::xml_node entry = projects.append_child("QV");
    appendText(entry, "QV_Acro", u"MyFav"_s);
    setAttribute(appendText(entry, "QV_Name", favourites), "AddDate", {});
    appendText(entry, "QV_Location", u"MyFav\\QV_Favorites\\"_s);
}

void appendProject(pugi::xml_node projects, const Session &session)
{
    pugi::xml_node entry = projects.append_child("QV");
    appendText(entry, "QV_Acro", session.projectId);
    const pugi::xml_node name = appendText(entry, "QV_Name", session.projectName);
    setAttribute(name, "AddDate", {});
    setAttribute(name, "Pro", u"Yes"_s);
    setAttribute(name, "Enable", u"Yes"_s);
    setAttribute(name, "Rank", defaultRank);
    setAttribute(name, "LANGUAGE", session.projectLanguage);
    appendText(entry, "QV_Location", u"Docs\\"_s + session.projectName + u'\\');
}

QList<pugi::xml_node> entriesOf(const pugi::xml_document &catalogue, const QString &name)
{
    QList<pugi::xml_node> found;
    for (const pugi::xml_node &project : allProjects(catalogue)) {
        if (textOf(project.child("QV_Name")) == name)
            found.append(project);
    }
    return found;
}

CatalogueEntry readEntry(const pugi::xml_node &project)
{
    const pugi::xml_node name = project.child("QV_Name");
    return {.id = textOf(project.child("QV_Acro")),
            .name = textOf(name),
            .location = textOf(project.child("QV_Location")),
            .addDate = valueOf(name.attribute("AddDate")),
            .rank = valueOf(name.attribute("Rank")),
            .language = valueOf(name.attribute("LANGUAGE"))};
}

} // namespace

ProjectCatalogue::ProjectCatalogue(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

bool ProjectCatalogue::CreateSelectionFile(const QString &path)
{
    return trap(reraise(m_session, u"QV_Developer::CreateSelectionFile"_s), [&] {
        XmlWriter writer;
        writer.startElement(u"QV_Selection_List"_s);
        writer.startElement(u"QVs"_s);
        writer.endElement();
        writer.endElement();
        m_files.replaceFile(path, utf16Bytes(xmlDeclaration + u"\r\n"_s + writer.output()));
        return true;
    });
}

bool ProjectCatalogue::bCheckQVSelectionforProdName()
{
    return trap(reraise(m_session, u"QV_Developer::bCheckQVSelectionforProdName"_s), [&] {
        if (!m_files.exists(path())) {
            const CatalogueLock lock(m_files, path());
            if (!m_files.exists(path())) // another author may have made it meanwhile
                CreateSelectionFile(path());
        }
        return !holdsProject(loadCatalogue(m_files, path()), m_session.projectName,
                             Qt::CaseInsensitive);
    });
}

void ProjectCatalogue::UpdateQVSelection()
{
    trap(reraise(m_session, u"QV_Developer::UpdateQVSelection"_s), [&] {
        if (!m_files.exists(path()))
            return;

        const CatalogueLock lock(m_files, path());
        pugi::xml_document catalogue = loadCatalogue(m_files, path());
        if (holdsProject(catalogue, m_session.projectName, Qt::CaseInsensitive))
            throw QvError(InvalidCall, {},
                          text(Text::ProjectAlreadyExists) + u": "_s + m_session.projectName);
        const pugi::xml_node projects = catalogue.document_element().child("QVs");
        if (!holdsProject(catalogue, favourites, Qt::CaseSensitive))
            appendFavourites(projects);
        appendProject(projects, m_session);
        saveXml(m_files, path(), catalogue);
    });
}

QStringList ProjectCatalogue::GetProdQVSelection_All()
{
    return trap(reraise(m_session, u"QV_Developer::GetProdQVSelection_All"_s), [&] {
        QStringList names(2);
        if (!m_files.exists(path()))
            return names;

        const pugi::xml_document catalogue = loadCatalogue(m_files, path());
        for (const pugi::xpath_node &entry : allNames(catalogue)) {
            if (const QString name = textOf(entry.node()); name != favourites)
                names.append(name);
        }
        return names;
    });
}

QStringList ProjectCatalogue::GetProdQVSelection_Data()
{
    return trap(reraise(m_session, u"QV_Developer::GetProdQVSelection_Data"_s), [&] {
        QStringList items(1);
        if (!m_files.exists(path()))
            return items;

        const pugi::xml_document catalogue = loadCatalogue(m_files, path());
        for (const pugi::xpath_node &entry : allNames(catalogue)) {
            const pugi::xml_attribute rank = entry.node().attribute("Rank");
            items.append(textOf(entry.node()) + u'#' + (rank ? valueOf(rank) : defaultRank));
        }
        return items;
    });
}

void ProjectCatalogue::UpdateRankInSelectionFile(ProjectRanking &ranking, const QStringList &items)
{
    trap(reraise(m_session, u"QV_Developer::UpdateRankInSelectionFile"_s), [&] {
        QStringList trimmed;
        for (const QString &item : items)
            trimmed.append(item.trimmed());
        ranking.UpdateProjectRanks(trimmed);
    });
}

QList<CatalogueEntry> ProjectCatalogue::entries()
{
    QList<CatalogueEntry> all;
    if (!m_files.exists(path()))
        return all;

    const pugi::xml_document catalogue = loadCatalogue(m_files, path());
    const QList<pugi::xml_node> projects = allProjects(catalogue);
    all.reserve(projects.size());
    for (const pugi::xml_node &project : projects)
        all.append(readEntry(project));
    return all;
}

void ProjectCatalogue::release(const QString &name, QDate date)
{
    if (!date.isValid())
        throw QvError(InvalidCall, {}, u"This is no date to release %1 with"_s.arg(name));
    setAddDate(name, date.toString(Qt::ISODate));
}

void ProjectCatalogue::reopen(const QString &name)
{
    setAddDate(name, {});
}

void ProjectCatalogue::setAddDate(const QString &name, const QString &date)
{
    change(name, [&](const pugi::xml_node &entry) {
        setAttribute(entry.child("QV_Name"), "AddDate", date);
    });
}

void ProjectCatalogue::rename(const QString &name, const QString &newName)
{
    const auto requireFree = [&](const pugi::xml_document &catalogue) {
        const bool onlyCapitals = name.compare(newName, Qt::CaseInsensitive) == 0;
        if (!onlyCapitals && holdsProject(catalogue, newName, Qt::CaseInsensitive))
            throw QvError(InvalidCall, {}, text(Text::ProjectAlreadyExists) + u": "_s + newName);
    };
    const auto edit = [&](const pugi::xml_node &entry) {
        setText(entry.child("QV_Name"), newName);
        setText(entry.child("QV_Location"), u"Docs\\"_s + newName + u'\\');
    };
    change(name, edit, requireFree);
}

void ProjectCatalogue::setId(const QString &name, const QString &id)
{
    change(name, [&](const pugi::xml_node &entry) { setText(entry.child("QV_Acro"), id); });
}

void ProjectCatalogue::change(const QString &name,
                              const std::function<void(pugi::xml_node entry)> &edit,
                              const std::function<void(const pugi::xml_document &)> &check)
{
    const CatalogueLock lock(m_files, path());
    const pugi::xml_document catalogue = loadCatalogue(m_files, path());
    const QList<pugi::xml_node> listed = entriesOf(catalogue, name);
    if (name == favourites || listed.isEmpty())
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is not in the list of projects any more"_s.arg(name));
    if (check)
        check(catalogue);
    for (const pugi::xml_node &entry : listed)
        edit(entry);
    saveXml(m_files, path(), catalogue);
}

void ProjectCatalogue::remove(const QString &name)
{
    if (name.isEmpty() || name == favourites || !m_files.exists(path()))
        return; // entries without a name are nobody's to remove
    const CatalogueLock lock(m_files, path());
    const pugi::xml_document catalogue = loadCatalogue(m_files, path());
    const QList<pugi::xml_node> listed = entriesOf(catalogue, name);
    if (listed.isEmpty())
        return;
    for (const pugi::xml_node &entry : listed)
        entry.parent().remove_child(entry);
    saveXml(m_files, path(), catalogue);
}

QString ProjectCatalogue::path() const
{
    return cataloguePath(m_session.serverPath);
}
