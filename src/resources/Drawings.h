#pragma once

#include <QColor>
#include <QImage>
#include <QString>

/// A drawing of the resources (":/icons/add", without an ending) at a size in pixels; where it is
/// drawn in the colour of text, that colour is `colour`. Null when there is no such drawing.
/// Drawn by Qt's SVG module or, where the program is built without it, taken from pictures that the
/// build made of the same drawings.
QImage drawn(const QString &name, QSize size, const QColor &colour);

/// Whether there is such a drawing.
bool isDrawing(const QString &name);
