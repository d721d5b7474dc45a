#pragma once

#include "components/Categories.h"
#include "components/GlobalInformation.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>

#include <memory>

struct Category
{
    QString id, name, description;
    friend bool operator==(const Category &, const Category &) = default;
};

/// "QV_BookCategories.xml" and "QV_DefaultCategories.xml": root of that name, one Category each.
class CategoryFile
{
public:
    explicit CategoryFile(FileSystem &files);
    /// The categories in file order. Raises 53 or 75 naming the file.
    QList<Category> read(const QString &path);
    /// Makes the file or rewrites its list, keeping what is not known here; the root is taken from
    /// the file name. Entries without an id get one that was never used in that file.
    void write(const QString &path, const QList<Category> &categories);

private:
    FileSystem &m_files;
};

/// The categories component, which lives with its file.
std::unique_ptr<Categories> makeCategories(FileSystem &files);

/// `AddQVBookCategories`: seeds the current project's category file, from `copySource` when that
/// project has a usable one, else with the categories of the table of contents that the default
/// list lacks. `mstrCategories` is the dialog-level list that grows; its first slot stays empty.
void seedCategories(Session &session, FileSystem &files, Categories &categories,
                    const QString &copySource, QStringList &mstrCategories);
