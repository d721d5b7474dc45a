#pragma once

#include "components/ConversionReport.h"

#include <QString>

/// Thrown where a conversion cannot go on and nothing has been written. Caught in `migrate` only.
struct EarlyEnd
{
    ConversionEnd end;
    QString reason; ///< a sentence that names the file, and what to do now
};

/// The end for the database `path`, of which `what` cannot be read.
EarlyEnd damagedFile(const QString &path, const QString &what);
