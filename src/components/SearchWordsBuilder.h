#pragma once

#include "platform/Progress.h"

#include <QString>

/// The product's search-words component.
class SearchWordsBuilder
{
public:
    virtual ~SearchWordsBuilder() = default;
    /// Makes the search words of the project that this table of contents belongs to
    /// ("<server path>Docs\<project>\QV_Toc.xml") and sets its light. Raises 5 for any other path,
    /// 53, 70 or 75, with the light of a failure, when they cannot be made, and
    /// `Unwinding{Stopped}`; what was there before stays then.
    virtual void mGet_Words(const QString &tocPath, const Progress &progress) = 0;
};
