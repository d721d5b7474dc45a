#pragma once

#include <QString>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sb_stemmer;

/// True when two words share a form or a stem.
bool haveOneInCommon(const std::vector<std::string> &some, const std::vector<std::string> &others);

/// True when a form of a word begins with what was typed of it so far, in any of its forms.
bool isBegunBy(std::string_view form, const std::vector<std::string> &beginnings);

/// What makes two words the same to a reader who searches: how a word may be typed, and its stem.
/// Words come as WordSplitter gives them. Each thread has its own.
class WordForms final
{
public:
    /// `language` of the project: DEU stems German words, any other English ones.
    explicit WordForms(const QString &language);

    /// How the word may be typed without accents and connectors, as UTF-8: "öl" is "ol" and "oel",
    /// "straße" "strasse", "iec-61131" "iec61131". Mostly one, never none.
    [[nodiscard]] static std::vector<std::string> of(std::string_view word);
    /// The stem of such a form; the form itself when it is more than Latin letters. Valid until the
    /// next call.
    [[nodiscard]] std::string_view stem(std::string_view form) const;
    /// The stems of all its forms, each once.
    [[nodiscard]] std::vector<std::string> stemsOf(std::string_view word) const;

    /// True when the word is its own only form, which is so for most.
    [[nodiscard]] static bool isPlain(std::string_view word);

private:
    struct Delete
    {
        void operator()(sb_stemmer *stemmer) const;
    };
    std::unique_ptr<sb_stemmer, Delete> m_stemmer;
};
