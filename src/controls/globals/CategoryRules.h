#pragma once

#include <QString>
#include <QStringList>

namespace CategoryRules {

/// What a category may be called: not empty, at most 100 characters, no comma (which separates
/// categories where several stand in one text), no control characters, and none of `others` without
/// regard to case. One sentence for the author, or "" when all is well.
QString problemOf(const QString &name, const QStringList &others);

} // namespace CategoryRules
