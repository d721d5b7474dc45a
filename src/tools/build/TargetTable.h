#pragma once

#include "tools/build/TextKey.h"

#include <QtGlobal>

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Numbers the paths that pages refer to; each has one number. Several threads may ask.
class TargetTable final
{
public:
    [[nodiscard]] quint32 number(std::string_view path);
    /// In the order of their numbers. Nobody may ask for one any more.
    [[nodiscard]] std::vector<std::string> take();

private:
    std::mutex m_guard;
    TextMap<quint32> m_numbers;
};
