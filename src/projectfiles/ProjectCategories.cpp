#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/CategoryFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool holds(const QList<Category> &categories, const QString &name)
{
    return std::any_of(categories.begin(), categories.end(), [&](const Category &category) {
        return category.name.compare(name, Qt::CaseInsensitive) == 0;
    });
}

class CategoriesInFile final : public Categories
{
public:
    explicit CategoriesInFile(FileSystem &files)
        : m_files(files)
    {
    }

    bool isUsable(const QString &path) override;
    void open(const QString &docsFolder, bool fromCopy, const QString &copySource,
              const QString &target) override;
    bool isIn(const QString &defaultCategoriesPath, const QString &name) override;
    void add(const QString &name) override;
    void write(const QString &path) override;

private:
    FileSystem &m_files;
    QList<Category> m_set;
    QString m_defaultsPath; ///< which list `m_defaults` is; read once for a set
    QList<Category> m_defaults;
};

bool CategoriesInFile::isUsable(const QString &path)
{
    try {
        (void)CategoryFile(m_files).read(path);
        return true;
    } catch (const QvError &) {
        return false;
    }
}

void CategoriesInFile::open(const QString & /*docsFolder*/, bool fromCopy,
                            const QString &copySource, const QString &target)
{
    m_defaultsPath.clear();
    m_set.clear();
    if (!fromCopy)
        return;
    // As it stands, so that its ids and what is not known here stay.
    m_files.replaceFile(target, m_files.readFile(copySource));
    m_set = CategoryFile(m_files).read(target);
}

bool CategoriesInFile::isIn(const QString &defaultCategoriesPath, const QString &name)
{
    if (defaultCategoriesPath != m_defaultsPath) {
        m_defaults = m_files.exists(defaultCategoriesPath)
                         ? CategoryFile(m_files).read(defaultCategoriesPath)
                         : QList<Category>();
        m_defaultsPath = defaultCategoriesPath;
    }
    return holds(m_defaults, name);
}

void CategoriesInFile::add(const QString &name)
{
    if (name.contains(u','))
        throw QvError(InvalidCall, {}, u"A category name holds no comma: "_s + name);
    if (!name.isEmpty() && !holds(m_set, name))
        m_set.append({.id = {}, .name = name, .description = {}});
}

void CategoriesInFile::write(const QString &path)
{
    CategoryFile(m_files).write(path, m_set);
    m_set = CategoryFile(m_files).read(path); // with the ids that new ones were given
}

/// The categories a table of contents lists; a missing or unreadable one lists none.
QStringList tocCategories(FileSystem &files, const QString &tocPath)
{
    QStringList names;
    try {
        const pugi::xml_document toc = loadXml(files, tocPath, "QV_Master");
        for (const pugi::xpath_node &category : toc.select_nodes("QV_Master/QV/QV_Categories/*"))
            names.append(textOf(category.node()));
    } catch (const QvError &) {
        return {};
    }
    return names;
}

/// The category file of the project to copy from; "" when there is no such project.
QString sourcePath(const Session &session, const QString &copySource)
{
    if (!isSafeName(copySource))
        return {};
    return projectFolder(session.serverPath, copySource) + ProjectFile::categories;
}

} // namespace

std::unique_ptr<Categories> makeCategories(FileSystem &files)
{
    return std::make_unique<CategoriesInFile>(files);
}

void seedCategories(Session &session, FileSystem &files, Categories &categories,
                    const QString &copySource, QStringList &mstrCategories)
{
    const QString folder = projectFolder(session.serverPath, session.projectName);
    const QString target = folder + ProjectFile::categories;
    if (files.exists(target))
        files.removeFile(target, true);

    const QString source = sourcePath(session, copySource);
    const bool isCopied = !source.isEmpty() && categories.isUsable(source);
    categories.open(docsFolder(session.serverPath), isCopied, source, target);

    if (mstrCategories.isEmpty())
        mstrCategories.append(QString());
    mstrCategories += tocCategories(files, folder + ProjectFile::toc);
    if (isCopied)
        return;

    for (const QString &listed : mstrCategories.sliced(1)) {
        // A comma separates categories wherever they stand in one text.
        for (const QString &name : listed.split(u',')) {
            if (!categories.isIn(defaultCategoriesPath(session.serverPath), name.trimmed()))
                categories.add(name.trimmed());
        }
    }
    categories.write(target);
}
