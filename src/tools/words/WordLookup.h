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
    bool isExact = false; ///< typed so; else the stem or the beginning is the same
};

/// The pages that hold a word of a question, by their numbers.
using FoundPages = std::map<quint32, std::vector<FoundWord>>;

/// The pages that hold words with the same beginning.
struct BegunPages
{
    FoundPages pages = {};
    bool isWhole = true; ///< false: there are more such words than one search looks at
};

/// Looks words up in the files of a project's "Search_Words" folder; each file is read once at
/// most, and only when a word needs it.
class WordLookup final
{
public:
    WordLookup(FileSystem &files, QString folder, const QString &language, quint32 shards);
    ~WordLookup();

    /// The pages that hold words of the same stem. Raises 53 or 75 when a file is missing or cannot
    /// be read.
    [[nodiscard]] FoundPages find(const std::string &word);

    /// The pages that hold words which begin with `beginning`, however that is typed. Of very many
    /// words the shortest are taken. Needs all files; raises as above.
    [[nodiscard]] BegunPages beginningWith(const std::string &beginning);

    /// Reads one file more; false when all are read. Raises as above.
    bool readMore();

private:
    struct Word;
    /// By stem.
    using Shard = std::multimap<std::string, Word>;
    const Shard &shard(quint32 number);
    [[nodiscard]] std::vector<const Word *> wordsBeginningWith(const std::string &beginning) const;

    FileSystem &m_files;
    const QString m_folder;
    const WordForms m_forms;
    const quint32 m_shards;
    std::map<quint32, Shard> m_read;
};
