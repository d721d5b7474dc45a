#pragma once

#include "startup/Program.h"

#include <QString>
#include <QStringList>

#include <vector>

#include <pugixml.hpp>

/// A project that takes part in a merge.
struct MergeSource
{
    QString name;
    QString folder; ///< with backslash
    QString language;
    pugi::xml_document toc;
};

/// Reads the projects' tables of contents, in the order given. Raises 5 for fewer than two, for
/// one that stands there twice and for one that is not catalogued; 53, 75 or 76 naming the file.
std::vector<MergeSource> readMergeSources(Program &program, const QStringList &projects);

/// Puts the projects into the order in which they are merged: newest date of addition first. One
/// that has none takes the date of the last processing of its table of contents.
void CheckMergeProjectsDate(Program &program, std::vector<MergeSource> &sources);
