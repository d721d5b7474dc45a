#pragma once

#include "tools/build/ReadablePage.h"

/// Fills a `ReadablePage` from pieces of HTML text: character references resolved, runs of blanks
/// made one.
class ReadableText final
{
public:
    /// Null: nobody asks for the text, and nothing is done.
    void begin(ReadablePage *page);

    void add(ReadablePage::Place place, std::string_view html);
    /// What comes next stands apart from what came before, as words do.
    void addBlank() { m_blank = true; }
    /// What comes next stands in another line.
    void endLine() { m_lineEnd = true; }

private:
    char *separate(char *to);

    ReadablePage *m_page = nullptr;
    bool m_blank = false;
    bool m_lineEnd = false;
};
