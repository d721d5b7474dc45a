#pragma once

#include <QLatin1StringView>

#include <array>

class DatabaseFile;

enum class LegacyValue {
    Text,   ///< short or long
    Number, ///< of any whole kind, or a text that holds one
    Date,   ///< or a text in ISO form
    Bytes,  ///< of a picture
};

struct LegacyColumn
{
    QLatin1StringView name;
    LegacyValue kind = LegacyValue::Text;
};

/// A table of a legacy book set. Names are compared without regard to case.
struct LegacyTableRule
{
    QLatin1StringView name;
    QLatin1StringView key; ///< the column that names a row; "" for none
    std::array<LegacyColumn, 7> columns;
    bool isOptional = false;
};

namespace LegacySchema {
extern const LegacyTableRule project, books, bookCategories, pages, globalPages, quickNav,
    searchWords, images, links;

/// Raises EarlyEnd, naming the file, the table and the column, when something of it is missing or
/// of another kind.
void check(const DatabaseFile &file);
} // namespace LegacySchema
