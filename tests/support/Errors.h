#pragma once

#include "platform/QvError.h"

#include <functional>

/// The error that `body` raises; one with number 0 when it raises none.
inline QvError raisedBy(const std::function<void()> &body)
{
    QvError raised(0, {}, {});
    trap([&](const QvError &error) { raised = error; }, body);
    return raised;
}

/// Its text, "" when it raises none.
inline QString errorOf(const std::function<void()> &body)
{
    const QvError error = raisedBy(body);
    return error.number() == 0 ? QString() : error.text();
}
