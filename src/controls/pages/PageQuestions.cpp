#include "controls/pages/PageQuestions.h"

#include <QCoreApplication>

namespace {

QString tr(const char *text, int count = -1)
{
    return QCoreApplication::translate("PageQuestions", text, nullptr, count);
}

bool agreed(Messages &messages, const QString &text, const QString &answer, int initial = 0)
{
    return messages.choose({text, {answer, tr("Cancel")}, initial}) == 0;
}

} // namespace

PageQuestions::Leave PageQuestions::leave(Messages &messages, const QString &title)
{
    const int answer =
        messages.choose({tr("The page \"%1\" has changes that are not saved.").arg(title),
                         {tr("&Save"), tr("&Discard"), tr("Cancel")}});
    return answer == 0 ? Leave::Save : answer == 1 ? Leave::Discard : Leave::Stay;
}

PageQuestions::Conflict PageQuestions::saveOverOther(Messages &messages, const QString &shownPath)
{
    const int answer = messages.choose(
        {tr("Another author changed or removed this page since you opened it:\n%1").arg(shownPath),
         {tr("&Reload it and drop my changes"), tr("&Keep mine"), tr("Cancel")},
         2});
    return answer == 0 ? Conflict::Reload : answer == 1 ? Conflict::KeepMine : Conflict::Stay;
}

bool PageQuestions::dropChanges(Messages &messages, const QString &title)
{
    return agreed(messages,
                  tr("Drop the changes of the page \"%1\" that are not saved?").arg(title),
                  tr("&Drop them"));
}

bool PageQuestions::unlock(Messages &messages, const QString &shownPath)
{
    return agreed(
        messages,
        tr("This page is locked against changes:\n%1\n\nUnlock it for editing?").arg(shownPath),
        tr("&Unlock page"));
}

bool PageQuestions::replaceByKept(Messages &messages)
{
    return agreed(messages, tr("The kept text takes the place of what you have typed since."),
                  tr("&Use the kept text"), 1);
}

bool PageQuestions::discardKept(Messages &messages, const QString &shownPath)
{
    return agreed(messages,
                  tr("Discard the unsaved text that was kept of this page?\n%1").arg(shownPath),
                  tr("&Discard it"), 1);
}

bool PageQuestions::saveAsUtf8(Messages &messages, const QString &reason)
{
    return agreed(messages,
                  tr("%1\n\nThe page can be saved as UTF-8, which has every character. Its "
                     "declared character set is changed with it.")
                      .arg(reason),
                  tr("&Save as UTF-8"));
}

bool PageQuestions::convertToUtf8(Messages &messages, const QString &encoding, bool declares)
{
    const QString mark =
        declares
            ? tr("The character set that the page declares is changed to utf-8.")
            : tr("The page declares no character set, so it gets a UTF-8 mark at its beginning.");
    return agreed(messages,
                  tr("The page is kept in %1. In UTF-8 every character of its text stays what it "
                     "is, but its bytes change. %2")
                      .arg(encoding, mark),
                  tr("&Convert to UTF-8"));
}

bool PageQuestions::showKept(Messages &messages, int pages)
{
    const QString text = pages == 1 ? tr("Unsaved text of 1 page was kept.")
                                    : tr("Unsaved text of %1 pages was kept.").arg(pages);
    return messages.choose({text, {tr("&Show them"), tr("Not now")}}) == 0;
}
