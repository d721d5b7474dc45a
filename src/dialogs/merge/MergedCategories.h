#pragma once

#include "dialogs/merge/MergeSources.h"

#include <QSet>
#include <QString>
#include <QStringList>

/// The categories of a merged project: those of the first project of the merge list and those of
/// the books of all.
class MergedCategories final
{
public:
    /// Raises 75 when the list of default categories cannot be read.
    explicit MergedCategories(Program &program);

    /// Takes up the categories of a project's books: each text once, and none that is part of what
    /// was taken up before, without regard to case.
    void GetCategories(const MergeSource &source);

    /// Writes the file `target` of the merged project, beginning with `first` where that can be
    /// read. Returns the texts that were part of others and are now in no list.
    QStringList write(const QString &first, const QString &target);

private:
    void addTakenUp();

    Program &m_program;
    QString m_accumulator; ///< "A , B , "
    QSet<QString> m_seen;  ///< texts that were looked at
    QStringList m_parts;   ///< texts that were not taken up
};
