#pragma once

#include <QIcon>
#include <QLatin1StringView>
#include <QPalette>
#include <QPixmap>

/// One of the product's own icons by file name ("book", "page-missing"), drawn in the palette's
/// text colour so that it suits light and dark. An unknown name gives a null icon. Nothing is
/// rendered before it is shown.
QIcon icon(QLatin1StringView name);

/// One of the product's pictures by file name ("splash"), rendered at `size` (device-independent
/// pixels) for a screen of that ratio. An unknown name gives a null pixmap.
QPixmap picture(QLatin1StringView name, QSize size, qreal devicePixelRatio);

/// The colour of texts and icons on selected rows. Windows' own style marks rows lightly and leaves
/// their texts as they are.
QColor selectedTextColour(const QPalette &palette, QPalette::ColorGroup group = QPalette::Active);
