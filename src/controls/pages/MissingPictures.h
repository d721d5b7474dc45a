#pragma once

class PreviewDocument;

/// Puts a framed box, and the alternative text, in the place of each picture of the page that is
/// missing or not shown.
void showMissingPictures(PreviewDocument &page);
