#include "dialogs/merge/MergedCategories.h"

#include "components/Categories.h"
#include "components/Components.h"
#include "platform/Paths.h"
#include "platform/Xml.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;

MergedCategories::MergedCategories(Program &program)
    : m_program(program)
{
    // A list of defaults that cannot be read is told before anything is made.
    (void)program.components.categories.isIn(defaultCategoriesPath(program.session.serverPath), {});
}

void MergedCategories::GetCategories(const MergeSource &source)
{
    for (const pugi::xpath_node &category : source.toc.select_nodes("//Book_Category")) {
        const QString name = textOf(category.node());
        if (name.trimmed().isEmpty() || m_seen.contains(name))
            continue;
        m_seen.insert(name);
        if (m_accumulator.contains(name, Qt::CaseInsensitive))
            m_parts.append(name);
        else
            m_accumulator += name + u" , "_s;
    }
}

QStringList MergedCategories::write(const QString &first, const QString &target)
{
    Categories &categories = m_program.components.categories;
    categories.open(docsFolder(m_program.session.serverPath), categories.isUsable(first), first,
                    target);
    addTakenUp();
    categories.write(target);

    QStringList nowhere;
    for (const QString &part : m_parts)
        nowhere.append(part.trimmed());
    for (const QString &list : {target, defaultCategoriesPath(m_program.session.serverPath)})
        nowhere.removeIf([&](const QString &name) { return categories.isIn(list, name); });
    return nowhere;
}

void MergedCategories::addTakenUp()
{
    Categories &categories = m_program.components.categories;
    const QString defaults = defaultCategoriesPath(m_program.session.serverPath);
    for (const QString &entry : m_accumulator.split(u',')) {
        if (!categories.isIn(defaults, entry.trimmed()))
            categories.add(entry.trimmed());
    }
}
