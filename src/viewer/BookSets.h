#pragma once

#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>
#include <QString>

/// A book set of the installation.
struct BookSet
{
    QString name;     ///< folder name below Docs
    QString language; ///< ENU, DEU, ...
};

/// The sets of the catalogue, "My Favorites" left out, by rank and then by name. Only the catalogue
/// is read. None without a server folder. Raises what reading the catalogue raises.
QList<BookSet> bookSets(Session &session, FileSystem &files);
