#pragma once

#include "ProjectJobs.h"

/// The jobs on the pages of one project and on the text of one page.
QList<Job> pageJobs();
