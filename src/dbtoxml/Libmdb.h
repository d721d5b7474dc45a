#pragma once

// glib first: the other header includes it inside extern "C", which its templates do not survive.
#include <glib.h>

#include <mdbtools.h>
