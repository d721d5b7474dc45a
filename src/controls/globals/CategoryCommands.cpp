#include "controls/globals/CategoryCommands.h"

#include "controls/globals/CategoryNames.h"
#include "controls/globals/CategoryRules.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/Backup.h"
#include "projectfiles/CategoryUses.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isSame(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

auto named(const QString &name)
{
    return [name](const Category &category) { return isSame(category.name, name); };
}

/// The books of each category, by its folded name, in one pass.
QHash<QString, QStringList> uses(const ProjectSession &session)
{
    QHash<QString, QStringList> books;
    for (const TocBook &book : session.books()) {
        for (const QString &category : book.categories)
            books[category.toCaseFolded()].append(book.name);
    }
    return books;
}

QStringList namesBut(ProjectSession &session, const QString &name)
{
    QStringList names;
    for (const KnownCategory &known : knownCategories(session)) {
        if (!isSame(known.category.name, name))
            names.append(known.category.name);
    }
    return names;
}

void require(const QString &problem)
{
    if (!problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
}

} // namespace

QList<KnownCategory> knownCategories(ProjectSession &session)
{
    using Origin = KnownCategory::Origin;
    QHash<QString, QStringList> unseen = uses(session);
    const QHash<QString, QStringList> books = unseen;
    QList<KnownCategory> known;
    QSet<QString> taken;
    const auto add = [&](Origin origin, const Category &category) {
        const QString key = category.name.toCaseFolded();
        if (key.isEmpty() || taken.contains(key))
            return;
        taken.insert(key);
        known.append({origin, category, books.value(key)});
    };
    for (const Category &category : ownCategories(session))
        add(Origin::Project, category);
    for (const QString &name : session.header().categories)
        add(Origin::Project, {{}, name, {}});
    const QList<Category> defaults = defaultCategories(session);
    for (const TocBook &book : session.books()) {
        for (const QString &name : book.categories) {
            if (std::none_of(defaults.cbegin(), defaults.cend(), named(name)))
                add(Origin::BooksOnly, {{}, name, {}});
        }
    }
    return known;
}

QStringList booksWith(const ProjectSession &session, const QString &category)
{
    return uses(session).value(category.toCaseFolded());
}

CategoryCommands::CategoryCommands(ProjectSession &session)
    : m_session(session)
    , m_values(session.program().session)
{
}

void CategoryCommands::add(const QString &name, const QString &description,
                           const std::optional<TocBook> &book)
{
    QStringList listed;
    for (const Category &category : ownCategories(m_session))
        listed.append(category.name);
    require(CategoryRules::problemOf(name, listed));
    m_session.perform(tr("Add category %1").arg(name), [&](StagedFiles &files) {
        editList(files, [&](QList<Category> &own) { own.append({{}, name, description}); });
        listCategory(m_values, files, m_session.projectName(), name);
        if (!book)
            return;
        TocBook now = *book;
        now.categories.append(name);
        TableOfContents(m_values, files).changeBook(m_session.projectName(), *book, now);
    });
}

void CategoryCommands::change(const QString &old, const QString &name, const QString &description)
{
    require(CategoryRules::problemOf(name, namesBut(m_session, old)));
    const QString command = old == name ? tr("Describe category %1").arg(name)
                                        : tr("Rename category %1 to %2").arg(old, name);
    m_session.perform(command, [&](StagedFiles &files) {
        editList(files, [&](QList<Category> &own) {
            auto found = std::find_if(own.begin(), own.end(), named(old));
            if (found == own.end())
                found = own.insert(own.end(), Category());
            found->name = name;
            found->description = description;
        });
        if (old != name)
            replaceCategory(m_values, files, m_session.projectName(), old, name);
    });
}

void CategoryCommands::join(const QString &from, const QString &into)
{
    if (isSame(from, into))
        throw QvError(InvalidCall, {}, u"A category cannot be joined with itself: "_s + from);
    m_session.perform(tr("Join category %1 into %2").arg(from, into),
                      [&](StagedFiles &files) { drop(files, from, into); });
}

void CategoryCommands::remove(const QString &name, const QString &into)
{
    m_session.perform(tr("Delete category %1").arg(name),
                      [&](StagedFiles &files) { drop(files, name, into); });
}

void CategoryCommands::drop(StagedFiles &files, const QString &name, const QString &into)
{
    editList(files, [&](QList<Category> &own) { own.removeIf(named(name)); });
    replaceCategory(m_values, files, m_session.projectName(), name, into);
}

// The list is read where it is written: a command of another author in between is refused.
void CategoryCommands::editList(StagedFiles &files, const Edit &edit)
{
    const QString path = m_session.folder() + ProjectFile::categories;
    const bool isThere = files.exists(path);
    QList<Category> own = isThere ? CategoryFile(files).read(path) : QList<Category>();
    const QList<Category> before = own;
    edit(own);
    if (own != before)
        CategoryFile(files).write(path, own);
}
