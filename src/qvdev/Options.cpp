#include "qvdev/Options.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

QList<QCommandLineOption> commonOptions()
{
    return {
        {u"server"_s, u"Work on the server in this folder, not on the one of the settings."_s,
         u"DIR"_s},
        {u"json"_s, u"Write one JSON document to standard output."_s},
        {u"yes"_s, u"Answer the command's question with Yes."_s},
        {{u"h"_s, u"help"_s}, u"Explain the command."_s},
    };
}

QString lineOf(const QString &left, const QString &right)
{
    return u"  "_s + left.leftJustified(26) + u' ' + right + u'\n';
}

QString worded(const QList<QCommandLineOption> &options)
{
    QString text;
    for (const QCommandLineOption &option : options) {
        QStringList names;
        for (const QString &name : option.names())
            names.append((name.size() == 1 ? u"-"_s : u"--"_s) + name);
        text += lineOf(names.join(u", "_s) + u' ' + option.valueName(), option.description());
    }
    return text;
}

QString usageOf(const Command &command)
{
    return u"usage: %1 "_s.arg(QCoreApplication::applicationName())
           + (command.name + u' ' + command.arguments).trimmed() + u'\n';
}

QString helpOf(const Command &command)
{
    return usageOf(command) + u'\n' + command.summary + u"\n\n"_s
           + worded(command.options + commonOptions());
}

QString helpOf(const QList<Command> &all)
{
    QString text = u"usage: %1 COMMAND ARGUMENT...\n\n"_s.arg(QCoreApplication::applicationName());
    for (const Command &command : all)
        text += lineOf(command.name, command.summary);
    text += lineOf(u"help [COMMAND]"_s, u"Explain a command."_s);
    return text + u"\nWith every command:\n"_s + worded(commonOptions())
           + u"\nExit status: 0 done, 1 refused, failed or stopped, 2 done with findings, 64 wrong "
             "use.\n"_s;
}

} // namespace

Options::Options(const QList<Command> &commands, const QStringList &words)
    : m_commands(commands)
{
    m_parser.addOptions(commonOptions());
    parse(words);
}

// Options may stand before the command; which word is the command is found first.
void Options::parse(QStringList words)
{
    m_json = words.mid(0, words.indexOf(u"--"_s)).contains(u"--json"_s);
    QCommandLineParser front;
    front.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    front.addOptions(commonOptions());
    front.addOption({u"version"_s, u"Show the version."_s});
    const bool isRight = front.parse(QStringList{QCoreApplication::applicationName()} + words);
    const QStringList found = front.positionalArguments();
    if (!isRight) {
        m_problem = front.errorText();
    } else if (front.isSet(u"version"_s)) {
        m_about = QCoreApplication::applicationName() + u' '
                  + QCoreApplication::applicationVersion() + u'\n';
    } else if (found.isEmpty() || (found.first() == "help"_L1 && found.size() == 1)) {
        m_about = helpOf(m_commands);
        m_problem = found.isEmpty() && !front.isSet(u"help"_s) ? u"Which command?"_s : QString();
    } else if (found.first() == "help"_L1) {
        parseCommand(found.at(1), {u"--help"_s});
    } else {
        words.removeAt(words.size() - found.size());
        parseCommand(found.first(), words);
    }
}

void Options::parseCommand(const QString &name, const QStringList &words)
{
    m_command = placeOf(name);
    if (m_command < 0) {
        m_problem = u"There is no command \"%1\". \"%2 help\" lists them."_s.arg(
            name, QCoreApplication::applicationName());
        return;
    }
    const Command &command = m_commands.at(m_command);
    m_parser.addOptions(command.options);
    if (!m_parser.parse(QStringList{QCoreApplication::applicationName()} + words))
        m_problem = m_parser.errorText();
    else if (m_parser.isSet(u"help"_s))
        m_about = helpOf(command);
    else
        judge(command);
    if (!m_problem.isEmpty())
        m_problem += u'\n' + usageOf(command).trimmed();
}

void Options::judge(const Command &command)
{
    m_arguments = m_parser.positionalArguments();
    if (m_parser.isSet(u"server"_s) && server().isEmpty()) // a variable that a script forgot to set
        m_problem = u"--server names no folder."_s;
    for (const QString &option : command.required) {
        if (!m_parser.isSet(option))
            m_problem = u"--%1 is missing."_s.arg(option);
    }
    if (m_arguments.size() < command.fewest)
        m_problem = u"Something is missing."_s;
    else if (command.most >= 0 && m_arguments.size() > command.most)
        m_problem = u"What is \"%1\"?"_s.arg(m_arguments.at(command.most));
}

qsizetype Options::placeOf(const QString &name) const
{
    for (qsizetype at = 0; at < m_commands.size(); ++at) {
        if (m_commands.at(at).name == name)
            return at;
    }
    return -1;
}

const Command *Options::command() const
{
    return m_command < 0 ? nullptr : &m_commands.at(m_command);
}

QString Options::server() const
{
    return m_parser.value(u"server"_s);
}

bool Options::isYes() const
{
    return m_parser.isSet(u"yes"_s);
}
