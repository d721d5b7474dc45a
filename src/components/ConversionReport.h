#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

/// How many rows a table of the database has, and how many of them became something in the project.
struct ConversionCount
{
    QString table;
    int read = 0, written = 0;
    friend bool operator==(const ConversionCount &, const ConversionCount &) = default;
};

/// Something in the database that could not become what it says, and what became of it.
struct ConversionProblem
{
    QString table; ///< "" for the database as a whole
    QString row;   ///< "PageID 12", "row 5"
    QString text;
    friend bool operator==(const ConversionProblem &, const ConversionProblem &) = default;
};

/// How a conversion ended.
enum class ConversionEnd {
    Done,
    Refused,        ///< no legacy book set, or file or target is in use; nothing was written
    Damaged,        ///< cannot be read; nothing was written
    PartlyReadable, ///< some rows cannot be read whole; nothing was written, `problems` has them
    Failed,         ///< a file cannot be written
    BrokenOff,      ///< the converter died or fell silent, at any moment of its work
};

struct ConversionReport
{
    ConversionEnd end = ConversionEnd::Failed;
    QString reason; ///< of every end but Done, a sentence that names the file
    QString folder; ///< of Done: the project's folder, without backslash
    QList<ConversionCount> counts;
    QList<ConversionProblem> problems;
};

/// What the converter program says on its standard output: one JSON object in each line.
namespace ConversionLines {
QByteArray progress(int done, int total, const QString &what);
QByteArray count(const ConversionCount &count);
QByteArray problem(const ConversionProblem &problem);
/// The last line.
QByteArray end(ConversionEnd end, const QString &reason, const QString &folder);

/// Takes the lines of one run.
class Reader final
{
public:
    using Step = std::function<void(int done, int total, const QString &what)>;
    explicit Reader(Step step);
    /// Without its line end. What is none of ours is passed over.
    void take(const QByteArray &line);
    /// Nothing when the last line has not come.
    [[nodiscard]] std::optional<ConversionReport> report() const;

private:
    Step m_step;
    ConversionReport m_report;
    bool m_hasEnded = false;
};
} // namespace ConversionLines
