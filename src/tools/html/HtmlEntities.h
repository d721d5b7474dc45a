#pragma once

#include <QString>

#include <string>
#include <string_view>

/// Where a character reference stands. In attributes "&copy=2" is no reference, so that the
/// queries of addresses stay as they are.
enum class ReferenceIn { Text, Attribute };

/// `text` with its character references ("&amp;", "&#228;", "&#xE4;") replaced by what they mean;
/// the old names may lack their ";", as HTML says. What is none stays as it is.
QString withoutEntities(QStringView text, ReferenceIn in = ReferenceIn::Attribute);

/// The same with runs of blanks and line ends made one blank and none at the ends: text as a
/// title shows it.
QString plainText(QStringView text);

/// The same for UTF-8; adds to `to`.
void appendWithoutEntities(std::string &to, std::string_view text, ReferenceIn in);
std::string plainText(std::string_view text);

/// A character reference at the start of a text.
struct CharacterReference
{
    char32_t meant = 0;
    qsizetype length = 0; ///< from "&" on; 0 when it is none
};
CharacterReference characterReference(std::string_view text, ReferenceIn in);
CharacterReference characterReference(QStringView text, ReferenceIn in);

/// As UTF-8.
void appendMeaning(std::string &to, const CharacterReference &reference);
