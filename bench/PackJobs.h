#pragma once

#include "ProjectJobs.h"

/// The jobs on the packed copy.
QList<Job> packJobs();
