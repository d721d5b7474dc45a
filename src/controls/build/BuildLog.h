#pragma once

#include "tools/build/Finding.h"

#include <QPlainTextEdit>
#include <QSet>

#include <array>

/// What a build tells while it runs, line by line, and how much it found.
class BuildLog final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit BuildLog(QWidget *parent = nullptr);

    void begin();
    void say(const QString &line);
    /// The summary of a part, and its findings that no part before had. Findings beyond some
    /// thousands are only counted: the part's log has them all.
    void add(const QString &name, const ToolReport &report);
    /// "2 errors, 13 warnings, 1 note"
    [[nodiscard]] QString counts() const;

private:
    void addFindings(const QList<Finding> &findings);

    std::array<int, 3> m_counts{}; ///< by severity
    QSet<size_t> m_found;          ///< a hash of each finding
};
