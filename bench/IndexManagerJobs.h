#pragma once

#include "ProjectJobs.h"

/// The jobs on the index manager.
QList<Job> indexManagerJobs();
