#pragma once

#include "tools/PageReference.h"

#include <QList>
#include <QString>

#include <functional>

/// `text` with `suffix(path)` put before the last dot of the file name in each reference (they come
/// in text order): "a.htm#x" becomes "a-2.htm#x" for "-2". `path` is the decoded path of a relative
/// reference; "" leaves it alone. All else stays as written.
QString withSuffixedNames(const QString &text, const QList<PageReference> &references,
                          const std::function<QString(const QString &path)> &suffix);

/// `text` with each folder or file name in a reference for which there is a new one replaced by
/// `newName(path)`: "../A/B.htm" asks for "..", "../A" and "../A/B.htm", decoded, and becomes
/// "../A1/B.htm" for "A1" of the second. All else stays as written.
QString withRenamedFolders(const QString &text, const QList<PageReference> &references,
                           const std::function<QString(const QString &path)> &newName);
