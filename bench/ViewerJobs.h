#pragma once

#include "ProjectJobs.h"

/// The jobs on the help viewer.
QList<Job> viewerJobs();
