#pragma once

#include "platform/FileSystem.h"

#include <QList>
#include <QString>

#include <pugixml.hpp>

/// The catalogue file as it stands. Raises what `loadXml` raises, and 75 when it has no QVs.
pugi::xml_document loadCatalogue(FileSystem &files, const QString &path);

/// Every QV_Name, wherever it stands, in file order.
pugi::xpath_node_set allNames(const pugi::xml_document &catalogue);

/// The entries of the projects, favourites included, in file order.
QList<pugi::xml_node> allProjects(const pugi::xml_document &catalogue);
