#pragma once

#include "tools/build/PackedBytes.h"
#include "tools/build/PageFacts.h"

#include <QByteArray>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// By which a file is known again.
struct PageStamp
{
    std::string path; ///< as in the listing
    qint64 size = 0;
    qint64 modified = 0; ///< as in the listing
    qint64 readAt = 0;   ///< when it was read, in the same measure
    quint64 sum = 0;     ///< checksum of its bytes
};

/// What a build found in one page, kept for the next.
struct KnownPage
{
    PageStamp stamp;
    PageFacts facts;
};

struct KnownPages
{
    /// What the facts depend on: for another project or language they say nothing.
    std::string project, language;
    std::vector<std::string> targets;
    std::vector<KnownPage> pages;
};

/// Makes the file's bytes: compact, with a checksum over all.
class KnownPagesWriter final
{
public:
    KnownPagesWriter(std::string_view project, std::string_view language,
                     const std::vector<std::string> &targets);
    void add(const PageStamp &stamp, const PageFacts &facts);
    /// Valid as long as this is; nothing is added any more.
    [[nodiscard]] QByteArray file();

private:
    PackedWriter m_out;
};

/// Nothing when the bytes are damaged, of another version, or anything else than what the writer
/// makes; whatever they are, nothing outside them is read.
std::optional<KnownPages> readKnownPages(std::string_view bytes);
