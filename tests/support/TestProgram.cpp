#include "support/TestProgram.h"
