#pragma once

#include "platform/Processes.h"

#include <memory>

class QProcess;

/// Keeps a program that is waited for within its memory, and from outliving this one.
class ChildLimits final
{
public:
    explicit ChildLimits(const ProcessLimits &limits);
    ChildLimits(const ChildLimits &) = delete;
    ChildLimits &operator=(const ChildLimits &) = delete;
    ~ChildLimits();

    void beforeStart(QProcess &process);
    void afterStart(QProcess &process);

private:
    struct System;
    std::unique_ptr<System> m_system;
};
