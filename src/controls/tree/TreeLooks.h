#pragma once

#include "controls/tree/TreeNode.h"

#include <QIcon>

#include <array>

/// How the rows of the project tree look and what they are called.
class TreeLooks final
{
public:
    [[nodiscard]] QIcon iconOf(TreeKind kind) const;

    [[nodiscard]] static QString wordOf(TreeKind kind); ///< "Book"
    /// The text of a row: books that share a name show their acronym too.
    [[nodiscard]] static QString shownName(const TreeNode &node);
    /// What a screen reader says, without badges: "Book Pump".
    [[nodiscard]] static QString spokenName(const TreeNode &node);

private:
    mutable std::array<QIcon, static_cast<size_t>(TreeKind::Problem) + 1> m_icons; ///< made once
};
