#include "tools/migration/LegacyTexts.h"

#include "tools/migration/LegacyRows.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t firstPrintable = 0x20;
constexpr char16_t firstNoncharacter = 0xFFFE;

class Cleaner final
{
public:
    explicit Cleaner(MigrationNotes &notes)
        : m_notes(notes)
    {
    }

    template <typename Row, typename... Texts>
    void clean(QLatin1StringView table, QList<Row> &rows, Texts... texts)
    {
        for (Row &row : rows)
            (cleanOne(table, nameOf(row), row.*texts), ...);
    }

    void cleanOne(QLatin1StringView table, const QString &row, QString &text)
    {
        const QString clean = cleanText(text);
        if (clean == text)
            return;
        m_notes.add(table, row,
                    u"The text \"%1\" held characters that no file of the project can hold; "
                    "others stand in their place."_s.arg(clean));
        text = clean;
    }

private:
    MigrationNotes &m_notes;
};

} // namespace

QString rowName(QLatin1StringView key, const std::optional<int> &id, int row)
{
    return id ? key + u" %1"_s.arg(*id) : u"row %1"_s.arg(row);
}

QString cleanText(const QString &text)
{
    QString clean = text;
    for (qsizetype at = 0; at < clean.size(); ++at) {
        const QChar c = clean.at(at);
        if (c.unicode() < firstPrintable)
            clean[at] = u' ';
        else if (c.isHighSurrogate() && at + 1 < clean.size() && clean.at(at + 1).isLowSurrogate())
            ++at;
        else if (c.isSurrogate() || c.unicode() >= firstNoncharacter)
            clean[at] = QChar(QChar::ReplacementCharacter);
    }
    return clean;
}

LegacyBookSet withCleanTexts(LegacyBookSet set, MigrationNotes &notes)
{
    Cleaner cleaner(notes);
    for (QString *text : {&set.project.platform, &set.project.variation, &set.project.language})
        cleaner.cleanOne(LegacyTable::project, {}, *text);
    cleaner.clean(LegacyTable::books, set.books, &LegacyBook::name, &LegacyBook::acronym,
                  &LegacyBook::type);
    cleaner.clean(LegacyTable::bookCategories, set.bookCategories, &LegacyBookCategory::category);
    cleaner.clean(LegacyTable::pages, set.pages, &LegacyPage::title);
    cleaner.clean(LegacyTable::globalPages, set.globalPages, &LegacyGlobalPage::title,
                  &LegacyGlobalPage::category);
    cleaner.clean(LegacyTable::quickNav, set.navigation, &LegacyNavigationNode::title);
    cleaner.clean(LegacyTable::searchWords, set.words, &LegacyWord::word);
    cleaner.clean(LegacyTable::links, set.links, &LegacyLink::identifier, &LegacyLink::anchor);
    return set;
}
