#pragma once

#include "projectfiles/GlobalBook.h"

#include <QString>
#include <QStringList>

// What kinds of global pages there are. Free pages there may be any number of, of the others one.
namespace GlobalPageTypes {

inline constexpr QLatin1StringView free{"Free"};

/// As stored: Welcome, Legal, Glossary, HowTo, Contact, Free.
QStringList all();
/// For the author: "How to".
QString wordFor(const QString &type);
/// Why no page may get this type now; "" when one may. `id` is the page that would have it.
QString problemOf(const QString &type, const QList<GlobalPage> &pages, const QString &id = {});
/// "Welcome" in the language of a project (ENU, DEU, CHS, CHT, JPN, KOR); "" for Free.
QString titleFor(const QString &type, const QString &language);

} // namespace GlobalPageTypes
