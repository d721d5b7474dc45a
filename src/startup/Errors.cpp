#include "startup/Errors.h"

using namespace Qt::StringLiterals;

Message inProcedure(const QvError &error, const QString &handler, const QString &form)
{
    Message message;
    message.text = u"Error (%1) in procedure %2 of Form %3"_s.arg(QString::number(error.number()),
                                                                  handler, form);
    message.details = error.description();
    return message;
}

Message inProcedureWithReason(const QvError &error, const QString &handler, const QString &form)
{
    Message message;
    message.text = u"Error %1 (%2) in procedure %3 of Form %4"_s.arg(
        QString::number(error.number()), error.description(), handler, form);
    return message;
}

Message withTag(const QvError &error, const QString &tag)
{
    Message message;
    message.text = error.description() + u": "_s + tag;
    return message;
}
