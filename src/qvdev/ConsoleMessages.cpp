#include "qvdev/ConsoleMessages.h"

#include "qvdev/ProgressLine.h"

#include <cstdio>

using namespace Qt::StringLiterals;

ConsoleMessages::ConsoleMessages(ProgressLine &progress)
    : m_progress(progress)
{
}

Answer ConsoleMessages::show(const Message &message)
{
    QStringList parts{message.text, message.details};
    parts.removeAll(QString());
    const QString whole = parts.join(u'\n');
    if (message.buttons == Buttons::Ok) {
        print(whole);
        return Answer::Ok;
    }
    const bool yesNo = message.buttons == Buttons::YesNo;
    if (m_yes)
        return yesNo ? Answer::Yes : Answer::Ok;
    refuse(whole);
    return yesNo ? Answer::No : Answer::Cancel;
}

int ConsoleMessages::choose(const Choice &choice)
{
    for (int index = 0; index < choice.answers.size(); ++index) {
        if (m_allowed.contains(QString(choice.answers.at(index)).remove(u'&')))
            return index;
    }
    refuse(choice.text);
    return static_cast<int>(choice.answers.size()) - 1;
}

void ConsoleMessages::refuse(const QString &question)
{
    m_refused = true;
    print(question);
    print(m_advice.isEmpty() ? u"Nobody is here to answer; nothing was done."_s : m_advice);
}

void ConsoleMessages::print(const QString &text)
{
    m_printed.append(m_paths.in(text));
    m_progress.clear();
    const QByteArray line = m_printed.last().toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
    std::fflush(stderr);
}
