#pragma once

#include <QString>
#include <QStringList>

/// The product's categories component: one open set of category names at a time.
class Categories
{
public:
    virtual ~Categories() = default;

    /// True when a category file that can be read stands at `path`.
    virtual bool isUsable(const QString &path) = 0;

    /// Opens a set. From a copy: reads the set of `copySource` (a path to its category file) and
    /// writes it to `target` at once. Otherwise starts an empty set for `target`.
    /// `docsFolder` says where QV_DefaultCategories.xml lies.
    virtual void open(const QString &docsFolder, bool fromCopy, const QString &copySource,
                      const QString &target) = 0;

    /// Whether a category file lists the name (without regard to case). A missing file lists none.
    virtual bool isIn(const QString &defaultCategoriesPath, const QString &name) = 0;

    /// Adds to the open set unless it is there already; an empty name is ignored.
    virtual void add(const QString &name) = 0;
    virtual void write(const QString &path) = 0;
};
