#pragma once

#include "tools/PageReference.h"
#include "tools/html/CssScan.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What one pass over a page's text tells the editors.
struct HtmlFacts
{
    QString title;                   ///< of <title>, as shown: entities decoded, blanks collapsed
    QString firstHeading;            ///< the first of <h1> to <h6> that is not empty
    QString charset;                 ///< the character set the page declares
    bool hasBase = false;            ///< <base href>: relative references start somewhere else
    PageReference base;              ///< the place of its value; of no length when there is none
    QList<PageReference> references; ///< in the order of the page

    // Only with HtmlDetail::All:
    QStringList headings; ///< the texts of <h1> to <h3>
    QStringList anchors;  ///< ids, and names of <a>, in the order of the page
    QStringList texts;    ///< what the reader clicks on, for each of `references`
};

enum class HtmlDetail {
    References, ///< what other files the page needs and what it is called
    All,        ///< also what a list of links shows; meta refresh counts as a link
};
HtmlFacts scanHtml(QStringView page, HtmlDetail detail = HtmlDetail::References);
