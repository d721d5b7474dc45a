#pragma once

#include "platform/Messages.h"
#include "platform/QvError.h"
#include "startup/Program.h"

#include <type_traits>
#include <utility>

/// Runs the body of an editor's own command; a failure is shown to the author and ends there, and
/// so does Stop. The result is then the default one.
template <typename Body>
auto handled(Program &program, Body &&body)
{
    const auto show = [&](const QvError &error) { program.messages.show({error.description()}); };
    try {
        return trap(show, std::forward<Body>(body));
    } catch (const Unwinding &) {
        return std::invoke_result_t<Body>();
    }
}

/// The same for a body without a result: whether it was done.
template <typename Body>
bool wasDone(Program &program, Body &&body)
{
    return handled(program, [&] {
        body();
        return true;
    });
}
