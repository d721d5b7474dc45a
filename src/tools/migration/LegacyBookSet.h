#pragma once

#include "components/ConversionReport.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

// The rows of a legacy book set as they stand in its database, in the order in which they lie
// there. `row` counts them from 1; texts that are null are empty, the others one line without
// control characters and halves of characters; numbers may be missing.

struct LegacyProject
{
    QString name, id, platform, variation, language;
    std::optional<QDateTime> created; ///< without a time zone
};

struct LegacyBook
{
    int row = 0;
    std::optional<int> id;
    QString name, acronym;
    QString folder; ///< below the project folder
    QString file;   ///< in its folder
    QString type;
    std::optional<int> order;
};

struct LegacyBookCategory
{
    int row = 0;
    std::optional<int> book;
    QString category;
};

struct LegacyPage
{
    int row = 0;
    std::optional<int> id, book, parent;
    QString title;
    QString file; ///< relative to the folder of its book, with "/" or "\"
    std::optional<int> order;
};

struct LegacyGlobalPage
{
    int row = 0;
    std::optional<int> id;
    QString title;
    QString file; ///< relative to "_Global Information"
    QString category;
    std::optional<int> order;
};

struct LegacyNavigationNode
{
    int row = 0;
    std::optional<int> id, parent, level;
    QString title;
    QString target; ///< relative to the project folder, perhaps with "#anchor"
    std::optional<int> order;
};

struct LegacyWord
{
    int row = 0;
    QString word;
    std::optional<int> book; ///< none: a global page
    QString file;
};

struct LegacyImage
{
    int row = 0;
    QString file;            ///< relative to the folder of its book
    std::optional<int> book; ///< none: relative to the project folder
};

struct LegacyLink
{
    int row = 0;
    QString identifier;
    QString kind; ///< IBD: published here; IBS: asked for here
    std::optional<int> book;
    QString file, anchor;
};

/// All tables but what pages and images hold.
struct LegacyBookSet
{
    LegacyProject project;
    qsizetype projectRows = 1; ///< of which it is the first
    QList<LegacyBook> books;
    QList<LegacyBookCategory> bookCategories;
    QList<LegacyPage> pages;
    QList<LegacyGlobalPage> globalPages;
    QList<LegacyNavigationNode> navigation;
    QList<LegacyWord> words;
    QList<LegacyImage> images;
    QList<LegacyLink> links;
    /// What was odd while they were read: text that cannot be decoded, unreadable dates, ...
    QList<ConversionProblem> problems;
};

/// What pages and images hold, one after the other in the order of their rows; nothing where the
/// database has null. Texts are valid UTF-16. `at` is the place in the list of `LegacyBookSet`.
class LegacyContents
{
public:
    using TakeText = std::function<void(qsizetype at, const std::optional<QString> &html)>;
    using TakeBytes = std::function<void(qsizetype at, const std::optional<QByteArray> &data)>;

    virtual ~LegacyContents() = default;
    virtual void pages(const TakeText &take) = 0;
    virtual void globalPages(const TakeText &take) = 0;
    virtual void images(const TakeBytes &take) = 0;
    /// What was odd in those that were given.
    [[nodiscard]] virtual QList<ConversionProblem> problems() const = 0;
};
