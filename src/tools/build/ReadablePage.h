#pragma once

#include <QtGlobal>

#include <string>
#include <string_view>
#include <vector>

/// What a reader sees of a page, in pieces that say where it stands. UTF-8, character references
/// resolved, tags gone. Inline elements leave no trace ("<b>R</b>100" is "R100"); blocks are parted
/// by a line end. Made to be used again for one page after another.
struct ReadablePage
{
    enum class Place : quint8 { Title, Heading1, Heading2, Heading3, Body, Alternative, KeyWords };

    struct Run
    {
        Place place = Place::Body;
        quint32 start = 0, length = 0; ///< in `text`
    };

    std::string text;
    std::vector<Run> runs; ///< in the order of the page, without gaps

    void clear()
    {
        text.clear();
        runs.clear();
    }
    /// Adds to the last run when that has the same place.
    void append(Place place, std::string_view piece)
    {
        text += piece;
        extend(place, piece.size());
    }
    /// The same for so many bytes that stand at the end of `text` already.
    void extend(Place place, size_t length)
    {
        if (length == 0)
            return;
        if (runs.empty() || runs.back().place != place)
            runs.push_back({place, static_cast<quint32>(text.size() - length), 0});
        runs.back().length += static_cast<quint32>(length);
    }
};
