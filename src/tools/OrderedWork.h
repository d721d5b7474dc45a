#pragma once

#include <functional>
#include <stop_token>

/// Calls `work(0)` to `work(count - 1)` on so many threads, and on this one `done` for each, in
/// order, as soon as it and all before it are finished. What either throws is thrown here, and
/// `Unwinding{Stopped}` when Stop was pressed; long work should look at `stop` itself, because its
/// end is waited for.
void inOrder(int count, int threads, const std::stop_token &stop,
             const std::function<void(int)> &work, const std::function<void(int)> &done);
