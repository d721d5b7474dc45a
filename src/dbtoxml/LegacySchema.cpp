#include "dbtoxml/LegacySchema.h"

#include "dbtoxml/DatabaseFile.h"
#include "dbtoxml/EarlyEnd.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace LegacySchema {

using enum LegacyValue;

constexpr LegacyTableRule project{"Project"_L1,
                                  {},
                                  {{{"ProjectName"_L1},
                                    {"ProjectID"_L1},
                                    {"Platform"_L1},
                                    {"Variation"_L1},
                                    {"LanguageCode"_L1},
                                    {"DateCreated"_L1, Date}}}};
constexpr LegacyTableRule books{"Books"_L1,
                                "BookID"_L1,
                                {{{"BookID"_L1, Number},
                                  {"BookName"_L1},
                                  {"BookAcro"_L1},
                                  {"BookFolder"_L1},
                                  {"BookFile"_L1},
                                  {"BookType"_L1},
                                  {"SortOrder"_L1, Number}}}};
constexpr LegacyTableRule bookCategories{
    "BookCategories"_L1, {}, {{{"BookID"_L1, Number}, {"Category"_L1}}}};
constexpr LegacyTableRule pages{"Pages"_L1,
                                "PageID"_L1,
                                {{{"PageID"_L1, Number},
                                  {"BookID"_L1, Number},
                                  {"ParentPageID"_L1, Number},
                                  {"Title"_L1},
                                  {"FileName"_L1},
                                  {"Html"_L1},
                                  {"SortOrder"_L1, Number}}}};
constexpr LegacyTableRule globalPages{"GlobalPages"_L1,
                                      "PageID"_L1,
                                      {{{"PageID"_L1, Number},
                                        {"Title"_L1},
                                        {"FileName"_L1},
                                        {"Category"_L1},
                                        {"Html"_L1},
                                        {"SortOrder"_L1, Number}}}};
constexpr LegacyTableRule quickNav{"QuickNav"_L1,
                                   "NodeID"_L1,
                                   {{{"NodeID"_L1, Number},
                                     {"ParentID"_L1, Number},
                                     {"NodeLevel"_L1, Number},
                                     {"Title"_L1},
                                     {"Target"_L1},
                                     {"SortOrder"_L1, Number}}}};
constexpr LegacyTableRule searchWords{
    "SearchWords"_L1, {}, {{{"Word"_L1}, {"BookID"_L1, Number}, {"FileName"_L1}}}};
constexpr LegacyTableRule images{
    "Images"_L1, {}, {{{"FileName"_L1}, {"BookID"_L1, Number}, {"Data"_L1, Bytes}}}};
constexpr LegacyTableRule links{
    "Links"_L1,
    {},
    {{{"LinkID"_L1}, {"Kind"_L1}, {"BookID"_L1, Number}, {"FileName"_L1}, {"Anchor"_L1}}},
    true};

} // namespace LegacySchema

namespace {

[[noreturn]] void refuse(const DatabaseFile &file, const QString &what)
{
    throw EarlyEnd{ConversionEnd::Refused,
                   u"%1 is no legacy book set: %2. Choose the database of a book set."_s.arg(
                       file.path(), what)};
}

bool takes(LegacyValue kind, int type)
{
    const bool isText = type == MDB_TEXT || type == MDB_MEMO;
    switch (kind) {
    case LegacyValue::Number:
        return isText || type == MDB_BYTE || type == MDB_INT || type == MDB_LONGINT;
    case LegacyValue::Date:
        return isText || type == MDB_DATETIME;
    case LegacyValue::Bytes:
        return type == MDB_OLE;
    default:
        return isText;
    }
}

QString nameOf(LegacyValue kind)
{
    switch (kind) {
    case LegacyValue::Number:
        return u"whole numbers"_s;
    case LegacyValue::Date:
        return u"dates"_s;
    case LegacyValue::Bytes:
        return u"the bytes of pictures (OLE)"_s;
    default:
        return u"text"_s;
    }
}

void checkTable(const DatabaseFile &file, const LegacyTableRule &rule)
{
    const DatabaseFile::Entry *entry = file.find(rule.name);
    if (!entry && rule.isOptional)
        return;
    if (!entry && file.missingEntries() > 0)
        throw damagedFile(file.path(), u"its list of tables cannot be read whole, and its table %1 "
                                       "is not in what is left"_s.arg(rule.name));
    if (!entry)
        refuse(file, u"it has no table "_s + rule.name);
    if (entry->isElsewhere)
        refuse(file, u"its table %1 lies in another database"_s.arg(rule.name));
    const auto table = file.open(*entry);
    for (const LegacyColumn &column : rule.columns) {
        const int at = column.name.isEmpty() ? 0 : table->column(column.name);
        if (at < 0)
            refuse(file, u"its table %1 has no column %2"_s.arg(rule.name, column.name));
        if (!column.name.isEmpty() && !takes(column.kind, table->type(at)))
            refuse(file, u"the column %1 of its table %2 does not hold %3"_s.arg(
                             column.name, rule.name, nameOf(column.kind)));
    }
}

} // namespace

void LegacySchema::check(const DatabaseFile &file)
{
    for (const auto *rule : {&project, &books, &bookCategories, &pages, &globalPages, &quickNav,
                             &searchWords, &images, &links})
        checkTable(file, *rule);
}
