#pragma once

class QColor;
class QTextDocument;

/// Text that a page colours without giving it a background takes the reader's own colour where it
/// could hardly be told from `base`, on which it stands.
void makeReadable(QTextDocument &page, const QColor &base);
