#include "tools/words/WordCache.h"

#include "platform/QvError.h"
#include "tools/Checksum.h"
#include "tools/build/PackedBytes.h"

#include <QCoreApplication>
#include <QtEndian>

#include <array>

// The file: mark, checksum of the rest, then packed:
//   language, next page number
//   pages    how many, then of each: path, sum, number, length, entries
//   shards   how many, then each as one text: of each word its text, 0 when its stem is the same,
//            else 1 (or 2 when it is not its first) and the stem, and its postings as one text:
//            steps from page to page and counts

namespace {

constexpr std::string_view mark = "QV_SearchWords 1\n";
constexpr size_t headSize = mark.size() + sizeof(quint64);

using SumBytes = std::array<char, sizeof(quint64)>;

SumBytes sumOf(std::string_view content)
{
    SumBytes bytes;
    qToLittleEndian(checksum(content), bytes.data());
    return bytes;
}

KeptPage readPage(PackedReader &reader)
{
    KeptPage page;
    page.path = reader.text();
    page.sum = reader.number();
    page.number = static_cast<quint32>(reader.number());
    page.length = static_cast<quint32>(reader.number());
    page.entries = static_cast<quint32>(reader.number());
    return page;
}

KeptWord readWord(PackedReader &reader)
{
    KeptWord word;
    word.text = reader.text();
    const quint64 kind = reader.number();
    word.stem = kind == 0 ? word.text : reader.text();
    word.isFirst = kind != 2;
    word.packed = reader.text();
    return word;
}

} // namespace

WordCache WordCache::read(QByteArray bytes, const QString &language)
{
    WordCache cache;
    cache.m_bytes = std::move(bytes);
    const std::string_view file(cache.m_bytes.constData(),
                                static_cast<size_t>(cache.m_bytes.size()));
    if (file.size() < headSize || !file.starts_with(mark))
        return {};
    const std::string_view content = file.substr(headSize);
    const SumBytes sum = sumOf(content);
    if (file.substr(mark.size(), sum.size()) != std::string_view(sum.data(), sum.size())
        || !cache.take(content, language.toStdString()))
        return {};
    return cache;
}

bool WordCache::take(std::string_view bytes, std::string_view language)
{
    PackedReader reader(bytes);
    if (reader.text() != language)
        return false;
    m_next = static_cast<quint32>(reader.number());
    m_pages.resize(reader.count());
    for (KeptPage &page : m_pages) {
        page = readPage(reader);
        if (page.number >= m_next)
            reader.fail();
    }
    m_shards.resize(reader.count());
    for (std::string_view &shard : m_shards)
        shard = reader.text();
    for (size_t page = 0; page < m_pages.size(); ++page)
        m_byPath.emplace(m_pages[page].path, page);
    return reader.isGood() && reader.atEnd();
}

QByteArray WordCache::bytes(const QString &language, quint32 next, std::span<const KeptPage> pages,
                            std::span<const std::string> shards)
{
    PackedWriter writer;
    writer.text(language.toStdString());
    writer.number(next);
    writer.number(pages.size());
    for (const KeptPage &page : pages) {
        writer.text(page.path);
        for (const quint64 number :
             {page.sum, quint64(page.number), quint64(page.length), quint64(page.entries)})
            writer.number(number);
    }
    writer.number(shards.size());
    for (const std::string &shard : shards)
        writer.text(shard);
    const SumBytes sum = sumOf(writer.bytes());
    QByteArray file;
    file.reserve(static_cast<qsizetype>(headSize + writer.bytes().size()));
    for (const std::string_view piece :
         {mark, std::string_view(sum.data(), sum.size()), std::string_view(writer.bytes())})
        file.append(piece.data(), static_cast<qsizetype>(piece.size()));
    return file;
}

const KeptPage *WordCache::find(std::string_view path, quint64 sum) const
{
    const auto found = m_byPath.find(path);
    if (found == m_byPath.end() || m_pages[found->second].sum != sum)
        return nullptr;
    return &m_pages[found->second];
}

std::vector<KeptWord> WordCache::wordsOf(quint32 shard) const
{
    constexpr size_t usualSize = 40; // bytes of a word with its pages
    std::vector<KeptWord> words;
    words.reserve(m_shards[shard].size() / usualSize);
    PackedReader reader(m_shards[shard]);
    while (!reader.atEnd())
        words.push_back(readWord(reader));
    if (!reader.isGood())
        throw QvError(PathFileAccess, {},
                      QCoreApplication::translate(
                          "SearchWords", "What was kept of the search words (QV_SearchWords.bin) "
                                         "is damaged. Read all pages again."));
    return words;
}

void keepWord(PackedWriter &shard, const KeptWord &word)
{
    shard.text(word.text);
    shard.number(word.stem == word.text ? 0 : word.isFirst ? 1 : 2);
    if (word.stem != word.text)
        shard.text(word.stem);
    shard.text(word.packed);
}

std::string packedPostings(Postings postings)
{
    PackedWriter writer;
    quint32 last = 0;
    for (const Posting &posting : postings) {
        writer.number(posting.page - last);
        writer.number(posting.count.packed);
        last = posting.page;
    }
    return writer.bytes();
}

bool unpackPostings(std::string_view packed, const std::vector<bool> &isGood,
                    std::vector<Posting> &target)
{
    PackedReader reader(packed);
    quint64 page = 0;
    bool all = true;
    while (!reader.atEnd()) {
        page += reader.number();
        const WordCount count{static_cast<quint32>(reader.number())};
        if (page < isGood.size() && isGood[page])
            target.push_back({static_cast<quint32>(page), count});
        else
            all = false;
    }
    return all;
}
