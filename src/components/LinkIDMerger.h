#pragma once

#include "platform/Progress.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// A project's link file on its way into that of a merged project.
struct LinkSource
{
    QString path;    ///< "<server path>Docs\<project>\QV_LinkID.xml"; need not be there
    QString project; ///< whose leading folder the stored paths carry; "" is never looked up
    /// Book folders that have another name in the merged project, by the old name; both are
    /// relative paths in their project. Compared without regard to case.
    QHash<QString, QString> renamedFolders;
};

/// The product's link-ID merge component.
class LinkIDMerger
{
public:
    virtual ~LinkIDMerger() = default;

    /// Adds the links of `sourceFile` to `mergedFile`, which is made when missing. A leading
    /// project folder in the stored paths becomes the merged one (the folders that the two files
    /// lie in say which); exact duplicates are dropped. A source that is missing, cannot be read,
    /// or lies in no project's folder adds nothing.
    virtual void MergeLinkIDFiles(const QString &mergedFile, const QString &sourceFile) = 0;

    /// The same for many, in order, with one save, into a file that belongs to `mergedProject`
    /// wherever it lies. Returns what the author should know, one line each: sources that cannot
    /// be read, and identifiers that have more than one target.
    virtual QStringList mergeAll(const QString &mergedFile, const QString &mergedProject,
                                 const QList<LinkSource> &sources,
                                 const Progress &progress = {}) = 0;

    /// Takes a project out of the catalogue, and its links out of the installation's own link
    /// file "<server path>Docs\QV_LinkID.xml" where there is one that can be read.
    virtual void UnMergeQVSelection(const QString &projectName) = 0;
};
