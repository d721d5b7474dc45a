#pragma once

#include "platform/FileSystem.h"
#include "tools/words/WordForms.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

/// A word of a page that answers a word of a question.
struct FoundWord
{
    QString text;
    quint32 count = 0;
    quint32 places = 0;   ///< WordPlace
    bool isExact = false; ///< typed so; else only the stem is the same
};

/// The pages that hold a word of a question, by their numbers.
using FoundPages = std::map<quint32, std::vector<FoundWord>>;

/// Looks words up in the files of a project's "Search_Words" folder; each file is read once at
/// most, and only when a word needs it.
class WordLookup final
{
public:
    WordLookup(FileSystem &files, QString folder, const QString &language, quint32 shards);

    /// The pages that hold words of the same stem. Raises 53 or 75 when a file is missing or cannot
    /// be read.
    [[nodiscard]] FoundPages find(const std::string &word);

private:
    struct Word
    {
        QString text, postings;
    };
    /// By stem.
    using Shard = std::multimap<std::string, Word>;
    const Shard &shard(quint32 number);

    FileSystem &m_files;
    const QString m_folder;
    const WordForms m_forms;
    const quint32 m_shards;
    std::map<quint32, Shard> m_read;
};
