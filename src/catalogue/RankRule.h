#pragma once

#include <QString>

#include <optional>

class SystemLocale;

/// The rank that a text stands for: a whole number from 1 to 32000, without "." and ",".
std::optional<int> rankIn(const QString &text, SystemLocale &locale);
