#pragma once

#include <QString>

#include <functional>
#include <stop_token>

/// How long work tells what it does and learns that it shall stop. Passed by value into workers.
struct Progress
{
    std::function<void(int done, int total, const QString &what)> report; ///< may be empty
    std::stop_token stop;

    /// Reports, then raises `Unwinding{Stopped}` when Stop was pressed.
    void step(int done, int total, const QString &what = {}) const;

    /// The same for a piece of the work, the `index`-th of `count` equal ones. Steps that name
    /// nothing report `name`.
    [[nodiscard]] Progress piece(int index, int count, const QString &name = {}) const;
};
