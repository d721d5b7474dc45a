#pragma once

#include <QList>
#include <QStringList>

/// One row of two texts side by side.
struct DiffRow
{
    enum class Kind { Same, Changed, Removed, Added } kind = Kind::Same;
    int left = -1, right = -1; ///< line numbers from 0; -1 where that side has nothing
    friend bool operator==(const DiffRow &, const DiffRow &) = default;
};

/// How the lines of `left` become those of `right`, with as few changes as can be found. Texts that
/// differ in thousands of lines are taken as changed from the first difference to the last.
QList<DiffRow> compareLines(const QStringList &left, const QStringList &right);
