#pragma once

#include "ProjectJobs.h"

#include "tools/build/BuildInput.h"

/// What a build would read of a folder of the machine in which every folder is a book.
BuildInput booksIn(FileSystem &files, const QString &nativeFolder);

/// The jobs on reading all pages of a build.
QList<Job> scanJobs();
