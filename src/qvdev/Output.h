#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

class ProgressLine;

/// A column of a table: the member that its cells come from, and its heading.
struct Column
{
    QLatin1StringView member, heading;
};

/// What came of a command, on standard output: text for people, or one JSON document.
class Output final
{
public:
    Output(bool asJson, ProgressLine &progress);

    /// Rows of objects, as a table with aligned columns or as an array.
    void table(const QList<Column> &columns, const QJsonArray &rows);
    /// One result: its lines, or the object.
    void result(const QString &text, const QJsonObject &object);
    /// A file, byte for byte.
    void bytes(const QByteArray &content);

    /// In place of a result: why there is none. People read it on standard error.
    void refusal(const QString &reason);

    /// False when standard output could not take it all.
    [[nodiscard]] bool wasWritten() const;
    [[nodiscard]] bool isJson() const { return m_json; }

private:
    const bool m_json;
    ProgressLine &m_progress;
    bool m_isEmpty = true;
    bool m_failed = false;
};
