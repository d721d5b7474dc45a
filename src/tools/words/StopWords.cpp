#include "tools/words/StopWords.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Words with a meaning of their own on a technical page stay out of the lists: "on", "off", "not",
// "can", "all", "an" and "aus" of a switch, "kein".

constexpr std::string_view english =
    "a about after also am an and any are as at be because been before being between both but by "
    "could did do does doing don for from had has have having he her here hers him his how i if in "
    "into is it its itself just ll me more most my nor now of only or other our ours own re s same "
    "she should so some such t than that the their theirs them then there these they this those "
    "through to too until ve very was we were what when where which while who whom why will with "
    "would you your yours";

constexpr std::string_view german =
    "aber als also am auch auf bei beim bin bis bist da damit dann das dass daß dem den denn der "
    "deren des dessen die dies diese diesem diesen dieser dieses dir doch dort du durch eine einem "
    "einen einer eines er es etwas euch euer für hat hatte hatten hier hinter ich ihm ihn ihnen "
    "ihr ihre ihrem ihren ihrer im in indem ins ist ja jede jedem jeden jeder jedes jene jetzt "
    "kann "
    "können könnte man mein mich mir mit muss muß nach noch nun nur ob oder ohne sehr sein seine "
    "seinem seinen seiner sich sie sind so solche soll sollte sondern sonst über um und uns unser "
    "unter vom von vor war waren warum was weil welche welchem welchen welcher welches wenn werde "
    "werden wie wieder will wir wird wirst wo wurde wurden würde zu zum zur zwar zwischen";

std::string_view listOf(const QString &language)
{
    return language == "DEU"_L1 ? german : english;
}

} // namespace

std::vector<std::string_view> StopWords::sorted(const QString &language)
{
    std::vector<std::string_view> words;
    for (std::string_view rest = listOf(language); !rest.empty();) {
        const size_t length = std::min(rest.find(' '), rest.size());
        words.push_back(rest.substr(0, length));
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    std::sort(words.begin(), words.end());
    return words;
}

StopWords::StopWords(const QString &language)
{
    for (const std::string_view word : sorted(language))
        m_words.insert(word);
}
