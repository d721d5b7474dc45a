#pragma once

#include "platform/Progress.h"

#include <QStringView>

#include <functional>
#include <vector>

/// The place of each of so many texts in the order in which people sort names; equal ones keep
/// their order. Throws Unwinding when Stop was pressed.
std::vector<quint32> naturalRanks(quint32 count, const std::function<QStringView(quint32)> &text,
                                  const Progress &progress);
