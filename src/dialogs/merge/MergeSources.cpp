#include "dialogs/merge/MergeSources.h"

#include "catalogue/ProjectCatalogue.h"
#include "components/Components.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "resources/Texts.h"
#include "startup/Session.h"

#include <QHash>
#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto firstLanguage = "ENU"_L1; // of projects whose entry names none

QHash<QString, QString> languages(Program &program)
{
    QHash<QString, QString> found;
    for (const CatalogueEntry &entry : ProjectCatalogue(program.session, program.files).entries())
        found.insert(entry.name, entry.language);
    found.remove(favourites);
    return found;
}

void refuseTwice(const QStringList &projects)
{
    QSet<QString> seen;
    for (const QString &project : projects) {
        if (seen.contains(project.toCaseFolded()))
            throw QvError(InvalidCall, {}, u"The project %1 is to be merged twice"_s.arg(project));
        seen.insert(project.toCaseFolded());
    }
}

QString dateInToc(const MergeSource &source)
{
    return textOf(source.toc.document_element().child("QV").child("QV_Date_Process"));
}

} // namespace

std::vector<MergeSource> readMergeSources(Program &program, const QStringList &projects)
{
    if (projects.size() < 2)
        throw QvError(InvalidCall, {}, text(Text::MergeNeedsTwo));
    refuseTwice(projects);
    const QHash<QString, QString> listed = languages(program);
    std::vector<MergeSource> sources;
    for (const QString &project : projects) {
        if (!listed.contains(project))
            throw QvError(InvalidCall, {},
                          u"The list of projects has no project %1"_s.arg(project));
        const QString folder =
            existingProjectFolder(program.files, program.session.serverPath, project);
        const QString language = listed.value(project);
        sources.push_back({project, folder, language.isEmpty() ? QString(firstLanguage) : language,
                           loadXml(program.files, folder + ProjectFile::toc, "QV_Master")});
    }
    return sources;
}

void CheckMergeProjectsDate(Program &program, std::vector<MergeSource> &sources)
{
    QStringList names(1); // the empty slot, which stands for no project
    for (const MergeSource &source : sources)
        names.append(source.name);
    const QStringList added =
        program.components.serverProducts.GetQVSelectionAddDates(names.sliced(1));
    QList<QDate> dates(1);
    QHash<QString, MergeSource *> byName;
    for (size_t i = 0; i < sources.size(); ++i) {
        const QString date = added.at(qsizetype(i));
        dates.append(dateOf(date.isEmpty() ? dateInToc(sources[i]) : date, program.locale));
        byName.insert(sources[i].name, &sources[i]);
    }
    SortProjectOnDates(names, dates);
    std::vector<MergeSource> sorted;
    for (const QString &name : names.sliced(1))
        sorted.push_back(std::move(*byName.value(name)));
    sources = std::move(sorted);
}
