#pragma once

#include "platform/Messages.h"
#include "platform/QvError.h"
#include "startup/Program.h"

#include <utility>

/// Runs the body of an editor's own command; a failure is shown to the author and ends there.
template <typename Body>
auto handled(Program &program, Body &&body)
{
    const auto show = [&](const QvError &error) { program.messages.show({error.description()}); };
    return trap(show, std::forward<Body>(body));
}
