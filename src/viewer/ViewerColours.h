#pragma once

/// The colours of the viewer: the desktop's, until the reader chooses others. That choice is kept
/// in the user's settings.
namespace ViewerColours {
bool areDark();
void useDark(bool dark);
void restore(); ///< as the reader chose them last
} // namespace ViewerColours
