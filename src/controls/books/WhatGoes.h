#pragma once

#include "controls/session/ProjectSession.h"

class QVBoxLayout;

/// Shows in a dialog what a deletion takes with it: the pages, and the places elsewhere that lead
/// to them: links of other pages and quick-navigation categories. They lead nowhere afterwards.
void addWhatGoes(QVBoxLayout *layout, ProjectSession &session, const TocBook &book,
                 const QList<BookPage> &pages);
