#pragma once

#include "platform/Progress.h"

#include <QStringView>

#include <functional>
#include <vector>

/// Rows of a long list by their numbers, in the order in which they are shown or written.
using RowOrder = std::vector<quint32>;

/// The text that a row is sorted by.
using RowText = std::function<QStringView(quint32 row)>;

/// So many rows as they were listed.
RowOrder asListed(qsizetype count);

/// So many rows in the order in which people sort names; equal ones stay as listed. Throws
/// Unwinding when Stop was pressed.
RowOrder naturallySorted(qsizetype count, const RowText &text, Qt::SortOrder order,
                         const Progress &progress = {});

/// The place of each row in that order, rising. Throws Unwinding when Stop was pressed.
std::vector<quint32> naturalRanks(qsizetype count, const RowText &text, const Progress &progress);
