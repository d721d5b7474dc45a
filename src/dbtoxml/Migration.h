#pragma once

#include "components/DatabaseConverter.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Registry.h"
#include "platform/SystemLocale.h"

/// What a migration needs of the machine.
struct MigrationWorld
{
    FileSystem &files;
    Registry &registry;
    Clock &clock;
    SystemLocale &locale;
};

/// Makes a project from the legacy book set in a database, lists it and writes its folder as the
/// destination of the compiler. Every failure is told in the result, and nothing of the project is
/// left then, but for a whole one that could not be listed. Raises only `Unwinding{Stopped}`, after
/// everything was removed.
ConversionReport migrate(const MigrationWorld &world, const ConversionOrder &order,
                         const Progress &progress);
