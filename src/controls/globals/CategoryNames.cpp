#include "controls/globals/CategoryNames.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "startup/Session.h"

namespace {
QList<Category> categoriesIn(ProjectSession &session, const QString &path)
{
    FileSystem &files = session.program().files;
    return files.exists(path) ? CategoryFile(files).read(path) : QList<Category>();
}

void addOnce(QStringList &names, const QString &name)
{
    if (!name.isEmpty() && !names.contains(name, Qt::CaseInsensitive))
        names.append(name);
}
} // namespace

QList<Category> ownCategories(ProjectSession &session)
{
    return categoriesIn(session, session.folder() + ProjectFile::categories);
}

QList<Category> defaultCategories(ProjectSession &session)
{
    return categoriesIn(session, defaultCategoriesPath(session.program().session.serverPath));
}

QStringList availableCategories(ProjectSession &session)
{
    QStringList names;
    for (const Category &category : ownCategories(session))
        addOnce(names, category.name);
    for (const QString &name : session.header().categories)
        addOnce(names, name);
    for (const Category &category : defaultCategories(session))
        addOnce(names, category.name);
    return names;
}
