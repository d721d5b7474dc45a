#pragma once

#include "platform/Messages.h"

/// Message boxes over the active window. All texts are plain: nothing in them is taken for markup.
class MessageBoxes final : public Messages
{
public:
    Answer show(const Message &message) override;
    int choose(const Choice &choice) override;
};
