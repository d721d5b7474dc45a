#pragma once

/// Gives the windows the system's style. Windows' own style knows no dark windows: where the author
/// has chosen dark ones there, it is Fusion with a dark palette, from the next start on.
void setSystemLook();
