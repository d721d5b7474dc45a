#pragma once

// Included before everything else when Qt is built without its accessibility module, as it is where
// Debian's sources are built for Windows: widgets have no members for accessible names then. The
// names are kept as properties, so that the program is written, and checked, in one way. A Qt with
// the module needs none of this.

#if __has_include(<QtGui/qstandarditemmodel.h>) // has members of these names all the same
#include <QtGui/qstandarditemmodel.h>
#endif

#define setAccessibleName(name) setProperty("accessibleName", name)
#define accessibleName() property("accessibleName").toString()
#define setAccessibleDescription(text) setProperty("accessibleDescription", text)
#define accessibleDescription() property("accessibleDescription").toString()
