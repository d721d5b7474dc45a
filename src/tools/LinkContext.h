#pragma once

#include <QString>

#include <optional>

/// The reference that is being typed at some place of a page's source.
struct LinkContext
{
    qsizetype start = 0;     ///< of the value, behind its quote
    QString typed;           ///< from there to the place
    bool isResource = false; ///< of src: a picture or the like, rather than a page
};

/// What is being typed at the end of `before`, the text before the cursor: the quoted value of an
/// href or src attribute, still open. Nothing elsewhere.
std::optional<LinkContext> linkContext(const QString &before);
