#pragma once

#include "reports/IdentifierIndex.h"
#include "startup/Program.h"

#include <QList>
#include <QString>

/// A published target whose page is not where the link file says, and where it lies now.
struct MovedTarget
{
    enum class Because {
        Published, ///< the only place of the set that publishes the identifier
        SameName,  ///< the only page of the set with that file name
    };
    QString set, identifier;
    QString before, after; ///< as stored: "<set>\Book_A\start.htm#top"
    Because because = Because::Published;
};

/// Looks for the pages of all targets whose file is gone, each in its own set; what cannot be found
/// without doubt is left out. Sets that cannot be read are told in `problems`. Reads the pages of
/// the sets concerned and writes nothing. Throws Unwinding when Stop was pressed.
QList<MovedTarget> findMovedTargets(Program &program, const IdentifierIndex &index,
                                    QStringList &problems, const Progress &progress);

/// Writes the new places of one set's targets into its link file; all else in it stays. The
/// previous version goes to _Backup\. Raises 75, and changes nothing, when the file no longer says
/// what is to be replaced, or a page moved again; 70 while another program builds the set.
void repairTargets(Program &program, const QString &set, const QList<MovedTarget> &moved);
