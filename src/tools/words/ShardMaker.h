#pragma once

#include "tools/words/StemmedWords.h"
#include "tools/words/WordCache.h"

#include <QByteArray>

#include <string>

/// What the files of words are made of.
struct ShardSources
{
    const WordCache &kept;           ///< of earlier runs
    const std::vector<bool> &isKept; ///< by page number: the words kept of the page still count
    const StemmedWords &fresh;       ///< of pages counted in this run
    const StemmedWords &keyWords;    ///< of the author, with the pages they lead to
    const std::vector<std::string_view> &stopWords; ///< sorted
    quint32 shards = 1;
};

/// How many files of words there are for so many words of pages: a power of two, so that each has
/// some hundred kilobytes.
quint32 shardsFor(size_t entries);

/// One file of words.
struct MadeShard
{
    QByteArray file;  ///< the bytes of "Words_<shard>.xml"
    std::string kept; ///< for the cache
    quint32 words = 0;
};

/// Puts together what is known of the words of one file. Several threads may ask at once.
MadeShard makeShard(const ShardSources &sources, quint32 shard);
