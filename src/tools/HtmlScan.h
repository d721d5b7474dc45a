#pragma once

#include "tools/PageReference.h"

#include <QList>
#include <QString>

/// What one pass over a page tells.
struct HtmlFacts
{
    QString title;                   ///< of <title>, as shown: entities decoded, blanks collapsed
    QString firstHeading;            ///< the first of <h1> to <h6> that is not empty
    QString charset;                 ///< the character set the page declares
    bool hasBase = false;            ///< <base href>: relative references start somewhere else
    QList<PageReference> references; ///< in the order of the page
};

HtmlFacts scanHtml(QStringView page);

/// The url() and @import references of a style sheet. `offset` is added to their places.
QList<PageReference> scanCss(QStringView css, qsizetype offset = 0);
