#include "tools/words/WordLookup.h"

#include "platform/Xml.h"
#include "platform/XmlTokens.h"
#include "tools/words/PageWords.h"
#include "tools/words/SearchPages.h"

#include <algorithm>
#include <set>

namespace {

quint32 placesOf(QStringView letters)
{
    quint32 places = 0;
    for (const QChar letter : letters) {
        places |= letter == u't'   ? WordPlace::title
                  : letter == u'h' ? WordPlace::heading
                  : letter == u'k' ? WordPlace::authorKeyWord
                  : letter == u'm' ? WordPlace::pageKeyWord
                  : letter == u'a' ? WordPlace::alternative
                                   : 0;
    }
    return places;
}

/// Hands over page, count and places of each posting of "3 17:2 44:1th".
template <typename Take>
void readPostings(QStringView postings, const Take &take)
{
    for (const QStringView posting : postings.split(u' ', Qt::SkipEmptyParts)) {
        const qsizetype colon = posting.indexOf(u':');
        if (colon < 0) {
            take(posting.toUInt(), 1U, 0U);
            continue;
        }
        const QStringView rest = posting.sliced(colon + 1);
        const auto *const letters =
            std::find_if(rest.begin(), rest.end(), [](QChar unit) { return !unit.isDigit(); });
        const qsizetype digits = letters - rest.begin();
        take(posting.first(colon).toUInt(), rest.first(digits).toUInt(),
             placesOf(rest.sliced(digits)));
    }
}

} // namespace

WordLookup::WordLookup(FileSystem &files, QString folder, const QString &language, quint32 shards)
    : m_files(files)
    , m_folder(std::move(folder))
    , m_forms(language)
    , m_shards(shards)
{
}

FoundPages WordLookup::find(const std::string &word)
{
    FoundPages pages;
    std::set<QString> taken; // a word with two stems may stand in two files
    const std::vector<std::string> forms = WordForms::of(word);
    for (const std::string &stem : m_forms.stemsOf(word)) {
        const auto [first, last] = shard(shardOf(stem, m_shards)).equal_range(stem);
        for (auto found = first; found != last; ++found) {
            const QString &text = found->second.text;
            if (!taken.insert(text).second)
                continue;
            const bool isExact = haveOneInCommon(forms, WordForms::of(text.toStdString()));
            readPostings(found->second.postings, [&](quint32 page, quint32 count, quint32 places) {
                pages[page].push_back({text, count, places, isExact});
            });
        }
    }
    return pages;
}

const WordLookup::Shard &WordLookup::shard(quint32 number)
{
    if (const auto known = m_read.find(number); known != m_read.end())
        return known->second;
    const QString path = m_folder + u'\\' + SearchFile::words(number);
    const QString text = readXmlText(m_files, path);
    Shard shard;
    readXmlTokens(text, path, [&](XmlTokens &tokens) {
        Word word;
        std::string stem;
        for (auto kind = tokens.next(); kind != XmlTokens::Kind::End; kind = tokens.next()) {
            if (kind == XmlTokens::Kind::StartElement && tokens.depth() == 2) {
                word = {tokens.attribute(u"Text"), {}};
                const QString given = tokens.attribute(u"Stem");
                stem = (given.isNull() ? word.text : given).toStdString();
            } else if (kind == XmlTokens::Kind::Text && tokens.depth() == 2) {
                word.postings += tokens.text();
            } else if (kind == XmlTokens::Kind::EndElement && tokens.depth() == 2) {
                shard.emplace(stem, std::move(word));
            }
        }
    });
    return m_read.emplace(number, std::move(shard)).first->second;
}
