#pragma once

#include "tools/html/HtmlScan.h"

#include <QString>
#include <QStringView>

#include <optional>

/// The folder ("" or with backslash) from which the relative references of a page start: its own,
/// unless its <base> says another. `page` is relative to some top folder, and so is the result;
/// `facts` are those of its `text`. Nothing when <base> leads out of the top folder, or to another
/// machine.
std::optional<QString> baseFolder(const QString &page, QStringView text, const HtmlFacts &facts);
