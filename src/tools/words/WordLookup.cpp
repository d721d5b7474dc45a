#include "tools/words/WordLookup.h"

#include "platform/Xml.h"
#include "platform/XmlTokens.h"
#include "tools/words/PageWords.h"
#include "tools/words/SearchPages.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <tuple>

namespace {

quint32 placesOf(std::string_view letters)
{
    quint32 places = 0;
    for (const char letter : letters) {
        places |= letter == 't'   ? WordPlace::title
                  : letter == 'h' ? WordPlace::heading
                  : letter == 'k' ? WordPlace::authorKeyWord
                  : letter == 'm' ? WordPlace::pageKeyWord
                  : letter == 'a' ? WordPlace::alternative
                                  : 0;
    }
    return places;
}

/// The number that `text` begins with, which is cut off.
quint32 takeNumber(std::string_view &text)
{
    quint32 number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<size_t>(read.ptr - text.data()));
    return number;
}

/// Hands over page, count and places of each posting of "3 17:2 44:1th".
template <typename Take>
void readPostings(std::string_view postings, const Take &take)
{
    while (!postings.empty()) {
        const size_t end = std::min(postings.find(' '), postings.size());
        std::string_view posting = postings.substr(0, end);
        postings.remove_prefix(std::min(end + 1, postings.size()));
        if (posting.empty())
            continue;
        const quint32 page = takeNumber(posting);
        quint32 count = 1;
        if (posting.starts_with(':')) {
            posting.remove_prefix(1);
            count = takeNumber(posting);
        }
        take(page, count, placesOf(posting));
    }
}

} // namespace

struct WordLookup::Word
{
    std::string text = {}, postings = {};
    std::vector<std::string> forms = {}; ///< how it may be typed, when not only as it is

    [[nodiscard]] bool isTypedAs(const std::vector<std::string> &typed) const
    {
        return forms.empty() ? std::find(typed.begin(), typed.end(), text) != typed.end()
                             : haveOneInCommon(forms, typed);
    }

    [[nodiscard]] bool beginsWith(const std::vector<std::string> &typed) const
    {
        const auto isBegun = [&](const std::string &form) { return isBegunBy(form, typed); };
        return forms.empty() ? isBegun(text) : std::any_of(forms.begin(), forms.end(), isBegun);
    }

    void addTo(FoundPages &pages, bool isExact) const
    {
        const QString shown = QString::fromStdString(text);
        readPostings(postings, [&](quint32 page, quint32 count, quint32 places) {
            pages[page].push_back({shown, count, places, isExact});
        });
    }
};

WordLookup::WordLookup(FileSystem &files, QString folder, const QString &language, quint32 shards)
    : m_files(files)
    , m_folder(std::move(folder))
    , m_forms(language)
    , m_shards(shards)
{
}

WordLookup::~WordLookup() = default;

FoundPages WordLookup::find(const std::string &word)
{
    FoundPages pages;
    std::set<std::string_view> taken; // a word with two stems may stand in two files
    const std::vector<std::string> forms = WordForms::of(word);
    for (const std::string &stem : m_forms.stemsOf(word)) {
        const auto [first, last] = shard(shardOf(stem, m_shards)).equal_range(stem);
        for (auto found = first; found != last; ++found) {
            if (taken.insert(found->second.text).second)
                found->second.addTo(pages, found->second.isTypedAs(forms));
        }
    }
    return pages;
}

BegunPages WordLookup::beginningWith(const std::string &beginning)
{
    constexpr std::ptrdiff_t mostPostings = 20'000; // what one key stroke has the time for
    while (readMore()) {
    }
    BegunPages begun;
    std::ptrdiff_t postings = 0;
    for (const Word *const word : wordsBeginningWith(beginning)) {
        begun.isWhole = postings < mostPostings;
        if (!begun.isWhole)
            break;
        postings += std::count(word->postings.begin(), word->postings.end(), ' ') + 1;
        word->addTo(begun.pages, false);
    }
    return begun;
}

/// The shortest first, each once.
std::vector<const WordLookup::Word *>
WordLookup::wordsBeginningWith(const std::string &beginning) const
{
    const std::vector<std::string> forms = WordForms::of(beginning);
    std::vector<const Word *> words;
    for (const auto &[number, shard] : m_read) {
        for (const auto &[stem, word] : shard) {
            if (word.beginsWith(forms))
                words.push_back(&word);
        }
    }
    const auto key = [](const Word *word) { return std::tuple(word->text.size(), word->text); };
    std::ranges::sort(words, {}, key);
    const auto doubles = std::ranges::unique(words, {}, &Word::text);
    words.erase(doubles.begin(), doubles.end());
    return words;
}

bool WordLookup::readMore()
{
    for (quint32 number = 0; number < m_shards; ++number) {
        if (m_read.contains(number))
            continue;
        shard(number);
        break;
    }
    return m_read.size() < m_shards;
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
                word = {tokens.attribute(u"Text").toStdString()};
                const QString given = tokens.attribute(u"Stem");
                stem = given.isNull() ? word.text : given.toStdString();
            } else if (kind == XmlTokens::Kind::Text && tokens.depth() == 2) {
                word.postings += tokens.text().toLatin1().toStdString();
            } else if (kind == XmlTokens::Kind::EndElement && tokens.depth() == 2) {
                if (!WordForms::isPlain(word.text))
                    word.forms = WordForms::of(word.text);
                shard.emplace(stem, std::move(word));
            }
        }
    });
    return m_read.emplace(number, std::move(shard)).first->second;
}
