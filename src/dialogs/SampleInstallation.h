#pragma once

#include "startup/Program.h"

#include <QString>

/// Makes an installation to try the program with:
/// "<folder>\Server\Docs\" with default categories and an empty catalogue, "<folder>\Client\Bin\",
/// the programs and the help that come with this one in the latter (`copyCompanions`, from the
/// native path `programFolder`), and the registry values that point to both.
/// Raises 75 when `folder` is there already with anything in it; then nothing was changed.
void createSampleInstallation(Program &program, const QString &folder,
                              const QString &programFolder);
