#pragma once

#include "qvdev/Command.h"

#include <QCommandLineParser>

/// What the words of a call mean.
class Options final
{
public:
    /// `words`: those behind the program's own name.
    Options(const QList<Command> &commands, const QStringList &words);

    /// Null when the call names none, or one that does not exist.
    [[nodiscard]] const Command *command() const;
    /// What is wrong with the call, in a sentence or more; "" when nothing is.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    [[nodiscard]] Call call() const { return {m_arguments, m_parser}; }

    [[nodiscard]] QString server() const; ///< a native path, or ""
    [[nodiscard]] bool isJson() const { return m_json; }
    [[nodiscard]] bool isYes() const;
    /// What the call asks to be told about the program itself; "" when it does not.
    [[nodiscard]] const QString &help() const { return m_about; }

private:
    void parse(QStringList words);
    void parseCommand(const QString &name, const QStringList &words);
    void judge(const Command &command);
    [[nodiscard]] qsizetype placeOf(const QString &name) const;

    const QList<Command> m_commands;
    qsizetype m_command = -1;
    QStringList m_arguments;
    QString m_problem;
    bool m_json = false; ///< known even when the rest of the call is wrong
    QString m_about;     ///< what `help` gives
    QCommandLineParser m_parser;
};
