#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// What a new page begins as.

/// A clean, nearly empty HTML page in UTF-8 with this title, in the project's language (ENU, DEU,
/// ...).
QByteArray newPage(const QString &title, const QString &language);

/// A file name made from a title: small letters, digits and hyphens, ending in ".htm"; the first
/// that `isTaken` says false to.
QString newPageFile(const QString &title, const std::function<bool(const QString &)> &isTaken);
