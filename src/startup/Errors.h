#pragma once

#include "platform/Messages.h"
#include "platform/QvError.h"
#include "startup/Session.h"

/// For shared procedures: notes the error in the session and raises it again under `tag`.
inline auto reraise(Session &session, const QString &tag)
{
    return [&session, tag](const QvError &error) {
        session.errorText = error.text();
        throw QvError(error.number(), tag, session.errorText);
    };
}

/// "Error (<number>) in procedure <handler> of Form <form>"; the description stands below it.
Message inProcedure(const QvError &error, const QString &handler, const QString &form);

/// "Error <number> (<description>) in procedure <handler> of Form <form>"
Message inProcedureWithReason(const QvError &error, const QString &handler, const QString &form);

/// "<description>: <tag>", such as "...: QV_Developer::frmSelPrjType-Form_Load"
Message withTag(const QvError &error, const QString &tag);
