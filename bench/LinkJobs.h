#pragma once

#include "ProjectJobs.h"

QList<Job> linkJobs();
