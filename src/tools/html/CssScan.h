#pragma once

#include "tools/PageReference.h"

#include <QList>
#include <QStringView>

#include <string_view>

/// The url() and @import references of a style sheet, or of a style attribute. `offset` is added to
/// their places.
QList<PageReference> scanCss(QStringView css, qsizetype offset = 0);
QList<PageReference> scanCss(std::string_view css, qsizetype offset = 0);
