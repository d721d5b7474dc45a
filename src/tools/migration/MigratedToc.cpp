#include "tools/migration/MigratedToc.h"

#include "platform/Xml.h"
#include "projectfiles/TocBookElement.h"

using namespace Qt::StringLiterals;

namespace {

void writeHeader(pugi::xml_node header, const TocHeader &values)
{
    appendText(header, "QV_Platform", values.platform);
    appendText(header, "QV_Variation", values.variation);
    appendText(header, "QV_ID", values.id);
    appendText(header, "QV_Date_Process", values.dateProcess);
    appendText(header, "QV_Date_Migration", values.dateMigration);
    pugi::xml_node categories = header.append_child("QV_Categories");
    for (const QString &category : values.categories)
        appendText(categories, "QV_Category", category);
}

/// The project's name as it was typed: without the language before it.
QString typedName(const MigratedProject &project)
{
    const QString prefix = project.language + u'_';
    return project.name.startsWith(prefix) ? project.name.sliced(prefix.size()) : project.name;
}

} // namespace

MigratedHeader migratedHeader(const LegacyProject &legacy, const MigratedProject &project,
                              Clock &clock, SystemLocale &locale)
{
    MigratedHeader made;
    const PlatformAndVariation split = splitProjectName(typedName(project), locale);
    const bool says = !legacy.platform.trimmed().isEmpty();
    const QDate today = clock.now().date();
    const bool hasDate = legacy.created && legacy.created->date().isValid();
    made.header = {.platform = says ? legacy.platform.trimmed() : split.platform,
                   .variation = says ? legacy.variation.trimmed() : split.variation,
                   .id = project.id,
                   .dateProcess = locale.shortDate(hasDate ? legacy.created->date() : today),
                   .dateMigration = locale.shortDate(today),
                   .categories = {}};
    made.isThere =
        legacy.created
        || !QStringList{legacy.name, legacy.id, legacy.platform, legacy.variation, legacy.language}
                .join(QString())
                .isEmpty();
    if (!made.isThere)
        made.problems.append(u"It has no row that can be read; the project is named as typed."_s);
    else if (!hasDate)
        made.problems.append(
            u"DateCreated is missing or cannot be read; the project has today's date."_s);
    const QString language = legacy.language.trimmed();
    if (!language.isEmpty() && language.compare(project.language, Qt::CaseInsensitive) != 0)
        made.problems.append(u"The database's language is %1; the project's is %2."_s.arg(
            language, project.language));
    return made;
}

pugi::xml_document tocDocument(const Toc &toc)
{
    pugi::xml_document document;
    pugi::xml_node master = document.append_child("QV_Master");
    writeHeader(master.append_child("QV"), toc.header);
    pugi::xml_node books = master.append_child("QV_Books");
    for (const TocBook &book : toc.books)
        writeTocBook(books.append_child("Book"), book);
    return document;
}
